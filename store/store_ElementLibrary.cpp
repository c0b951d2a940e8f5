// The element table: one row per shape, shared by all the type names that differ only in the
// formulation (hybrid, incompatible modes) or in the kind of body, so that the face lists and the
// integration rules are written once.
#include "store_ElementLibrary.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <unordered_map>
#include <utility>

namespace {

using Faces = std::vector<store_ElementFace>;
using Points = std::vector<std::array<double, 3>>;

// Integration rules by shape and order.
enum Rule {
  kNoPoints,
  kLine1,
  kLine2,
  kQuad1,
  kQuad4,
  kQuad9,
  kHex1,
  kHex8,
  kHex27,
  kTri1,
  kTri3,
  kTet1,
  kTet4,
  kWedge2,
  kWedge9
};

// Gauss abscissae on [-1, 1] for one, two and three points.
std::vector<double> Gauss(int n) {
  if (n == 1) return {0.0};
  if (n == 2) return {-1.0 / std::sqrt(3.0), 1.0 / std::sqrt(3.0)};
  return {-std::sqrt(0.6), 0.0, std::sqrt(0.6)};
}

// An n-point-per-axis rule in `dim` dimensions, the first coordinate varying fastest.
Points Tensor(int n, int dim) {
  std::vector<double> g = Gauss(n);
  Points points;
  for (int k = 0; k < (dim > 2 ? n : 1); ++k)
    for (int j = 0; j < (dim > 1 ? n : 1); ++j)
      for (int i = 0; i < n; ++i)
        points.push_back({g[i], dim > 1 ? g[j] : 0.0, dim > 2 ? g[k] : 0.0});
  return points;
}

// The triangle points of a wedge rule, repeated at each Gauss point through the thickness; the
// triangle point varies fastest.
Points Wedge(const Points& triangle, int n) {
  Points points;
  for (double z : Gauss(n))
    for (const auto& p : triangle) points.push_back({p[0], p[1], z});
  return points;
}

Points PointsOf(Rule rule) {
  const double third = 1.0 / 3.0;
  const Points tri3 = {{1.0 / 6, 1.0 / 6, 0}, {2.0 / 3, 1.0 / 6, 0}, {1.0 / 6, 2.0 / 3, 0}};
  const double a = (5.0 - std::sqrt(5.0)) / 20.0, b = (5.0 + 3.0 * std::sqrt(5.0)) / 20.0;
  switch (rule) {
    case kNoPoints:
      return {};
    case kLine1:
      return Tensor(1, 1);
    case kLine2:
      return Tensor(2, 1);
    case kQuad1:
      return Tensor(1, 2);
    case kQuad4:
      return Tensor(2, 2);
    case kQuad9:
      return Tensor(3, 2);
    case kHex1:
      return Tensor(1, 3);
    case kHex8:
      return Tensor(2, 3);
    case kHex27:
      return Tensor(3, 3);
    case kTri1:
      return {{third, third, 0}};
    case kTri3:
      return tri3;
    case kTet1:
      return {{0.25, 0.25, 0.25}};
    case kTet4:
      return {{a, a, a}, {b, a, a}, {a, b, a}, {a, a, b}};
    case kWedge2:
      return Wedge({{third, third, 0}}, 2);
    case kWedge9:
      return Wedge(tri3, 3);
  }
  return {};
}

// Faces FACE1, FACE2, ... in the order given.
Faces Numbered(std::vector<std::vector<int>> lists) {
  Faces faces;
  int n = 0;
  for (auto& nodes : lists)
    faces.push_back(
        {static_cast<odb_Enum::odb_ElementFaceEnum>(odb_Enum::FACE1 + n++), std::move(nodes)});
  return faces;
}

// The two sides of an element with `corners` corner nodes, then, when `midside`, the mid-side
// node of each edge in the same order. SIDE2 walks the corners the other way round from node 1;
// a line's SIDE2 simply runs from its second node to its first.
Faces Sides(int corners, bool midside) {
  std::vector<int> pos;
  for (int i = 1; i <= corners; ++i) pos.push_back(i);
  std::vector<int> neg(pos.rbegin(), pos.rend());
  if (corners > 2) std::rotate(neg.begin(), neg.end() - 1, neg.end());
  if (midside) {
    for (int i = 1; i <= corners; ++i) pos.push_back(corners + i);
    for (int i = corners; i >= 1; --i) neg.push_back(corners + i);
  }
  return {{odb_Enum::SIDE1, pos}, {odb_Enum::SIDE2, neg}};
}

// The two ends of a line element: its first node and its last.
Faces Ends(int nodes) {
  return {{odb_Enum::END1, {1}}, {odb_Enum::END2, {nodes}}};
}

struct Shape {
  int nodes;
  int dimension;
  Rule rule;
  const Faces* faces;
};

// A continuum shape; its names are the family prefix followed by each suffix listed.
struct ContinuumRow {
  const char* suffixes;
  Shape shape;
};

// Any other shape with its full names and the kind of body they model.
struct Row {
  const char* names;
  odb_Enum::odb_ElementGeometryClass geometry;
  Shape shape;
};

// The classes by name, and their order of definition (families together) for listings.
struct Table {
  std::unordered_map<std::string, store_ElementClass> byName;
  std::vector<const store_ElementClass*> inOrder;
};

void Add(Table& table, const std::string& name, odb_Enum::odb_ElementGeometryClass geometry,
         const Shape& shape) {
  store_ElementClass& cls = table.byName[name];
  cls.name = name;
  cls.nodesPerElement = shape.nodes;
  cls.dimension = shape.dimension;
  cls.geometry = geometry;
  cls.faces = *shape.faces;
  cls.integrationPointCoordinates = PointsOf(shape.rule);
  cls.integrationPoints = static_cast<int>(cls.integrationPointCoordinates.size());
  table.inOrder.push_back(&cls);  // map nodes never move, so the pointer stays valid
}

Table Build() {
  // Solid faces; quadratic faces list their mid-side nodes after the corners.
  const Faces tet4 = Numbered({{1, 2, 3}, {1, 4, 2}, {2, 4, 3}, {3, 4, 1}});
  const Faces tet10 =
      Numbered({{1, 2, 3, 5, 6, 7}, {1, 4, 2, 8, 9, 5}, {2, 4, 3, 9, 10, 6}, {3, 4, 1, 10, 8, 7}});
  const Faces wedge6 = Numbered({{1, 2, 3}, {4, 6, 5}, {1, 4, 5, 2}, {2, 5, 6, 3}, {3, 6, 4, 1}});
  const Faces wedge15 = Numbered({{1, 2, 3, 7, 8, 9},
                                  {4, 6, 5, 12, 11, 10},
                                  {1, 4, 5, 2, 13, 10, 14, 7},
                                  {2, 5, 6, 3, 14, 11, 15, 8},
                                  {3, 6, 4, 1, 15, 12, 13, 9}});
  const Faces hex8 = Numbered(
      {{1, 2, 3, 4}, {5, 8, 7, 6}, {1, 5, 6, 2}, {2, 6, 7, 3}, {3, 7, 8, 4}, {4, 8, 5, 1}});
  const Faces hex20 = Numbered({{1, 2, 3, 4, 9, 10, 11, 12},
                                {5, 8, 7, 6, 16, 15, 14, 13},
                                {1, 5, 6, 2, 17, 13, 18, 9},
                                {2, 6, 7, 3, 18, 14, 19, 10},
                                {3, 7, 8, 4, 19, 15, 20, 11},
                                {4, 8, 5, 1, 20, 16, 17, 12}});
  // Planar edges, each from a corner to the next, then its mid-side node.
  const Faces tri3 = Numbered({{1, 2}, {2, 3}, {3, 1}});
  const Faces tri6 = Numbered({{1, 2, 4}, {2, 3, 5}, {3, 1, 6}});
  const Faces quad4 = Numbered({{1, 2}, {2, 3}, {3, 4}, {4, 1}});
  const Faces quad8 = Numbered({{1, 2, 5}, {2, 3, 6}, {3, 4, 7}, {4, 1, 8}});
  const Faces sides2 = Sides(2, false), sides3 = Sides(3, false), sides4 = Sides(4, false),
              sides8 = Sides(4, true);
  const Faces ends2 = Ends(2), ends3 = Ends(3), none;

  // Hybrid variants (suffix H) share everything with their base type.
  const ContinuumRow solids[] = {
      {"4 4H", {4, 3, kTet1, &tet4}},       {"10 10H", {10, 3, kTet4, &tet10}},
      {"6 6H", {6, 3, kWedge2, &wedge6}},   {"15 15H", {15, 3, kWedge9, &wedge15}},
      {"8 8H", {8, 3, kHex8, &hex8}},       {"8R 8RH", {8, 3, kHex1, &hex8}},
      {"8I 8IH", {8, 3, kHex8, &hex8}},     {"20 20H", {20, 3, kHex27, &hex20}},
      {"20R 20RH", {20, 3, kHex8, &hex20}},
  };
  // Plane stress has no hybrid variants: its thickness change takes up incompressibility.
  const ContinuumRow planar[] = {
      {"3 3H", {3, 2, kTri1, &tri3}},     {"4 4H", {4, 2, kQuad4, &quad4}},
      {"4R 4RH", {4, 2, kQuad1, &quad4}}, {"4I 4IH", {4, 2, kQuad4, &quad4}},
      {"6 6H", {6, 2, kTri3, &tri6}},     {"8 8H", {8, 2, kQuad9, &quad8}},
      {"8R 8RH", {8, 2, kQuad4, &quad8}},
  };
  const Row others[] = {
      {"S3 S3R", odb_Enum::GEOMETRY_SHELL, {3, 2, kTri1, &sides3}},
      {"S4", odb_Enum::GEOMETRY_SHELL, {4, 2, kQuad4, &sides4}},
      {"S4R", odb_Enum::GEOMETRY_SHELL, {4, 2, kQuad1, &sides4}},
      {"S8R", odb_Enum::GEOMETRY_SHELL, {8, 2, kQuad4, &sides8}},
      {"M3D3", odb_Enum::GEOMETRY_MEMBRANE, {3, 2, kTri1, &sides3}},
      {"M3D4", odb_Enum::GEOMETRY_MEMBRANE, {4, 2, kQuad4, &sides4}},
      {"M3D4R", odb_Enum::GEOMETRY_MEMBRANE, {4, 2, kQuad1, &sides4}},
      {"B21 B31", odb_Enum::GEOMETRY_BEAM, {2, 1, kLine1, &ends2}},
      {"B22 B32", odb_Enum::GEOMETRY_BEAM, {3, 1, kLine2, &ends3}},
      {"T2D2 T3D2", odb_Enum::GEOMETRY_TRUSS, {2, 1, kLine1, &ends2}},
      {"T3D3", odb_Enum::GEOMETRY_TRUSS, {3, 1, kLine2, &ends3}},
      {"R2D2", odb_Enum::GEOMETRY_RIGID, {2, 1, kNoPoints, &sides2}},
      {"R3D3", odb_Enum::GEOMETRY_RIGID, {3, 2, kNoPoints, &sides3}},
      {"R3D4", odb_Enum::GEOMETRY_RIGID, {4, 2, kNoPoints, &sides4}},
      {"SFM3D3", odb_Enum::GEOMETRY_SURFACE, {3, 2, kTri1, &sides3}},
      {"SFM3D4", odb_Enum::GEOMETRY_SURFACE, {4, 2, kQuad4, &sides4}},
      {"SFM3D4R", odb_Enum::GEOMETRY_SURFACE, {4, 2, kQuad1, &sides4}},
      {"CONN2D2 CONN3D2", odb_Enum::GEOMETRY_CONNECTOR, {2, 1, kLine1, &none}},
  };

  struct Family {
    const char* prefix;
    odb_Enum::odb_ElementGeometryClass geometry;
    bool hybrid;
  };
  const Family planarFamilies[] = {{"CPS", odb_Enum::GEOMETRY_PLANE_STRESS, false},
                                   {"CPE", odb_Enum::GEOMETRY_PLANE_STRAIN, true},
                                   {"CAX", odb_Enum::GEOMETRY_AXISYMMETRIC, true}};

  Table table;
  auto addContinuum = [&table](const ContinuumRow& row, const Family& family) {
    std::istringstream words(row.suffixes);
    for (std::string suffix; words >> suffix;)
      if (family.hybrid || suffix.back() != 'H')
        Add(table, family.prefix + suffix, family.geometry, row.shape);
  };
  for (const ContinuumRow& row : solids) addContinuum(row, {"C3D", odb_Enum::GEOMETRY_SOLID, true});
  for (const Family& family : planarFamilies)
    for (const ContinuumRow& row : planar) addContinuum(row, family);
  for (const Row& row : others) {
    std::istringstream words(row.names);
    for (std::string name; words >> name;) Add(table, name, row.geometry, row.shape);
  }
  return table;
}

const Table& Library() {
  static const Table table = Build();
  return table;
}

}  // namespace

const store_ElementClass* store_FindElementClass(const std::string& type) {
  const Table& table = Library();
  auto it = table.byName.find(type);
  return it == table.byName.end() ? nullptr : &it->second;
}

const std::vector<const store_ElementClass*>& store_ElementClasses() {
  return Library().inOrder;
}

store_ElementClass store_ElementClassOf(const std::string& type, int nodesPerElement) {
  if (const store_ElementClass* known = store_FindElementClass(type)) return *known;
  store_ElementClass cls;
  cls.name = type;
  cls.nodesPerElement = nodesPerElement;
  cls.integrationPoints = 1;
  cls.dimension = 3;
  cls.geometry = odb_Enum::GEOMETRY_USER;
  cls.integrationPointCoordinates = {{0.0, 0.0, 0.0}};
  return cls;
}

std::string store_FaceLabel(const store_ElementClass& cls, odb_Enum::odb_ElementFaceEnum face) {
  bool present = false;
  for (const store_ElementFace& f : cls.faces) present = present || f.face == face;
  if (!present) return "";
  if (face >= odb_Enum::FACE1 && face <= odb_Enum::FACE6) return "S" + std::to_string(face);
  if (face == odb_Enum::SIDE1) return "SPOS";
  if (face == odb_Enum::SIDE2) return "SNEG";
  return "END" + std::to_string(face - odb_Enum::END1 + 1);
}
