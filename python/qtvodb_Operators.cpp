// Operators on field outputs. The library has no field arithmetic yet, so none is bound: the
// FieldOutput class gets its operators here once the library offers them, each as
//
//   field.def("__add__", [](Held<odb_FieldOutput>& a, Held<odb_FieldOutput>& b) {
//     return Own(Released(*a.ctx, [&] { return Hold(a.ctx, <library call on a.get(), b.get()>);
//     }));
//   });
//
// (operands of two databases need both mutexes: refuse them, or copy one field first).
#include "qtvodb_Operators.h"

namespace qtvodb {

void BindFieldOperators(py::class_<Held<odb_FieldOutput>>& /*field*/) {}

}  // namespace qtvodb
