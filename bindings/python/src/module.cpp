// The extension module quorvane._native: the checked C++ header over numpy's arrays. Its Python half gives
// these functions their names, defaults and descriptions.
#include "entry_point.h"
#include "utilities.h"

PYBIND11_MODULE(_native, module) {
  module.doc() = "The compiled half of quorvane.";
  quorvane::python::bind_failures(module);
  quorvane::python::bind_corrections(module);
  quorvane::python::bind_conversions(module);
  quorvane::python::bind_utilities(module);
}
