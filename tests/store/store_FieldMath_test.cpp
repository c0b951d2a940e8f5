#include "store_FieldMath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <limits>
#include <vector>

namespace {

// 37 values: more than one vector's worth, with a remainder, none of them 0.
std::vector<float> Values(float scale, float offset) {
  std::vector<float> v(37);
  for (std::size_t i = 0; i < v.size(); ++i) v[i] = offset + scale * float(i % 11) - 4.5f;
  return v;
}

const float kNaN = std::numeric_limits<float>::quiet_NaN();

}  // namespace

TEST(StoreFieldMathArrays, ComputeEachOperationPerValueAndRefuseZeroDivisors) {
  const std::vector<float> a = Values(1.5f, 0.25f), b = Values(-0.5f, 1.0f);
  std::vector<float> out(a.size());
  for (int code = 0; code < 4; ++code) {
    ASSERT_EQ(store_MathArrays(code, a.data(), b.data(), out.data(), a.size()),
              store_MathFault::NONE);
    for (std::size_t i = 0; i < a.size(); ++i) {
      const double x = a[i], y = b[i];
      const double want = code == 0 ? x * y : code == 1 ? x / y : code == 2 ? x - y : x + y;
      EXPECT_NEAR(out[i], want, 1e-5 * (1 + std::fabs(want))) << code << " " << i;
    }
  }
  std::vector<float> zero = b;
  zero[30] = 0.0f;
  EXPECT_EQ(store_MathArrays(1, a.data(), zero.data(), out.data(), a.size()),
            store_MathFault::ZERO_DIVISOR);
  EXPECT_EQ(store_MathArrays(4, a.data(), b.data(), out.data(), a.size()),
            store_MathFault::INVALID);
  // In place: the result may overwrite its first operand.
  std::vector<float> inPlace = a;
  store_MathArrays(3, inPlace.data(), b.data(), inPlace.data(), a.size());
  EXPECT_FLOAT_EQ(inPlace[36], a[36] + b[36]);
}

TEST(StoreFieldMathArrays, AFloatActsOnEitherSide) {
  const std::vector<float> a = Values(2.0f, 0.75f);
  std::vector<float> out(a.size());
  for (int code = 0; code < 4; ++code) {
    store_MathArrayFloat(code, a.data(), 4.0f, out.data(), a.size());
    const double x = a[5];
    EXPECT_FLOAT_EQ(out[5], float(code == 0 ? x * 4 : code == 1 ? x / 4 : code == 2 ? x - 4 : x + 4));
    store_MathFloatArray(code, 4.0f, a.data(), out.data(), a.size());
    EXPECT_FLOAT_EQ(out[5], float(code == 0 ? 4 * x : code == 1 ? 4 / x : code == 2 ? 4 - x : 4 + x));
  }
  EXPECT_EQ(store_MathArrayFloat(1, a.data(), 0.0f, out.data(), a.size()),
            store_MathFault::ZERO_DIVISOR);
  std::vector<float> withZero = a;
  withZero[36] = 0.0f;
  EXPECT_EQ(store_MathFloatArray(1, 1.0f, withZero.data(), out.data(), a.size()),
            store_MathFault::ZERO_DIVISOR);
  EXPECT_EQ(store_MathFloatArray(4, 2.0f, a.data(), out.data(), a.size()),
            store_MathFault::INVALID);
}

TEST(StoreFieldMathPower, RaisesEveryValueAndNamesEachDomainFault) {
  std::vector<float> a = {-2.0f, 0.5f, 3.0f, 0.0f}, out(4);
  ASSERT_EQ(store_MathArrayFloat(4, a.data(), 3.0f, out.data(), 4), store_MathFault::NONE);
  EXPECT_FLOAT_EQ(out[0], -8.0f);
  EXPECT_FLOAT_EQ(out[1], 0.125f);
  EXPECT_FLOAT_EQ(out[2], 27.0f);
  EXPECT_FLOAT_EQ(out[3], 0.0f);
  EXPECT_EQ(store_MathArrayFloat(4, a.data(), 0.5f, out.data(), 4),
            store_MathFault::NEGATIVE_BASE);
  EXPECT_EQ(store_MathArrayFloat(4, a.data() + 1, -1.0f, out.data(), 3),
            store_MathFault::ZERO_TO_NEGATIVE);
  const float big[] = {1e30f}, tiny[] = {1e-30f};
  EXPECT_EQ(store_MathArrayFloat(4, big, 2.0f, out.data(), 1), store_MathFault::POWER_RANGE);
  EXPECT_EQ(store_MathArrayFloat(4, tiny, 3.0f, out.data(), 1), store_MathFault::POWER_RANGE);
}

TEST(StoreFieldMathComplex, MultiplyAndDivideAsComplexNumbers) {
  const std::vector<float> are = Values(1.0f, 0.3f), aim = Values(-0.7f, 0.1f),
                           bre = Values(0.4f, 0.2f), bim = Values(0.9f, -0.3f);
  const std::size_t n = are.size();
  std::vector<float> re(n), im(n);
  for (int code = 0; code < 4; ++code) {
    ASSERT_EQ(store_MathComplexArrays(code, are.data(), aim.data(), bre.data(), bim.data(),
                                      re.data(), im.data(), n),
              store_MathFault::NONE);
    for (std::size_t i = 0; i < n; ++i) {
      const std::complex<double> x(are[i], aim[i]), y(bre[i], bim[i]);
      const std::complex<double> want = code == 0 ? x * y : code == 1 ? x / y : code == 2 ? x - y : x + y;
      EXPECT_NEAR(re[i], want.real(), 1e-4 * (1 + std::abs(want))) << code << " " << i;
      EXPECT_NEAR(im[i], want.imag(), 1e-4 * (1 + std::abs(want))) << code << " " << i;
    }
  }
  // A missing imaginary part is 0: (x + iy) * c.
  store_MathComplexArrays(0, are.data(), aim.data(), bre.data(), nullptr, re.data(), im.data(), n);
  EXPECT_FLOAT_EQ(im[3], aim[3] * bre[3]);
  const float zero[] = {0.0f};
  EXPECT_EQ(store_MathComplexArrays(1, are.data(), aim.data(), zero, zero, re.data(), im.data(), 1),
            store_MathFault::ZERO_DIVISOR);
  // s / (x + iy).
  store_MathFloatByComplex(2.0f, are.data(), aim.data(), re.data(), im.data(), n);
  const std::complex<double> want = 2.0 / std::complex<double>(are[7], aim[7]);
  EXPECT_NEAR(re[7], want.real(), 1e-5);
  EXPECT_NEAR(im[7], want.imag(), 1e-5);
  EXPECT_EQ(store_MathFloatByComplex(2.0f, zero, nullptr, re.data(), im.data(), 1),
            store_MathFault::ZERO_DIVISOR);
}

TEST(StoreFieldMathFunctions, MatchTheStandardFunctionsInDouble) {
  // Values inside every domain: (0, 1).
  std::vector<float> a(37);
  for (std::size_t i = 0; i < a.size(); ++i) a[i] = 0.02f + 0.025f * float(i);
  std::vector<float> out(a.size());
  const double pi = 3.14159265358979323846;
  for (int code : {2, 5, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22}) {
    ASSERT_EQ(store_MathFunction(code, a.data(), out.data(), a.size()), store_MathFault::NONE)
        << code;
    for (std::size_t i = 0; i < a.size(); ++i) {
      const double x = a[i];
      double want = 0;
      switch (code) {
        case 2: want = -x; break;
        case 5: want = std::fabs(x); break;
        case 10: want = std::acos(x); break;
        case 11: want = std::asin(x); break;
        case 12: want = std::atan(x); break;
        case 13: want = std::cos(x); break;
        case 14: want = std::sin(x); break;
        case 15: want = std::tan(x); break;
        case 16: want = x * pi / 180; break;
        case 17: want = x * 180 / pi; break;
        case 18: want = std::exp(x); break;
        case 19: want = std::pow(10.0, x); break;
        case 20: want = std::log(x); break;
        case 21: want = std::log10(x); break;
        case 22: want = std::sqrt(x); break;
      }
      EXPECT_NEAR(out[i], want, 2e-6 * (1 + std::fabs(want))) << code << " " << i;
    }
  }
  EXPECT_EQ(store_MathFunction(23, a.data(), out.data(), a.size()), store_MathFault::INVALID);
}

TEST(StoreFieldMathFunctions, ReportTheirDomainFaults) {
  const float negative[] = {1.0f, -0.5f}, zero[] = {2.0f, 0.0f}, wide[] = {0.5f, 1.5f};
  float out[2];
  EXPECT_EQ(store_MathFunction(20, zero, out, 2), store_MathFault::NOT_POSITIVE);
  EXPECT_EQ(store_MathFunction(21, negative, out, 2), store_MathFault::NOT_POSITIVE);
  EXPECT_EQ(store_MathFunction(22, negative, out, 2), store_MathFault::NEGATIVE);
  EXPECT_EQ(store_MathFunction(22, zero, out, 2), store_MathFault::NONE);
  EXPECT_EQ(store_MathFunction(10, wide, out, 2), store_MathFault::OUT_OF_RANGE);
  EXPECT_EQ(store_MathFunction(11, negative + 1, out, 1), store_MathFault::NONE);
  EXPECT_EQ(store_MathFunction(11, wide + 1, out, 1), store_MathFault::OUT_OF_RANGE);
}

TEST(StoreFieldMathFunctions, ComplexFunctionsCombineBothParts) {
  const float re[] = {3.0f, -1.0f, 0.0f}, im[] = {4.0f, 1.0f, -2.0f};
  float out[3];
  store_MathComplexFunction(6, re, im, out, 3);
  EXPECT_FLOAT_EQ(out[0], 5.0f);
  EXPECT_FLOAT_EQ(out[1], float(std::sqrt(2.0)));
  store_MathComplexFunction(7, re, im, out, 3);
  EXPECT_FLOAT_EQ(out[1], float(std::arg(std::complex<double>(-1, 1))));
  EXPECT_FLOAT_EQ(out[2], float(-std::acos(0.0)));
  store_MathComplexFunction(8, re, im, out, 3);
  EXPECT_EQ(out[1], -1.0f);
  store_MathComplexFunction(9, re, im, out, 3);
  EXPECT_EQ(out[2], -2.0f);
  // A real value: magnitude |x|, phase 0 or pi, imaginary part 0.
  store_MathComplexFunction(6, re, nullptr, out, 3);
  EXPECT_EQ(out[1], 1.0f);
  store_MathComplexFunction(7, re, nullptr, out, 3);
  EXPECT_FLOAT_EQ(out[1], float(std::acos(-1.0)));
  store_MathComplexFunction(9, re, nullptr, out, 3);
  EXPECT_EQ(out[0], 0.0f);
  EXPECT_EQ(store_MathComplexFunction(5, re, im, out, 3), store_MathFault::INVALID);
}

TEST(StoreFieldMathChain, RunsEveryLinkInOrderAndReportsTheFirstFault) {
  // 5000 values: more than two chunks. ((x * 2) - 3) then |.| then sqrt, then 10 / that.
  std::vector<float> a(5000), out(5000);
  for (std::size_t i = 0; i < a.size(); ++i) a[i] = float(i % 97) * 0.25f + 2.0f;
  store_MathOp ops[4];
  ops[0].shape = store_MathOp::ARRAY_FLOAT, ops[0].code = 0, ops[0].s = 2.0f;
  ops[1].shape = store_MathOp::ARRAY_FLOAT, ops[1].code = 2, ops[1].s = 3.0f;
  ops[2].code = 5;
  ops[3].shape = store_MathOp::FLOAT_ARRAY, ops[3].code = 1, ops[3].s = 10.0f;
  ASSERT_EQ(store_MathChain(a.data(), out.data(), a.size(), ops, 4), store_MathFault::NONE);
  for (std::size_t i = 0; i < a.size(); i += 7)
    EXPECT_FLOAT_EQ(out[i], float(10.0 / std::fabs(a[i] * 2.0 - 3.0))) << i;
  ops[2].code = 22;  // sqrt of (2x - 3), negative for no value: x >= 2
  ASSERT_EQ(store_MathChain(a.data(), out.data(), a.size(), ops, 3), store_MathFault::NONE);
  EXPECT_FLOAT_EQ(out[4999], float(std::sqrt(a[4999] * 2.0 - 3.0)));
  a[4321] = 1.0f;  // 2 - 3 < 0, in the third chunk
  EXPECT_EQ(store_MathChain(a.data(), out.data(), a.size(), ops, 3), store_MathFault::NEGATIVE);
  a[4321] = 1.5f;  // 3 - 3 = 0: then 10 / 0
  ops[2].code = 5;
  EXPECT_EQ(store_MathChain(a.data(), out.data(), a.size(), ops, 4),
            store_MathFault::ZERO_DIVISOR);
  // Links taken two at a time give what the links give one by one, bit for bit.
  std::vector<float> once(a.size()), twice(a.size());
  for (int first : {2, 5, 16, 17, 22})
    for (int second : {2, 5, 16, 17, 22, 12}) {
      store_MathOp pair[2];
      pair[0].code = first;
      pair[1].code = second;
      const store_MathFault fault = store_MathChain(a.data(), once.data(), a.size(), pair, 2);
      store_MathFunction(first, a.data(), twice.data(), a.size());
      store_MathFunction(second, twice.data(), twice.data(), a.size());
      EXPECT_EQ(fault, first == 2 && second == 22 ? store_MathFault::NEGATIVE
                                                  : store_MathFault::NONE);
      for (std::size_t i = 0; i < a.size(); i += 13)
        EXPECT_TRUE(once[i] == twice[i] || (std::isnan(once[i]) && std::isnan(twice[i])))
            << first << " " << second << " " << i;
    }
}

TEST(StoreFieldMathTranspose, ExchangesRowsAndColumnsOfEveryMatrix) {
  // Two 2x3 matrices, entry (r, c) of matrix m = 100 m + 10 r + c.
  std::vector<float> a, out(12);
  for (int m = 0; m < 2; ++m)
    for (int r = 0; r < 2; ++r)
      for (int c = 0; c < 3; ++c) a.push_back(float(100 * m + 10 * r + c));
  store_MathTranspose(a.data(), 2, 3, out.data(), 2);
  for (int m = 0; m < 2; ++m)
    for (int r = 0; r < 3; ++r)
      for (int c = 0; c < 2; ++c)
        EXPECT_EQ(out[m * 6 + r * 2 + c], float(100 * m + 10 * c + r));
}

TEST(StoreFieldMathEnvelope, KeepsTheEarlierFieldOnTiesAndNeverTakesNaN) {
  float envelope[] = {1.0f, 5.0f, 2.0f, 0.0f}, indices[] = {0, 0, 0, 0};
  const float second[] = {3.0f, 5.0f, kNaN, -1.0f};
  store_EnvelopeUpdate(second, 4, true, 1.0f, envelope, indices);
  EXPECT_EQ(envelope[0], 3.0f);
  EXPECT_EQ(indices[0], 1.0f);
  EXPECT_EQ(indices[1], 0.0f);  // tie
  EXPECT_EQ(envelope[2], 2.0f);
  EXPECT_EQ(indices[2], 0.0f);  // NaN
  EXPECT_EQ(envelope[3], 0.0f);
  store_EnvelopeUpdate(second, 4, false, 2.0f, envelope, indices);
  EXPECT_EQ(envelope[3], -1.0f);
  EXPECT_EQ(indices[3], 2.0f);
  EXPECT_EQ(indices[0], 1.0f);
  const float rows[] = {1, 2, 3, 4, 5, 6};
  float column[2];
  store_MathComponent(rows, 3, 2, column, 2);
  EXPECT_EQ(column[0], 3.0f);
  EXPECT_EQ(column[1], 6.0f);
}
