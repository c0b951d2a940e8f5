#include "odb_SectionCategory.h"

#include <utility>

#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_SectionCategoryData.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Section.h"

const uti_LabelRow<odb_SectionCategoryEnm> uti_LabelTable<odb_SectionCategoryEnm, 1>::rows[] = {
    {"Invalid section category name.", "odb_SectionCategory_MSGID_00",
     odb_SectionCategory_INVALID_NAME},
    {"Section point %1$s already exists in section category \"%2$s\".",
     "odb_SectionCategory_MSGID_01", odb_SectionCategory_POINT_EXISTS},
    {"Invalid section point number %1$s in section category \"%2$s\": numbers start at 1.",
     "odb_SectionCategory_MSGID_02", odb_SectionCategory_INVALID_POINT},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_SectionCategory";

// The index of the first point whose number is not below `number`.
int LowerBound(const odb_SequenceSectionPoint& points, int number) {
  int at = 0;
  while (at < points.size() && points[at].number() < number) ++at;
  return at;
}

}  // namespace

odb_SectionCategory::odb_SectionCategory() = default;

odb_SectionCategory::odb_SectionCategory(std::shared_ptr<odb_SectionCategoryData> data)
    : m_data(std::move(data)) {}

odb_String odb_SectionCategory::name() const {
  return m_data ? m_data->name : odb_String();
}

odb_String odb_SectionCategory::description() const {
  return m_data ? m_data->description : odb_String();
}

odb_SequenceSectionPoint odb_SectionCategory::sectionPoints() const {
  return m_data ? m_data->points : odb_SequenceSectionPoint();
}

bool odb_SectionCategory::hasSectionPoint(int number) const {
  if (!m_data) return false;
  const int at = LowerBound(m_data->points, number);
  return at < m_data->points.size() && m_data->points[at].number() == number;
}

odb_SectionPoint odb_SectionCategory::SectionPoint(int number, const odb_String& description) {
  const char* const orphan = "The section category belongs to no database.";
  if (!m_data) odb_ThrowMessage(orphan, kSource, 59);
  odb_SectionCategoryData& category = *m_data;
  // -1 means "no section point", so only positive numbers name one.
  if (number < 1)
    odb_ThrowMessage(odb_CatalogueMessage(odb_SectionCategory_INVALID_POINT,
                                          {odb_String(number), category.name}),
                     kSource, 65);
  const int at = LowerBound(category.points, number);
  if (at < category.points.size() && category.points[at].number() == number)
    odb_ThrowMessage(
        odb_CatalogueMessage(odb_SectionCategory_POINT_EXISTS, {odb_String(number), category.name}),
        kSource, 69);
  store_AddSectionPoint(odb_WritableStore(category.store, orphan, kSource, 70), category.id,
                        {number, odb_ToText(description)});
  const odb_SectionPoint point(number, description);
  category.points.insert(at, point);
  return point;
}
