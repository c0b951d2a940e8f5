// Integration-point values carried to an element's nodes, for the export's nodal averages.
//
// The export reads each block of integration-point values once and makes from it both the
// element's mean (cell data) and its node values (summed per node); it applies these weights
// to the buffer it already holds, where the library's extrapolated subset would read the block
// again and keep it in memory with the frame. The weights follow the library's rule, so the two
// agree (a test holds them to it): the corner values are those whose linear interpolation best
// matches the point values (the exact inverse for as many points as corners, least squares for
// more, the smallest values that match for fewer, the constant for one point), and a mid-side
// node takes the mean of its edge's corners. Solid (hexahedra, tetrahedra, wedges) and planar
// or axisymmetric continuum (quadrilaterals, triangles) elements; integration points in the
// order of docs/conventions.md.
#ifndef TOOL_EXTRAPOLATION_H
#define TOOL_EXTRAPOLATION_H

#include <vector>

#include "odb_Enum.h"

struct tool_Extrapolator {
  int nodes = 0, points = 0;
  // nodes x points, row-major: the value at node i is the sum over j of weights[i*points+j] times
  // the value at point j.
  std::vector<double> weights;
};

// The weights for an element of `geometry` with `nodes` nodes and `points` integration points;
// empty weights (nodes 0) when the element cannot be extrapolated.
tool_Extrapolator tool_ExtrapolatorOf(odb_Enum::odb_ElementGeometryClass geometry, int nodes,
                                      int points);

// The same for the commonest element, a hexahedron of 8 nodes and 2 x 2 x 2 points, in a third
// of the arithmetic: its weights are the trilinear fit through the points evaluated at the
// corners, which goes one axis at a time. Along an axis, the values at -g and g (g = 1/sqrt 3)
// give a v0 + b v1 at -1 and b v0 + a v1 at 1, with a = (1 + sqrt 3)/2 and b = (1 - sqrt 3)/2.
// `rows` holds the 8 points' W values each, in point order (the first axis fastest); `out`
// receives the 8 nodes' W values each, in node order.
template <int W>
void tool_ExtrapolateHex8(const float* rows, float* out) {
  constexpr float a = 1.3660254037844386f, b = -0.3660254037844386f;
  float x[8][W], y[8][W];
  // Point p = i + 2j + 4k holds the value at (i, j, k), 0 for -g and 1 for g; after each pass
  // the same index holds the value at -1 or 1 on the axes passed.
  for (int p = 0; p < 8; p += 2)
    for (int c = 0; c < W; ++c) {
      const float v0 = rows[p * W + c], v1 = rows[(p + 1) * W + c];
      x[p][c] = a * v0 + b * v1;
      x[p + 1][c] = b * v0 + a * v1;
    }
  for (int p : {0, 1, 4, 5})
    for (int c = 0; c < W; ++c) {
      const float v0 = x[p][c], v1 = x[p + 2][c];
      y[p][c] = a * v0 + b * v1;
      y[p + 2][c] = b * v0 + a * v1;
    }
  // The nodes go round each face of the third axis: (0,0), (1,0), (1,1), (0,1).
  const int corner[4] = {0, 1, 3, 2};
  for (int n = 0; n < 4; ++n)
    for (int c = 0; c < W; ++c) {
      const float v0 = y[corner[n]][c], v1 = y[corner[n] + 4][c];
      out[n * W + c] = a * v0 + b * v1;
      out[(n + 4) * W + c] = b * v0 + a * v1;
    }
}

#endif
