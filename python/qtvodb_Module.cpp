// The module qtvodb: output databases of finite-element analyses, with numpy arrays.
#include "odb_Version.h"
#include "qtvodb_Core.h"

namespace qtvodb {

// Enumerations keep the library's names, and their values are also module attributes
// (qtvodb.NODAL, qtvodb.MISES); those names are unique across all of them.
void BindEnums(py::module_& m) {
  using namespace odb_Enum;
  py::enum_<odb_ResultPositionEnum>(m, "Position", "Where in the mesh a value belongs.")
      .value("UNDEFINED_POSITION", UNDEFINED_POSITION)
      .value("NODAL", NODAL)
      .value("ELEMENT_NODAL", ELEMENT_NODAL)
      .value("INTEGRATION_POINT", INTEGRATION_POINT)
      .value("CENTROID", CENTROID)
      .value("ELEMENT_FACE", ELEMENT_FACE)
      .value("WHOLE_ELEMENT", WHOLE_ELEMENT)
      .value("WHOLE_REGION", WHOLE_REGION)
      .value("WHOLE_PART_INSTANCE", WHOLE_PART_INSTANCE)
      .value("WHOLE_MODEL", WHOLE_MODEL)
      .value("GENERAL_PARTICLE", GENERAL_PARTICLE)
      .export_values();
  py::enum_<odb_DataTypeEnum>(m, "DataType", "The shape of one value.")
      .value("BOOLEAN", BOOLEAN)
      .value("INTEGER", INTEGER)
      .value("SCALAR", SCALAR)
      .value("VECTOR", VECTOR)
      .value("MATRIX", MATRIX)
      .value("TENSOR_3D_FULL", TENSOR_3D_FULL)
      .value("TENSOR_3D_PLANAR", TENSOR_3D_PLANAR)
      .value("TENSOR_3D_SURFACE", TENSOR_3D_SURFACE)
      .value("TENSOR_2D_PLANAR", TENSOR_2D_PLANAR)
      .value("TENSOR_2D_SURFACE", TENSOR_2D_SURFACE)
      .value("QUATERNION_3D", QUATERNION_3D)
      .value("QUATERNION_2D", QUATERNION_2D)
      .export_values();
  py::enum_<odb_DimensionEnum>(m, "Dimension", "The space a part is modelled in.")
      .value("THREE_D", THREE_D)
      .value("TWO_D_PLANAR", TWO_D_PLANAR)
      .value("AXISYMMETRIC", AXISYMMETRIC)
      .value("UNKNOWN_DIMENSION", UNKNOWN_DIMENSION)
      .export_values();
  py::enum_<odb_PartTypeEnum>(m, "PartType", "What kind of body a part is.")
      .value("DEFORMABLE_BODY", DEFORMABLE_BODY)
      .value("ANALYTIC_RIGID_SURFACE", ANALYTIC_RIGID_SURFACE)
      .value("DISCRETE_RIGID_SURFACE", DISCRETE_RIGID_SURFACE)
      .value("EULERIAN", EULERIAN)
      .export_values();
  py::enum_<odb_DomainEnum>(m, "Domain", "What the frame values of a step measure.")
      .value("TIME", TIME)
      .value("FREQUENCY", FREQUENCY)
      .value("ARC_LENGTH", ARC_LENGTH)
      .value("MODAL", MODAL)
      .export_values();
  py::enum_<odb_MatchEnum>(m, "Match", "How a frame is chosen for a value.")
      .value("CLOSEST", CLOSEST)
      .value("BEFORE", BEFORE)
      .value("AFTER", AFTER)
      .value("EXACT", EXACT)
      .export_values();
  py::enum_<odb_InvariantEnum>(m, "Invariant", "Scalar invariants of vectors and tensors.")
      .value("MAGNITUDE", MAGNITUDE)
      .value("MISES", MISES)
      .value("TRESCA", TRESCA)
      .value("PRESS", PRESS)
      .value("INV3", INV3)
      .value("MAX_PRINCIPAL", MAX_PRINCIPAL)
      .value("MID_PRINCIPAL", MID_PRINCIPAL)
      .value("MIN_PRINCIPAL", MIN_PRINCIPAL)
      .value("MAX_INPLANE_PRINCIPAL", MAX_INPLANE_PRINCIPAL)
      .value("MIN_INPLANE_PRINCIPAL", MIN_INPLANE_PRINCIPAL)
      .value("OUTOFPLANE_PRINCIPAL", OUTOFPLANE_PRINCIPAL)
      .export_values();
  py::enum_<odb_Set::Type>(m, "SetType", "What a set holds.")
      .value("NODE_SET", odb_Set::NODE_SET)
      .value("ELEMENT_SET", odb_Set::ELEMENT_SET)
      .value("SURFACE_SET", odb_Set::SURFACE_SET)
      .export_values();
}

}  // namespace qtvodb

PYBIND11_MODULE(qtvodb, m) {
  m.doc() =
      "Output databases of finite-element analyses: the model, field output and history output, "
      "read into and written from numpy arrays.";
  m.attr("__version__") = QTVODB_VERSION_STRING;
  // Up for the life of the process; the library finalizes itself when the process exits.
  odb_initializeAPI();
  qtvodb::BindErrors(m);
  qtvodb::BindEnums(m);
  qtvodb::BindNamedMap(m);
  qtvodb::BindModel(m);
  qtvodb::BindFields(m);
  qtvodb::BindHistory(m);
  qtvodb::BindSteps(m);
  qtvodb::BindDatabase(m);
}
