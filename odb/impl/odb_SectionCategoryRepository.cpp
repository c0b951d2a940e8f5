#include "odb_SectionCategoryRepository.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_SectionCategoryData.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Database.h"
#include "store_Section.h"

namespace {

const char kSource[] = "odb/impl/odb_SectionCategoryRepository";

}  // namespace

void odb_SectionCategoryRepository::Load() {
  if (!ddb_DdbAccess::Store(m_ddb)) return;
  const std::vector<store_SectionCategoryRecord> stored =
      odb_Reading("the section categories",
                  [&] { return store_SectionCategories(*ddb_DdbAccess::Store(m_ddb)); });
  for (const store_SectionCategoryRecord& record : stored) {
    const odb_String name = odb_FromText(record.name);
    if (isMember(name)) continue;
    auto data = std::make_shared<odb_SectionCategoryData>();
    data->store = ddb_DdbAccess::Store(m_ddb);
    data->id = record.id;
    data->name = name;
    data->description = odb_FromText(record.description);
    for (const store_SectionPointRecord& point : record.points)
      data->points.append(odb_SectionPoint(point.number, odb_FromText(point.description)));
    insert(name, odb_SectionCategoryAccess::Make(std::move(data)));
  }
}

odb_SectionCategory& odb_SectionCategoryRepository::SectionCategory(const odb_String& name,
                                                                    const odb_String& description) {
  if (name.Empty())
    odb_ThrowMessage(odb_CatalogueMessage(odb_SectionCategory_INVALID_NAME), kSource, 54);
  if (isMember(name)) return get(name);
  store_Database& store =
      odb_WritableStore(ddb_DdbAccess::Store(m_ddb),
                        "The section category repository belongs to no database.", kSource, 57);
  const std::int64_t id =
      store_AddSectionCategory(store, odb_ToText(name), odb_ToText(description));
  auto data = std::make_shared<odb_SectionCategoryData>();
  data->store = ddb_DdbAccess::Store(m_ddb);
  data->id = id;
  data->name = name;
  data->description = description;
  insert(name, odb_SectionCategoryAccess::Make(data));
  return get(name);
}
