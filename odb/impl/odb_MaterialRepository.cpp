#include "odb_MaterialRepository.h"

#include <memory>
#include <utility>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_MaterialData.h"
#include "odb_Message.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Database.h"
#include "store_Statement.h"

namespace {

const char kSource[] = "odb/impl/odb_MaterialRepository";

}  // namespace

void odb_MaterialRepository::Load() {
  if (!ddb_DdbAccess::Store(m_ddb)) return;
  std::vector<std::shared_ptr<odb_MaterialData>> found;
  odb_Reading("the materials", [&] {
    // Elasticity counts as given only when both of its constants are.
    store_Statement q = ddb_DdbAccess::Store(m_ddb)->Sql(
        "SELECT id, name, youngs_modulus IS NOT NULL AND poissons_ratio IS NOT NULL, "
        "coalesce(youngs_modulus, 0), coalesce(poissons_ratio, 0), density IS NOT NULL, "
        "coalesce(density, 0) FROM material");
    while (q.Step()) {
      q.RequireNotNull("material", {"id", "name"});
      auto data = std::make_shared<odb_MaterialData>();
      data->store = ddb_DdbAccess::Store(m_ddb);
      data->id = q.Int64(0);
      data->name = odb_FromText(q.Text(1));
      data->hasElastic = q.Int(2) != 0;
      data->youngsModulus = q.Double(3);
      data->poissonsRatio = q.Double(4);
      data->hasDensity = q.Int(5) != 0;
      data->density = q.Double(6);
      found.push_back(std::move(data));
    }
  });
  for (std::shared_ptr<odb_MaterialData>& data : found) {
    const odb_String name = data->name;
    if (!isMember(name)) insert(name, odb_MaterialAccess::Make(std::move(data)));
  }
}

odb_Material& odb_MaterialRepository::Material(const odb_String& name) {
  if (name.Empty()) odb_ThrowMessage(odb_CatalogueMessage(odb_Material_INVALID_NAME), kSource, 48);
  if (isMember(name))
    odb_ThrowMessage(odb_CatalogueMessage(odb_Material_ALREADY_EXISTS, {name}), kSource, 50);
  store_Database& store = odb_WritableStore(
      ddb_DdbAccess::Store(m_ddb), "The material repository belongs to no database.", kSource, 52);
  // The properties stay NULL, "not given", until their setters run.
  store.Sql("INSERT INTO material(name) VALUES (?1)").Bind(1, odb_ToText(name)).Run();
  auto data = std::make_shared<odb_MaterialData>();
  data->store = ddb_DdbAccess::Store(m_ddb);
  data->id = sqlite3_last_insert_rowid(store.Connection());
  data->name = name;
  insert(name, odb_MaterialAccess::Make(std::move(data)));
  return get(name);
}
