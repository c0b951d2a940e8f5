#include "store_Tensor.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

using odb_Enum::odb_DataTypeEnum;
using odb_Enum::odb_InvariantEnum;

// A tensor kind with the positions of its 33 and 12 components (-1 where it has none).
struct KindCase {
  odb_DataTypeEnum type;
  int count;
  int at33;
  int at12;
};
const KindCase kKinds[] = {{odb_Enum::TENSOR_3D_FULL, 6, 2, 3},
                           {odb_Enum::TENSOR_3D_PLANAR, 4, 2, 3},
                           {odb_Enum::TENSOR_3D_SURFACE, 3, -1, 2},
                           {odb_Enum::TENSOR_2D_PLANAR, 3, -1, 2},
                           {odb_Enum::TENSOR_2D_SURFACE, 3, -1, 2}};

struct Expected {
  odb_InvariantEnum invariant;
  double value;
};

void ExpectInvariants(const KindCase& kind, const std::vector<float>& c,
                      const std::vector<Expected>& expected) {
  for (const Expected& e : expected)
    EXPECT_NEAR(store_Invariant(e.invariant, kind.type, c.data(), kind.count), e.value,
                1e-5 * (1.0 + std::fabs(e.value)))
        << "invariant " << e.invariant;
}

// Components of a kind from the normal values and the 12 shear.
std::vector<float> Components(const KindCase& kind, float t11, float t22, float t33, float t12) {
  std::vector<float> c(kind.count, 0.0f);
  c[0] = t11;
  c[1] = t22;
  if (kind.at33 >= 0) c[kind.at33] = t33;
  c[kind.at12] = t12;
  return c;
}

TEST(StoreTensor, ComponentOrderOfEachKind) {
  const std::vector<std::string> full = {"11", "22", "33", "12", "13", "23"};
  const std::vector<std::string> planar = {"11", "22", "33", "12"};
  const std::vector<std::string> surface = {"11", "22", "12"};
  for (const KindCase& kind : kKinds) {
    ASSERT_EQ(store_TensorComponentCount(kind.type), kind.count);
    const char* const* suffixes = store_TensorComponentSuffixes(kind.type);
    std::vector<std::string> got(suffixes, suffixes + kind.count);
    EXPECT_EQ(got, kind.count == 6 ? full : kind.count == 4 ? planar : surface);
  }
  for (odb_DataTypeEnum other : {odb_Enum::SCALAR, odb_Enum::VECTOR, odb_Enum::MATRIX,
                                 odb_Enum::QUATERNION_3D, odb_Enum::BOOLEAN}) {
    EXPECT_EQ(store_TensorComponentCount(other), 0);
    EXPECT_EQ(store_TensorComponentSuffixes(other), nullptr);
  }
}

TEST(StoreTensor, UniaxialShearAndHydrostaticStatesOfEveryKind) {
  for (const KindCase& kind : kKinds) {
    SCOPED_TRACE(kind.type);
    ExpectInvariants(kind, Components(kind, 100, 0, 0, 0),
                     {{odb_Enum::MISES, 100},
                      {odb_Enum::TRESCA, 100},
                      {odb_Enum::PRESS, -100.0 / 3},
                      {odb_Enum::INV3, 100},
                      {odb_Enum::MAX_PRINCIPAL, 100},
                      {odb_Enum::MID_PRINCIPAL, 0},
                      {odb_Enum::MIN_PRINCIPAL, 0},
                      {odb_Enum::MAX_INPLANE_PRINCIPAL, 100},
                      {odb_Enum::MIN_INPLANE_PRINCIPAL, 0},
                      {odb_Enum::OUTOFPLANE_PRINCIPAL, 0}});
    // Compression keeps the sign of the third invariant.
    ExpectInvariants(kind, Components(kind, 0, -100, 0, 0),
                     {{odb_Enum::INV3, -100}, {odb_Enum::MIN_PRINCIPAL, -100}});
    ExpectInvariants(kind, Components(kind, 0, 0, 0, 50),
                     {{odb_Enum::MISES, 50 * std::sqrt(3.0)},
                      {odb_Enum::TRESCA, 100},
                      {odb_Enum::PRESS, 0},
                      {odb_Enum::INV3, 0},
                      {odb_Enum::MAX_PRINCIPAL, 50},
                      {odb_Enum::MID_PRINCIPAL, 0},
                      {odb_Enum::MIN_PRINCIPAL, -50},
                      {odb_Enum::MAX_INPLANE_PRINCIPAL, 50},
                      {odb_Enum::MIN_INPLANE_PRINCIPAL, -50}});
    if (kind.at33 >= 0) {
      ExpectInvariants(kind, Components(kind, -20, -20, -20, 0),
                       {{odb_Enum::MISES, 0},
                        {odb_Enum::TRESCA, 0},
                        {odb_Enum::PRESS, 20},
                        {odb_Enum::INV3, 0},
                        {odb_Enum::MAX_PRINCIPAL, -20},
                        {odb_Enum::MIN_PRINCIPAL, -20},
                        {odb_Enum::MIN_INPLANE_PRINCIPAL, -20},
                        {odb_Enum::OUTOFPLANE_PRINCIPAL, -20}});
    } else {
      // Without a 33 component the nearest to hydrostatic is equal biaxial tension.
      ExpectInvariants(kind, Components(kind, 30, 30, 0, 0),
                       {{odb_Enum::MISES, 30},
                        {odb_Enum::TRESCA, 30},
                        {odb_Enum::PRESS, -20},
                        {odb_Enum::INV3, -30},
                        {odb_Enum::MID_PRINCIPAL, 30},
                        {odb_Enum::MIN_PRINCIPAL, 0},
                        {odb_Enum::OUTOFPLANE_PRINCIPAL, 0}});
    }
  }
}

// diag(300, 100, -50) turned by 30 degrees about the 3-axis: 11 = 250, 22 = 150, 12 = 50 sqrt 3.
TEST(StoreTensor, RotatedTensorGivesItsPrincipalValues) {
  const float shear = static_cast<float>(50 * std::sqrt(3.0));
  for (const KindCase& kind : kKinds) {
    SCOPED_TRACE(kind.type);
    bool has33 = kind.at33 >= 0;
    ExpectInvariants(kind, Components(kind, 250, 150, -50, shear),
                     {{odb_Enum::MAX_PRINCIPAL, 300},
                      {odb_Enum::MID_PRINCIPAL, 100},
                      {odb_Enum::MIN_PRINCIPAL, has33 ? -50.0 : 0.0},
                      {odb_Enum::TRESCA, has33 ? 350.0 : 300.0},
                      {odb_Enum::MISES, has33 ? std::sqrt(92500.0) : std::sqrt(70000.0)},
                      {odb_Enum::PRESS, has33 ? -350.0 / 3 : -400.0 / 3},
                      {odb_Enum::INV3, has33 ? 190.147623038 : 215.443469003},
                      {odb_Enum::MAX_INPLANE_PRINCIPAL, 300},
                      {odb_Enum::MIN_INPLANE_PRINCIPAL, 100},
                      {odb_Enum::OUTOFPLANE_PRINCIPAL, has33 ? -50.0 : 0.0}});
  }
  // The same principal values turned about the axis (1, 2, 2)/3 by 40 degrees fill every shear.
  double t = 40 * M_PI / 180, n[3] = {1 / 3.0, 2 / 3.0, 2 / 3.0}, r[3][3];
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) {
      double cross = i == j ? 0.0 : ((j - i + 3) % 3 == 1 ? -1.0 : 1.0) * n[3 - i - j];
      r[i][j] =
          (i == j ? std::cos(t) : 0.0) + (1 - std::cos(t)) * n[i] * n[j] + std::sin(t) * cross;
    }
  const double principal[3] = {300, 100, -50};
  auto at = [&](int i, int j) {
    double sum = 0;
    for (int k = 0; k < 3; ++k) sum += r[i][k] * principal[k] * r[j][k];
    return static_cast<float>(sum);
  };
  std::vector<float> c = {at(0, 0), at(1, 1), at(2, 2), at(0, 1), at(0, 2), at(1, 2)};
  ASSERT_GT(std::fabs(c[4]), 10.0f);
  ASSERT_GT(std::fabs(c[5]), 10.0f);
  ExpectInvariants(kKinds[0], c,
                   {{odb_Enum::MAX_PRINCIPAL, 300},
                    {odb_Enum::MID_PRINCIPAL, 100},
                    {odb_Enum::MIN_PRINCIPAL, -50},
                    {odb_Enum::MISES, std::sqrt(92500.0)},
                    {odb_Enum::INV3, 190.147623038},
                    {odb_Enum::OUTOFPLANE_PRINCIPAL, c[2]}});
}

TEST(StoreTensor, InvalidTypeAndInvariantPairsGiveZero) {
  const float v[6] = {3, 4, 12, 5, 6, 7};
  EXPECT_FLOAT_EQ(store_Invariant(odb_Enum::MAGNITUDE, odb_Enum::VECTOR, v, 3), 13.0f);
  EXPECT_TRUE(store_InvariantValid(odb_Enum::MAGNITUDE, odb_Enum::VECTOR));
  for (int i = odb_Enum::MISES; i <= odb_Enum::OUTOFPLANE_PRINCIPAL; ++i) {
    auto invariant = static_cast<odb_InvariantEnum>(i);
    EXPECT_FALSE(store_InvariantValid(invariant, odb_Enum::VECTOR));
    for (odb_DataTypeEnum other : {odb_Enum::SCALAR, odb_Enum::VECTOR, odb_Enum::MATRIX,
                                   odb_Enum::QUATERNION_3D, odb_Enum::QUATERNION_2D})
      EXPECT_EQ(store_Invariant(invariant, other, v, 3), 0.0f) << i << " of " << other;
    for (const KindCase& kind : kKinds) EXPECT_TRUE(store_InvariantValid(invariant, kind.type));
  }
  for (const KindCase& kind : kKinds) {
    EXPECT_FALSE(store_InvariantValid(odb_Enum::MAGNITUDE, kind.type));
    EXPECT_EQ(store_Invariant(odb_Enum::MAGNITUDE, kind.type, v, kind.count), 0.0f);
  }
  // A short tensor value reads its missing components as zero.
  EXPECT_FLOAT_EQ(store_Invariant(odb_Enum::MISES, odb_Enum::TENSOR_3D_FULL, v, 1), 3.0f);
}

TEST(StoreTensor, MisesBlockAgreesWithOneValueAtATime) {
  std::vector<float> data(6 * 7);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = std::sin(1.7 * i) * 100.0f;
  for (const KindCase& kind : kKinds) {
    long n = static_cast<long>(data.size()) / kind.count;
    std::vector<float> out(n, -1.0f);
    store_MisesBlock(kind.type, data.data(), n, out.data());
    for (long i = 0; i < n; ++i)
      EXPECT_NEAR(out[i],
                  store_Invariant(odb_Enum::MISES, kind.type, &data[i * kind.count], kind.count),
                  1e-4)
          << kind.type << " row " << i;
  }
  std::vector<float> out(3, -1.0f);
  store_MisesBlock(odb_Enum::VECTOR, data.data(), 3, out.data());
  EXPECT_EQ(out, std::vector<float>(3, 0.0f));
}

TEST(StoreTensor, DirectionCosinesAreTheLocalAxes) {
  // 90 degrees in the plane: the local 1-axis is the global 2-axis.
  const float half = static_cast<float>(std::sqrt(0.5));
  const float planar[2] = {half, half};
  auto rows = store_DirectionCosines(planar, 2);
  ASSERT_EQ(rows.size(), 2u);
  const float expected2[2][2] = {{0, 1}, {-1, 0}};
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(rows[i].size(), 2u);
    for (int j = 0; j < 2; ++j) EXPECT_NEAR(rows[i][j], expected2[i][j], 1e-7);
  }
  // 120 degrees about (1, 1, 1) takes 1 to 2, 2 to 3 and 3 to 1; scaling the quaternion by two
  // changes nothing.
  const float spatial[4] = {1, 1, 1, 1};
  rows = store_DirectionCosines(spatial, 4);
  ASSERT_EQ(rows.size(), 3u);
  const float expected3[3][3] = {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}};
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) EXPECT_NEAR(rows[i][j], expected3[i][j], 1e-7);
  const float zero[4] = {0, 0, 0, 0};
  EXPECT_TRUE(store_DirectionCosines(spatial, 3).empty());
  EXPECT_TRUE(store_DirectionCosines(spatial, 0).empty());
  EXPECT_TRUE(store_DirectionCosines(zero, 4).empty());
}

TEST(StoreTensor, RotationIntoLocalAxes) {
  double axes[9];
  const float spatial[4] = {0.5f, 0.5f, 0.5f, 0.5f};
  ASSERT_TRUE(store_RotationAxes(spatial, 4, axes));
  float v[3] = {1, 2, 3};
  store_RotateVector(axes, v, v, 3);
  EXPECT_NEAR(v[0], 2, 1e-6);
  EXPECT_NEAR(v[1], 3, 1e-6);
  EXPECT_NEAR(v[2], 1, 1e-6);
  float tensor[6] = {100, 0, 0, 0, 0, 0}, turned[6];
  store_RotateTensor(odb_Enum::TENSOR_3D_FULL, axes, tensor, turned);
  EXPECT_NEAR(turned[2], 100, 1e-4);
  for (int k : {0, 1, 3, 4, 5}) EXPECT_NEAR(turned[k], 0, 1e-4);

  // Turning by 30 degrees in the plane is the inverse of the rotated case above.
  const float plane[2] = {static_cast<float>(std::cos(M_PI / 12)),
                          static_cast<float>(std::sin(M_PI / 12))};
  ASSERT_TRUE(store_RotationAxes(plane, 2, axes));
  float w[2] = {1, 0};
  store_RotateVector(axes, w, w, 2);
  EXPECT_NEAR(w[0], std::sqrt(0.75), 1e-6);
  EXPECT_NEAR(w[1], -0.5, 1e-6);
  const float shear = static_cast<float>(-50 * std::sqrt(3.0));
  for (const KindCase& kind : kKinds) {
    std::vector<float> in = Components(kind, 300, 100, -50, 0), out(kind.count);
    store_RotateTensor(kind.type, axes, in.data(), out.data());
    std::vector<float> want = Components(kind, 250, 150, -50, shear);
    for (int k = 0; k < kind.count; ++k) EXPECT_NEAR(out[k], want[k], 1e-3) << kind.type << k;
  }

  // A general rotation keeps every invariant that does not depend on the axes.
  const float q[4] = {0.9f, 0.1f, -0.3f, 0.2f};
  ASSERT_TRUE(store_RotationAxes(q, 4, axes));
  const float general[6] = {120, -40, 75, 33, -18, 9};
  store_RotateTensor(odb_Enum::TENSOR_3D_FULL, axes, general, turned);
  for (int i = odb_Enum::MISES; i <= odb_Enum::MIN_PRINCIPAL; ++i) {
    auto invariant = static_cast<odb_InvariantEnum>(i);
    EXPECT_NEAR(store_Invariant(invariant, odb_Enum::TENSOR_3D_FULL, turned, 6),
                store_Invariant(invariant, odb_Enum::TENSOR_3D_FULL, general, 6), 1e-3)
        << i;
  }
}

}  // namespace
