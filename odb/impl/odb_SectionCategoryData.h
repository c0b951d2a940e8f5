// odb_SectionCategoryData: what a section-category handle shares with its copies; internal.
#ifndef ODB_SECTIONCATEGORYDATA_H
#define ODB_SECTIONCATEGORYDATA_H

#include <cstdint>
#include <functional>
#include <memory>

#include "ddb_DdbData.h"
#include "odb_SectionCategoryRepository.h"
#include "odb_SectionPoint.h"
#include "odb_String.h"
#include "store_Database.h"

struct odb_SectionCategoryData {
  std::shared_ptr<store_Database> store;
  std::int64_t id = 0;  // section_category.id
  odb_String name;
  odb_String description;
  odb_SequenceSectionPoint points;  // ascending number, as the store orders them
};

// Resolves the name of a section category stored with elements to the database's category; the
// empty category once the database is gone.
using odb_CategoryLookup = std::function<odb_SectionCategory(const odb_String&)>;

// Reaches the internals of section categories and of their repository from the implementation.
struct odb_SectionCategoryAccess {
  static odb_SectionCategory Make(std::shared_ptr<odb_SectionCategoryData> data) {
    return odb_SectionCategory(std::move(data));
  }
};

struct odb_SectionCategoryRepositoryAccess {
  // The repository of the database file `store`.
  static odb_SectionCategoryRepository Make(std::shared_ptr<store_Database> store) {
    odb_SectionCategoryRepository repository;
    repository.m_ddb = ddb_DdbAccess::Make(std::move(store));
    return repository;
  }
  // Adds every stored category not yet held, with its section points.
  static void Load(odb_SectionCategoryRepository& repository) { repository.Load(); }
};

#endif
