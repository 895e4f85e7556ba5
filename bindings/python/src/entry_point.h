// convert() as Python calls it, and the listings of the table.
#pragma once

#include "conversion.h"

namespace quorvane::python {

/// Adds them to the module.
void bind_conversions(py::module_& module);

}  // namespace quorvane::python
