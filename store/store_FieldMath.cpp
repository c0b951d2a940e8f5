// Every kernel keeps its switch outside its loops, so that each loop is one operation the compiler
// can vectorise; domain checks are OR-reductions in the same loop. The file is compiled without
// errno (-fno-math-errno): a square root of a negative number then gives NaN instead of setting
// errno, which is what lets its loop vectorise, and the check reports it anyway.
#include "store_FieldMath.h"

#include <array>
#include <cmath>
#include <utility>

namespace {

constexpr float kDegree = 3.14159265358979323846f / 180.0f;

// Applies `f` to every float; returns whether `bad` held for any input.
template <class F, class Bad>
bool Map(const float* a, float* out, std::size_t n, F f, Bad bad) {
  int any = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const float x = a[i];
    any |= bad(x) ? 1 : 0;
    out[i] = f(x);
  }
  return any != 0;
}

template <class F>
void Map(const float* a, float* out, std::size_t n, F f) {
  for (std::size_t i = 0; i < n; ++i) out[i] = f(a[i]);
}

bool AnyZero(const float* a, std::size_t n) {
  int any = 0;
  for (std::size_t i = 0; i < n; ++i) any |= a[i] == 0.0f ? 1 : 0;
  return any != 0;
}

store_MathFault Fault(bool bad, store_MathFault fault) {
  return bad ? fault : store_MathFault::NONE;
}

}  // namespace

store_MathFault store_MathArrays(int code, const float* a, const float* b, float* out,
                                 std::size_t n) {
  switch (code) {
    case 0:
      for (std::size_t i = 0; i < n; ++i) out[i] = a[i] * b[i];
      return store_MathFault::NONE;
    case 1: {
      if (AnyZero(b, n)) return store_MathFault::ZERO_DIVISOR;
      for (std::size_t i = 0; i < n; ++i) out[i] = a[i] / b[i];
      return store_MathFault::NONE;
    }
    case 2:
      for (std::size_t i = 0; i < n; ++i) out[i] = a[i] - b[i];
      return store_MathFault::NONE;
    case 3:
      for (std::size_t i = 0; i < n; ++i) out[i] = a[i] + b[i];
      return store_MathFault::NONE;
    default:
      return store_MathFault::INVALID;
  }
}

store_MathFault store_MathArrayFloat(int code, const float* a, float s, float* out,
                                     std::size_t n) {
  switch (code) {
    case 0:
      Map(a, out, n, [s](float x) { return x * s; });
      return store_MathFault::NONE;
    case 1:
      if (s == 0.0f) return store_MathFault::ZERO_DIVISOR;
      Map(a, out, n, [s](float x) { return x / s; });
      return store_MathFault::NONE;
    case 2:
      Map(a, out, n, [s](float x) { return x - s; });
      return store_MathFault::NONE;
    case 3:
      Map(a, out, n, [s](float x) { return x + s; });
      return store_MathFault::NONE;
    case 4: {
      const bool integral = std::floor(s) == s;
      int negative = 0, zeroToNegative = 0, range = 0;
      for (std::size_t i = 0; i < n; ++i) {
        const float x = a[i], r = std::pow(x, s);
        negative |= (x < 0.0f && !integral) ? 1 : 0;
        zeroToNegative |= (x == 0.0f && s < 0.0f) ? 1 : 0;
        range |= (std::isfinite(x) && (std::isinf(r) || (r == 0.0f && x != 0.0f))) ? 1 : 0;
        out[i] = r;
      }
      if (negative) return store_MathFault::NEGATIVE_BASE;
      if (zeroToNegative) return store_MathFault::ZERO_TO_NEGATIVE;
      return Fault(range != 0, store_MathFault::POWER_RANGE);
    }
    default:
      return store_MathFault::INVALID;
  }
}

store_MathFault store_MathFloatArray(int code, float s, const float* a, float* out,
                                     std::size_t n) {
  switch (code) {
    case 0:
      Map(a, out, n, [s](float x) { return s * x; });
      return store_MathFault::NONE;
    case 1:
      if (AnyZero(a, n)) return store_MathFault::ZERO_DIVISOR;
      Map(a, out, n, [s](float x) { return s / x; });
      return store_MathFault::NONE;
    case 2:
      Map(a, out, n, [s](float x) { return s - x; });
      return store_MathFault::NONE;
    case 3:
      Map(a, out, n, [s](float x) { return s + x; });
      return store_MathFault::NONE;
    default:
      return store_MathFault::INVALID;
  }
}

store_MathFault store_MathComplexArrays(int code, const float* are, const float* aim,
                                        const float* bre, const float* bim, float* ore,
                                        float* oim, std::size_t n) {
  if (code < 0 || code > 3) return store_MathFault::INVALID;
  if (code == 2 || code == 3) {
    // Real and imaginary parts apart; a missing part is 0.
    const float sign = code == 2 ? -1.0f : 1.0f;
    for (std::size_t i = 0; i < n; ++i) ore[i] = are[i] + sign * bre[i];
    for (std::size_t i = 0; i < n; ++i)
      oim[i] = (aim ? aim[i] : 0.0f) + sign * (bim ? bim[i] : 0.0f);
    return store_MathFault::NONE;
  }
  if (code == 1) {
    int zero = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const float c = bre[i], d = bim ? bim[i] : 0.0f;
      zero |= (c == 0.0f && d == 0.0f) ? 1 : 0;
    }
    if (zero) return store_MathFault::ZERO_DIVISOR;
  }
  for (std::size_t i = 0; i < n; ++i) {
    const float a = are[i], b = aim ? aim[i] : 0.0f, c = bre[i], d = bim ? bim[i] : 0.0f;
    if (code == 0) {
      ore[i] = a * c - b * d;
      oim[i] = a * d + b * c;
    } else {
      const float norm = c * c + d * d;
      ore[i] = (a * c + b * d) / norm;
      oim[i] = (b * c - a * d) / norm;
    }
  }
  return store_MathFault::NONE;
}

store_MathFault store_MathFloatByComplex(float s, const float* re, const float* im, float* ore,
                                         float* oim, std::size_t n) {
  int zero = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const float c = re[i], d = im ? im[i] : 0.0f, norm = c * c + d * d;
    zero |= norm == 0.0f ? 1 : 0;
    ore[i] = s * c / norm;
    oim[i] = -s * d / norm;
  }
  return Fault(zero != 0, store_MathFault::ZERO_DIVISOR);
}

store_MathFault store_MathFunction(int code, const float* a, float* out, std::size_t n) {
  switch (code) {
    case 2:
      Map(a, out, n, [](float x) { return -x; });
      return store_MathFault::NONE;
    case 5:
      Map(a, out, n, [](float x) { return std::fabs(x); });
      return store_MathFault::NONE;
    case 10:
      return Fault(Map(a, out, n, [](float x) { return std::acos(x); },
                       [](float x) { return !(x >= -1.0f && x <= 1.0f); }),
                   store_MathFault::OUT_OF_RANGE);
    case 11:
      return Fault(Map(a, out, n, [](float x) { return std::asin(x); },
                       [](float x) { return !(x >= -1.0f && x <= 1.0f); }),
                   store_MathFault::OUT_OF_RANGE);
    case 12:
      Map(a, out, n, [](float x) { return std::atan(x); });
      return store_MathFault::NONE;
    case 13:
      Map(a, out, n, [](float x) { return std::cos(x); });
      return store_MathFault::NONE;
    case 14:
      Map(a, out, n, [](float x) { return std::sin(x); });
      return store_MathFault::NONE;
    case 15:
      Map(a, out, n, [](float x) { return std::tan(x); });
      return store_MathFault::NONE;
    case 16:
      Map(a, out, n, [](float x) { return x * kDegree; });
      return store_MathFault::NONE;
    case 17:
      Map(a, out, n, [](float x) { return x / kDegree; });
      return store_MathFault::NONE;
    case 18:
      Map(a, out, n, [](float x) { return std::exp(x); });
      return store_MathFault::NONE;
    case 19:
      Map(a, out, n, [](float x) { return std::pow(10.0f, x); });
      return store_MathFault::NONE;
    case 20:
      return Fault(Map(a, out, n, [](float x) { return std::log(x); },
                       [](float x) { return x <= 0.0f; }),
                   store_MathFault::NOT_POSITIVE);
    case 21:
      return Fault(Map(a, out, n, [](float x) { return std::log10(x); },
                       [](float x) { return x <= 0.0f; }),
                   store_MathFault::NOT_POSITIVE);
    case 22:
      return Fault(Map(a, out, n, [](float x) { return std::sqrt(x); },
                       [](float x) { return x < 0.0f; }),
                   store_MathFault::NEGATIVE);
    default:
      return store_MathFault::INVALID;
  }
}

store_MathFault store_MathComplexFunction(int code, const float* re, const float* im, float* out,
                                          std::size_t n) {
  switch (code) {
    case 6:
      for (std::size_t i = 0; i < n; ++i) {
        const float b = im ? im[i] : 0.0f;
        out[i] = std::sqrt(re[i] * re[i] + b * b);
      }
      return store_MathFault::NONE;
    case 7:
      for (std::size_t i = 0; i < n; ++i) out[i] = std::atan2(im ? im[i] : 0.0f, re[i]);
      return store_MathFault::NONE;
    case 8:
      for (std::size_t i = 0; i < n; ++i) out[i] = re[i];
      return store_MathFault::NONE;
    case 9:
      for (std::size_t i = 0; i < n; ++i) out[i] = im ? im[i] : 0.0f;
      return store_MathFault::NONE;
    default:
      return store_MathFault::INVALID;
  }
}

namespace {

// The links of a chain that two at a time make one loop the compiler vectorises: a pair of them
// costs what one costs, where two loops would write and read the values twice.
enum PairLink { NEGATE, ABSOLUTE, ROOT, TIMES, OVER, MINUS, FROM, PLUS, INTO, kPairLinks };

// The link's kind, or -1 for one that runs on its own (the transcendental functions, power).
int PairKind(const store_MathOp& op) {
  if (op.shape == store_MathOp::FUNCTION) {
    switch (op.code) {
      case 2: return NEGATE;
      case 5: return ABSOLUTE;
      case 16: return TIMES;  // by kDegree
      case 17: return OVER;   // by kDegree
      case 22: return ROOT;
      default: return -1;
    }
  }
  const bool right = op.shape == store_MathOp::ARRAY_FLOAT;
  switch (op.code) {
    case 0: return TIMES;
    case 1: return right ? OVER : INTO;
    case 2: return right ? MINUS : FROM;
    case 3: return PLUS;
    default: return -1;
  }
}

// The float a link of kind `kind` uses.
float PairFloat(const store_MathOp& op) {
  return op.shape == store_MathOp::FUNCTION && (op.code == 16 || op.code == 17) ? kDegree : op.s;
}

// One value through a link; `bad` records its domain fault (a negative root, a zero divisor).
template <int K>
inline float Through(float v, float s, int& bad) {
  if constexpr (K == NEGATE) return -v;
  if constexpr (K == ABSOLUTE) return std::fabs(v);
  if constexpr (K == ROOT) {
    bad |= v < 0.0f ? 1 : 0;
    return std::sqrt(v);
  }
  if constexpr (K == TIMES) return v * s;
  if constexpr (K == OVER) return v / s;
  if constexpr (K == MINUS) return v - s;
  if constexpr (K == FROM) return s - v;
  if constexpr (K == PLUS) return v + s;
  if constexpr (K == INTO) {
    bad |= v == 0.0f ? 1 : 0;
    return s / v;
  }
  return v;
}

store_MathFault PairFault(int kind, float s, int bad) {
  if (kind == ROOT && bad) return store_MathFault::NEGATIVE;
  if ((kind == INTO && bad) || (kind == OVER && s == 0.0f)) return store_MathFault::ZERO_DIVISOR;
  return store_MathFault::NONE;
}

using PairLoop = store_MathFault (*)(const float*, float*, std::size_t, float, float);

template <int A, int B>
store_MathFault Pair(const float* in, float* out, std::size_t n, float a, float b) {
  int badA = 0, badB = 0;
  for (std::size_t i = 0; i < n; ++i) out[i] = Through<B>(Through<A>(in[i], a, badA), b, badB);
  const store_MathFault first = PairFault(A, a, badA);
  return first != store_MathFault::NONE ? first : PairFault(B, b, badB);
}

template <int A, std::size_t... B>
constexpr std::array<PairLoop, kPairLinks> PairRow(std::index_sequence<B...>) {
  return {&Pair<A, int(B)>...};
}

template <std::size_t... A>
constexpr std::array<std::array<PairLoop, kPairLinks>, kPairLinks> PairTable(
    std::index_sequence<A...>) {
  return {PairRow<int(A)>(std::make_index_sequence<kPairLinks>())...};
}

constexpr auto kPairs = PairTable(std::make_index_sequence<kPairLinks>());

store_MathFault Link(const store_MathOp& op, const float* from, float* to, std::size_t n) {
  return op.shape == store_MathOp::FUNCTION ? store_MathFunction(op.code, from, to, n)
         : op.shape == store_MathOp::ARRAY_FLOAT
             ? store_MathArrayFloat(op.code, from, op.s, to, n)
             : store_MathFloatArray(op.code, op.s, from, to, n);
}

}  // namespace

store_MathFault store_MathChain(const float* in, float* out, std::size_t n, const store_MathOp* ops,
                                std::size_t count) {
  // Small enough that a chunk stays in the first-level cache from one link to the next.
  constexpr std::size_t kChunk = 2048;
  store_MathFault first = store_MathFault::NONE;
  for (std::size_t at = 0; at < n; at += kChunk) {
    const std::size_t m = n - at < kChunk ? n - at : kChunk;
    for (std::size_t k = 0; k < count;) {
      const float* from = k == 0 ? in + at : out + at;
      const int a = PairKind(ops[k]), b = k + 1 < count ? PairKind(ops[k + 1]) : -1;
      store_MathFault fault;
      if (a >= 0 && b >= 0) {
        fault = kPairs[a][b](from, out + at, m, PairFloat(ops[k]), PairFloat(ops[k + 1]));
        k += 2;
      } else {
        fault = Link(ops[k], from, out + at, m);
        k += 1;
      }
      if (first == store_MathFault::NONE) first = fault;
    }
  }
  return first;
}

void store_MathTranspose(const float* a, int rows, int columns, float* out, std::size_t count) {
  const std::size_t size = static_cast<std::size_t>(rows) * columns;
  for (std::size_t m = 0; m < count; ++m, a += size, out += size)
    for (int r = 0; r < rows; ++r)
      for (int c = 0; c < columns; ++c) out[c * rows + r] = a[r * columns + c];
}

void store_MathComponent(const float* data, int width, int component, float* out,
                         std::size_t n) {
  const float* from = data + component;
  for (std::size_t i = 0; i < n; ++i) out[i] = from[i * width];
}

void store_EnvelopeUpdate(const float* criterion, std::size_t n, bool max, float index,
                          float* envelope, float* indices) {
  // A strict comparison keeps the earlier field on a tie and never takes a NaN.
  if (max) {
    for (std::size_t i = 0; i < n; ++i) {
      const bool wins = criterion[i] > envelope[i];
      envelope[i] = wins ? criterion[i] : envelope[i];
      indices[i] = wins ? index : indices[i];
    }
  } else {
    for (std::size_t i = 0; i < n; ++i) {
      const bool wins = criterion[i] < envelope[i];
      envelope[i] = wins ? criterion[i] : envelope[i];
      indices[i] = wins ? index : indices[i];
    }
  }
}
