// odb_DiscretePartRepositoryData: where a database's part repository reads and writes its parts,
// and how their elements find their section categories; internal.
#ifndef ODB_DISCRETEPARTREPOSITORYDATA_H
#define ODB_DISCRETEPARTREPOSITORYDATA_H

#include <cstdint>
#include <memory>
#include <utility>

#include "odb_DiscretePartRepository.h"
#include "odb_SectionCategoryData.h"

class store_Database;

struct odb_DiscretePartRepositoryData {
  std::shared_ptr<store_Database> store;
  odb_CategoryLookup categories;
};

// Reaches the internals of part repositories from the implementation.
struct odb_DiscretePartRepositoryAccess {
  // The repository of the database file `store`.
  static odb_DiscretePartRepository Make(std::shared_ptr<store_Database> store,
                                         odb_CategoryLookup categories) {
    odb_DiscretePartRepository parts;
    parts.m_data = std::make_shared<const odb_DiscretePartRepositoryData>(
        odb_DiscretePartRepositoryData{std::move(store), std::move(categories)});
    return parts;
  }
  static void Load(odb_DiscretePartRepository& parts) { parts.Load(); }
  // The part stored under `id` (an element's or node's meshIndex); null when none is held.
  static const odb_DiscretePart* FindById(const odb_DiscretePartRepository& parts, std::int64_t id);
};

#endif
