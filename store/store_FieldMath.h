// store_FieldMath: the element-wise numerics of the field calculator and of envelopes, over flat
// float arrays.
//
// Each kernel is one straight loop over `n` floats (the components of every value of a block, row
// after row), written so that the compiler vectorises the arithmetic and the domain checks that
// go with it: a kernel computes every result and reports the first kind of domain fault it met
// as its return value, leaving the caller to refuse the whole result. `out` may be an input
// (in-place). Pure functions: no allocation, no state, any number of threads.
#ifndef STORE_FIELDMATH_H
#define STORE_FIELDMATH_H

#include <cstddef>

// What a kernel met: NONE, or the domain fault of some value.
enum class store_MathFault {
  NONE,
  NOT_POSITIVE,      // log, log10 of a value <= 0
  NEGATIVE,          // sqrt of a value < 0
  ZERO_DIVISOR,      // a divisor of 0
  OUT_OF_RANGE,      // acos, asin outside [-1, 1]
  NEGATIVE_BASE,     // a negative value to a non-integer power
  ZERO_TO_NEGATIVE,  // 0 to a negative power
  POWER_RANGE,       // a finite value whose power overflows, or underflows to 0
  INVALID            // a code the kernel does not compute
};

// out[i] = a[i] op b[i] for the codes multiply (0), divide (1), subtract (2), add (3).
store_MathFault store_MathArrays(int code, const float* a, const float* b, float* out,
                                 std::size_t n);
// out[i] = a[i] op s for codes 0..3 and power (4).
store_MathFault store_MathArrayFloat(int code, const float* a, float s, float* out, std::size_t n);
// out[i] = s op a[i] for codes 0..3.
store_MathFault store_MathFloatArray(int code, float s, const float* a, float* out, std::size_t n);

// Complex values, real parts `re` and imaginary parts `im` (nullptr: all 0), for codes 0..3:
// (ore, oim) = (are, aim) op (bre, bim), multiplied and divided as complex numbers.
store_MathFault store_MathComplexArrays(int code, const float* are, const float* aim,
                                        const float* bre, const float* bim, float* ore,
                                        float* oim, std::size_t n);
// s / (re + i im) for every value, into (ore, oim).
store_MathFault store_MathFloatByComplex(float s, const float* re, const float* im, float* ore,
                                         float* oim, std::size_t n);

// out[i] = f(a[i]) for the real functions: negation (code 2), abs (5), the trigonometric and
// inverse ones (10..15), degreeToRadian (16), radianToDegree (17), exp (18), exp10 (19), log
// (20), log10 (21), sqrt (22).
store_MathFault store_MathFunction(int code, const float* a, float* out, std::size_t n);
// out[i] = f(re[i] + i im[i]) for complexMagnitude (6), complexPhase (7), complexReal (8) and
// complexImag (9); `im` nullptr reads as 0.
store_MathFault store_MathComplexFunction(int code, const float* re, const float* im, float* out,
                                          std::size_t n);
// One step of a chain: a real function (`shape` FUNCTION, code as store_MathFunction), or an
// operation with a float `s` on the right (ARRAY_FLOAT) or on the left (FLOAT_ARRAY).
struct store_MathOp {
  enum Shape { FUNCTION, ARRAY_FLOAT, FLOAT_ARRAY } shape = FUNCTION;
  int code = 0;
  float s = 0.0f;
};
// out = ops[count-1](... ops[0](in)), run over chunks small enough to stay in the first-level
// cache, so that a chain costs one pass over memory; the first fault met is returned (the
// chunks after it are still computed). `out` may be `in`.
store_MathFault store_MathChain(const float* in, float* out, std::size_t n, const store_MathOp* ops,
                                std::size_t count);

// Each of `count` matrices of `rows` x `columns` floats (row-major) transposed into `out` (not
// `a`): columns x rows.
void store_MathTranspose(const float* a, int rows, int columns, float* out, std::size_t count);

// Component `component` of `n` values of `width` floats into out[n].
void store_MathComponent(const float* data, int width, int component, float* out, std::size_t n);
// One field of an envelope: where criterion[i] beats envelope[i] (greater for `max`, less
// otherwise; a tie keeps the earlier field, and a NaN never wins) the envelope takes it and
// indices[i] takes `index`.
void store_EnvelopeUpdate(const float* criterion, std::size_t n, bool max, float index,
                          float* envelope, float* indices);

#endif
