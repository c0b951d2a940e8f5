// Extrapolators are small dense matrices (at most 20 nodes by 27 points) built with plain
// Gaussian elimination in double; they are built once per type, so clarity wins over speed here.
#include "store_Extrapolation.h"

#include <array>
#include <cmath>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <utility>

namespace {

using Point = std::array<double, 3>;
using Matrix = std::vector<double>;  // row-major, sizes kept by the caller

enum class Shape { kHexahedron, kTetrahedron, kWedge, kQuadrilateral, kTriangle };

// The corner shape of a supported element and its number of corners; false for the others.
bool ShapeOf(const store_ElementClass& cls, Shape& shape, int& corners) {
  bool planar = cls.geometry == odb_Enum::GEOMETRY_PLANE_STRESS ||
                cls.geometry == odb_Enum::GEOMETRY_PLANE_STRAIN ||
                cls.geometry == odb_Enum::GEOMETRY_AXISYMMETRIC;
  if (cls.geometry == odb_Enum::GEOMETRY_SOLID) {
    switch (cls.nodesPerElement) {
      case 8:
      case 20:
        shape = Shape::kHexahedron, corners = 8;
        return true;
      case 4:
      case 10:
        shape = Shape::kTetrahedron, corners = 4;
        return true;
      case 6:
      case 15:
        shape = Shape::kWedge, corners = 6;
        return true;
    }
  } else if (planar) {
    switch (cls.nodesPerElement) {
      case 4:
      case 8:
        shape = Shape::kQuadrilateral, corners = 4;
        return true;
      case 3:
      case 6:
        shape = Shape::kTriangle, corners = 3;
        return true;
    }
  }
  return false;
}

// Signs of the corners of the unit square and cube, node 1 at (-1, -1, -1), counter-clockwise
// round the face at -1 on the third axis, then the same round the face at +1.
const double kBoxSigns[8][3] = {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                                {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};

// The linear shape functions of the corners at natural coordinates x, into n[0..corners).
void CornerFunctions(Shape shape, const Point& x, double* n) {
  switch (shape) {
    case Shape::kHexahedron:
      for (int i = 0; i < 8; ++i)
        n[i] = (1 + kBoxSigns[i][0] * x[0]) * (1 + kBoxSigns[i][1] * x[1]) *
               (1 + kBoxSigns[i][2] * x[2]) / 8;
      return;
    case Shape::kQuadrilateral:
      for (int i = 0; i < 4; ++i)
        n[i] = (1 + kBoxSigns[i][0] * x[0]) * (1 + kBoxSigns[i][1] * x[1]) / 4;
      return;
    case Shape::kTetrahedron:
      n[0] = 1 - x[0] - x[1] - x[2], n[1] = x[0], n[2] = x[1], n[3] = x[2];
      return;
    case Shape::kTriangle:
      n[0] = 1 - x[0] - x[1], n[1] = x[0], n[2] = x[1];
      return;
    case Shape::kWedge: {
      const double area[3] = {1 - x[0] - x[1], x[0], x[1]};
      for (int i = 0; i < 3; ++i) {
        n[i] = area[i] * (1 - x[2]) / 2;
        n[i + 3] = area[i] * (1 + x[2]) / 2;
      }
      return;
    }
  }
}

Point CentroidOf(Shape shape) {
  switch (shape) {
    case Shape::kTetrahedron:
      return {0.25, 0.25, 0.25};
    case Shape::kTriangle:
    case Shape::kWedge:
      return {1.0 / 3, 1.0 / 3, 0};
    default:
      return {0, 0, 0};
  }
}

// The two corners (0-based) of each mid-side node, indexed by node - corners. Faces list their
// corners and then the mid-side node of each corner-to-corner edge in the same order; a planar
// element's edge lists its two corners and then its mid-side node.
std::vector<std::pair<int, int>> MidsideEdges(const store_ElementClass& cls, int corners) {
  std::vector<std::pair<int, int>> edges(cls.nodesPerElement - corners);
  if (edges.empty()) return edges;
  for (const store_ElementFace& face : cls.faces) {
    const std::vector<int>& f = face.nodes;
    int k = cls.dimension == 2 ? 2 : static_cast<int>(f.size()) / 2;
    int mids = static_cast<int>(f.size()) - k;
    for (int i = 0; i < mids; ++i) edges[f[k + i] - 1 - corners] = {f[i] - 1, f[(i + 1) % k] - 1};
  }
  return edges;
}

// Solves a x = b in place for the n x n matrix a and the n x m right-hand sides b, by Gaussian
// elimination with partial pivoting; b receives x.
void Solve(Matrix a, int n, Matrix& b, int m) {
  for (int col = 0; col < n; ++col) {
    int pivot = col;
    for (int row = col + 1; row < n; ++row)
      if (std::fabs(a[row * n + col]) > std::fabs(a[pivot * n + col])) pivot = row;
    for (int j = 0; j < n; ++j) std::swap(a[col * n + j], a[pivot * n + j]);
    for (int j = 0; j < m; ++j) std::swap(b[col * m + j], b[pivot * m + j]);
    for (int row = col + 1; row < n; ++row) {
      double f = a[row * n + col] / a[col * n + col];
      for (int j = col; j < n; ++j) a[row * n + j] -= f * a[col * n + j];
      for (int j = 0; j < m; ++j) b[row * m + j] -= f * b[col * m + j];
    }
  }
  for (int row = n - 1; row >= 0; --row)
    for (int j = 0; j < m; ++j) {
      double sum = b[row * m + j];
      for (int k = row + 1; k < n; ++k) sum -= a[row * n + k] * b[k * m + j];
      b[row * m + j] = sum / a[row * n + row];
    }
}

// The corners x points matrix that takes point values to corner values, from the points x
// corners matrix s of corner shape functions at the points: the inverse, the least-squares
// inverse (S^T S)^-1 S^T for more points, the minimum-norm inverse S^T (S S^T)^-1 for fewer.
Matrix CornerValues(const Matrix& s, int points, int corners) {
  Matrix e(corners * points, 0.0);
  if (points == 1) {
    for (int c = 0; c < corners; ++c) e[c] = 1.0;
    return e;
  }
  if (points >= corners) {
    Matrix normal(corners * corners, 0.0);
    for (int i = 0; i < corners; ++i)
      for (int j = 0; j < corners; ++j)
        for (int p = 0; p < points; ++p)
          normal[i * corners + j] += s[p * corners + i] * s[p * corners + j];
    for (int c = 0; c < corners; ++c)
      for (int p = 0; p < points; ++p) e[c * points + p] = s[p * corners + c];
    Solve(normal, corners, e, points);
    return e;
  }
  Matrix gram(points * points, 0.0), inverse(points * points, 0.0);
  for (int i = 0; i < points; ++i) {
    inverse[i * points + i] = 1.0;
    for (int j = 0; j < points; ++j)
      for (int c = 0; c < corners; ++c)
        gram[i * points + j] += s[i * corners + c] * s[j * corners + c];
  }
  Solve(gram, points, inverse, points);
  for (int c = 0; c < corners; ++c)
    for (int p = 0; p < points; ++p)
      for (int q = 0; q < points; ++q)
        e[c * points + p] += s[q * corners + c] * inverse[q * points + p];
  return e;
}

std::unique_ptr<const store_Extrapolator> Build(const store_ElementClass& cls) {
  Shape shape;
  int corners = 0;
  if (!ShapeOf(cls, shape, corners) || cls.integrationPoints < 1) return nullptr;
  const int points = cls.integrationPoints;
  Matrix s(points * corners);
  for (int p = 0; p < points; ++p)
    CornerFunctions(shape, cls.integrationPointCoordinates[p], &s[p * corners]);
  Matrix e = CornerValues(s, points, corners);

  auto x = std::make_unique<store_Extrapolator>();
  x->nodes = cls.nodesPerElement;
  x->points = points;
  x->toNodes.assign(e.begin(), e.end());
  for (const auto& [a, b] : MidsideEdges(cls, corners))
    for (int p = 0; p < points; ++p)
      x->toNodes.push_back(0.5 * (e[a * points + p] + e[b * points + p]));
  std::vector<double> atCentroid(corners);
  CornerFunctions(shape, CentroidOf(shape), atCentroid.data());
  x->corners = corners;
  x->atPoints = s;
  x->toCentroid.assign(points, 0.0);
  for (int c = 0; c < corners; ++c)
    for (int p = 0; p < points; ++p) x->toCentroid[p] += atCentroid[c] * e[c * points + p];
  return x;
}

}  // namespace

const store_Extrapolator* store_FindExtrapolator(const store_ElementClass& cls) {
  static std::mutex mutex;
  static std::unordered_map<std::string, std::unique_ptr<const store_Extrapolator>> built;
  std::lock_guard<std::mutex> lock(mutex);
  auto it = built.find(cls.name);
  if (it == built.end()) it = built.emplace(cls.name, Build(cls)).first;
  return it->second.get();
}
