#include "tool_Extrapolation.h"

#include <array>
#include <cmath>
#include <utility>

namespace {

enum class Shape { kNone, kHex, kTet, kWedge, kQuad, kTri };
using Point = std::array<double, 3>;

Shape ShapeOf(odb_Enum::odb_ElementGeometryClass geometry, int nodes) {
  switch (geometry) {
    case odb_Enum::GEOMETRY_SOLID:
      if (nodes == 8 || nodes == 20) return Shape::kHex;
      if (nodes == 4 || nodes == 10) return Shape::kTet;
      if (nodes == 6 || nodes == 15) return Shape::kWedge;
      return Shape::kNone;
    case odb_Enum::GEOMETRY_PLANE_STRESS:
    case odb_Enum::GEOMETRY_PLANE_STRAIN:
    case odb_Enum::GEOMETRY_AXISYMMETRIC:
      if (nodes == 4 || nodes == 8) return Shape::kQuad;
      if (nodes == 3 || nodes == 6) return Shape::kTri;
      return Shape::kNone;
    default:
      return Shape::kNone;
  }
}

int CornersOf(Shape shape) {
  switch (shape) {
    case Shape::kHex:
      return 8;
    case Shape::kTet:
      return 4;
    case Shape::kWedge:
      return 6;
    case Shape::kQuad:
      return 4;
    case Shape::kTri:
      return 3;
    case Shape::kNone:
      break;
  }
  return 0;
}

// The linear shape functions of the corners at x.
void Corner(Shape shape, const Point& x, double* n) {
  static const double hex[8][3] = {{-1, -1, -1}, {1, -1, -1}, {1, 1, -1}, {-1, 1, -1},
                                   {-1, -1, 1},  {1, -1, 1},  {1, 1, 1},  {-1, 1, 1}};
  switch (shape) {
    case Shape::kHex:
      for (int i = 0; i < 8; ++i)
        n[i] = (1 + x[0] * hex[i][0]) * (1 + x[1] * hex[i][1]) * (1 + x[2] * hex[i][2]) / 8;
      break;
    case Shape::kQuad:
      for (int i = 0; i < 4; ++i) n[i] = (1 + x[0] * hex[i][0]) * (1 + x[1] * hex[i][1]) / 4;
      break;
    case Shape::kTet:
      n[0] = 1 - x[0] - x[1] - x[2], n[1] = x[0], n[2] = x[1], n[3] = x[2];
      break;
    case Shape::kTri:
      n[0] = 1 - x[0] - x[1], n[1] = x[0], n[2] = x[1];
      break;
    case Shape::kWedge: {
      const double t[3] = {1 - x[0] - x[1], x[0], x[1]};
      for (int i = 0; i < 3; ++i) n[i] = t[i] * (1 - x[2]) / 2, n[i + 3] = t[i] * (1 + x[2]) / 2;
      break;
    }
    case Shape::kNone:
      break;
  }
}

// The integration points of a shape, in order; empty for a count the shape does not have.
std::vector<Point> PointsOf(Shape shape, int count) {
  const double g = 1 / std::sqrt(3.0), h = std::sqrt(0.6);
  const double gauss2[] = {-g, g}, gauss3[] = {-h, 0, h};
  const Point triangle3[] = {{1.0 / 6, 1.0 / 6, 0}, {2.0 / 3, 1.0 / 6, 0}, {1.0 / 6, 2.0 / 3, 0}};
  std::vector<Point> p;
  switch (shape) {
    case Shape::kHex:
      if (count == 1) p = {{0, 0, 0}};
      if (count == 8)
        for (double z : gauss2)
          for (double y : gauss2)
            for (double x : gauss2) p.push_back({x, y, z});
      if (count == 27)
        for (double z : gauss3)
          for (double y : gauss3)
            for (double x : gauss3) p.push_back({x, y, z});
      break;
    case Shape::kQuad:
      if (count == 1) p = {{0, 0, 0}};
      if (count == 4)
        for (double y : gauss2)
          for (double x : gauss2) p.push_back({x, y, 0});
      if (count == 9)
        for (double y : gauss3)
          for (double x : gauss3) p.push_back({x, y, 0});
      break;
    case Shape::kTri:
      if (count == 1) p = {{1.0 / 3, 1.0 / 3, 0}};
      if (count == 3) p.assign(triangle3, triangle3 + 3);
      break;
    case Shape::kTet: {
      const double a = (5 - std::sqrt(5.0)) / 20, b = (5 + 3 * std::sqrt(5.0)) / 20;
      if (count == 1) p = {{0.25, 0.25, 0.25}};
      if (count == 4) p = {{a, a, a}, {b, a, a}, {a, b, a}, {a, a, b}};
      break;
    }
    case Shape::kWedge:
      if (count == 2) p = {{1.0 / 3, 1.0 / 3, -g}, {1.0 / 3, 1.0 / 3, g}};
      if (count == 9)
        for (double z : gauss3)
          for (const Point& t : triangle3) p.push_back({t[0], t[1], z});
      break;
    case Shape::kNone:
      break;
  }
  return p;
}

// The corners (from 0) at the ends of each mid-side node's edge, in node order.
std::vector<std::pair<int, int>> MidsideEdges(Shape shape, int nodes) {
  switch (shape) {
    case Shape::kHex:
      if (nodes == 20)
        return {{0, 1}, {1, 2}, {2, 3}, {3, 0}, {4, 5}, {5, 6},
                {6, 7}, {7, 4}, {0, 4}, {1, 5}, {2, 6}, {3, 7}};
      break;
    case Shape::kTet:
      if (nodes == 10) return {{0, 1}, {1, 2}, {2, 0}, {0, 3}, {1, 3}, {2, 3}};
      break;
    case Shape::kWedge:
      if (nodes == 15)
        return {{0, 1}, {1, 2}, {2, 0}, {3, 4}, {4, 5}, {5, 3}, {0, 3}, {1, 4}, {2, 5}};
      break;
    case Shape::kQuad:
      if (nodes == 8) return {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
      break;
    case Shape::kTri:
      if (nodes == 6) return {{0, 1}, {1, 2}, {2, 0}};
      break;
    case Shape::kNone:
      break;
  }
  return {};
}

// Solves a x = b for the n x m right-hand sides of b (row-major), by elimination with partial
// pivoting; b receives x. False for a singular a.
bool Solve(std::vector<double> a, int n, std::vector<double>& b, int m) {
  for (int k = 0; k < n; ++k) {
    int pivot = k;
    for (int i = k + 1; i < n; ++i)
      if (std::fabs(a[i * n + k]) > std::fabs(a[pivot * n + k])) pivot = i;
    if (std::fabs(a[pivot * n + k]) < 1e-12) return false;
    for (int j = 0; j < n; ++j) std::swap(a[k * n + j], a[pivot * n + j]);
    for (int j = 0; j < m; ++j) std::swap(b[k * m + j], b[pivot * m + j]);
    for (int i = 0; i < n; ++i) {
      if (i == k) continue;
      const double f = a[i * n + k] / a[k * n + k];
      for (int j = 0; j < n; ++j) a[i * n + j] -= f * a[k * n + j];
      for (int j = 0; j < m; ++j) b[i * m + j] -= f * b[k * m + j];
    }
  }
  for (int k = 0; k < n; ++k)
    for (int j = 0; j < m; ++j) b[k * m + j] /= a[k * n + k];
  return true;
}

}  // namespace

tool_Extrapolator tool_ExtrapolatorOf(odb_Enum::odb_ElementGeometryClass geometry, int nodes,
                                      int points) {
  const Shape shape = ShapeOf(geometry, nodes);
  const int c = CornersOf(shape);
  const std::vector<Point> at = PointsOf(shape, points);
  const std::vector<std::pair<int, int>> edges = MidsideEdges(shape, nodes);
  if (at.empty() || c + static_cast<int>(edges.size()) != nodes) return {};
  const int p = points;
  // corner = P point: the corners' values from the points' (c x p).
  std::vector<double> corner(static_cast<std::size_t>(c * p));
  if (p == 1) {
    std::fill(corner.begin(), corner.end(), 1.0);
  } else {
    std::vector<double> s(static_cast<std::size_t>(p * c));  // s[j][i]: corner i at point j
    for (int j = 0; j < p; ++j) Corner(shape, at[j], &s[j * c]);
    if (p >= c) {
      // Least squares (exact for p == c): corner = (s' s)^-1 s'.
      std::vector<double> sts(static_cast<std::size_t>(c * c)), st(corner.size());
      for (int i = 0; i < c; ++i)
        for (int k = 0; k < c; ++k)
          for (int j = 0; j < p; ++j) sts[i * c + k] += s[j * c + i] * s[j * c + k];
      for (int i = 0; i < c; ++i)
        for (int j = 0; j < p; ++j) st[i * p + j] = s[j * c + i];
      if (!Solve(sts, c, st, p)) return {};
      corner = st;
    } else {
      // The smallest corner values that match: corner = s' (s s')^-1.
      std::vector<double> sst(static_cast<std::size_t>(p * p)), inverse(sst.size());
      for (int j = 0; j < p; ++j)
        for (int k = 0; k < p; ++k)
          for (int i = 0; i < c; ++i) sst[j * p + k] += s[j * c + i] * s[k * c + i];
      for (int j = 0; j < p; ++j) inverse[j * p + j] = 1;
      if (!Solve(sst, p, inverse, p)) return {};
      for (int i = 0; i < c; ++i)
        for (int k = 0; k < p; ++k)
          for (int j = 0; j < p; ++j) corner[i * p + k] += s[j * c + i] * inverse[j * p + k];
    }
  }
  tool_Extrapolator x;
  x.nodes = nodes;
  x.points = p;
  x.weights.assign(corner.begin(), corner.end());
  for (const auto& [from, to] : edges)
    for (int j = 0; j < p; ++j)
      x.weights.push_back((corner[from * p + j] + corner[to * p + j]) / 2);
  return x;
}
