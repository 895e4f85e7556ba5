#include "failures.h"

namespace quorvane::python {
namespace {

/// Lives as long as the interpreter: the module refers to it, and is never unloaded.
PyObject* error_class = nullptr;

}  // namespace

void bind_failures(py::module_& module) {
  error_class =
      PyErr_NewExceptionWithDoc("quorvane.Error",
                                "A call that the library refuses, or that would leave its buffers.\n\n"
                                "Attributes\n"
                                "----------\n"
                                "status : int\n"
                                "    What the library says of it; `status_text` explains it.",
                                PyExc_ValueError, nullptr);
  if (error_class == nullptr) {
    throw py::error_already_set();
  }
  module.attr("Error") = py::handle(error_class);
}

void raise(const Failure& failure) {
  if (failure.cause == Cause::kMemory) {
    PyErr_SetString(PyExc_MemoryError, failure.message.c_str());
    throw py::error_already_set();
  }
  py::object error = py::handle(error_class)(failure.message);
  error.attr("status") = failure.status;
  PyErr_SetObject(error_class, error.ptr());
  throw py::error_already_set();
}

}  // namespace quorvane::python
