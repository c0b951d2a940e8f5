// The export's grid: every instance's mesh, placed, as one set of VTK points and cells, with the
// tables that take a field's node and element labels to the grid's points and cells.
#ifndef TOOL_EXPORTGRID_H
#define TOOL_EXPORTGRID_H

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "odb_API.h"
#include "tool_Vtu.h"

// From a label to a position: a table over the labels' range when they are dense enough, else a
// hash map. -1 for a label not held.
class tool_LabelIndex {
 public:
  void Build(const std::vector<int>& labels, const std::vector<int>& positions);
  int Find(int label) const {
    if (!m_table.empty()) {
      const long long i = static_cast<long long>(label) - m_first;
      return i >= 0 && i < static_cast<long long>(m_table.size())
                 ? m_table[static_cast<std::size_t>(i)]
                 : -1;
    }
    const auto it = m_map.find(label);
    return it == m_map.end() ? -1 : it->second;
  }

 private:
  int m_first = 0;
  std::vector<int> m_table;
  std::unordered_map<int, int> m_map;
};

// One instance's share of the grid.
struct tool_InstancePiece {
  std::string name;
  tool_LabelIndex points;               // node label -> point of the grid
  tool_LabelIndex elements;             // element label -> position in the instance
  std::vector<int> cellOf;              // element position -> cell of the grid, -1 left out
  std::vector<std::size_t> nodesStart;  // element position -> start in nodePoints (one more)
  std::vector<int> nodePoints;          // each element's nodes as points of the grid
  std::vector<std::uint8_t> geometry;   // element position -> its geometry class
};

struct tool_Grid {
  tool_VtuMesh mesh;
  std::map<std::string, tool_InstancePiece> instances;
};

// The grid of every instance of `odb`. Element types VTK has no cell for are left out, and said
// on `notes`, one line per type.
tool_Grid tool_BuildGrid(odb_Odb& odb, std::ostream& notes);

#endif
