#include "store_Statement.h"

#include "store_PageChecksum.h"

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
    case SQLITE_IOERR_DATA:
      return "a page of the file does not match its checksum: the file is damaged";
    default:
      return "an I/O error occurred on the file (" + sqlite + ")";
  }
}

void store_ThrowIfDamaged(sqlite3* db, int rc) {
  const char* name = db ? sqlite3_db_filename(db, "main") : nullptr;
  const std::string path = name ? name : "";
  if (rc == SQLITE_IOERR_DATA) {
    const std::string page = std::to_string(store_LastDamagedPage());
    throw store_Damaged(path, "page " + page + " does not match its checksum",
                        "do not match their checksum (page " + page + ")");
  }
  if ((rc & 0xff) == SQLITE_CORRUPT || (rc & 0xff) == SQLITE_NOTADB) {
    const std::string reason = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
    throw store_Damaged(path, "SQLite finds it malformed (" + reason + ")",
                        "are malformed (" + reason + ")");
  }
}

void store_ThrowDamagedSubject(const store_Damaged& damage, const std::string& subject) {
  throw store_Error("The file " + damage.Path() + " is damaged: " + subject + " " +
                    damage.Predicate() + ".");
}

void store_ThrowBadValue(const store_Database& db, const char* table, const char* column,
                         const std::string& what) {
  const std::string where = std::string(table) + "." + column + " holds " + what;
  throw store_Damaged(db.Path(), where, "hold a value no writer writes (" + where + ")");
}

void store_Statement::RequireNotNull(const char* table,
                                     std::initializer_list<const char*> columns) const {
  int col = 0;
  for (const char* column : columns) {
    if (IsNull(col++)) {
      const std::string where = std::string(table) + "." + column + " holds NULL";
      throw store_Damaged(m_owner.Path(), where, "hold a value no writer writes (" + where + ")");
    }
  }
}

void store_Check(sqlite3* db, int rc, const char* what) {
  if (rc == SQLITE_OK || rc == SQLITE_ROW || rc == SQLITE_DONE) return;
  store_ThrowIfDamaged(db, rc);
  std::string reason = db ? sqlite3_errmsg(db) : sqlite3_errstr(rc);
  throw store_Error(std::string(what) + " failed: " + store_Reason(rc, reason));
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
