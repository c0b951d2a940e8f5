#include "tool_ExportFrame.h"

#include <algorithm>
#include <limits>

#include "tool_Extrapolation.h"

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

std::string ArrayName(const std::string& field, const odb_FieldBulkData& block) {
  const int sp = block.sectionPoint().number();
  return sp > 0 ? field + " SP " + std::to_string(sp) : field;
}

bool IsElementPosition(odb_Enum::odb_ResultPositionEnum p) {
  return p == odb_Enum::INTEGRATION_POINT || p == odb_Enum::CENTROID ||
         p == odb_Enum::WHOLE_ELEMENT || p == odb_Enum::ELEMENT_NODAL;
}

// out (nodes x W) = weights (nodes x per) times rows (per x W). A fixed width lets the compiler
// keep a node's sums in registers and unroll the components: this loop is most of an export's
// arithmetic.
template <int W>
void ExtrapolateFixed(const float* weights, int nodes, int per, const float* rows, float* out) {
  for (int n = 0; n < nodes; ++n) {
    float sum[W] = {};
    for (int k = 0; k < per; ++k) {
      const float w = weights[n * per + k];
      for (int c = 0; c < W; ++c) sum[c] += w * rows[k * W + c];
    }
    for (int c = 0; c < W; ++c) out[n * W + c] = sum[c];
  }
}

void Extrapolate(const float* weights, int nodes, int per, int width, const float* rows,
                 float* out) {
  switch (width) {
    case 1:
      return ExtrapolateFixed<1>(weights, nodes, per, rows, out);
    case 3:
      return ExtrapolateFixed<3>(weights, nodes, per, rows, out);
    case 4:
      return ExtrapolateFixed<4>(weights, nodes, per, rows, out);
    case 6:
      return ExtrapolateFixed<6>(weights, nodes, per, rows, out);
    default:
      for (int n = 0; n < nodes; ++n)
        for (int c = 0; c < width; ++c) {
          float sum = 0;
          for (int k = 0; k < per; ++k) sum += weights[n * per + k] * rows[k * width + c];
          out[n * width + c] = sum;
        }
  }
}

// A hexahedron of 8 points carried to its nodes the short way; false for a width it leaves to
// the weights.
bool Hex8(int width, const float* rows, float* out) {
  switch (width) {
    case 1:
      tool_ExtrapolateHex8<1>(rows, out);
      return true;
    case 3:
      tool_ExtrapolateHex8<3>(rows, out);
      return true;
    case 4:
      tool_ExtrapolateHex8<4>(rows, out);
      return true;
    case 6:
      tool_ExtrapolateHex8<6>(rows, out);
      return true;
    default:
      return false;
  }
}

// out (W) = the mean of the `per` rows of W values in `rows`.
template <int W>
void MeanFixed(const float* rows, int per, float* out) {
  float sum[W] = {};
  for (int k = 0; k < per; ++k)
    for (int c = 0; c < W; ++c) sum[c] += rows[k * W + c];
  const float scale = 1.0f / static_cast<float>(per);
  for (int c = 0; c < W; ++c) out[c] = sum[c] * scale;
}

void Mean(const float* rows, int per, int width, float* out) {
  switch (width) {
    case 1:
      return MeanFixed<1>(rows, per, out);
    case 3:
      return MeanFixed<3>(rows, per, out);
    case 4:
      return MeanFixed<4>(rows, per, out);
    case 6:
      return MeanFixed<6>(rows, per, out);
    default:
      for (int c = 0; c < width; ++c) {
        double sum = 0;
        for (int k = 0; k < per; ++k) sum += rows[k * width + c];
        out[c] = static_cast<float>(sum / per);
      }
  }
}

}  // namespace

void tool_ReadFrame(const odb_Frame& frame, const tool_Grid& grid, tool_FrameData& into) {
  into.used = 0;
  into.bytes = 0;
  for (odb_FieldOutputRepositoryIT it(frame.fieldOutputs()); !it.isDone(); it.next()) {
    const odb_FieldOutput& field = it.currentValue();
    const std::string name = tool_Str(field.name());
    const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
    bool nodal = false, elementNodal = false;
    for (int b = 0; b < blocks.size(); ++b) {
      nodal = nodal || blocks[b].position() == odb_Enum::NODAL;
      elementNodal = elementNodal || blocks[b].position() == odb_Enum::ELEMENT_NODAL;
    }
    for (int b = 0; b < blocks.size(); ++b) {
      const odb_FieldBulkData& block = blocks[b];
      const odb_Enum::odb_ResultPositionEnum p = block.position();
      if (p != odb_Enum::NODAL && !IsElementPosition(p)) continue;
      const auto piece = grid.instances.find(tool_Str(block.instance().name()));
      if (piece == grid.instances.end()) continue;
      if (into.used == into.blocks.size()) into.blocks.emplace_back();
      tool_BlockData& d = into.blocks[into.used++];
      d.array = ArrayName(name, block);
      // A field without nodal values of its own is averaged at the nodes from its element-nodal
      // values when it has them, else from its integration points.
      const bool averaged = !nodal && (p == odb_Enum::ELEMENT_NODAL ||
                                       (p == odb_Enum::INTEGRATION_POINT && !elementNodal));
      d.average = averaged ? d.array + " (nodal average)" : std::string();
      d.position = p;
      d.width = block.width();
      d.perLabel = block.valuesPerElement();
      d.piece = &piece->second;
      block.readLabels(d.labels.view(static_cast<std::size_t>(block.numberOfLabels())));
      block.readData(d.data.view(static_cast<std::size_t>(block.length()) * d.width));
      into.bytes += d.labels.size() * sizeof(int) + d.data.size() * sizeof(float);
    }
  }
}

tool_VtuArray* tool_Arrays::Get(const std::string& name, int components, std::size_t tuples) {
  auto it = m_index.find(name);
  if (it == m_index.end()) {
    it = m_index.emplace(name, m_arrays.size()).first;
    m_arrays.push_back({name, components, {}});
    m_used.push_back(false);
  }
  tool_VtuArray& a = m_arrays[it->second];
  if (m_used[it->second]) return a.components == components ? &a : nullptr;
  m_used[it->second] = true;
  m_order.push_back(&a);
  a.components = components;
  a.values.assign(tuples * components, kNaN);
  return &a;
}

void tool_Arrays::NextFrame() {
  m_order.clear();
  std::fill(m_used.begin(), m_used.end(), false);
}

const tool_FrameArrays::Weights& tool_FrameArrays::WeightsOf(int geometry, int nodes, int points) {
  const auto key = std::make_tuple(geometry, nodes, points);
  auto it = m_weights.find(key);
  if (it == m_weights.end()) {
    const tool_Extrapolator x = tool_ExtrapolatorOf(
        static_cast<odb_Enum::odb_ElementGeometryClass>(geometry), nodes, points);
    it = m_weights
             .emplace(key, Weights{x.nodes, std::vector<float>(x.weights.begin(), x.weights.end())})
             .first;
  }
  return it->second;
}

void tool_FrameArrays::Nodal(const tool_BlockData& block, tool_Arrays& points) {
  const int width = block.width;
  tool_VtuArray* array = points.Get(block.array, width, m_grid.mesh.Points());
  if (!array) return;
  for (std::size_t i = 0; i < block.labels.size(); ++i) {
    const int p = block.piece->points.Find(block.labels[i]);
    if (p < 0) continue;
    std::copy_n(&block.data[i * width], width, &array->values[static_cast<std::size_t>(p) * width]);
  }
}

void tool_FrameArrays::Element(const tool_BlockData& block, tool_Arrays& cells) {
  const int width = block.width, per = block.perLabel;
  const bool atNodes = block.position == odb_Enum::ELEMENT_NODAL;
  tool_VtuArray* array = cells.Get(block.array, width, m_grid.mesh.Cells());
  if (!array || per <= 0) return;
  NodeSums* sums = block.average.empty() ? nullptr : &m_averages[block.average];
  if (sums && !sums->used) {
    sums->used = true;
    sums->width = width;
    sums->sums.assign(m_grid.mesh.Points() * width, 0.0f);
    sums->counts.assign(m_grid.mesh.Points(), 0);
  }
  if (sums && sums->width != width) sums = nullptr;
  const tool_InstancePiece& piece = *block.piece;
  for (std::size_t i = 0; i < block.labels.size(); ++i) {
    const int e = piece.elements.Find(block.labels[i]);
    if (e < 0) continue;
    const float* rows = &block.data[i * per * width];
    const int cell = piece.cellOf[static_cast<std::size_t>(e)];
    if (cell >= 0) Mean(rows, per, width, &array->values[static_cast<std::size_t>(cell) * width]);
    if (!sums) continue;
    const std::size_t start = piece.nodesStart[e];
    const int nodes = static_cast<int>(piece.nodesStart[e + 1] - start);
    m_nodeValues.resize(static_cast<std::size_t>(nodes) * width);
    if (atNodes) {
      if (per != nodes) continue;
      std::copy_n(rows, m_nodeValues.size(), m_nodeValues.begin());
    } else if (!(nodes == 8 && per == 8 && piece.geometry[e] == odb_Enum::GEOMETRY_SOLID &&
                 Hex8(width, rows, m_nodeValues.data()))) {
      const Weights& x = WeightsOf(piece.geometry[e], nodes, per);
      if (x.nodes != nodes) continue;
      Extrapolate(x.weights.data(), nodes, per, width, rows, m_nodeValues.data());
    }
    for (int n = 0; n < nodes; ++n) {
      const int p = piece.nodePoints[start + n];
      if (p < 0) continue;
      float* sum = &sums->sums[static_cast<std::size_t>(p) * width];
      for (int c = 0; c < width; ++c) sum[c] += m_nodeValues[n * width + c];
      ++sums->counts[p];
    }
  }
}

void tool_FrameArrays::Make(const tool_FrameData& frame, tool_Arrays& points, tool_Arrays& cells) {
  for (auto& [name, a] : m_averages) a.used = false;
  for (std::size_t b = 0; b < frame.used; ++b) {
    const tool_BlockData& block = frame.blocks[b];
    if (block.position == odb_Enum::NODAL)
      Nodal(block, points);
    else
      Element(block, cells);
  }
  for (const auto& [name, a] : m_averages) {
    if (!a.used) continue;
    tool_VtuArray* out = points.Get(name, a.width, m_grid.mesh.Points());
    if (!out) continue;
    for (std::size_t p = 0; p < a.counts.size(); ++p) {
      if (a.counts[p] == 0) continue;
      const float scale = 1.0f / static_cast<float>(a.counts[p]);
      for (int c = 0; c < a.width; ++c)
        out->values[p * a.width + c] = a.sums[p * a.width + c] * scale;
    }
  }
}
