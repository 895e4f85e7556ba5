// The table of source formats and the functions that sample a scene in each of them.
#include "formats.h"

#include <algorithm>
#include <cmath>

#include "failure.h"

namespace qvn::tool {
namespace {

/// Nearest of the levels 0 to `top`; what the scene holds beyond black and white is clipped, as in a sensor.
std::uint32_t quantise(float value, float top) {
  return static_cast<std::uint32_t>(std::floor(std::clamp(value, 0.0F, 1.0F) * top + 0.5F));
}

void append(std::vector<std::uint8_t>& bytes, float value, std::uint32_t depth) {
  if (depth == 8) {
    bytes.push_back(static_cast<std::uint8_t>(quantise(value, 255.0F)));
    return;
  }
  const std::uint32_t word = quantise(value, 65535.0F);
  bytes.push_back(static_cast<std::uint8_t>(word >> 8));
  bytes.push_back(static_cast<std::uint8_t>(word & 0xFF));
}

template <std::uint32_t Depth>
std::vector<std::uint8_t> sample_mosaic(const SceneImage& scene, const Pattern& pattern) {
  std::vector<std::uint8_t> bytes;
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
std::vector<std::uint8_t> sample_rgb(const SceneImage& scene, const Pattern& /*unused*/) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(scene.rgb.size() * Depth / 8);
  for (const float value : scene.rgb) {
    append(bytes, value, Depth);
  }
  return bytes;
}

template <std::size_t BytesPerPixel>
std::size_t whole_bytes(Size size) {
  return size.pixels() * BytesPerPixel;
}

}  // namespace

const std::vector<SourceFormat>& source_formats() {
  static const std::vector<SourceFormat> formats{
      {"raw8", "Bayer mosaic, 1 byte a sample", true, 1, 8, whole_bytes<1>, sample_mosaic<8>},
      {"raw16be", "Bayer mosaic, 2 bytes a sample, first byte most significant", true, 1, 16, whole_bytes<2>,
       sample_mosaic<16>},
      {"rgb8", "R, G, B, 1 byte each", false, 3, 8, whole_bytes<3>, sample_rgb<8>},
      {"rgb16be", "R, G, B, 2 bytes each, first byte most significant", false, 3, 16, whole_bytes<6>,
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

}  // namespace qvn::tool
