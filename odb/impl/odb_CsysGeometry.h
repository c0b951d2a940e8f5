// odb_CsysGeometry: the geometry of datum coordinate systems: building a system's origin and
// axes from what defines it, moving it with its nodes, and its local axes at a point; internal.
//
// Axes are 3x3 row-major, row i the unit i-axis in global components. Pure functions in double.
#ifndef ODB_CSYSGEOMETRY_H
#define ODB_CSYSGEOMETRY_H

#include "odb_Enum.h"

// Below this, lengths (relative to the points' spread) count as zero: coincident points,
// colinear points, parallel axes.
constexpr double odb_kCsysTolerance = 1e-6;

// Axes from a 1-axis direction and a direction in the 1-2 plane: the 1-axis along `x`, the
// 2-axis the part of `y` normal to it, the 3-axis completing a right-handed set. False when
// either is zero or they are parallel.
bool odb_AxesFromDirections(const double x[3], const double y[3], double axes[9]);
// From three points (row after row): origin at the first, the 1-axis toward the second, the
// third in the 1-2 plane. False when they are coincident or colinear.
bool odb_FrameFromThreePoints(const double points[9], double origin[3], double axes[9]);
// From three points on a circle: origin at the circle's centre, the 3-axis normal to their
// plane by the right-hand rule over the points in order, the 1-axis toward the first point.
// False when they are coincident or colinear.
bool odb_FrameFromCircle(const double points[9], double origin[3], double axes[9]);

// Turns `axes` by the rotation vector `theta` (its direction the axis, its length the angle in
// radians).
void odb_RotateAxes(const double theta[3], double axes[9]);

// The local axes at `point` of a system of `type` at `origin` with `axes`: the system's axes for
// a rectangular one; (radial, hoop, 3-axis) for a cylindrical one; (radial, hoop, elevation) for
// a spherical one. Where the radial direction is undefined (on the 3-axis) it is the 1-axis,
// turned by the point's angle about the 3-axis when that is defined.
void odb_LocalAxes(odb_Enum::odb_DatumCsysTypeEnum type, const double origin[3],
                   const double axes[9], const double point[3], double local[9]);

#endif
