// odb_SectionCategoryData: what a section-category handle shares with its copies; internal.
#ifndef ODB_SECTIONCATEGORYDATA_H
#define ODB_SECTIONCATEGORYDATA_H

#include <cstdint>
#include <memory>

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

#endif
