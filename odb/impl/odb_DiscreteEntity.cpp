#include "odb_DiscreteEntity.h"

#include <algorithm>
#include <string>

#include "odb_Damage.h"
#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_Instance.h"
#include "odb_MeshData.h"
#include "odb_MeshSelection.h"
#include "odb_Message.h"
#include "odb_SetData.h"
#include "odb_Util.h"

namespace {

const char kSource[] = "odb/impl/odb_DiscreteEntity";

// Refuses a caller's array that does not hold exactly `wanted` values.
void CheckRoom(const char* call, const char* array, std::size_t given, std::size_t wanted) {
  if (given == wanted) return;
  odb_ThrowMessage(
      odb_FormatMessage(
          "%1$s(): the %2$s array holds %3$s values; the mesh gives %4$s.",
          {call, array, odb_FromText(std::to_string(given)), odb_FromText(std::to_string(wanted))}),
      kSource, __LINE__);
}

}  // namespace

store_Database& odb_EntityData::Store() const {
  if (!mesh) odb_ThrowMessage("The part or instance belongs to no database.", kSource, 14);
  return *mesh->mesh->Database();
}

std::string odb_EntityData::Subject(const char* what) const {
  return std::string("the ") + what + " of " +
         (ownerKind == store_kPartOwner ? "part " : "instance ") + odb_Quoted(name);
}

void odb_EntityData::ReadSets() {
  if (setsRead || !mesh) return;
  const std::string what = Subject("sets");
  std::vector<store_SetRecord> records =
      odb_Reading(what, [&] { return store_Sets(Store(), ownerKind, name.CStr()); });
  for (const store_SetRecord& record : records) {
    if (record.kind < odb_Set::NODE_SET || record.kind > odb_Set::SURFACE_SET)
      odb_ThrowMessage(odb_CatalogueMessage(odb_Instance_UNKNOWN_SET_TYPE), kSource, 18);
    odb_CheckFaces(Store(), record, what);
  }
  for (const store_SetRecord& record : records) {
    std::vector<std::shared_ptr<odb_MeshData>> meshesOfMembers(record.members.size(), mesh);
    odb_Set set = odb_SetAccess::Make(odb_SetData::FromRecord(record, meshesOfMembers));
    Repository(set.type()).insert(set.name(), set);
  }
  setsRead = true;
}

odb_SetRepository& odb_EntityData::Repository(odb_Set::Type type) {
  return odb_SetsOfType(type, nodeSets, elementSets, surfaces);
}

odb_Set& odb_EntityData::AddSet(const std::shared_ptr<odb_SetData>& set) {
  ReadSets();
  odb_SetRepository& repository = Repository(set->type);
  store_AddSet(Store(), ownerKind, name.CStr(), set->ToRecord());
  repository.insert(set->name, odb_SetAccess::Make(set));
  return repository.get(set->name);
}

odb_Set& odb_EntityData::CreateSet(const odb_String& setName, odb_Set::Type kind,
                                   const std::vector<int>& labels, const std::vector<int>& faces) {
  ReadSets();
  if (Repository(kind).isMember(setName))
    odb_ThrowMessage(odb_CatalogueMessage(odb_Instance_DUPLICATE_NAME), kSource, 56);
  auto set = std::make_shared<odb_SetData>();
  set->name = setName;
  set->type = kind;
  set->members.push_back(odb_SetData::MakeMember(mesh, kind, labels.data(),
                                                 static_cast<int>(labels.size()), faces.data()));
  set->meshes.append(odb_MeshAccess::Make(mesh));
  return AddSet(set);
}

void odb_EntityData::ReadAssignments() {
  if (assignmentsRead || !mesh) return;
  for (const store_SectionAssignment& a : odb_Reading(Subject("section assignments"), [&] {
         return store_SectionAssignments(Store(), ownerKind, name.CStr());
       }))
    assignments.push_back({a.setName.c_str(), a.section.c_str()});
  assignmentsRead = true;
}

odb_DiscreteEntity::odb_DiscreteEntity() : m_data(std::make_shared<odb_EntityData>()) {}
odb_DiscreteEntity::odb_DiscreteEntity(std::shared_ptr<odb_EntityData> data)
    : m_data(std::move(data)) {}

odb_String odb_DiscreteEntity::name() const {
  return m_data->name;
}
odb_Enum::odb_DimensionEnum odb_DiscreteEntity::embeddedSpace() const {
  return m_data->dimension;
}
odb_Enum::odb_PartTypeEnum odb_DiscreteEntity::type() const {
  return m_data->type;
}
const odb_MeshList& odb_DiscreteEntity::meshes() const {
  return m_data->meshes;
}

const odb_SequenceNode& odb_DiscreteEntity::nodes() const {
  odb_EntityData& d = *m_data;
  if (d.mesh && (!odb_SequenceNodeAccess::Mesh(d.nodes) || d.nodes.size() != d.mesh->NodeCount()))
    d.nodes = odb_SequenceNodeAccess::Make(d.mesh);
  return d.nodes;
}

const odb_SequenceElement& odb_DiscreteEntity::elements() const {
  odb_EntityData& d = *m_data;
  if (d.mesh &&
      (!odb_SequenceElementAccess::Mesh(d.elements) || d.elements.size() != d.mesh->ElementCount()))
    d.elements = odb_SequenceElementAccess::Make(d.mesh);
  return d.elements;
}

void odb_DiscreteEntity::readNodes(odb_MutableArrayView<int> labels,
                                   odb_MutableArrayView<float> coordinates) const {
  odb_MeshData* mesh = m_data->mesh.get();
  const std::size_t n = mesh ? static_cast<std::size_t>(mesh->NodeCount()) : 0;
  if (!labels.empty()) CheckRoom("readNodes", "label", labels.size(), n);
  if (!coordinates.empty()) CheckRoom("readNodes", "coordinate", coordinates.size(), 3 * n);
  if (n == 0) return;
  if (!labels.empty()) std::copy_n(mesh->mesh->NodeLabels().data(), n, labels.data());
  if (coordinates.empty()) return;
  mesh->mesh->ReadCoordinates(coordinates.data());
  if (!mesh->placed) return;
  for (float* x = coordinates.data(); x != coordinates.end(); x += 3) {
    double placed[3];
    for (int i = 0; i < 3; ++i)
      placed[i] = mesh->rotation[i][0] * x[0] + mesh->rotation[i][1] * x[1] +
                  mesh->rotation[i][2] * x[2] + mesh->shift[i];
    for (int i = 0; i < 3; ++i) x[i] = static_cast<float>(placed[i]);
  }
}

std::size_t odb_DiscreteEntity::connectivityLength() const {
  return m_data->mesh ? m_data->mesh->mesh->ConnectivityLength() : 0;
}

void odb_DiscreteEntity::readElements(odb_MutableArrayView<int> labels,
                                      odb_MutableArrayView<int> connectivity) const {
  odb_MeshData* mesh = m_data->mesh.get();
  const std::size_t n = mesh ? static_cast<std::size_t>(mesh->ElementCount()) : 0;
  const std::size_t length = connectivityLength();
  if (!labels.empty()) CheckRoom("readElements", "label", labels.size(), n);
  if (!connectivity.empty()) CheckRoom("readElements", "connectivity", connectivity.size(), length);
  if (n == 0) return;
  if (!labels.empty()) std::copy_n(mesh->mesh->ElementLabels().data(), n, labels.data());
  if (!connectivity.empty()) mesh->mesh->ReadConnectivity(connectivity.data());
}

odb_Node odb_DiscreteEntity::nodes(int i) const {
  return odb_MeshAccess::Make(m_data->mesh).node(i);
}
odb_Element odb_DiscreteEntity::elements(int i) const {
  return odb_MeshAccess::Make(m_data->mesh).element(i);
}

odb_Node odb_DiscreteEntity::getNodeFromLabel(int label) const {
  odb_MeshData& mesh = *m_data->mesh;
  return mesh.NodeAt(mesh.NodePositionOf(label), label);
}

odb_Element odb_DiscreteEntity::getElementFromLabel(int label) const {
  odb_MeshData& mesh = *m_data->mesh;
  return mesh.ElementAt(mesh.ElementPositionOf(label), label);
}

odb_SetRepository& odb_DiscreteEntity::nodeSets() {
  m_data->ReadSets();
  return m_data->nodeSets;
}
odb_SetRepository& odb_DiscreteEntity::elementSets() {
  m_data->ReadSets();
  return m_data->elementSets;
}
odb_SetRepository& odb_DiscreteEntity::surfaces() {
  m_data->ReadSets();
  return m_data->surfaces;
}

void odb_DiscreteEntity::assignSection(const odb_Set& region, const odb_Section& section) {
  if (region.type() != odb_Set::ELEMENT_SET)
    odb_ThrowMessage(odb_CatalogueMessage(odb_Instance_SECTION_NEEDS_ELEMENT_SET), kSource, 113);
  m_data->ReadAssignments();
  store_AddSectionAssignment(m_data->Store(), m_data->ownerKind, m_data->name.CStr(),
                             {region.name().CStr(), section.name().CStr()});
  m_data->assignments.push_back({region.name(), section.name()});
}

uti_Array<odb_SectionAssignment> odb_DiscreteEntity::sectionAssignments() const {
  m_data->ReadAssignments();
  const std::vector<odb_SectionAssignment>& held = m_data->assignments;
  uti_Array<odb_SectionAssignment> assignments;
  assignments.append(held.data(), held.data() + held.size());
  return assignments;
}
