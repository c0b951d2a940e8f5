// odb_MaterialRepository: the materials of a database by name, with the creator and the reader
// that keep them in step with the database file.
//
// A named repository (odb_Repository: logarithmic lookups, iteration in ascending name order,
// O(1) copies) of material handles, which share their data with any copies a caller keeps. The
// database object owns its repository. Load reads every material in one query; the creator
// writes the new material at once. Entries are added only through Load and Material, so that
// what the repository holds is what the file holds: insert and remove are not offered. One
// thread at a time.
#ifndef ODB_MATERIALREPOSITORY_H
#define ODB_MATERIALREPOSITORY_H

#include "ddb_Ddb.h"
#include "odb_Export.h"
#include "odb_Material.h"
#include "odb_Repository.h"
#include "odb_String.h"

struct odb_MaterialRepositoryAccess;

class QTVODB_EXPORT odb_MaterialRepository : public odb_Repository<odb_String, odb_Material> {
 public:
  // A repository of no database: its creator throws.
  odb_MaterialRepository() = default;

  // Stores a new material with no properties given and returns it. Throws "Invalid material
  // name." for an empty name, "A material named "NAME" already exists." for a name already held
  // (a material's properties are set on the material, never by creating it again), "The
  // material repository belongs to no database." for a repository of no database, and the
  // store's refusal when the database is read-only. The reference stays valid until the
  // repository's entries change.
  odb_Material& Material(const odb_String& name);

 private:
  friend struct odb_MaterialRepositoryAccess;

  using odb_Repository::insert;
  using odb_Repository::remove;

  // Adds every stored entry not yet held.
  void Load();

  // The database file; of no file for a repository of no database.
  ddb_Ddb m_ddb;
};

using odb_MaterialRepositoryIT = odb_RepositoryIterator<odb_String, odb_Material>;

#endif
