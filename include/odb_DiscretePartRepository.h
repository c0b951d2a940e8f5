// odb_DiscretePartRepository: the parts of a database, by name, with the creator of new parts.
//
// The database object owns it; it holds part handles, which share their data with any copies a
// caller keeps. Load reads one row per part and nothing of the meshes. One thread at a time.
#ifndef ODB_DISCRETEPARTREPOSITORY_H
#define ODB_DISCRETEPARTREPOSITORY_H

#include <cstdint>
#include <functional>
#include <memory>

#include "odb_DiscretePart.h"
#include "odb_Enum.h"
#include "odb_Export.h"
#include "odb_Repository.h"
#include "odb_SectionCategory.h"
#include "odb_String.h"

class store_Database;

class QTVODB_EXPORT odb_DiscretePartRepository
    : public odb_Repository<odb_String, odb_DiscretePart> {
 public:
  // Resolves the name of a section category stored with elements to the database's category.
  using CategoryLookup = std::function<odb_SectionCategory(const odb_String&)>;

  // A repository of no database: Load finds nothing and the creator throws.
  odb_DiscretePartRepository() = default;
  odb_DiscretePartRepository(std::shared_ptr<store_Database> store, CategoryLookup categories);

  // Adds a part for every stored part not yet held.
  void Load();
  // Writes a new, empty part and holds it; throws "A part named "NAME" already exists." for a
  // name already held.
  odb_DiscretePart& DiscretePart(const odb_String& name, odb_Enum::odb_DimensionEnum dimension,
                                 odb_Enum::odb_PartTypeEnum type);
  // The part stored under `id` (an element's or node's meshIndex); null when none is held.
  const odb_DiscretePart* FindById(std::int64_t id) const;

 private:
  odb_DiscretePart MakePart(std::int64_t id, const odb_String& name, int dimension, int type);

  std::shared_ptr<store_Database> m_store;
  CategoryLookup m_categories;
};

using odb_DiscretePartRepositoryIT = odb_RepositoryIterator<odb_String, odb_DiscretePart>;

#endif
