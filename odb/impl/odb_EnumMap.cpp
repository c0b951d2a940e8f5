#include "odb_EnumMap.h"

namespace {

// Indexed by value; the enumerations count from 0 without gaps.
const char* const kDataTypeLabels[] = {
    "BOOLEAN",          "INTEGER",           "SCALAR",           "VECTOR",
    "MATRIX",           "TENSOR_3D_FULL",    "TENSOR_3D_PLANAR", "TENSOR_3D_SURFACE",
    "TENSOR_2D_PLANAR", "TENSOR_2D_SURFACE", "QUATERNION_3D",    "QUATERNION_2D"};

const char* const kPositionLabels[] = {
    "UNDEFINED_POSITION", "NODAL",         "ELEMENT_NODAL", "INTEGRATION_POINT",   "CENTROID",
    "ELEMENT_FACE",       "WHOLE_ELEMENT", "WHOLE_REGION",  "WHOLE_PART_INSTANCE", "WHOLE_MODEL",
    "GENERAL_PARTICLE"};

static_assert(sizeof kDataTypeLabels / sizeof *kDataTypeLabels == odb_Enum::QUATERNION_2D + 1,
              "one label per data type");
static_assert(sizeof kPositionLabels / sizeof *kPositionLabels == odb_Enum::GENERAL_PARTICLE + 1,
              "one label per result position");

template <int N>
const char* LabelOf(const char* const (&labels)[N], int value, const char* unknown) {
  return value >= 0 && value < N ? labels[value] : unknown;
}

}  // namespace

const char* odb_DataTypeLabel(int type) {
  return LabelOf(kDataTypeLabels, type, "Unknown Type");
}

const char* odb_ResultPositionLabel(int position) {
  return LabelOf(kPositionLabels, position, "Unknown Position");
}
