// The tables of a database file, version 333; docs/file-format.md describes them for readers.
#ifndef STORE_SCHEMA_H
#define STORE_SCHEMA_H

// Run on a new, empty file inside one transaction that the caller commits. The identity pragmas
// come first: they live in the file's first page.
inline constexpr const char* store_kCreateSchema = R"SQL(
PRAGMA page_size = 65536;
PRAGMA application_id = 1364481647;
PRAGMA user_version = 333;
BEGIN;
CREATE TABLE header(key TEXT PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE model(name TEXT PRIMARY KEY, title TEXT NOT NULL DEFAULT '');
INSERT INTO model(name, title) VALUES ('Default Model', '');
CREATE TABLE step(
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  description TEXT NOT NULL DEFAULT '',
  domain INTEGER NOT NULL,
  time_period REAL NOT NULL,
  total_time REAL NOT NULL,
  previous_step TEXT NOT NULL DEFAULT '',
  procedure TEXT NOT NULL DEFAULT '');
CREATE TABLE frame(
  step_id INTEGER NOT NULL REFERENCES step(id),
  frame_index INTEGER NOT NULL,
  increment INTEGER NOT NULL,
  frame_value REAL NOT NULL,
  description TEXT NOT NULL DEFAULT '',
  load_case TEXT NOT NULL DEFAULT '',
  PRIMARY KEY(step_id, frame_index)) WITHOUT ROWID;
CREATE TABLE load_case(
  step_id INTEGER NOT NULL REFERENCES step(id),
  name TEXT NOT NULL,
  UNIQUE(step_id, name));
CREATE TABLE history_region(
  id INTEGER PRIMARY KEY,
  step_id INTEGER NOT NULL REFERENCES step(id),
  name TEXT NOT NULL,
  description TEXT NOT NULL DEFAULT '',
  load_case TEXT NOT NULL DEFAULT '',
  position INTEGER NOT NULL,
  instance TEXT NOT NULL DEFAULT '',
  node INTEGER NOT NULL DEFAULT -1,
  element INTEGER NOT NULL DEFAULT -1,
  integration_point INTEGER NOT NULL DEFAULT 0,
  face INTEGER NOT NULL DEFAULT 0,
  section_point INTEGER NOT NULL DEFAULT -1,
  section_point_description TEXT NOT NULL DEFAULT '',
  set_name TEXT NOT NULL DEFAULT '',
  set_kind INTEGER NOT NULL DEFAULT 0,
  point_name TEXT NOT NULL DEFAULT '',
  UNIQUE(step_id, name));
CREATE TABLE history_output(
  id INTEGER PRIMARY KEY,
  region_id INTEGER NOT NULL REFERENCES history_region(id),
  name TEXT NOT NULL,
  description TEXT NOT NULL DEFAULT '',
  type INTEGER NOT NULL,
  UNIQUE(region_id, name));
CREATE TABLE history_block(
  output_id INTEGER NOT NULL REFERENCES history_output(id),
  block INTEGER NOT NULL,
  count INTEGER NOT NULL,
  times INTEGER NOT NULL REFERENCES array(id),
  data INTEGER NOT NULL REFERENCES array(id),
  PRIMARY KEY(output_id, block)) WITHOUT ROWID;
CREATE TABLE array(id INTEGER PRIMARY KEY, kind TEXT NOT NULL, bytes INTEGER NOT NULL);
CREATE TABLE array_chunk(
  array_id INTEGER NOT NULL REFERENCES array(id),
  chunk INTEGER NOT NULL,
  data BLOB NOT NULL,
  PRIMARY KEY(array_id, chunk));
CREATE TABLE part(
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  dimension INTEGER NOT NULL,
  type INTEGER NOT NULL);
CREATE TABLE node_block(
  part_id INTEGER NOT NULL REFERENCES part(id),
  block INTEGER NOT NULL,
  count INTEGER NOT NULL,
  labels INTEGER NOT NULL REFERENCES array(id),
  coordinates INTEGER NOT NULL REFERENCES array(id), -- float32 x y z per node
  PRIMARY KEY(part_id, block)) WITHOUT ROWID;
CREATE TABLE element_block(
  part_id INTEGER NOT NULL REFERENCES part(id),
  block INTEGER NOT NULL,
  type TEXT NOT NULL,
  count INTEGER NOT NULL,
  nodes_per_element INTEGER NOT NULL,
  section_category TEXT NOT NULL DEFAULT '',
  labels INTEGER NOT NULL REFERENCES array(id),
  connectivity INTEGER NOT NULL REFERENCES array(id),
  PRIMARY KEY(part_id, block)) WITHOUT ROWID;
CREATE TABLE instance(
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  part_id INTEGER NOT NULL REFERENCES part(id),
  placement BLOB NOT NULL);
CREATE TABLE mesh_set(
  id INTEGER PRIMARY KEY,
  owner_kind INTEGER NOT NULL,
  owner TEXT NOT NULL,
  kind INTEGER NOT NULL,
  name TEXT NOT NULL,
  internal INTEGER NOT NULL DEFAULT 0,
  UNIQUE(owner_kind, owner, kind, name));
CREATE TABLE set_member(
  set_id INTEGER NOT NULL REFERENCES mesh_set(id),
  position INTEGER NOT NULL,
  instance TEXT NOT NULL,
  labels INTEGER NOT NULL REFERENCES array(id),
  faces INTEGER REFERENCES array(id),
  PRIMARY KEY(set_id, position)) WITHOUT ROWID;
CREATE TABLE section_assignment(
  id INTEGER PRIMARY KEY,
  owner_kind INTEGER NOT NULL,
  owner TEXT NOT NULL,
  set_name TEXT NOT NULL,
  section TEXT NOT NULL);
CREATE TABLE section_category(
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  description TEXT NOT NULL DEFAULT '');
CREATE TABLE section_point(
  category_id INTEGER NOT NULL REFERENCES section_category(id),
  number INTEGER NOT NULL,
  description TEXT NOT NULL DEFAULT '',
  PRIMARY KEY(category_id, number)) WITHOUT ROWID;
CREATE TABLE material(
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  youngs_modulus REAL,
  poissons_ratio REAL,
  density REAL);
CREATE TABLE section(
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  kind INTEGER NOT NULL,
  material TEXT NOT NULL,
  thickness REAL,
  integration_points INTEGER,
  profile TEXT NOT NULL DEFAULT '',
  dimensions BLOB);
CREATE TABLE field_output(
  id INTEGER PRIMARY KEY,
  step_id INTEGER NOT NULL REFERENCES step(id),
  frame_index INTEGER NOT NULL,
  field_index INTEGER NOT NULL,
  name TEXT NOT NULL,
  description TEXT NOT NULL DEFAULT '',
  type INTEGER NOT NULL,
  component_labels TEXT NOT NULL DEFAULT '',
  invariants TEXT NOT NULL DEFAULT '',
  UNIQUE(step_id, frame_index, name));
CREATE TABLE field_block(
  field_id INTEGER NOT NULL REFERENCES field_output(id),
  block INTEGER NOT NULL,
  position INTEGER NOT NULL,
  instance TEXT NOT NULL,
  element_type TEXT NOT NULL DEFAULT '',
  section_category TEXT NOT NULL DEFAULT '',
  section_point INTEGER NOT NULL DEFAULT -1,
  section_point_description TEXT NOT NULL DEFAULT '',
  set_name TEXT NOT NULL,
  count INTEGER NOT NULL,
  per_label INTEGER NOT NULL,
  width INTEGER NOT NULL,
  orientation_width INTEGER NOT NULL DEFAULT 0,
  labels INTEGER NOT NULL REFERENCES array(id),
  data INTEGER NOT NULL REFERENCES array(id),
  conjugate INTEGER REFERENCES array(id),
  orientation INTEGER REFERENCES array(id),
  PRIMARY KEY(field_id, block)) WITHOUT ROWID;
)SQL";

// The datum coordinate systems of the assembly. Made with the first system written rather than
// with the file, so files written before systems could be stored read the same as new ones.
inline constexpr const char* store_kCreateDatumCsysTable = R"SQL(
CREATE TABLE IF NOT EXISTS datum_csys(
  id INTEGER PRIMARY KEY,
  name TEXT NOT NULL UNIQUE,
  type INTEGER NOT NULL,
  definition INTEGER NOT NULL,
  instance TEXT NOT NULL DEFAULT '',
  node_1 INTEGER NOT NULL DEFAULT -1,
  node_2 INTEGER NOT NULL DEFAULT -1,
  node_3 INTEGER NOT NULL DEFAULT -1,
  geometry BLOB NOT NULL))SQL";

// The procedure of each step and the settings that its input deck writes. Made with the first
// procedure written, as the datum systems are: a file without them holds steps described by their
// procedure text alone.
inline constexpr const char* store_kCreateStepProcedureTable = R"SQL(
CREATE TABLE IF NOT EXISTS step_procedure(
  step_id INTEGER PRIMARY KEY REFERENCES step(id),
  kind INTEGER NOT NULL,
  solver_input TEXT NOT NULL DEFAULT ''))SQL";
inline constexpr const char* store_kCreateStepSettingTable = R"SQL(
CREATE TABLE IF NOT EXISTS step_setting(
  step_id INTEGER NOT NULL REFERENCES step_procedure(step_id),
  name TEXT NOT NULL,
  number REAL,
  text TEXT,
  PRIMARY KEY(step_id, name)) WITHOUT ROWID)SQL";

// The last rows of the tables that saves append to while large arrays are written: frames,
// field outputs (table and name index), field blocks and arrays. Reading them after each chunk
// keeps their pages at the warm end of SQLite's cache. Otherwise the chunks' pages push them out
// of the cache into the file, and the next row added makes SQLite read them back and write them
// a second time.
inline constexpr const char* store_kAppendPoints[] = {
    "SELECT 1 FROM frame ORDER BY step_id DESC, frame_index DESC LIMIT 1",
    "SELECT 1 FROM field_output ORDER BY id DESC LIMIT 1",
    "SELECT 1 FROM field_output ORDER BY step_id DESC, frame_index DESC, name DESC LIMIT 1",
    "SELECT 1 FROM field_block ORDER BY field_id DESC, block DESC LIMIT 1",
    "SELECT 1 FROM array ORDER BY id DESC LIMIT 1",
};

// A reader: no memory map. Bulk arrays are read page by page straight into their destination
// (store_PageReader); through a map, each fresh open would fault in every page it copies from.
inline constexpr const char* store_kReaderPragmas = "PRAGMA mmap_size = 0;";

// A writer: a commit returns only when the file is on disk, the commit itself included. The
// journal is truncated at each commit rather than deleted: with synchronous = FULL the truncation
// is synced, so a save is durable when it returns, where deleting the journal would need the
// folder synced too; closing the writer deletes the empty journal. The cache is small (8 MiB):
// a large transaction spills its pages into the file as it goes, which costs no more than
// writing them at commit, and reusing a few warm pages is several times faster than filling
// fresh memory. Pages appended past the end of the file are not journaled, so a save writes its
// data once.
inline constexpr const char* store_kWriterPragmas = R"SQL(
PRAGMA journal_mode = TRUNCATE;
PRAGMA synchronous = FULL;
PRAGMA cache_size = -8192;
PRAGMA mmap_size = 1099511627776;
)SQL";

#endif
