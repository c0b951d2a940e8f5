#include "odb_SequenceElement.h"

#include <utility>
#include <vector>

#include "odb_Exception.h"
#include "odb_Mesh.h"
#include "odb_MeshData.h"
#include "odb_MeshSelection.h"
#include "odb_Message.h"

const uti_LabelRow<odb_SequenceElementEnm> uti_LabelTable<odb_SequenceElementEnm, 1>::rows[] = {
    {"Cannot Append. Sequence belongs to different part.", "odb_SequenceElement_MSGID_00",
     odb_SequenceElement_OTHER_PART},
    {nullptr, nullptr, {}}};

namespace {
const char kSource[] = "odb/impl/odb_SequenceElement";
}

odb_SequenceElement::odb_SequenceElement(std::shared_ptr<const odb_MeshSelection> selection)
    : m_selection(std::move(selection)) {}

odb_SequenceElement odb_SequenceElementAccess::Make(std::shared_ptr<odb_MeshData> mesh) {
  const int count = mesh ? mesh->ElementCount() : 0;
  return odb_SequenceElement(std::make_shared<const odb_MeshSelection>(std::move(mesh), count));
}

odb_SequenceElement odb_SequenceElementAccess::Make(std::shared_ptr<odb_MeshData> mesh, std::vector<int> positions) {
  return odb_SequenceElement(std::make_shared<const odb_MeshSelection>(std::move(mesh), std::move(positions)));
}

const odb_MeshSelection& odb_SequenceElement::Selection() const {
  static const odb_MeshSelection none;
  return m_selection ? *m_selection : none;
}

const std::shared_ptr<odb_MeshData>& odb_SequenceElement::mesh() const {
  return Selection().Mesh();
}

int odb_SequenceElement::PositionAt(int i) const {
  return Selection().PositionAt(i);
}

int odb_SequenceElement::size() const {
  return Selection().Size();
}

odb_Element odb_SequenceElement::element(int i) const {
  if (i < 0 || i >= size())
    odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_ELEMENT_INDEX_RANGE), kSource, 24);
  return mesh()->ElementAt(PositionAt(i));
}

void odb_SequenceElement::append(const odb_Element& element) {
  if (!mesh() || element.meshIndex() != mesh()->MeshIndex() || element.index() < 0 ||
      element.index() >= mesh()->ElementCount())
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceElement_OTHER_PART), kSource, 32);
  odb_MeshSelection joined = Selection();
  joined.Append(mesh(), {element.index()});
  m_selection = std::make_shared<const odb_MeshSelection>(std::move(joined));
}

void odb_SequenceElement::append(const odb_SequenceElement& other) {
  if (!Selection().SameMesh(other.mesh()))
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceElement_OTHER_PART), kSource, 38);
  odb_MeshSelection joined = Selection();
  joined.Append(other.mesh(), other.Selection().Positions());
  m_selection = std::make_shared<const odb_MeshSelection>(std::move(joined));
}

odb_SequenceElement odb_SequenceElement::slice(int from, int to) const {
  return odb_SequenceElement(std::make_shared<const odb_MeshSelection>(Selection().Slice(from, to)));
}

bool odb_SequenceElement::isMember(const odb_Element& element) const {
  if (!mesh() || element.meshIndex() != mesh()->MeshIndex()) return false;
  int position = mesh()->mesh->ElementPosition(element.label());
  return position >= 0 && Selection().Holds(position);
}

bool odb_SequenceElement::isEqual(const odb_SequenceElement& other) const {
  return Selection().IsEqual(other.Selection());
}

odb_String odb_SequenceElement::instanceName() const {
  return mesh() ? mesh()->instanceName : odb_String();
}

odb_Element odb_SequenceElement::anyElement() const {
  if (size() == 0) odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_ELEMENT_NOT_FOUND), kSource, 66);
  return element(0);
}
