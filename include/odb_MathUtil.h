// odb_MathUtil: arithmetic and functions on whole field outputs, field values and history outputs.
//
// `a + b`, `2.0f * s`, `sqrt(abs(s))`, `power(s, 2)`, `complexMagnitude(u)` ... each return a new
// detached (orphan) object; the operands are not changed. A computed field reads like any other
// (values, bulk data, subsets, invariants, getScalarField) and refuses addData with the orphan
// message; to save it, define a field of the same type in a frame and addData(result) into it.
//
// Fields are combined sub-field by sub-field (one element type, or the nodes, at one position and
// section point), in order, location by location, over the flat arrays of their blocks: a stored
// operand is read block by block into a scratch array and never kept. Cost: one pass over each
// operand and the result; the result holds its own arrays. Operations that cannot fail (abs,
// negation, sin, exp, the angle conversions, + - * and / by a non-zero float) on data in memory
// wait until their result's data are first asked for, and the next operation joins them, so
// that sqrt(abs(s)) or 2 * s + 1 cost one pass; their values are those of the operands when the
// operation was made.
//
// Choices:
// - Labels: "a op b" is built from the pieces name, " ", the operation's text, " ", and the other
//   name or float (so `U * 2` gives "U  *  2", `S1 + S2` gives "S1  +  S2"); a function gives the
//   text, "( ", the name, " )" (" abs ( U )"); unary minus is code 2 as a function (" - ( U )").
//   A float is written in the fewest significant digits that read back as the same float
//   ("2", "1.35", "-0.1"). The label is both the result's name and its description.
// - Two fields must have the same data type ("Data types A and B are incompatible."), as many
//   sub-fields ("Fields are associated with differently sized output requests. ..."), and per
//   sub-field the same position ("Incompatible data locations"), as many values ("Objects does
//   not have compatible amount of data") and the same instance, element type, section point,
//   labels, width and orientations ("Incompatible fields").
// - Between two fields: + and - for every type; * and / between SCALAR fields only, refused with
//   "Operation not valid between vectors" (VECTOR), "... between matrices" (MATRIX) and
//   "... between tensor" (the five tensor kinds). A field with a float: + - * / power on every
//   component; a float with a field: + - * on every component, / for SCALAR fields only
//   ("Operation float / field is valid only for SCALAR fields"). Any other shape or code, and
//   transpose of other than a MATRIX field: "Invalid math operation". BOOLEAN, INTEGER and
//   quaternion data: "Unknown data type". History outputs must be SCALAR ("SCALAR data
//   expected"), of equal length ("Objects does not have compatible amount of data"), with equal
//   times ("Incompatible data locations"), of regions of one load case ("Invalid LoadCase"); the
//   result has the first operand's times.
// - Domain errors refuse the whole operation: log and log10 of a value <= 0 "Operand must be
//   greater than zero"; sqrt of a value < 0 "Operand must be greater than or equal to zero"; a
//   divisor of 0 (a float, or a value of the divisor) "Division by zero"; acos and asin outside
//   [-1, 1] "Invalid math operation". power: a negative value to a non-integer power "Error:
//   negative raised to float power", 0 to a negative power "Error: float raised to negative
//   power", a finite value whose power is infinite, or non-zero and rounds to 0, "Error: over or
//   underflow in opPow operation". Angles are in radians; complexPhase is atan2(imag, real).
// - Complex data (conjugateData): the four complex functions combine each value with its
//   conjugate part (a real value has imaginary part 0) and give real results. + - * / and unary
//   minus keep conjugate data when either operand has it, reading a real operand or a float as
//   imaginary 0 (two complex values multiply and divide as complex numbers). power and the other
//   functions act on the real parts and give real results. Field values follow the same rules,
//   with their conjugateFieldValueData(); two values must have the same data type ("Incompatible
//   fieldValues data types.") and width ("Objects does not have compatible amount of data"), and
//   the result takes the first operand's location.
#ifndef ODB_MATHUTIL_H
#define ODB_MATHUTIL_H

#include "odb_Export.h"
#include "odb_FieldOutput.h"
#include "odb_FieldValue.h"
#include "odb_HistoryOutput.h"
#include "uti_LabelMap.h"

// Operation codes; odb_MathOperationText gives each its text (" * ", " power ", " sqrt " ...).
enum odb_MathOperationEnum : int {
  odb_MATH_MULTIPLY, odb_MATH_DIVIDE, odb_MATH_SUBTRACT, odb_MATH_ADD, odb_MATH_POWER,
  odb_MATH_ABS, odb_MATH_COMPLEX_MAGNITUDE, odb_MATH_COMPLEX_PHASE, odb_MATH_COMPLEX_REAL,
  odb_MATH_COMPLEX_IMAG, odb_MATH_ACOS, odb_MATH_ASIN, odb_MATH_ATAN, odb_MATH_COS, odb_MATH_SIN,
  odb_MATH_TAN, odb_MATH_DEGREE_TO_RADIAN, odb_MATH_RADIAN_TO_DEGREE, odb_MATH_EXP,
  odb_MATH_EXP10, odb_MATH_LOG, odb_MATH_LOG10, odb_MATH_SQRT, odb_MATH_TRANSPOSE
};
// The text of `code` in result labels; nullptr for a code outside 0..23.
QTVODB_EXPORT const char* odb_MathOperationText(int code);

// The calculator's messages (keys odb_MessageText_MSGID_00.._15).
enum odb_MessageTextEnm : int {
  odb_MessageText_INCOMPATIBLE_TYPES, odb_MessageText_LOCATIONS, odb_MessageText_INVALID_OPERATION,
  odb_MessageText_UNKNOWN_TYPE, odb_MessageText_SIZED_REQUESTS, odb_MessageText_AMOUNT,
  odb_MessageText_FLOAT_BY_FIELD, odb_MessageText_TENSORS, odb_MessageText_VECTORS,
  odb_MessageText_NOT_POSITIVE, odb_MessageText_NEGATIVE, odb_MessageText_DIVISION_BY_ZERO,
  odb_MessageText_INCOMPATIBLE_FIELDS, odb_MessageText_SCALAR_EXPECTED, odb_MessageText_LOAD_CASE,
  odb_MessageText_MATRICES
};
template <>
struct QTVODB_EXPORT uti_LabelTable<odb_MessageTextEnm, 1> {
  static const uti_LabelRow<odb_MessageTextEnm> rows[];
};
// The power errors and the field values' type check (keys odb_MathUtil_MSGID_00.._03).
enum odb_MathUtilEnm : int {
  odb_MathUtil_NEGATIVE_BASE, odb_MathUtil_NEGATIVE_POWER, odb_MathUtil_POWER_RANGE,
  odb_MathUtil_VALUE_TYPES
};
template <>
struct QTVODB_EXPORT uti_LabelTable<odb_MathUtilEnm, 1> {
  static const uti_LabelRow<odb_MathUtilEnm> rows[];
};

struct odb_MathStep;

class QTVODB_EXPORT odb_MathUtil {
 public:
  static odb_FieldOutput fieldOperation(const odb_FieldOutput& a, const odb_FieldOutput& b, int code);
  static odb_FieldOutput fieldOperation(const odb_FieldOutput& a, float b, int code);
  static odb_FieldOutput fieldOperation(float a, const odb_FieldOutput& b, int code);
  static odb_FieldOutput fieldOperation(const odb_FieldOutput& a, int code);
  static odb_FieldValue fieldValueOperation(const odb_FieldValue& a, const odb_FieldValue& b, int code);
  static odb_FieldValue fieldValueOperation(const odb_FieldValue& a, float b, int code);
  static odb_FieldValue fieldValueOperation(float a, const odb_FieldValue& b, int code);
  static odb_FieldValue fieldValueOperation(const odb_FieldValue& a, int code);
  static odb_HistoryOutput historyOperation(const odb_HistoryOutput& a, const odb_HistoryOutput& b, int code);
  static odb_HistoryOutput historyOperation(const odb_HistoryOutput& a, float b, int code);
  static odb_HistoryOutput historyOperation(float a, const odb_HistoryOutput& b, int code);
  static odb_HistoryOutput historyOperation(const odb_HistoryOutput& a, int code);

 private:
  friend struct odb_MathUtilAccess;
  // One sub-field (or pair) of a field operation, by the operands' data type: each checks that
  // the code applies to its type and computes the result's sub-field.
  static void ScalarfieldOperation(odb_MathStep& step);
  static void VectorfieldOperation(odb_MathStep& step);
  static void MatrixfieldOperation(odb_MathStep& step);
  static void TensorfieldOperation(odb_MathStep& step);
};

// One set of operators and functions per operand type T, each a call of odb_MathUtil with its code.
#define ODB_MATH_DECLARE(T)                                                                       \
  QTVODB_EXPORT T operator+(const T& a, const T& b); QTVODB_EXPORT T operator+(const T& a, float b); \
  QTVODB_EXPORT T operator+(float a, const T& b); QTVODB_EXPORT T operator-(const T& a, const T& b); \
  QTVODB_EXPORT T operator-(const T& a, float b); QTVODB_EXPORT T operator-(float a, const T& b);  \
  QTVODB_EXPORT T operator*(const T& a, const T& b); QTVODB_EXPORT T operator*(const T& a, float b); \
  QTVODB_EXPORT T operator*(float a, const T& b); QTVODB_EXPORT T operator/(const T& a, const T& b); \
  QTVODB_EXPORT T operator/(const T& a, float b); QTVODB_EXPORT T operator/(float a, const T& b);  \
  QTVODB_EXPORT T operator-(const T& a); QTVODB_EXPORT T power(const T& a, float exponent);        \
  QTVODB_EXPORT T abs(const T& a); QTVODB_EXPORT T complexMagnitude(const T& a);                 \
  QTVODB_EXPORT T complexPhase(const T& a); QTVODB_EXPORT T complexReal(const T& a);             \
  QTVODB_EXPORT T complexImag(const T& a); QTVODB_EXPORT T acos(const T& a);                     \
  QTVODB_EXPORT T asin(const T& a); QTVODB_EXPORT T atan(const T& a); QTVODB_EXPORT T cos(const T& a); \
  QTVODB_EXPORT T sin(const T& a); QTVODB_EXPORT T tan(const T& a);                              \
  QTVODB_EXPORT T degreeToRadian(const T& a); QTVODB_EXPORT T radianToDegree(const T& a);        \
  QTVODB_EXPORT T exp(const T& a); QTVODB_EXPORT T exp10(const T& a); QTVODB_EXPORT T log(const T& a); \
  QTVODB_EXPORT T log10(const T& a); QTVODB_EXPORT T sqrt(const T& a);
ODB_MATH_DECLARE(odb_FieldOutput)
ODB_MATH_DECLARE(odb_FieldValue)
ODB_MATH_DECLARE(odb_HistoryOutput)
#undef ODB_MATH_DECLARE
// Matrix fields only: every value's rows and columns exchanged (component labels likewise).
QTVODB_EXPORT odb_FieldOutput transpose(const odb_FieldOutput& a);

#endif
