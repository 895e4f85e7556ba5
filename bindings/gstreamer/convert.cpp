/// qvnconvert: YUV and grey, as cameras on IEEE 1394 send them, to pictures.
#include <array>

#include "elements.h"

namespace quorvane::gst {
namespace {

struct Known {
  const char* name;         ///< in caps
  std::string_view format;  ///< in the table of conversions
};

constexpr std::array kKnown{Known{"IYU1", "uyyvyy411"}, Known{"IYU2", "yuv444"},
                            Known{"UYVY", "uyvy"},      Known{"GRAY16_BE", "y16be"},
                            Known{"GRAY8", "y8"},       Known{"GRAY16_LE", "y16le"}};

class Direct : public Converter {
 public:
  const char* media() const override { return "video/x-raw"; }

  std::vector<const char*> input_names() const override {
    std::vector<const char*> names;
    for (const Known& known : kKnown) {
      names.push_back(known.name);
    }
    return names;
  }

  std::optional<Input> input_of(const GstStructure* fields) const override {
    const char* const name = gst_structure_get_string(fields, "format");
    for (const Known& known : kKnown) {
      if (name != nullptr && name == std::string_view(known.name)) {
        return Input{known.format};
      }
    }
    return std::nullopt;
  }

  const Way* way_of(const Input& input, const Output& output) const override {
    const bool offered = output.target == "bgr" || output.target == "bgra" || output.target == "y8";
    for (const std::string_view method : {"direct", "transform", "transform-ex"}) {
      Result<const Way*> found = find_way(input.format, method, output.target);
      if (offered && found) {
        return found.value();
      }
    }
    return nullptr;
  }

  void complete(Plan& plan, const GstCaps* caps) const override {
    GstVideoInfo info;
    if (gst_video_info_from_caps(&info, caps) == FALSE) {
      throw Failure("these caps are not known");
    }
    plan.pitch = static_cast<std::size_t>(GST_VIDEO_INFO_PLANE_STRIDE(&info, 0));
  }
};

}  // namespace
}  // namespace quorvane::gst

struct QvnConvert {
  QvnConverter parent;
};
struct QvnConvertClass {
  QvnConverterClass parent;
};

G_DEFINE_TYPE(QvnConvert, qvn_convert, qvn_converter_get_type())
GST_ELEMENT_REGISTER_DEFINE(qvnconvert, "qvnconvert", GST_RANK_NONE, qvn_convert_get_type())

static void qvn_convert_class_init(QvnConvertClass* type) {
  GstElementClass* const elements = GST_ELEMENT_CLASS(type);
  gst_element_class_set_static_metadata(elements, "Quorvane converter", "Filter/Converter/Video",
                                        "Makes pictures of YUV of the full range and of grey, as cameras on "
                                        "IEEE 1394 send them, with every byte "
                                        "defined",
                                        "Quorvane");
  quorvane::gst::add_pads(elements, GST_VIDEO_CAPS_MAKE("{ IYU1, IYU2, UYVY, GRAY8, GRAY16_BE, GRAY16_LE }"),
                          GST_VIDEO_CAPS_MAKE("{ BGR, BGRx, BGRA, GRAY8 }"));
  type->parent.parent.passthrough_on_same_caps = TRUE;  // grey to grey
}

static void qvn_convert_init(QvnConvert* element) { element->parent.converter = new quorvane::gst::Direct; }
