#include "odb_SequenceElement.h"

#include "odb_Exception.h"
#include "odb_Mesh.h"
#include "odb_MeshData.h"
#include "odb_Message.h"

const uti_LabelRow<odb_SequenceElementEnm> uti_LabelTable<odb_SequenceElementEnm, 1>::rows[] = {
    {"Cannot Append. Sequence belongs to different part.", "odb_SequenceElement_MSGID_00",
     odb_SequenceElement_OTHER_PART},
    {nullptr, nullptr, {}}};

namespace {
const char kSource[] = "odb/impl/odb_SequenceElement";
}

odb_SequenceElement::odb_SequenceElement(std::shared_ptr<odb_MeshData> mesh)
    : m_selection(mesh, mesh ? mesh->ElementCount() : 0) {}

odb_SequenceElement::odb_SequenceElement(std::shared_ptr<odb_MeshData> mesh,
                                         std::vector<int> positions)
    : m_selection(std::move(mesh), std::move(positions)) {}

odb_Element odb_SequenceElement::element(int i) const {
  if (i < 0 || i >= size())
    odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_ELEMENT_INDEX_RANGE), kSource, 24);
  return mesh()->ElementAt(PositionAt(i));
}

void odb_SequenceElement::append(const odb_Element& element) {
  if (!mesh() || element.meshIndex() != mesh()->MeshIndex() || element.index() < 0 ||
      element.index() >= mesh()->ElementCount())
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceElement_OTHER_PART), kSource, 32);
  m_selection.Append(mesh(), {element.index()});
}

void odb_SequenceElement::append(const odb_SequenceElement& other) {
  if (!m_selection.SameMesh(other.mesh()))
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceElement_OTHER_PART), kSource, 38);
  m_selection.Append(other.mesh(), other.m_selection.Positions());
}

odb_SequenceElement odb_SequenceElement::slice(int from, int to) const {
  return odb_SequenceElement(m_selection.Slice(from, to));
}

bool odb_SequenceElement::isMember(const odb_Element& element) const {
  if (!mesh() || element.meshIndex() != mesh()->MeshIndex()) return false;
  int position = mesh()->mesh->ElementPosition(element.label());
  return position >= 0 && m_selection.Holds(position);
}

bool odb_SequenceElement::isEqual(const odb_SequenceElement& other) const {
  return m_selection.IsEqual(other.m_selection);
}

odb_String odb_SequenceElement::instanceName() const {
  return mesh() ? mesh()->instanceName : odb_String();
}

odb_Element odb_SequenceElement::anyElement() const {
  if (size() == 0) odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_ELEMENT_NOT_FOUND), kSource, 66);
  return element(0);
}
