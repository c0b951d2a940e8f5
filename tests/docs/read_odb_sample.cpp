// Writes a small database through the public interface and prints, as JSON on standard output,
// every number it wrote, so that a reader outside the library (docs/examples/read_odb.py) can be
// checked against them.
//
//   read_odb_sample PATH
//
// The model is chosen to catch a reader that guesses: labels that are not positions, two node
// blocks, two element blocks of different widths, a field written in one call for both element
// types (two field blocks), the field in two frames with different values, and history times that
// float32 cannot hold exactly.
#include <cstdio>
#include <string>
#include <vector>

#include "odb_API.h"

namespace {

std::string Floats(const std::vector<float>& values) {
  std::string text = "[";
  char buffer[32];
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::snprintf(buffer, sizeof buffer, "%s%.9g", i ? ", " : "", values[i]);
    text += buffer;
  }
  return text + "]";
}

std::string Doubles(const std::vector<double>& values) {
  std::string text = "[";
  char buffer[40];
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::snprintf(buffer, sizeof buffer, "%s%.17g", i ? ", " : "", values[i]);
    text += buffer;
  }
  return text + "]";
}

std::string Ints(const std::vector<int>& values) {
  std::string text = "[";
  for (std::size_t i = 0; i < values.size(); ++i)
    text += (i ? ", " : "") + std::to_string(values[i]);
  return text + "]";
}

odb_SequenceInt Sequence(const std::vector<int>& values) {
  return odb_SequenceInt(values.data(), static_cast<int>(values.size()));
}

// Rows of `width` values as a sequence of sequences.
template <class Rows, class Row, class T>
Rows Nested(const std::vector<T>& values, int width) {
  Rows rows;
  for (std::size_t at = 0; at < values.size(); at += width) rows.append(Row(&values[at], width));
  return rows;
}

// Two hexahedra side by side along x, nodes labelled 10, 20, ... 120 (not their positions); the
// top face carries two shells on the same nodes.
struct Mesh {
  std::vector<int> nodeLabels;
  std::vector<float> coordinates;
  std::vector<int> hexLabels = {101, 102}, hexNodes, shellLabels = {201, 202}, shellNodes;
};

Mesh MakeMesh() {
  Mesh m;
  // Node (i, j, k) at x = 0.5 i + 0.1, y = 0.25 j, z = 0.75 k - 0.3, i in 0..2, j and k in 0..1.
  auto label = [](int i, int j, int k) { return 10 * (1 + i + 3 * j + 6 * k); };
  for (int k = 0; k < 2; ++k)
    for (int j = 0; j < 2; ++j)
      for (int i = 0; i < 3; ++i) {
        m.nodeLabels.push_back(label(i, j, k));
        m.coordinates.insert(m.coordinates.end(), {0.5f * i + 0.1f, 0.25f * j, 0.75f * k - 0.3f});
      }
  for (int i = 0; i < 2; ++i) {
    const int hex[8] = {label(i, 0, 0), label(i + 1, 0, 0), label(i + 1, 1, 0), label(i, 1, 0),
                        label(i, 0, 1), label(i + 1, 0, 1), label(i + 1, 1, 1), label(i, 1, 1)};
    m.hexNodes.insert(m.hexNodes.end(), hex, hex + 8);
    const int shell[4] = {label(i, 0, 1), label(i + 1, 0, 1), label(i + 1, 1, 1), label(i, 1, 1)};
    m.shellNodes.insert(m.shellNodes.end(), shell, shell + 4);
  }
  return m;
}

// The stress of frame `frame`, element label `e`, integration point `p` (from 1), component `c`.
float Stress(int frame, int e, int p, int c) {
  return 1000.0f * frame + 10.0f * e + 0.5f * p + 0.125f * c;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: read_odb_sample PATH\n");
    return 2;
  }
  odb_initializeAPI();
  int status = 0;
  try {
    const Mesh m = MakeMesh();
    odb_Odb& odb = Odb("sample", "Reading example", "Written for the reading example", argv[1]);
    odb_DiscretePart& part =
        odb.DiscretePart("PLATE", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
    // Two node blocks: the first six nodes, then the other six.
    const std::vector<int> firstLabels(m.nodeLabels.begin(), m.nodeLabels.begin() + 6);
    const std::vector<int> lastLabels(m.nodeLabels.begin() + 6, m.nodeLabels.end());
    const std::vector<float> firstXyz(m.coordinates.begin(), m.coordinates.begin() + 18);
    const std::vector<float> lastXyz(m.coordinates.begin() + 18, m.coordinates.end());
    part.addNodes(Sequence(firstLabels),
                  Nested<odb_SequenceSequenceFloat, odb_SequenceFloat>(firstXyz, 3));
    part.addNodes(Sequence(lastLabels),
                  Nested<odb_SequenceSequenceFloat, odb_SequenceFloat>(lastXyz, 3));
    part.addElements(Sequence(m.hexLabels),
                     Nested<odb_SequenceSequenceInt, odb_SequenceInt>(m.hexNodes, 8), "C3D8");
    part.addElements(Sequence(m.shellLabels),
                     Nested<odb_SequenceSequenceInt, odb_SequenceInt>(m.shellNodes, 4), "S4R");
    odb_Instance& instance = odb.rootAssembly().Instance("PLATE-1", part);

    odb_Step& step = odb.Step("Load", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
    // S at the 8 points of each hexahedron and the 1 point of each shell, in one call.
    const std::vector<int> elements = {101, 202, 102, 201};
    std::string fieldJson;
    for (int f = 0; f < 2; ++f) {
      odb_SequenceSequenceFloat rows;
      std::vector<float> hexData, shellData;
      for (int e : elements) {
        const bool hex = e < 200;
        for (int p = 1; p <= (hex ? 8 : 1); ++p) {
          float row[6];
          for (int c = 0; c < 6; ++c) row[c] = Stress(f, e, p, c);
          rows.append(odb_SequenceFloat(row, 6));
          std::vector<float>& block = hex ? hexData : shellData;
          block.insert(block.end(), row, row + 6);
        }
      }
      odb_Frame frame = step.Frame(f + 1, 0.5 * (f + 1), "Increment");
      frame.FieldOutput("S", "Stress", odb_Enum::TENSOR_3D_FULL)
          .addData(odb_Enum::INTEGRATION_POINT, instance, Sequence(elements), rows);
      // The blocks follow the element types in order of first appearance in the call.
      if (f == 1)
        fieldJson = "{\"step\": \"Load\", \"frame_index\": 1, \"name\": \"S\", \"blocks\": [" +
                    std::string("{\"element_type\": \"C3D8\", \"labels\": [101, 102], ") +
                    "\"per_label\": 8, \"width\": 6, \"data\": " + Floats(hexData) + "}, " +
                    "{\"element_type\": \"S4R\", \"labels\": [202, 201], " +
                    "\"per_label\": 1, \"width\": 6, \"data\": " + Floats(shellData) + "}]}";
    }

    const std::vector<double> times = {0.1, 0.2, 0.3};
    const std::vector<double> values = {-0.001, -0.002, -0.004};
    odb_HistoryPoint tip(instance.getNodeFromLabel(120), instance);
    odb_HistoryOutput& u2 = step.HistoryRegion("Tip", "", tip).HistoryOutput("U2", "");
    for (std::size_t i = 0; i < times.size(); ++i) u2.addData(times[i], values[i]);
    saveOdb(odb);
    closeOdb(odb);

    std::vector<float> storedValues(values.begin(), values.end());
    std::printf("{\"part\": \"PLATE\",\n \"node_labels\": %s,\n \"coordinates\": %s,\n",
                Ints(m.nodeLabels).c_str(), Floats(m.coordinates).c_str());
    std::printf(
        " \"element_blocks\": [{\"type\": \"C3D8\", \"labels\": %s, \"connectivity\": %s},\n"
        "                    {\"type\": \"S4R\", \"labels\": %s, \"connectivity\": %s}],\n",
        Ints(m.hexLabels).c_str(), Ints(m.hexNodes).c_str(), Ints(m.shellLabels).c_str(),
        Ints(m.shellNodes).c_str());
    std::printf(" \"field\": %s,\n", fieldJson.c_str());
    std::printf(
        " \"history\": {\"step\": \"Load\", \"region\": \"Tip\", \"output\": \"U2\", "
        "\"times\": %s, \"values\": %s}}\n",
        Doubles(times).c_str(), Floats(storedValues).c_str());
  } catch (const odb_Exception& e) {
    std::fprintf(stderr, "read_odb_sample: %s\n", e.JournalMessage().CStr());
    status = 1;
  }
  odb_finalizeAPI();
  return status;
}
