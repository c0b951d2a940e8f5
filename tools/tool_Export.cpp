#include "tool_Export.h"

#include <cmath>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <future>
#include <limits>
#include <map>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "tool_Common.h"
#include "tool_Extrapolation.h"
#include "tool_Progress.h"
#include "tool_Vtu.h"

namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

// From a label to a position: a table over the labels' range when they are dense enough, else a
// hash map. -1 for a label not held.
class LabelIndex {
 public:
  void Build(const std::vector<int>& labels, const std::vector<int>& positions) {
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
struct InstancePiece {
  std::string name;
  LabelIndex points;    // node label -> point of the grid
  LabelIndex elements;  // element label -> position in the instance
  std::vector<int> cellOf;                  // element position -> cell of the grid, -1 left out
  std::vector<std::size_t> nodesStart;      // element position -> start in nodePoints
  std::vector<int> nodePoints;              // each element's nodes as points of the grid
  std::vector<std::uint8_t> geometry;       // element position -> its geometry class
};

struct Grid {
  tool_VtuMesh mesh;
  std::map<std::string, InstancePiece> instances;
};

Grid BuildGrid(odb_Odb& odb, std::ostream& notes) {
  Grid grid;
  std::map<std::string, std::size_t> leftOut;  // element type -> elements left out
  for (odb_InstanceRepositoryIT it(odb.rootAssembly().instances()); !it.isDone(); it.next()) {
    const odb_Instance& instance = it.currentValue();
    InstancePiece& piece = grid.instances[tool_Str(instance.name())];
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

    // Elements of one shape come in runs: look the cell up once per run.
    odb_String runType;
    tool_VtkCell cell;
    std::size_t at = 0;
    for (std::size_t e = 0; e < count; ++e) {
      const odb_Element element = elements.element(static_cast<int>(e));
      const int n = element.numberOfNodes();
      piece.nodesStart[e] = at;
      piece.geometry[e] = static_cast<std::uint8_t>(element.geometryClass());
      const odb_String type = element.type();
      if (e == 0 || type != runType) {
        cell = tool_VtkCellOf(element.geometryClass(), n);
        runType = type;
      }
      if (cell.type == 0) {
        ++leftOut[tool_Str(type)];
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

// The arrays of a frame, found by name, listed in the order the frame first asked for them.
// They are kept from frame to frame and refilled, so that each frame's arrays reuse memory already
// in place rather than fresh pages.
class Arrays {
 public:
  // The array `name`, filled with NaN when first asked for in this frame; null when this frame
  // asked for it already with another number of components.
  tool_VtuArray* Get(const std::string& name, int components, std::size_t tuples) {
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
  // The arrays this frame asked for.
  const std::vector<const tool_VtuArray*>& Used() const { return m_order; }
  // Starts the next frame.
  void NextFrame() {
    m_order.clear();
    std::fill(m_used.begin(), m_used.end(), false);
  }

 private:
  std::deque<tool_VtuArray> m_arrays;  // stable addresses
  std::vector<bool> m_used;
  std::vector<const tool_VtuArray*> m_order;
  std::map<std::string, std::size_t> m_index;
};

std::string ArrayName(const std::string& field, const odb_FieldBulkData& block) {
  const int sp = block.sectionPoint().number();
  return sp > 0 ? field + " SP " + std::to_string(sp) : field;
}

bool IsElementPosition(odb_Enum::odb_ResultPositionEnum p) {
  return p == odb_Enum::INTEGRATION_POINT || p == odb_Enum::CENTROID ||
         p == odb_Enum::WHOLE_ELEMENT || p == odb_Enum::ELEMENT_NODAL;
}

// Extrapolation weights in single precision, as the values they multiply.
struct Weights {
  int nodes = 0;
  std::vector<float> weights;  // nodes x points
};

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
    case 1: return ExtrapolateFixed<1>(weights, nodes, per, rows, out);
    case 3: return ExtrapolateFixed<3>(weights, nodes, per, rows, out);
    case 4: return ExtrapolateFixed<4>(weights, nodes, per, rows, out);
    case 6: return ExtrapolateFixed<6>(weights, nodes, per, rows, out);
    default:
      for (int n = 0; n < nodes; ++n)
        for (int c = 0; c < width; ++c) {
          float sum = 0;
          for (int k = 0; k < per; ++k) sum += weights[n * per + k] * rows[k * width + c];
          out[n * width + c] = sum;
        }
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
    case 1: return MeanFixed<1>(rows, per, out);
    case 3: return MeanFixed<3>(rows, per, out);
    case 4: return MeanFixed<4>(rows, per, out);
    case 6: return MeanFixed<6>(rows, per, out);
    default:
      for (int c = 0; c < width; ++c) {
        double sum = 0;
        for (int k = 0; k < per; ++k) sum += rows[k * width + c];
        out[c] = static_cast<float>(sum / per);
      }
  }
}

// Sums of values at the points, and how many values each sum holds, for a nodal average.
struct NodeSums {
  int width = 0;
  bool used = false;  // in the field at hand
  std::vector<float> sums;
  std::vector<int> counts;
};

// Turns a frame's fields into point and cell arrays over the grid. Each block is read once, into
// buffers reused from block to block.
class FrameArrays {
 public:
  FrameArrays(const Grid& grid, tool_Progress& progress) : m_grid(grid), m_progress(progress) {}

  void Field(const odb_FieldOutput& field, Arrays& points, Arrays& cells);

 private:
  // Reads a block into the buffers; null when its instance is not part of the grid.
  const InstancePiece* Read(const odb_FieldBulkData& block);
  void Nodal(const std::string& name, const odb_FieldBulkData& block, Arrays& points);
  // The element means as cell data and, when `sums` is given, the values at the element's nodes
  // (stored, or extrapolated from its integration points) added to the sums.
  void Element(const std::string& name, const odb_FieldBulkData& block, Arrays& cells,
               NodeSums* sums);
  const Weights& WeightsOf(int geometry, int nodes, int points);

  const Grid& m_grid;
  tool_Progress& m_progress;
  tool_Buffer<int> m_labels;
  tool_Buffer<float> m_data;
  std::vector<float> m_nodeValues;
  std::map<std::tuple<int, int, int>, Weights> m_weights;
  std::map<std::string, NodeSums> m_averages;  // kept from field to field, frame to frame
};

const InstancePiece* FrameArrays::Read(const odb_FieldBulkData& block) {
  const auto it = m_grid.instances.find(tool_Str(block.instance().name()));
  if (it == m_grid.instances.end()) return nullptr;
  block.readLabels(m_labels.view(static_cast<std::size_t>(block.numberOfLabels())));
  block.readData(m_data.view(static_cast<std::size_t>(block.length()) * block.width()));
  m_progress.addBytes(m_labels.size() * sizeof(int) + m_data.size() * sizeof(float));
  return &it->second;
}

const Weights& FrameArrays::WeightsOf(int geometry, int nodes, int points) {
  const auto key = std::make_tuple(geometry, nodes, points);
  auto it = m_weights.find(key);
  if (it == m_weights.end()) {
    const tool_Extrapolator x = tool_ExtrapolatorOf(
        static_cast<odb_Enum::odb_ElementGeometryClass>(geometry), nodes, points);
    it = m_weights.emplace(key, Weights{x.nodes, std::vector<float>(x.weights.begin(),
                                                                    x.weights.end())})
             .first;
  }
  return it->second;
}

void FrameArrays::Nodal(const std::string& name, const odb_FieldBulkData& block, Arrays& points) {
  const int width = block.width();
  tool_VtuArray* array = points.Get(ArrayName(name, block), width, m_grid.mesh.Points());
  const InstancePiece* piece = array ? Read(block) : nullptr;
  if (!piece) return;
  for (std::size_t i = 0; i < m_labels.size(); ++i) {
    const int p = piece->points.Find(m_labels[i]);
    if (p < 0) continue;
    std::copy_n(&m_data[i * width], width, &array->values[static_cast<std::size_t>(p) * width]);
  }
}

void FrameArrays::Element(const std::string& name, const odb_FieldBulkData& block,
                          Arrays& cells, NodeSums* sums) {
  const int width = block.width(), per = block.valuesPerElement();
  const bool atNodes = block.position() == odb_Enum::ELEMENT_NODAL;
  tool_VtuArray* array = cells.Get(ArrayName(name, block), width, m_grid.mesh.Cells());
  const InstancePiece* piece = array ? Read(block) : nullptr;
  if (!piece || per <= 0) return;
  if (sums && !sums->used) {
    sums->used = true;
    sums->width = width;
    sums->sums.assign(m_grid.mesh.Points() * width, 0.0f);
    sums->counts.assign(m_grid.mesh.Points(), 0);
  }
  if (sums && sums->width != width) sums = nullptr;
  for (std::size_t i = 0; i < m_labels.size(); ++i) {
    const int e = piece->elements.Find(m_labels[i]);
    if (e < 0) continue;
    const float* rows = &m_data[i * per * width];
    const int cell = piece->cellOf[static_cast<std::size_t>(e)];
    if (cell >= 0) Mean(rows, per, width, &array->values[static_cast<std::size_t>(cell) * width]);
    if (!sums) continue;
    const std::size_t start = piece->nodesStart[e];
    const int nodes = static_cast<int>(piece->nodesStart[e + 1] - start);
    m_nodeValues.resize(static_cast<std::size_t>(nodes) * width);
    if (atNodes) {
      if (per != nodes) continue;
      std::copy_n(rows, m_nodeValues.size(), m_nodeValues.begin());
    } else {
      const Weights& x = WeightsOf(piece->geometry[e], nodes, per);
      if (x.nodes != nodes) continue;
      Extrapolate(x.weights.data(), nodes, per, width, rows, m_nodeValues.data());
    }
    for (int n = 0; n < nodes; ++n) {
      const int p = piece->nodePoints[start + n];
      if (p < 0) continue;
      float* sum = &sums->sums[static_cast<std::size_t>(p) * width];
      for (int c = 0; c < width; ++c) sum[c] += m_nodeValues[n * width + c];
      ++sums->counts[p];
    }
  }
}

void FrameArrays::Field(const odb_FieldOutput& field, Arrays& points, Arrays& cells) {
  const std::string name = tool_Str(field.name());
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  bool nodal = false, elementNodal = false;
  for (int b = 0; b < blocks.size(); ++b) {
    nodal = nodal || blocks[b].position() == odb_Enum::NODAL;
    elementNodal = elementNodal || blocks[b].position() == odb_Enum::ELEMENT_NODAL;
  }
  // Nodal averages of a field without nodal values of its own, from its element-nodal values
  // when it has them, else from its integration points; one array per section point.
  for (auto& [array, a] : m_averages) a.used = false;
  for (int b = 0; b < blocks.size(); ++b) {
    const odb_Enum::odb_ResultPositionEnum p = blocks[b].position();
    if (p == odb_Enum::NODAL) {
      Nodal(name, blocks[b], points);
    } else if (IsElementPosition(p)) {
      const bool averaged = !nodal && (p == odb_Enum::ELEMENT_NODAL ||
                                       (p == odb_Enum::INTEGRATION_POINT && !elementNodal));
      Element(name, blocks[b], cells,
              averaged ? &m_averages[ArrayName(name, blocks[b]) + " (nodal average)"] : nullptr);
    }
  }
  for (const auto& [array, a] : m_averages) {
    if (!a.used) continue;
    tool_VtuArray* out = points.Get(array, a.width, m_grid.mesh.Points());
    if (!out) continue;
    for (std::size_t p = 0; p < a.counts.size(); ++p) {
      if (a.counts[p] == 0) continue;
      const float scale = 1.0f / static_cast<float>(a.counts[p]);
      for (int c = 0; c < a.width; ++c) out->values[p * a.width + c] = a.sums[p * a.width + c] * scale;
    }
  }
}

std::string Stem(const std::string& path) {
  const std::string stem = std::filesystem::path(path).stem().string();
  return stem.empty() ? "odb" : stem;
}

}  // namespace

std::string tool_Export(const tool_ExportRequest& request, std::ostream& notes) {
  if (request.format != "vtu")
    throw tool_Error("unknown format \"" + request.format + "\"; the formats are: vtu");
  odb_Odb& odb = tool_Open(request.path);
  std::error_code error;
  std::filesystem::create_directories(request.folder, error);
  if (error || !std::filesystem::is_directory(request.folder))
    throw tool_Error("cannot make the folder \"" + request.folder + "\": " +
                     (error ? error.message() : "a file of that name is in the way"));
  const Grid grid = BuildGrid(odb, notes);

  struct FrameRef {
    odb_Step step;
    int index;
    double time;
  };
  std::vector<FrameRef> frames;
  for (odb_StepRepositoryIT it(odb.steps()); !it.isDone(); it.next()) {
    const odb_Step& step = it.currentValue();
    const double start = std::max(step.totalTime(), 0.0);
    for (int f = 0; f < step.frames().size(); ++f)
      frames.push_back({step, f, start + step.frames(f).frameValue()});
  }

  const std::string stem = Stem(request.path);
  const std::filesystem::path folder(request.folder);
  std::vector<std::pair<double, std::string>> series;
  tool_Progress progress("export", "frame", static_cast<int>(frames.size()), request.quiet);
  FrameArrays make(grid, progress);
  // A frame's file is written on a second thread while this one reads and computes the next
  // frame: two sets of arrays take turns, and a set is filled again only once its file is
  // written. Only this thread calls the library.
  struct Slot {
    Arrays points, cells;
    std::future<std::uint64_t> written;
  };
  Slot slots[2];
  char number[32];
  for (std::size_t i = 0; i < frames.size() || (frames.empty() && i == 0); ++i) {
    Slot& slot = slots[i % 2];
    if (slot.written.valid()) progress.addBytes(slot.written.get());  // a failed write throws here
    slot.points.NextFrame();
    slot.cells.NextFrame();
    if (!frames.empty()) {
      const odb_Frame& frame = frames[i].step.frames(frames[i].index);
      for (odb_FieldOutputRepositoryIT it(frame.fieldOutputs()); !it.isDone(); it.next())
        make.Field(it.currentValue(), slot.points, slot.cells);
    }
    std::snprintf(number, sizeof number, "_%04zu.vtu", i);
    const std::string file = stem + number, target = (folder / file).string();
    slot.written = std::async(std::launch::async, [&grid, &slot, target] {
      return tool_WriteVtu(target, grid.mesh, slot.points.Used(), slot.cells.Used());
    });
    series.emplace_back(frames.empty() ? 0.0 : frames[i].time, file);
    progress.done();
  }
  for (Slot& slot : slots)
    if (slot.written.valid()) progress.addBytes(slot.written.get());
  const std::string pvd = (folder / (stem + ".pvd")).string();
  tool_WritePvd(pvd, series);
  progress.finish();
  closeOdb(odb);
  return pvd;
}
