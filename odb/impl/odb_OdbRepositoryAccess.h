// odb_OdbRepositoryAccess: what the registry keeps beside its map of names, and the operations
// that the functions creating, opening and closing databases use but programs do not; internal.
//
// One store object per open file, shared by the names that open it (each name gets a view of
// it), and the objects of the names closed so far, which callers may still hold references to.
#ifndef ODB_ODBREPOSITORYACCESS_H
#define ODB_ODBREPOSITORYACCESS_H

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "cow_Btree.h"
#include "odb_OdbRepository.h"
#include "odb_String.h"

class store_Database;

struct odb_OdbRepositoryFiles {
  std::map<std::string, std::shared_ptr<store_Database>> open;
  std::vector<cow_BtreeLink<odb_String, odb_Odb>> closed;
};

struct odb_OdbRepositoryAccess {
  // Closes the file at `path` for every name that uses it, deleting the lock file of a writable
  // one, and drops those names.
  static void CloseOdb(odb_OdbRepository& registry, const odb_String& path);
  // The open file at `path` shared by the names that use it, or null.
  static std::shared_ptr<store_Database> OpenFile(const odb_OdbRepository& registry,
                                                  const odb_String& path);
  static void AddOpenFile(odb_OdbRepository& registry, const odb_String& path,
                          std::shared_ptr<store_Database> file);
  // The names whose database has `path` (every name for an empty path).
  static std::vector<odb_String> NamesOf(const odb_OdbRepository& registry, const odb_String& path);
  // Drops `name` from the map, keeping its object alive, closed, for the references to it.
  static void Drop(odb_OdbRepository& registry, const odb_String& name);
  // Reports a catalogue warning to this thread's warning sink.
  static void Warn(odb_OdbRepositoryEnm code, std::initializer_list<odb_String> args);
  // The lock file of `path`.
  static odb_String LockFileOf(const odb_String& path);
};

#endif
