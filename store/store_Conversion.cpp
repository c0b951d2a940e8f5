#include "store_Conversion.h"

#include <sqlite3.h>

#include "store_Database.h"
#include "store_PageChecksum.h"

store_Conversion::store_Conversion(const std::string& path) {
  if (sqlite3_open_v2(path.c_str(), &m_db, SQLITE_OPEN_READWRITE, store_ChecksumVfs()) !=
      SQLITE_OK) {
    const std::string reason = sqlite3_errmsg(m_db);
    sqlite3_close(m_db);
    throw store_Error(reason);
  }
  try {
    Run("BEGIN");
  } catch (...) {
    sqlite3_close(m_db);
    throw;
  }
}

store_Conversion::~store_Conversion() {
  sqlite3_close(m_db);
}

void store_Conversion::Run(const char* sql) {
  char* message = nullptr;
  const int rc = sqlite3_exec(m_db, sql, nullptr, nullptr, &message);
  if (rc == SQLITE_OK) return;
  const std::string reason = message ? message : sqlite3_errstr(rc);
  sqlite3_free(message);
  throw store_Error(reason);
}

void store_Conversion::Commit(int version) {
  Run(("PRAGMA user_version = " + std::to_string(version)).c_str());
  Run("COMMIT");
}
