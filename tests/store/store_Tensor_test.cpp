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
  int count, at33, at12;
};
const KindCase kKinds[] = {{odb_Enum::TENSOR_3D_FULL, 6, 2, 3},
                           {odb_Enum::TENSOR_3D_PLANAR, 4, 2, 3},
                           {odb_Enum::TENSOR_3D_SURFACE, 3, -1, 2},
                           {odb_Enum::TENSOR_2D_PLANAR, 3, -1, 2},
                           {odb_Enum::TENSOR_2D_SURFACE, 3, -1, 2}};

// Components of a kind from its normal values and its 12 shear.
std::vector<float> Components(const KindCase& kind, float t11, float t22, float t33, float t12) {
  std::vector<float> c(kind.count, 0.0f);
  c[0] = t11, c[1] = t22, c[kind.at12] = t12;
  if (kind.at33 >= 0) c[kind.at33] = t33;
  return c;
}

// Every invariant from MISES to OUTOFPLANE_PRINCIPAL, in the order of the enumeration.
void ExpectInvariants(odb_DataTypeEnum type, const float* c, int count, const double (&want)[10]) {
  for (int i = 0; i < 10; ++i)
    EXPECT_NEAR(
        store_Invariant(static_cast<odb_InvariantEnum>(odb_Enum::MISES + i), type, c, count),
        want[i], 1e-5 * (1 + std::fabs(want[i])))
        << "type " << type << " invariant " << odb_Enum::MISES + i;
}

TEST(StoreTensor, ComponentOrderOfEachKind) {
  const std::vector<std::string> orders[] = {
      {"11", "22", "12"}, {"11", "22", "33", "12"}, {"11", "22", "33", "12", "13", "23"}};
  for (const KindCase& kind : kKinds) {
    ASSERT_EQ(store_TensorComponentCount(kind.type), kind.count);
    const char* const* suffixes = store_TensorComponentSuffixes(kind.type);
    EXPECT_EQ(std::vector<std::string>(suffixes, suffixes + kind.count),
              orders[kind.count / 2 - 1]);
  }
  for (odb_DataTypeEnum other : {odb_Enum::SCALAR, odb_Enum::VECTOR, odb_Enum::QUATERNION_3D}) {
    EXPECT_EQ(store_TensorComponentCount(other), 0);
    EXPECT_EQ(store_TensorComponentSuffixes(other), nullptr);
  }
}

// Hand-computed states; those with a 33 component apply only to the kinds that have one.
// Columns: mises, tresca, press, inv3, max, mid, min, in-plane max and min, out-of-plane.
TEST(StoreTensor, HandComputedStatesOfEveryKind) {
  const double r3 = std::sqrt(3.0);
  const struct {
    float t11, t22, t33, t12;
    double want[10];
  } states[] = {
      // uniaxial tension and compression: the third invariant keeps the sign
      {100, 0, 0, 0, {100, 100, -100.0 / 3, 100, 100, 0, 0, 100, 0, 0}},
      {0, -100, 0, 0, {100, 100, 100.0 / 3, -100, 0, 0, -100, 0, -100, 0}},
      {0, 0, 0, 50, {50 * r3, 100, 0, 0, 50, 0, -50, 50, -50, 0}},  // pure shear
      {30, 30, 0, 0, {30, 30, -20, -30, 30, 30, 0, 30, 30, 0}},     // equal biaxial tension
      // diag(300, 100, t33) turned by 30 degrees about the 3-axis
      {250,
       150,
       0,
       float(50 * r3),
       {std::sqrt(70000.0), 300, -400.0 / 3, 215.443469003, 300, 100, 0, 300, 100, 0}},
      {-20, -20, -20, 0, {0, 0, 20, 0, -20, -20, -20, -20, -20, -20}},  // hydrostatic
      {250,
       150,
       -50,
       float(50 * r3),
       {std::sqrt(92500.0), 350, -350.0 / 3, 190.147623038, 300, 100, -50, 300, 100, -50}},
  };
  for (const auto& s : states)
    for (const KindCase& kind : kKinds)
      if (s.t33 == 0 || kind.at33 >= 0)
        ExpectInvariants(kind.type, Components(kind, s.t11, s.t22, s.t33, s.t12).data(), kind.count,
                         s.want);

  // The same principal values turned about the axis (1, 2, 2)/3 by 40 degrees (Rodrigues)
  // fill every shear; the in-plane and out-of-plane values then read 11, 22, 12 and 33.
  double t = 40 * M_PI / 180, n[3] = {1 / 3.0, 2 / 3.0, 2 / 3.0}, r[3][3];
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      r[i][j] = (i == j ? std::cos(t) : 0.0) + (1 - std::cos(t)) * n[i] * n[j] +
                (i == j ? 0.0 : ((j - i + 3) % 3 == 1 ? -1 : 1) * std::sin(t) * n[3 - i - j]);
  auto at = [&r](int i, int j) {
    return static_cast<float>(300 * r[i][0] * r[j][0] + 100 * r[i][1] * r[j][1] -
                              50 * r[i][2] * r[j][2]);
  };
  const float c[6] = {at(0, 0), at(1, 1), at(2, 2), at(0, 1), at(0, 2), at(1, 2)};
  ASSERT_GT(std::fabs(c[4]) + std::fabs(c[5]), 20.0f);
  double centre = (c[0] + c[1]) / 2.0, radius = std::hypot((c[0] - c[1]) / 2.0, c[3]);
  ExpectInvariants(odb_Enum::TENSOR_3D_FULL, c, 6,
                   {std::sqrt(92500.0), 350, -350.0 / 3, 190.147623038, 300, 100, -50,
                    centre + radius, centre - radius, c[2]});
}

TEST(StoreTensor, InvalidTypeAndInvariantPairsGiveZero) {
  const float v[6] = {3, 4, 12, 5, 6, 7};
  EXPECT_FLOAT_EQ(store_Invariant(odb_Enum::MAGNITUDE, odb_Enum::VECTOR, v, 3), 13.0f);
  for (int i = odb_Enum::MISES; i <= odb_Enum::OUTOFPLANE_PRINCIPAL; ++i) {
    auto invariant = static_cast<odb_InvariantEnum>(i);
    for (odb_DataTypeEnum other : {odb_Enum::SCALAR, odb_Enum::VECTOR, odb_Enum::MATRIX,
                                   odb_Enum::QUATERNION_3D, odb_Enum::QUATERNION_2D}) {
      EXPECT_FALSE(store_InvariantValid(invariant, other));
      EXPECT_EQ(store_Invariant(invariant, other, v, 3), 0.0f) << i << " of " << other;
    }
    for (const KindCase& kind : kKinds) EXPECT_TRUE(store_InvariantValid(invariant, kind.type));
  }
  for (const KindCase& kind : kKinds)
    EXPECT_EQ(store_Invariant(odb_Enum::MAGNITUDE, kind.type, v, kind.count), 0.0f);
  // A short tensor value reads its missing components as zero.
  EXPECT_FLOAT_EQ(store_Invariant(odb_Enum::MISES, odb_Enum::TENSOR_3D_FULL, v, 1), 3.0f);
}

// The block works in float, so it may differ from one value at a time in the last place.
TEST(StoreTensor, MisesBlockAgreesWithOneValueAtATime) {
  std::vector<float> data(6 * 7);
  for (std::size_t i = 0; i < data.size(); ++i) data[i] = std::sin(1.7 * i) * 100.0f;
  for (const KindCase& kind : kKinds) {
    long n = static_cast<long>(data.size()) / kind.count;
    std::vector<float> out(n, -1.0f);
    store_MisesBlock(kind.type, data.data(), n, out.data());
    for (long i = 0; i < n; ++i) {
      float want = store_Invariant(odb_Enum::MISES, kind.type, &data[i * kind.count], kind.count);
      EXPECT_NEAR(out[i], want, 1e-6f * want) << kind.type << " row " << i;
    }
  }
  std::vector<float> out(3, -1.0f);
  store_MisesBlock(odb_Enum::VECTOR, data.data(), 3, out.data());
  EXPECT_EQ(out, std::vector<float>(3, 0.0f));
}

TEST(StoreTensor, OrientationsGiveTheLocalAxesAndRotateIntoThem) {
  // 30 degrees in the plane, stored as (cos 15, sin 15).
  const float plane[2] = {float(std::cos(M_PI / 12)), float(std::sin(M_PI / 12))};
  auto rows = store_DirectionCosines(plane, 2);
  const double c = std::sqrt(0.75), s = 0.5;
  ASSERT_EQ(rows.size(), 2u);
  ASSERT_EQ(rows[1].size(), 2u);
  const double want2[2][2] = {{c, s}, {-s, c}};
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 2; ++j) EXPECT_NEAR(rows[i][j], want2[i][j], 1e-7);
  double axes[9];
  ASSERT_TRUE(store_RotationAxes(plane, 2, axes));
  float w[2] = {1, 0};
  store_RotateVector(axes, w, w, 2);
  EXPECT_NEAR(w[0], c, 1e-6);
  EXPECT_NEAR(w[1], -s, 1e-6);
  // Into the principal axes of the rotated state above: diag(300, 100, -50) again.
  for (const KindCase& kind : kKinds) {
    std::vector<float> in = Components(kind, 250, 150, -50, float(50 * std::sqrt(3.0)));
    std::vector<float> out(kind.count), want = Components(kind, 300, 100, -50, 0);
    store_RotateTensor(kind.type, axes, in.data(), out.data());
    for (int k = 0; k < kind.count; ++k) EXPECT_NEAR(out[k], want[k], 1e-3) << kind.type << k;
  }

  // 120 degrees about (1, 1, 1) takes 1 to 2, 2 to 3 and 3 to 1; the quaternion is normalised.
  const float spatial[4] = {1, 1, 1, 1};
  rows = store_DirectionCosines(spatial, 4);
  const float expected[3][3] = {{0, 1, 0}, {0, 0, 1}, {1, 0, 0}};
  ASSERT_EQ(rows.size(), 3u);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) EXPECT_NEAR(rows[i][j], expected[i][j], 1e-7);
  ASSERT_TRUE(store_RotationAxes(spatial, 4, axes));
  float v[3] = {1, 2, 3};
  store_RotateVector(axes, v, v, 3);
  for (int i = 0; i < 3; ++i) EXPECT_NEAR(v[i], (i + 1) % 3 + 1, 1e-6);

  const float zero[4] = {0, 0, 0, 0};
  EXPECT_TRUE(store_DirectionCosines(spatial, 3).empty());
  EXPECT_TRUE(store_DirectionCosines(zero, 4).empty());
  EXPECT_FALSE(store_RotationAxes(zero, 2, axes));

  // A general rotation keeps every invariant that does not depend on the axes.
  const float q[4] = {0.9f, 0.1f, -0.3f, 0.2f}, general[6] = {120, -40, 75, 33, -18, 9};
  float turned[6];
  ASSERT_TRUE(store_RotationAxes(q, 4, axes));
  store_RotateTensor(odb_Enum::TENSOR_3D_FULL, axes, general, turned);
  for (int i = odb_Enum::MISES; i <= odb_Enum::MIN_PRINCIPAL; ++i) {
    auto invariant = static_cast<odb_InvariantEnum>(i);
    EXPECT_NEAR(store_Invariant(invariant, odb_Enum::TENSOR_3D_FULL, turned, 6),
                store_Invariant(invariant, odb_Enum::TENSOR_3D_FULL, general, 6), 1e-3)
        << i;
  }
}

}  // namespace
