// store_Database: the one interface between the library and its database file.
//
// One object per open file, shared (std::shared_ptr) by every public handle that reads or
// writes through it. The file is an SQLite database; docs/file-format.md describes its tables.
//
// Transactions: a writable database keeps one transaction open from open (or the last Commit)
// to the next Commit, so everything written between two saves is committed together, durably,
// by Commit. Close, destruction, or a killed process leave the file exactly as last committed.
// A read-only database reads the latest committed state at every call, so it sees what a writer
// in another process commits after the open.
//
// Errors are thrown as store_Error with a reason fit to follow "Cannot open file X. " or
// "Cannot create file X. " in a message. One thread at a time.
#ifndef STORE_DATABASE_H
#define STORE_DATABASE_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "odb_Exception.h"
#include "odb_Exceptions.h"

struct sqlite3;
struct sqlite3_blob;
class store_Statement;
class store_StatementCache;
class store_SharedFile;
class store_Database;

// A failure of the file; callers of the public interface see it as the odb_Exception it is, with
// the reason as its message.
class store_Error : public odb_Exception {
 public:
  explicit store_Error(const std::string& reason)
      : odb_Exception(odb_Exceptions_DETAIL, odb_String(), odb_String(reason.c_str())) {}
};

// The schema version of the files this release writes (PRAGMA user_version).
constexpr int store_kSchemaVersion = 333;
// The mark of this library's files (PRAGMA application_id), "QTVo" in ASCII.
constexpr std::int32_t store_kApplicationId = 0x5154566F;

struct store_StepRecord {
  std::int64_t id = 0;  // assigned by the store
  std::string name;
  std::string description;
  int domain = 0;
  double timePeriod = 0.0;
  double totalTime = 0.0;
  std::string previousStepName;
  std::string procedure;
};

// Writes that a module keeps in memory until the next save, because writing them one by one
// would cost a statement each (history pairs are appended one at a time). Commit flushes every
// deferred writer, in the order they were deferred, inside the transaction it then commits;
// Rollback and Close discard what they hold.
class store_Deferred {
 public:
  virtual ~store_Deferred() = default;
  // Writes what is held through `db`, which is inside its open transaction, and lets it go.
  virtual void Flush(store_Database& db) = 0;
  // Lets go of what is held without writing it.
  virtual void Discard() = 0;
};

struct store_FrameRecord {
  int incrementNumber = 0;
  float frameValue = 0.0f;  // single precision, as stored
  std::string description;
  std::string loadCase;  // empty: no load case
};

class store_Database {
 public:
  // Creates the file (replacing any file at that path) with an empty "Default Model" and a
  // fresh creation stamp, committed, and returns it open for writing. Throws when the folder is
  // missing or cannot be written.
  static std::shared_ptr<store_Database> Create(const std::string& path);
  // Opens an existing file of the current schema version.
  static std::shared_ptr<store_Database> Open(const std::string& path, bool readOnly);
  // Checks that `path` is a readable database file of this library and returns its schema
  // version, reading only its first page. Throws for a missing, empty, truncated or foreign file.
  static int SchemaVersion(const std::string& path);
  // The creation stamp of the file at `path` ("" when it cannot be read); a cheap read.
  static std::string CreationStampOf(const std::string& path);

  ~store_Database();
  store_Database(const store_Database&) = delete;
  store_Database& operator=(const store_Database&) = delete;

  const std::string& Path() const { return m_path; }
  bool ReadOnly() const { return m_readOnly; }

  // Makes everything written since the last commit durable (on disk when it returns) and starts
  // the next transaction, flushing the deferred writers first. Refused on a read-only database.
  void Commit();
  // Discards what was written since the last commit, deferred writes included.
  void Rollback();
  // Holds `writer` until the next Commit (which flushes it) or Rollback or Close (which discard
  // it). A writer defers itself once per save, when it first holds something.
  void Defer(std::shared_ptr<store_Deferred> writer) { m_deferred.push_back(std::move(writer)); }
  // Discards what was written since the last commit and closes the file; every later call
  // throws. Handles that still share this object see a closed database.
  void Close();
  bool IsOpen() const { return m_db != nullptr; }

  // Identity: a random identity and the creation time, fixed at creation.
  std::string CreationStamp();
  std::string Header(const std::string& key);
  void SetHeader(const std::string& key, const std::string& value);

  // Models: "Default Model" always exists.
  std::string ModelTitle(const std::string& model);
  void SetModelTitle(const std::string& model, const std::string& title);

  // Steps in the order they were added; frames of a step in creation order.
  std::vector<store_StepRecord> Steps();
  std::int64_t AddStep(store_StepRecord& step);
  int FrameCount(std::int64_t stepId);
  std::vector<store_FrameRecord> Frames(std::int64_t stepId, int from = 0);
  // Appends a frame and returns its index in the step (0 for the first).
  int AddFrame(std::int64_t stepId, const store_FrameRecord& frame);
  std::vector<std::string> LoadCases(std::int64_t stepId);
  void AddLoadCase(std::int64_t stepId, const std::string& name);

  // Bulk arrays: stored as chunked blobs of a few MB, never a row per value. `kind` says what
  // the array holds (for readers of the file); the id is what owners record. Arrays produced on
  // the fly are written with store_ArrayWriter instead, without a copy of the whole.
  std::int64_t PutArray(const std::string& kind, const void* data, std::size_t bytes);
  std::size_t ArrayBytes(std::int64_t id);
  // Reads the whole array into `out` (which must hold ArrayBytes(id) bytes).
  void GetArray(std::int64_t id, void* out);

  // The connection and a cached prepared statement, for the store's own modules. On a
  // read-only database a statement that writes is refused.
  sqlite3* Connection() const { return m_db; }
  store_Statement Sql(const char* sql);

  // Asks the system to start writing the log's pages to disk now, without waiting: a large
  // transaction spills its pages to the log as it grows, and pages already on their way make
  // the wait for the disk at Commit shorter. Every 16 MiB it also has a second thread sync the
  // log, so that most of the disk's flush is done before Commit asks for it. Durability is
  // Commit's alone; this only moves work earlier. Does nothing where the system offers no such
  // request.
  void StartLogWriteback();

  // True the first time `key` is given to this object, false after: how the library tells the
  // user something once per open database rather than at every call.
  bool FirstNotice(const std::string& key) { return m_noticed.insert(key).second; }

 private:
  store_Database(const std::string& path, bool readOnly);
  void Connect(int flags);
  void Execute(const char* sql);
  void RequireWritable(const char* what) const;
  void DiscardDeferred();
  // The first page of the array chunks table, for direct reads.
  std::int64_t ChunkTableRoot();

  std::string m_path;
  bool m_readOnly;
  sqlite3* m_db = nullptr;
  std::unique_ptr<store_StatementCache> m_cache;
  std::vector<std::shared_ptr<store_Deferred>> m_deferred;
  int m_logFile = -1;  // the log, opened for StartLogWriteback
  std::thread m_logSync;  // the sync of the log in flight, if any
  std::atomic<bool> m_logSyncing{false};
  int m_chunksSinceSync = 0;
  std::int64_t m_chunkRoot = 0;
  std::set<std::string> m_noticed;
  // Held while the connection is open (see store_SharedFile).
  std::unique_ptr<store_SharedFile> m_file;
};

// Writes one bulk array piece by piece, straight into the file's chunks, so that a caller that
// converts its data on the fly never holds the whole array. The pieces, in order, must add up to
// the bytes announced; Finish() checks that and returns the array's id. A writer dropped before
// Finish() leaves a partial array in the open transaction: callers that may stop early write
// inside a savepoint and roll it back. Writing costs one copy of the bytes into the database's
// pages and one statement per chunk.
class store_ArrayWriter {
 public:
  store_ArrayWriter(store_Database& db, const std::string& kind, std::size_t bytes);
  ~store_ArrayWriter();
  store_ArrayWriter(const store_ArrayWriter&) = delete;
  store_ArrayWriter& operator=(const store_ArrayWriter&) = delete;

  void Write(const void* data, std::size_t bytes);
  std::int64_t Finish();

 private:
  void NextChunk();
  void CloseChunk();

  store_Database& m_db;
  std::int64_t m_id = 0;
  std::size_t m_bytes = 0, m_written = 0;
  std::int64_t m_chunk = -1;
  std::size_t m_chunkBytes = 0, m_chunkWritten = 0;
  sqlite3_blob* m_blob = nullptr;
};

#endif
