#include "corrections.h"

#include <pybind11/stl.h>

namespace quorvane::python {
namespace {

template <class T>
using Values = py::array_t<T, py::array::c_style | py::array::forcecast>;

Matrix to_matrix(const py::handle& numbers) {
  const auto values = Values<float>::ensure(numbers);
  if (!values) {
    PyErr_Clear();
    throw py::type_error("matrix: expected nine numbers, row by row");
  }
  const bool square = values.ndim() == 2 && values.shape(0) == 3 && values.shape(1) == 3;
  if (!square && !(values.ndim() == 1 && values.shape(0) == 9)) {
    throw py::value_error("matrix: expected shape (3, 3) or (9,), found " + shape_text(values));
  }
  Matrix matrix{};
  std::copy_n(values.data(), matrix.size(), matrix.begin());
  return matrix;
}

/// A copy of a table of levels. Numbers that a level cannot hold are refused, not cut.
template <class T>
std::vector<T> to_table(const py::handle& levels, const char* maker) {
  const auto values = Values<long long>::ensure(levels);
  const auto given = py::array::ensure(levels);
  if (!values || !given || (given.dtype().kind() != 'u' && given.dtype().kind() != 'i')) {
    PyErr_Clear();
    throw py::type_error(std::string(maker) + ": expected a table of whole numbers");
  }
  if (values.ndim() != 1) {
    throw py::value_error(std::string(maker) + ": expected a table of one axis, found shape " +
                          shape_text(values));
  }
  std::vector<T> table;
  table.reserve(static_cast<std::size_t>(values.size()));
  for (py::ssize_t i = 0; i < values.size(); ++i) {
    const long long level = values.at(i);
    if (level < 0 || level > std::numeric_limits<T>::max()) {
      throw py::value_error(std::string(maker) + ": expected levels of 0 to " +
                            std::to_string(std::numeric_limits<T>::max()) + ", found " +
                            std::to_string(level));
    }
    table.push_back(static_cast<T>(level));
  }
  return table;
}

template <class T>
py::array table_array(const std::vector<T>& table) {
  return py::array_t<T>(static_cast<py::ssize_t>(table.size()), table.data());
}

MadeCorrection of_matrix(const py::handle& matrix) {
  const Matrix m = to_matrix(matrix);
  return {Correction::matrix(m), "matrix", py::make_tuple(py::cast(m))};
}
MadeCorrection of_fixed_int8(const py::handle& matrix) {
  const Matrix m = to_matrix(matrix);
  return {Correction::fixed_int8(m), "fixed_int8", py::make_tuple(py::cast(m))};
}
MadeCorrection of_fixed_int16(const py::handle& matrix) {
  const Matrix m = to_matrix(matrix);
  return {Correction::fixed_int16(m), "fixed_int16", py::make_tuple(py::cast(m))};
}
MadeCorrection of_gamma(float gamma, float white) {
  return {Correction::gamma(gamma, white), "gamma", py::make_tuple(gamma, white)};
}
MadeCorrection of_gamma_matrix(float gamma, float white, const py::handle& matrix) {
  const Matrix m = to_matrix(matrix);
  return {Correction::gamma_matrix(gamma, white, m), "gamma_matrix",
          py::make_tuple(gamma, white, py::cast(m))};
}
MadeCorrection of_table8(const py::handle& table) {
  const auto levels = to_table<std::uint8_t>(table, "table8");
  return {Correction::table8(levels), "table8", py::make_tuple(table_array(levels))};
}
MadeCorrection of_table16(const py::handle& table) {
  const auto levels = to_table<std::uint16_t>(table, "table16");
  return {Correction::table16(levels), "table16", py::make_tuple(table_array(levels))};
}
MadeCorrection of_table16_of_bytes(const py::handle& table) {
  const auto levels = to_table<std::uint8_t>(table, "table16_of_bytes");
  return {Correction::table16_of_bytes(levels), "table16_of_bytes", py::make_tuple(table_array(levels))};
}

MadeCorrection from_state(const py::tuple& state) {
  const auto maker = state[0].cast<std::string>();
  const auto arguments = state[1].cast<py::tuple>();
  const py::object made = py::type::of<MadeCorrection>().attr(maker.c_str())(*arguments);
  return std::move(made.cast<MadeCorrection&>());
}

void apply(const MadeMatrix& matrix, const py::array& picture, std::optional<std::uint32_t> told_top,
           const std::string& order) {
  const bool words = is_words(picture);
  if (!words && !is_bytes(picture)) {
    throw py::type_error("ClampedMatrix.apply: expected an array of uint8 or uint16, found " +
                         dtype_name(picture));
  }
  if (words && is_little(picture) != (std::endian::native == std::endian::little)) {
    throw py::type_error("ClampedMatrix.apply: expected words in this machine's order, found " +
                         dtype_name(picture));
  }
  const py::ssize_t values = picture.ndim() == 0 ? 0 : picture.shape(picture.ndim() - 1);
  if (picture.ndim() < 2 || (values != 3 && values != 4)) {
    throw py::value_error(
        "ClampedMatrix.apply: expected shape (height, width, 3) or (height, width, 4), found " +
        shape_text(picture));
  }
  if (!picture.writeable() || (picture.flags() & py::array::c_style) == 0) {
    throw py::value_error("ClampedMatrix.apply: expected a contiguous array that can be written");
  }
  if (order != "bgr" && order != "rgb") {
    throw py::value_error("ClampedMatrix.apply: unknown order '" + order + "', expected bgr or rgb");
  }
  const std::uint32_t most = words ? 65535 : 255;
  const std::uint32_t top = told_top.value_or(most);
  if (top > most) {
    throw py::value_error("ClampedMatrix.apply: expected a top of at most " + std::to_string(most) +
                          ", found " + std::to_string(top));
  }
  auto* const pixels = static_cast<std::uint8_t*>(const_cast<void*>(picture.data()));
  const auto step = static_cast<std::size_t>(values);
  const std::size_t count = static_cast<std::size_t>(picture.size()) / step;
  const std::size_t red = order == "bgr" ? 2 : 0;
  const py::gil_scoped_release release;
  if (words) {
    matrix.matrix.apply_to_bytes<std::uint16_t>(pixels, count, step, red, top);
  } else {
    matrix.matrix.apply(pixels, count, step, red, top);
  }
}

MadeMatrix of_numbers(const py::handle& numbers) {
  const Matrix matrix = to_matrix(numbers);
  if (!std::all_of(matrix.begin(), matrix.end(), [](float number) { return std::isfinite(number); })) {
    throw py::value_error("ClampedMatrix: expected nine finite numbers");
  }
  return {ClampedMatrix(matrix), matrix};
}

}  // namespace

void bind_corrections(py::module_& module) {
  py::class_<MadeCorrection>(
      module, "Correction",
      "A colour correction of the library, made by one of the static methods.\n\n"
      "It is applied to the samples between a mosaic and its picture, by the conversions that\n"
      "`conversions()` lists with a `corrected` function. What each kind does to a colour, and which\n"
      "functions serve it, stands in quorvane.h. Any number of threads may use the same one.")
      .def_static("matrix", &of_matrix, py::arg("matrix"),
                  "Nine numbers, row by row; results do not stop at black and white but wrap.")
      .def_static("fixed_int8", &of_fixed_int8, py::arg("matrix"),
                  "The same in fixed point for 8-bit sources; gives levels of 0 to 31 only.")
      .def_static("fixed_int16", &of_fixed_int16, py::arg("matrix"),
                  "The same in fixed point for sources of 12 and 16 bits.")
      .def_static("gamma", &of_gamma, py::arg("gamma"), py::arg("white"),
                  "A power law; `white` is the sample that stands for 1.0.")
      .def_static("gamma_matrix", &of_gamma_matrix, py::arg("gamma"), py::arg("white"), py::arg("matrix"),
                  "A power law, then a matrix.")
      .def_static("table8", &of_table8, py::arg("table"), "A level for each of 256 levels.")
      .def_static("table16", &of_table16, py::arg("table"),
                  "A level of 16 bits for each level of a source of 12 or 16 bits.")
      .def_static("table16_of_bytes", &of_table16_of_bytes, py::arg("table"),
                  "The table that target 'bgr' of packed 12-bit mosaics reads: 256 levels of 8 bits.")
      .def_property_readonly(
          "kind", [](const MadeCorrection& self) { return self.correction.kind(); },
          "The library's number of the kind, 1 to 9.")
      .def("__repr__",
           [](const MadeCorrection& self) {
             return "<quorvane.Correction." + self.maker + ", kind " +
                    std::to_string(self.correction.kind()) + ">";
           })
      .def(py::pickle([](const MadeCorrection& self) { return py::make_tuple(self.maker, self.arguments); },
                      [](const py::tuple& state) { return from_state(state); }));

  py::class_<MadeMatrix>(module, "ClampedMatrix",
                         "A matrix for finished pictures that rounds and stops at black and at the top.\n\n"
                         "The library has none; this one is the same in its other bindings and in `qvn`.")
      .def(py::init(&of_numbers), py::arg("matrix"))
      .def("apply", &apply, py::arg("picture"), py::arg("top") = py::none(), py::arg("order") = "bgr",
           "Changes a picture of shape (..., 3) or (..., 4) in place; `top` is white, 255 or 65535 if it is\n"
           "not told.")
      .def("__repr__",
           [](const MadeMatrix& self) {
             return "ClampedMatrix(" + std::string(py::repr(py::cast(self.numbers))) + ")";
           })
      .def(py::pickle([](const MadeMatrix& self) { return py::make_tuple(self.numbers); },
                      [](const py::tuple& state) { return of_numbers(state[0]); }));
}

}  // namespace quorvane::python
