// store_Tensor: invariants, orientations and rotations of single result values.
//
// A value of a tensor kind holds the independent components of a symmetric second-order tensor
// in a fixed order; missing components (the out-of-plane shears of planar kinds, the 33
// component of surface and 2D kinds) are zero. Every routine is a pure function of its
// arguments: it owns nothing, allocates nothing (except the direction-cosine rows it returns),
// works in double (the Mises block excepted) and returns float, and may run on any number of
// threads at once. One value costs a few dozen flops; principal values solve one cubic.
//
// Invariants, for the symmetric tensor T with deviator s = T - tr(T)/3 I:
//   PRESS = -tr(T)/3, MISES = sqrt(3/2 s:s), TRESCA = max principal - min principal,
//   INV3 = (27/2 det s)^(1/3) with its sign kept (equal to the stress of a uniaxial tension),
//   MAX/MID/MIN_PRINCIPAL from the full 3x3 tensor, MAX/MIN_INPLANE_PRINCIPAL from the 2x2 of
//   11, 22 and 12, OUTOFPLANE_PRINCIPAL = the 33 component for TENSOR_3D_FULL and
//   TENSOR_3D_PLANAR and 0 for the kinds without one.
#ifndef STORE_TENSOR_H
#define STORE_TENSOR_H

#include <vector>

#include "odb_Enum.h"

// Components per value of a tensor kind: TENSOR_3D_FULL 6 (11,22,33,12,13,23), TENSOR_3D_PLANAR
// 4 (11,22,33,12), TENSOR_3D_SURFACE 3 (11,22,12), TENSOR_2D_PLANAR 3 (11,22,12),
// TENSOR_2D_SURFACE 3 (11,22,12); 0 for other types.
int store_TensorComponentCount(odb_Enum::odb_DataTypeEnum type);

// The component labels' suffixes in that order, e.g. {"11","22","33","12","13","23"}; nullptr
// for other types.
const char* const* store_TensorComponentSuffixes(odb_Enum::odb_DataTypeEnum type);

// True when `invariant` can be asked of values of `type`: MAGNITUDE for VECTOR, the other ten for
// the five tensor kinds.
bool store_InvariantValid(odb_Enum::odb_InvariantEnum invariant, odb_Enum::odb_DataTypeEnum type);

// One invariant of one value of `type` with components c[0..count); 0.0f where the pair is not
// valid. A tensor value shorter than its kind reads the missing trailing components as 0; extra
// floats are ignored. MAGNITUDE is the length of all `count` floats.
float store_Invariant(odb_Enum::odb_InvariantEnum invariant, odb_Enum::odb_DataTypeEnum type,
                      const float* c, int count);

// Mises of `n` consecutive values of a tensor kind laid out row-major (stride = component count)
// into out[n]; out[0..n) is set to 0 for other types. One straight loop per kind, in float: it
// is faster than one plain pass over the block's floats, and agrees with store_Invariant to a few
// units in the last place for components below 1e18 in magnitude.
void store_MisesBlock(odb_Enum::odb_DataTypeEnum type, const float* data, long n, float* out);

// Direction cosines of the inverse of the rotation that an orientation holds, rows being the
// local axes in global components (row i = R e_i for the rotation R).
//   count 2: (cos(t/2), sin(t/2)), a rotation by t about the 3-axis (the planar quaternion);
//            2 rows of 2: (cos t, sin t), (-sin t, cos t).
//   count 4: a quaternion (q0, q1, q2, q3) with the scalar part first, as (cos(t/2), n sin(t/2))
//            for a rotation by t about the unit axis n; 3 rows of 3.
// Orientations are normalised first, so float rounding still gives orthonormal rows. Empty for
// any other count and for an all-zero orientation, which holds no rotation.
std::vector<std::vector<float>> store_DirectionCosines(const float* orientation, int count);

// The 3x3 row-major axes of store_DirectionCosines (the 2x2 of a planar rotation widened with a
// unit 3-axis), for store_RotateVector and store_RotateTensor; false, leaving `axes` untouched,
// where store_DirectionCosines would be empty.
bool store_RotationAxes(const float* orientation, int count, double axes[9]);

// Rotates one value's components into the rectangular system whose axes are the rows of `axes`
// (3x3, row-major, orthonormal): vectors of width 2 or 3 as v' = A v (width 2 uses the upper-left
// 2x2), tensors of each kind as T' = A T A^T over its own components. Kinds without out-of-plane
// shears keep only their own components, which is exact for rotations about the 3-axis. `out`
// may be `in`. Other widths and types leave `out` untouched.
void store_RotateVector(const double axes[9], const float* in, float* out, int width);
void store_RotateTensor(odb_Enum::odb_DataTypeEnum type, const double axes[9], const float* in,
                        float* out);

#endif
