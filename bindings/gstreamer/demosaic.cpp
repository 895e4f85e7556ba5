/// qvndemosaic: Bayer mosaics to pictures.
#include <array>
#include <mutex>

#include "elements.h"
#include "mosaic_caps.h"

namespace quorvane::gst {
namespace {

/// The order is that of the property's values.
enum class Rule { kClamped, kFloat, kFixed };

constexpr std::array<std::string_view, 5> kMethods{"2x2", "3x3", "yuv422", "lcaa", "lcaav"};

struct Settings {
  std::size_t method = 0;
  Samples samples = Samples::kAsCapsSay;
  std::uint32_t bits = 16;
  std::uint32_t pitch = 0;
  std::string matrix;
  Rule rule = Rule::kClamped;
  std::uint32_t threads = 1;
};

/// Nine numbers with commas or white space between, whatever the locale.
Matrix parse_matrix(const std::string& text) {
  Matrix matrix{};
  const char* at = text.c_str();
  for (std::size_t i = 0; i < matrix.size(); ++i) {
    char* end = nullptr;
    matrix[i] = static_cast<float>(g_ascii_strtod(at, &end));
    if (end == at || !std::isfinite(matrix[i])) {
      throw Failure("matrix: expected nine numbers, found '" + text + "'");
    }
    at = end + std::strspn(end, ", \t");
  }
  if (*at != '\0') {
    throw Failure("matrix: expected nine numbers, found more in '" + text + "'");
  }
  return matrix;
}

class Demosaic : public Converter {
 public:
  Settings settings() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return settings_;
  }
  template <class Change>
  void change(Change change) {
    const std::lock_guard<std::mutex> lock(mutex_);
    change(settings_);
  }

  const char* media() const override { return "video/x-bayer"; }

  std::vector<const char*> input_names() const override {
    std::vector<const char*> names;
    for (const std::string& name : mosaic_names()) {
      names.push_back(name.c_str());
    }
    return names;
  }

  std::optional<Input> input_of(const GstStructure* fields) const override {
    const Settings now = settings();
    return mosaic_of(fields, now.samples, now.bits);
  }

  /// The function of one target where there is one, else that of several by the same method.
  const Way* way_of(const Input& input, const Output& output) const override {
    const Settings now = settings();
    const bool by_library = !now.matrix.empty() && now.rule != Rule::kClamped;
    const bool clamped = !now.matrix.empty() && now.rule == Rule::kClamped;
    const bool colour = output.target == "bgr" || output.target == "bgra" || output.target == "bgr16";
    if (clamped && !colour) {
      return nullptr;
    }
    const std::string method(kMethods[now.method]);
    const std::array<std::string, 3> methods{method, method == "2x2" ? "transform" : "transform-" + method,
                                             method == "2x2" ? "transform-ex" : method};
    for (const std::string& name : methods) {
      Result<const Way*> found = find_way(input.format, name, output.target);
      if (!found) {
        continue;
      }
      const Way* const way = found.value();
      const bool all_bits = input.bits == 16 || way->reads_form;
      if (all_bits && (!by_library || way->corrected != nullptr)) {
        return way;
      }
    }
    return nullptr;
  }

  void check() const override {
    const Settings now = settings();
    if (now.bits == 11) {
      throw Failure("bits: expected 10 or 12 to 16, found 11");
    }
    if (!now.matrix.empty()) {
      parse_matrix(now.matrix);
    }
  }

  void complete(Plan& plan, const GstCaps* /*caps*/) const override {
    const Settings now = settings();
    const Format& format = *find_format(plan.input.format);
    const std::size_t line = frame_bytes(format, {plan.size.width, 1});
    plan.pitch_is_told = now.pitch != 0;
    plan.pitch = plan.pitch_is_told ? now.pitch : (line + 3) / 4 * 4;
    plan.bands = now.threads;
    if (now.matrix.empty()) {
      return;
    }
    const Matrix matrix = parse_matrix(now.matrix);
    if (now.rule == Rule::kClamped) {
      plan.matrix.emplace(matrix);
    } else if (now.rule == Rule::kFloat) {
      plan.correction = Correction::matrix(matrix);
    } else {
      plan.correction =
          format.name == "raw8" ? Correction::fixed_int8(matrix) : Correction::fixed_int16(matrix);
    }
  }

 private:
  mutable std::mutex mutex_;
  Settings settings_;
};

}  // namespace
}  // namespace quorvane::gst

using quorvane::gst::Demosaic;
using quorvane::gst::Rule;
using quorvane::gst::Samples;
using quorvane::gst::Settings;

struct QvnDemosaic {
  QvnConverter parent;
};
struct QvnDemosaicClass {
  QvnConverterClass parent;
};

G_DEFINE_TYPE(QvnDemosaic, qvn_demosaic, qvn_converter_get_type())
GST_ELEMENT_REGISTER_DEFINE(qvndemosaic, "qvndemosaic", GST_RANK_NONE, qvn_demosaic_get_type())

namespace {

enum Property : guint { kMethod = 1, kSamples, kBits, kPitch, kMatrix, kMatrixRule, kThreads };

GType method_type() {
  static const std::array<GEnumValue, 6> values{
      {{0, "The four samples of a 2x2 window", "2x2"},
       {1, "Bilinear, from a 3x3 window; 8-bit samples, as those below", "3x3"},
       {2, "Through YUV 4:2:2", "yuv422"},
       {3, "Through YUV, chroma filtered along lines; even sizes", "lcaa"},
       {4, "The same, chroma filtered along columns too", "lcaav"},
       {0, nullptr, nullptr}}};
  static const GType type = g_enum_register_static("QvnDemosaicMethod", values.data());
  return type;
}

GType samples_type() {
  static const std::array<GEnumValue, 8> values{
      {{static_cast<int>(Samples::kAsCapsSay), "As the caps say: format, or bpp and depth", "caps"},
       {static_cast<int>(Samples::k8), "One byte", "8"},
       {static_cast<int>(Samples::k12Packed), "Two in three bytes, as GigE Vision's 12Packed", "12packed"},
       {static_cast<int>(Samples::k12p), "Two in three bytes, low bits first, as PFNC's 12p", "12p"},
       {static_cast<int>(Samples::k12Csi2), "Two in three bytes, low bits last, as MIPI CSI-2's RAW12",
        "12csi2"},
       {static_cast<int>(Samples::k16Little), "Two bytes, low byte first; see bits", "16le"},
       {static_cast<int>(Samples::k16Big), "Two bytes, high byte first; see bits", "16be"},
       {0, nullptr, nullptr}}};
  static const GType type = g_enum_register_static("QvnDemosaicSamples", values.data());
  return type;
}

GType rule_type() {
  static const std::array<GEnumValue, 4> values{
      {{static_cast<int>(Rule::kClamped), "On the finished picture; rounds, and stops at black and white",
        "clamped"},
       {static_cast<int>(Rule::kFloat), "Between window and picture, in floating point; wraps", "float"},
       {static_cast<int>(Rule::kFixed),
        "The same with 10 fraction bits; levels 0 to 31 only of 8-bit samples", "fixed"},
       {0, nullptr, nullptr}}};
  static const GType type = g_enum_register_static("QvnDemosaicMatrixRule", values.data());
  return type;
}

Demosaic& demosaic_of(GObject* object) {
  return *static_cast<Demosaic*>(reinterpret_cast<QvnConverter*>(object)->converter);
}

void set_property(GObject* object, guint property, const GValue* value, GParamSpec* description) {
  demosaic_of(object).change([&](Settings& settings) {
    switch (property) {
      case kMethod:
        settings.method = static_cast<std::size_t>(g_value_get_enum(value));
        break;
      case kSamples:
        settings.samples = static_cast<Samples>(g_value_get_enum(value));
        break;
      case kBits:
        settings.bits = g_value_get_uint(value);
        break;
      case kPitch:
        settings.pitch = g_value_get_uint(value);
        break;
      case kMatrix: {
        const char* const text = g_value_get_string(value);
        settings.matrix = text == nullptr ? "" : text;
        break;
      }
      case kMatrixRule:
        settings.rule = static_cast<Rule>(g_value_get_enum(value));
        break;
      case kThreads:
        settings.threads = g_value_get_uint(value);
        break;
      default:
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, description);
    }
  });
  gst_base_transform_reconfigure_src(GST_BASE_TRANSFORM(object));
}

void get_property(GObject* object, guint property, GValue* value, GParamSpec* description) {
  const Settings settings = demosaic_of(object).settings();
  switch (property) {
    case kMethod:
      g_value_set_enum(value, static_cast<int>(settings.method));
      break;
    case kSamples:
      g_value_set_enum(value, static_cast<int>(settings.samples));
      break;
    case kBits:
      g_value_set_uint(value, settings.bits);
      break;
    case kPitch:
      g_value_set_uint(value, settings.pitch);
      break;
    case kMatrix:
      g_value_set_string(value, settings.matrix.c_str());
      break;
    case kMatrixRule:
      g_value_set_enum(value, static_cast<int>(settings.rule));
      break;
    case kThreads:
      g_value_set_uint(value, settings.threads);
      break;
    default:
      G_OBJECT_WARN_INVALID_PROPERTY_ID(object, property, description);
  }
}

}  // namespace

static void qvn_demosaic_class_init(QvnDemosaicClass* type) {
  GObjectClass* const objects = G_OBJECT_CLASS(type);
  objects->set_property = set_property;
  objects->get_property = get_property;
  constexpr auto kFlags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
  g_object_class_install_property(
      objects, kMethod,
      g_param_spec_enum("method", "Method",
                        "How the missing colours are made; other than 2x2 for 8-bit samples only",
                        method_type(), 0, kFlags));
  g_object_class_install_property(
      objects, kSamples,
      g_param_spec_enum("samples", "Samples", "How samples lie in the frames, where the caps do not tell it",
                        samples_type(), 0, kFlags));
  g_object_class_install_property(
      objects, kBits,
      g_param_spec_uint("bits", "Bits",
                        "Bits that count, from bit 0, of samples 16le and 16be: 10 or 12 to 16", 10, 16, 16,
                        kFlags));
  g_object_class_install_property(
      objects, kPitch,
      g_param_spec_uint(
          "pitch", "Pitch",
          "Bytes from one line of a frame to the next; 0: padded to whole words of four bytes, or not "
          "padded where the buffer is too short for that",
          0, 1U << 30, 0, kFlags));
  g_object_class_install_property(
      objects, kMatrix,
      g_param_spec_string(
          "matrix", "Colour matrix",
          "Nine numbers, commas or spaces between: rows make red, green and blue of red, green and "
          "blue; empty: none",
          "", kFlags));
  g_object_class_install_property(
      objects, kMatrixRule,
      g_param_spec_enum(
          "matrix-rule", "Rule of the matrix",
          "clamped: to BGR, BGRx, BGRA and BGRA64; the others, which belong to the library, to what its "
          "corrected functions make by method 2x2",
          rule_type(), 0, kFlags));
  g_object_class_install_property(
      objects, kThreads,
      g_param_spec_uint(
          "n-threads", "Threads",
          "Bands that a frame is cut into, each on a thread of its own, by methods 2x2 and 3x3; the "
          "picture is the same",
          1, 64, 1, kFlags));

  GstElementClass* const elements = GST_ELEMENT_CLASS(type);
  gst_element_class_set_static_metadata(
      elements, "Quorvane demosaic", "Filter/Converter/Video",
      "Makes pictures of Bayer mosaics of 8 to 16 bits, with every byte defined", "Quorvane");
  std::string names;
  for (const std::string& name : quorvane::gst::mosaic_names()) {
    names += (names.empty() ? "" : ", ") + name;
  }
  const char* const sizes =
      ", width = (int) [ 2, MAX ], height = (int) [ 2, MAX ], framerate = (fraction) [ 0/1, MAX ]";
  const std::string frames = "video/x-bayer, format = (string) { " + names + " }" + sizes;
  names.clear();
  for (const quorvane::gst::Output& output : quorvane::gst::outputs()) {
    names += (names.empty() ? "" : ", ") + std::string(output.name);
  }
  quorvane::gst::add_pads(elements, frames,
                          std::string("video/x-raw, format = (string) { ") + names + " }" + sizes);
}

static void qvn_demosaic_init(QvnDemosaic* element) { element->parent.converter = new Demosaic; }
