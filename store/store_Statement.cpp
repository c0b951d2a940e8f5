#include "store_Statement.h"

std::string store_Reason(int rc, const std::string& sqlite) {
  if ((rc & 0xff) == SQLITE_BUSY)
    return "the file stayed locked by another process (a save in progress there) for " +
           std::to_string(store_kBusyMilliseconds / 1000) + " s";
  return sqlite;
}

void store_Check(sqlite3* db, int rc, const char* what) {
  if (rc == SQLITE_OK || rc == SQLITE_ROW || rc == SQLITE_DONE) return;
  std::string reason = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
  throw store_Error(std::string(what) + " failed: " + store_Reason(rc, reason));
}

store_StatementCache::~store_StatementCache() {
  for (auto& entry : m_statements) sqlite3_finalize(entry.second);
}

sqlite3_stmt* store_StatementCache::Get(const char* sql) {
  auto found = m_statements.find(sql);
  if (found != m_statements.end()) return found->second;
  sqlite3_stmt* stmt = nullptr;
  store_Check(m_db, sqlite3_prepare_v3(m_db, sql, -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr),
              "prepare");
  m_statements.emplace(sql, stmt);
  return stmt;
}
