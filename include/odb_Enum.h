// odb_Enum: the enumerations of the public interface.
//
// Enumerators sit directly in the odb_Enum scope (odb_Enum::NODAL, odb_Enum::SCALAR), so their
// names are unique across all the enumerations below. Values that are stored in database files
// or compared by number are given explicitly and never change; the others count from 0 in the
// order listed. Plain constants: no cost, no thread rules.
#ifndef ODB_ENUM_H
#define ODB_ENUM_H

namespace odb_Enum {

// Where in the mesh a result value belongs.
enum odb_ResultPositionEnum {
  UNDEFINED_POSITION = 0,
  NODAL = 1,
  ELEMENT_NODAL = 2,
  INTEGRATION_POINT = 3,
  CENTROID = 4,
  ELEMENT_FACE = 5,
  WHOLE_ELEMENT = 6,
  WHOLE_REGION = 7,
  WHOLE_PART_INSTANCE = 8,
  WHOLE_MODEL = 9,
  GENERAL_PARTICLE = 10
};

// The shape of one result value.
enum odb_DataTypeEnum {
  BOOLEAN = 0,
  INTEGER = 1,
  SCALAR = 2,
  VECTOR = 3,
  MATRIX = 4,
  TENSOR_3D_FULL = 5,
  TENSOR_3D_PLANAR = 6,
  TENSOR_3D_SURFACE = 7,
  TENSOR_2D_PLANAR = 8,
  TENSOR_2D_SURFACE = 9,
  QUATERNION_3D = 10,
  QUATERNION_2D = 11
};

// The space a part is modelled in.
enum odb_DimensionEnum { THREE_D, TWO_D_PLANAR, AXISYMMETRIC, UNKNOWN_DIMENSION };

// What kind of body a part is.
enum odb_PartTypeEnum { DEFORMABLE_BODY, ANALYTIC_RIGID_SURFACE, DISCRETE_RIGID_SURFACE, EULERIAN };

// What the frame values of a step measure.
enum odb_DomainEnum { TIME, FREQUENCY, ARC_LENGTH, MODAL };

// How a frame is chosen for a requested value: the closest, the last at or before, the first at
// or after, or only an exact match.
enum odb_MatchEnum { CLOSEST = 0, BEFORE = 1, AFTER = 2, EXACT = 3 };

// Scalar invariants that a field output of vectors or tensors can give.
enum odb_InvariantEnum {
  MAGNITUDE,
  MISES,
  TRESCA,
  PRESS,
  INV3,
  MAX_PRINCIPAL,
  MID_PRINCIPAL,
  MIN_PRINCIPAL,
  MAX_INPLANE_PRINCIPAL,
  MIN_INPLANE_PRINCIPAL,
  OUTOFPLANE_PRINCIPAL
};

// Faces of solid elements (FACE1..FACE6), sides of shells and ends of beams, as used by surfaces.
enum odb_ElementFaceEnum {
  FACE_UNKNOWN = 0,
  FACE1 = 1,
  FACE2 = 2,
  FACE3 = 3,
  FACE4 = 4,
  FACE5 = 5,
  FACE6 = 6,
  SIDE1 = 7,
  SIDE2 = 8,
  END1 = 9,
  END2 = 10,
  END3 = 11
};

// The kind of body an element type models; stored in database files by number.
enum odb_ElementGeometryClass {
  GEOMETRY_UNKNOWN = 0,
  GEOMETRY_SOLID = 1,         // three-dimensional continuum
  GEOMETRY_PLANE_STRESS = 2,  // two-dimensional continuum, plane stress
  GEOMETRY_PLANE_STRAIN = 3,  // two-dimensional continuum, plane strain
  GEOMETRY_AXISYMMETRIC = 4,  // axisymmetric continuum
  GEOMETRY_SHELL = 5,
  GEOMETRY_MEMBRANE = 6,
  GEOMETRY_BEAM = 7,
  GEOMETRY_TRUSS = 8,
  GEOMETRY_RIGID = 9,
  GEOMETRY_SURFACE = 10,
  GEOMETRY_CONNECTOR = 11,
  GEOMETRY_USER = 12  // a type this library does not know: a user element
};

// The kind of a datum coordinate system, by the coordinates it gives: (x, y, z), (r, theta, z)
// or (r, theta, phi); stored in database files by number.
enum odb_DatumCsysTypeEnum { RECTANGULAR = 0, CYLINDRICAL = 1, SPHERICAL = 2 };

// Optional features of the analysis that contributed to a database; a reader only lists and
// compares them. UNKNOWN_ADD_ON stands for a feature this library does not know by name.
enum odb_ProductAddOnEnum {
  UNKNOWN_ADD_ON = 0,
  DESIGN_SENSITIVITY = 1,
  FLUID_LOADING = 2,
  PARALLEL_SOLVER = 3
};

}  // namespace odb_Enum

#endif
