#include "converter.h"

#include <algorithm>

namespace quorvane::gst {
namespace {

/// The fields that both sides have: size, rate and so on.
GstStructure* other_side(const GstStructure* fields, const char* media,
                         const std::vector<const char*>& names) {
  GstStructure* const other = gst_structure_copy(fields);
  gst_structure_set_name(other, media);
  gst_structure_remove_fields(other, "format", "colorimetry", "chroma-site", "bpp", "depth", nullptr);
  set_formats(other, names);
  return other;
}

/// Whether `name` is what the field says, or one of several, or anything will do.
bool allows(const GstStructure* fields, const char* name) {
  const GValue* const told = gst_structure_get_value(fields, "format");
  if (told == nullptr) {
    return true;
  }
  GValue value = G_VALUE_INIT;
  g_value_init(&value, G_TYPE_STRING);
  g_value_set_static_string(&value, name);
  const bool allowed = gst_value_can_intersect(told, &value) != FALSE;
  g_value_unset(&value);
  return allowed;
}

/// Of a frame. Its last line may lack the padding: whoever cuts lines out of larger ones may end there.
std::size_t padded_bytes(const Plan& plan) {
  const std::size_t line = frame_bytes(*find_format(plan.input.format), {plan.size.width, 1});
  return plan.pitch * (plan.size.height - 1) + line;
}

}  // namespace

GstCaps* Converter::pictures_of(const GstCaps* frames) const {
  GstCaps* const pictures = gst_caps_new_empty();
  for (guint i = 0; i < gst_caps_get_size(frames); ++i) {
    const GstStructure* const fields = gst_caps_get_structure(frames, i);
    const std::optional<Input> input = input_of(fields);
    std::vector<const char*> names;
    for (const Output& output : outputs()) {
      const bool offered = !input || way_of(*input, output) != nullptr;
      if (offered && output.colorimetry == nullptr) {
        names.push_back(output.name);
      }
    }
    if (!names.empty()) {
      gst_caps_append_structure(pictures, other_side(fields, "video/x-raw", names));
    }
    for (const Output& output : outputs()) {
      if (output.colorimetry != nullptr && (!input || way_of(*input, output) != nullptr)) {
        GstStructure* const picture = other_side(fields, "video/x-raw", {output.name});
        gst_structure_set(picture, "colorimetry", G_TYPE_STRING, output.colorimetry, nullptr);
        gst_caps_append_structure(pictures, picture);
      }
    }
  }
  return pictures;
}

GstCaps* Converter::frames_of(const GstCaps* pictures) const {
  GstCaps* const frames = gst_caps_new_empty();
  for (guint i = 0; i < gst_caps_get_size(pictures); ++i) {
    const GstStructure* const fields = gst_caps_get_structure(pictures, i);
    std::vector<const char*> names;
    for (const char* const name : input_names()) {
      GstStructure* const frame = gst_structure_new(media(), "format", G_TYPE_STRING, name, nullptr);
      const std::optional<Input> input = input_of(frame);
      gst_structure_free(frame);
      const std::span<const Output> all = outputs();
      if (std::any_of(all.begin(), all.end(), [&](const Output& output) {
            return allows(fields, output.name) && input && way_of(*input, output) != nullptr;
          })) {
        names.push_back(name);
      }
    }
    if (!names.empty()) {
      gst_caps_append_structure(frames, other_side(fields, media(), names));
    }
  }
  return frames;
}

void Converter::agree(const GstCaps* frames, const GstCaps* pictures) {
  const std::optional<Input> input = input_of(gst_caps_get_structure(frames, 0));
  if (!input || gst_video_info_from_caps(&picture_, pictures) == FALSE) {
    throw Failure("these caps are not known");
  }
  Plan plan;
  plan.input = *input;
  plan.output = find_output(GST_VIDEO_INFO_FORMAT(&picture_));
  plan.way = plan.output == nullptr ? nullptr : way_of(plan.input, *plan.output);
  if (plan.way == nullptr) {
    throw Failure("there is no such conversion");
  }
  plan.size = {static_cast<std::uint32_t>(GST_VIDEO_INFO_WIDTH(&picture_)),
               static_cast<std::uint32_t>(GST_VIDEO_INFO_HEIGHT(&picture_))};
  complete(plan, frames);
  plan_ = std::move(plan);
}

void Converter::convert(GstBuffer* picture, GstBuffer* frame) {
  const MappedBuffer from(frame);
  MappedPicture to(picture, picture_);
  const Frame told{plan_.input.format, plan_.size, plan_.input.pattern, plan_.input.bits};
  Recipe recipe;
  recipe.correction = plan_.correction ? &*plan_.correction : nullptr;
  recipe.matrix = plan_.matrix ? &*plan_.matrix : nullptr;
  recipe.options.opaque = plan_.output->opaque && plan_.way->target == "bgra";
  recipe.options.bands = plan_.bands;

  std::size_t start = 0;
  std::size_t pitch = plan_.pitch;
  if (const GstVideoMeta* const meta = gst_buffer_get_video_meta(frame);
      meta != nullptr && meta->n_planes == 1 && meta->stride[0] > 0) {
    start = std::min<std::size_t>(meta->offset[0], from.size());
    pitch = static_cast<std::size_t>(meta->stride[0]);
  } else if (!plan_.pitch_is_told && from.size() < padded_bytes(plan_)) {
    pitch = 0;
  }
  const Source src(from.data() + start, from.size() - start, pitch);
  if (plan_.way->target == "bgr16") {
    convert_deep(to.destination(), src, told, recipe);
  } else {
    attempt_convert(*plan_.way, to.destination(), src, told, recipe).value();
  }
}

/// By way of three words a pixel, which move up to the top bit and get a full fourth word.
void Converter::convert_deep(Destination dst, Source src, const Frame& frame, const Recipe& recipe) {
  const std::size_t line = std::size_t{3} * frame.size.width;
  deep_.resize(line * frame.size.height);
  attempt_convert(*plan_.way, deep_, src, frame, recipe).value();
  if (plan_.way->format == "raw12packed") {
    // The library leaves the second half of its last line as it was; here all of it is a copy.
    std::copy(deep_.end() - static_cast<std::ptrdiff_t>(2 * line),
              deep_.end() - static_cast<std::ptrdiff_t>(line),
              deep_.end() - static_cast<std::ptrdiff_t>(line));
  }
  const std::uint32_t up = 16 - plan_.way->bits;
  for (std::size_t y = 0; y < frame.size.height; ++y) {
    const std::uint16_t* from = deep_.data() + y * line;
    std::uint8_t* to = dst.data() + y * dst.pitch();
    for (std::size_t x = 0; x < frame.size.width; ++x, from += 3, to += 8) {
      const std::array<std::uint16_t, 4> pixel{
          static_cast<std::uint16_t>(from[0] << up), static_cast<std::uint16_t>(from[1] << up),
          static_cast<std::uint16_t>(from[2] << up), std::uint16_t{0xFFFF}};
      std::memcpy(to, pixel.data(), sizeof pixel);
    }
  }
}

void add_pads(GstElementClass* type, const std::string& frames, const std::string& pictures) {
  const auto add = [&](const char* name, GstPadDirection direction, const std::string& text) {
    GstCaps* const caps = gst_caps_from_string(text.c_str());
    gst_element_class_add_pad_template(type, gst_pad_template_new(name, direction, GST_PAD_ALWAYS, caps));
    gst_caps_unref(caps);
  };
  add("sink", GST_PAD_SINK, frames);
  add("src", GST_PAD_SRC, pictures);
}

}  // namespace quorvane::gst

using quorvane::gst::Converter;

G_DEFINE_ABSTRACT_TYPE(QvnConverter, qvn_converter, GST_TYPE_BASE_TRANSFORM)

namespace {

Converter& converter_of(GstBaseTransform* element) {
  return *reinterpret_cast<QvnConverter*>(element)->converter;
}

GstCaps* transform_caps(GstBaseTransform* element, GstPadDirection direction, GstCaps* caps,
                        GstCaps* filter) {
  const Converter& converter = converter_of(element);
  GstCaps* const other = direction == GST_PAD_SINK ? converter.pictures_of(caps) : converter.frames_of(caps);
  if (filter == nullptr) {
    return other;
  }
  GstCaps* const both = gst_caps_intersect_full(filter, other, GST_CAPS_INTERSECT_FIRST);
  gst_caps_unref(other);
  return both;
}

/// Runs `action` and makes an error of the pipeline of what it throws. Nothing may leave into C.
template <class Action>
bool posted(GstBaseTransform* element, Action action) {
  try {
    action();
    return true;
  } catch (const std::exception& failure) {
    GST_ELEMENT_ERROR(element, STREAM, FORMAT, ("%s", failure.what()), (nullptr));
    return false;
  }
}

/// Here, since a pipeline whose caps are refused may try again and again.
gboolean start(GstBaseTransform* element) {
  return posted(element, [&] { converter_of(element).check(); }) ? TRUE : FALSE;
}

gboolean set_caps(GstBaseTransform* element, GstCaps* frames, GstCaps* pictures) {
  return posted(element, [&] { converter_of(element).agree(frames, pictures); }) ? TRUE : FALSE;
}

/// A picture's bytes follow from its caps, whatever the padding of the frame.
gboolean transform_size(GstBaseTransform* /*element*/, GstPadDirection direction, GstCaps* /*caps*/,
                        gsize size, GstCaps* other, gsize* other_size) {
  if (direction == GST_PAD_SRC) {
    *other_size = size;
    return TRUE;
  }
  GstVideoInfo info;
  if (gst_video_info_from_caps(&info, other) == FALSE) {
    return FALSE;
  }
  *other_size = info.size;
  return TRUE;
}

gboolean decide_allocation(GstBaseTransform* element, GstQuery* query) {
  quorvane::gst::offer_pool(query);
  return GST_BASE_TRANSFORM_CLASS(qvn_converter_parent_class)->decide_allocation(element, query);
}

GstFlowReturn transform(GstBaseTransform* element, GstBuffer* frame, GstBuffer* picture) {
  return posted(element, [&] { converter_of(element).convert(picture, frame); }) ? GST_FLOW_OK
                                                                                 : GST_FLOW_ERROR;
}

void finalize(GObject* object) {
  delete reinterpret_cast<QvnConverter*>(object)->converter;
  G_OBJECT_CLASS(qvn_converter_parent_class)->finalize(object);
}

}  // namespace

static void qvn_converter_class_init(QvnConverterClass* type) {
  G_OBJECT_CLASS(type)->finalize = finalize;
  GstBaseTransformClass* const transforms = GST_BASE_TRANSFORM_CLASS(type);
  transforms->start = start;
  transforms->transform_caps = transform_caps;
  transforms->set_caps = set_caps;
  transforms->transform_size = transform_size;
  transforms->decide_allocation = decide_allocation;
  transforms->transform = transform;
}

static void qvn_converter_init(QvnConverter* /*element*/) {}
