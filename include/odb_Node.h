// odb_Node: one node of a part or an instance, as a record: its label and its coordinates.
//
// A plain value (24 bytes), built on request from the mesh's arrays; it holds no handle to the
// database and stays valid after the database is closed. Coordinates are always three floats
// (zero third coordinate in planar parts); nodes of an instance report the placed coordinates.
#ifndef ODB_NODE_H
#define ODB_NODE_H

#include "odb_Export.h"

class QTVODB_EXPORT odb_Node {
 public:
  // A node of no mesh: label -1, index -1, at the origin.
  odb_Node() = default;
  odb_Node(int label, int index, int meshIndex, const float coordinates[3])
      : m_label(label), m_index(index), m_meshIndex(meshIndex) {
    for (int k = 0; k < 3; ++k) m_coordinates[k] = coordinates[k];
  }

  int label() const { return m_label; }
  // The node's position in its part's node list (0-based).
  int index() const { return m_index; }
  // The stored index of the part whose mesh holds the node.
  int meshIndex() const { return m_meshIndex; }
  // Three coordinates.
  const float* coordinates() const { return m_coordinates; }

  bool operator==(const odb_Node& other) const {
    return m_label == other.m_label && m_index == other.m_index &&
           m_meshIndex == other.m_meshIndex && m_coordinates[0] == other.m_coordinates[0] &&
           m_coordinates[1] == other.m_coordinates[1] && m_coordinates[2] == other.m_coordinates[2];
  }
  bool operator!=(const odb_Node& other) const { return !(*this == other); }

 private:
  int m_label = -1;
  int m_index = -1;
  int m_meshIndex = -1;
  float m_coordinates[3] = {0, 0, 0};
};

#endif
