#include <cstdlib>
#include <sstream>

#include "ToolTest.h"

namespace {

using Row = std::vector<std::string>;

std::vector<Row> Csv(const std::string& text) {
  std::vector<Row> rows;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    Row row;
    std::string cell;
    std::istringstream cells(line);
    while (std::getline(cells, cell, ',')) row.push_back(cell);
    if (!line.empty() && line.back() == ',') row.push_back("");
    rows.push_back(row);
  }
  return rows;
}

float Float(const std::string& text) {
  return std::strtof(text.c_str(), nullptr);
}

}  // namespace

using ToolDump = ToolTest;

TEST_F(ToolDump, WritesEveryIntegrationPointValueWithItsLabels) {
  const ToolResult r =
      Run({"dump", Sample("a.odb"), "--step", "LOAD", "--frame", "1", "--field", "S"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::vector<Row> rows = Csv(r.out);
  ASSERT_EQ(rows.size(), 1u + 2 * 8);
  EXPECT_EQ(rows[0], (Row{"instance", "position", "element", "node", "integration_point",
                          "section_point", "S11", "S22", "S33", "S12", "S13", "S23"}));
  for (std::size_t i = 1; i < rows.size(); ++i) {
    const Row& row = rows[i];
    ASSERT_EQ(row.size(), 12u) << i;
    const int element = std::atoi(row[2].c_str()), point = std::atoi(row[4].c_str());
    EXPECT_EQ(element, 1 + int(i - 1) / 8);
    EXPECT_EQ(point, 1 + int(i - 1) % 8);
    EXPECT_EQ(row[0], "PART-1");
    EXPECT_EQ(row[1], "INTEGRATION_POINT");
    EXPECT_EQ(row[3], "");
    EXPECT_EQ(row[5], "");
    for (int c = 0; c < 6; ++c)  // the shortest text of a float reads back as that float
      EXPECT_EQ(Float(row[6 + c]), tool_sample::S(element, point, 1, c)) << i << " " << c;
  }
}

TEST_F(ToolDump, TakesOneInstanceAndTheLastFrame) {
  const ToolResult r = Run({"dump", Sample("a.odb"), "--step", "HOLD", "--frame", "-1", "--field",
                            "U", "--instance", "PART-2", "--position", "nodal"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::vector<Row> rows = Csv(r.out);
  ASSERT_EQ(rows.size(), 1u + tool_sample::kNodes);
  EXPECT_EQ(rows[0].back(), "U3");
  for (int n = 1; n <= tool_sample::kNodes; ++n) {
    const Row& row = rows[static_cast<std::size_t>(n)];
    EXPECT_EQ(row[0], "PART-2");
    EXPECT_EQ(row[2], "");
    EXPECT_EQ(row[3], std::to_string(n));
    for (int c = 0; c < 3; ++c) EXPECT_EQ(Float(row[6 + c]), tool_sample::U(1, n, 2, c));
  }
}

// At the centroid of a hexahedron with 2 x 2 x 2 points, the extrapolated value is their mean.
TEST_F(ToolDump, ExtrapolatesToCentroidsAndElementNodesOnRequest) {
  const std::string path = Sample("a.odb");
  const ToolResult r = Run(
      {"dump", path, "--step", "LOAD", "--frame", "0", "--field", "S", "--position", "CENTROID"});
  ASSERT_EQ(r.status, 0) << r.err;
  const std::vector<Row> rows = Csv(r.out);
  ASSERT_EQ(rows.size(), 3u);
  for (int e = 1; e <= 2; ++e) {
    EXPECT_EQ(rows[e][1], "CENTROID");
    for (int c = 0; c < 6; ++c) {
      double mean = 0;
      for (int p = 1; p <= 8; ++p) mean += tool_sample::S(e, p, 0, c) / 8.0;
      EXPECT_NEAR(Float(rows[e][6 + c]), mean, 1e-3 * std::abs(mean)) << e << " " << c;
    }
  }
  const ToolResult nodes = Run({"dump", path, "--step", "LOAD", "--frame", "0", "--field", "S",
                                "--position", "ELEMENT_NODAL"});
  ASSERT_EQ(nodes.status, 0) << nodes.err;
  const std::vector<Row> atNodes = Csv(nodes.out);
  ASSERT_EQ(atNodes.size(), 1u + 2 * 8);
  // The node column follows each element's connectivity.
  const std::vector<int> hex = tool_sample::HexConnectivity(1);
  for (int k = 0; k < 8; ++k) EXPECT_EQ(atNodes[9 + k][3], std::to_string(hex[k]));
}

TEST_F(ToolDump, UnknownNamesListWhatExists) {
  const std::string path = Sample("a.odb");
  const auto err = [&](std::vector<std::string> extra) {
    std::vector<std::string> args{"dump", path};
    args.insert(args.end(), extra.begin(), extra.end());
    const ToolResult r = Run(args);
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, "");
    return r.err;
  };
  EXPECT_EQ(err({"--step", "X", "--frame", "0", "--field", "S"}),
            "odb: no step \"X\"; the steps are: LOAD, HOLD\n");
  EXPECT_EQ(err({"--step", "LOAD", "--frame", "2", "--field", "S"}),
            "odb: no frame 2 in step \"LOAD\": it has 2 frames, 0 to 1 (or -1 for the last)\n");
  EXPECT_EQ(err({"--step", "LOAD", "--frame", "0", "--field", "PE"}),
            "odb: no field \"PE\" in frame 0; its fields are: EVOL, S, U\n");
  EXPECT_EQ(err({"--step", "LOAD", "--frame", "0", "--field", "U", "--position", "CENTROID"}),
            "odb: field \"U\" has no values at CENTROID; its positions are: NODAL\n");
  EXPECT_EQ(err({"--step", "LOAD", "--frame", "0", "--field", "U", "--position", "MIDDLE"}),
            "odb: unknown position \"MIDDLE\"; the field's positions are: NODAL\n");
  EXPECT_EQ(err({"--step", "LOAD", "--frame", "0", "--field", "U", "--instance", "P"}),
            "odb: no instance \"P\"; the instances are: PART-1, PART-2\n");
}
