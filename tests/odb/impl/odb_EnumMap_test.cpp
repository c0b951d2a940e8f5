#include "odb_EnumMap.h"

#include <gtest/gtest.h>

TEST(EnumMap, DataTypeLabelsAreTheEnumeratorNames) {
  EXPECT_STREQ(odb_DataTypeLabel(odb_Enum::BOOLEAN), "BOOLEAN");
  EXPECT_STREQ(odb_DataTypeLabel(odb_Enum::SCALAR), "SCALAR");
  EXPECT_STREQ(odb_DataTypeLabel(odb_Enum::TENSOR_3D_SURFACE), "TENSOR_3D_SURFACE");
  EXPECT_STREQ(odb_DataTypeLabel(odb_Enum::TENSOR_2D_PLANAR), "TENSOR_2D_PLANAR");
  EXPECT_STREQ(odb_DataTypeLabel(odb_Enum::QUATERNION_2D), "QUATERNION_2D");
}

TEST(EnumMap, ValuesOutsideTheEnumerationsHaveUnknownLabels) {
  EXPECT_STREQ(odb_DataTypeLabel(12), "Unknown Type");
  EXPECT_STREQ(odb_DataTypeLabel(-1), "Unknown Type");
  EXPECT_STREQ(odb_ResultPositionLabel(11), "Unknown Position");
  EXPECT_STREQ(odb_ResultPositionLabel(-3), "Unknown Position");
}

TEST(EnumMap, PositionLabelsFollowTheStoredValues) {
  EXPECT_STREQ(odb_ResultPositionLabel(0), "UNDEFINED_POSITION");
  EXPECT_STREQ(odb_ResultPositionLabel(2), "ELEMENT_NODAL");
  EXPECT_STREQ(odb_ResultPositionLabel(8), "WHOLE_PART_INSTANCE");
  EXPECT_STREQ(odb_ResultPositionLabel(10), "GENERAL_PARTICLE");
}
