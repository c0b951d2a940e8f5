// The library's exceptions as Python's: odb_Exception becomes qtvodb.OdbError with the library's
// message (and its code as `code`), the library's warnings qtvodb.OdbWarning.
#include "qtvodb_Core.h"

namespace qtvodb {

namespace {

py::handle g_error;
py::handle g_warning;

}  // namespace

py::handle& WarningCategory() {
  return g_warning;
}

void BindErrors(py::module_& m) {
  // The class is named as the library's exceptions name themselves for a scripting layer.
  const std::string errorName = odb_Exception(6).PythonType();
  // Both classes live as long as the module's dictionary holds them: for the process.
  g_error = py::exception<LibraryError>(m, errorName.c_str(), PyExc_Exception).release();
  g_error.attr("__doc__") =
      "An error of the library: its message is the library's, `code` its number (6 for most).";
  g_warning = py::exception<void>(m, "OdbWarning", PyExc_UserWarning).release();
  g_warning.attr("__doc__") =
      "A warning of the library (a read-only save, an unknown element type ...).";
  m.attr(errorName.c_str()) = g_error;
  m.attr("OdbWarning") = g_warning;

  py::register_exception_translator([](std::exception_ptr p) {
    try {
      if (p) std::rethrow_exception(p);
    } catch (const LibraryError& e) {
      py::object error = g_error(py::str(e.what()));
      error.attr("code") = e.code;
      PyErr_SetObject(g_error.ptr(), error.ptr());
    } catch (const odb_Exception& e) {
      // Only from code that called the library outside Locked or Released: none should.
      PyErr_SetString(g_error.ptr(), e.what());
    }
  });
}

}  // namespace qtvodb
