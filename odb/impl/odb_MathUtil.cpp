// odb_MathUtil: the checks, labels and data flow of the field calculator. The numerics are the
// store's kernels (store_FieldMath), called once per sub-field on its flat arrays.
#include "odb_MathUtil.h"

#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "odb_EnumMap.h"
#include "odb_FieldData.h"
#include "odb_HistoryData.h"
#include "odb_Message.h"
#include "odb_SubFieldData.h"
#include "store_FieldMath.h"
#include "store_Tensor.h"

const uti_LabelRow<odb_MessageTextEnm> uti_LabelTable<odb_MessageTextEnm, 1>::rows[] = {
    {"Data types %1$s and %2$s are incompatible.", "odb_MessageText_MSGID_00",
     odb_MessageText_INCOMPATIBLE_TYPES},
    {"Incompatible data locations", "odb_MessageText_MSGID_01", odb_MessageText_LOCATIONS},
    {"Invalid math operation", "odb_MessageText_MSGID_02", odb_MessageText_INVALID_OPERATION},
    {"Unknown data type", "odb_MessageText_MSGID_03", odb_MessageText_UNKNOWN_TYPE},
    {"Fields are associated with differently sized output requests. \nProbable causes include: "
     "different output regions, different output positions, \noutput valid only for certain "
     "element types, \nand the use of the fieldOutput.getSubset() method.",
     "odb_MessageText_MSGID_04", odb_MessageText_SIZED_REQUESTS},
    // "does not have": the wording is matched on as it stands.
    {"Objects does not have compatible amount of data", "odb_MessageText_MSGID_05",
     odb_MessageText_AMOUNT},
    {"Operation float / field is valid only for SCALAR fields", "odb_MessageText_MSGID_06",
     odb_MessageText_FLOAT_BY_FIELD},
    {"Operation not valid between tensor", "odb_MessageText_MSGID_07", odb_MessageText_TENSORS},
    {"Operation not valid between vectors", "odb_MessageText_MSGID_08", odb_MessageText_VECTORS},
    {"Operand must be greater than zero", "odb_MessageText_MSGID_09",
     odb_MessageText_NOT_POSITIVE},
    {"Operand must be greater than or equal to zero", "odb_MessageText_MSGID_10",
     odb_MessageText_NEGATIVE},
    {"Division by zero", "odb_MessageText_MSGID_11", odb_MessageText_DIVISION_BY_ZERO},
    {"Incompatible fields", "odb_MessageText_MSGID_12", odb_MessageText_INCOMPATIBLE_FIELDS},
    {"SCALAR data expected", "odb_MessageText_MSGID_13", odb_MessageText_SCALAR_EXPECTED},
    {"Invalid LoadCase", "odb_MessageText_MSGID_14", odb_MessageText_LOAD_CASE},
    {"Operation not valid between matrices", "odb_MessageText_MSGID_15",
     odb_MessageText_MATRICES},
    {nullptr, nullptr, {}}};

const uti_LabelRow<odb_MathUtilEnm> uti_LabelTable<odb_MathUtilEnm, 1>::rows[] = {
    {"Error: negative raised to float power", "odb_MathUtil_MSGID_00",
     odb_MathUtil_NEGATIVE_BASE},
    {"Error: float raised to negative power", "odb_MathUtil_MSGID_01",
     odb_MathUtil_NEGATIVE_POWER},
    {"Error: over or underflow in opPow operation", "odb_MathUtil_MSGID_02",
     odb_MathUtil_POWER_RANGE},
    {"Incompatible fieldValues data types.", "odb_MathUtil_MSGID_03", odb_MathUtil_VALUE_TYPES},
    {nullptr, nullptr, {}}};

const char* odb_MathOperationText(int code) {
  static const char* const kTexts[] = {
      " * ",          " / ",          " - ",          " + ",
      " power ",      " abs ",        " complexMagnitude ", " complexPhase ",
      " complexReal ", " complexImag ", " acos ",       " asin ",
      " atan ",       " cos ",        " sin ",        " tan ",
      " degreeToRadian ", " radianToDegree ", " exp ", " exp10 ",
      " log ",        " log10 ",      " sqrt ",       " transpose "};
  return code >= 0 && code <= odb_MATH_TRANSPOSE ? kTexts[code] : nullptr;
}

// The shapes of an operation's operands.
enum class odb_MathShape { FIELD_FIELD, FIELD_FLOAT, FLOAT_FIELD, FIELD };

// One sub-field (or pair) of a field operation, or, with no sub-field, only the check of the code
// against the operands' type (field values and the start of a field operation).
struct odb_MathStep {
  int code = 0;
  odb_MathShape shape = odb_MathShape::FIELD;
  odb_SubFieldData* a = nullptr;  // the field operand (the only one for FLOAT_FIELD and FIELD)
  std::shared_ptr<odb_SubFieldData> aShared;  // the same, shared
  odb_SubFieldData* b = nullptr;  // the second field of FIELD_FIELD
  float s = 0.0f;                 // the float of FIELD_FLOAT and FLOAT_FIELD
  int rows = 0, columns = 0;      // of matrices, for transpose
  std::shared_ptr<odb_SubFieldData> result;
};

struct odb_MathUtilAccess {
  static void Dispatch(odb_Enum::odb_DataTypeEnum type, odb_MathStep& step);
};

namespace {

const char* const kSource = "odb/impl/odb_MathUtil";

template <class Enm>
[[noreturn]] void Fail(Enm code, std::initializer_list<odb_String> args, int site) {
  odb_ThrowMessage(odb_CatalogueMessage(code, args), kSource, site);
}

void Check(store_MathFault fault, int site) {
  switch (fault) {
    case store_MathFault::NONE:
      return;
    case store_MathFault::NOT_POSITIVE:
      Fail(odb_MessageText_NOT_POSITIVE, {}, site);
    case store_MathFault::NEGATIVE:
      Fail(odb_MessageText_NEGATIVE, {}, site);
    case store_MathFault::ZERO_DIVISOR:
      Fail(odb_MessageText_DIVISION_BY_ZERO, {}, site);
    case store_MathFault::NEGATIVE_BASE:
      Fail(odb_MathUtil_NEGATIVE_BASE, {}, site);
    case store_MathFault::ZERO_TO_NEGATIVE:
      Fail(odb_MathUtil_NEGATIVE_POWER, {}, site);
    case store_MathFault::POWER_RANGE:
      Fail(odb_MathUtil_POWER_RANGE, {}, site);
    case store_MathFault::OUT_OF_RANGE:
    case store_MathFault::INVALID:
      Fail(odb_MessageText_INVALID_OPERATION, {}, site);
  }
}

// The fewest significant digits that read back as the same float: 2 gives "2", 1.35f "1.35".
odb_String FloatText(float value) {
  char text[32];
  for (int digits = 1; digits <= 9; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(value));
    if (std::strtof(text, nullptr) == value) break;
  }
  return odb_String(text);
}

odb_String Label(const odb_String& a, int code, const odb_String& b) {
  odb_String label = a;
  label += " ";
  const char* text = odb_MathOperationText(code);
  label += text ? text : "";
  label += " ";
  label += b;
  return label;
}

odb_String Label(int code, const odb_String& a) {
  odb_String label(odb_MathOperationText(code));
  label += "( ";
  label += a;
  label += " )";
  return label;
}

bool IsFunction(int code) {
  return code == odb_MATH_SUBTRACT || (code >= odb_MATH_ABS && code <= odb_MATH_SQRT);
}

// Refuses `code` for operands of the kind that `pairMessage` names (the message of * and /
// between two fields of that kind; none for SCALAR).
void CheckCode(const odb_MathStep& step, bool scalar, bool matrix, odb_MessageTextEnm pairMessage) {
  const int code = step.code;
  switch (step.shape) {
    case odb_MathShape::FIELD_FIELD:
      if (code < 0 || code > odb_MATH_ADD) break;
      if (!scalar && code <= odb_MATH_DIVIDE) Fail(pairMessage, {}, __LINE__);
      return;
    case odb_MathShape::FIELD_FLOAT:
      if (code < 0 || code > odb_MATH_POWER) break;
      return;
    case odb_MathShape::FLOAT_FIELD:
      if (code < 0 || code > odb_MATH_ADD) break;
      if (!scalar && code == odb_MATH_DIVIDE) Fail(odb_MessageText_FLOAT_BY_FIELD, {}, __LINE__);
      return;
    case odb_MathShape::FIELD:
      if (IsFunction(code) || (matrix && code == odb_MATH_TRANSPOSE)) return;
      break;
  }
  Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
}

bool SameRun(const odb_Run<int>& a, const odb_Run<int>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(int)) == 0;
}

// Refuses a pair of sub-fields that do not hold the same locations; `result` holds a's labels.
void CheckPair(odb_SubFieldData& a, odb_SubFieldData& b, const odb_SubFieldData& result) {
  if (a.position != b.position) Fail(odb_MessageText_LOCATIONS, {}, __LINE__);
  if (a.Locations() != b.Locations()) Fail(odb_MessageText_AMOUNT, {}, __LINE__);
  if (a.instanceName != b.instanceName || a.elementType != b.elementType ||
      a.sectionPoint.number() != b.sectionPoint.number() || a.width != b.width ||
      a.orientationWidth != b.orientationWidth || a.ownLocations != b.ownLocations)
    Fail(odb_MessageText_INCOMPATIBLE_FIELDS, {}, __LINE__);
  odb_Run<int> labels;
  b.CopyLabels(labels);
  bool same = SameRun(result.labels, labels);
  if (same && a.ownLocations)
    same = SameRun(a.NodeLabels(), b.NodeLabels()) &&
           SameRun(a.IntegrationPoints(), b.IntegrationPoints());
  if (same && a.orientationWidth) {
    odb_Run<float> scratch;
    scratch.Resize(b.Locations() * b.orientationWidth);
    if (b.unread.empty())
      scratch.Assign(b.orientation.data(), scratch.size());
    else
      b.ReadInto(odb_SubFieldData::Part::ORIENTATION, scratch.data());
    same = std::memcmp(scratch.data(), result.orientation.data(),
                       scratch.size() * sizeof(float)) == 0;
  }
  if (!same) Fail(odb_MessageText_INCOMPATIBLE_FIELDS, {}, __LINE__);
}

// The step of a real operation with a float or of a real function as a link of a chain; false
// for the others (two fields, complex functions, transpose).
bool AsLink(const odb_MathStep& step, store_MathOp& op) {
  op.code = step.code;
  op.s = step.s;
  switch (step.shape) {
    case odb_MathShape::FIELD_FLOAT:
      op.shape = store_MathOp::ARRAY_FLOAT;
      return true;
    case odb_MathShape::FLOAT_FIELD:
      op.shape = store_MathOp::FLOAT_ARRAY;
      return true;
    case odb_MathShape::FIELD:
      op.shape = store_MathOp::FUNCTION;
      return step.code == odb_MATH_SUBTRACT || step.code == odb_MATH_ABS ||
             (step.code >= odb_MATH_ACOS && step.code <= odb_MATH_SQRT);
    default:
      return false;
  }
}

// Whether a link has no domain to check, so that it can wait until its data are asked for.
bool CannotFail(const store_MathOp& op) {
  switch (op.shape) {
    case store_MathOp::FUNCTION:
      return op.code == odb_MATH_SUBTRACT || op.code == odb_MATH_ABS ||
             (op.code >= odb_MATH_ATAN && op.code <= odb_MATH_EXP10);
    case store_MathOp::ARRAY_FLOAT:
      return op.code == odb_MATH_MULTIPLY || op.code == odb_MATH_SUBTRACT ||
             op.code == odb_MATH_ADD || (op.code == odb_MATH_DIVIDE && op.s != 0.0f);
    case store_MathOp::FLOAT_ARRAY:
      return op.code == odb_MATH_MULTIPLY || op.code == odb_MATH_SUBTRACT ||
             op.code == odb_MATH_ADD;
  }
  return false;
}

// Real operations with a float and real functions form chains: one that cannot fail waits (its
// result is pending), and one that can runs the whole chain at once. Either way the chain costs
// one pass over memory. False when the step is not such a link.
bool Chain(odb_MathStep& step) {
  odb_SubFieldData& a = *step.a;
  store_MathOp op;
  if (a.complex || !AsLink(step, op)) return false;
  // Only data in memory wait: a pending result of data in the file would need the database
  // open when its data are asked for.
  const bool wait = CannotFail(op) && (a.pendingSource || a.unread.empty());
  if (!wait && !a.pendingSource) return false;
  std::vector<store_MathOp> ops = a.pendingSource ? a.pendingOps : std::vector<store_MathOp>();
  ops.push_back(op);
  std::shared_ptr<odb_SubFieldData> source = a.pendingSource ? a.pendingSource : step.aShared;
  std::shared_ptr<odb_SubFieldData> out = a.SameLocations(a.width, true, !wait);
  if (wait) {
    out->pendingSource = std::move(source);
    out->pendingOps = std::move(ops);
  } else {
    odb_Run<float> scratch;
    const float* from = source->Floats(odb_SubFieldData::Part::DATA, scratch);
    Check(store_MathChain(from, out->data.data(), out->data.size(), ops.data(), ops.size()),
          __LINE__);
  }
  step.result = std::move(out);
  return true;
}

// Computes step.result from the operands; the code has been checked for their type.
void Compute(odb_MathStep& step) {
  using Part = odb_SubFieldData::Part;
  if (Chain(step)) return;
  odb_SubFieldData& a = *step.a;
  if (a.pendingSource) a.Load();  // a pending operand has no blocks in the file
  std::shared_ptr<odb_SubFieldData> out = a.SameLocations(a.width, true);
  const std::size_t n = a.Locations() * a.width;
  float* re = out->data.data();
  odb_Run<float> aIm, bRe, bIm;
  // a's real parts go straight into the result, which every kernel may overwrite in place;
  // transpose, which may not, reads them into a scratch array.
  auto readA = [&](float* into) -> const float* {
    if (!a.unread.empty()) {
      a.ReadInto(Part::DATA, into);
      return into;
    }
    return a.data.data();
  };
  const float* aIm_ = a.complex ? a.Floats(Part::CONJUGATE, aIm) : nullptr;
  const int code = step.code;
  switch (step.shape) {
    case odb_MathShape::FIELD_FIELD: {
      odb_SubFieldData& b = *step.b;
      CheckPair(a, b, *out);
      const float* aRe = readA(re);
      const float* bRe_ = b.Floats(Part::DATA, bRe);
      out->complex = a.complex || b.complex;
      if (!out->complex) {
        Check(store_MathArrays(code, aRe, bRe_, re, n), __LINE__);
        break;
      }
      const float* bIm_ = b.complex ? b.Floats(Part::CONJUGATE, bIm) : nullptr;
      out->conjugate.Resize(n);
      Check(store_MathComplexArrays(code, aRe, aIm_, bRe_, bIm_, re, out->conjugate.data(), n),
            __LINE__);
      break;
    }
    case odb_MathShape::FIELD_FLOAT: {
      const float* aRe = readA(re);
      Check(store_MathArrayFloat(code, aRe, step.s, re, n), __LINE__);
      // A float is real: it scales the imaginary parts (* and /) or leaves them (+ and -).
      out->complex = a.complex && code != odb_MATH_POWER;
      if (!out->complex) break;
      out->conjugate.Resize(n);
      if (code <= odb_MATH_DIVIDE)
        Check(store_MathArrayFloat(code, aIm_, step.s, out->conjugate.data(), n), __LINE__);
      else
        out->conjugate.Assign(aIm_, n);
      break;
    }
    case odb_MathShape::FLOAT_FIELD: {
      const float* aRe = readA(re);
      out->complex = a.complex;
      if (!out->complex) {
        Check(store_MathFloatArray(code, step.s, aRe, re, n), __LINE__);
        break;
      }
      out->conjugate.Resize(n);
      float* im = out->conjugate.data();
      if (code == odb_MATH_DIVIDE) {
        Check(store_MathFloatByComplex(step.s, aRe, aIm_, re, im, n), __LINE__);
      } else {
        Check(store_MathFloatArray(code, step.s, aRe, re, n), __LINE__);
        // s * (x + iy) scales y; s - (x + iy) negates it; s + (x + iy) keeps it.
        if (code == odb_MATH_ADD)
          out->conjugate.Assign(aIm_, n);
        else
          Check(store_MathArrayFloat(odb_MATH_MULTIPLY, aIm_,
                                     code == odb_MATH_MULTIPLY ? step.s : -1.0f, im, n),
                __LINE__);
      }
      break;
    }
    case odb_MathShape::FIELD: {
      out->complex = a.complex && code == odb_MATH_SUBTRACT;
      if (code == odb_MATH_TRANSPOSE) {
        odb_Run<float> scratch;
        scratch.Resize(n);
        store_MathTranspose(readA(scratch.data()), step.rows, step.columns, re,
                            a.Locations());
        out->complex = a.complex;
        if (a.complex) {
          out->conjugate.Resize(n);
          store_MathTranspose(aIm_, step.rows, step.columns, out->conjugate.data(),
                              a.Locations());
        }
      } else if (code >= odb_MATH_COMPLEX_MAGNITUDE && code <= odb_MATH_COMPLEX_IMAG) {
        const float* aRe = readA(re);
        Check(store_MathComplexFunction(code, aRe, aIm_, re, n), __LINE__);
      } else {
        const float* aRe = readA(re);
        Check(store_MathFunction(code, aRe, re, n), __LINE__);
        if (out->complex) {
          out->conjugate.Resize(n);
          Check(store_MathFunction(code, aIm_, out->conjugate.data(), n), __LINE__);
        }
      }
      break;
    }
  }
  step.result = std::move(out);
}

bool IsTensor(odb_Enum::odb_DataTypeEnum type) {
  return store_TensorComponentCount(type) > 0;
}

std::shared_ptr<odb_FieldData> ReadField(const odb_FieldOutput& field) {
  const std::shared_ptr<odb_FieldData>& data = odb_FieldOutputAccess::Data(field);
  data->ReadBlocks();
  return data;
}

// The digits i and j that end a matrix component label "NAMEij"; false for another label.
bool MatrixPlace(const odb_String& label, int& row, int& column) {
  const std::string text = label.CStr();
  if (text.size() < 2) return false;
  const char i = text[text.size() - 2], j = text[text.size() - 1];
  if (i < '1' || i > '9' || j < '1' || j > '9') return false;
  row = i - '0';
  column = j - '0';
  return true;
}

// The rows and columns of a matrix field and the text its component labels start with, from its
// labels ("Mij"), or for labels that do not say, a square of its width and the field's name;
// false when neither gives the width.
bool MatrixShape(const odb_FieldData& field, int width, int& rows, int& columns,
                 std::string& prefix) {
  rows = columns = 0;
  const odb_SequenceString& labels = field.componentLabels;
  bool placed = labels.size() == width && width > 0;
  for (int k = 0; placed && k < labels.size(); ++k) {
    int i = 0, j = 0;
    placed = MatrixPlace(labels[k], i, j);
    rows = std::max(rows, i);
    columns = std::max(columns, j);
  }
  if (placed && rows * columns == width) {
    prefix = labels[0].CStr();
    prefix.resize(prefix.size() - 2);
    return true;
  }
  prefix = field.name.CStr();
  for (rows = 1; rows * rows < width; ++rows) {
  }
  columns = rows;
  return rows * rows == width;
}

// A field's operation over every sub-field; `b` for two fields.
odb_FieldOutput Run(odb_MathStep prototype, odb_FieldData& a, odb_FieldData* b,
                    const odb_String& label) {
  odb_MathUtilAccess::Dispatch(a.type, prototype);  // the code, before anything is read
  std::shared_ptr<odb_FieldData> out = a.EmptyCopy();
  out->name = label;
  out->description = label;
  if (prototype.code == odb_MATH_TRANSPOSE) {
    std::string prefix;
    if (!MatrixShape(a, a.Width(), prototype.rows, prototype.columns, prefix))
      Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
    // Row i of the transpose is column i of the matrix.
    odb_SequenceString labels;
    for (int i = 1; i <= prototype.columns; ++i)
      for (int j = 1; j <= prototype.rows; ++j)
        labels.append(odb_String((prefix + std::to_string(i) + std::to_string(j)).c_str()));
    out->componentLabels = labels;
  }
  for (std::size_t k = 0; k < a.subFields.size(); ++k) {
    odb_MathStep step = prototype;
    step.aShared = a.subFields[k];
    step.a = step.aShared.get();
    step.b = b ? b->subFields[k].get() : nullptr;
    odb_MathUtilAccess::Dispatch(a.type, step);
    out->subFields.push_back(std::move(step.result));
  }
  return odb_FieldOutputAccess::Make(out);
}

}  // namespace

void odb_MathUtilAccess::Dispatch(odb_Enum::odb_DataTypeEnum type, odb_MathStep& step) {
  if (type == odb_Enum::SCALAR)
    odb_MathUtil::ScalarfieldOperation(step);
  else if (type == odb_Enum::VECTOR)
    odb_MathUtil::VectorfieldOperation(step);
  else if (type == odb_Enum::MATRIX)
    odb_MathUtil::MatrixfieldOperation(step);
  else if (IsTensor(type))
    odb_MathUtil::TensorfieldOperation(step);
  else
    Fail(odb_MessageText_UNKNOWN_TYPE, {}, __LINE__);
}

void odb_MathUtil::ScalarfieldOperation(odb_MathStep& step) {
  CheckCode(step, true, false, odb_MessageText_INVALID_OPERATION);
  if (step.a) Compute(step);
}
void odb_MathUtil::VectorfieldOperation(odb_MathStep& step) {
  CheckCode(step, false, false, odb_MessageText_VECTORS);
  if (step.a) Compute(step);
}
void odb_MathUtil::MatrixfieldOperation(odb_MathStep& step) {
  CheckCode(step, false, true, odb_MessageText_MATRICES);
  if (step.a) Compute(step);
}
void odb_MathUtil::TensorfieldOperation(odb_MathStep& step) {
  CheckCode(step, false, false, odb_MessageText_TENSORS);
  if (step.a) Compute(step);
}

odb_FieldOutput odb_MathUtil::fieldOperation(const odb_FieldOutput& a, const odb_FieldOutput& b,
                                             int code) {
  if (code < 0 || code > odb_MATH_ADD) Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
  std::shared_ptr<odb_FieldData> first = ReadField(a), second = ReadField(b);
  if (first->type != second->type)
    Fail(odb_MessageText_INCOMPATIBLE_TYPES,
         {odb_DataTypeLabel(first->type), odb_DataTypeLabel(second->type)}, __LINE__);
  odb_MathStep step;
  step.code = code;
  step.shape = odb_MathShape::FIELD_FIELD;
  odb_MathUtilAccess::Dispatch(first->type, step);
  if (first->subFields.size() != second->subFields.size())
    Fail(odb_MessageText_SIZED_REQUESTS, {}, __LINE__);
  return Run(step, *first, second.get(), Label(first->name, code, second->name));
}

odb_FieldOutput odb_MathUtil::fieldOperation(const odb_FieldOutput& a, float b, int code) {
  std::shared_ptr<odb_FieldData> field = ReadField(a);
  odb_MathStep step;
  step.code = code;
  step.shape = odb_MathShape::FIELD_FLOAT;
  step.s = b;
  return Run(step, *field, nullptr, Label(field->name, code, FloatText(b)));
}

odb_FieldOutput odb_MathUtil::fieldOperation(float a, const odb_FieldOutput& b, int code) {
  std::shared_ptr<odb_FieldData> field = ReadField(b);
  odb_MathStep step;
  step.code = code;
  step.shape = odb_MathShape::FLOAT_FIELD;
  step.s = a;
  return Run(step, *field, nullptr, Label(FloatText(a), code, field->name));
}

odb_FieldOutput odb_MathUtil::fieldOperation(const odb_FieldOutput& a, int code) {
  std::shared_ptr<odb_FieldData> field = ReadField(a);
  odb_MathStep step;
  step.code = code;
  step.shape = odb_MathShape::FIELD;
  if (!odb_MathOperationText(code)) Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
  return Run(step, *field, nullptr, Label(code, field->name));
}

// Field values: the same checks on one value's floats.
namespace {

odb_FieldValue ValueOperation(const odb_FieldValue& a, const odb_FieldValue* b, float s, int code,
                              odb_MathShape shape) {
  odb_MathStep step;
  step.code = code;
  step.shape = shape;
  if (b && a.type() != b->type()) Fail(odb_MathUtil_VALUE_TYPES, {}, __LINE__);
  odb_MathUtilAccess::Dispatch(a.type(), step);
  if (code == odb_MATH_TRANSPOSE) Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
  const int n = a.fieldValueData().size();
  if (b && b->fieldValueData().size() != n) Fail(odb_MessageText_AMOUNT, {}, __LINE__);
  const odb_FieldValueData& aIm = a.conjugateFieldValueData();
  const float* aRe = a.fieldValueData().data();
  const float* aImag = aIm.size() == n && n ? aIm.data() : nullptr;
  odb_FieldValueData outRe(n), outIm(n);
  bool complex = false;
  switch (shape) {
    case odb_MathShape::FIELD_FIELD: {
      const odb_FieldValueData& bIm = b->conjugateFieldValueData();
      const float* bImag = bIm.size() == n && n ? bIm.data() : nullptr;
      complex = aImag || bImag;
      if (complex)
        Check(store_MathComplexArrays(code, aRe, aImag, b->fieldValueData().data(), bImag,
                                      outRe.data(), outIm.data(), n),
              __LINE__);
      else
        Check(store_MathArrays(code, aRe, b->fieldValueData().data(), outRe.data(), n), __LINE__);
      break;
    }
    case odb_MathShape::FIELD_FLOAT:
      Check(store_MathArrayFloat(code, aRe, s, outRe.data(), n), __LINE__);
      complex = aImag && code != odb_MATH_POWER;
      if (complex && code <= odb_MATH_DIVIDE)
        Check(store_MathArrayFloat(code, aImag, s, outIm.data(), n), __LINE__);
      else if (complex)
        outIm.assign(aImag, n);
      break;
    case odb_MathShape::FLOAT_FIELD:
      complex = aImag != nullptr;
      if (complex && code == odb_MATH_DIVIDE) {
        Check(store_MathFloatByComplex(s, aRe, aImag, outRe.data(), outIm.data(), n), __LINE__);
        break;
      }
      Check(store_MathFloatArray(code, s, aRe, outRe.data(), n), __LINE__);
      if (complex && code == odb_MATH_ADD)
        outIm.assign(aImag, n);
      else if (complex)
        Check(store_MathArrayFloat(odb_MATH_MULTIPLY, aImag, code == odb_MATH_MULTIPLY ? s : -1.0f,
                                   outIm.data(), n),
              __LINE__);
      break;
    case odb_MathShape::FIELD:
      if (code >= odb_MATH_COMPLEX_MAGNITUDE && code <= odb_MATH_COMPLEX_IMAG) {
        Check(store_MathComplexFunction(code, aRe, aImag, outRe.data(), n), __LINE__);
        break;
      }
      Check(store_MathFunction(code, aRe, outRe.data(), n), __LINE__);
      complex = aImag && code == odb_MATH_SUBTRACT;
      if (complex) Check(store_MathFunction(code, aImag, outIm.data(), n), __LINE__);
      break;
  }
  odb_FieldValue out = a;
  out.SetData(outRe.data(), n);
  out.SetConjugateData(outIm.data(), complex ? n : 0);
  return out;
}

}  // namespace

odb_FieldValue odb_MathUtil::fieldValueOperation(const odb_FieldValue& a, const odb_FieldValue& b,
                                                 int code) {
  if (code < 0 || code > odb_MATH_ADD) Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
  return ValueOperation(a, &b, 0.0f, code, odb_MathShape::FIELD_FIELD);
}
odb_FieldValue odb_MathUtil::fieldValueOperation(const odb_FieldValue& a, float b, int code) {
  return ValueOperation(a, nullptr, b, code, odb_MathShape::FIELD_FLOAT);
}
odb_FieldValue odb_MathUtil::fieldValueOperation(float a, const odb_FieldValue& b, int code) {
  return ValueOperation(b, nullptr, a, code, odb_MathShape::FLOAT_FIELD);
}
odb_FieldValue odb_MathUtil::fieldValueOperation(const odb_FieldValue& a, int code) {
  return ValueOperation(a, nullptr, 0.0f, code, odb_MathShape::FIELD);
}

// History outputs: the values of the pairs, the times of the first operand.
namespace {

odb_HistoryOutput HistoryOperation(const odb_HistoryOutput& a, const odb_HistoryOutput* b,
                                   float s, int code, odb_MathShape shape,
                                   const odb_String& label) {
  if (a.type() != odb_Enum::SCALAR || (b && b->type() != odb_Enum::SCALAR))
    Fail(odb_MessageText_SCALAR_EXPECTED, {}, __LINE__);
  odb_MathStep step;
  step.code = code;
  step.shape = shape;
  odb_MathUtilAccess::Dispatch(odb_Enum::SCALAR, step);
  const odb_HistoryData data = a.data(), conjugate = a.conjugateData();
  const std::size_t n = static_cast<std::size_t>(data.size());
  const float* aIm = conjugate.size() == data.size() && n ? conjugate.values() : nullptr;
  odb_HistoryData other, otherConjugate;
  const float* bIm = nullptr;
  if (b) {
    if (odb_HistoryOutputAccess::Data(a)->loadCase != odb_HistoryOutputAccess::Data(*b)->loadCase)
      Fail(odb_MessageText_LOAD_CASE, {}, __LINE__);
    other = b->data();
    otherConjugate = b->conjugateData();
    if (other.size() != data.size()) Fail(odb_MessageText_AMOUNT, {}, __LINE__);
    if (other.times() != data.times() &&
        std::memcmp(other.times(), data.times(), n * sizeof(double)) != 0)
      Fail(odb_MessageText_LOCATIONS, {}, __LINE__);
    bIm = otherConjugate.size() == other.size() && n ? otherConjugate.values() : nullptr;
  }
  auto pairs = std::make_shared<odb_HistoryPairs>();
  pairs->times.assign(data.times(), data.times() + n);
  pairs->values.resize(n);
  float* re = pairs->values.data();
  store_LargeVector<float> im;
  bool complex = false;
  switch (shape) {
    case odb_MathShape::FIELD_FIELD:
      complex = aIm || bIm;
      if (!complex) {
        Check(store_MathArrays(code, data.values(), other.values(), re, n), __LINE__);
        break;
      }
      im.resize(n);
      Check(store_MathComplexArrays(code, data.values(), aIm, other.values(), bIm, re, im.data(),
                                    n),
            __LINE__);
      break;
    case odb_MathShape::FIELD_FLOAT:
      Check(store_MathArrayFloat(code, data.values(), s, re, n), __LINE__);
      complex = aIm && code != odb_MATH_POWER;
      if (!complex) break;
      im.resize(n);
      if (code <= odb_MATH_DIVIDE)
        Check(store_MathArrayFloat(code, aIm, s, im.data(), n), __LINE__);
      else
        im.assign(aIm, aIm + n);
      break;
    case odb_MathShape::FLOAT_FIELD:
      complex = aIm != nullptr;
      if (!complex) {
        Check(store_MathFloatArray(code, s, data.values(), re, n), __LINE__);
        break;
      }
      im.resize(n);
      if (code == odb_MATH_DIVIDE) {
        Check(store_MathFloatByComplex(s, data.values(), aIm, re, im.data(), n), __LINE__);
        break;
      }
      Check(store_MathFloatArray(code, s, data.values(), re, n), __LINE__);
      if (code == odb_MATH_ADD)
        im.assign(aIm, aIm + n);
      else
        Check(store_MathArrayFloat(odb_MATH_MULTIPLY, aIm, code == odb_MATH_MULTIPLY ? s : -1.0f,
                                   im.data(), n),
              __LINE__);
      break;
    case odb_MathShape::FIELD:
      if (code >= odb_MATH_COMPLEX_MAGNITUDE && code <= odb_MATH_COMPLEX_IMAG) {
        Check(store_MathComplexFunction(code, data.values(), aIm, re, n), __LINE__);
        break;
      }
      Check(store_MathFunction(code, data.values(), re, n), __LINE__);
      complex = aIm && code == odb_MATH_SUBTRACT;
      if (complex) {
        im.resize(n);
        Check(store_MathFunction(code, aIm, im.data(), n), __LINE__);
      }
      break;
  }
  auto out = std::make_shared<odb_HistoryOutputData>();
  out->name = label;
  out->description = label;
  out->type = odb_Enum::SCALAR;
  out->loadCase = odb_HistoryOutputAccess::Data(a)->loadCase;
  if (complex) {
    auto conjugatePairs = std::make_shared<odb_HistoryPairs>();
    conjugatePairs->times = pairs->times;
    conjugatePairs->values = std::move(im);
    out->conjugate = std::move(conjugatePairs);
  }
  out->pairs = std::move(pairs);
  return odb_HistoryOutputAccess::Make(std::move(out));
}

}  // namespace

odb_HistoryOutput odb_MathUtil::historyOperation(const odb_HistoryOutput& a,
                                                 const odb_HistoryOutput& b, int code) {
  if (code < 0 || code > odb_MATH_ADD) Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
  return HistoryOperation(a, &b, 0.0f, code, odb_MathShape::FIELD_FIELD,
                          Label(a.name(), code, b.name()));
}
odb_HistoryOutput odb_MathUtil::historyOperation(const odb_HistoryOutput& a, float b, int code) {
  return HistoryOperation(a, nullptr, b, code, odb_MathShape::FIELD_FLOAT,
                          Label(a.name(), code, FloatText(b)));
}
odb_HistoryOutput odb_MathUtil::historyOperation(float a, const odb_HistoryOutput& b, int code) {
  return HistoryOperation(b, nullptr, a, code, odb_MathShape::FLOAT_FIELD,
                          Label(FloatText(a), code, b.name()));
}
odb_HistoryOutput odb_MathUtil::historyOperation(const odb_HistoryOutput& a, int code) {
  if (!odb_MathOperationText(code)) Fail(odb_MessageText_INVALID_OPERATION, {}, __LINE__);
  return HistoryOperation(a, nullptr, 0.0f, code, odb_MathShape::FIELD, Label(code, a.name()));
}

// The operators and functions: one call each, with the code of the operation.
#define ODB_MATH_DEFINE(T, OPERATION)                                                              \
  T operator*(const T& a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_MULTIPLY); } \
  T operator*(const T& a, float b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_MULTIPLY); }   \
  T operator*(float a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_MULTIPLY); }   \
  T operator/(const T& a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_DIVIDE); }   \
  T operator/(const T& a, float b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_DIVIDE); }     \
  T operator/(float a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_DIVIDE); }     \
  T operator-(const T& a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_SUBTRACT); } \
  T operator-(const T& a, float b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_SUBTRACT); }   \
  T operator-(float a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_SUBTRACT); }   \
  T operator+(const T& a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_ADD); }      \
  T operator+(const T& a, float b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_ADD); }        \
  T operator+(float a, const T& b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_ADD); }        \
  T operator-(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_SUBTRACT); }               \
  T power(const T& a, float b) { return odb_MathUtil::OPERATION(a, b, odb_MATH_POWER); }          \
  T abs(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_ABS); }                          \
  T complexMagnitude(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_COMPLEX_MAGNITUDE); } \
  T complexPhase(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_COMPLEX_PHASE); }       \
  T complexReal(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_COMPLEX_REAL); }         \
  T complexImag(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_COMPLEX_IMAG); }         \
  T acos(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_ACOS); }                        \
  T asin(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_ASIN); }                        \
  T atan(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_ATAN); }                        \
  T cos(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_COS); }                          \
  T sin(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_SIN); }                          \
  T tan(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_TAN); }                          \
  T degreeToRadian(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_DEGREE_TO_RADIAN); }  \
  T radianToDegree(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_RADIAN_TO_DEGREE); }  \
  T exp(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_EXP); }                          \
  T exp10(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_EXP10); }                      \
  T log(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_LOG); }                          \
  T log10(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_LOG10); }                      \
  T sqrt(const T& a) { return odb_MathUtil::OPERATION(a, odb_MATH_SQRT); }
ODB_MATH_DEFINE(odb_FieldOutput, fieldOperation)
ODB_MATH_DEFINE(odb_FieldValue, fieldValueOperation)
ODB_MATH_DEFINE(odb_HistoryOutput, historyOperation)
#undef ODB_MATH_DEFINE

odb_FieldOutput transpose(const odb_FieldOutput& a) {
  return odb_MathUtil::fieldOperation(a, odb_MATH_TRANSPOSE);
}
