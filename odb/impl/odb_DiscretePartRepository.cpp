#include "odb_MeshData.h"
#include "odb_DiscretePartRepository.h"

#include "odb_Damage.h"
#include "odb_DiscretePartRepositoryData.h"
#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_Util.h"
#include "store_Model.h"

namespace {

const char kSource[] = "odb/impl/odb_DiscretePartRepository";

odb_DiscretePart MakePart(const odb_DiscretePartRepositoryData& parts, std::int64_t id,
                          const odb_String& name, int dimension, int type) {
  auto data = std::make_shared<odb_EntityData>();
  data->name = name;
  data->dimension = static_cast<odb_Enum::odb_DimensionEnum>(dimension);
  data->type = static_cast<odb_Enum::odb_PartTypeEnum>(type);
  data->ownerKind = store_kPartOwner;
  auto mesh = std::make_shared<store_Mesh>(parts.store, id);
  mesh->SetPartName(odb_ToText(name));
  data->mesh = std::make_shared<odb_MeshData>(std::move(mesh), name, odb_String(), nullptr,
                                              parts.categories);
  data->meshes.append(odb_MeshAccess::Make(data->mesh));
  return odb_DiscretePartAccess::Make(data);
}

}  // namespace

void odb_DiscretePartRepository::Load() {
  if (!m_data || !m_data->store) return;
  store_Database& store = *m_data->store;
  const std::string subject = "the parts";
  const std::vector<store_PartRecord> parts =
      odb_Reading(subject, [&] { return store_Parts(store); });
  for (const store_PartRecord& record : parts) {
    odb_CheckedCode(store, record.dimension, odb_Enum::THREE_D, odb_Enum::UNKNOWN_DIMENSION,
                    subject, "part", "dimension");
    odb_CheckedCode(store, record.type, odb_Enum::DEFORMABLE_BODY, odb_Enum::EULERIAN, subject,
                    "part", "type");
  }
  for (const store_PartRecord& record : parts) {
    odb_String name(record.name.c_str());
    if (!isMember(name))
      insert(name, MakePart(*m_data, record.id, name, record.dimension, record.type));
  }
}

odb_DiscretePart& odb_DiscretePartRepository::DiscretePart(const odb_String& name,
                                                           odb_Enum::odb_DimensionEnum dimension,
                                                           odb_Enum::odb_PartTypeEnum type) {
  if (isMember(name))
    odb_ThrowMessage(odb_CatalogueMessage(odb_DiscretePart_PART_EXISTS, {name}), kSource, 42);
  if (!m_data || !m_data->store)
    odb_ThrowMessage("The part repository belongs to no database.", kSource, 45);
  std::int64_t id = store_AddPart(*m_data->store, name.CStr(), dimension, type);
  insert(name, MakePart(*m_data, id, name, dimension, type));
  return get(name);
}

const odb_DiscretePart* odb_DiscretePartRepositoryAccess::FindById(
    const odb_DiscretePartRepository& parts, std::int64_t id) {
  for (odb_DiscretePartRepositoryIT it(parts); !it.isDone(); it.next())
    if (it.currentValue().meshes().mesh(0).meshIndex() == id) return &it.currentValue();
  return nullptr;
}
