#include "odb_MeshSelection.h"
#include "odb_MeshData.h"
#include "odb_Set.h"

#include <algorithm>

#include "odb_Exception.h"
#include "odb_Message.h"
#include "odb_SetData.h"
#include "store_ElementLibrary.h"

const uti_LabelRow<odb_SetEnm> uti_LabelTable<odb_SetEnm, 1>::rows[] = {
    {"Node %1$s not found in \"%2$s\".", "odb_Set_MSGID_00", odb_Set_NODE_MISSING},
    {"Element %1$s not found in \"%2$s\".", "odb_Set_MSGID_01", odb_Set_ELEMENT_MISSING},
    {"Face %1$s is not a face of element %2$s of type %3$s.", "odb_Set_MSGID_02", odb_Set_BAD_FACE},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_Set";

odb_String OwnerName(const odb_MeshData& mesh) {
  return mesh.instanceName.Empty() ? mesh.partName : mesh.instanceName;
}

bool HasFace(const store_ElementClass& cls, int face) {
  if (cls.geometry == odb_Enum::GEOMETRY_USER) return true;
  return std::any_of(cls.faces.begin(), cls.faces.end(),
                     [face](const store_ElementFace& f) { return f.face == face; });
}

}  // namespace

odb_SetData::Member odb_SetData::MakeMember(const std::shared_ptr<odb_MeshData>& mesh,
                                            odb_Set::Type type, const int* labels, int count,
                                            const int* faces) {
  Member member;
  member.mesh = mesh;
  member.positions.resize(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    int position = type == odb_Set::NODE_SET ? mesh->mesh->NodePosition(labels[i])
                                             : mesh->mesh->ElementPosition(labels[i]);
    if (position < 0)
      odb_ThrowMessage(odb_CatalogueMessage(type == odb_Set::NODE_SET ? odb_Set_NODE_MISSING
                                                                      : odb_Set_ELEMENT_MISSING,
                                            {odb_String(labels[i]), OwnerName(*mesh)}),
                       kSource, 52);
    member.positions[i] = position;
  }
  if (type != odb_Set::SURFACE_SET) return member;
  member.faces.assign(faces, faces + count);
  for (int i = 0; i < count; ++i) {
    const store_ElementBlock& block = mesh->mesh->BlockOf(member.positions[i]);
    store_ElementClass cls = store_ElementClassOf(block.type, block.nodesPerElement);
    if (!HasFace(cls, faces[i]))
      odb_ThrowMessage(
          odb_CatalogueMessage(odb_Set_BAD_FACE, {odb_String(faces[i]), odb_String(labels[i]),
                                                  odb_String(block.type.c_str())}),
          kSource, 66);
  }
  return member;
}

std::shared_ptr<odb_SetData> odb_SetData::FromRecord(
    const store_SetRecord& record, const std::vector<std::shared_ptr<odb_MeshData>>& memberMeshes) {
  auto set = std::make_shared<odb_SetData>();
  set->name = record.name.c_str();
  set->type = static_cast<odb_Set::Type>(record.kind);
  set->internal = record.internal;
  for (std::size_t m = 0; m < record.members.size(); ++m) {
    const store_SetMember& stored = record.members[m];
    Member member;
    member.mesh = memberMeshes[m];
    for (std::size_t i = 0; i < stored.labels.size(); ++i) {
      int position = set->type == odb_Set::NODE_SET
                         ? member.mesh->mesh->NodePosition(stored.labels[i])
                         : member.mesh->mesh->ElementPosition(stored.labels[i]);
      if (position < 0) continue;
      member.positions.push_back(position);
      if (i < stored.faces.size()) member.faces.push_back(stored.faces[i]);
    }
    set->meshes.append(odb_MeshAccess::Make(member.mesh));
    set->members.push_back(std::move(member));
  }
  return set;
}

store_SetRecord odb_SetData::ToRecord() const {
  store_SetRecord record;
  record.name = name.CStr();
  record.kind = type;
  record.internal = internal;
  for (const Member& member : members) {
    store_SetMember stored;
    stored.instance = member.mesh->instanceName.CStr();
    const std::vector<int>& labels = type == odb_Set::NODE_SET ? member.mesh->mesh->NodeLabels()
                                                               : member.mesh->mesh->ElementLabels();
    for (int position : member.positions) stored.labels.push_back(labels[position]);
    stored.faces = member.faces;
    record.members.push_back(std::move(stored));
  }
  return record;
}

odb_Set::odb_Set() : m_data(std::make_shared<odb_SetData>()) {}
odb_Set::odb_Set(std::shared_ptr<odb_SetData> data) : m_data(std::move(data)) {}

odb_String odb_Set::name() const {
  return m_data->name;
}
odb_Set::Type odb_Set::type() const {
  return m_data->type;
}
bool odb_Set::isInternal() const {
  return m_data->internal;
}
const odb_MeshList& odb_Set::meshes() const {
  return m_data->meshes;
}
odb_SequenceString odb_Set::instanceNames() const {
  return m_data->meshes.instanceNames();
}

namespace {

// The member of `set` seen through `instanceName`; throws "Invalid mesh name." when none.
const odb_SetData::Member* MemberOf(const odb_SetData& set, const odb_String* instanceName) {
  if (!instanceName) return set.members.empty() ? nullptr : &set.members.front();
  const odb_Mesh& mesh = set.meshes.mesh(*instanceName);
  for (const odb_SetData::Member& member : set.members)
    if (member.mesh == odb_MeshAccess::Data(mesh)) return &member;
  return nullptr;
}

odb_SequenceNode NodesOf(const odb_SetData& set, const odb_String* instanceName) {
  const odb_SetData::Member* member = MemberOf(set, instanceName);
  if (!member) return odb_SequenceNode();
  if (set.type != odb_Set::NODE_SET) return odb_SequenceNodeAccess::Make(member->mesh, {});
  return odb_SequenceNodeAccess::Make(member->mesh, member->positions);
}

odb_SequenceElement ElementsOf(const odb_SetData& set, const odb_String* instanceName) {
  const odb_SetData::Member* member = MemberOf(set, instanceName);
  if (!member) return odb_SequenceElement();
  if (set.type == odb_Set::NODE_SET) return odb_SequenceElementAccess::Make(member->mesh, {});
  return odb_SequenceElementAccess::Make(member->mesh, member->positions);
}

odb_SequenceElementFace FacesOf(const odb_SetData& set, const odb_String* instanceName) {
  const odb_SetData::Member* member = MemberOf(set, instanceName);
  odb_SequenceElementFace faces;
  if (member)
    for (int face : member->faces) faces.append(static_cast<odb_Enum::odb_ElementFaceEnum>(face));
  return faces;
}

}  // namespace

odb_SequenceNode odb_Set::nodes() const {
  return NodesOf(*m_data, nullptr);
}
odb_SequenceNode odb_Set::nodes(const odb_String& instanceName) const {
  return NodesOf(*m_data, &instanceName);
}
odb_SequenceElement odb_Set::elements() const {
  return ElementsOf(*m_data, nullptr);
}
odb_SequenceElement odb_Set::elements(const odb_String& instanceName) const {
  return ElementsOf(*m_data, &instanceName);
}
odb_SequenceElementFace odb_Set::faces() const {
  return FacesOf(*m_data, nullptr);
}
odb_SequenceElementFace odb_Set::faces(const odb_String& instanceName) const {
  return FacesOf(*m_data, &instanceName);
}
