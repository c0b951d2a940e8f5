// Writing VTK's XML unstructured-grid files (.vtu), binary with raw appended data, and the .pvd
// collection that makes a time series of them; and the VTK cell of each element shape.
//
// A .vtu holds the points, the cells (connectivity, offsets, types) and arrays of floats per
// point and per cell. The arrays follow the XML header as raw little-endian bytes, each preceded
// by its size as a 64-bit integer: no base64, so writing costs about what fwrite of the same
// bytes costs.
#ifndef TOOL_VTU_H
#define TOOL_VTU_H

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "odb_Enum.h"

// The VTK cell for an element of `geometry` with `nodes` nodes, and the order in which its
// nodes go into the cell (positions in its connectivity); cell type 0 when VTK has no cell for
// it. Solids: tetrahedra, wedges, hexahedra; planar, shell, membrane, surface and rigid
// elements: triangles and quadrilaterals; beams, trusses, connectors and two-node rigid
// elements: lines; each linear or quadratic.
struct tool_VtkCell {
  std::uint8_t type = 0;
  std::vector<int> order;
};
tool_VtkCell tool_VtkCellOf(odb_Enum::odb_ElementGeometryClass geometry, int nodes);

// An array of `components` floats per point or per cell.
struct tool_VtuArray {
  std::string name;
  int components = 1;
  std::vector<float> values;
};

struct tool_VtuMesh {
  std::vector<float> points;  // 3 per point
  std::vector<std::int32_t> connectivity, offsets;
  std::vector<std::uint8_t> types;
  std::size_t Points() const { return points.size() / 3; }
  std::size_t Cells() const { return types.size(); }
};

// Writes `path`; returns the bytes written. Throws tool_Error when the file cannot be written.
std::uint64_t tool_WriteVtu(const std::string& path, const tool_VtuMesh& mesh,
                            const std::vector<const tool_VtuArray*>& pointData,
                            const std::vector<const tool_VtuArray*>& cellData);

// Writes the collection `path`: one data set per (time, file name relative to the collection).
void tool_WritePvd(const std::string& path,
                   const std::vector<std::pair<double, std::string>>& series);

// The text of `s` inside an XML attribute.
std::string tool_XmlEscape(const std::string& s);

#endif
