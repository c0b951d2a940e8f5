// ddb_Ddb: the data database behind an open odb_Odb (its file, as the store holds it), as an
// opaque handle.
//
// odb_Odb::ddb() returns one; the registry gives one to the database object it builds. A handle
// shares the store's object of the file with the database (copying it costs one reference
// count) and keeps that object alive, but offers nothing of it: programs read and write the
// file through the database object. Two handles are equal when they are the same database's
// view of the file. One thread at a time.
#ifndef DDB_DDB_H
#define DDB_DDB_H

#include "odb_Export.h"
#include "uti_SharedPtr.h"

struct ddb_DdbData;

class QTVODB_EXPORT ddb_Ddb {
 public:
  // The handle of no file.
  ddb_Ddb();
  ~ddb_Ddb();
  ddb_Ddb(const ddb_Ddb& other);
  ddb_Ddb& operator=(const ddb_Ddb& other);

  // True for the handle of no file.
  bool isNull() const;
  bool operator==(const ddb_Ddb& other) const;
  bool operator!=(const ddb_Ddb& other) const { return !(*this == other); }

 private:
  friend struct ddb_DdbAccess;

  std::shared_ptr<const ddb_DdbData> m_data;
};

#endif
