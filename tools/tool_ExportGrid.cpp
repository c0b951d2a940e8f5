#include "tool_ExportGrid.h"

#include <algorithm>

#include "tool_Common.h"

void tool_LabelIndex::Build(const std::vector<int>& labels, const std::vector<int>& positions) {
  if (labels.empty()) return;
  int lo = labels[0], hi = labels[0];
  for (int l : labels) lo = std::min(lo, l), hi = std::max(hi, l);
  const double range = double(hi) - double(lo) + 1;
  if (range <= 4.0 * labels.size() + 1024) {
    m_first = lo;
    m_table.assign(static_cast<std::size_t>(range), -1);
    for (std::size_t i = 0; i < labels.size(); ++i)
      m_table[static_cast<std::size_t>(labels[i] - lo)] = positions[i];
  } else {
    for (std::size_t i = 0; i < labels.size(); ++i) m_map[labels[i]] = positions[i];
  }
}

tool_Grid tool_BuildGrid(odb_Odb& odb, std::ostream& notes) {
  tool_Grid grid;
  std::map<std::string, std::size_t> leftOut;  // element type -> elements left out
  for (odb_InstanceRepositoryIT it(odb.rootAssembly().instances()); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    tool_InstancePiece& piece = grid.instances[tool_Str(instance.name())];
    piece.name = tool_Str(instance.name());
    const std::size_t nodes = static_cast<std::size_t>(instance.nodes().size());
    const int firstPoint = static_cast<int>(grid.mesh.Points());
    std::vector<int> labels(nodes), positions(nodes);
    std::vector<float> xyz(3 * nodes);
    instance.readNodes(labels, xyz);  // placed by the instance
    grid.mesh.points.insert(grid.mesh.points.end(), xyz.begin(), xyz.end());
    for (std::size_t i = 0; i < nodes; ++i) positions[i] = firstPoint + static_cast<int>(i);
    piece.points.Build(labels, positions);

    const odb_SequenceElement& elements = instance.elements();
    const std::size_t count = static_cast<std::size_t>(elements.size());
    std::vector<int> elementLabels(count), connectivity(instance.connectivityLength());
    instance.readElements(elementLabels, connectivity);
    std::vector<int> order(count);
    for (std::size_t e = 0; e < count; ++e) order[e] = static_cast<int>(e);
    piece.elements.Build(elementLabels, order);
    piece.cellOf.assign(count, -1);
    piece.geometry.resize(count);
    piece.nodesStart.resize(count + 1);
    piece.nodePoints.resize(connectivity.size());
    for (std::size_t i = 0; i < connectivity.size(); ++i)
      piece.nodePoints[i] = piece.points.Find(connectivity[i]);

    // Elements of one shape come in runs: the cell depends on the geometry and the node count
    // alone, so it is looked up once per run, and the type's name only for a note.
    grid.mesh.connectivity.reserve(grid.mesh.connectivity.size() + connectivity.size());
    grid.mesh.offsets.reserve(grid.mesh.offsets.size() + count);
    grid.mesh.types.reserve(grid.mesh.types.size() + count);
    int runGeometry = -1, runNodes = -1;
    tool_VtkCell cell;
    std::size_t at = 0;
    for (std::size_t e = 0; e < count; ++e) {
      const odb_Element element = elements.element(static_cast<int>(e));
      const int n = element.numberOfNodes();
      const odb_Enum::odb_ElementGeometryClass geometry = element.geometryClass();
      piece.nodesStart[e] = at;
      piece.geometry[e] = static_cast<std::uint8_t>(geometry);
      if (geometry != runGeometry || n != runNodes) {
        cell = tool_VtkCellOf(geometry, n);
        runGeometry = geometry;
        runNodes = n;
      }
      if (cell.type == 0) {
        ++leftOut[tool_Str(element.type())];
      } else {
        piece.cellOf[e] = static_cast<int>(grid.mesh.Cells());
        for (int k : cell.order) grid.mesh.connectivity.push_back(piece.nodePoints[at + k]);
        grid.mesh.offsets.push_back(static_cast<std::int32_t>(grid.mesh.connectivity.size()));
        grid.mesh.types.push_back(cell.type);
      }
      at += static_cast<std::size_t>(n);
    }
    piece.nodesStart[count] = at;
  }
  for (const auto& [type, n] : leftOut)
    notes << "odb export: element type " << type << " has no VTK cell; its " << n
          << " elements are left out\n";
  return grid;
}
