// A small database whose every number follows from a formula, for the odb tool's tests: one part
// of mixed elements (two hexahedra, a wedge, a quadratic tetrahedron, a shell, a quadratic beam
// and a user element VTK has no cell for), placed twice (the second instance moved and turned),
// two steps of frames with a nodal vector U, stresses S at the hexahedra's integration points and
// a whole-element scalar EVOL, and one history output. Options change it the ways the diff tests
// need.
#ifndef TESTS_TOOLSAMPLE_H
#define TESTS_TOOLSAMPLE_H

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "odb_API.h"

struct ToolSample {
  int loadFrames = 2;       // frames of step LOAD; HOLD has 1
  bool extraField = false;  // adds a scalar field E to every frame
  float moveNode1 = 0;      // added to node 1's x
  // Called with each frame's S (global frame number, 16 rows of 6) before it is written.
  std::function<void(int frame, std::vector<float>& s)> editS;
};

namespace tool_sample {

constexpr int kNodes = 35;
constexpr int kIntegrationPoints = 8;

// Node label -> coordinates of the part.
inline std::vector<float> Coordinates() {
  std::vector<float> xyz;
  for (int z = 0; z < 2; ++z)
    for (int y = 0; y < 2; ++y)
      for (int x = 0; x < 3; ++x) xyz.insert(xyz.end(), {float(x), float(y), float(z)});  // 1..12
  const float wedge[] = {3, 0, 0, 4, 0, 0, 3, 1, 0, 3, 0, 1, 4, 0, 1, 3, 1, 1};           // 13..18
  xyz.insert(xyz.end(), wedge, wedge + 18);
  const float corner[4][3] = {{5, 0, 0}, {6, 0, 0}, {5, 1, 0}, {5, 0, 1}};  // 19..22
  for (const auto& c : corner) xyz.insert(xyz.end(), c, c + 3);
  const int edges[6][2] = {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};  // 23..28
  for (const auto& e : edges)
    for (int k = 0; k < 3; ++k) xyz.push_back((corner[e[0]][k] + corner[e[1]][k]) / 2);
  const float shell[] = {0, 0, 3, 1, 0, 3, 1, 1, 3, 0, 1, 3};  // 29..32
  xyz.insert(xyz.end(), shell, shell + 12);
  const float beam[] = {0, 0, 5, 0.5f, 0, 5, 1, 0, 5};  // 33..35, the middle node second
  xyz.insert(xyz.end(), beam, beam + 9);
  return xyz;
}

inline int GridNode(int x, int y, int z) {
  return 1 + x + 3 * y + 6 * z;
}

inline std::vector<int> HexConnectivity(int e) {  // e = 0 or 1
  return {GridNode(e, 0, 0), GridNode(e + 1, 0, 0), GridNode(e + 1, 1, 0), GridNode(e, 1, 0),
          GridNode(e, 0, 1), GridNode(e + 1, 0, 1), GridNode(e + 1, 1, 1), GridNode(e, 1, 1)};
}

// The values written, by instance (0, 1), label, global frame number and component.
inline float U(int instance, int node, int frame, int c) {
  return 0.001f * node * (c + 1) + frame + 100.0f * instance;
}
inline float S(int element, int point, int frame, int c) {  // point from 1
  return 100.0f * element + 10.0f * point + c + 1000.0f * frame;
}
inline float Evol(int element, int frame) {
  return element + 0.5f + frame;
}

}  // namespace tool_sample

// Writes the sample to `path` (replacing a file there) and closes it.
inline void WriteToolSample(const std::string& path, const ToolSample& options = ToolSample()) {
  using namespace tool_sample;
  odb_Odb& odb = Odb("", "Tool sample", "Mixed elements for the odb tool's tests", path.c_str());
  odb_DiscretePart& part = odb.DiscretePart("MIXED", odb_Enum::THREE_D, odb_Enum::DEFORMABLE_BODY);
  std::vector<int> labels;
  for (int n = 1; n <= kNodes; ++n) labels.push_back(n);
  std::vector<float> xyz = Coordinates();
  xyz[0] += options.moveNode1;
  part.addNodes(labels, xyz);
  std::vector<int> hexes = HexConnectivity(0), second = HexConnectivity(1);
  hexes.insert(hexes.end(), second.begin(), second.end());
  part.addElements(std::vector<int>{1, 2}, hexes, "C3D8", "HEXES");
  part.addElements(std::vector<int>{3}, std::vector<int>{13, 14, 15, 16, 17, 18}, "C3D6");
  part.addElements(std::vector<int>{4}, std::vector<int>{19, 20, 21, 22, 23, 24, 25, 26, 27, 28},
                   "C3D10");
  part.addElements(std::vector<int>{5}, std::vector<int>{29, 30, 31, 32}, "S4R");
  part.addElements(std::vector<int>{6}, std::vector<int>{33, 34, 35}, "B32");
  part.addElements(std::vector<int>{7}, std::vector<int>{33, 35}, "USR2");
  part.NodeSet("CORNER", odb_SequenceInt(labels.data(), 4));

  odb_Assembly& assembly = odb.rootAssembly();
  odb_Instance& first = assembly.Instance("PART-1", part);
  odb_SequenceSequenceFloat placement;  // moved 10 along x, turned 90 degrees about the z axis
  const float move[] = {10, 0, 0}, turn[] = {0, 0, 0, 0, 0, 1, 90};
  placement.append(odb_SequenceFloat(move, 3));
  placement.append(odb_SequenceFloat(turn, 7));
  odb_Instance& second_instance = assembly.Instance("PART-2", part, placement);
  odb_Instance* instances[2] = {&first, &second_instance};

  odb_Step& load = odb.Step("LOAD", "", odb_Enum::TIME, 1.0, "", "*STATIC", 0.0);
  odb_Step& hold = odb.Step("HOLD", "", odb_Enum::TIME, 1.0, "LOAD", "*STATIC", 1.0);
  odb_HistoryPoint point(first.getNodeFromLabel(1), first);
  odb_HistoryOutput& u1 = load.HistoryRegion("", "", point).HistoryOutput("U1", "");
  int global = 0;
  const auto frameOf = [&](odb_Step& step, int increment, double value) {
    odb_Frame frame = step.Frame(increment, value, "");
    odb_FieldOutput& u = frame.VectorOutput("U", "displacement", 3);
    for (int i = 0; i < 2; ++i) {
      std::vector<float> values;
      for (int n = 1; n <= kNodes; ++n)
        for (int c = 0; c < 3; ++c) values.push_back(U(i, n, global, c));
      u.addData(odb_Enum::NODAL, *instances[i], kNodes, labels, kNodes, 3, values);
    }
    std::vector<float> s;
    for (int e = 1; e <= 2; ++e)
      for (int p = 1; p <= kIntegrationPoints; ++p)
        for (int c = 0; c < 6; ++c) s.push_back(S(e, p, global, c));
    if (options.editS) options.editS(global, s);
    frame.FieldOutput("S", "stress", odb_Enum::TENSOR_3D_FULL)
        .addData(odb_Enum::INTEGRATION_POINT, first, 2, std::vector<int>{1, 2},
                 2 * kIntegrationPoints, 6, s);
    std::vector<float> evol;
    for (int e = 1; e <= 3; ++e) evol.push_back(Evol(e, global));
    frame.FieldOutput("EVOL", "element volume", odb_Enum::SCALAR)
        .addData(odb_Enum::WHOLE_ELEMENT, first, 3, std::vector<int>{1, 2, 3}, 3, 1, evol);
    if (options.extraField) {
      const std::vector<float> e(static_cast<std::size_t>(kNodes), 1.0f);
      frame.FieldOutput("E", "extra", odb_Enum::SCALAR)
          .addData(odb_Enum::NODAL, first, kNodes, labels, kNodes, 1, e);
    }
    ++global;
  };
  for (int f = 0; f < options.loadFrames; ++f) {
    frameOf(load, f + 1, 0.5 * (f + 1));
    u1.addData(0.5 * (f + 1), 0.001 * (f + 1));
  }
  frameOf(hold, 1, 1.0);
  saveOdb(odb);
  closeOdb(odb);
}

#endif
