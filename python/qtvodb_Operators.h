// The one place where Python operators on field outputs are bound (arithmetic, functions of
// fields, envelopes): each wraps a library call that returns a new field output.
#ifndef QTVODB_OPERATORS_H
#define QTVODB_OPERATORS_H

#include "qtvodb_Core.h"

namespace qtvodb {

// Adds the operators to the FieldOutput class, and the functions of fields and the envelopes to
// the module.
void BindFieldOperators(py::module_& m, py::class_<Held<odb_FieldOutput>>& field);

}  // namespace qtvodb

#endif
