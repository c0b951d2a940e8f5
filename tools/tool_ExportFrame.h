// One frame of the export, in two halves: reading (tool_ReadFrame) copies each block of the
// frame's fields into buffers of its own, and computing (tool_FrameArrays) turns those buffers
// into the point and cell arrays of the frame's .vtu, without calling the library. Each half
// keeps its memory from frame to frame.
#ifndef TOOL_EXPORTFRAME_H
#define TOOL_EXPORTFRAME_H

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "odb_API.h"
#include "tool_Common.h"
#include "tool_ExportGrid.h"
#include "tool_Vtu.h"

// One block of a frame, as read.
struct tool_BlockData {
  std::string array;    // the point or cell array it goes to
  std::string average;  // the nodal average it goes to as well; empty for none
  odb_Enum::odb_ResultPositionEnum position = odb_Enum::UNDEFINED_POSITION;
  int width = 0, perLabel = 0;
  const tool_InstancePiece* piece = nullptr;
  tool_Buffer<int> labels;
  tool_Buffer<float> data;
};

// The blocks of one frame; their buffers are reused by the next frame read into it.
struct tool_FrameData {
  std::deque<tool_BlockData> blocks;
  std::size_t used = 0;
  std::uint64_t bytes = 0;  // read into it
};

// Reads the blocks of a frame's fields that the grid covers.
void tool_ReadFrame(const odb_Frame& frame, const tool_Grid& grid, tool_FrameData& into);

// The arrays of a frame, found by name, listed in the order the frame first asked for them. They
// are kept from frame to frame and refilled, so that each frame's arrays reuse memory already
// in place rather than fresh pages.
class tool_Arrays {
 public:
  // The array `name`, filled with NaN when first asked for in this frame; null when this frame
  // asked for it already with another number of components.
  tool_VtuArray* Get(const std::string& name, int components, std::size_t tuples);
  const std::vector<const tool_VtuArray*>& Used() const { return m_order; }
  void NextFrame();

 private:
  std::deque<tool_VtuArray> m_arrays;  // stable addresses
  std::vector<bool> m_used;
  std::vector<const tool_VtuArray*> m_order;
  std::map<std::string, std::size_t> m_index;
};

// Turns a frame's blocks into point and cell arrays over the grid: nodal values as they are,
// element values averaged per element, and nodal averages of element-nodal values, stored or
// extrapolated from integration points (tool_Extrapolation.h). One frame at a time.
class tool_FrameArrays {
 public:
  explicit tool_FrameArrays(const tool_Grid& grid) : m_grid(grid) {}
  void Make(const tool_FrameData& frame, tool_Arrays& points, tool_Arrays& cells);

 private:
  struct Weights {  // in single precision, as the values they multiply
    int nodes = 0;
    std::vector<float> weights;  // nodes x points
  };
  struct NodeSums {
    int width = 0;
    bool used = false;  // in the frame at hand
    std::vector<float> sums;
    std::vector<int> counts;
  };
  void Nodal(const tool_BlockData& block, tool_Arrays& points);
  void Element(const tool_BlockData& block, tool_Arrays& cells);
  const Weights& WeightsOf(int geometry, int nodes, int points);

  const tool_Grid& m_grid;
  std::vector<float> m_nodeValues;
  std::map<std::tuple<int, int, int>, Weights> m_weights;
  std::map<std::string, NodeSums> m_averages;
};

#endif
