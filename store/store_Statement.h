// store_Statement: a prepared SQLite statement with typed binding and reading, reset on reuse.
//
// Statements are prepared once per connection and kept by store_StatementCache, so that hot
// calls (a frame appended, a chunk written) cost a bind and a step, not a parse.
#ifndef STORE_STATEMENT_H
#define STORE_STATEMENT_H

#include <sqlite3.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <unordered_map>

#include "store_Database.h"

// How long a connection waits for another process's lock on the file: a reader for a writer to
// finish writing a save into the file, a writer for readers to let go before it commits.
constexpr int store_kBusyMilliseconds = 30000;

// What failed, in words for users, for SQLite's result `rc` with its message `sqlite`: the disk
// that is full or failed (and in which call), the lock that stayed taken, else SQLite's own
// message.
std::string store_Reason(int rc, const std::string& sqlite);
// Throws store_Damaged when `rc` says that SQLite found the file damaged: a page that failed its
// checksum, or one it finds malformed.
void store_ThrowIfDamaged(sqlite3* db, int rc);
// Throws store_Error with SQLite's own message for a failed call (store_Damaged for damage).
void store_Check(sqlite3* db, int rc, const char* what);

class store_Statement {
 public:
  // Failures are reported through `owner` (store_Database::Fail), which sees to a transaction
  // that the failure broke.
  store_Statement(store_Database& owner, sqlite3_stmt* stmt) : m_owner(owner), m_stmt(stmt) {
    sqlite3_reset(m_stmt);
  }
  ~store_Statement() {
    sqlite3_reset(m_stmt);
    sqlite3_clear_bindings(m_stmt);
  }
  store_Statement(const store_Statement&) = delete;
  store_Statement& operator=(const store_Statement&) = delete;

  store_Statement& Bind(int i, std::int64_t v) { return Checked(sqlite3_bind_int64(m_stmt, i, v)); }
  store_Statement& Bind(int i, int v) { return Checked(sqlite3_bind_int(m_stmt, i, v)); }
  store_Statement& Bind(int i, double v) { return Checked(sqlite3_bind_double(m_stmt, i, v)); }
  store_Statement& Bind(int i, const std::string& v) {
    return Checked(
        sqlite3_bind_text(m_stmt, i, v.data(), static_cast<int>(v.size()), SQLITE_TRANSIENT));
  }
  // The bytes must stay alive until the statement has been stepped.
  store_Statement& BindBlob(int i, const void* data, int bytes) {
    return Checked(sqlite3_bind_blob(m_stmt, i, data, bytes, SQLITE_STATIC));
  }

  // True while a row is available; false when done.
  bool Step() {
    int rc = sqlite3_step(m_stmt);
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    // Reset first, so that the statement holds nothing when the failure's rollback runs; the
    // connection keeps the error's message.
    sqlite3_reset(m_stmt);
    m_owner.Fail(rc, "step");
  }
  // Runs a statement that returns no rows.
  void Run() { Step(); }

  std::int64_t Int64(int col) const { return sqlite3_column_int64(m_stmt, col); }
  int Int(int col) const { return sqlite3_column_int(m_stmt, col); }
  double Double(int col) const { return sqlite3_column_double(m_stmt, col); }
  std::string Text(int col) const {
    const unsigned char* text = sqlite3_column_text(m_stmt, col);
    return text
               ? std::string(reinterpret_cast<const char*>(text), sqlite3_column_bytes(m_stmt, col))
               : std::string();
  }
  const void* Blob(int col) const { return sqlite3_column_blob(m_stmt, col); }
  bool IsNull(int col) const { return sqlite3_column_type(m_stmt, col) == SQLITE_NULL; }
  // Throws store_Damaged when one of the row's first columns.size() columns, which `columns`
  // names, is NULL: a damaged row reads as NULLs, which read as 0 or "" otherwise.
  void RequireNotNull(const char* table, std::initializer_list<const char*> columns) const;
  int Bytes(int col) const { return sqlite3_column_bytes(m_stmt, col); }

 private:
  store_Statement& Checked(int rc) {
    if (rc != SQLITE_OK) m_owner.Fail(rc, "bind");
    return *this;
  }
  store_Database& m_owner;
  sqlite3_stmt* m_stmt;
};

// Prepared statements of one connection, keyed by their SQL text.
class store_StatementCache {
 public:
  explicit store_StatementCache(sqlite3* db) : m_db(db) {}
  ~store_StatementCache();
  store_StatementCache(const store_StatementCache&) = delete;
  store_StatementCache& operator=(const store_StatementCache&) = delete;

  // The statement of `sql`, prepared on first use; null, with SQLite's result in `rc`, when it
  // cannot be prepared.
  sqlite3_stmt* Get(const char* sql, int& rc);

 private:
  sqlite3* m_db;
  std::unordered_map<std::string, sqlite3_stmt*> m_statements;
};

#endif
