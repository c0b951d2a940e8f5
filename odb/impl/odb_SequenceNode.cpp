#include "odb_SequenceNode.h"

#include <utility>
#include <vector>

#include "odb_Exception.h"
#include "odb_Mesh.h"
#include "odb_MeshData.h"
#include "odb_MeshSelection.h"
#include "odb_Message.h"

const uti_LabelRow<odb_SequenceNodeEnm> uti_LabelTable<odb_SequenceNodeEnm, 1>::rows[] = {
    {"Cannot Append. Sequence belongs to different part.", "odb_SequenceNode_MSGID_00",
     odb_SequenceNode_OTHER_PART},
    {nullptr, nullptr, {}}};

namespace {
const char kSource[] = "odb/impl/odb_SequenceNode";
}

odb_SequenceNode::odb_SequenceNode(std::shared_ptr<const odb_MeshSelection> selection)
    : m_selection(std::move(selection)) {}

odb_SequenceNode odb_SequenceNodeAccess::Make(std::shared_ptr<odb_MeshData> mesh) {
  const int count = mesh ? mesh->NodeCount() : 0;
  return odb_SequenceNode(std::make_shared<const odb_MeshSelection>(std::move(mesh), count));
}

odb_SequenceNode odb_SequenceNodeAccess::Make(std::shared_ptr<odb_MeshData> mesh, std::vector<int> positions) {
  return odb_SequenceNode(std::make_shared<const odb_MeshSelection>(std::move(mesh), std::move(positions)));
}

const odb_MeshSelection& odb_SequenceNode::Selection() const {
  static const odb_MeshSelection none;
  return m_selection ? *m_selection : none;
}

const std::shared_ptr<odb_MeshData>& odb_SequenceNode::mesh() const {
  return Selection().Mesh();
}

int odb_SequenceNode::PositionAt(int i) const {
  return Selection().PositionAt(i);
}

int odb_SequenceNode::size() const {
  return Selection().Size();
}

odb_Node odb_SequenceNode::node(int i) const {
  if (i < 0 || i >= size())
    odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_NODE_INDEX_RANGE), kSource, 24);
  return mesh()->NodeAt(PositionAt(i));
}

void odb_SequenceNode::append(const odb_Node& node) {
  if (!mesh() || node.meshIndex() != mesh()->MeshIndex() || node.index() < 0 ||
      node.index() >= mesh()->NodeCount())
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceNode_OTHER_PART), kSource, 32);
  odb_MeshSelection joined = Selection();
  joined.Append(mesh(), {node.index()});
  m_selection = std::make_shared<const odb_MeshSelection>(std::move(joined));
}

void odb_SequenceNode::append(const odb_SequenceNode& other) {
  if (!Selection().SameMesh(other.mesh()))
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceNode_OTHER_PART), kSource, 38);
  odb_MeshSelection joined = Selection();
  joined.Append(other.mesh(), other.Selection().Positions());
  m_selection = std::make_shared<const odb_MeshSelection>(std::move(joined));
}

odb_SequenceNode odb_SequenceNode::slice(int from, int to) const {
  return odb_SequenceNode(std::make_shared<const odb_MeshSelection>(Selection().Slice(from, to)));
}

bool odb_SequenceNode::isMember(const odb_Node& node) const {
  if (!mesh() || node.meshIndex() != mesh()->MeshIndex()) return false;
  int position = mesh()->mesh->NodePosition(node.label());
  return position >= 0 && Selection().Holds(position);
}

bool odb_SequenceNode::isEqual(const odb_SequenceNode& other) const {
  return Selection().IsEqual(other.Selection());
}

odb_String odb_SequenceNode::instanceName() const {
  return mesh() ? mesh()->instanceName : odb_String();
}
