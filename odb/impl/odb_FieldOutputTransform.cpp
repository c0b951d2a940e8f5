// odb_FieldOutput: fields given in another coordinate system, all orphans.
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "odb_CsysGeometry.h"
#include "odb_DatumCsysData.h"
#include "odb_EntityData.h"
#include "odb_FieldOutput.h"
#include "odb_FieldSubset.h"
#include "odb_Message.h"
#include "odb_ValuePlaces.h"
#include "store_Tensor.h"

namespace {

const char* const kSource = "odb/impl/odb_FieldOutput";
// How far from the model's normal the 3-axis of a system may lean for two-dimensional values.
const double kNormalTolerance = 1e-5;

[[noreturn]] void Fail(odb_FieldOutputEnm code, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code), kSource, site);
}

[[noreturn]] void FailCsys(odb_DatumCsysEnm code, int site,
                           std::initializer_list<odb_String> args = {}) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

// A field counts as given unless it is the default, empty one.
bool Given(const odb_FieldOutput& field) {
  return !field.IsOrphan() || !field.name().Empty();
}

// Whether `field` is a NODAL VECTOR field of a frame (not a subset or a computed field), with
// `width` components unless `width` is 0.
bool WholeNodalVector(const odb_FieldOutput& field, int width) {
  if (field.IsOrphan() || field.type() != odb_Enum::VECTOR) return false;
  odb_FieldData& data = *odb_FieldOutputAccess::Data(field);
  data.ReadBlocks();
  for (const auto& sub : data.subFields)
    if (sub->position != odb_Enum::NODAL || (width && sub->width != width)) return false;
  return true;
}

// Where the system stands in the deformed state: moved with the displacements of its nodes and,
// for a 6-DOF node, turned with its rotation.
void PlaceSystem(const odb_DatumCsysData& csys, odb_NodeMotion& deformation,
                 odb_NodeMotion& rotation, double origin[3], double axes[9]) {
  std::memcpy(origin, csys.origin, 3 * sizeof(double));
  std::memcpy(axes, csys.axes, 9 * sizeof(double));
  if (csys.definition == odb_DatumCsys::FIXED) return;
  if (!deformation.Covers(csys.instanceName)) Fail(odb_FieldOutput_NO_DEFORMATION, 54);
  double moved[9];
  std::memcpy(moved, csys.points, sizeof moved);
  for (int k = 0; k < csys.NodeCount(); ++k) {
    double u[3];
    deformation.At(csys.instanceName, csys.nodes[k], u);
    for (int c = 0; c < 3; ++c) moved[3 * k + c] += u[c];
  }
  bool placed = true;
  switch (csys.definition) {
    case odb_DatumCsys::SIX_DOF_NODE: {
      if (!rotation.Covers(csys.instanceName)) Fail(odb_FieldOutput_NO_DEFORMATION, 65);
      double theta[3];
      rotation.At(csys.instanceName, csys.nodes[0], theta);
      std::memcpy(origin, moved, 3 * sizeof(double));
      odb_RotateAxes(theta, axes);
      break;
    }
    case odb_DatumCsys::THREE_NODES:
      placed = odb_FrameFromThreePoints(moved, origin, axes);
      break;
    default:
      placed = odb_FrameFromCircle(moved, origin, axes);
  }
  if (!placed) FailCsys(odb_DatumCsys_COLINEAR, 78, {csys.name});
}

// Whether the values of `sub` lie in the model's plane: the kinds without out-of-plane shears,
// two-component vectors, and every value of a two-dimensional part. Such values can only turn
// about the plane's normal.
bool Planar(const odb_SubFieldData& sub) {
  switch (sub.type) {
    case odb_Enum::TENSOR_3D_PLANAR:
    case odb_Enum::TENSOR_2D_PLANAR:
    case odb_Enum::TENSOR_2D_SURFACE:
      return true;
    case odb_Enum::VECTOR:
      if (sub.width == 2) return true;
      break;
    default:
      break;
  }
  const odb_EntityData* instance = odb_DiscreteEntityAccess::Data(sub.instance).get();
  return instance && (instance->dimension == odb_Enum::TWO_D_PLANAR ||
                      instance->dimension == odb_Enum::AXISYMMETRIC);
}

double Dot(const double* a, const double* b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// The rotation that takes a value given in its own axes `own` (rows; the global axes when it
// has none) to the local axes `local`: local own^T. A surface tensor only turns about its
// surface's normal: it is given in the local 1-axis projected onto the surface (the 2-axis
// projected, turned a quarter, when the 1-axis is normal to it), and its 2-axis normal to that.
void ValueRotation(odb_Enum::odb_DataTypeEnum type, const double local[9], const double own[9],
                   double out[9]) {
  if (type != odb_Enum::TENSOR_3D_SURFACE) {
    for (int r = 0; r < 3; ++r)
      for (int c = 0; c < 3; ++c) out[3 * r + c] = Dot(local + 3 * r, own + 3 * c);
    return;
  }
  const double* normal = own + 6;
  double first[3], second[3];
  for (int k = 0; k < 3; ++k) {
    first[k] = local[k] - Dot(local, normal) * normal[k];
    second[k] = local[3 + k] - Dot(local + 3, normal) * normal[k];
  }
  double length = std::sqrt(Dot(first, first));
  if (!(length > odb_kCsysTolerance)) {
    // first = second x normal: a quarter turn back from the projected 2-axis.
    first[0] = second[1] * normal[2] - second[2] * normal[1];
    first[1] = second[2] * normal[0] - second[0] * normal[2];
    first[2] = second[0] * normal[1] - second[1] * normal[0];
    length = std::sqrt(Dot(first, first));
  }
  const double c = length > 0 ? Dot(first, own) / length : 1.0;
  const double s = length > 0 ? Dot(first, own + 3) / length : 0.0;
  const double turn[9] = {c, s, 0, -s, c, 0, 0, 0, 1};
  std::memcpy(out, turn, sizeof turn);
}

}  // namespace

odb_FieldOutput odb_FieldOutput::getTransformedField(const odb_SequenceSequenceFloat& axes) const {
  const odb_Enum::odb_DataTypeEnum type = m_data->type;
  if (type != odb_Enum::VECTOR && store_TensorComponentCount(type) == 0)
    odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_TRANSFORM_NOT_ALLOWED),
                     "odb/impl/odb_SubField", 142);
  if (axes.size() != 3) odb_ThrowMessage("A rectangular system needs 3 axes.", kSource, 143);
  auto system = std::make_shared<odb_DatumCsysData>();
  for (int r = 0; r < 3; ++r) {
    if (axes[r].size() != 3) odb_ThrowMessage("Each axis needs 3 components.", kSource, 146);
    for (int c = 0; c < 3; ++c) system->axes[r * 3 + c] = axes[r][c];
  }
  return getTransformedField(odb_DatumCsysAccess::Make(system));
}

odb_FieldOutput odb_FieldOutput::getTransformedField(const odb_DatumCsys& system,
                                                     const odb_FieldOutput& deformationField,
                                                     const odb_FieldOutput& rotationField) const {
  const odb_Enum::odb_DataTypeEnum type = m_data->type;
  const bool tensor = store_TensorComponentCount(type) > 0;
  if (type != odb_Enum::VECTOR && !tensor)
    odb_ThrowMessage(odb_CatalogueMessage(odb_SubField_TRANSFORM_NOT_ALLOWED),
                     "odb/impl/odb_SubField", 159);
  const odb_DatumCsysData& csys = *odb_DatumCsysAccess::Data(system);
  const bool deformed = Given(deformationField), rotated = Given(rotationField);
  if (csys.definition == odb_DatumCsys::SIX_DOF_NODE && !(deformed && rotated))
    Fail(odb_FieldOutput_SIX_DOF_CSYS, 163);
  if (csys.definition != odb_DatumCsys::FIXED && !deformed) Fail(odb_FieldOutput_DYNAMIC_CSYS, 164);
  if (deformed && !WholeNodalVector(deformationField, 0))
    Fail(odb_FieldOutput_DEFORMATION_KIND, 166);
  if (rotated && !WholeNodalVector(rotationField, 3)) FailCsys(odb_DatumCsys_ROTATION_KIND, 167);
  odb_NodeMotion deformation(deformed ? odb_FieldOutputAccess::Data(deformationField) : nullptr,
                             "deformation");
  odb_NodeMotion rotation(rotated ? odb_FieldOutputAccess::Data(rotationField) : nullptr,
                          "rotation");
  double origin[3], axes[9];
  PlaceSystem(csys, deformation, rotation, origin, axes);

  odb_FieldOutput out =
      odb_FilterField(*m_data, nullptr, [](odb_SubFieldData&, std::size_t) { return true; });
  std::vector<double> places;
  for (auto& sub : out.m_data->subFields) {
    if (type == odb_Enum::VECTOR && sub->width != 2 && sub->width != 3)
      FailCsys(odb_DatumCsys_VECTOR_WIDTH, 178, {odb_String(sub->width)});
    if (deformed && !deformation.Covers(sub->instanceName))
      Fail(odb_FieldOutput_NO_DEFORMATION, 180);
    std::vector<int> all(sub->Locations());
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = static_cast<int>(i);
    std::shared_ptr<odb_SubFieldData> moved = odb_PickLocations(*sub, all);
    const bool planar = Planar(*moved);
    const bool placed = csys.type != odb_Enum::RECTANGULAR;
    if (placed) odb_ValuePlaces(*moved, deformation, places);
    for (std::size_t i = 0; i < all.size(); ++i) {
      double local[9], own[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1}, matrix[9];
      if (placed)
        odb_LocalAxes(csys.type, origin, axes, &places[3 * i], local);
      else
        std::memcpy(local, axes, sizeof local);
      if (planar && !(std::fabs(local[8]) >= 1.0 - kNormalTolerance))
        Fail(odb_FieldOutput_CSYS_NORMAL, 194);
      if (moved->orientationWidth)
        store_RotationAxes(moved->orientation.data() + i * moved->orientationWidth,
                           moved->orientationWidth, own);
      ValueRotation(type, local, own, matrix);
      for (odb_Run<float>* part : {&moved->data, &moved->conjugate}) {
        if (part->empty()) continue;
        float* value = part->data() + i * moved->width;
        if (tensor)
          store_RotateTensor(type, matrix, value, value);
        else
          store_RotateVector(matrix, value, value, moved->width);
      }
    }
    moved->orientationWidth = 0;
    moved->orientation = odb_Run<float>();
    sub = moved;
  }
  return out;
}
