#include "tool_Extrapolation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "TempDir.h"
#include "odb_API.h"

namespace {

struct Case {
  const char* type;
  int nodes;
  odb_Enum::odb_DimensionEnum dimension;
};

// One type of each shape, node count and number of points the element library knows.
const Case kCases[] = {{"C3D4", 4, odb_Enum::THREE_D},       {"C3D10", 10, odb_Enum::THREE_D},
                       {"C3D6", 6, odb_Enum::THREE_D},       {"C3D15", 15, odb_Enum::THREE_D},
                       {"C3D8", 8, odb_Enum::THREE_D},       {"C3D8R", 8, odb_Enum::THREE_D},
                       {"C3D20", 20, odb_Enum::THREE_D},     {"C3D20R", 20, odb_Enum::THREE_D},
                       {"CPS3", 3, odb_Enum::TWO_D_PLANAR},  {"CPS4", 4, odb_Enum::TWO_D_PLANAR},
                       {"CPE4R", 4, odb_Enum::TWO_D_PLANAR}, {"CPS6", 6, odb_Enum::TWO_D_PLANAR},
                       {"CPE8", 8, odb_Enum::TWO_D_PLANAR},  {"CPS8R", 8, odb_Enum::TWO_D_PLANAR},
                       {"CAX4", 4, odb_Enum::AXISYMMETRIC},  {"CAX8R", 8, odb_Enum::AXISYMMETRIC}};

}  // namespace

// The export's nodal averages use its own weights on the block it has read; they must give what
// the library's extrapolated subset gives, type by type.
TEST(ToolExtrapolation, AgreesWithTheLibrarysExtrapolationForEveryContinuumType) {
  odb_initializeAPI();
  TempDir dir;
  odb_Odb& odb = Odb("", "", "", dir.file("x.odb").c_str());
  odb_Frame frame = odb.Step("S", "", odb_Enum::TIME, 1, "", "*STATIC", 0).Frame(1, 1, "");
  odb_FieldOutput& field = frame.FieldOutput("T", "", odb_Enum::SCALAR);
  std::vector<std::vector<float>> written;
  for (const Case& c : kCases) {
    odb_DiscretePart& part = odb.DiscretePart(c.type, c.dimension, odb_Enum::DEFORMABLE_BODY);
    const int width = c.dimension == odb_Enum::THREE_D ? 3 : 2;
    std::vector<int> labels, connectivity;
    std::vector<float> xyz;
    for (int n = 1; n <= c.nodes; ++n) {
      labels.push_back(n);
      connectivity.push_back(n);
      for (int k = 0; k < width; ++k) xyz.push_back(float(n * (k + 1) % 7));
    }
    part.addNodes(labels, xyz);
    part.addElements(std::vector<int>{1}, connectivity, c.type);
    odb_Instance& instance = odb.rootAssembly().Instance(c.type, part);
    const int points = part.elements(0).integrationPoints();
    std::vector<float> values;
    for (int p = 0; p < points; ++p) values.push_back(std::sin(1.7f * p + c.nodes) * 100 + p % 5);
    field.addData(odb_Enum::INTEGRATION_POINT, instance, 1, std::vector<int>{1}, points, 1, values);
    written.push_back(values);
  }
  const odb_FieldOutput atNodes = field.getSubset(odb_Enum::ELEMENT_NODAL);
  const odb_SequenceFieldBulkData& blocks = atNodes.bulkDataBlocks();
  ASSERT_EQ(blocks.size(), static_cast<int>(std::size(kCases)));
  for (int b = 0; b < blocks.size(); ++b) {
    const Case& c = kCases[b];
    const odb_Element element = blocks[b].instance().elements(0);
    ASSERT_EQ(std::string(blocks[b].baseElementType().CStr()), c.type);
    const std::vector<float>& ip = written[static_cast<std::size_t>(b)];
    const int points = static_cast<int>(ip.size());
    const tool_Extrapolator x = tool_ExtrapolatorOf(element.geometryClass(), c.nodes, points);
    ASSERT_EQ(x.nodes, c.nodes) << c.type;
    std::vector<float> library(static_cast<std::size_t>(blocks[b].length()));
    blocks[b].readData(library);
    ASSERT_EQ(library.size(), static_cast<std::size_t>(c.nodes)) << c.type;
    for (int n = 0; n < c.nodes; ++n) {
      double mine = 0;
      for (int p = 0; p < points; ++p) mine += x.weights[n * points + p] * ip[p];
      EXPECT_NEAR(mine, library[n], 1e-4 * (1 + std::fabs(library[n])))
          << c.type << " node " << n + 1;
    }
  }
  closeOdb(odb);
}

TEST(ToolExtrapolation, RefusesShellsLinesAndUnknownCounts) {
  EXPECT_EQ(tool_ExtrapolatorOf(odb_Enum::GEOMETRY_SHELL, 4, 4).nodes, 0);
  EXPECT_EQ(tool_ExtrapolatorOf(odb_Enum::GEOMETRY_BEAM, 2, 1).nodes, 0);
  EXPECT_EQ(tool_ExtrapolatorOf(odb_Enum::GEOMETRY_USER, 4, 1).nodes, 0);
  EXPECT_EQ(tool_ExtrapolatorOf(odb_Enum::GEOMETRY_SOLID, 8, 5).nodes, 0);
  EXPECT_EQ(tool_ExtrapolatorOf(odb_Enum::GEOMETRY_SOLID, 9, 8).nodes, 0);
}

// The export carries 8-point hexahedra one axis at a time; it must give what the weights give.
TEST(ToolExtrapolation, TheHexahedronsShortWayAgreesWithItsWeights) {
  const tool_Extrapolator x = tool_ExtrapolatorOf(odb_Enum::GEOMETRY_SOLID, 8, 8);
  ASSERT_EQ(x.nodes, 8);
  float rows[8 * 3], out[8 * 3];
  for (int i = 0; i < 8 * 3; ++i) rows[i] = std::sin(0.7f * i) * 50 + i;
  tool_ExtrapolateHex8<3>(rows, out);
  for (int n = 0; n < 8; ++n)
    for (int c = 0; c < 3; ++c) {
      double want = 0;
      for (int p = 0; p < 8; ++p) want += x.weights[n * 8 + p] * rows[p * 3 + c];
      EXPECT_NEAR(out[n * 3 + c], want, 1e-4 * (1 + std::fabs(want))) << "node " << n + 1;
    }
}
