// store_Conversion: a copy of a database file of an earlier schema version, open while the
// conversions to the current version rewrite it.
//
// Everything the conversions run, and the new version mark, is one transaction: the file
// changes only when Commit succeeds, and a conversion that fails (or an object destroyed before
// Commit) leaves it as it was. The file is read and written through the checksum VFS
// (store_PageChecksum.h), so that pages that carry checksums keep matching ones. One thread at a
// time.
#ifndef STORE_CONVERSION_H
#define STORE_CONVERSION_H

#include <string>

struct sqlite3;

class store_Conversion {
 public:
  // Opens the file at `path` for writing and begins the conversion's transaction. Throws
  // store_Error with SQLite's reason when the file cannot be opened.
  explicit store_Conversion(const std::string& path);
  // Closes the file, discarding what was not committed.
  ~store_Conversion();
  store_Conversion(const store_Conversion&) = delete;
  store_Conversion& operator=(const store_Conversion&) = delete;

  // Runs `sql`, one statement or several separated by semicolons, on the file. Throws
  // store_Error with SQLite's reason.
  void Run(const char* sql);
  // Marks the file with schema version `version` and commits the conversion. Throws store_Error
  // with SQLite's reason when the file could not be written.
  void Commit(int version);

 private:
  sqlite3* m_db = nullptr;
};

#endif
