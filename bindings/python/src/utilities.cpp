#include "utilities.h"

#ifndef _WIN32
#include <dlfcn.h>
#endif

namespace quorvane::python {
namespace {

/// Bytes that follow each other.
using Bytes = py::array_t<std::uint8_t, py::array::c_style>;

Source source_of(const Bytes& bytes) { return {bytes.data(), static_cast<std::size_t>(bytes.size()), 0}; }
/// Throws where they must not be written.
Destination destination_of(Bytes& bytes) {
  return {bytes.mutable_data(), static_cast<std::size_t>(bytes.size()), 0};
}

/// Without the interpreter's lock.
template <class Action>
void run(Action action) {
  const Result<void> done = [&] {
    const py::gil_scoped_release release;
    return action();
  }();
  check(done);
}

void flip(Bytes buffer, std::uint32_t width, std::uint32_t height, std::uint32_t axis, ColorCodingId code) {
  const Destination to = destination_of(buffer);
  run([&] { return attempt_flip(to, {width, height}, static_cast<Axis>(axis), code); });
}

void flip_vertical(Bytes buffer, std::uint32_t line_bytes, std::uint32_t height) {
  const Destination to = destination_of(buffer);
  run([&] { return attempt_flip_vertical(to, line_bytes, height); });
}

void weave(Bytes dst, const Bytes& src, std::uint32_t width, std::uint32_t height) {
  const Destination to = destination_of(dst);
  const Source from = source_of(src);
  run([&] { return attempt_weave(to, from, {width, height}); });
}

void unpack12(Bytes dst, const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t bits) {
  const Destination to = destination_of(dst);
  const Source from = source_of(src);
  run([&] {
    return bits == 8 ? attempt_unpack12_to_8(to, from, {width, height})
                     : attempt_unpack12_to_16(to, from, {width, height});
  });
}

void resample(Bytes dst, const Bytes& src, std::int32_t length, std::int32_t source_length,
              std::int32_t count, float rate, float source_rate, std::uint32_t element_bytes, bool linear) {
  const Destination to = destination_of(dst);
  const Source from = source_of(src);
  const ResampledLines lines{.length = length,
                             .source_length = source_length,
                             .count = count,
                             .rate = rate,
                             .source_rate = source_rate,
                             .element_bytes = element_bytes,
                             .method = linear ? ResampleBy::kLinear : ResampleBy::kNearest};
  run([&] { return attempt_resample(to, from, lines); });
}

py::bytes sis(const Bytes& frame, std::uint32_t width, std::uint32_t height, ColorCodingId code,
              std::int32_t position, bool large) {
  std::array<char, 52> block{};
  const Destination to(block.data(), block.size(), 0);
  const Source from = source_of(frame);
  run([&] {
    return attempt_sis(to, from, {width, height}, code, position,
                       large ? SisKind::k52Bytes : SisKind::k12Bytes);
  });
  return {block.data(), large ? block.size() : 12};
}

std::uint32_t bits_per_pixel_of(ColorCodingId code) {
  const Result<std::uint32_t> bits = attempt_bits_per_pixel(code);
  if (!bits) {
    raise(bits.failure());
  }
  return Result<std::uint32_t>(bits).value();
}

py::tuple technology() {
  const TechnoInfo info = techno_info();
  py::tuple flags(std::size(info.flags));
  for (std::size_t i = 0; i < std::size(info.flags); ++i) {
    flags[i] = info.flags[i];
  }
  return flags;
}

/// The file that the library was loaded from; its folder tells the level that the loader chose.
std::string library_file() {
#ifndef _WIN32
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&QVN_GetVersion), &info) != 0 && info.dli_fname != nullptr) {
    return info.dli_fname;
  }
#endif
  return "";
}

}  // namespace

void bind_utilities(py::module_& module) {
  const auto writable = [](const char* name) { return py::arg(name).noconvert(); };
  module.def("flip", &flip, writable("buffer"), py::arg("width"), py::arg("height"), py::arg("axis"),
             py::arg("code"));
  module.def("flip_vertical", &flip_vertical, writable("buffer"), py::arg("line_bytes"), py::arg("height"));
  module.def("weave", &weave, writable("dst"), py::arg("src").noconvert(), py::arg("width"),
             py::arg("height"));
  module.def("unpack12", &unpack12, writable("dst"), py::arg("src").noconvert(), py::arg("width"),
             py::arg("height"), py::arg("bits"));
  module.def("resample", &resample, writable("dst"), py::arg("src").noconvert(), py::arg("length"),
             py::arg("source_length"), py::arg("count"), py::arg("rate"), py::arg("source_rate"),
             py::arg("element_bytes"), py::arg("linear"));
  module.def("resampled_length", &resampled_length, py::arg("length"), py::arg("source_rate"),
             py::arg("rate"));
  module.def("sis", &sis, py::arg("frame").noconvert(), py::arg("width"), py::arg("height"), py::arg("code"),
             py::arg("position"), py::arg("large"));
  module.def("bits_per_pixel", &bits_per_pixel_of, py::arg("code"));
  module.def("status_text", &status_text, py::arg("status"));
  module.def("techno_info", &technology);
  module.def("version", &version);
  module.def("library_file", &library_file);
}

}  // namespace quorvane::python
