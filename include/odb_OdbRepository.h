// odb_OdbRepository: the registry of the databases open in this process, and the functions that
// create, open, save and close them.
//
// One registry per process (thr_GlobalSingleton), made on first use and destroyed by
// odb_finalize, which closes every database still open. It holds each database under the name
// the caller gave (the path when none), and owns the odb_Odb objects: Odb and openOdb return
// references that stay valid until the library is finalized. Once its name is closed, the object
// answers isOpen() (false), name(), path() and isReadOnly(), and throws "The database is
// closed." for the rest; what it read is let go at the close (a few hundred bytes stay until the
// registry is destroyed). A writable database has a lock file, its
// path with ".lck" appended, for as long as it is open; another open for writing that finds a
// lock file opens the database read-only instead.
//
// Paths are made absolute, with forward slashes and "." and ".." resolved, and compared byte by
// byte. Nothing here takes a lock: one thread at a time.
#ifndef ODB_ODBREPOSITORY_H
#define ODB_ODBREPOSITORY_H

#include "cow_Btree.h"
#include "odb_Export.h"
#include "odb_Odb.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "thr_GlobalSingleton.h"
#include "uti_SharedPtr.h"

struct odb_OdbRepositoryFiles;
struct odb_OdbRepositoryAccess;

// The messages of the registry.
enum odb_OdbRepositoryEnm : int {
  odb_OdbRepository_LOCK_FOUND = 0,      // %1$s lock file, %2$s database path
  odb_OdbRepository_NAME_EXISTS = 1,     // %s name
  odb_OdbRepository_PATH_OPEN = 2,       // %s path
  odb_OdbRepository_VERSION_PREFIX = 3,  // the analysis version written into a new file
  odb_OdbRepository_CANNOT_CREATE = 4,   // %1$s path, %2$s reason
  odb_OdbRepository_CANNOT_OPEN = 5,     // %1$s path, %2$s reason
  odb_OdbRepository_IN_USE = 6,          //
  odb_OdbRepository_NOT_WRITABLE = 7,    // %s path
  odb_OdbRepository_SAVE_READ_ONLY = 8,  //
  odb_OdbRepository_STAYS_READ_ONLY = 9  //
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_OdbRepositoryEnm, 1> {
  static const uti_LabelRow<odb_OdbRepositoryEnm> rows[];
};

class QTVODB_EXPORT odb_OdbRepository : public thr_GlobalSingleton<odb_OdbRepository> {
 public:
  odb_OdbRepository();
  // Closes every database still registered, in name order.
  ~odb_OdbRepository();

  // The registry, made on first use; the same object as
  // thr_GlobalSingleton<odb_OdbRepository>::Instance().
  static odb_OdbRepository& Instance();

  // Adds or replaces the database registered under `name`.
  void insert(const odb_String& name, const odb_Odb& odb);
  // The database of `name`, or the empty fallback database (nothing is thrown).
  odb_Odb& get(const odb_String& name);
  const odb_Odb& constGet(const odb_String& name) const;
  bool isMember(const odb_String& name) const;
  int size() const { return m_odbMap.Size(); }
  // Ends `name`: deletes the lock file of a writable database and closes the file when at most
  // two names share it (the file stays open for the others otherwise). An unknown name: nothing.
  void remove(const odb_String& name);
  // Drops every name whose database has this path.
  void RespondToCloseOdb(const odb_String& path);
  bool IsFileOpen(const odb_String& path) const;
  // True, with a warning, when the lock file of `path` (the path with ".lck" appended) exists.
  bool IsOdbLocked(const odb_String& path) const;
  // Creates the lock file of `path`; false when it cannot be written.
  bool LockOdb(const odb_String& path) const;
  // Deletes the lock file of `path`; false when there was none to delete.
  bool RemoveLock(const odb_String& path) const;
  const cow_Btree<odb_String, odb_Odb>& odbMap() const { return m_odbMap; }

 private:
  friend struct odb_OdbRepositoryAccess;

  cow_Btree<odb_String, odb_Odb> m_odbMap;
  // The open files by path, and the objects of the names closed so far.
  std::unique_ptr<odb_OdbRepositoryFiles> m_files;
  odb_Odb m_fallback;
};

// Walks the registry in name order. It walks the names registered when it was made (first()
// takes them again) and looks each database up as it goes, so that it never holds a share of the
// registry's map: a shared map would be copied by the next registration, moving the databases
// that callers hold references to.
class QTVODB_EXPORT odb_OdbRepositoryIT {
 public:
  explicit odb_OdbRepositoryIT(odb_OdbRepository& repository) : m_repository(repository) {
    first();
  }
  void first();
  void next() { ++m_i; }
  bool isDone() const { return m_i >= m_names.size(); }
  // The current name and database; past the end, an empty name and the fallback database.
  const odb_String& currentKey() const;
  const odb_Odb& currentValue() const { return m_repository.constGet(currentKey()); }

 private:
  odb_OdbRepository& m_repository;
  odb_SequenceString m_names;
  int m_i = 0;
};
// Creates a new database file at `path` (replacing any file there), registers it under `name`
// (the path when empty), writable, and returns it. Throws "A database named ('NAME') already
// exists.", "The path 'PATH' has an existing ddb associated with it." or "Cannot create file
// PATH. REASON".
QTVODB_EXPORT odb_Odb& Odb(const odb_String& name, const odb_String& analysisTitle,
                           const odb_String& description, const odb_String& path);
// Opens the file at `path` under its absolute path as name.
QTVODB_EXPORT odb_Odb& openOdb(const odb_String& path, bool readOnly = false);
// Opens the file at `path` under `name` (the path when empty). A file of an older schema throws
// code 0, of a newer one code 1; a file that cannot be read throws "Cannot open file PATH.
// REASON". A write open becomes read-only, with a warning, when a lock file exists or the file's
// permissions forbid writing. Opening a registered name again returns the same object.
QTVODB_EXPORT odb_Odb& openOdb(const odb_String& name, const odb_String& path,
                               bool readOnly = false);
// The same for two texts: without it, openOdb("name", "path") would take "path" as the bool.
inline odb_Odb& openOdb(const char* name, const char* path, bool readOnly = false) {
  return openOdb(odb_String(name), odb_String(path), readOnly);
}
// Commits the database; a read-only one warns and writes nothing. A save that fails warns why
// ("The database PATH was not saved: the disk is full. ...") and throws "Database save failed.";
// the database is then back at its last save, in its file and in memory: what was written since
// is gone, and handles reached before are retired (odb_Odb.h says what that means). Once the
// cause is gone, the same database writes and saves again.
QTVODB_EXPORT void saveOdb(odb_Odb& odb);
// Closes the database's file for every name that uses it; what was not saved is discarded.
QTVODB_EXPORT void closeOdb(odb_Odb& odb);

#endif
