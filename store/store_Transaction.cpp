// store_Database: its transactions, and what a failure of the file does to them (see the
// header's "Failures of the disk").
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "store_Database.h"
#include "store_Shared.h"
#include "store_Statement.h"

namespace {

const char kRetired[] =
    "This object was reached before a failure took the database back to its last save: reach "
    "it again from the database.";
const char kLostUnseen[] =
    "The database went back to its last save: what was written since is discarded.";

// True when the journal beside the file at `path` is empty or gone: a commit empties it last.
bool JournalEmptied(const std::string& path) {
  struct stat st;
  if (::stat((path + "-journal").c_str(), &st) != 0) return errno == ENOENT;
  return st.st_size == 0;
}

// The change counter in the header of the file open on `fd` (big-endian, at offset 24).
bool ReadChangeCounter(int fd, std::uint32_t& counter) {
  unsigned char bytes[4];
  if (fd < 0 || ::pread(fd, bytes, sizeof bytes, 24) != static_cast<ssize_t>(sizeof bytes))
    return false;
  counter = (std::uint32_t(bytes[0]) << 24) | (std::uint32_t(bytes[1]) << 16) |
            (std::uint32_t(bytes[2]) << 8) | bytes[3];
  return true;
}

}  // namespace

int store_Database::Shared::Begin() {
  int rc = sqlite3_exec(db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  inTransaction = rc == SQLITE_OK;
  // Once begun, the file on disk is as the last commit left it (a hot journal is rolled back
  // first).
  counterKnown = inTransaction && file && ReadChangeCounter(file->Descriptor(), committedCounter);
  return rc;
}

bool store_Database::Shared::Landed(const std::string& path) const {
  // A commit that fails before it empties its journal is rolled back from it, by SQLite at once
  // or at the next statement; one that SQLite rolled back cleanly empties the journal too, but
  // leaves the last commit's counter.
  std::uint32_t now = 0;
  return counterKnown && JournalEmptied(path) && file &&
         ReadChangeCounter(file->Descriptor(), now) && now != committedCounter;
}

bool store_Database::Shared::Breaks(int rc) const {
  if (!writer || !inTransaction) return false;
  const int primary = rc & 0xff;
  return primary == SQLITE_IOERR || primary == SQLITE_FULL || primary == SQLITE_NOMEM ||
         sqlite3_get_autocommit(db);
}

void store_Database::Shared::Lose() {
  DiscardDeferred();
  ++losses;
  inTransaction = false;
  if (sync.joinable()) sync.join();
  if (!sqlite3_get_autocommit(db)) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  Begin();
}

store_Database::Shared& store_Database::Open() const {
  if (!m_conn || !m_conn->db) throw store_Error("The database is closed.");
  if (m_view && m_losses != m_conn->losses) throw store_Error(kRetired);
  return *m_conn;
}

bool store_Database::Retired() const {
  return m_view && IsOpen() && m_losses != m_conn->losses;
}

std::shared_ptr<store_Database> store_Database::Renew() {
  if (!IsOpen()) throw store_Error("The database is closed.");
  std::shared_ptr<store_Database> view(new store_Database(m_path, m_readOnly));
  view->m_conn = m_conn;
  view->m_view = true;
  view->m_losses = m_conn->losses;
  return view;
}

void store_Database::RequireTransaction(Shared& conn) {
  if (!conn.writer) return;
  // A transaction that ended without the store knowing would let this statement commit on its
  // own: take it as lost, as the failure that ended it should have been.
  if (conn.inTransaction && sqlite3_get_autocommit(conn.db)) {
    conn.Lose();
    throw store_Error(std::string(kLostUnseen), "the transaction ended unexpectedly", true);
  }
  if (!conn.inTransaction) {
    int rc = conn.Begin();
    if (rc != SQLITE_OK) Fail(rc, "start writing");
  }
}

void store_Database::Fail(int rc, const char* what) {
  Shared* conn = m_conn ? m_conn.get() : nullptr;
  sqlite3* db = conn ? conn->db : nullptr;
  // Read before the rollback below runs statements of its own.
  const std::string cause =
      db ? store_Reason(rc, sqlite3_errmsg(db)) : store_Reason(rc, sqlite3_errstr(rc));
  if (db && conn->Breaks(rc)) {
    conn->Lose();
    std::string reason = cause.empty() ? std::string("The file failed") : cause;
    reason[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(reason[0])));
    throw store_Error(reason + ": what was written since the last save is discarded.", cause, true);
  }
  // A page that fails its checksum, or that SQLite finds malformed, is damage, which the
  // object layer names by what it was reading.
  store_ThrowIfDamaged(db, rc);
  throw store_Error(std::string(what) + " failed: " + cause, cause, false);
}

void store_Database::NoteFailure(int rc) {
  if (m_conn && m_conn->db && m_conn->Breaks(rc)) m_conn->Lose();
}

void store_Database::Commit() {
  RequireWritable("save");
  Shared& conn = Open();
  // After a failure that left no transaction there is nothing to commit but what was written
  // since, inside the transaction begun then.
  RequireTransaction(conn);
  // A writer that fails leaves itself and those after it deferred, so that the failed save can
  // be retried; those flushed before it have written their rows into the open transaction. A
  // failure that discarded the transaction took every deferred writer with it.
  std::vector<std::shared_ptr<store_Deferred>> pending;
  pending.swap(conn.deferred);
  std::size_t flushed = 0;
  try {
    for (; flushed < pending.size(); ++flushed) pending[flushed]->Flush(*this);
  } catch (const store_Error& e) {
    if (e.Discarded()) {
      for (std::size_t i = flushed; i < pending.size(); ++i) pending[i]->Discard();
    } else {
      conn.deferred.insert(conn.deferred.begin(), pending.begin() + flushed, pending.end());
    }
    throw;
  } catch (...) {
    conn.deferred.insert(conn.deferred.begin(), pending.begin() + flushed, pending.end());
    throw;
  }
  if (conn.sync.joinable()) conn.sync.join();
  // A commit that fails with an I/O error or a full disk is taken back by SQLite (the journal
  // puts back every page the save changed); one that readers kept waiting keeps its
  // transaction, to be committed by the next save.
  int rc = sqlite3_exec(conn.db, "COMMIT", nullptr, nullptr, nullptr);
  if ((rc & 0xff) == SQLITE_IOERR && conn.Landed(m_path)) {
    ConfirmSave(conn, rc);
    return;
  }
  if (rc != SQLITE_OK) Fail(rc, "save");
  conn.inTransaction = false;
  // The save is done even if the next transaction cannot begin now: the next statement begins it.
  conn.Begin();
}

void store_Database::Rollback() {
  if (m_readOnly) return;
  Shared& conn = Open();
  DiscardDeferred();
  if (!sqlite3_get_autocommit(conn.db)) Execute("ROLLBACK");
  conn.inTransaction = false;
  RequireTransaction(conn);
}

void store_Database::ConfirmSave(Shared& conn, int rc) {
  sqlite3* db = conn.db;
  const std::string cause = store_Reason(rc, sqlite3_errmsg(db));
  // The failed commit left nothing to roll back: its journal is empty, so the file holds the
  // save. Committing the schema version set again as it is (SQLite skips a row rewritten
  // unchanged, but always writes the header) syncs the journal and the file once more; once
  // that succeeds the save is on disk. A confirmation that fails puts back only the header.
  if (!sqlite3_get_autocommit(db)) sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  conn.inTransaction = false;
  const std::string touch = "PRAGMA user_version = " + std::to_string(store_kSchemaVersion);
  const bool confirmed = conn.Begin() == SQLITE_OK &&
                         sqlite3_exec(db, touch.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK &&
                         sqlite3_exec(db, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK;
  if (!confirmed && !sqlite3_get_autocommit(db))
    sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
  conn.inTransaction = false;
  conn.Begin();
  if (confirmed) return;
  std::string reason = cause;
  reason[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(reason[0])));
  throw store_Error(reason +
                        ": the file holds the save, but the disk did not confirm that it is on "
                        "it; the next save that succeeds confirms it.",
                    cause, false, true);
}
