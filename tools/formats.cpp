// The table of source formats and the functions that sample a scene in each of them. What a scene holds
// beyond black and white is clipped, as in a sensor.
#include "formats.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <quorvane/convert.hpp>

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

/// Calls put with what each sensor site sees, line by line.
template <class Put>
void visit_mosaic(const SceneImage& scene, const Pattern& pattern, Put put) {
  const float* pixel = scene.rgb.data();
  for (std::uint32_t y = 0; y < scene.size.height; ++y) {
    for (std::uint32_t x = 0; x < scene.size.width; ++x, pixel += 3) {
      const char colour = pattern.colour_at(x, y);
      put(pixel[colour == 'r' ? 0 : colour == 'g' ? 1 : 2]);
    }
  }
}

Bytes sample_raw8(const SceneImage& scene, const Pattern& pattern, SampleForm /*unused*/) {
  Bytes bytes;
  bytes.reserve(scene.size.pixels());
  visit_mosaic(scene, pattern, [&](float value) { append(bytes, value, 8); });
  return bytes;
}

/// A level of `form.bits` bits in a word.
template <bool BigEndian>
void append_word(Bytes& bytes, std::uint32_t level, SampleForm form) {
  const std::uint32_t word = form.low ? level : level << (16 - form.bits);
  bytes.push_back(low_byte(BigEndian ? word >> 8 : word));
  bytes.push_back(low_byte(BigEndian ? word : word >> 8));
}

float top_level(SampleForm form) { return static_cast<float>((1U << form.bits) - 1); }

template <bool BigEndian>
Bytes sample_raw16(const SceneImage& scene, const Pattern& pattern, SampleForm form) {
  Bytes bytes;
  bytes.reserve(scene.size.pixels() * 2);
  visit_mosaic(scene, pattern,
               [&](float value) { append_word<BigEndian>(bytes, quantise(value, top_level(form)), form); });
  return bytes;
}

// Two samples of 12 bits in three bytes: the three ways in which cameras send them.

void pack_12(Bytes& bytes, const std::uint32_t* levels) {
  const std::uint32_t even = levels[0];
  const std::uint32_t odd = levels[1];
  bytes.insert(bytes.end(), {low_byte(even >> 4), low_byte((even & 15) | odd << 4), low_byte(odd >> 4)});
}

void pack_12p(Bytes& bytes, const std::uint32_t* levels) {
  const std::uint32_t even = levels[0];
  const std::uint32_t odd = levels[1];
  bytes.insert(bytes.end(), {low_byte(even), low_byte(even >> 8 | odd << 4), low_byte(odd >> 4)});
}

void pack_12csi2(Bytes& bytes, const std::uint32_t* levels) {
  const std::uint32_t even = levels[0];
  const std::uint32_t odd = levels[1];
  bytes.insert(bytes.end(), {low_byte(even >> 4), low_byte(odd >> 4), low_byte((even & 15) | odd << 4)});
}

/// As the checked header brings it to what the library takes.
template <void (*Repack)(std::uint8_t*, std::size_t)>
void repack(Bytes& bytes) {
  Repack(bytes.data(), bytes.size());
}

// Four samples of 10 bits in five bytes: bits one behind the other from bit 0 of the first byte on, or bits
// 9..2 of each and then bits 1..0 of all, the first sample's lowest.

void pack_10p(Bytes& bytes, const std::uint32_t* levels) {
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    bits |= std::uint64_t{levels[i]} << (10 * i);
  }
  for (int i = 0; i < 5; ++i) {
    bytes.push_back(low_byte(static_cast<std::uint32_t>(bits >> (8 * i))));
  }
}

void pack_10csi2(Bytes& bytes, const std::uint32_t* levels) {
  std::uint32_t low = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    bytes.push_back(low_byte(levels[i] >> 2));
    low |= (levels[i] & 3) << (2 * i);
  }
  bytes.push_back(low_byte(low));
}

std::uint32_t level_10p(const std::uint8_t* group, std::size_t i) {
  return (std::uint32_t{group[i]} >> (2 * i) | std::uint32_t{group[i + 1]} << (8 - 2 * i)) & 0x3FF;
}

std::uint32_t level_10csi2(const std::uint8_t* group, std::size_t i) {
  return std::uint32_t{group[i]} << 2 | (std::uint32_t{group[4]} >> (2 * i) & 3);
}

/// Two bytes a sample, the first least significant.
template <std::uint32_t (*Level)(const std::uint8_t* group, std::size_t i)>
void spread_10(Bytes& bytes) {
  Bytes words;
  words.reserve(bytes.size() / 5 * 8);
  for (std::size_t at = 0; at + 5 <= bytes.size(); at += 5) {
    for (std::size_t i = 0; i < 4; ++i) {
      const std::uint32_t level = Level(bytes.data() + at, i);
      words.insert(words.end(), {low_byte(level), low_byte(level >> 8)});
    }
  }
  bytes = std::move(words);
}

using Pack = void (*)(Bytes&, const std::uint32_t*);

/// Two samples of 12 bits or four of 10 at a time.
template <std::uint32_t Bits, Pack Put>
Bytes pack_levels(const std::vector<std::uint32_t>& levels) {
  constexpr std::size_t kGroup = Bits == 12 ? 2 : 4;
  Bytes bytes;
  bytes.reserve(levels.size() * Bits / 8);
  for (std::size_t i = 0; i + kGroup <= levels.size(); i += kGroup) {
    Put(bytes, levels.data() + i);
  }
  return bytes;
}

template <std::uint32_t Bits, Pack Put>
Bytes sample_packed_raw(const SceneImage& scene, const Pattern& pattern, SampleForm /*unused*/) {
  std::vector<std::uint32_t> levels;
  levels.reserve(scene.size.pixels());
  visit_mosaic(scene, pattern, [&](float value) {
    levels.push_back(quantise(value, top_level({Bits, true})));
  });
  return pack_levels<Bits, Put>(levels);
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

Bytes sample_rgba8(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  Bytes bytes;
  bytes.reserve(scene.size.pixels() * 4);
  for (std::size_t i = 0; i < scene.rgb.size(); i += 3) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      append(bytes, scene.rgb[i + channel], 8);
    }
    bytes.push_back(255);
  }
  return bytes;
}

/// What complementary filters let through: cyan green and blue, yellow red and green, magenta red and blue.
/// Each is the mean of its two, so that the sites agree on grey.
struct Complementary {
  explicit Complementary(const float* rgb) : red(rgb[0]), green(rgb[1]), blue(rgb[2]) {}
  float cyan() const { return (green + blue) / 2; }
  float yellow() const { return (red + green) / 2; }
  float magenta() const { return (red + blue) / 2; }
  float red, green, blue;
};

/// The site at a line and column in display order.
float cygm_site(const Complementary& light, std::uint32_t line, std::uint32_t column) {
  if (line % 2 == 0) {
    return column % 2 == 0 ? light.cyan() : light.yellow();
  }
  return (line % 4 == 1) == (column % 2 == 0) ? light.green : light.magenta();
}

/// A binned line holds means of two sites: magenta and cyan beside green and yellow, on lines that tell of
/// blue, and cyan and green beside magenta and yellow, on those that tell of red.
float cygm_binned_site(const Complementary& light, std::uint32_t line, std::uint32_t column) {
  const bool tells_blue = line % 4 == 0 || line % 4 == 3;
  const bool even = column % 2 == 0;
  if (tells_blue) {
    return (even ? light.magenta() + light.cyan() : light.green + light.yellow()) / 2;
  }
  return (even ? light.cyan() + light.green : light.magenta() + light.yellow()) / 2;
}

/// The field of the odd lines is stored first.
template <float (*Site)(const Complementary&, std::uint32_t, std::uint32_t)>
Bytes sample_cygm(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  Bytes bytes;
  bytes.reserve(scene.size.pixels());
  for (const std::uint32_t first : {1U, 0U}) {
    for (std::uint32_t y = first; y < scene.size.height; y += 2) {
      const float* pixel = scene.rgb.data() + std::size_t{y} * scene.size.width * 3;
      for (std::uint32_t x = 0; x < scene.size.width; ++x, pixel += 3) {
        append(bytes, Site(Complementary(pixel), y, x), 8);
      }
    }
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

Bytes sample_yuyv(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  return sample_yuv(scene, "YUYV");
}

Bytes sample_uyyvyy411(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  return sample_yuv(scene, "UYYVYY");
}

Bytes sample_y8(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  return sample_yuv(scene, "Y");
}

template <bool BigEndian>
Bytes sample_y16(const SceneImage& scene, const Pattern& /*unused*/, SampleForm form) {
  Bytes bytes;
  bytes.reserve(scene.size.pixels() * 2);
  for (std::size_t i = 0; i < scene.rgb.size(); i += 3) {
    const std::uint32_t level = luma_level(yuv_of(scene.rgb.data() + i).y, top_level(form));
    append_word<BigEndian>(bytes, level, form);
  }
  return bytes;
}

template <std::uint32_t Bits, Pack Put>
Bytes sample_packed_grey(const SceneImage& scene, const Pattern& /*unused*/, SampleForm /*unused*/) {
  std::vector<std::uint32_t> levels;
  levels.reserve(scene.size.pixels());
  for (std::size_t i = 0; i < scene.rgb.size(); i += 3) {
    levels.push_back(luma_level(yuv_of(scene.rgb.data() + i).y, top_level({Bits, true})));
  }
  return pack_levels<Bits, Put>(levels);
}

}  // namespace

const std::vector<SourceFormat>& source_formats() {
  static const std::vector<SourceFormat> formats{
      {"raw8", "Bayer mosaic, 1 byte a sample", true, false, false, 1, 8, 1, 1, sample_raw8},
      {"raw10p", "Bayer mosaic, 10 bits, one behind the other from bit 0 on", true, false, false, 0, 0, 4, 5,
       sample_packed_raw<10, pack_10p>, "raw16le", spread_10<level_10p>, 10},
      {"raw10csi2", "Bayer mosaic, 10 bits: four times 9..2, then four times 1..0 from bit 0 on", true, false,
       false, 0, 0, 4, 5, sample_packed_raw<10, pack_10csi2>, "raw16le", spread_10<level_10csi2>, 10},
      {"raw12packed", "Bayer mosaic, 12 bits: even 11..4, odd 3..0 and even 3..0, odd 11..4", true, false,
       false, 0, 0, 2, 3, sample_packed_raw<12, pack_12>},
      {"raw12p", "Bayer mosaic, 12 bits: even 7..0, odd 3..0 and even 11..8, odd 11..4", true, false, false,
       0, 0, 2, 3, sample_packed_raw<12, pack_12p>, "raw12packed", repack<quorvane::detail::repack_12p>},
      {"raw12csi2", "Bayer mosaic, 12 bits: even 11..4, odd 11..4, odd 3..0 and even 3..0", true, false,
       false, 0, 0, 2, 3, sample_packed_raw<12, pack_12csi2>, "raw12packed",
       repack<quorvane::detail::repack_12csi2>},
      {"raw16be", "Bayer mosaic, 2 bytes a sample, first byte most significant", true, false, true, 1, 16, 1,
       2, sample_raw16<true>},
      {"raw16le", "Bayer mosaic, 2 bytes a sample, first byte least significant", true, false, true, 0, 0, 1,
       2, sample_raw16<false>},
      {"iraw8-cygm", "cyan, yellow, green and magenta mosaic in two fields, that of the odd lines first",
       false, true, false, 0, 0, 1, 1, sample_cygm<cygm_site>},
      {"iraw8-cygm-binned", "the same sensor with lines added in pairs", false, true, false, 0, 0, 1, 1,
       sample_cygm<cygm_binned_site>},
      {"yuv444", "U, Y, V, 1 byte each", false, false, false, 0, 0, 1, 3, sample_yuv444},
      {"uyvy", "YUV 4:2:2: U, Y, V, Y for 2 pixels", false, false, false, 0, 0, 2, 4, sample_uyvy},
      {"yuyv", "YUV 4:2:2: Y, U, Y, V for 2 pixels", false, false, false, 0, 0, 2, 4, sample_yuyv, "uyvy",
       repack<quorvane::detail::swap_words>},
      {"uyyvyy411", "YUV 4:1:1: U, Y, Y, V, Y, Y for 4 pixels", false, false, false, 0, 0, 4, 6,
       sample_uyyvyy411},
      {"y8", "grey, 1 byte a sample", false, false, false, 1, 8, 1, 1, sample_y8},
      {"y10p", "grey, 10 bits as in raw10p", false, false, false, 0, 0, 4, 5,
       sample_packed_grey<10, pack_10p>, "y16le", spread_10<level_10p>, 10},
      {"y10csi2", "grey, 10 bits as in raw10csi2", false, false, false, 0, 0, 4, 5,
       sample_packed_grey<10, pack_10csi2>, "y16le", spread_10<level_10csi2>, 10},
      {"y12packed", "grey, 12 bits as in raw12packed", false, false, false, 0, 0, 2, 3,
       sample_packed_grey<12, pack_12>},
      {"y12p", "grey, 12 bits as in raw12p", false, false, false, 0, 0, 2, 3,
       sample_packed_grey<12, pack_12p>, "y12packed", repack<quorvane::detail::repack_12p>},
      {"y12csi2", "grey, 12 bits as in raw12csi2", false, false, false, 0, 0, 2, 3,
       sample_packed_grey<12, pack_12csi2>, "y12packed", repack<quorvane::detail::repack_12csi2>},
      {"y16be", "grey, 2 bytes a sample, first byte most significant", false, false, true, 1, 16, 1, 2,
       sample_y16<true>},
      {"y16le", "grey, 2 bytes a sample, first byte least significant", false, false, true, 0, 0, 1, 2,
       sample_y16<false>},
      {"rgb8", "R, G, B, 1 byte each", false, false, false, 3, 8, 1, 3, sample_rgb<8>},
      {"rgba8", "R, G, B and an opacity, 1 byte each", false, false, false, 0, 0, 1, 4, sample_rgba8},
      {"rgb16be", "R, G, B, 2 bytes each, first byte most significant", false, false, false, 3, 16, 1, 6,
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
  throw Failure("unknown format " + quoted(name) + ": expected " + one_of(names) +
                ", or a camera's name for one of them (qvn formats lists both)");
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

std::uint32_t sample_bits(const SourceFormat& format, SampleForm form) {
  if (format.has_form) {
    return form.bits;
  }
  return format.group == 2 && format.group_bytes == 3 ? 12 : 8;
}

SampleForm parse_form(const SourceFormat& format, const std::string& bits, const std::string& align) {
  if (!format.has_form && !(bits.empty() && align.empty())) {
    throw Failure(std::string(bits.empty() ? "--align" : "--bits") +
                  " is for 16-bit samples: expected format raw16be, raw16le, y16be or y16le, found " +
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
