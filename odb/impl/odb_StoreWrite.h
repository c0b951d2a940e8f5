// odb_StoreWrite: the check in front of every write that a model object makes through the
// store's write functions; internal.
#ifndef ODB_STOREWRITE_H
#define ODB_STOREWRITE_H

#include <memory>

#include "odb_Exception.h"
#include "store_Database.h"

// The store to write to. Throws `orphan` (for example "The material belongs to no database.")
// when there is none, and the store's own read-only refusal when the database was opened
// read-only. The store refuses every writing statement of a read-only database too (a read-only
// name may read through a writer's connection); checking here first refuses the call before it
// builds anything.
inline store_Database& odb_WritableStore(const std::shared_ptr<store_Database>& store,
                                         const char* orphan, const char* source, int site) {
  if (!store) odb_ThrowMessage(orphan, source, site);
  if (store->ReadOnly()) throw store_Error("The database is read-only: cannot write.");
  return *store;
}

#endif
