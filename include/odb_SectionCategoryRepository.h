// odb_SectionCategoryRepository: the section categories of a database by name, with the creator
// and the reader that keep them in step with the database file.
//
// A named repository (odb_Repository: logarithmic lookups, iteration in ascending name order,
// O(1) copies) of category handles, which share their data with any copies a caller keeps. The
// database object owns its repository. Load reads every category and its section points in two
// queries; the creator writes the new category at once. Entries are added only through Load and
// SectionCategory, so that what the repository holds is what the file holds: insert and remove
// are not offered. One thread at a time.
#ifndef ODB_SECTIONCATEGORYREPOSITORY_H
#define ODB_SECTIONCATEGORYREPOSITORY_H

#include "ddb_Ddb.h"
#include "odb_Export.h"
#include "odb_Repository.h"
#include "odb_SectionCategory.h"
#include "odb_String.h"

struct odb_SectionCategoryRepositoryAccess;

class QTVODB_EXPORT odb_SectionCategoryRepository
    : public odb_Repository<odb_String, odb_SectionCategory> {
 public:
  // A repository of no database: its creator throws.
  odb_SectionCategoryRepository() = default;

  // Stores the category `name` and returns it. When the repository already holds that name it
  // returns the held category unchanged (its description included) and writes nothing: a solver
  // calls this once per part with the same category, and the parts share it. Throws "Invalid
  // section category name." for an empty name (the empty category means "none"), "The section
  // category repository belongs to no database." for a repository of no database, and the
  // store's refusal when the database is read-only. The reference stays valid until the
  // repository's entries change.
  odb_SectionCategory& SectionCategory(const odb_String& name, const odb_String& description);

 private:
  friend struct odb_SectionCategoryRepositoryAccess;

  using odb_Repository::insert;
  using odb_Repository::remove;

  // Adds every stored entry not yet held.
  void Load();

  // The database file; of no file for a repository of no database.
  ddb_Ddb m_ddb;
};

using odb_SectionCategoryRepositoryIT = odb_RepositoryIterator<odb_String, odb_SectionCategory>;

#endif
