// odb_MeshSelection: which nodes or elements of one mesh a sequence holds: all of them, or a list
// of positions with a window on it.
//
// The list is shared between copies and slices (copying and slicing are O(1)); appending makes
// a private list first. Used by odb_SequenceNode and odb_SequenceElement, which the
// implementation makes through their Access below; internal. One thread at a time.
#ifndef ODB_MESHSELECTION_H
#define ODB_MESHSELECTION_H

#include <memory>
#include <vector>

#include "odb_SequenceElement.h"
#include "odb_SequenceNode.h"

struct odb_MeshData;

class odb_MeshSelection {
 public:
  odb_MeshSelection() = default;
  // The first `count` positions of `mesh`.
  odb_MeshSelection(std::shared_ptr<odb_MeshData> mesh, int count)
      : m_mesh(std::move(mesh)), m_end(count) {}
  odb_MeshSelection(std::shared_ptr<odb_MeshData> mesh, std::vector<int> positions);

  int Size() const { return m_end - m_begin; }
  // The mesh position of entry i (no check).
  int PositionAt(int i) const { return m_positions ? (*m_positions)[m_begin + i] : m_begin + i; }
  const std::shared_ptr<odb_MeshData>& Mesh() const { return m_mesh; }

  // Whether the entries may be joined: the same mesh, or either side holds no mesh yet.
  bool SameMesh(const std::shared_ptr<odb_MeshData>& mesh) const {
    return !m_mesh || !mesh || m_mesh == mesh;
  }
  // Appends mesh positions (the caller has checked the mesh); a selection of no mesh takes it.
  void Append(const std::shared_ptr<odb_MeshData>& mesh, const std::vector<int>& positions);
  odb_MeshSelection Slice(int from, int to) const;
  // Whether mesh position p is among the entries.
  bool Holds(int position) const;
  bool IsEqual(const odb_MeshSelection& other) const;
  std::vector<int> Positions() const;

 private:
  std::shared_ptr<odb_MeshData> m_mesh;
  std::shared_ptr<const std::vector<int>> m_positions;  // null: positions begin..end-1
  int m_begin = 0;
  int m_end = 0;
};

// Make node and element sequences over a mesh and reach what they hold, for the implementation.
struct odb_SequenceNodeAccess {
  // All nodes of a mesh, or those at `positions` (0-based, in that order).
  static odb_SequenceNode Make(std::shared_ptr<odb_MeshData> mesh);
  static odb_SequenceNode Make(std::shared_ptr<odb_MeshData> mesh, std::vector<int> positions);
  static const std::shared_ptr<odb_MeshData>& Mesh(const odb_SequenceNode& nodes) {
    return nodes.mesh();
  }
  static int PositionAt(const odb_SequenceNode& nodes, int i) { return nodes.PositionAt(i); }
};

struct odb_SequenceElementAccess {
  // All elements of a mesh, or those at `positions` (0-based, in that order).
  static odb_SequenceElement Make(std::shared_ptr<odb_MeshData> mesh);
  static odb_SequenceElement Make(std::shared_ptr<odb_MeshData> mesh, std::vector<int> positions);
  static const std::shared_ptr<odb_MeshData>& Mesh(const odb_SequenceElement& elements) {
    return elements.mesh();
  }
  static int PositionAt(const odb_SequenceElement& elements, int i) {
    return elements.PositionAt(i);
  }
};

#endif
