// odb_SectionCategory: a named group of elements that share their section points, as a handle:
// its name, its description and the section points through its thickness or profile.
//
// Elements carry the category they belong to, and field output of those elements names one of
// its section points. The database owns the stored category; the handle holds a share of the
// category's data, so copying costs O(1) and every copy sees the points that any other copy
// adds. Categories are created and found through the database's section-category repository
// (odb_SectionCategoryRepository). SectionPoint writes to the database at once; the database's
// save makes it durable.
//
// The default-constructed category is the empty one: empty name and description, no section
// points, no database. It is what elements without a category carry, and it refuses
// SectionPoint.
//
// One thread at a time for a category and its copies.
#ifndef ODB_SECTIONCATEGORY_H
#define ODB_SECTIONCATEGORY_H

#include "odb_Export.h"
#include "odb_SectionPoint.h"
#include "odb_Sequence.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

// The messages of section categories and their repository.
enum odb_SectionCategoryEnm : int {
  odb_SectionCategory_INVALID_NAME = 0,   //
  odb_SectionCategory_POINT_EXISTS = 1,   // %1$s: the point's number, %2$s: the category's name
  odb_SectionCategory_INVALID_POINT = 2,  // %1$s: the point's number, %2$s: the category's name
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_SectionCategoryEnm, 1> {
  static const uti_LabelRow<odb_SectionCategoryEnm> rows[];
};

struct odb_SectionCategoryData;

class QTVODB_EXPORT odb_SectionCategory {
 public:
  // The empty category.
  odb_SectionCategory();

  // The category's name, unique in its database, for example "shell < STEEL >".
  odb_String name() const;
  odb_String description() const;
  // The category's section points in ascending number (a shared copy: O(1)).
  odb_SequenceSectionPoint sectionPoints() const;
  // True when the category holds a section point with this number.
  bool hasSectionPoint(int number) const;

  // Stores a new section point and returns it. Throws "Invalid section point number N in
  // section category "NAME": numbers start at 1." for a number below 1, "Section point N already
  // exists in section category "NAME"." for a number the category holds, "The section category
  // belongs to no database." for the empty category, and the store's refusal when the database
  // is read-only.
  odb_SectionPoint SectionPoint(int number, const odb_String& description);

  // True for the empty category.
  bool isEmpty() const { return !m_data; }

 private:
  friend struct odb_SectionCategoryAccess;

  explicit odb_SectionCategory(std::shared_ptr<odb_SectionCategoryData> data);

  std::shared_ptr<odb_SectionCategoryData> m_data;
};

// Categories are equal when their names are: a name is unique in a database.
inline bool operator==(const odb_SectionCategory& a, const odb_SectionCategory& b) {
  return a.name() == b.name();
}
inline bool operator!=(const odb_SectionCategory& a, const odb_SectionCategory& b) {
  return !(a == b);
}

#endif
