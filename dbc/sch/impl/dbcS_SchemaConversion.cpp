#include "dbcS_SchemaConversion.h"

#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <string>

#include "odb_Exception.h"
#include "odb_Exceptions.h"
#include "odb_Upgrade.h"
#include "store_Conversion.h"
#include "store_Database.h"

namespace {

const char kSource[] = "dbc/sch/impl/dbcS_SchemaConversion";

std::vector<dbcS_Conversion>& Table() {
  static std::vector<dbcS_Conversion> table;
  return table;
}

const dbcS_Conversion* ConversionFrom(int version) {
  for (const dbcS_Conversion& c : Table())
    if (c.fromVersion == version) return &c;
  return nullptr;
}

[[noreturn]] void CannotConvert(const odb_String& path, const std::string& why, int site) {
  odb_Exception(odb_Exceptions_CONVERSION_FAILED, path, odb_String(why.c_str()))
      .Throw(kSource, site);
}

}  // namespace

const std::vector<dbcS_Conversion>& dbcS_Conversions() {
  return Table();
}

void dbcS_Register(const dbcS_Conversion& conversion) {
  for (dbcS_Conversion& c : Table())
    if (c.fromVersion == conversion.fromVersion) {
      c = conversion;
      return;
    }
  Table().push_back(conversion);
}

// No conversion exists yet: files of version 333 are the first this library writes.
void dbcS_initialize() {
  Table().clear();
}

void dbcS_finalize() {
  Table().clear();
}

bool isUpgradeRequiredForOdb(const odb_String& path) {
  try {
    return store_Database::SchemaVersion(path.CStr()) < store_kSchemaVersion;
  } catch (const store_Error& e) {
    odb_Exception(odb_Exceptions_UPGRADE_CHECK_FAILED, odb_String(), odb_String(e.what()))
        .Throw(kSource, 52);
  }
}

void upgradeOdb(const odb_String& oldPath, const odb_String& newPath) {
  int version = 0;
  try {
    version = store_Database::SchemaVersion(oldPath.CStr());
  } catch (const store_Error& e) {
    CannotConvert(oldPath, e.what(), 63);
  }
  if (version >= store_kSchemaVersion)
    CannotConvert(oldPath,
                  "it has schema version " + std::to_string(version) +
                      ", which needs no conversion to version " +
                      std::to_string(store_kSchemaVersion),
                  67);
  for (int v = version; v < store_kSchemaVersion; ++v)
    if (!ConversionFrom(v))
      CannotConvert(oldPath, "no conversion from schema version " + std::to_string(v) + " is known",
                    71);

  std::error_code error;
  std::filesystem::copy_file(oldPath.CStr(), newPath.CStr(),
                             std::filesystem::copy_options::overwrite_existing, error);
  if (error) CannotConvert(oldPath, error.message(), 77);
  // The copy is converted in one transaction, so that a failure leaves no half-converted file.
  std::unique_ptr<store_Conversion> file;
  try {
    file = std::make_unique<store_Conversion>(newPath.CStr());
  } catch (const store_Error& e) {
    CannotConvert(oldPath, e.what(), 83);
  }
  for (int v = version; v < store_kSchemaVersion; ++v) {
    try {
      ConversionFrom(v)->apply(*file);
    } catch (const store_Error& e) {
      CannotConvert(oldPath, e.what(), 87);
    }
  }
  try {
    file->Commit(store_kSchemaVersion);
  } catch (const store_Error&) {
    CannotConvert(oldPath, "the converted file could not be written", 92);
  }
}
