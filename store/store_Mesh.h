// store_Mesh: the nodes and elements of one part, as the file stores them and as memory keeps
// them once read.
//
// A part's mesh is stored in blocks, one per addition: a node block holds labels (int32) and
// coordinates (three float32 per node, zero-padded in planar parts); an element block holds
// elements of one type and section category, their labels and their connectivity in node labels
// (int32, nodes-per-element per element). Instances of the part share its store_Mesh: their
// element data are never copied.
//
// Each array is read on first use and kept (labels, coordinates, connectivity separately, so a
// walk over the nodes never reads the elements), and the label indexes are built on first lookup.
// Additions validate against what is stored before writing anything, write one block inside the
// database's open transaction, and keep the label arrays in memory. The bulk arrays are produced
// by the caller a piece at a time, straight into the file's chunks, and read back only when
// asked for, which keeps the memory of a large write near the size of its input.
// Owned by shared_ptr by the part and its instances. One thread at a time.
#ifndef STORE_MESH_H
#define STORE_MESH_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "store_LabelIndex.h"

class store_Database;

// The most nodes an element has (odb_Element::kMaxNodes): records hold them inline.
constexpr int store_kMaxNodesPerElement = 30;

struct store_ElementBlock {
  std::string type;
  int nodesPerElement = 0;
  std::string sectionCategory;
  int first = 0;                      // position of the block's first element in the part
  int count = 0;                      // number of elements
  std::size_t connectivityStart = 0;  // offset of its first node label in Connectivity()
};

// Write rows [first, first + n) of an addition into `out`, row after row: three coordinates
// per node, or the node labels of each element.
using store_NodeRows = std::function<void(int first, int n, float* out)>;
using store_ElementRows = std::function<void(int first, int n, int* out)>;

// Why an addition was refused; nothing was written.
struct store_MeshRefusal {
  enum Kind { kNone, kDuplicateNode, kDuplicateElement, kUnknownNode } kind = kNone;
  int label = 0;  // the duplicate label, or the element naming an unknown node
  int node = 0;   // kUnknownNode: the node label it names
  explicit operator bool() const { return kind != kNone; }
};

class store_Mesh {
 public:
  store_Mesh(std::shared_ptr<store_Database> db, std::int64_t partId);
  // The part's name, which damage found in its mesh names ("the nodes of part 'BLOCK' ...").
  void SetPartName(const std::string& name) { m_partName = name; }
  std::int64_t PartId() const { return m_partId; }
  const std::shared_ptr<store_Database>& Database() const { return m_db; }

  int NodeCount() { return static_cast<int>(NodeLabels().size()); }
  const std::vector<int>& NodeLabels();
  // Three coordinates per node, in node order.
  const std::vector<float>& NodeCoordinates();
  // The position of a node label, -1 when the part has no such node.
  int NodePosition(int label);

  int ElementCount() { return static_cast<int>(ElementLabels().size()); }
  const std::vector<int>& ElementLabels();
  const std::vector<store_ElementBlock>& ElementBlocks();
  // The node labels of all elements, block after block.
  const std::vector<int>& Connectivity();
  int ElementPosition(int label);
  // The number of node labels in Connectivity().
  std::size_t ConnectivityLength();
  // Copy what NodeCoordinates() and Connectivity() hold into `out`, which has room for it; when
  // the mesh does not hold them yet, they are read from the file straight into `out` and not
  // kept, so a program reading into its own arrays costs the library no memory.
  void ReadCoordinates(float* out);
  void ReadConnectivity(int* out);
  // The position in labels[0..n) of the first node or element label that repeats an earlier
  // one, or -1; labels the part lacks are passed over (see store_LabelIndex::FirstRepeat).
  std::ptrdiff_t FirstRepeatedNode(const int* labels, std::size_t n) {
    return NodeIndex().FirstRepeat(labels, n);
  }
  std::ptrdiff_t FirstRepeatedElement(const int* labels, std::size_t n) {
    return ElementIndex().FirstRepeat(labels, n);
  }
  // The block holding the element at `position` (0 <= position < ElementCount()).
  const store_ElementBlock& BlockOf(int position);

  // Adds nodes: `coordinates` gives x y z per node (z = 0 in planar parts). Refuses duplicate
  // labels, among the new ones or against the part's nodes, before writing anything.
  store_MeshRefusal AddNodes(std::vector<int> labels, const store_NodeRows& coordinates);
  // Adds elements of one type: `connectivity` gives nodesPerElement node labels per element.
  // Refuses duplicate element labels and node labels the part does not have (reporting the
  // first unknown node when there are both); the node labels are checked as they are written,
  // and a refused or failed addition leaves nothing in the file.
  store_MeshRefusal AddElements(std::vector<int> labels, int nodesPerElement,
                                const store_ElementRows& connectivity, const std::string& type,
                                const std::string& sectionCategory);

 private:
  // Runs `read`, naming the part's `what` ("nodes", "elements") in the damage it finds.
  template <class Read>
  void Reading(const char* what, Read&& read);
  void LoadNodeBlocks();
  void LoadElementBlocks();
  const store_LabelIndex& NodeIndex();
  const store_LabelIndex& ElementIndex();

  std::shared_ptr<store_Database> m_db;
  std::int64_t m_partId;
  std::string m_partName;

  bool m_nodeBlocksRead = false;
  std::vector<std::int64_t> m_nodeLabelArrays, m_coordinateArrays;
  std::vector<int> m_nodeLabels;
  bool m_coordinatesRead = false;
  std::vector<float> m_coordinates;
  bool m_nodeIndexBuilt = false;
  store_LabelIndex m_nodeIndex;

  bool m_elementBlocksRead = false;
  std::vector<store_ElementBlock> m_blocks;
  std::vector<std::int64_t> m_connectivityArrays;
  std::vector<int> m_elementLabels;
  bool m_connectivityRead = false;
  std::vector<int> m_connectivity;
  bool m_elementIndexBuilt = false;
  store_LabelIndex m_elementIndex;
};

#endif
