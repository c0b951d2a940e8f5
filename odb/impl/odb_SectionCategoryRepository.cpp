#include "odb_SectionCategoryRepository.h"

#include <cstdint>
#include <map>
#include <memory>
#include <utility>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_SectionCategoryData.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Database.h"
#include "store_Statement.h"

namespace {

const char kSource[] = "odb/impl/odb_SectionCategoryRepository";

using Categories = std::map<std::int64_t, std::shared_ptr<odb_SectionCategoryData>>;

// The stored categories with their points, by id.
Categories ReadStored(const std::shared_ptr<store_Database>& store) {
  Categories found;
  {
    store_Statement q = store->Sql("SELECT id, name, description FROM section_category");
    while (q.Step()) {
      q.RequireNotNull("section_category", {"id", "name", "description"});
      auto data = std::make_shared<odb_SectionCategoryData>();
      data->store = store;
      data->id = q.Int64(0);
      data->name = odb_FromText(q.Text(1));
      data->description = odb_FromText(q.Text(2));
      found.emplace(data->id, std::move(data));
    }
  }
  if (found.empty()) return found;
  // All points in one walk of the table's key order, which is by category, then by number.
  store_Statement q =
      store->Sql("SELECT category_id, number, description FROM section_point ORDER BY 1, 2");
  while (q.Step()) {
    q.RequireNotNull("section_point", {"category_id", "number", "description"});
    auto category = found.find(q.Int64(0));
    if (category != found.end())
      category->second->points.append(odb_SectionPoint(q.Int(1), odb_FromText(q.Text(2))));
  }
  return found;
}

}  // namespace

void odb_SectionCategoryRepository::Load() {
  if (!ddb_DdbAccess::Store(m_ddb)) return;
  const Categories found = odb_Reading("the section categories",
                                       [&] { return ReadStored(ddb_DdbAccess::Store(m_ddb)); });
  for (const auto& entry : found)
    if (!isMember(entry.second->name))
      insert(entry.second->name, odb_SectionCategoryAccess::Make(entry.second));
}

odb_SectionCategory& odb_SectionCategoryRepository::SectionCategory(const odb_String& name,
                                                                    const odb_String& description) {
  if (name.Empty())
    odb_ThrowMessage(odb_CatalogueMessage(odb_SectionCategory_INVALID_NAME), kSource, 54);
  if (isMember(name)) return get(name);
  store_Database& store =
      odb_WritableStore(ddb_DdbAccess::Store(m_ddb),
                        "The section category repository belongs to no database.", kSource, 57);
  store.Sql("INSERT INTO section_category(name, description) VALUES (?1, ?2)")
      .Bind(1, odb_ToText(name))
      .Bind(2, odb_ToText(description))
      .Run();
  auto data = std::make_shared<odb_SectionCategoryData>();
  data->store = ddb_DdbAccess::Store(m_ddb);
  data->id = sqlite3_last_insert_rowid(store.Connection());
  data->name = name;
  data->description = description;
  insert(name, odb_SectionCategoryAccess::Make(data));
  return get(name);
}
