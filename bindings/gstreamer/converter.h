/// What the elements have in common: an abstract GstBaseTransform whose frames go through the checked C++
/// header, by a row of its table of conversions. An element says which caps are which frames, and which row
/// serves them.
#pragma once

#include <gst/base/gstbasetransform.h>

#include <optional>
#include <string>

#include "video.h"

namespace quorvane::gst {

/// A frame as caps tell it.
struct Input {
  std::string_view format;  ///< in the table of conversions
  Pattern pattern = Pattern::kRggb;
  std::uint32_t bits = 16;  ///< of 16-bit samples that count
};

/// How frames of the caps that were agreed on are converted.
struct Plan {
  Input input;
  const Output* output = nullptr;
  const Way* way = nullptr;
  Size size;
  std::size_t pitch = 0;       ///< of the frames
  bool pitch_is_told = false;  ///< else frames that are too short for it have lines without padding
  std::optional<Correction> correction;
  std::optional<ClampedMatrix> matrix;
  std::size_t bands = 1;
};

/// The part of an element that is its own. Properties may be set while frames flow: they count from the next
/// caps on.
class Converter {
 public:
  Converter() = default;
  virtual ~Converter() = default;
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  virtual const char* media() const = 0;
  /// Values of the field `format`.
  virtual std::vector<const char*> input_names() const = 0;
  /// Nothing: caps that are not fixed, or that the element does not know.
  virtual std::optional<Input> input_of(const GstStructure* fields) const = 0;
  /// Null where there is no such conversion.
  virtual const Way* way_of(const Input& input, const Output& output) const = 0;
  /// Throws where the properties are wrong.
  virtual void check() const {}
  /// Fills in what else a plan holds; throws as check() does.
  virtual void complete(Plan& plan, const GstCaps* caps) const = 0;

  /// New caps of the other side.
  GstCaps* pictures_of(const GstCaps* frames) const;
  GstCaps* frames_of(const GstCaps* pictures) const;

  void agree(const GstCaps* frames, const GstCaps* pictures);
  void convert(GstBuffer* picture, GstBuffer* frame);

 private:
  void convert_deep(Destination dst, Source src, const Frame& frame, const Recipe& recipe);

  Plan plan_;
  GstVideoInfo picture_{};
  std::vector<std::uint16_t> deep_;
};

/// The templates of both pads, as texts of caps.
void add_pads(GstElementClass* type, const std::string& frames, const std::string& pictures);

}  // namespace quorvane::gst

struct QvnConverter {
  GstBaseTransform parent;
  quorvane::gst::Converter* converter;  // its element's, which ends with it
};

struct QvnConverterClass {
  GstBaseTransformClass parent;
};

GType qvn_converter_get_type();
