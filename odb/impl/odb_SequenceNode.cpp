#include "odb_SequenceNode.h"

#include "odb_Exception.h"
#include "odb_Mesh.h"
#include "odb_MeshData.h"
#include "odb_Message.h"

const uti_LabelRow<odb_SequenceNodeEnm> uti_LabelTable<odb_SequenceNodeEnm, 1>::rows[] = {
    {"Cannot Append. Sequence belongs to different part.", "odb_SequenceNode_MSGID_00",
     odb_SequenceNode_OTHER_PART},
    {nullptr, nullptr, {}}};

namespace {
const char kSource[] = "odb/impl/odb_SequenceNode";
}

odb_SequenceNode::odb_SequenceNode(std::shared_ptr<odb_MeshData> mesh)
    : m_selection(mesh, mesh ? mesh->NodeCount() : 0) {}

odb_SequenceNode::odb_SequenceNode(std::shared_ptr<odb_MeshData> mesh, std::vector<int> positions)
    : m_selection(std::move(mesh), std::move(positions)) {}

odb_Node odb_SequenceNode::node(int i) const {
  if (i < 0 || i >= size())
    odb_ThrowMessage(odb_CatalogueMessage(odb_Mesh_NODE_INDEX_RANGE), kSource, 24);
  return mesh()->NodeAt(PositionAt(i));
}

void odb_SequenceNode::append(const odb_Node& node) {
  if (!mesh() || node.meshIndex() != mesh()->MeshIndex() || node.index() < 0 ||
      node.index() >= mesh()->NodeCount())
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceNode_OTHER_PART), kSource, 32);
  m_selection.Append(mesh(), {node.index()});
}

void odb_SequenceNode::append(const odb_SequenceNode& other) {
  if (!m_selection.SameMesh(other.mesh()))
    odb_ThrowMessage(odb_CatalogueMessage(odb_SequenceNode_OTHER_PART), kSource, 38);
  m_selection.Append(other.mesh(), other.m_selection.Positions());
}

odb_SequenceNode odb_SequenceNode::slice(int from, int to) const {
  return odb_SequenceNode(m_selection.Slice(from, to));
}

bool odb_SequenceNode::isMember(const odb_Node& node) const {
  if (!mesh() || node.meshIndex() != mesh()->MeshIndex()) return false;
  int position = mesh()->mesh->NodePosition(node.label());
  return position >= 0 && m_selection.Holds(position);
}

bool odb_SequenceNode::isEqual(const odb_SequenceNode& other) const {
  return m_selection.IsEqual(other.m_selection);
}

odb_String odb_SequenceNode::instanceName() const {
  return mesh() ? mesh()->instanceName : odb_String();
}
