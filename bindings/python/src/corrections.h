// Colour corrections as Python objects, which can be pickled: worker processes get them with their frames.
#pragma once

#include <string>

#include "arrays.h"

namespace quorvane::python {

/// A correction and the call that made it.
struct MadeCorrection {
  Correction correction;
  std::string maker;
  py::tuple arguments;
};

/// A matrix for finished pictures and its numbers.
struct MadeMatrix {
  ClampedMatrix matrix;
  Matrix numbers;
};

/// Adds Correction and ClampedMatrix to the module.
void bind_corrections(py::module_& module);

}  // namespace quorvane::python
