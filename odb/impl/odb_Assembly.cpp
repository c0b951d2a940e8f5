#include "odb_MeshData.h"
#include "odb_SetData.h"
#include "odb_Assembly.h"

#include <cmath>

#include "odb_AssemblyData.h"
#include "odb_Damage.h"
#include "odb_DiscretePartRepositoryData.h"
#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_Message.h"

const uti_LabelRow<odb_AssemblyEnm> uti_LabelTable<odb_AssemblyEnm, 1>::rows[] = {
    {"Assembly Instance not supported.", "odb_Assembly_MSGID_00",
     odb_Assembly_INSTANCE_NOT_SUPPORTED},
    {"The nodes associated with entity named '%s' cannot be used to construct a set.",
     "odb_Assembly_MSGID_01", odb_Assembly_NODES_NOT_USABLE},
    {"The elements associated with entity named '%s' cannot be used to construct a set.",
     "odb_Assembly_MSGID_02", odb_Assembly_ELEMENTS_NOT_USABLE},
    {"Unknown Set type.", "odb_Assembly_MSGID_03", odb_Assembly_UNKNOWN_SET_TYPE},
    {"Duplicate set or surface name", "odb_Assembly_MSGID_04", odb_Assembly_DUPLICATE_NAME},
    {"A part instance named \"%s\" already exists.", "odb_Assembly_MSGID_05",
     odb_Assembly_INSTANCE_EXISTS},
    {"The local coordinate system of instance \"%s\" must be a row of 3 values, optionally "
     "followed by a row of 7.",
     "odb_Assembly_MSGID_06", odb_Assembly_BAD_PLACEMENT},
    {"The number of instance names and label rows must agree.", "odb_Assembly_MSGID_07",
     odb_Assembly_ROW_COUNT},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_Assembly";
const double kPi = 3.141592653589793;

[[noreturn]] void Throw(odb_AssemblyEnm code, int site,
                        std::initializer_list<odb_String> args = {}) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

store_Placement PlacementOf(const odb_String& name, const odb_SequenceSequenceFloat& rows) {
  store_Placement placement;
  int n = rows.size();
  if (n > 2 || (n >= 1 && rows[0].size() != 3) || (n == 2 && rows[1].size() != 7))
    Throw(odb_Assembly_BAD_PLACEMENT, 43, {name});
  for (int k = 0; k < 3 && n >= 1; ++k) placement.translation[k] = rows[0][k];
  if (n == 2) {
    const odb_SequenceFloat& r = rows[1];
    for (int k = 0; k < 3; ++k) {
      placement.axisPoint[k] = r[k];
      placement.axisDirection[k] = static_cast<double>(r[k + 3]) - r[k];
    }
    placement.angle = r[6] * kPi / 180.0;
  }
  return placement;
}

}  // namespace

void odb_AssemblyData::ReadInstances() {
  if (instancesRead || !store) return;
  odb_DiscretePartRepositoryAccess::Load(*parts);
  const char* what = "the instances";
  const std::vector<store_InstanceRecord> records =
      odb_Reading(what, [&] { return store_Instances(*store); });
  for (const store_InstanceRecord& record : records)
    if (!odb_DiscretePartRepositoryAccess::FindById(*parts, record.partId))
      odb_ThrowDamaged(store->Path(), what,
                       "name a part the file does not hold (instance.part_id holds " +
                           std::to_string(record.partId) + ")");
  for (const store_InstanceRecord& record : records) {
    const odb_DiscretePart* part =
        odb_DiscretePartRepositoryAccess::FindById(*parts, record.partId);
    odb_String name(record.name.c_str());
    if (instances.isMember(name)) continue;
    odb_Instance instance = MakeInstance(name, *part, record.placement);
    instances.insert(name, instance);
    meshes.append(odb_MeshAccess::Make(odb_DiscreteEntityAccess::Data(instance)->mesh));
  }
  instancesRead = true;
}

odb_Instance odb_AssemblyData::MakeInstance(const odb_String& name, const odb_DiscretePart& part,
                                            const store_Placement& placement) {
  auto data = std::make_shared<odb_EntityData>();
  const odb_EntityData& source = *odb_DiscreteEntityAccess::Data(part);
  data->name = name;
  data->dimension = source.dimension;
  data->type = source.type;
  data->ownerKind = store_kInstanceOwner;
  data->partName = source.name;
  data->placement = placement;
  data->mesh =
      std::make_shared<odb_MeshData>(source.mesh->mesh, source.name, name, &placement, categories);
  data->meshes.append(odb_MeshAccess::Make(data->mesh));
  return odb_InstanceAccess::Make(data);
}

odb_SetRepository& odb_AssemblyData::Repository(odb_Set::Type type) {
  return odb_SetsOfType(type, nodeSets, elementSets, surfaces);
}

void odb_AssemblyData::ReadSets() {
  if (setsRead || !store) return;
  ReadInstances();
  const char* what = "the sets of the assembly";
  const std::vector<store_SetRecord> records =
      odb_Reading(what, [&] { return store_Sets(*store, store_kAssemblyOwner, ""); });
  for (const store_SetRecord& record : records) {
    if (record.kind < odb_Set::NODE_SET || record.kind > odb_Set::SURFACE_SET)
      Throw(odb_Assembly_UNKNOWN_SET_TYPE, 107);
    odb_CheckFaces(*store, record, what);
  }
  for (const store_SetRecord& record : records) {
    std::vector<std::shared_ptr<odb_MeshData>> memberMeshes;
    for (const store_SetMember& member : record.members)
      memberMeshes.push_back(odb_MeshAccess::Data(meshes.mesh(odb_String(member.instance.c_str()))));
    odb_Set set = odb_SetAccess::Make(odb_SetData::FromRecord(record, memberMeshes));
    Repository(set.type()).insert(set.name(), set);
  }
  setsRead = true;
}

odb_Assembly::odb_Assembly() : m_data(std::make_shared<odb_AssemblyData>()) {}
odb_Assembly::odb_Assembly(std::shared_ptr<odb_AssemblyData> data) : m_data(std::move(data)) {}

odb_String odb_Assembly::name() const {
  return "Assembly";
}

odb_InstanceRepository& odb_Assembly::instances() {
  m_data->ReadInstances();
  return m_data->instances;
}

const odb_MeshList& odb_Assembly::meshes() {
  m_data->ReadInstances();
  return m_data->meshes;
}

odb_Instance& odb_Assembly::Instance(const odb_String& name, const odb_DiscretePart& part,
                                     const odb_SequenceSequenceFloat& localCoordinateSystem) {
  odb_AssemblyData& d = *m_data;
  d.ReadInstances();
  if (d.instances.isMember(name)) Throw(odb_Assembly_INSTANCE_EXISTS, 142, {name});
  const odb_EntityData& source = *odb_DiscreteEntityAccess::Data(part);
  if (!d.store || !source.mesh || source.mesh->mesh->Database() != d.store)
    Throw(odb_Assembly_INSTANCE_NOT_SUPPORTED, 145);
  store_Placement placement = PlacementOf(name, localCoordinateSystem);
  store_AddInstance(*d.store, name.CStr(), source.mesh->mesh->PartId(), placement);
  odb_Instance instance = d.MakeInstance(name, part, placement);
  d.instances.insert(name, instance);
  d.meshes.append(odb_MeshAccess::Make(odb_DiscreteEntityAccess::Data(instance)->mesh));
  return d.instances.get(name);
}

odb_Set& odb_Assembly::CreateSet(const odb_String& name, odb_Set::Type type,
                                 const odb_SequenceString& instanceNames,
                                 const odb_SequenceSequenceInt& labels,
                                 const odb_SequenceSequenceElementFace* faces) {
  odb_AssemblyData& d = *m_data;
  if (!d.store) odb_ThrowMessage("The assembly belongs to no database.", kSource, 158);
  d.ReadSets();
  odb_SetRepository& repository = d.Repository(type);
  if (repository.isMember(name)) Throw(odb_Assembly_DUPLICATE_NAME, 162);
  if (labels.size() != instanceNames.size() || (faces && faces->size() != labels.size()))
    Throw(odb_Assembly_ROW_COUNT, 164);
  auto set = std::make_shared<odb_SetData>();
  set->name = name;
  set->type = type;
  for (int i = 0; i < instanceNames.size(); ++i) {
    const odb_String& instanceName = instanceNames[i];
    if (!d.instances.isMember(instanceName))
      Throw(type == odb_Set::NODE_SET ? odb_Assembly_NODES_NOT_USABLE
                                      : odb_Assembly_ELEMENTS_NOT_USABLE,
            172, {instanceName});
    std::vector<int> rowLabels = odb_ToInts(labels[i]);
    std::vector<int> rowFaces = faces ? odb_ToInts((*faces)[i]) : std::vector<int>();
    if (faces && rowFaces.size() != rowLabels.size())
      odb_ThrowMessage(odb_CatalogueMessage(odb_Instance_FACE_COUNT), kSource, 177);
    const std::shared_ptr<odb_MeshData>& mesh = odb_DiscreteEntityAccess::Data(d.instances.get(instanceName))->mesh;
    set->members.push_back(odb_SetData::MakeMember(
        mesh, type, rowLabels.data(), static_cast<int>(rowLabels.size()), rowFaces.data()));
    set->meshes.append(odb_MeshAccess::Make(mesh));
  }
  store_AddSet(*d.store, store_kAssemblyOwner, "", set->ToRecord());
  repository.insert(name, odb_SetAccess::Make(set));
  return repository.get(name);
}

odb_Set& odb_Assembly::NodeSet(const odb_String& name, const odb_SequenceString& instanceNames,
                               const odb_SequenceSequenceInt& nodeLabels) {
  return CreateSet(name, odb_Set::NODE_SET, instanceNames, nodeLabels, nullptr);
}

odb_Set& odb_Assembly::ElementSet(const odb_String& name, const odb_SequenceString& instanceNames,
                                  const odb_SequenceSequenceInt& elementLabels) {
  return CreateSet(name, odb_Set::ELEMENT_SET, instanceNames, elementLabels, nullptr);
}

odb_Set& odb_Assembly::Surface(const odb_String& name, const odb_SequenceString& instanceNames,
                               const odb_SequenceSequenceInt& elementLabels,
                               const odb_SequenceSequenceElementFace& faces) {
  return CreateSet(name, odb_Set::SURFACE_SET, instanceNames, elementLabels, &faces);
}

odb_SetRepository& odb_Assembly::nodeSets() {
  m_data->ReadSets();
  return m_data->nodeSets;
}
odb_SetRepository& odb_Assembly::elementSets() {
  m_data->ReadSets();
  return m_data->elementSets;
}
odb_SetRepository& odb_Assembly::surfaces() {
  m_data->ReadSets();
  return m_data->surfaces;
}
