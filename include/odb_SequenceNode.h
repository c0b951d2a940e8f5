// odb_SequenceNode: nodes of one mesh, all of them or a selection, built on request.
//
// A view: it holds the mesh and, for a selection, the shared list of node positions; copying is
// O(1) and slicing shares the list. Nodes are built by value from the mesh's arrays at each
// access (a few nanoseconds), so nothing is cached per node. isMember is constant time on a
// whole mesh and a scan on a selection. One thread at a time.
#ifndef ODB_SEQUENCENODE_H
#define ODB_SEQUENCENODE_H

#include "odb_Export.h"
#include "odb_Node.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

struct odb_MeshData;
class odb_MeshSelection;
struct odb_SequenceNodeAccess;

// The messages of node sequences.
enum odb_SequenceNodeEnm : int { odb_SequenceNode_OTHER_PART = 0 };

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_SequenceNodeEnm, 1> {
  static const uti_LabelRow<odb_SequenceNodeEnm> rows[];
};

class QTVODB_EXPORT odb_SequenceNode {
 public:
  // No nodes, of no mesh.
  odb_SequenceNode() = default;

  int size() const;
  // Node i (0-based); throws "Node index out of range.".
  odb_Node node(int i) const;
  odb_Node operator[](int i) const { return node(i); }
  odb_Node get(int i) const { return node(i); }
  odb_Node constGet(int i) const { return node(i); }

  // Appends a node or the nodes of another sequence of the same mesh; throws "Cannot Append.
  // Sequence belongs to different part." for another mesh. An empty sequence of no mesh takes
  // the mesh of what it is given.
  void append(const odb_Node& node);
  void append(const odb_SequenceNode& other);
  // Nodes from..to-1, sharing this sequence's list; the range is clipped to the sequence.
  odb_SequenceNode slice(int from, int to) const;
  // Whether a node of this mesh with the node's label is in the sequence.
  bool isMember(const odb_Node& node) const;
  // Same mesh and the same node positions in the same order.
  bool isEqual(const odb_SequenceNode& other) const;
  // The instance whose mesh this is; empty for a part.
  odb_String instanceName() const;

 private:
  friend struct odb_SequenceNodeAccess;

  explicit odb_SequenceNode(std::shared_ptr<const odb_MeshSelection> selection);
  // The selection; an empty one of no mesh when there is none.
  const odb_MeshSelection& Selection() const;
  // The mesh of the nodes; null for none of no mesh.
  const std::shared_ptr<odb_MeshData>& mesh() const;
  // The position in the mesh of entry i (no check).
  int PositionAt(int i) const;

  // The nodes' mesh and their positions in it; null for none of no mesh.
  std::shared_ptr<const odb_MeshSelection> m_selection;
};

#endif
