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
CREATE TABLE array(id INTEGER PRIMARY KEY, kind TEXT NOT NULL, bytes INTEGER NOT NULL);
CREATE TABLE array_chunk(
  array_id INTEGER NOT NULL REFERENCES array(id),
  chunk INTEGER NOT NULL,
  data BLOB NOT NULL,
  PRIMARY KEY(array_id, chunk));
)SQL";

// Every connection: memory-mapped reads of the main file.
inline constexpr const char* store_kReaderPragmas = "PRAGMA mmap_size = 1099511627776;";

// A writer: a commit returns only when the log is on disk; a large cache keeps big transactions
// from spilling page by page.
inline constexpr const char* store_kWriterPragmas = R"SQL(
PRAGMA synchronous = FULL;
PRAGMA cache_size = -262144;
PRAGMA mmap_size = 1099511627776;
)SQL";

#endif
