#include "fault_Analysis.h"

#include <sqlite3.h>

#include <vector>

#include "odb_OdbData.h"
#include "store_Database.h"

namespace {

const char kRegion[] = "Node P-1.1";

float UValue(int k, int node, int c) {
  return static_cast<float>(k * 7 + node * 3 + c) / 8.0f;
}

float SValue(int k, int point, int c) {
  return static_cast<float>(k * 100 + point * 6 + c) / 4.0f;
}

std::vector<int> Labels(int n) {
  std::vector<int> labels(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) labels[static_cast<std::size_t>(i)] = i + 1;
  return labels;
}

odb_SequenceInt Sequence(const std::vector<int>& values) {
  odb_SequenceInt out;
  for (int v : values) out.append(v);
  return out;
}

// What a field's one block should hold, or why it does not.
std::string Compare(const odb_FieldOutput& field, int rows, int width,
                    float (*value)(int, int, int), int k) {
  const odb_SequenceFieldBulkData& blocks = field.bulkDataBlocks();
  if (blocks.size() != 1) return std::to_string(blocks.size()) + " blocks";
  const odb_FieldBulkData& block = blocks[0];
  if (block.length() != rows || block.width() != width)
    return std::to_string(block.length()) + " x " + std::to_string(block.width()) + " values";
  for (int r = 0; r < rows; ++r)
    for (int c = 0; c < width; ++c)
      if (block.data()[r * width + c] != value(k, r, c))
        return "value " + std::to_string(r) + "." + std::to_string(c) + " differs";
  return std::string();
}

}  // namespace

void fault_Analysis::SetUp() {
  OdbSession::SetUp();
  m_vfs.Install();
  m_vfs.Reset();
}

void fault_Analysis::TearDown() {
  m_vfs.Reset();
  OdbSession::TearDown();
}

odb_Odb& fault_Analysis::Start(const std::string& name, int nodes, bool spill) {
  odb_Odb& odb = Odb("", "", "", m_dir.file(name).c_str());
  if (spill)
    sqlite3_exec(odb_OdbAccess::Store(odb)->Connection(), "PRAGMA cache_size = 1", nullptr, nullptr,
                 nullptr);
  odb_DiscretePart& part = odb.DiscretePart("P", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  std::vector<float> points(static_cast<std::size_t>(3 * nodes), 0.0f);
  for (int i = 0; i < nodes; ++i) points[static_cast<std::size_t>(3 * i)] = static_cast<float>(i);
  odb_SequenceSequenceFloat coordinates;
  for (int i = 0; i < nodes; ++i) {
    odb_SequenceFloat row;
    for (int c = 0; c < 3; ++c) row.append(points[static_cast<std::size_t>(3 * i + c)]);
    coordinates.append(row);
  }
  part.addNodes(Sequence(Labels(nodes)), coordinates);
  odb_SequenceSequenceInt connectivity;
  connectivity.append(Sequence(Labels(8)));
  part.addElements(Sequence({1}), connectivity, "C3D8");
  odb_Instance& instance = odb.rootAssembly().Instance("P-1", part);
  odb_Step& step = odb.Step("S1", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  step.HistoryRegion(kRegion, "", odb_HistoryPoint(instance.getNodeFromLabel(1)))
      .HistoryOutput("U1", "", odb_Enum::SCALAR);
  WriteFrame(odb, 0, nodes);
  saveOdb(odb);
  return odb;
}

void fault_Analysis::WriteFrame(odb_Odb& odb, int k, int nodes) {
  odb_Step& step = odb.steps()["S1"];
  odb_Instance& instance = odb.rootAssembly().instances()["P-1"];
  odb_Frame frame = step.Frame(k, 0.1 * k, "");
  std::vector<float> u(static_cast<std::size_t>(3 * nodes));
  for (int i = 0; i < nodes; ++i)
    for (int c = 0; c < 3; ++c) u[static_cast<std::size_t>(3 * i + c)] = UValue(k, i, c);
  frame.FieldOutput("U", "", odb_Enum::VECTOR)
      .addData(odb_Enum::NODAL, instance, nodes, Labels(nodes), nodes, 3, u);
  std::vector<float> s(8 * 6);
  for (int p = 0; p < 8; ++p)
    for (int c = 0; c < 6; ++c) s[static_cast<std::size_t>(6 * p + c)] = SValue(k, p, c);
  frame.FieldOutput("S", "", odb_Enum::TENSOR_3D_FULL)
      .addData(odb_Enum::INTEGRATION_POINT, instance, 1, std::vector<int>{1}, 8, 6, s);
  step.historyRegions()[kRegion].historyOutputs()["U1"].addData(0.1 * k, k);
}

std::string fault_Analysis::Shows(odb_Odb& odb, int last, int nodes) {
  odb_StepRepository& steps = odb.steps();
  if (steps.size() != 1 || !steps.isMember("S1")) return std::to_string(steps.size()) + " steps";
  odb_Step& step = steps["S1"];
  odb_SequenceFrame& frames = step.frames();
  if (frames.size() != last + 1) return std::to_string(frames.size()) + " frames";
  for (int k = 0; k <= last; ++k) {
    odb_FieldOutputRepository& fields = frames[k].fieldOutputs();
    const std::string at = "frame " + std::to_string(k) + ": ";
    if (fields.size() != 2 || !fields.isMember("U") || !fields.isMember("S"))
      return at + std::to_string(fields.size()) + " fields";
    std::string u = Compare(fields["U"], nodes, 3, UValue, k);
    if (!u.empty()) return at + "U: " + u;
    std::string s = Compare(fields["S"], 8, 6, SValue, k);
    if (!s.empty()) return at + "S: " + s;
  }
  odb_HistoryData pairs = step.historyRegions()[kRegion].historyOutputs()["U1"].data();
  if (pairs.size() != last + 1) return std::to_string(pairs.size()) + " pairs";
  for (int k = 0; k <= last; ++k)
    if (pairs.time(k) != 0.1 * k || pairs.value(k) != static_cast<float>(k))
      return "pair " + std::to_string(k) + " differs";
  return std::string();
}
