#include "conversion.h"

#include <pybind11/stl.h>

#include "table.h"

namespace quorvane::python {
namespace {

Pattern to_pattern(std::string_view name) {
  constexpr std::array<std::string_view, 4> kNames{"rggb", "gbrg", "grbg", "bggr"};
  const auto* const found = std::find(kNames.begin(), kNames.end(), name);
  if (found == kNames.end()) {
    throw py::value_error("unknown pattern '" + std::string(name) + "', expected rggb, gbrg, grbg or bggr");
  }
  return static_cast<Pattern>(found - kNames.begin());
}

Alignment to_alignment(std::string_view name) {
  if (name != "low" && name != "top") {
    throw py::value_error("unknown alignment '" + std::string(name) + "', expected low or top");
  }
  return name == "low" ? Alignment::kLowBit : Alignment::kTopBit;
}

/// Bytes are always good; words must be what the source says that they are.
void check_dtype(const py::array& array, std::string_view name) {
  const std::string source(name);
  const bool any_order = is_any_order(source);
  if (any_order && is_bytes(array)) {
    throw py::type_error(source +
                         ": expected an array of uint16, found uint8, which does not tell the order "
                         "of its bytes: source='" +
                         source + "be' and '" + source + "le' do");
  }
  const bool has_words = any_order || format_of(source, false).has_form;
  if (has_words ? !is_words(array) && !is_bytes(array) : !is_bytes(array)) {
    throw py::type_error(source + ": expected an array of " + (has_words ? "uint16" : "uint8") + ", found " +
                         dtype_name(array));
  }
  if (!any_order && is_words(array) && is_little(array) != source.ends_with("le")) {
    const std::string generic = source.substr(0, source.size() - 2);
    throw py::type_error(source + ": expected an array of " + (source.ends_with("le") ? "<u2" : ">u2") +
                         ", found " + (is_little(array) ? "<u2" : ">u2") + ": source='" + generic +
                         "' takes both");
  }
}

/// The bytes that a function leaves alone must not be those of freed memory. Which ones these are, a test
/// finds out for every row.
py::array new_picture(const Way& way, const Entry& entry, Size size, bool opaque) {
  const PictureForm& form = *find_picture_form(way.target);
  const py::dtype dtype = picture_dtype(form);
  const std::vector<py::ssize_t> shape = picture_shape(form, size);
  const bool leaves_opacity = form.name == "bgra" && !opaque && &entry != &rgba8_transform;
  const bool leaves_group = size.pixels() % entry.source.group != 0;
  const bool small = entry.lines != Lines::kRun && (size.width < 8 || size.height < 8);
  if (leaves_opacity || leaves_group || small) {
    return py::module_::import("numpy").attr("zeros")(shape, dtype);
  }
  py::array picture(dtype, shape);
  if (entry.lines != Lines::kRun) {
    constexpr std::size_t kLastLines = 4;
    const std::size_t bytes = kLastLines * size.width * form.pixel_bytes;
    std::memset(static_cast<std::uint8_t*>(picture.mutable_data()) + picture.nbytes() - bytes, 0, bytes);
  }
  return picture;
}

/// The matrix on a run of finished pixels.
detail::Finish by_matrix(const ClampedMatrix& matrix, const PictureForm& form, std::uint32_t top) {
  return [&matrix, step = form.pixel_bytes, deep = form.depth == 16, top](std::uint8_t* pixels,
                                                                          std::size_t count) {
    if (deep) {
      matrix.apply_to_bytes<std::uint16_t>(pixels, count, 3, 2, top);
    } else {
      matrix.apply(pixels, count, step, 2, top);
    }
  };
}

void check_form(const Request& request, const Format& format) {
  if (!format.has_form && (request.bits || request.alignment)) {
    throw py::value_error(std::string(request.source) +
                          ": expected no bits and no alignment, which it has not");
  }
  if (request.bits.value_or(16) > 16) {
    throw py::value_error(std::string(request.source) + ": expected at most 16 bits, found " +
                          std::to_string(*request.bits));
  }
}

void check_matrix(const Request& request, const Way& way, const PictureForm& form) {
  if (request.matrix != nullptr && (form.channels < 3 || form.name == "uyvy")) {
    throw py::value_error(std::string(way.entry->name) +
                          ": expected a colour picture for a matrix, found target '" +
                          std::string(form.name) + "'");
  }
}

}  // namespace

py::object convert(const py::array& given, const Request& request) {
  check_dtype(given, request.source);
  const bool little = request.source.ends_with("le") || (is_any_order(request.source) && is_little(given));
  const Format& format = format_of(request.source, little);
  check_form(request, format);
  const Way& way = choose({request.source, request.method, request.target, request.correction != nullptr,
                           request.shift != 0, request.bits.value_or(16) < 16});
  const Entry& entry = request.correction == nullptr ? *way.entry : *way.corrected;
  const PictureForm& form = *find_picture_form(way.target);
  check_matrix(request, way, form);

  const SourceArray frame = source_array(given, request.source, format.layout, request.size);
  if (form.name == "uyvy" && frame.size.pixels() % 2 != 0) {
    throw py::value_error(std::string(entry.name) +
                          ": expected an even number of pixels for target 'uyvy', found " +
                          std::to_string(frame.size.width) + "x" + std::to_string(frame.size.height));
  }
  const bool fresh = request.out.is_none();
  const py::array picture = fresh ? new_picture(way, entry, frame.size, request.opaque)
                                  : checked_out(request.out, form, frame.size);

  // A function that reads no form takes big-endian words.
  const bool swap = little && !way.reads_form;
  const Arguments arguments{to_pattern(request.pattern),
                            form.target,
                            {request.bits.value_or(16), to_alignment(request.alignment.value_or("low")),
                             swap ? ByteOrder::kBigEndian : format.order},
                            {request.shift},
                            request.correction == nullptr ? nullptr : &request.correction->correction};
  const std::uint32_t depth = request.shift < way.bits ? way.bits - request.shift : 1;
  const detail::Finish finish = request.matrix == nullptr
                                    ? detail::Finish()
                                    : by_matrix(request.matrix->matrix, form, (1U << depth) - 1);
  const detail::Steps steps{swap ? &detail::swap_words : format.repack,
                            request.matrix == nullptr ? nullptr : &finish};
  const Options options{.opaque = request.opaque, .bands = request.bands};
  const std::array<Destination, 4> to = destinations(picture, form);
  const bool may_overwrite = request.overwrite && frame.array.writeable();

  const Result<void> done = [&] {
    const py::gil_scoped_release release;
    return may_overwrite ? call(entry, to, frame.bytes, frame.size, arguments, options, steps)
                         : call_keeping_source(entry, to, frame.bytes, frame.size, arguments, options, steps);
  }();
  check(done);
  return fresh ? py::object(picture) : request.out;
}

}  // namespace quorvane::python
