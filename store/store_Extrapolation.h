// store_Extrapolation: from the integration-point values of one element to its nodes and its
// centroid.
//
// Values are carried to the corners with the element's linear corner shape functions: the corner
// values are those whose interpolation best matches the point values (the exact inverse where
// there are as many points as corners, least squares where there are more, the smallest
// corner values that match where there are fewer, the constant for one point). Mid-side nodes
// take the average of their edge's two corners. A field linear in the natural coordinates that
// the points can carry is therefore reproduced at every node and at the centroid.
//
// Supported: the 3D solids (hexahedra, tetrahedra, wedges) and the plane stress, plane strain
// and axisymmetric 2D continua (quadrilaterals, triangles) of the element library. Extrapolators
// are built on first request per type name and kept for the life of the program; returned
// pointers stay valid and may be used from any thread. Applying one costs nodes x points
// multiply-adds per component.
#ifndef STORE_EXTRAPOLATION_H
#define STORE_EXTRAPOLATION_H

#include <vector>

#include "store_ElementLibrary.h"

// How to turn the integration-point values of one element into values at its nodes and at its
// centroid.
struct store_Extrapolator {
  int nodes = 0;   // the element's nodes (all of them, midside included)
  int points = 0;  // its integration points
  // nodes x points, row-major: value at node i = sum_j toNodes[i*points+j] * ip[j]
  std::vector<double> toNodes;
  // points: value at the centroid = sum_j toCentroid[j] * ip[j]
  std::vector<double> toCentroid;
  int corners = 0;  // the corner nodes, which come first in the connectivity
  // points x corners, row-major: the corners' linear shape functions at each point, which carry
  // nodal quantities (coordinates, displacements) to the points:
  // x at point j = sum_c atPoints[j*corners+c] * x[c]
  std::vector<double> atPoints;
};

// The extrapolator of an element class, built once per type name and kept (thread-safe);
// nullptr for types it cannot extrapolate (everything except the 3D solids and the planar and
// axisymmetric 2D continuum types of the library).
const store_Extrapolator* store_FindExtrapolator(const store_ElementClass& cls);

#endif
