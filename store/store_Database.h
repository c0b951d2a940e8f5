// store_Database: the one interface between the library and its database file.
//
// One object per open file, shared (std::shared_ptr) by every public handle that reads or
// writes through it. The file is an SQLite database; docs/file-format.md describes its tables.
// The registry gives each database handle a view (View) of the file's one object: views share
// its connection, and a read-only view refuses every write, so that a handle opened read-only
// never writes, whichever connection it reads through.
//
// Transactions: a writable database keeps one transaction open from open (or the last Commit)
// to the next Commit, so everything written between two saves is committed together, durably,
// by Commit. Close, destruction, or a killed process leave the file exactly as last committed.
// The file is kept in rollback-journal mode: pages a save appends past the end of the file are
// written once, straight into the file, and a closed file is one plain file that readers can
// open from a folder they cannot write. A read-only database reads the latest committed state
// at every call, so it sees what a writer in another process commits after the open; while that
// writer is writing a save into the file, the reader waits for the save to end.
//
// Failures of the disk: an I/O error or a full disk met by any statement, blob or commit of the
// writer's transaction takes the file back to its last commit. SQLite rolls the whole
// transaction back on its own in most such cases, and the store makes it so in all of them, so
// that what a caller learns does not depend on where the fault fell: the deferred writers are
// discarded, a new transaction is begun (or, while the disk still fails, at the next statement:
// no statement ever runs, and commits, outside one), the error thrown says Discarded(), and every
// view made before is retired: it throws "This object was reached before ..." for every call
// that needs the file, so that objects holding what was written since cannot read or write
// through it. Renew() gives a view of the file as it now is.
//
// Errors are thrown as store_Error with a reason fit to follow "Cannot open file X. " or
// "Cannot create file X. " in a message. One thread at a time.
#ifndef STORE_DATABASE_H
#define STORE_DATABASE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "odb_Exception.h"
#include "odb_Exceptions.h"
#include "odb_Version.h"

struct sqlite3;
struct sqlite3_blob;
class store_Statement;
class store_Database;

// A failure of the file; callers of the public interface see it as the odb_Exception it is, with
// the reason as its message.
class store_Error : public odb_Exception {
 public:
  explicit store_Error(const std::string& reason)
      : odb_Exception(odb_Exceptions_DETAIL, odb_String(), odb_String(reason.c_str())) {}
  // A failure of SQLite or the disk: `cause` says what failed in words for users ("the disk is
  // full"); `discarded` when what was written since the last commit went with it; `unconfirmed`
  // for a commit that put the save in the file but whose last step the disk did not confirm.
  store_Error(const std::string& reason, const std::string& cause, bool discarded,
              bool unconfirmed = false)
      : store_Error(reason) {
    m_cause = cause;
    m_discarded = discarded;
    m_unconfirmed = unconfirmed;
  }
  // Empty for errors that are not failures of the file.
  const std::string& Cause() const { return m_cause; }
  bool Discarded() const { return m_discarded; }
  bool Unconfirmed() const { return m_unconfirmed; }

 private:
  std::string m_cause;
  bool m_discarded = false;
  bool m_unconfirmed = false;
};

// Damage found in the file: a page that does not match its checksum (store_PageChecksum.h), a
// page SQLite finds malformed, or a value that no writer writes. Its own message names the file
// and the damage; the object layer catches it to say what was being read, with Predicate(),
// which follows a plural subject ("the frames of step 'LOAD'" + " do not match their checksum
// (page 17)").
class store_Damaged : public store_Error {
 public:
  store_Damaged(const std::string& path, const std::string& damage, const std::string& predicate)
      : store_Error("The file " + path + " is damaged: " + damage + "."),
        m_path(path),
        m_predicate(predicate) {}
  const std::string& Path() const { return m_path; }
  const std::string& Predicate() const { return m_predicate; }

 private:
  std::string m_path;
  std::string m_predicate;
};

// Throws store_Error "The file PATH is damaged: SUBJECT PREDICATE.": `damage` said in the words of
// what was being read. No longer a store_Damaged, it passes the readers around the one that
// named its subject.
[[noreturn]] void store_ThrowDamagedSubject(const store_Damaged& damage,
                                            const std::string& subject);

// Throws store_Damaged for a value of `table`.`column` that no writer writes (`what`, for example
// "NULL" or "-3"), in the file of `db`.
[[noreturn]] void store_ThrowBadValue(const store_Database& db, const char* table,
                                      const char* column, const std::string& what);

// The header key that marks a file whose pages carry checksums, and its value: the hash, and what
// seeds it.
constexpr const char* store_kChecksumKey = "page_checksums";
constexpr const char* store_kChecksumValue = "xxh3-64 seeded with the page number";

// The schema version of the files this release writes (PRAGMA user_version).
constexpr int store_kSchemaVersion = 333;
static_assert(store_kSchemaVersion == QTVODB_SCHEMA_VERSION,
              "the store writes the schema version that odb_Version.h announces");
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
  // True when the file at `path` is in write-ahead-log mode, as files written by earlier
  // releases are: a writable open turns it to a rollback journal.
  static bool InLogMode(const std::string& path);
  // True when the pages of the file at `path` carry checksums (store_PageChecksum.h), as every
  // file this release creates does; files of earlier releases do not.
  static bool HasPageChecksums(const std::string& path);

  ~store_Database();
  store_Database(const store_Database&) = delete;
  store_Database& operator=(const store_Database&) = delete;

  const std::string& Path() const { return m_path; }
  // True when this object refuses writes: opened read-only, or a read-only view.
  bool ReadOnly() const { return m_readOnly; }
  // Another object on this one's connection, for one handle of the file: it reads what this
  // one has written, saved or not; a read-only view refuses every write, a writable one (of a
  // writable object only) writes and commits in the same transaction. Closing a view closes
  // only the view; closing this object closes every view of it. Throws when this object is
  // closed.
  std::shared_ptr<store_Database> View(bool readOnly);
  // True for a view made before a failure took the file back to its last commit: every call
  // that needs the file throws. The object that owns the connection is never retired: it holds
  // nothing written since.
  bool Retired() const;
  // A new view, like this one, of the file as it now is; for a retired view. Throws when closed.
  std::shared_ptr<store_Database> Renew();
  // True when `path` still names the file this object has open (the same device and inode): a
  // file deleted or replaced since the open is not. Reads no page and takes no lock.
  bool IsFileAt(const std::string& path) const;

  // Makes everything written since the last commit durable (on disk when it returns) and starts
  // the next transaction, flushing the deferred writers first. Refused on a read-only database.
  // A failure throws store_Error; when it Discarded() the file is as last committed (see above).
  // A commit that failed only at its last step (the sync of its emptied journal) has put the
  // save in the file: it is committed once more to have it confirmed, and if that fails too the
  // error is Unconfirmed(): the file and the objects that wrote it hold the save, which the
  // next Commit makes sure of. Otherwise (the file stayed locked by readers) everything is kept
  // for the next Commit.
  void Commit();
  // Discards what was written since the last commit, deferred writes included.
  void Rollback();
  // Holds `writer` until the next Commit (which flushes it) or Rollback or Close (which discard
  // it). A writer defers itself once per save, when it first holds something.
  void Defer(std::shared_ptr<store_Deferred> writer);
  // Discards what was written since the last commit and closes the file; every later call
  // throws. Handles that still share this object see a closed database.
  void Close();
  bool IsOpen() const;

  // Identity: a random identity and the creation time, fixed at creation.
  std::string CreationStamp();
  // The value of a header key; empty when the file has none. A key that its index misses but its
  // table holds throws store_Damaged.
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
  sqlite3* Connection() const;
  store_Statement Sql(const char* sql);
  // Throws the store_Error for SQLite's result `rc` of `what` ("step", "write an array chunk"),
  // first taking the file back to its last commit when the failure broke the transaction (see
  // above). Every failed call on the connection ends here.
  [[noreturn]] void Fail(int rc, const char* what);
  // The same for a failure that cannot be thrown (in a destructor): the transaction is taken
  // back if the failure broke it, and the next call reports the retirement.
  void NoteFailure(int rc);

  // Asks the system to start writing the file's new pages to disk now, without waiting: a
  // large transaction spills its pages into the file as it grows, and pages already on their
  // way make the wait for the disk at Commit shorter. Every 16 MiB it also has a second thread
  // sync the file, so that most of the disk's flush is done before Commit asks for it.
  // Durability is Commit's alone; this only moves work earlier. Does nothing where the system
  // offers no such request.
  void StartWriteback();

  // True the first time `key` is given to this file's connection (any view of it), false after:
  // how the library tells the user something once per open file rather than at every call.
  bool FirstNotice(const std::string& key);

 private:
  struct Shared;

  store_Database(const std::string& path, bool readOnly);
  // Open without the check of the checksum mark.
  static std::shared_ptr<store_Database> OpenConnection(const std::string& path, bool readOnly);
  // Opens the connection, to `name` (an SQLite URI) when given, else to the path.
  void Connect(int flags, const std::string& name = std::string());
  // Sets the writer's pragmas and opens the transaction that the first save commits.
  void StartWriting();
  void Execute(const char* sql);
  // The writer's transaction, begun when a failure left none; throws when it cannot be.
  void RequireTransaction(Shared& conn);
  // After a commit that failed (with `rc`) once its journal was emptied: commits once more to
  // have the save confirmed on disk, and throws an Unconfirmed() error when that fails too.
  void ConfirmSave(Shared& conn, int rc);
  void RequireWritable(const char* what) const;
  void DiscardDeferred();
  // The open connection; throws "The database is closed." once it is closed.
  Shared& Open() const;
  // The first page of the array chunks table, for direct reads.
  std::int64_t ChunkTableRoot();

  std::string m_path;
  bool m_readOnly;
  bool m_view = false;  // a view of another object's connection
  // Transactions of the connection lost when this view was made (see Retired).
  std::uint64_t m_losses = 0;
  // Shared with the views of this object; null once this object is closed.
  std::shared_ptr<Shared> m_conn;
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
