#include "arrays.h"

namespace quorvane::python {
namespace {

std::string text_of(const std::vector<py::ssize_t>& shape) {
  std::string text = "(";
  for (std::size_t i = 0; i < shape.size(); ++i) {
    text += (i == 0 ? "" : ", ") + std::to_string(shape[i]);
  }
  return text + (shape.size() == 1 ? ",)" : ")");
}

/// Bytes from one line to the next where a line's own bytes follow each other, else nothing. `axis` is that
/// of the lines.
std::optional<std::size_t> pitch_of(const py::array& array, py::ssize_t axis) {
  py::ssize_t tight = array.itemsize();
  for (py::ssize_t i = array.ndim() - 1; i > axis; --i) {
    if (array.shape(i) != 1 && array.strides(i) != tight) {
      return std::nullopt;
    }
    tight *= array.shape(i);
  }
  const py::ssize_t pitch = array.shape(axis) > 1 ? array.strides(axis) : tight;
  return pitch < tight ? std::nullopt : std::optional(static_cast<std::size_t>(pitch));
}

std::uint32_t axis_length(py::ssize_t length) {
  if (static_cast<std::uint64_t>(length) > kMaxPixels * 4) {
    throw py::value_error("expected an axis of at most " + std::to_string(kMaxPixels * 4) + ", found " +
                          std::to_string(length));
  }
  return static_cast<std::uint32_t>(length);
}

std::string wanted_shape(const Layout& layout, const py::array& array) {
  if (layout.group > 1 && layout.bytes % layout.group != 0) {
    return "(height, bytes of a line)";
  }
  const auto values = layout.bytes / layout.group / static_cast<std::uint32_t>(array.itemsize());
  return values == 1 ? "(height, width)" : "(height, width, " + std::to_string(values) + ")";
}

/// The size that the shape tells, or nothing where it tells none.
std::optional<Size> size_of(const py::array& array, std::string_view format, const Layout& layout) {
  const bool whole = layout.bytes % layout.group == 0;
  const auto values =
      static_cast<py::ssize_t>(layout.bytes / layout.group / static_cast<std::uint32_t>(array.itemsize()));
  if (whole && ((array.ndim() == 2 && values == 1) || (array.ndim() == 3 && array.shape(2) == values))) {
    return Size{axis_length(array.shape(1)), axis_length(array.shape(0))};
  }
  if (whole || array.ndim() != 2) {
    return std::nullopt;
  }
  const std::uint32_t line = axis_length(array.shape(1));
  if (line % layout.bytes != 0) {
    throw py::value_error(std::string(format) + ": expected lines of whole groups of " +
                          std::to_string(layout.bytes) + " bytes, " + std::to_string(layout.group) +
                          " pixels each, found lines of " + std::to_string(line) + " bytes");
  }
  return Size{line / layout.bytes * layout.group, axis_length(array.shape(0))};
}

}  // namespace

std::string dtype_name(const py::array& array) { return py::str(py::handle(array.dtype())); }

std::string shape_text(const py::array& array) {
  return text_of({array.shape(), array.shape() + array.ndim()});
}

bool is_bytes(const py::array& array) { return array.dtype().kind() == 'u' && array.itemsize() == 1; }
bool is_words(const py::array& array) { return array.dtype().kind() == 'u' && array.itemsize() == 2; }
bool is_little(const py::array& array) {
  const char order = array.dtype().byteorder();
  return order == '<' || (order == '=' && std::endian::native == std::endian::little);
}

SourceArray source_array(const py::array& array, std::string_view format, const Layout& layout,
                         const SizeTuple& told) {
  const std::optional<Size> found = size_of(array, format, layout);
  if (!found && !told) {
    throw py::value_error(std::string(format) + ": expected shape " + wanted_shape(layout, array) +
                          ", or one of one or two axes and size=(width, height), found " + shape_text(array));
  }
  const Size size = told ? Size{told->first, told->second} : *found;
  if (found && *found != size) {
    throw py::value_error(std::string(format) + ": expected the shape of a frame of " +
                          std::to_string(size.width) + "x" + std::to_string(size.height) + ", found " +
                          shape_text(array));
  }
  if (size.pixels() > kMaxPixels) {
    throw py::value_error(std::string(format) + ": expected at most " + std::to_string(kMaxPixels) +
                          " pixels, found " + std::to_string(size.width) + "x" + std::to_string(size.height));
  }
  // Lines of a run of pixels may share bytes, so that only the whole counts there.
  const std::uint64_t bytes = size.pixels() / layout.group * layout.bytes;
  const bool lines = array.ndim() > 1 && static_cast<std::uint64_t>(array.shape(0)) == size.height;
  if (array.ndim() < 1 || (array.ndim() > 2 && !found) ||
      static_cast<std::uint64_t>(array.nbytes()) != bytes) {
    throw py::value_error(std::string(format) + ": expected " + std::to_string(bytes) + " bytes for " +
                          std::to_string(size.width) + "x" + std::to_string(size.height) + ", found " +
                          std::to_string(array.nbytes()) + " in an array of shape " + shape_text(array));
  }
  const auto line = static_cast<std::uint64_t>(size.height == 0 ? 0 : bytes / size.height);
  const std::optional<std::size_t> pitch = lines ? pitch_of(array, 0) : std::nullopt;
  if (pitch && *pitch != line) {
    const std::size_t extent = size.height == 0 ? 0 : (size.height - 1) * *pitch + line;
    return {array, Source(array.data(), extent, *pitch), size};
  }
  const bool tight = (array.flags() & py::array::c_style) != 0;
  const py::array kept = tight ? array : py::array(array.attr("copy")("C"));
  return {kept, Source(kept.data(), bytes, 0), size};
}

py::dtype picture_dtype(const PictureForm& form) {
  return form.depth == 16 ? py::dtype::of<std::uint16_t>() : py::dtype::of<std::uint8_t>();
}

std::vector<py::ssize_t> picture_shape(const PictureForm& form, Size size) {
  std::vector<py::ssize_t> shape;
  if (form.planes > 1) {
    shape.push_back(form.planes);
  }
  shape.push_back(size.height);
  shape.push_back(size.width);
  const std::uint32_t values = form.pixel_bytes * 8 / form.depth;
  if (values > 1) {
    shape.push_back(values);
  }
  return shape;
}

py::array checked_out(const py::object& out, const PictureForm& form, Size size) {
  const std::string what = "out for target '" + std::string(form.name) + "': expected ";
  if (!py::isinstance<py::array>(out)) {
    throw py::type_error(what + "an array, found " +
                         std::string(py::str(py::handle(py::type::of(out).attr("__name__")))));
  }
  const auto array = py::reinterpret_borrow<py::array>(out);
  const py::dtype dtype = picture_dtype(form);
  if (array.dtype().kind() != 'u' || array.itemsize() != dtype.itemsize() ||
      (form.depth == 16 && is_little(array) != (std::endian::native == std::endian::little))) {
    throw py::type_error(what + "dtype " + std::string(py::str(py::handle(dtype))) + ", found " +
                         dtype_name(array));
  }
  const std::vector<py::ssize_t> shape = picture_shape(form, size);
  if (!std::equal(shape.begin(), shape.end(), array.shape(), array.shape() + array.ndim())) {
    throw py::value_error(what + "shape " + text_of(shape) + ", found " + shape_text(array));
  }
  if (!array.writeable()) {
    throw py::value_error(what + "an array that can be written");
  }
  if (!pitch_of(array, form.planes > 1 ? 1 : 0)) {
    throw py::value_error(what + "lines without gaps between their pixels, one after the other in memory");
  }
  return array;
}

std::array<Destination, 4> destinations(const py::array& picture, const PictureForm& form) {
  const bool planes = form.planes > 1;
  const py::ssize_t axis = planes ? 1 : 0;
  const std::size_t pitch = pitch_of(picture, axis).value_or(0);
  const auto height = static_cast<std::size_t>(picture.shape(axis));
  const std::size_t line = static_cast<std::size_t>(picture.shape(axis + 1)) * form.pixel_bytes;
  const std::size_t extent = height == 0 ? 0 : (height - 1) * pitch + line;
  std::array<Destination, 4> made{};
  for (std::size_t i = 0; i < form.planes; ++i) {
    const py::ssize_t offset = planes ? picture.strides(0) * static_cast<py::ssize_t>(i) : 0;
    // Writability was tested, or the array is new.
    auto* const start = static_cast<std::uint8_t*>(const_cast<void*>(picture.data())) + offset;
    made[i] = Destination(start, extent, pitch);
  }
  return made;
}

}  // namespace quorvane::python
