#include "odb_MaterialRepository.h"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "odb_Damage.h"
#include "odb_Exception.h"
#include "odb_MaterialData.h"
#include "odb_Message.h"
#include "odb_StoreWrite.h"
#include "odb_Util.h"
#include "store_Database.h"
#include "store_Material.h"

namespace {

const char kSource[] = "odb/impl/odb_MaterialRepository";

}  // namespace

void odb_MaterialRepository::Load() {
  if (!ddb_DdbAccess::Store(m_ddb)) return;
  const std::vector<store_MaterialRecord> stored =
      odb_Reading("the materials", [&] { return store_Materials(*ddb_DdbAccess::Store(m_ddb)); });
  for (const store_MaterialRecord& record : stored) {
    const odb_String name = odb_FromText(record.name);
    if (isMember(name)) continue;
    auto data = std::make_shared<odb_MaterialData>();
    data->store = ddb_DdbAccess::Store(m_ddb);
    data->id = record.id;
    data->name = name;
    data->hasElastic = record.hasElastic;
    data->youngsModulus = record.youngsModulus;
    data->poissonsRatio = record.poissonsRatio;
    data->hasDensity = record.hasDensity;
    data->density = record.density;
    insert(name, odb_MaterialAccess::Make(std::move(data)));
  }
}

odb_Material& odb_MaterialRepository::Material(const odb_String& name) {
  if (name.Empty()) odb_ThrowMessage(odb_CatalogueMessage(odb_Material_INVALID_NAME), kSource, 48);
  if (isMember(name))
    odb_ThrowMessage(odb_CatalogueMessage(odb_Material_ALREADY_EXISTS, {name}), kSource, 50);
  store_Database& store = odb_WritableStore(
      ddb_DdbAccess::Store(m_ddb), "The material repository belongs to no database.", kSource, 52);
  // The properties stay "not given" until their setters run.
  const std::int64_t id = store_AddMaterial(store, odb_ToText(name));
  auto data = std::make_shared<odb_MaterialData>();
  data->store = ddb_DdbAccess::Store(m_ddb);
  data->id = id;
  data->name = name;
  insert(name, odb_MaterialAccess::Make(std::move(data)));
  return get(name);
}
