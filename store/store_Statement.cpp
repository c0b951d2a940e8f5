#include "store_Statement.h"

std::string store_Reason(int rc, const std::string& sqlite) {
  switch (rc & 0xff) {
    case SQLITE_BUSY:
      return "the file stayed locked by another process (a save in progress there) for " +
             std::to_string(store_kBusyMilliseconds / 1000) + " s";
    case SQLITE_FULL:
      return "the disk is full";
    case SQLITE_NOMEM:
      return "there was not enough memory";
    case SQLITE_IOERR:
      break;
    default:
      return sqlite;
  }
  // A full disk is told by SQLITE_FULL alone: the system's errno that SQLite keeps is not
  // renewed by every failure (not by a failed commit), so it may belong to an earlier one.
  switch (rc) {
    case SQLITE_IOERR_WRITE:
      return "an I/O error occurred while writing the file";
    case SQLITE_IOERR_FSYNC:
    case SQLITE_IOERR_DIR_FSYNC:
      return "an I/O error occurred while flushing the file to disk";
    case SQLITE_IOERR_READ:
    case SQLITE_IOERR_SHORT_READ:
      return "an I/O error occurred while reading the file";
    case SQLITE_IOERR_TRUNCATE:
      return "an I/O error occurred while truncating the file";
    case SQLITE_IOERR_DELETE:
      return "an I/O error occurred while deleting the file's journal";
    case SQLITE_IOERR_NOMEM:
      return "there was not enough memory";
    default:
      return "an I/O error occurred on the file (" + sqlite + ")";
  }
}

store_StatementCache::~store_StatementCache() {
  for (auto& entry : m_statements) sqlite3_finalize(entry.second);
}

sqlite3_stmt* store_StatementCache::Get(const char* sql, int& rc) {
  auto found = m_statements.find(sql);
  if (found != m_statements.end()) return found->second;
  sqlite3_stmt* stmt = nullptr;
  rc = sqlite3_prepare_v3(m_db, sql, -1, SQLITE_PREPARE_PERSISTENT, &stmt, nullptr);
  if (rc != SQLITE_OK) {
    sqlite3_finalize(stmt);
    return nullptr;
  }
  m_statements.emplace(sql, stmt);
  return stmt;
}
