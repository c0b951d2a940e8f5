// Tensor values are widened to the full symmetric 3x3 once, so that every invariant and rotation
// is written a single time for all five kinds; only the Mises block has one loop per kind, since
// it runs over whole fields.
#include "store_Tensor.h"

#include <algorithm>
#include <cmath>

namespace {

using odb_Enum::odb_DataTypeEnum;
using odb_Enum::odb_InvariantEnum;

// The place of each component of a kind in the 3x3 tensor, 0-based (row, column).
struct Kind {
  int count;
  const char* const* suffixes;
  const int (*places)[2];
};

const char* const kFullSuffixes[] = {"11", "22", "33", "12", "13", "23"};
const char* const kPlanarSuffixes[] = {"11", "22", "33", "12"};
const char* const kSurfaceSuffixes[] = {"11", "22", "12"};
const int kFullPlaces[][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 2}};
const int kPlanarPlaces[][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}};
const int kSurfacePlaces[][2] = {{0, 0}, {1, 1}, {0, 1}};

const Kind* KindOf(odb_DataTypeEnum type) {
  static const Kind full = {6, kFullSuffixes, kFullPlaces};
  static const Kind planar = {4, kPlanarSuffixes, kPlanarPlaces};
  static const Kind surface = {3, kSurfaceSuffixes, kSurfacePlaces};
  switch (type) {
    case odb_Enum::TENSOR_3D_FULL:
      return &full;
    case odb_Enum::TENSOR_3D_PLANAR:
      return &planar;
    case odb_Enum::TENSOR_3D_SURFACE:
    case odb_Enum::TENSOR_2D_PLANAR:
    case odb_Enum::TENSOR_2D_SURFACE:
      return &surface;
    default:
      return nullptr;
  }
}

using Matrix = double[3][3];

// The symmetric 3x3 of a value, reading c[0..count) and zero for anything missing.
void Widen(const Kind& kind, const float* c, int count, Matrix t) {
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) t[i][j] = 0.0;
  for (int k = 0; k < std::min(count, kind.count); ++k) {
    int i = kind.places[k][0], j = kind.places[k][1];
    t[i][j] = t[j][i] = c[k];
  }
}

double Determinant(const Matrix a) {
  return a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
         a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
         a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
}

// The deviator of t and the mean of its diagonal.
double Deviator(const Matrix t, Matrix s) {
  double mean = (t[0][0] + t[1][1] + t[2][2]) / 3.0;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) s[i][j] = t[i][j] - (i == j ? mean : 0.0);
  return mean;
}

double DoubleContraction(const Matrix s) {
  double sum = 0.0;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) sum += s[i][j] * s[i][j];
  return sum;
}

// Principal values, largest first, by the closed form of the characteristic cubic of the
// deviator: with s = 2p B, det B / 2 = cos(3 phi) and the roots are mean + 2p cos(phi + 2k pi/3).
// Scaling by p before the determinant keeps the cubic well conditioned for any magnitude.
void Principals(const Matrix t, double out[3]) {
  Matrix s;
  double mean = Deviator(t, s);
  double p = std::sqrt(DoubleContraction(s) / 6.0);
  if (p == 0.0) {
    out[0] = out[1] = out[2] = mean;
    return;
  }
  Matrix b;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j) b[i][j] = s[i][j] / p;
  double r = std::clamp(Determinant(b) / 2.0, -1.0, 1.0);
  double phi = std::acos(r) / 3.0;
  const double third = 2.0943951023931954923;  // 2 pi / 3
  out[0] = mean + 2.0 * p * std::cos(phi);
  out[2] = mean + 2.0 * p * std::cos(phi + third);
  out[1] = 3.0 * mean - out[0] - out[2];
}

// Kinds without a 33 component have t[2][2] = 0, which is their out-of-plane principal value.
double TensorInvariant(odb_InvariantEnum invariant, const Matrix t) {
  Matrix s;
  double mean = Deviator(t, s);
  switch (invariant) {
    case odb_Enum::MISES:
      return std::sqrt(1.5 * DoubleContraction(s));
    case odb_Enum::PRESS:
      return -mean;
    case odb_Enum::INV3:
      return std::cbrt(13.5 * Determinant(s));
    case odb_Enum::MAX_INPLANE_PRINCIPAL:
    case odb_Enum::MIN_INPLANE_PRINCIPAL: {
      double centre = 0.5 * (t[0][0] + t[1][1]);
      double radius = std::hypot(0.5 * (t[0][0] - t[1][1]), t[0][1]);
      return invariant == odb_Enum::MAX_INPLANE_PRINCIPAL ? centre + radius : centre - radius;
    }
    case odb_Enum::OUTOFPLANE_PRINCIPAL:
      return t[2][2];
    default:
      break;
  }
  double principal[3];
  Principals(t, principal);
  switch (invariant) {
    case odb_Enum::TRESCA:
      return principal[0] - principal[2];
    case odb_Enum::MAX_PRINCIPAL:
      return principal[0];
    case odb_Enum::MID_PRINCIPAL:
      return principal[1];
    case odb_Enum::MIN_PRINCIPAL:
      return principal[2];
    default:
      return 0.0;
  }
}

// Mises from the differences of the normal components and the sum of the squared shears. The
// block loops work in float, unlike single values: conversions to double halve their speed,
// while float keeps the result within a few units in the last place for components below 1e18
// in magnitude.
inline float Mises(float d12, float d23, float d31, float shears) {
  return std::sqrt(0.5f * (d12 * d12 + d23 * d23 + d31 * d31) + 3.0f * shears);
}

// out[i] = row(data + i * stride) for one kind; `row` reads its components from the pointer.
template <int stride, class Row>
void MisesLoop(const float* data, long n, float* out, Row row) {
  for (long i = 0; i < n; ++i) out[i] = row(data + i * stride);
}

void Rotate(const double a[9], const Matrix t, Matrix out) {
  Matrix at;
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      at[i][j] = a[3 * i] * t[0][j] + a[3 * i + 1] * t[1][j] + a[3 * i + 2] * t[2][j];
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 3; ++j)
      out[i][j] = at[i][0] * a[3 * j] + at[i][1] * a[3 * j + 1] + at[i][2] * a[3 * j + 2];
}

}  // namespace

int store_TensorComponentCount(odb_DataTypeEnum type) {
  const Kind* kind = KindOf(type);
  return kind ? kind->count : 0;
}

const char* const* store_TensorComponentSuffixes(odb_DataTypeEnum type) {
  const Kind* kind = KindOf(type);
  return kind ? kind->suffixes : nullptr;
}

bool store_InvariantValid(odb_InvariantEnum invariant, odb_DataTypeEnum type) {
  if (invariant == odb_Enum::MAGNITUDE) return type == odb_Enum::VECTOR;
  return KindOf(type) && invariant >= odb_Enum::MISES &&
         invariant <= odb_Enum::OUTOFPLANE_PRINCIPAL;
}

float store_Invariant(odb_InvariantEnum invariant, odb_DataTypeEnum type, const float* c,
                      int count) {
  if (!store_InvariantValid(invariant, type)) return 0.0f;
  if (invariant == odb_Enum::MAGNITUDE) {
    double sum = 0.0;
    for (int i = 0; i < count; ++i) sum += static_cast<double>(c[i]) * c[i];
    return static_cast<float>(std::sqrt(sum));
  }
  const Kind& kind = *KindOf(type);
  Matrix t;
  Widen(kind, c, count, t);
  return static_cast<float>(TensorInvariant(invariant, t));
}

void store_MisesBlock(odb_DataTypeEnum type, const float* data, long n, float* out) {
  switch (type) {
    case odb_Enum::TENSOR_3D_FULL:
      return MisesLoop<6>(data, n, out, [](const float* v) {
        float a = v[0], b = v[1], c = v[2], d = v[3], e = v[4], f = v[5];
        return Mises(a - b, b - c, c - a, d * d + e * e + f * f);
      });
    case odb_Enum::TENSOR_3D_PLANAR:
      return MisesLoop<4>(data, n, out, [](const float* v) {
        float a = v[0], b = v[1], c = v[2], d = v[3];
        return Mises(a - b, b - c, c - a, d * d);
      });
    case odb_Enum::TENSOR_3D_SURFACE:
    case odb_Enum::TENSOR_2D_PLANAR:
    case odb_Enum::TENSOR_2D_SURFACE:
      return MisesLoop<3>(data, n, out, [](const float* v) {
        float a = v[0], b = v[1], d = v[2];
        return Mises(a - b, b, -a, d * d);
      });
    default:
      std::fill(out, out + n, 0.0f);
  }
}

bool store_RotationAxes(const float* q, int count, double axes[9]) {
  if (count != 2 && count != 4) return false;
  double norm = 0.0;
  for (int i = 0; i < count; ++i) norm += static_cast<double>(q[i]) * q[i];
  if (norm == 0.0) return false;
  // A planar orientation is the quaternion (q0, 0, 0, q1) about the 3-axis.
  double w = q[0], x = count == 4 ? q[1] : 0.0, y = count == 4 ? q[2] : 0.0,
         z = count == 4 ? q[3] : q[1];
  double k = 2.0 / norm;
  // Row i of R^T is column i of the rotation matrix R of the quaternion.
  double r[9] = {1 - k * (y * y + z * z), k * (x * y + w * z),     k * (x * z - w * y),
                 k * (x * y - w * z),     1 - k * (x * x + z * z), k * (y * z + w * x),
                 k * (x * z + w * y),     k * (y * z - w * x),     1 - k * (x * x + y * y)};
  std::copy(r, r + 9, axes);
  return true;
}

std::vector<std::vector<float>> store_DirectionCosines(const float* orientation, int count) {
  double axes[9];
  if (!store_RotationAxes(orientation, count, axes)) return {};
  int width = count == 2 ? 2 : 3;
  std::vector<std::vector<float>> rows(width, std::vector<float>(width));
  for (int i = 0; i < width; ++i)
    for (int j = 0; j < width; ++j) rows[i][j] = static_cast<float>(axes[3 * i + j]);
  return rows;
}

void store_RotateVector(const double axes[9], const float* in, float* out, int width) {
  if (width != 2 && width != 3) return;
  double v[3] = {in[0], in[1], width == 3 ? in[2] : 0.0}, r[3];
  for (int i = 0; i < width; ++i)
    r[i] = axes[3 * i] * v[0] + axes[3 * i + 1] * v[1] + axes[3 * i + 2] * v[2];
  for (int i = 0; i < width; ++i) out[i] = static_cast<float>(r[i]);
}

void store_RotateTensor(odb_DataTypeEnum type, const double axes[9], const float* in, float* out) {
  const Kind* kind = KindOf(type);
  if (!kind) return;
  Matrix t, r;
  Widen(*kind, in, kind->count, t);
  Rotate(axes, t, r);
  for (int k = 0; k < kind->count; ++k)
    out[k] = static_cast<float>(r[kind->places[k][0]][kind->places[k][1]]);
}
