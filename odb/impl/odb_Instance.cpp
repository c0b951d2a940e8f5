#include "odb_MeshSelection.h"
#include "odb_Instance.h"

#include "odb_EntityData.h"
#include "odb_Exception.h"
#include "odb_Message.h"

const uti_LabelRow<odb_InstanceEnm> uti_LabelTable<odb_InstanceEnm, 1>::rows[] = {
    {"Number of faces and elements should agree for a Surface.", "odb_Instance_MSGID_00",
     odb_Instance_FACE_COUNT},
    {"Number of faces and elements for instance surface must agree.", "odb_Instance_MSGID_01",
     odb_Instance_INSTANCE_FACE_COUNT},
    {"Unknown set type.", "odb_Instance_MSGID_02", odb_Instance_UNKNOWN_SET_TYPE},
    {"Section assignment requires element sets.", "odb_Instance_MSGID_03",
     odb_Instance_SECTION_NEEDS_ELEMENT_SET},
    {"Duplicate set or surface name", "odb_Instance_MSGID_04", odb_Instance_DUPLICATE_NAME},
    {"SequenceNode is not associated with this entity.", "odb_Instance_MSGID_05",
     odb_Instance_NODES_OF_OTHER_ENTITY},
    {"SequenceElement is not associated with this entity.", "odb_Instance_MSGID_06",
     odb_Instance_ELEMENTS_OF_OTHER_ENTITY},
    {nullptr, nullptr, {}}};

namespace {

const char kSource[] = "odb/impl/odb_Instance";

[[noreturn]] void Throw(odb_InstanceEnm code, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code), kSource, site);
}

// The labels of the members of a sequence of this entity's mesh.
template <class Access, class Sequence>
std::vector<int> LabelsOf(const Sequence& members, const std::vector<int>& labels) {
  std::vector<int> out(static_cast<std::size_t>(members.size()));
  for (int i = 0; i < members.size(); ++i) out[i] = labels[Access::PositionAt(members, i)];
  return out;
}

}  // namespace

odb_String odb_Instance::partName() const {
  return m_data->partName;
}
const double* odb_Instance::translation() const {
  return m_data->placement.translation;
}
const double* odb_Instance::rotationPoint() const {
  return m_data->placement.axisPoint;
}
const double* odb_Instance::rotationAxis() const {
  return m_data->placement.axisDirection;
}
double odb_Instance::rotationAngle() const {
  return m_data->placement.angle;
}

odb_Set& odb_Instance::NodeSet(const odb_String& name, const odb_SequenceInt& nodeLabels) {
  return m_data->CreateSet(name, odb_Set::NODE_SET, odb_ToInts(nodeLabels), {});
}

odb_Set& odb_Instance::NodeSet(const odb_String& name, const odb_SequenceNode& nodes) {
  if (odb_SequenceNodeAccess::Mesh(nodes) != m_data->mesh) Throw(odb_Instance_NODES_OF_OTHER_ENTITY, 63);
  return m_data->CreateSet(name, odb_Set::NODE_SET,
                           LabelsOf<odb_SequenceNodeAccess>(nodes, m_data->mesh->mesh->NodeLabels()), {});
}

odb_Set& odb_Instance::ElementSet(const odb_String& name, const odb_SequenceInt& elementLabels) {
  return m_data->CreateSet(name, odb_Set::ELEMENT_SET, odb_ToInts(elementLabels), {});
}

odb_Set& odb_Instance::ElementSet(const odb_String& name, const odb_SequenceElement& elements) {
  if (odb_SequenceElementAccess::Mesh(elements) != m_data->mesh) Throw(odb_Instance_ELEMENTS_OF_OTHER_ENTITY, 74);
  return m_data->CreateSet(name, odb_Set::ELEMENT_SET,
                           LabelsOf<odb_SequenceElementAccess>(elements, m_data->mesh->mesh->ElementLabels()), {});
}

odb_Set& odb_Instance::Surface(const odb_String& name, const odb_SequenceInt& elementLabels,
                               const odb_SequenceElementFace& faces) {
  if (m_data->surfaces.isMember(name)) Throw(odb_Instance_DUPLICATE_NAME, 81);
  if (faces.size() != elementLabels.size()) Throw(odb_Instance_FACE_COUNT, 82);
  return m_data->CreateSet(name, odb_Set::SURFACE_SET, odb_ToInts(elementLabels),
                           odb_ToInts(faces));
}

odb_Set& odb_Instance::Surface(const odb_String& name, const odb_SequenceElement& elements,
                               const odb_SequenceElementFace& faces) {
  if (odb_SequenceElementAccess::Mesh(elements) != m_data->mesh) Throw(odb_Instance_ELEMENTS_OF_OTHER_ENTITY, 89);
  if (m_data->surfaces.isMember(name)) Throw(odb_Instance_DUPLICATE_NAME, 90);
  if (faces.size() != elements.size()) Throw(odb_Instance_INSTANCE_FACE_COUNT, 91);
  return m_data->CreateSet(name, odb_Set::SURFACE_SET,
                           LabelsOf<odb_SequenceElementAccess>(elements, m_data->mesh->mesh->ElementLabels()),
                           odb_ToInts(faces));
}
