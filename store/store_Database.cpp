#include "store_Database.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>
#include <set>
#include <system_error>
#include <thread>

#include "store_PageChecksum.h"
#include "store_PageReader.h"
#include "store_Schema.h"
#include "store_Shared.h"
#include "store_SharedFile.h"
#include "store_Statement.h"

namespace {

// Bulk arrays are cut into chunks of this many bytes: big enough that a chunk costs one
// statement per few MB, small enough that writing one never doubles the memory of a writer.
const std::size_t kChunkBytes = 4u << 20;

std::string Folder(const std::string& path) {
  std::string::size_type slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NewCreationStamp() {
  std::random_device device;
  std::mt19937_64 random(
      (static_cast<std::uint64_t>(device()) << 32) ^ device() ^
      static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count()));
  char id[40];
  std::snprintf(id, sizeof id, "%016llx%016llx", static_cast<unsigned long long>(random()),
                static_cast<unsigned long long>(random()));
  std::time_t now = std::time(nullptr);
  char when[32];
  std::tm utc;
  gmtime_r(&now, &utc);
  std::strftime(when, sizeof when, "%Y-%m-%dT%H:%M:%SZ", &utc);
  return std::string(id) + " " + when;
}

// A chunk of an array being read: where it goes, and whether it is read past SQLite.
struct DirectChunk {
  std::int64_t rowid = 0;
  char* at = nullptr;
  std::size_t bytes = 0;
  bool direct = false;
  store_PageReader::Rest rest;
};

// The file is synced on a second thread each time this many chunks (16 MiB) more were written.
const int kChunksPerSync = 4;

// Called by SQLite while another process holds the lock it needs: a reader waits for a writer
// in another process to finish writing a save into the file, a writer for readers to let go
// before it commits, each for up to store_kBusyMilliseconds. It looks again every millisecond
// (SQLite's own timeout backs off to every 100 ms): a writer that saves frame after frame
// leaves the file free only for the few milliseconds between a commit and its next spill, and
// a reader that sleeps longer than that never sees a save before the last.
int WaitForLock(void*, int tries) {
  if (tries >= store_kBusyMilliseconds) return 0;
  ::usleep(1000);
  return 1;
}

// Small files are kept in small pages. A page is the least that a table or an index takes, and
// the schema has 37 of them: in the 64 KiB pages that large saves need to run at the disk's
// speed, a file of a few nodes would take 2.4 MB. A writer closing a file of at most
// kCompactBytes rewrites it in 1 KiB pages (a copy of a few MB at most, with the journal making
// it atomic), and a writer opening such a file rewrites it in 64 KiB pages before it writes.
const int kSmallPageBytes = 1024, kLargePageBytes = 65536;
const std::int64_t kCompactBytes = 4 << 20;

std::int64_t PragmaValue(sqlite3* db, const char* sql) {
  sqlite3_stmt* q = nullptr;
  std::int64_t value = 0;
  if (sqlite3_prepare_v2(db, sql, -1, &q, nullptr) == SQLITE_OK && sqlite3_step(q) == SQLITE_ROW)
    value = sqlite3_column_int64(q, 0);
  sqlite3_finalize(q);
  return value;
}

int PageSize(sqlite3* db) {
  return static_cast<int>(PragmaValue(db, "PRAGMA page_size"));
}

std::int64_t FileBytes(sqlite3* db) {
  return PageSize(db) * PragmaValue(db, "PRAGMA page_count");
}

// Rewrites the file in pages of `bytes`. When another process holds the file, or its pages do
// not all match their checksums, it gives up and the file stays as it is: larger, or slower to
// write large arrays into, never wrong.
void Repage(sqlite3* db, int bytes) {
  int repaging = 1;
  sqlite3_file_control(db, "main", store_kRepageControl, &repaging);
  if (!repaging) return;
  const std::string sql = "PRAGMA page_size = " + std::to_string(bytes) + "; VACUUM";
  sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
  repaging = 0;
  sqlite3_file_control(db, "main", store_kRepageControl, &repaging);
}

bool Exists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

// An SQLite URI that opens `path` as a file that nobody changes, for reading without side files.
std::string ImmutableUri(const std::string& path) {
  static const char kHex[] = "0123456789ABCDEF";
  std::string uri = "file:";
  for (unsigned char c : path) {
    if (c == '%' || c == '?' || c == '#' || c < 0x20 || c >= 0x7f) {
      uri += '%';
      uri += kHex[c >> 4];
      uri += kHex[c & 15];
    } else {
      uri += static_cast<char>(c);
    }
  }
  return uri + "?immutable=1";
}

// Two threads copy an array of this size or more: the kernel's copy from its page cache is the
// whole cost of a direct read, and each core copies at its own speed.
const std::size_t kParallelCopyBytes = 4u << 20;

// Copies the rest of each chunk started directly, half the bytes on a second thread for a
// large array; a chunk whose copy fails is marked for reading through SQLite.
void CopyDirectChunks(const store_PageReader& reader, std::vector<DirectChunk>& chunks) {
  std::size_t total = 0;
  for (const DirectChunk& chunk : chunks) total += chunk.direct ? chunk.bytes : 0;
  auto copy = [&reader, &chunks](std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i)
      if (chunks[i].direct) chunks[i].direct = reader.CopyRest(chunks[i].rest);
  };
  std::size_t half = 0;
  for (std::size_t sum = 0; half < chunks.size() && sum < total / 2; ++half)
    sum += chunks[half].direct ? chunks[half].bytes : 0;
  if (total >= kParallelCopyBytes && std::thread::hardware_concurrency() > 1) {
    try {
      std::thread second(copy, half, chunks.size());
      copy(0, half);
      second.join();
      return;
    } catch (const std::system_error&) {
      // No thread to be had: one thread copies everything below.
    }
  }
  copy(0, chunks.size());
}
}  // namespace

void store_Database::Shared::Close() {
  DiscardDeferred();
  cache.reset();
  if (sync.joinable()) sync.join();
  if (!db) return;
  // Whatever was written since the last commit is discarded: the file stays as last saved.
  if (writer) {
    if (!sqlite3_get_autocommit(db)) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
    // The writer keeps its journal as an empty file between saves; gone, the closed file is
    // one plain file again.
    sqlite3_exec(db, "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
    if (PageSize(db) > kSmallPageBytes && FileBytes(db) <= kCompactBytes)
      Repage(db, kSmallPageBytes);
  }
  sqlite3_close_v2(db);
  db = nullptr;
  file.reset();
}

store_Database::store_Database(const std::string& path, bool readOnly)
    : m_path(path), m_readOnly(readOnly) {}

store_Database::~store_Database() {
  Close();
}

bool store_Database::IsOpen() const {
  return m_conn && m_conn->db;
}

sqlite3* store_Database::Connection() const {
  return IsOpen() ? m_conn->db : nullptr;
}

void store_Database::DiscardDeferred() {
  if (m_conn) m_conn->DiscardDeferred();
}

void store_Database::Defer(std::shared_ptr<store_Deferred> writer) {
  RequireWritable("write");
  Open().deferred.push_back(std::move(writer));
}

void store_Database::Close() {
  if (m_conn && !m_view) m_conn->Close();
  m_conn.reset();
}

std::shared_ptr<store_Database> store_Database::View(bool readOnly) {
  if (!readOnly) RequireWritable("write");
  std::shared_ptr<store_Database> view(new store_Database(m_path, readOnly));
  view->m_conn = m_conn;
  view->m_view = true;
  view->m_losses = Open().losses;
  return view;
}

bool store_Database::FirstNotice(const std::string& key) {
  return Open().noticed.insert(key).second;
}

bool store_Database::IsFileAt(const std::string& path) const {
  return IsOpen() && m_conn->file && m_conn->file->IsAt(path);
}

void store_Database::Connect(int flags, const std::string& name) {
  m_conn = std::make_shared<Shared>();
  sqlite3*& db = m_conn->db;
  int rc = sqlite3_open_v2(name.empty() ? m_path.c_str() : name.c_str(), &db,
                           flags | SQLITE_OPEN_NOMUTEX, store_ChecksumVfs());
  if (rc != SQLITE_OK) {
    std::string reason = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    sqlite3_close_v2(db);
    db = nullptr;
    throw store_Error(reason + ".");
  }
  m_conn->file.reset(new store_SharedFile(m_path));
  sqlite3_extended_result_codes(db, 1);
  sqlite3_busy_handler(db, WaitForLock, nullptr);
  m_conn->cache.reset(new store_StatementCache(db));
}

void store_Database::Execute(const char* sql) {
  sqlite3* db = Open().db;
  char* error = nullptr;
  int rc = sqlite3_exec(db, sql, nullptr, nullptr, &error);
  if (rc != SQLITE_OK) {
    std::string reason = error ? error : sqlite3_errstr(rc);
    sqlite3_free(error);
    store_ThrowIfDamaged(db, rc);
    throw store_Error(store_Reason(rc, reason) + ".");
  }
}

store_Statement store_Database::Sql(const char* sql) {
  Shared& conn = Open();
  RequireTransaction(conn);
  int rc = SQLITE_OK;
  sqlite3_stmt* stmt = conn.cache->Get(sql, rc);
  if (!stmt) Fail(rc, "prepare");
  // A read-only view shares a writer's connection and a read-only database runs without an
  // open transaction, so a write would reach the file: refuse it here, where every statement
  // passes.
  if (m_readOnly && !sqlite3_stmt_readonly(stmt)) RequireWritable("write");
  return store_Statement(*this, stmt);
}

void store_Database::RequireWritable(const char* what) const {
  if (m_readOnly) throw store_Error(std::string("The database is read-only: cannot ") + what + ".");
}

std::shared_ptr<store_Database> store_Database::Create(const std::string& path) {
  std::string folder = Folder(path);
  struct stat st;
  if (::stat(folder.c_str(), &st) != 0) throw store_Error(std::strerror(errno) + std::string("."));
  if (!S_ISDIR(st.st_mode)) throw store_Error(std::strerror(ENOTDIR) + std::string("."));
  if (::access(folder.c_str(), W_OK) != 0)
    throw store_Error(std::strerror(errno) + std::string("."));
  for (const char* suffix : {"", "-wal", "-shm", "-journal"}) ::unlink((path + suffix).c_str());

  std::shared_ptr<store_Database> db(new store_Database(path, false));
  db->Connect(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  // Every page keeps its last bytes for its checksum, which the VFS fills in as it writes.
  int reserved = store_kChecksumBytes;
  store_Check(db->m_conn->db,
              sqlite3_file_control(db->m_conn->db, "main", SQLITE_FCNTL_RESERVE_BYTES, &reserved),
              "reserve page bytes");
  db->Execute(store_kCreateSchema);
  db->Sql("INSERT INTO header(key, value) VALUES ('creation_stamp', ?1)")
      .Bind(1, NewCreationStamp())
      .Run();
  db->Sql("INSERT INTO header(key, value) VALUES (?1, ?2)")
      .Bind(1, std::string(store_kChecksumKey))
      .Bind(2, std::string(store_kChecksumValue))
      .Run();
  db->Execute("COMMIT");
  db->StartWriting();
  return db;
}

void store_Database::StartWriting() {
  Execute(store_kWriterPragmas);
  const int rc = m_conn->Begin();
  if (rc != SQLITE_OK) throw store_Error(store_Reason(rc, sqlite3_errmsg(m_conn->db)) + ".");
  m_conn->writer = true;
}

std::shared_ptr<store_Database> store_Database::Open(const std::string& path, bool readOnly) {
  std::shared_ptr<store_Database> db = OpenConnection(path, readOnly);
  // The header row and the reserved bytes of the first page both say whether the pages carry
  // checksums: a damaged header byte must not turn the checks off unnoticed.
  const bool reserved = HasPageChecksums(path);
  bool marked = false;
  try {
    marked = !db->Header(store_kChecksumKey).empty();
  } catch (const store_Damaged& damage) {
    store_ThrowDamagedSubject(damage, "the header");
  }
  if (reserved != marked)
    throw store_Damaged(path,
                        std::string("its first page ") + (reserved ? "reserves" : "lacks") +
                            " the bytes of page checksums, which its header row " +
                            (reserved ? "does not name" : "names"),
                        "are unreadable: the file's header is damaged");
  return db;
}

std::shared_ptr<store_Database> store_Database::OpenConnection(const std::string& path,
                                                               bool readOnly) {
  int version = SchemaVersion(path);
  if (version != store_kSchemaVersion)
    throw store_Error("The file has schema version " + std::to_string(version) + ", not " +
                      std::to_string(store_kSchemaVersion) + ".");
  std::shared_ptr<store_Database> db(new store_Database(path, readOnly));
  const bool writableFile = ::access(path.c_str(), W_OK) == 0;
  if (!readOnly) {
    db->Connect(SQLITE_OPEN_READWRITE);
    db->Execute(store_kReaderPragmas);
    // A file of an earlier release is in write-ahead-log mode: folding its log back in and
    // turning it to a rollback journal needs every other connection gone; while one stays, the
    // file keeps its log for this session and the next writer tries again.
    if (InLogMode(path)) {
      try {
        db->Execute("PRAGMA journal_mode = DELETE");
      } catch (const store_Error&) {
      }
    }
    // A file kept small in small pages gets the large pages back before anything is written:
    // what this writer adds may be large.
    sqlite3* connection = db->Connection();
    if (PageSize(connection) < kLargePageBytes && FileBytes(connection) <= kCompactBytes)
      Repage(connection, kLargePageBytes);
    db->StartWriting();
    return db;
  }
  // A reader connects for writing when the file allows it, never to write but to roll back
  // what a writer that was killed left in its journal. A file still in write-ahead-log mode,
  // closed cleanly (no log beside it), in a folder the reader cannot write, cannot have its
  // side files made: nobody can write it there, so it is read as it stands.
  if (InLogMode(path) && ::access(Folder(path).c_str(), W_OK) != 0 && !Exists(path + "-wal")) {
    db->Connect(SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, ImmutableUri(path));
  } else {
    db->Connect(writableFile ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY);
  }
  db->Execute(store_kReaderPragmas);
  return db;
}

void store_Database::StartWriteback() {
#ifdef __linux__
  if (m_readOnly || !IsOpen()) return;
  Shared& conn = *m_conn;
  const int fd = conn.file ? conn.file->Descriptor() : -1;
  if (fd < 0) return;
  ::sync_file_range(fd, 0, 0, SYNC_FILE_RANGE_WRITE);
  // Every so many chunks, and never two at once, a second thread syncs what the file holds so
  // far, so that the disk's own flush runs while the caller goes on writing.
  if (++conn.chunksSinceSync < kChunksPerSync || conn.syncing) return;
  conn.chunksSinceSync = 0;
  if (conn.sync.joinable()) conn.sync.join();
  conn.syncing = true;
  try {
    conn.sync = std::thread([&conn, fd] {
      ::fdatasync(fd);
      conn.syncing = false;
    });
  } catch (const std::system_error&) {
    conn.syncing = false;  // no thread to be had: the commit syncs everything, as always
  }
#endif
}

std::string store_Database::Header(const std::string& key) {
  {
    store_Statement q = Sql("SELECT value FROM header WHERE key = ?1");
    q.Bind(1, key);
    if (q.Step()) return q.Text(0);
  }
  // The key's index may have lost it: the table itself, a few rows, has the last word.
  store_Statement q = Sql("SELECT value FROM header NOT INDEXED WHERE key = ?1");
  q.Bind(1, key);
  if (q.Step())
    throw store_Damaged(m_path, "the index of its header misses the key '" + key + "'",
                        "are unreadable: the index of the file's header is damaged");
  return std::string();
}

void store_Database::SetHeader(const std::string& key, const std::string& value) {
  RequireWritable("write");
  Sql("INSERT INTO header(key, value) VALUES (?1, ?2) ON CONFLICT(key) DO UPDATE SET value = ?2")
      .Bind(1, key)
      .Bind(2, value)
      .Run();
}

std::string store_Database::CreationStamp() {
  return Header("creation_stamp");
}

std::string store_Database::ModelTitle(const std::string& model) {
  store_Statement q = Sql("SELECT title FROM model WHERE name = ?1");
  q.Bind(1, model);
  return q.Step() ? q.Text(0) : std::string();
}

void store_Database::SetModelTitle(const std::string& model, const std::string& title) {
  RequireWritable("write");
  Sql("INSERT INTO model(name, title) VALUES (?1, ?2) ON CONFLICT(name) DO UPDATE SET title = ?2")
      .Bind(1, model)
      .Bind(2, title)
      .Run();
}

std::vector<store_StepRecord> store_Database::Steps() {
  std::vector<store_StepRecord> steps;
  store_Statement q =
      Sql("SELECT id, name, description, domain, time_period, total_time, previous_step, procedure "
          "FROM step ORDER BY id");
  while (q.Step()) {
    q.RequireNotNull("step", {"id", "name", "description", "domain", "time_period", "total_time",
                              "previous_step", "procedure"});
    store_StepRecord s;
    s.id = q.Int64(0);
    s.name = q.Text(1);
    s.description = q.Text(2);
    s.domain = q.Int(3);
    s.timePeriod = q.Double(4);
    s.totalTime = q.Double(5);
    s.previousStepName = q.Text(6);
    s.procedure = q.Text(7);
    steps.push_back(std::move(s));
  }
  return steps;
}

std::int64_t store_Database::AddStep(store_StepRecord& step) {
  RequireWritable("write");
  Sql("INSERT INTO step(name, description, domain, time_period, total_time, previous_step, "
      "procedure) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7)")
      .Bind(1, step.name)
      .Bind(2, step.description)
      .Bind(3, step.domain)
      .Bind(4, step.timePeriod)
      .Bind(5, step.totalTime)
      .Bind(6, step.previousStepName)
      .Bind(7, step.procedure)
      .Run();
  step.id = sqlite3_last_insert_rowid(Open().db);
  return step.id;
}

int store_Database::FrameCount(std::int64_t stepId) {
  // Frame indices are dense from 0, so the count is one past the largest: one lookup at the end
  // of the step's key range instead of a walk over all its frames.
  store_Statement q = Sql("SELECT coalesce(max(frame_index) + 1, 0) FROM frame WHERE step_id = ?1");
  q.Bind(1, stepId);
  return q.Step() ? q.Int(0) : 0;
}

std::vector<store_FrameRecord> store_Database::Frames(std::int64_t stepId, int from) {
  std::vector<store_FrameRecord> frames;
  store_Statement q =
      Sql("SELECT increment, frame_value, description, load_case, frame_index FROM frame "
          "WHERE step_id = ?1 AND frame_index >= ?2 ORDER BY frame_index");
  q.Bind(1, stepId).Bind(2, from);
  while (q.Step()) {
    q.RequireNotNull("frame",
                     {"increment", "frame_value", "description", "load_case", "frame_index"});
    // Frames are numbered from 0 without gaps: a gap is a frame lost.
    if (q.Int64(4) != from + static_cast<std::int64_t>(frames.size()))
      store_ThrowBadValue(*this, "frame", "frame_index",
                          std::to_string(q.Int64(4)) + " where " +
                              std::to_string(from + frames.size()) + " belongs");
    store_FrameRecord f;
    f.incrementNumber = q.Int(0);
    f.frameValue = static_cast<float>(q.Double(1));
    f.description = q.Text(2);
    f.loadCase = q.Text(3);
    frames.push_back(std::move(f));
  }
  return frames;
}

int store_Database::AddFrame(std::int64_t stepId, const store_FrameRecord& frame) {
  RequireWritable("write");
  int index = FrameCount(stepId);
  Sql("INSERT INTO frame(step_id, frame_index, increment, frame_value, description, load_case) "
      "VALUES (?1, ?2, ?3, ?4, ?5, ?6)")
      .Bind(1, stepId)
      .Bind(2, index)
      .Bind(3, frame.incrementNumber)
      .Bind(4, static_cast<double>(frame.frameValue))
      .Bind(5, frame.description)
      .Bind(6, frame.loadCase)
      .Run();
  return index;
}

std::vector<std::string> store_Database::LoadCases(std::int64_t stepId) {
  std::vector<std::string> names;
  store_Statement q = Sql("SELECT name FROM load_case WHERE step_id = ?1 ORDER BY rowid");
  q.Bind(1, stepId);
  while (q.Step()) {
    q.RequireNotNull("load_case", {"name"});
    names.push_back(q.Text(0));
  }
  return names;
}

void store_Database::AddLoadCase(std::int64_t stepId, const std::string& name) {
  RequireWritable("write");
  Sql("INSERT OR IGNORE INTO load_case(step_id, name) VALUES (?1, ?2)")
      .Bind(1, stepId)
      .Bind(2, name)
      .Run();
}

std::int64_t store_Database::PutArray(const std::string& kind, const void* data,
                                      std::size_t bytes) {
  store_ArrayWriter writer(*this, kind, bytes);
  writer.Write(data, bytes);
  return writer.Finish();
}

store_ArrayWriter::store_ArrayWriter(store_Database& db, const std::string& kind, std::size_t bytes)
    : m_db(db), m_bytes(bytes) {
  db.Sql("INSERT INTO array(kind, bytes) VALUES (?1, ?2)")
      .Bind(1, kind)
      .Bind(2, static_cast<std::int64_t>(bytes))
      .Run();
  m_id = sqlite3_last_insert_rowid(db.Connection());
}

store_ArrayWriter::~store_ArrayWriter() {
  // A writer dropped early (its caller failed) may still fail to close its chunk; the failure
  // cannot be thrown from here, but it must still take a broken transaction back.
  if (m_blob) m_db.NoteFailure(sqlite3_blob_close(m_blob));
}

// Closing the blob is where a write that SQLite deferred can still fail.
void store_ArrayWriter::CloseChunk() {
  if (!m_blob) return;
  int rc = sqlite3_blob_close(m_blob);
  m_blob = nullptr;
  if (rc != SQLITE_OK) m_db.Fail(rc, "write an array chunk");
}

// Each chunk is inserted as zeros of its final length and then filled through an incremental
// blob handle: binding the bytes instead would make SQLite copy the whole chunk into a record
// before copying it again into pages.
void store_ArrayWriter::NextChunk() {
  CloseChunk();
  if (m_chunk >= 0) m_db.StartWriteback();
  for (const char* sql : store_kAppendPoints) m_db.Sql(sql).Step();
  ++m_chunk;
  m_chunkBytes = std::min(kChunkBytes, m_bytes - m_written);
  m_chunkWritten = 0;
  m_db.Sql("INSERT INTO array_chunk(array_id, chunk, data) VALUES (?1, ?2, zeroblob(?3))")
      .Bind(1, m_id)
      .Bind(2, m_chunk)
      .Bind(3, static_cast<std::int64_t>(m_chunkBytes))
      .Run();
  sqlite3* db = m_db.Connection();
  int rc = sqlite3_blob_open(db, "main", "array_chunk", "data", sqlite3_last_insert_rowid(db), 1,
                             &m_blob);
  if (rc != SQLITE_OK) {
    // SQLite may hand out a handle even when the open fails; it must be closed all the same.
    sqlite3_blob_close(m_blob);
    m_blob = nullptr;
    m_db.Fail(rc, "open an array chunk");
  }
}

void store_ArrayWriter::Write(const void* data, std::size_t bytes) {
  if (bytes > m_bytes - m_written)
    throw store_Error("Array " + std::to_string(m_id) + " is longer than announced.");
  const char* at = static_cast<const char*>(data);
  while (bytes > 0) {
    if (!m_blob || m_chunkWritten == m_chunkBytes) NextChunk();
    std::size_t n = std::min(bytes, m_chunkBytes - m_chunkWritten);
    int rc = sqlite3_blob_write(m_blob, at, static_cast<int>(n), static_cast<int>(m_chunkWritten));
    if (rc != SQLITE_OK) {
      // Closed first: the handle keeps the failure and would report it once more when closed.
      sqlite3_blob_close(m_blob);
      m_blob = nullptr;
      m_db.Fail(rc, "write an array chunk");
    }
    at += n;
    bytes -= n;
    m_chunkWritten += n;
    m_written += n;
  }
}

std::int64_t store_ArrayWriter::Finish() {
  CloseChunk();
  if (m_written != m_bytes)
    throw store_Error("Array " + std::to_string(m_id) + " is shorter than announced.");
  return m_id;
}

std::size_t store_Database::ArrayBytes(std::int64_t id) {
  store_Statement q = Sql("SELECT bytes FROM array WHERE id = ?1");
  q.Bind(1, id);
  if (!q.Step())
    throw store_Damaged(m_path, "array " + std::to_string(id) + " is missing",
                        "are incomplete (array " + std::to_string(id) + " is missing)");
  // An array is never longer than the file that holds it: a damaged length must not make the
  // reader allocate it.
  struct stat st;
  const int fd = m_conn->file ? m_conn->file->Descriptor() : -1;
  const std::int64_t fileBytes = fd >= 0 && ::fstat(fd, &st) == 0 ? st.st_size : INT64_MAX;
  if (q.IsNull(0) || q.Int64(0) < 0 || q.Int64(0) > fileBytes)
    store_ThrowBadValue(*this, "array", "bytes",
                        (q.IsNull(0) ? std::string("NULL") : std::to_string(q.Int64(0))) +
                            " for array " + std::to_string(id));
  return static_cast<std::size_t>(q.Int64(0));
}

void store_Database::GetArray(std::int64_t id, void* out) {
  // A connection that writes nothing (and, for a file of an earlier release, whose log is
  // empty) reads each chunk's pages straight from the file into `out` (store_PageReader), a
  // large array on two threads; a writer's connection, and where that reader gives up, copies
  // each chunk from SQLite's pages through an incremental blob handle, which at least spares
  // the buffer that selecting the blob would assemble first.
  Shared& conn = Open();
  std::size_t expected = ArrayBytes(id), offset = 0;
  store_Statement q =
      Sql("SELECT rowid, length(data) FROM array_chunk WHERE array_id = ?1 ORDER BY chunk");
  q.Bind(1, id);
  std::unique_ptr<store_PageReader> direct;
  std::vector<DirectChunk> chunks;
  // Stepping stops at the last chunk, so that the statement keeps the read transaction, whose
  // snapshot the direct reads see, until every chunk is copied.
  while (offset < expected && q.Step()) {
    const std::size_t n = static_cast<std::size_t>(q.Int64(1));
    if (offset + n > expected) break;
    if (chunks.empty() && !conn.writer && store_PageReader::FileHoldsSnapshot(m_path))
      direct.reset(
          new store_PageReader(conn.file ? conn.file->Descriptor() : -1, ChunkTableRoot()));
    DirectChunk chunk;
    chunk.rowid = q.Int64(0);
    chunk.at = static_cast<char*>(out) + offset;
    chunk.bytes = n;
    chunk.direct = direct && direct->Start(chunk.rowid, 2, chunk.at, n, chunk.rest);
    chunks.push_back(chunk);
    offset += n;
  }
  if (offset != expected)
    store_ThrowBadValue(*this, "array", "bytes",
                        std::to_string(expected) + " for array " + std::to_string(id) +
                            " whose chunks hold " + std::to_string(offset));
  if (direct) CopyDirectChunks(*direct, chunks);
  sqlite3_blob* blob = nullptr;
  int rc = SQLITE_OK;
  for (const DirectChunk& chunk : chunks) {
    if (chunk.direct) continue;
    rc = blob ? sqlite3_blob_reopen(blob, chunk.rowid)
              : sqlite3_blob_open(conn.db, "main", "array_chunk", "data", chunk.rowid, 0, &blob);
    if (rc == SQLITE_OK) rc = sqlite3_blob_read(blob, chunk.at, static_cast<int>(chunk.bytes), 0);
    if (rc != SQLITE_OK) break;
  }
  if (blob) {
    const int closed = sqlite3_blob_close(blob);
    if (rc == SQLITE_OK) rc = closed;
  }
  if (rc != SQLITE_OK) Fail(rc, "read");
}

std::int64_t store_Database::ChunkTableRoot() {
  Shared& conn = Open();
  if (conn.chunkRoot == 0) {
    store_Statement q = Sql("SELECT rootpage FROM sqlite_schema WHERE name = 'array_chunk'");
    if (!q.Step()) throw store_Error("The file has no array chunks table.");
    conn.chunkRoot = q.Int64(0);
  }
  return conn.chunkRoot;
}
