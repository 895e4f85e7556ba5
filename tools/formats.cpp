// The table of source formats and the functions that sample a scene in each of them. What a scene holds
// beyond black and white is clipped, as in a sensor.
#include "formats.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "failure.h"

namespace qvn::tool {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// Nearest of the levels 0 to `top`.
std::uint32_t quantise(float value, float top) {
  return static_cast<std::uint32_t>(std::floor(std::clamp(value, 0.0F, 1.0F) * top + 0.5F));
}

std::uint8_t low_byte(std::uint32_t word) { return static_cast<std::uint8_t>(word & 0xFF); }

void append(Bytes& bytes, float value, std::uint32_t depth) {
  if (depth == 8) {
    bytes.push_back(low_byte(quantise(value, 255.0F)));
    return;
  }
  const std::uint32_t word = quantise(value, 65535.0F);
  bytes.push_back(low_byte(word >> 8));
  bytes.push_back(low_byte(word));
}

template <std::uint32_t Depth>
Bytes sample_mosaic(const SceneImage& scene, const Pattern& pattern, SampleForm /*unused*/) {
  Bytes bytes;
  bytes.reserve(scene.size.pixels() * Depth / 8);
  const float* pixel = scene.rgb.data();
  for (std::uint32_t y = 0; y < scene.size.height; ++y) {
    for (std::uint32_t x = 0; x < scene.size.width; ++x, pixel += 3) {
      const char colour = pattern.colour_at(x, y);
      append(bytes, pixel[colour == 'r' ? 0 : colour == 'g' ? 1 : 2], Depth);
    }
  }
  return bytes;
}

template <std::uint32_t Depth>
Bytes sample_rgb(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  Bytes bytes;
  bytes.reserve(scene.rgb.size() * Depth / 8);
  for (const float value : scene.rgb) {
    append(bytes, value, Depth);
  }
  return bytes;
}

/// BT.601 over the full range: luma 0 to 1, chroma -0.5 to 0.5.
struct Yuv {
  double y, u, v;
};

Yuv yuv_of(const float* pixel) {
  const auto channel = [&](int i) { return static_cast<double>(std::clamp(pixel[i], 0.0F, 1.0F)); };
  const double r = channel(0);
  const double b = channel(2);
  const double y = 0.299 * r + 0.587 * channel(1) + 0.114 * b;
  return {y, (b - y) / 1.772, (r - y) / 1.402};
}

std::uint32_t luma_level(double y, double top) {
  return static_cast<std::uint32_t>(std::floor(y * top + 0.5));
}

/// 128 is zero; the largest chroma would be 255.5.
std::uint8_t chroma_byte(double value) {
  return low_byte(static_cast<std::uint32_t>(std::floor(std::min(value * 255.0 + 128.0, 255.0) + 0.5)));
}

/// `layout` names the bytes of a group: Y the luma of its next pixel, U and V the mean chroma of its pixels.
Bytes sample_yuv(const SceneImage& scene, std::string_view layout) {
  const auto group = static_cast<std::size_t>(std::count(layout.begin(), layout.end(), 'Y'));
  Bytes bytes;
  bytes.reserve(scene.size.pixels() * 3);  // no layout has more
  for (std::size_t first = 0; first + group <= scene.size.pixels(); first += group) {
    double u = 0.0;
    double v = 0.0;
    for (std::size_t i = first; i < first + group; ++i) {
      const Yuv pixel = yuv_of(scene.rgb.data() + 3 * i);
      u += pixel.u;
      v += pixel.v;
    }
    std::size_t next = first;
    for (const char part : layout) {
      if (part == 'Y') {
        bytes.push_back(low_byte(luma_level(yuv_of(scene.rgb.data() + 3 * next++).y, 255.0)));
      } else {
        bytes.push_back(chroma_byte((part == 'U' ? u : v) / static_cast<double>(group)));
      }
    }
  }
  return bytes;
}

Bytes sample_yuv444(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  return sample_yuv(scene, "UYV");
}

Bytes sample_uyvy(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  return sample_yuv(scene, "UYVY");
}

Bytes sample_uyyvyy411(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  return sample_yuv(scene, "UYYVYY");
}

Bytes sample_y8(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  return sample_yuv(scene, "Y");
}

template <bool BigEndian>
Bytes sample_y16(const SceneImage& scene, const Pattern& /*unused*/, SampleForm form) {
  const double top = static_cast<double>((1U << form.bits) - 1);
  Bytes bytes;
  bytes.reserve(scene.size.pixels() * 2);
  for (std::size_t i = 0; i < scene.rgb.size(); i += 3) {
    const std::uint32_t level = luma_level(yuv_of(scene.rgb.data() + i).y, top);
    const std::uint32_t word = form.low ? level : level << (16 - form.bits);
    bytes.push_back(low_byte(BigEndian ? word >> 8 : word));
    bytes.push_back(low_byte(BigEndian ? word : word >> 8));
  }
  return bytes;
}

}  // namespace

const std::vector<SourceFormat>& source_formats() {
  static const std::vector<SourceFormat> formats{
      {"raw8", "Bayer mosaic, 1 byte a sample", true, false, 1, 8, 1, 1, sample_mosaic<8>},
      {"raw16be", "Bayer mosaic, 2 bytes a sample, first byte most significant", true, false, 1, 16, 1, 2,
       sample_mosaic<16>},
      {"yuv444", "U, Y, V, 1 byte each", false, false, 0, 0, 1, 3, sample_yuv444},
      {"uyvy", "YUV 4:2:2: U, Y, V, Y for 2 pixels", false, false, 0, 0, 2, 4, sample_uyvy},
      {"uyyvyy411", "YUV 4:1:1: U, Y, Y, V, Y, Y for 4 pixels", false, false, 0, 0, 4, 6, sample_uyyvyy411},
      {"y8", "grey, 1 byte a sample", false, false, 1, 8, 1, 1, sample_y8},
      {"y16be", "grey, 2 bytes a sample, first byte most significant", false, true, 1, 16, 1, 2,
       sample_y16<true>},
      {"y16le", "grey, 2 bytes a sample, first byte least significant", false, true, 0, 0, 1, 2,
       sample_y16<false>},
      {"rgb8", "R, G, B, 1 byte each", false, false, 3, 8, 1, 3, sample_rgb<8>},
      {"rgb16be", "R, G, B, 2 bytes each, first byte most significant", false, false, 3, 16, 1, 6,
       sample_rgb<16>},
  };
  return formats;
}

const SourceFormat& find_format(const std::string& name) {
  std::vector<std::string> names;
  for (const SourceFormat& format : source_formats()) {
    if (format.name == name) {
      return format;
    }
    names.emplace_back(format.name);
  }
  throw Failure("unknown format " + quoted(name) + ": expected " + one_of(names));
}

const SourceFormat& format_of_netpbm(std::uint32_t channels, std::uint32_t depth) {
  for (const SourceFormat& format : source_formats()) {
    if (format.netpbm_channels == channels && format.netpbm_depth == depth) {
      return format;
    }
  }
  throw Failure("no format fits a netpbm file of " + std::to_string(channels) + " channels at " +
                std::to_string(depth) + " bits");
}

std::size_t frame_bytes(const SourceFormat& format, Size size) {
  if (size.pixels() % format.group != 0) {
    throw Failure(std::string(format.name) + ": expected a number of pixels that is a multiple of " +
                  std::to_string(format.group) + ", found " + to_text(size) + " = " +
                  std::to_string(size.pixels()));
  }
  return size.pixels() / format.group * format.group_bytes;
}

SampleForm parse_form(const SourceFormat& format, const std::string& bits, const std::string& align) {
  if (!format.has_form && !(bits.empty() && align.empty())) {
    throw Failure(std::string(bits.empty() ? "--align" : "--bits") +
                  " is for 16-bit grey samples: expected format y16be or y16le, found " +
                  std::string(format.name));
  }
  SampleForm form;
  if (!bits.empty()) {
    const char* const end = bits.data() + bits.size();
    const auto parsed = std::from_chars(bits.data(), end, form.bits);
    if (parsed.ec != std::errc{} || parsed.ptr != end || form.bits < 8 || form.bits > 16) {
      throw Failure("--bits: expected a whole number from 8 to 16, found " + quoted(bits));
    }
  }
  if (!align.empty() && align != "lsb" && align != "msb") {
    throw Failure("--align: expected msb or lsb, found " + quoted(align));
  }
  form.low = align != "msb";
  return form;
}

}  // namespace qvn::tool
