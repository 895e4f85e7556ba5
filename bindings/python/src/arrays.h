// numpy's arrays as the buffers of the checked header: shapes and dtypes are compared with what a format
// holds, lines may be padded, and whatever else lies otherwise in memory is copied (sources) or refused
// (pictures).
#pragma once

#include <pybind11/numpy.h>

#include <optional>
#include <utility>

#include "failures.h"

namespace quorvane::python {

/// Width and height.
using SizeTuple = std::optional<std::pair<std::uint32_t, std::uint32_t>>;

/// A frame that was handed over. `array` owns what `bytes` points to.
struct SourceArray {
  py::array array;
  Source bytes;
  Size size;
};

/// "uint8", "<u2" and so on.
std::string dtype_name(const py::array& array);
/// "(480, 640)".
std::string shape_text(const py::array& array);

bool is_bytes(const py::array& array);
bool is_words(const py::array& array);
/// Of an array of words: whether the least significant byte comes first.
bool is_little(const py::array& array);

/// The frame in an array of bytes or words: (height, width) or (height, width, bytes of a pixel) where a
/// pixel has whole bytes of its own, (height, bytes of a line) where some share bytes, and any other shape of
/// one or two axes if `size` is told.
SourceArray source_array(const py::array& array, std::string_view format, const Layout& layout,
                         const SizeTuple& size);

/// What a picture of that form is kept in.
py::dtype picture_dtype(const PictureForm& form);
std::vector<py::ssize_t> picture_shape(const PictureForm& form, Size size);

/// A caller's array for the picture, which must have that dtype and shape and lines without gaps inside.
py::array checked_out(const py::object& out, const PictureForm& form, Size size);

/// The planes of a picture; one of other pictures.
std::array<Destination, 4> destinations(const py::array& picture, const PictureForm& form);

}  // namespace quorvane::python
