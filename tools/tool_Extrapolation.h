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

#endif
