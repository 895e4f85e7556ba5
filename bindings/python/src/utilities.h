// Queries, flips, fields, packed samples, resampled lines and the SIS, over contiguous arrays of bytes.
#pragma once

#include "arrays.h"

namespace quorvane::python {

/// Adds them to the module. What arrays and numbers mean together is settled in _utilities.py.
void bind_utilities(py::module_& module);

}  // namespace quorvane::python
