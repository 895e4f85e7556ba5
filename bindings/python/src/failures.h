// How refusals reach Python: quorvane.Error, a ValueError that knows the library's status.
#pragma once

#include <pybind11/pybind11.h>

#include <quorvane.hpp>

namespace quorvane::python {

namespace py = pybind11;

/// Adds the class to the module.
void bind_failures(py::module_& module);

/// MemoryError where there was no memory, quorvane.Error for all else.
[[noreturn]] void raise(const Failure& failure);

inline void check(const Result<void>& result) {
  if (!result) {
    raise(result.failure());
  }
}

}  // namespace quorvane::python
