#include "dbcS_SchemaConversion.h"

#include <sqlite3.h>

#include <fstream>

#include "OdbSession.h"
#include "odb_OdbData.h"
#include "odb_OdbRepository.h"
#include "odb_Upgrade.h"
#include "store_Conversion.h"
#include "store_Database.h"
#include "store_PageChecksum.h"

namespace {

using SchemaConversionUpgrade = OdbSession;

std::string OldFile(const TempDir& dir) {
  std::string path = dir.file("old.odb");
  closeOdb(Odb("", "", "", path.c_str()));
  // Through the checksum VFS, so that the first page keeps a checksum that matches.
  sqlite3* db = nullptr;
  sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE, store_ChecksumVfs());
  sqlite3_exec(db, "PRAGMA user_version = 332", nullptr, nullptr, nullptr);
  sqlite3_close(db);
  return path;
}

TEST_F(SchemaConversionUpgrade, OlderFilesAreDetectedAndRefusedWithoutAConversion) {
  std::string path = OldFile(m_dir);
  EXPECT_TRUE(isUpgradeRequiredForOdb(path.c_str()));
  std::string current = m_dir.file("new.odb");
  closeOdb(Odb("", "", "", current.c_str()));
  EXPECT_FALSE(isUpgradeRequiredForOdb(current.c_str()));
  EXPECT_EQ(MessageOf([&] { isUpgradeRequiredForOdb(m_dir.file("none.odb").c_str()); }),
            "isUpgradeRequiredForOdb failed, No such file or directory.");
  EXPECT_EQ(MessageOf([&] { upgradeOdb(path.c_str(), m_dir.file("up.odb").c_str()); }),
            "cannot convert database " + path + ", no conversion from schema version 332 is known");
  EXPECT_EQ(MessageOf([&] { upgradeOdb(current.c_str(), m_dir.file("up.odb").c_str()); }),
            "cannot convert database " + current +
                ", it has schema version 333, which needs no conversion to version 333");
  EXPECT_FALSE(Exists(m_dir.file("up.odb")));
}

TEST_F(SchemaConversionUpgrade, RegisteredConversionsRunOnACopy) {
  std::string path = OldFile(m_dir);
  dbcS_Register(
      {332, "adds a table", [](store_Conversion& file) { file.Run("CREATE TABLE added(x)"); }});
  std::string upgraded = m_dir.file("up.odb");
  upgradeOdb(path.c_str(), upgraded.c_str());
  EXPECT_EQ(store_Database::SchemaVersion(path), 332) << "the old file is left as it was";
  EXPECT_EQ(store_Database::SchemaVersion(upgraded), 333);
  odb_Odb& odb = openOdb(upgraded.c_str(), true);
  sqlite3_stmt* q = nullptr;
  EXPECT_EQ(sqlite3_prepare_v2(odb_OdbAccess::Store(odb)->Connection(), "SELECT x FROM added", -1,
                               &q, nullptr),
            SQLITE_OK);
  sqlite3_finalize(q);
}

TEST_F(SchemaConversionUpgrade, AFailingConversionIsRefusedAndLeavesTheCopyUnconverted) {
  std::string path = OldFile(m_dir);
  dbcS_Register({332, "fails half-way", [](store_Conversion& file) {
                   file.Run("CREATE TABLE added(x)");
                   file.Run("INSERT INTO missing VALUES (1)");
                 }});
  std::string upgraded = m_dir.file("up.odb");
  EXPECT_EQ(MessageOf([&] { upgradeOdb(path.c_str(), upgraded.c_str()); }),
            "cannot convert database " + path + ", no such table: missing");
  EXPECT_EQ(store_Database::SchemaVersion(upgraded), 332);
  sqlite3* db = nullptr;
  sqlite3_open_v2(upgraded.c_str(), &db, SQLITE_OPEN_READONLY, store_ChecksumVfs());
  sqlite3_stmt* q = nullptr;
  EXPECT_NE(sqlite3_prepare_v2(db, "SELECT x FROM added", -1, &q, nullptr), SQLITE_OK)
      << "what ran before the failure is not kept";
  sqlite3_finalize(q);
  sqlite3_close(db);
}

}  // namespace
