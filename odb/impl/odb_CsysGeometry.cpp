#include "odb_CsysGeometry.h"

#include <algorithm>
#include <cmath>

namespace {

double Dot(const double* a, const double* b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

void Cross(const double* a, const double* b, double* out) {
  const double c[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2],
                       a[0] * b[1] - a[1] * b[0]};
  std::copy(c, c + 3, out);
}

// Scales `v` to unit length; false, leaving it, when its length is not above `least`.
bool Normalise(double* v, double least) {
  const double length = std::sqrt(Dot(v, v));
  if (!(length > least)) return false;
  for (int k = 0; k < 3; ++k) v[k] /= length;
  return true;
}

// The largest distance of the second and third points from the first: the scale that decides
// when a length counts as zero.
double Spread(const double p[9]) {
  double spread = 0.0;
  for (int i = 1; i < 3; ++i) {
    double d[3];
    for (int k = 0; k < 3; ++k) d[k] = p[3 * i + k] - p[k];
    spread = std::max(spread, std::sqrt(Dot(d, d)));
  }
  return spread;
}

}  // namespace

bool odb_AxesFromDirections(const double x[3], const double y[3], double axes[9]) {
  double a[9] = {x[0], x[1], x[2], y[0], y[1], y[2], 0, 0, 0};
  const double scale = std::max(std::sqrt(Dot(x, x)), std::sqrt(Dot(y, y)));
  if (!Normalise(a, 0.0)) return false;
  const double along = Dot(a + 3, a);
  for (int k = 0; k < 3; ++k) a[3 + k] -= along * a[k];
  if (!Normalise(a + 3, odb_kCsysTolerance * scale)) return false;
  Cross(a, a + 3, a + 6);
  std::copy(a, a + 9, axes);
  return true;
}

bool odb_FrameFromThreePoints(const double points[9], double origin[3], double axes[9]) {
  const double spread = Spread(points);
  double x[3], y[3];
  for (int k = 0; k < 3; ++k) {
    x[k] = points[3 + k] - points[k];
    y[k] = points[6 + k] - points[k];
  }
  if (!(std::sqrt(Dot(x, x)) > odb_kCsysTolerance * spread) || !(spread > 0.0)) return false;
  double frame[9];
  if (!odb_AxesFromDirections(x, y, frame)) return false;
  std::copy(points, points + 3, origin);
  std::copy(frame, frame + 9, axes);
  return true;
}

bool odb_FrameFromCircle(const double points[9], double origin[3], double axes[9]) {
  const double spread = Spread(points);
  if (!(spread > 0.0)) return false;
  // With a = p2 - p1, b = p3 - p1 and n = a x b, the point of the plane equally far from the
  // three points is p1 + (|a|^2 (b x n) + |b|^2 (n x a)) / (2 |n|^2).
  double a[3], b[3], n[3];
  for (int k = 0; k < 3; ++k) {
    a[k] = points[3 + k] - points[k];
    b[k] = points[6 + k] - points[k];
  }
  Cross(a, b, n);
  const double nn = Dot(n, n);
  if (!(std::sqrt(nn) > odb_kCsysTolerance * spread * spread)) return false;
  double bn[3], na[3], centre[3];
  const double aa = Dot(a, a), bb = Dot(b, b);
  Cross(b, n, bn);
  Cross(n, a, na);
  for (int k = 0; k < 3; ++k) centre[k] = points[k] + (aa * bn[k] + bb * na[k]) / (2.0 * nn);
  double x[3];
  for (int k = 0; k < 3; ++k) x[k] = points[k] - centre[k];
  double y[3];
  Cross(n, x, y);
  double frame[9];
  if (!odb_AxesFromDirections(x, y, frame)) return false;
  std::copy(centre, centre + 3, origin);
  std::copy(frame, frame + 9, axes);
  return true;
}

void odb_RotateAxes(const double theta[3], double axes[9]) {
  double n[3] = {theta[0], theta[1], theta[2]};
  const double angle = std::sqrt(Dot(n, n));
  if (!(angle > 0.0)) return;
  for (double& c : n) c /= angle;
  const double c = std::cos(angle), s = std::sin(angle);
  // Rodrigues: v' = v cos + (n x v) sin + n (n . v)(1 - cos).
  for (int i = 0; i < 3; ++i) {
    double* v = axes + 3 * i;
    double nxv[3];
    Cross(n, v, nxv);
    const double along = Dot(n, v) * (1.0 - c);
    for (int k = 0; k < 3; ++k) v[k] = v[k] * c + nxv[k] * s + n[k] * along;
  }
}

void odb_LocalAxes(odb_Enum::odb_DatumCsysTypeEnum type, const double origin[3],
                   const double axes[9], const double point[3], double local[9]) {
  std::copy(axes, axes + 9, local);
  if (type == odb_Enum::RECTANGULAR) return;
  double d[3];
  for (int k = 0; k < 3; ++k) d[k] = point[k] - origin[k];
  // The point's coordinates in the system.
  const double x = Dot(d, axes), y = Dot(d, axes + 3), z = Dot(d, axes + 6);
  const double rho = std::sqrt(x * x + y * y);
  const double scale = std::sqrt(Dot(d, d));
  double c = 1.0, s = 0.0;
  if (rho > odb_kCsysTolerance * scale && rho > 0.0) c = x / rho, s = y / rho;
  double radial[3], hoop[3];
  for (int k = 0; k < 3; ++k) {
    radial[k] = c * axes[k] + s * axes[3 + k];
    hoop[k] = -s * axes[k] + c * axes[3 + k];
  }
  if (type == odb_Enum::CYLINDRICAL) {
    std::copy(radial, radial + 3, local);
    std::copy(hoop, hoop + 3, local + 3);
    return;
  }
  // Spherical: the elevation phi above the 1-2 plane; e_r = cos(phi) radial + sin(phi) axis 3,
  // e_phi = e_r x hoop turned to point toward the 3-axis: -sin(phi) radial + cos(phi) axis 3.
  const double r = std::sqrt(rho * rho + z * z);
  double cp = 1.0, sp = 0.0;
  if (r > 0.0 && scale > 0.0) cp = rho / r, sp = z / r;
  for (int k = 0; k < 3; ++k) {
    local[k] = cp * radial[k] + sp * axes[6 + k];
    local[3 + k] = hoop[k];
    local[6 + k] = -sp * radial[k] + cp * axes[6 + k];
  }
}
