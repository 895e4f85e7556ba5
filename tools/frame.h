// The things that the tool moves about: sizes, camera frames, finished pictures, and the scene of a chart.
//
// Each of them is tight: no padding between lines. Their byte counts always fit std::size_t, because a Size
// is limited to kMaxPixels when it is parsed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qvn::tool {

struct Size {
  std::uint32_t width = 0;
  std::uint32_t height = 0;

  std::size_t pixels() const { return std::size_t{width} * height; }
  bool operator==(const Size&) const = default;
};

/// 16384 x 16384: no frame of these cameras is larger, and six bytes a pixel still fit 32 bits.
inline constexpr std::uint64_t kMaxPixels = std::uint64_t{1} << 28;

/// "768x512"; throws Failure for anything else, for a zero and for more than kMaxPixels.
Size parse_size(const std::string& text);
/// The same limits for a size that came from a file's header; `origin` begins the sentence.
Size checked_size(const std::string& origin, std::uint64_t width, std::uint64_t height);
std::string to_text(Size size);

/// A Bayer order as the command line names it: the first two samples of line 0, then those of line 1.
struct Pattern {
  std::string_view name;
  std::uint32_t code;  // as the library's functions take it

  /// 'r', 'g' or 'b'.
  char colour_at(std::uint32_t x, std::uint32_t y) const { return name[(y & 1) * 2 + (x & 1)]; }
};

/// No name: rggb.
const Pattern& find_pattern(const std::string& name);
std::vector<std::string> pattern_names();

/// Where the value lies in a 16-bit sample.
struct SampleForm {
  std::uint32_t bits = 16;
  bool low = true;  // from bit 0 upwards; else from bit 15 downwards
};

struct SourceFormat;

/// A frame as a camera sends it.
struct Frame {
  const SourceFormat* format = nullptr;
  Size size;
  const Pattern* pattern = nullptr;  // means nothing to formats that are no mosaics
  SampleForm form;                   // means nothing to formats that have none
  bool form_told = false;            // the command line says how samples lie
  std::vector<std::uint8_t> bytes;
  const SourceFormat* in_file = nullptr;  // the file's format, if the bytes were brought to another one

  const SourceFormat& format_in_file() const { return in_file == nullptr ? *format : *in_file; }
};

/// A finished picture, stored as PNG and netpbm files store it: RGB order, 16-bit samples big-endian.
struct Picture {
  Size size;
  std::uint32_t channels = 3;  // 1, 3, or 4 with opacity as the last one
  std::uint32_t depth = 8;     // 8 or 16
  std::vector<std::uint8_t> bytes;

  std::size_t line_bytes() const { return std::size_t{size.width} * channels * (depth / 8); }
};

/// What the camera looks at: R, G, B a pixel, 0 is black and 1 the brightest sample.
struct SceneImage {
  Size size;
  std::vector<float> rgb;
};

}  // namespace qvn::tool
