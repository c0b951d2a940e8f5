// ddb_DdbData: what a ddb_Ddb handle holds, and how the implementation makes and opens one;
// internal.
#ifndef DDB_DDBDATA_H
#define DDB_DDBDATA_H

#include <memory>

#include "ddb_Ddb.h"

class store_Database;

struct ddb_DdbData {
  std::shared_ptr<store_Database> store;
};

struct ddb_DdbAccess {
  // The handle of `store` (of no file when null).
  static ddb_Ddb Make(std::shared_ptr<store_Database> store);
  // The store's object of the file; null for the handle of no file.
  static const std::shared_ptr<store_Database>& Store(const ddb_Ddb& ddb);
};

#endif
