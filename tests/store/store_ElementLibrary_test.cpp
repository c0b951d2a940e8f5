#include "store_ElementLibrary.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

const char kTypes[] =
    "C3D4 C3D10 C3D6 C3D15 C3D8 C3D8R C3D8I C3D20 C3D20R C3D8H CPS3 CPS4 CPS4R CPS6 CPS8 CPS8R "
    "CPE3 CPE4 CPE4R CPE6 CPE8 CPE8R CAX3 CAX4 CAX4R CAX6 CAX8 CAX8R S3 S3R S4 S4R S8R M3D3 M3D4 "
    "M3D4R B21 B22 B31 B32 T2D2 T3D2 T3D3 R3D3 R3D4 R2D2 SFM3D3 SFM3D4 SFM3D4R CONN3D2 CONN2D2";

const store_ElementClass& Known(const std::string& type) {
  const store_ElementClass* cls = store_FindElementClass(type);
  if (!cls) throw std::runtime_error("unknown type " + type);
  return *cls;
}

// The directed edges round the first `corners` positions of a face; the rest are mid-side nodes.
using Edge = std::pair<int, int>;
std::vector<Edge> CornerLoop(const std::vector<int>& nodes, std::size_t corners) {
  std::vector<Edge> edges;
  for (std::size_t i = 0; i < corners; ++i) edges.push_back({nodes[i], nodes[(i + 1) % corners]});
  return edges;
}

TEST(StoreElementLibrary, EveryTypeIsConsistentWithItsOwnNodeCount) {
  std::istringstream types(kTypes);
  for (std::string type; types >> type;) {
    SCOPED_TRACE(type);
    const store_ElementClass& cls = Known(type);
    EXPECT_EQ(cls.integrationPoints, static_cast<int>(cls.integrationPointCoordinates.size()));
    std::set<int> faces;
    for (const store_ElementFace& face : cls.faces) {
      EXPECT_TRUE(faces.insert(face.face).second);
      std::set<int> distinct(face.nodes.begin(), face.nodes.end());
      EXPECT_EQ(distinct.size(), face.nodes.size());
      EXPECT_GE(*distinct.begin(), 1);
      EXPECT_LE(*distinct.rbegin(), cls.nodesPerElement);
    }
    for (const auto& p : cls.integrationPointCoordinates)
      for (int axis = cls.dimension; axis < 3; ++axis) EXPECT_EQ(p[axis], 0.0);
  }
}

// Each edge of a closed solid is walked once each way, so all faces turn the same way, and every
// face naming an edge gives it the same mid-side node; corners and mid-side nodes cover them all.
TEST(StoreElementLibrary, SolidFacesCloseTheBodyWithOneOrientation) {
  for (const char* type : {"C3D4", "C3D10", "C3D6", "C3D15", "C3D8", "C3D20R"}) {
    SCOPED_TRACE(type);
    const store_ElementClass& cls = Known(type);
    bool quadratic = cls.nodesPerElement == 10 || cls.nodesPerElement > 8;
    std::map<Edge, int> walks, midside;
    for (const store_ElementFace& face : cls.faces) {
      std::size_t corners = quadratic ? face.nodes.size() / 2 : face.nodes.size();
      std::vector<Edge> loop = CornerLoop(face.nodes, corners);
      for (std::size_t i = 0; i < loop.size(); ++i) {
        ++walks[loop[i]];
        if (!quadratic) continue;
        int& mid = midside[std::minmax(loop[i].first, loop[i].second)];
        if (mid) EXPECT_EQ(mid, face.nodes[corners + i]);
        mid = face.nodes[corners + i];
      }
    }
    std::set<int> corners;
    for (const auto& [edge, count] : walks) {
      EXPECT_EQ(count, 1);
      EXPECT_EQ(walks.count({edge.second, edge.first}), 1u);
      corners.insert(edge.first);
    }
    EXPECT_EQ(corners.size() + midside.size(), static_cast<std::size_t>(cls.nodesPerElement));
  }
}

TEST(StoreElementLibrary, PlanarEdgesRunRoundTheElementAndSidesRunBothWays) {
  for (const char* type : {"CPS3", "CPE4R", "CAX6", "CPS8"}) {
    SCOPED_TRACE(type);
    const std::vector<store_ElementFace>& edges = Known(type).faces;
    std::set<int> covered;
    for (std::size_t i = 0; i < edges.size(); ++i) {
      EXPECT_EQ(edges[i].face, odb_Enum::FACE1 + static_cast<int>(i));
      EXPECT_EQ(edges[i].nodes[1], edges[(i + 1) % edges.size()].nodes[0]);
      covered.insert(edges[i].nodes.begin(), edges[i].nodes.end());
    }
    EXPECT_EQ(static_cast<int>(covered.size()), Known(type).nodesPerElement);
  }
  for (const char* type : {"S3R", "S4", "S8R", "M3D4R", "R3D4", "SFM3D3"}) {
    SCOPED_TRACE(type);
    const store_ElementClass& cls = Known(type);
    ASSERT_EQ(cls.faces.size(), 2u);
    std::size_t corners = cls.nodesPerElement == 8 ? 4 : cls.nodesPerElement;
    std::set<Edge> pos, neg;
    for (const Edge& e : CornerLoop(cls.faces[0].nodes, corners)) pos.insert({e.second, e.first});
    for (const Edge& e : CornerLoop(cls.faces[1].nodes, corners)) neg.insert(e);
    EXPECT_EQ(pos, neg);
    EXPECT_EQ(static_cast<int>(cls.faces[0].nodes.size()), cls.nodesPerElement);
  }
  EXPECT_EQ(Known("B32").faces[1].nodes, std::vector<int>{3});
}

// Tensor-product points number the first coordinate fastest, so their (third, second, first)
// keys increase strictly.
TEST(StoreElementLibrary, TensorProductPointsNumberTheFirstCoordinateFastest) {
  for (auto [type, count] : {std::pair{"C3D8", 8}, {"CPS4", 4}, {"C3D20R", 8}, {"C3D20", 27}}) {
    const auto& points = Known(type).integrationPointCoordinates;
    ASSERT_EQ(static_cast<int>(points.size()), count) << type;
    for (std::size_t i = 1; i < points.size(); ++i)
      EXPECT_LT(std::tie(points[i - 1][2], points[i - 1][1], points[i - 1][0]),
                std::tie(points[i][2], points[i][1], points[i][0]))
          << type;
  }
  EXPECT_NEAR(Known("C3D8").integrationPointCoordinates[1][0], 1 / std::sqrt(3.0), 1e-15);
  EXPECT_NEAR(Known("C3D20").integrationPointCoordinates[0][0], -std::sqrt(0.6), 1e-15);
  EXPECT_EQ(Known("C3D8R").integrationPointCoordinates[0], (std::array<double, 3>{0, 0, 0}));
}

// The symmetric rules of simplices and wedges average to the centroid.
TEST(StoreElementLibrary, IntegrationRulesHaveTheirUsualSizeAndBalance) {
  for (auto [type, count] : {std::pair{"C3D10", 4},
                             {"C3D6", 2},
                             {"C3D15", 9},
                             {"CPE6", 3},
                             {"CAX8", 9},
                             {"CPS8R", 4},
                             {"S4", 4},
                             {"S4R", 1},
                             {"B22", 2},
                             {"T3D3", 2},
                             {"R3D4", 0},
                             {"CONN3D2", 1}})
    EXPECT_EQ(Known(type).integrationPoints, count) << type;
  for (auto [type, centre] : {std::pair{"C3D10", 0.25}, {"CPS6", 1.0 / 3}, {"C3D15", 1.0 / 3}}) {
    const auto& points = Known(type).integrationPointCoordinates;
    for (int axis = 0; axis < 2; ++axis) {
      double sum = 0;
      for (const auto& p : points) sum += p[axis];
      EXPECT_NEAR(sum / points.size(), centre, 1e-12) << type;
    }
  }
}

TEST(StoreElementLibrary, UnknownNamesAreUserElementsAndLabelsFollowTheDeck) {
  EXPECT_EQ(Known("CPE8RH").geometry, odb_Enum::GEOMETRY_PLANE_STRAIN);
  EXPECT_EQ(store_FindElementClass("CPS4H"), nullptr);
  EXPECT_EQ(store_FindElementClass("c3d8"), nullptr);
  store_ElementClass user = store_ElementClassOf("U1", 5);
  EXPECT_EQ(user.geometry, odb_Enum::GEOMETRY_USER);
  EXPECT_EQ(user.nodesPerElement, 5);
  EXPECT_EQ(user.integrationPoints, 1);
  EXPECT_TRUE(user.faces.empty());
  EXPECT_EQ(store_ElementClassOf("C3D8R", 3).nodesPerElement, 8);

  EXPECT_EQ(store_FaceLabel(Known("C3D8"), odb_Enum::FACE6), "S6");
  EXPECT_EQ(store_FaceLabel(Known("C3D4"), odb_Enum::FACE5), "");
  EXPECT_EQ(store_FaceLabel(Known("S4R"), odb_Enum::SIDE1), "SPOS");
  EXPECT_EQ(store_FaceLabel(Known("R2D2"), odb_Enum::SIDE2), "SNEG");
  EXPECT_EQ(store_FaceLabel(Known("B31"), odb_Enum::END2), "END2");
  EXPECT_EQ(store_FaceLabel(Known("CONN3D2"), odb_Enum::END1), "");
}

// The listing is what the documentation's table is made from: each known type once, and the
// very class a lookup by name gives.
TEST(StoreElementLibrary, ListingHoldsEveryKnownTypeOnceAsFoundByName) {
  std::set<std::string> listed;
  for (const store_ElementClass* cls : store_ElementClasses()) {
    EXPECT_TRUE(listed.insert(cls->name).second) << cls->name;
    EXPECT_EQ(store_FindElementClass(cls->name), cls) << cls->name;
  }
  std::istringstream types(kTypes);
  for (std::string type; types >> type;) EXPECT_EQ(listed.count(type), 1u) << type;
}

}  // namespace
