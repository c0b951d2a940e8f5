// odb_Mesh: the view of one stored mesh: a part's nodes and elements, seen through the part itself
// or through one of its instances (which places the nodes).
//
// A handle: copies share the view (O(1)). Records are built on request from the stored arrays,
// which are read on first use and kept by the part's mesh for as long as any handle needs them;
// label lookups take constant time (see getNodeFromLabel below). One thread at a time.
#ifndef ODB_MESH_H
#define ODB_MESH_H

#include "odb_Element.h"
#include "odb_Export.h"
#include "odb_Node.h"
#include "odb_String.h"
#include "uti_LabelMap.h"
#include "uti_SharedPtr.h"

struct odb_MeshData;

// The messages of meshes.
enum odb_MeshEnm : int {
  odb_Mesh_NODE_INDEX_RANGE = 0,
  odb_Mesh_INVALID_NODE_LABEL = 1,
  odb_Mesh_INVALID_ELEMENT_INDEX = 2,
  odb_Mesh_ELEMENT_INDEX_RANGE = 3,
  odb_Mesh_ELEMENT_INDEX_NOT_FOUND = 4,
  odb_Mesh_INVALID_ELEMENT_LABEL = 5,
  odb_Mesh_ELEMENT_NOT_FOUND = 6
};

template <>
struct QTVODB_EXPORT uti_LabelTable<odb_MeshEnm, 1> {
  static const uti_LabelRow<odb_MeshEnm> rows[];
};

class QTVODB_EXPORT odb_Mesh {
 public:
  // A mesh of nothing: no nodes, no elements; label lookups throw "Invalid Node label".
  odb_Mesh() = default;

  // The instance this mesh is seen through; empty for a part's own mesh.
  odb_String instanceName() const;
  // The stored index of the part that holds the mesh; -1 for a mesh of nothing.
  int meshIndex() const;
  int numberOfNodes() const;
  int numberOfElements() const;

  // Node i (0-based); throws "Node index out of range.".
  odb_Node node(int i) const;
  // Element i (0-based); throws "Invalid Element index" for i < 0 and "Element index out of
  // range." past the end.
  odb_Element element(int i) const;
  // The position of a label; throws "Invalid Node label" / "Invalid Element label" when the mesh
  // has no such label.
  int nodePosition(int label) const;
  int elementPosition(int label) const;

  bool operator==(const odb_Mesh& other) const { return m_data == other.m_data; }

 private:
  friend struct odb_MeshAccess;

  explicit odb_Mesh(std::shared_ptr<odb_MeshData> data);

  std::shared_ptr<odb_MeshData> m_data;
};

#endif
