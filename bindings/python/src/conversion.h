// convert() over arrays: from what Python says to a checked call.
#pragma once

#include <string_view>

#include "corrections.h"

namespace quorvane::python {

/// All that Python says of a conversion, beside the array.
struct Request {
  std::string_view source;
  std::string_view pattern;
  std::optional<std::string_view> method;
  std::optional<std::string_view> target;
  SizeTuple size;
  py::object out;
  std::size_t bands = 1;
  bool opaque = false;
  const MadeCorrection* correction = nullptr;
  const MadeMatrix* matrix = nullptr;
  std::uint32_t shift = 0;
  std::optional<std::uint32_t> bits;
  std::optional<std::string_view> alignment;
  bool overwrite = false;
};

/// The picture, which is `out` if there is one.
py::object convert(const py::array& given, const Request& request);

}  // namespace quorvane::python
