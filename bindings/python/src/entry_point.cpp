#include "entry_point.h"

#include "table.h"

namespace quorvane::python {
namespace {

std::string_view text_of(PyObject* value) {
  if (PyUnicode_Check(value) == 0) {
    throw py::type_error("expected a name as a string, found " + std::string(py::repr(value)));
  }
  Py_ssize_t length = 0;
  const char* const text = PyUnicode_AsUTF8AndSize(value, &length);
  if (text == nullptr) {
    throw py::error_already_set();
  }
  return {text, static_cast<std::size_t>(length)};
}

std::optional<std::string_view> optional_text(PyObject* value) {
  return value == Py_None ? std::nullopt : std::optional(text_of(value));
}

/// Whole numbers of 32 bits, numpy's among them.
std::uint32_t number_of(PyObject* value) {
  const auto index = py::reinterpret_steal<py::object>(PyNumber_Index(value));
  if (!index) {
    throw py::error_already_set();
  }
  const unsigned long long number = PyLong_AsUnsignedLongLong(index.ptr());
  const bool outside = PyErr_Occurred() != nullptr;
  PyErr_Clear();
  if (outside || number > std::numeric_limits<std::uint32_t>::max()) {
    throw py::value_error("expected a number of 0 to 4294967295, found " + std::string(py::str(index)));
  }
  return static_cast<std::uint32_t>(number);
}

bool truth_of(PyObject* value) {
  const int truth = PyObject_IsTrue(value);
  if (truth < 0) {
    throw py::error_already_set();
  }
  return truth != 0;
}

SizeTuple size_of(PyObject* value) {
  if (value == Py_None) {
    return std::nullopt;
  }
  if (PySequence_Check(value) == 0 || PySequence_Size(value) != 2) {
    PyErr_Clear();
    throw py::type_error("size: expected (width, height)");
  }
  const auto pair = py::reinterpret_borrow<py::sequence>(value);
  const py::object width = pair[0];
  const py::object height = pair[1];
  return std::pair(number_of(width.ptr()), number_of(height.ptr()));
}

template <class T>
const T* object_of(PyObject* value, const char* expected) {
  if (value == Py_None) {
    return nullptr;
  }
  if (!py::isinstance<T>(value)) {
    throw py::type_error(std::string("expected ") + expected + ", found " + Py_TYPE(value)->tp_name);
  }
  // __new__ alone makes an object of no value, which a cast would fill with whatever lies in new memory.
  if (!reinterpret_cast<py::detail::instance*>(value)->get_value_and_holder().holder_constructed()) {
    throw py::type_error(std::string("expected ") + expected + ", found one that was never made");
  }
  return py::handle(value).cast<const T*>();
}

py::object convert_arguments(PyObject* const* values) {
  if (!py::isinstance<py::array>(values[0])) {
    throw py::type_error(std::string("expected a numpy array, found ") + Py_TYPE(values[0])->tp_name);
  }
  Request request;
  request.source = text_of(values[1]);
  request.pattern = text_of(values[2]);
  request.method = optional_text(values[3]);
  request.target = optional_text(values[4]);
  request.size = size_of(values[5]);
  request.out = py::reinterpret_borrow<py::object>(values[6]);
  request.bands = number_of(values[7]);
  request.opaque = truth_of(values[8]);
  request.correction = object_of<MadeCorrection>(values[9], "a Correction");
  request.matrix = object_of<MadeMatrix>(values[10], "a ClampedMatrix");
  request.shift = number_of(values[11]);
  if (values[12] != Py_None) {
    request.bits = number_of(values[12]);
  }
  request.alignment = optional_text(values[13]);
  request.overwrite = truth_of(values[14]);
  return convert(py::reinterpret_borrow<py::array>(values[0]), request);
}

/// pybind11's dispatch of so many arguments touches so much memory that it takes 13 us where the frame before
/// has swept the caches: a thirtieth of a frame of 1920x1080.
PyObject* convert_entry(PyObject* /*self*/, PyObject* const* values, Py_ssize_t count) {
  constexpr Py_ssize_t kCount = 15;
  if (count != kCount) {
    PyErr_Format(PyExc_TypeError, "expected %zd arguments, found %zd", kCount, count);
    return nullptr;
  }
  try {
    return convert_arguments(values).release().ptr();
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const py::builtin_exception& error) {
    error.set_error();
  } catch (const std::bad_alloc&) {
    PyErr_NoMemory();
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
  return nullptr;
}

py::str text(std::string_view view) { return {view.data(), view.size()}; }

py::list rows() {
  py::list listed;
  for (const Way& way : table()) {
    const py::object corrected =
        way.corrected == nullptr ? py::object(py::none()) : py::object(text(way.corrected->name));
    listed.append(py::make_tuple(text(way.format), text(way.method), text(way.target), text(way.entry->name),
                                 corrected));
  }
  return listed;
}

py::dict sources() {
  py::dict listed;
  for (const Format& format : formats()) {
    listed[text(format.name)] = text(format.about);
  }
  return listed;
}

}  // namespace

void bind_conversions(py::module_& module) {
  static PyMethodDef definition{
      "convert", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&convert_entry)), METH_FASTCALL,
      "convert(array, source, pattern, method, target, size, out, bands, opaque, correction, matrix, shift, "
      "bits, alignment, overwrite)\n--\n\nWhat quorvane.convert is made of."};
  const py::object name = module.attr("__name__");
  module.attr("convert") =
      py::reinterpret_steal<py::object>(PyCFunction_NewEx(&definition, nullptr, name.ptr()));
  module.def("conversions", &rows);
  module.def("sources", &sources);
}

}  // namespace quorvane::python
