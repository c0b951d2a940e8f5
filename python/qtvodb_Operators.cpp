// Operators on field outputs: arithmetic with fields and floats, the functions of fields
// (qtvodb.sqrt, qtvodb.power ...) and the envelopes. Each result is a new computed field of the
// first operand's database, made with the GIL let go.
//
// The operands of one operation belong to one database file: a result keeps handles into its
// operands' objects and is read under one file's lock, so fields of two files are refused with a
// ValueError (compare two runs with numpy on their values_array() instead).
#include "qtvodb_Operators.h"

#include <string>
#include <vector>

namespace qtvodb {

namespace {

using Field = Held<odb_FieldOutput>;

void OneFile(const Field& a, const Field& b) {
  if (a.ctx != b.ctx)
    throw py::value_error("fields of two database files (" + a.ctx->path + ", " + b.ctx->path +
                          ") cannot be combined; compare their values_array() with numpy");
}

// The field `f(a...)` computes, owned by Python.
template <class F>
py::object Computed(Field& a, F&& f) {
  return Own(Released(*a.ctx, [&] { return Hold(a.ctx, f()); }));
}

py::object Binary(Field& a, Field& b, int code) {
  OneFile(a, b);
  return Computed(a, [&] { return odb_MathUtil::fieldOperation(a.get(), b.get(), code); });
}
py::object WithFloat(Field& a, float b, int code) {
  return Computed(a, [&] { return odb_MathUtil::fieldOperation(a.get(), b, code); });
}
py::object FloatWith(float a, Field& b, int code) {
  return Computed(b, [&] { return odb_MathUtil::fieldOperation(a, b.get(), code); });
}

// The fields of `items`, all of one file; the first one's context.
CtxPtr FieldsOf(const py::sequence& items, std::vector<Field*>& fields) {
  for (const py::handle item : items) fields.push_back(&item.cast<Field&>());
  if (fields.empty()) throw py::value_error("an envelope needs at least one field");
  for (Field* f : fields) OneFile(*fields.front(), *f);
  return fields.front()->ctx;
}

// maxEnvelope or minEnvelope of `fields` by value, by an invariant or by a component label:
// (envelope, indices).
py::tuple Envelope(const py::sequence& items, const py::object& invariant,
                   const py::object& component, bool greatest) {
  if (!invariant.is_none() && !component.is_none())
    throw py::value_error("give an invariant or a component, not both");
  std::vector<Field*> fields;
  const CtxPtr ctx = FieldsOf(items, fields);
  std::optional<odb_Enum::odb_InvariantEnum> which;
  if (!invariant.is_none()) which = ToEnum<odb_Enum::odb_InvariantEnum>(invariant, "invariant");
  std::optional<std::string> label;
  if (!component.is_none()) label = component.cast<std::string>();
  std::vector<HeldPtr<odb_FieldOutput>> both = Released(*ctx, [&] {
    odb_SequenceFieldOutput sequence;
    for (Field* f : fields) sequence.append(f->get());
    odb_SequenceFieldOutput result;
    if (which)
      result = greatest ? maxEnvelope(sequence, *which) : minEnvelope(sequence, *which);
    else if (label)
      result = greatest ? maxEnvelope(sequence, odb_String(label->c_str()))
                        : minEnvelope(sequence, odb_String(label->c_str()));
    else
      result = greatest ? maxEnvelope(sequence) : minEnvelope(sequence);
    std::vector<HeldPtr<odb_FieldOutput>> out;
    for (int i = 0; i < result.size(); ++i) out.push_back(Hold(ctx, result[i]));
    return out;
  });
  return py::make_tuple(Own(std::move(both.at(0))), Own(std::move(both.at(1))));
}

}  // namespace

void BindFieldOperators(py::module_& m, py::class_<Field>& field) {
  const auto op = py::is_operator();
  field
      .def(
          "__add__", [](Field& a, Field& b) { return Binary(a, b, odb_MATH_ADD); }, op)
      .def(
          "__add__", [](Field& a, float b) { return WithFloat(a, b, odb_MATH_ADD); }, op)
      .def(
          "__radd__", [](Field& b, float a) { return FloatWith(a, b, odb_MATH_ADD); }, op)
      .def(
          "__sub__", [](Field& a, Field& b) { return Binary(a, b, odb_MATH_SUBTRACT); }, op)
      .def(
          "__sub__", [](Field& a, float b) { return WithFloat(a, b, odb_MATH_SUBTRACT); }, op)
      .def(
          "__rsub__", [](Field& b, float a) { return FloatWith(a, b, odb_MATH_SUBTRACT); }, op)
      .def(
          "__mul__", [](Field& a, Field& b) { return Binary(a, b, odb_MATH_MULTIPLY); }, op)
      .def(
          "__mul__", [](Field& a, float b) { return WithFloat(a, b, odb_MATH_MULTIPLY); }, op)
      .def(
          "__rmul__", [](Field& b, float a) { return FloatWith(a, b, odb_MATH_MULTIPLY); }, op)
      .def(
          "__truediv__", [](Field& a, Field& b) { return Binary(a, b, odb_MATH_DIVIDE); }, op)
      .def(
          "__truediv__", [](Field& a, float b) { return WithFloat(a, b, odb_MATH_DIVIDE); }, op)
      .def(
          "__rtruediv__", [](Field& b, float a) { return FloatWith(a, b, odb_MATH_DIVIDE); }, op)
      .def(
          "__pow__", [](Field& a, float b) { return WithFloat(a, b, odb_MATH_POWER); }, op)
      .def("__neg__", [](Field& a) { return Computed(a, [&] { return -a.get(); }); })
      .def("__abs__", [](Field& a) { return Computed(a, [&] { return abs(a.get()); }); });

  // The functions of one field, by their Python names.
  struct Function {
    const char* name;
    odb_FieldOutput (*apply)(const odb_FieldOutput&);
  };
  static const Function functions[] = {{"sqrt", &sqrt},
                                       {"exp", &exp},
                                       {"exp10", &exp10},
                                       {"log", &log},
                                       {"log10", &log10},
                                       {"sin", &sin},
                                       {"cos", &cos},
                                       {"tan", &tan},
                                       {"asin", &asin},
                                       {"acos", &acos},
                                       {"atan", &atan},
                                       {"degree_to_radian", &degreeToRadian},
                                       {"radian_to_degree", &radianToDegree},
                                       {"complex_magnitude", &complexMagnitude},
                                       {"complex_phase", &complexPhase},
                                       {"complex_real", &complexReal},
                                       {"complex_imag", &complexImag},
                                       {"transpose", &transpose}};
  for (const Function& f : functions) {
    const auto apply = f.apply;
    m.def(
        f.name, [apply](Field& a) { return Computed(a, [&] { return apply(a.get()); }); },
        py::arg("field"), "A new computed field, the function applied to every component.");
  }
  m.def(
      "power", [](Field& a, float exponent) { return WithFloat(a, exponent, odb_MATH_POWER); },
      py::arg("field"), py::arg("exponent"), "Every component raised to `exponent`.");
  m.def(
      "max_envelope",
      [](const py::sequence& fields, const py::object& invariant, const py::object& component) {
        return Envelope(fields, invariant, component, true);
      },
      py::arg("fields"), py::arg("invariant") = py::none(), py::arg("component") = py::none(),
      "The greatest value at each location over `fields` (by value, an invariant or a component "
      "label) and the index of the field it came from: (envelope, indices).");
  m.def(
      "min_envelope",
      [](const py::sequence& fields, const py::object& invariant, const py::object& component) {
        return Envelope(fields, invariant, component, false);
      },
      py::arg("fields"), py::arg("invariant") = py::none(), py::arg("component") = py::none(),
      "The least value at each location over `fields`, and the index of the field it came from.");
}

}  // namespace qtvodb
