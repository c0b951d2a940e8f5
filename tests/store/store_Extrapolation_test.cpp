#include "store_Extrapolation.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using Point = std::array<double, 3>;

// Natural coordinates of every node of a shape, written out from the element library's
// conventions: corners (x, y, z each), then the 1-based corners of each mid-side node's edge.
struct Nodes {
  std::vector<double> corners;
  std::vector<int> midsides;
  Point centroid;
};

const Nodes kHexahedron = {
    {-1, -1, -1, 1, -1, -1, 1, 1, -1, -1, 1, -1, -1, -1, 1, 1, -1, 1, 1, 1, 1, -1, 1, 1},
    {1, 2, 2, 3, 3, 4, 4, 1, 5, 6, 6, 7, 7, 8, 8, 5, 1, 5, 2, 6, 3, 7, 4, 8},
    {0, 0, 0}};
const Nodes kTetrahedron = {
    {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {1, 2, 2, 3, 3, 1, 1, 4, 2, 4, 3, 4}, {0.25, 0.25, 0.25}};
const Nodes kWedge = {{0, 0, -1, 1, 0, -1, 0, 1, -1, 0, 0, 1, 1, 0, 1, 0, 1, 1},
                      {1, 2, 2, 3, 3, 1, 4, 5, 5, 6, 6, 4, 1, 4, 2, 5, 3, 6},
                      {1.0 / 3, 1.0 / 3, 0}};
const Nodes kQuadrilateral = {
    {-1, -1, 0, 1, -1, 0, 1, 1, 0, -1, 1, 0}, {1, 2, 2, 3, 3, 4, 4, 1}, {0, 0, 0}};
const Nodes kTriangle = {{0, 0, 0, 1, 0, 0, 0, 1, 0}, {1, 2, 2, 3, 3, 1}, {1.0 / 3, 1.0 / 3, 0}};

// The natural coordinates of all `count` nodes.
std::vector<Point> NodeCoordinates(const Nodes& shape, int count) {
  std::vector<Point> nodes;
  auto corner = [&shape](int i, int axis) { return shape.corners[3 * (i - 1) + axis]; };
  for (std::size_t i = 1; i <= shape.corners.size() / 3; ++i)
    nodes.push_back({corner(i, 0), corner(i, 1), corner(i, 2)});
  for (std::size_t k = 0; static_cast<int>(nodes.size()) < count; k += 2) {
    int a = shape.midsides.at(k), b = shape.midsides.at(k + 1);
    nodes.push_back({(corner(a, 0) + corner(b, 0)) / 2, (corner(a, 1) + corner(b, 1)) / 2,
                     (corner(a, 2) + corner(b, 2)) / 2});
  }
  return nodes;
}

// Every continuum type name of the library, with the shape of its nodes.
std::vector<std::pair<std::string, const Nodes*>> ContinuumTypes() {
  std::vector<std::pair<std::string, const Nodes*>> types;
  const std::pair<const char*, const Nodes*> solids[] = {
      {"4", &kTetrahedron}, {"10", &kTetrahedron}, {"6", &kWedge},
      {"15", &kWedge},      {"8", &kHexahedron},   {"8R", &kHexahedron},
      {"8I", &kHexahedron}, {"20", &kHexahedron},  {"20R", &kHexahedron}};
  const std::pair<const char*, const Nodes*> planar[] = {
      {"3", &kTriangle}, {"4", &kQuadrilateral}, {"4R", &kQuadrilateral}, {"4I", &kQuadrilateral},
      {"6", &kTriangle}, {"8", &kQuadrilateral}, {"8R", &kQuadrilateral}};
  for (const auto& [suffix, nodes] : solids)
    for (const char* hybrid : {"", "H"})
      types.push_back({std::string("C3D") + suffix + hybrid, nodes});
  for (const char* family : {"CPS", "CPE", "CAX"})
    for (const auto& [suffix, nodes] : planar)
      for (const char* hybrid : {"", "H"})
        if (*hybrid == '\0' || std::string(family) != "CPS")
          types.push_back({family + std::string(suffix) + hybrid, nodes});
  return types;
}

const store_ElementClass& Known(const std::string& type) {
  const store_ElementClass* cls = store_FindElementClass(type);
  if (!cls) throw std::runtime_error("unknown type " + type);
  return *cls;
}

// A linear field whose gradient keeps only the axes along which the points of `cls` differ: a
// general linear field where the points span the element, a constant for one point.
struct LinearField {
  double a = 2.5;
  double b[3] = {3.0, -5.0, 7.0};
  explicit LinearField(const store_ElementClass& cls) {
    for (int axis = 0; axis < 3; ++axis) {
      bool varies = false;
      for (const Point& p : cls.integrationPointCoordinates)
        varies = varies || p[axis] != cls.integrationPointCoordinates[0][axis];
      if (!varies) b[axis] = 0.0;
    }
  }
  double operator()(const Point& x) const { return a + b[0] * x[0] + b[1] * x[1] + b[2] * x[2]; }
};

TEST(StoreExtrapolation, LinearFieldsAreReproducedAtNodesAndCentroidOfEveryContinuumType) {
  int general = 0;
  for (const auto& [type, shape] : ContinuumTypes()) {
    SCOPED_TRACE(type);
    const store_ElementClass& cls = Known(type);
    const store_Extrapolator* x = store_FindExtrapolator(cls);
    ASSERT_NE(x, nullptr);
    ASSERT_EQ(x->nodes, cls.nodesPerElement);
    ASSERT_EQ(x->points, cls.integrationPoints);
    ASSERT_EQ(x->toNodes.size(), static_cast<std::size_t>(x->nodes * x->points));
    ASSERT_EQ(x->toCentroid.size(), static_cast<std::size_t>(x->points));

    std::vector<Point> nodes = NodeCoordinates(*shape, cls.nodesPerElement);

    LinearField field(cls);
    general += field.b[0] != 0 && field.b[1] != 0 && (cls.dimension == 2 || field.b[2] != 0);
    std::vector<double> ip;
    for (const Point& p : cls.integrationPointCoordinates) ip.push_back(field(p));
    for (int i = 0; i < x->nodes; ++i) {
      double value = 0;
      for (int j = 0; j < x->points; ++j) value += x->toNodes[i * x->points + j] * ip[j];
      EXPECT_NEAR(value, field(nodes[i]), 1e-9) << "node " << i + 1;
    }
    double centroid = 0;
    for (int j = 0; j < x->points; ++j) centroid += x->toCentroid[j] * ip[j];
    EXPECT_NEAR(centroid, field(shape->centroid), 1e-9);
  }
  // Of the 53 names only the 14 one-point types and the two-point wedges C3D6 and C3D6H carry
  // less than a general linear field.
  EXPECT_EQ(general, 53 - 14 - 2);
}

// The textbook weights of a four-point quadrilateral at its first corner, and the constant of a
// one-point element.
TEST(StoreExtrapolation, KnownWeightsOfQuadrilateralAndOnePointTypes) {
  const store_Extrapolator* quad = store_FindExtrapolator(Known("CPE4"));
  ASSERT_NE(quad, nullptr);
  const double h = std::sqrt(3.0) / 2;
  const double corner1[4] = {1 + h, -0.5, -0.5, 1 - h};
  for (int j = 0; j < 4; ++j) EXPECT_NEAR(quad->toNodes[j], corner1[j], 1e-12);
  for (int j = 0; j < 4; ++j) EXPECT_NEAR(quad->toCentroid[j], 0.25, 1e-12);

  for (const char* type : {"C3D8R", "C3D4H", "CPS3", "CAX4R"}) {
    ASSERT_EQ(Known(type).integrationPoints, 1) << type;
    const store_Extrapolator* one = store_FindExtrapolator(Known(type));
    ASSERT_NE(one, nullptr) << type;
    EXPECT_EQ(one->toNodes, std::vector<double>(one->nodes, 1.0)) << type;
    EXPECT_EQ(one->toCentroid, std::vector<double>{1.0}) << type;
  }
}

TEST(StoreExtrapolation, NonContinuumTypesHaveNoExtrapolator) {
  std::istringstream types(
      "S3 S3R S4 S4R S8R M3D3 M3D4 M3D4R B21 B22 B31 B32 T2D2 T3D2 T3D3 R2D2 R3D3 R3D4 SFM3D3 "
      "SFM3D4 SFM3D4R CONN2D2 CONN3D2");
  for (std::string type; types >> type;)
    EXPECT_EQ(store_FindExtrapolator(Known(type)), nullptr) << type;
  EXPECT_EQ(store_FindExtrapolator(store_ElementClassOf("U8", 8)), nullptr);
}

TEST(StoreExtrapolation, OneExtrapolatorPerTypeSharedAcrossThreads) {
  const store_ElementClass& cls = Known("CAX8RH");
  std::vector<const store_Extrapolator*> found(4, nullptr);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < found.size(); ++i)
    threads.emplace_back([&found, &cls, i] { found[i] = store_FindExtrapolator(cls); });
  for (std::thread& t : threads) t.join();
  ASSERT_NE(found[0], nullptr);
  for (const store_Extrapolator* x : found) EXPECT_EQ(x, found[0]);
  EXPECT_EQ(store_FindExtrapolator(cls), found[0]);
}

}  // namespace
