/// The stages and the three demosaics that chain them. Sizes and offsets are 32-bit and wrap.
#include "reference/interpolation.h"

#include <cstddef>
#include <cstring>

#include "reference/demosaic_2x2.h"
#include "reference/yuv_to_bgr.h"

namespace reference {
namespace {

/// The pair that no caller changes.
ColorTables& color_tables() {
  static ColorTables tables;
  return tables;
}

void convert(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  ColorTables& tables = color_tables();
  YUV422ToBGRAdjustable(tables, dst, src, count, tables.hue, tables.saturation);
}

struct Halves {
  Halves(std::uint32_t width, std::uint32_t height)
      : pairs(((height >> 1) * width) >> 1),
        pixels((width * height) >> 1),
        second_half((width * height * 3) >> 1) {}

  std::uint32_t pairs;        ///< in a half frame
  std::uint32_t pixels;       ///< to convert
  std::uint32_t second_half;  ///< bytes from the start of the working frame
};

/// The four pixels of a pair and the next one, as Y, U, V.
constexpr std::size_t kY = 0;
constexpr std::size_t kU = 1;
constexpr std::size_t kV = 2;

/// Chroma of the window of PackLCAAV: the pixel before the pair, the pair, the pixel behind it, and the same
/// four columns of the other line, which begin at `other`.
std::uint8_t block_mean(std::uint32_t previous, const std::uint8_t* pair, const std::uint8_t* other,
                        std::size_t channel) {
  const std::uint32_t sum = previous + pair[channel] + pair[channel + 3] + pair[channel + 6] +
                            other[channel] + other[channel + 3] + other[channel + 6] + other[channel + 9];
  return static_cast<std::uint8_t>((sum + 4) >> 3);
}

}  // namespace

void BayerToYUV444(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                   std::uint32_t pattern) {
  CellWalker walker(src, pattern, width, height);
  std::uint8_t* out = dst;
  while (walker.begin_line()) {
    for (; walker.in_line(); walker.step()) {
      const std::int32_t r = *walker.R;
      const std::int32_t g = walker.green();
      const std::int32_t b = *walker.B;
      *out++ = static_cast<std::uint8_t>((r * 77 + g * 150 + b * 29) >> 8);
      const auto u = static_cast<std::int16_t>(b * 128 - g * 85 - r * 43);
      const auto v = static_cast<std::int16_t>(r * 128 - g * 107 - b * 21);
      *out++ = static_cast<std::uint8_t>((u >> 8) + 128);
      *out++ = static_cast<std::uint8_t>((v >> 8) + 128);
    }
    std::memcpy(out, out - 3, 3);
    out += 3;
    walker.end_line();
  }
  const std::size_t line_bytes = std::size_t{3} * width;
  std::memcpy(out, out - line_bytes, line_bytes);
}

void pack_yuv422(std::uint8_t* out, const std::uint8_t* frame, std::uint32_t pairs) {
  for (std::uint32_t q = 0; q < pairs; ++q, frame += 6) {
    const std::uint8_t* next = frame + 3;
    *out++ = static_cast<std::uint8_t>((frame[kU] + next[kU]) >> 1);
    *out++ = frame[kY];
    *out++ = static_cast<std::uint8_t>((frame[kV] + next[kV]) >> 1);
    *out++ = next[kY];
  }
}

void pack_lcaa(std::uint8_t* out, const std::uint8_t* frame, std::uint32_t pairs) {
  for (std::uint32_t q = 0; q < pairs - 2; ++q, frame += 6) {
    std::uint32_t u = 0;
    std::uint32_t v = 0;
    for (std::size_t pixel = 0; pixel < 4; ++pixel) {
      u += frame[3 * pixel + kU];
      v += frame[3 * pixel + kV];
    }
    *out++ = static_cast<std::uint8_t>(u >> 2);
    *out++ = frame[kY];
    *out++ = static_cast<std::uint8_t>(v >> 2);
    *out++ = frame[3 + kY];
  }
  for (int copy = 0; copy < 2; ++copy, out += 4) std::memcpy(out, out - 4, 4);
}

void PackLCAAV(std::uint8_t* out, const std::uint8_t* frame, std::uint32_t width, std::uint32_t lines) {
  const std::uint32_t ahead = ((lines - 1) * width) >> 1;
  const std::size_t pitch = std::size_t{3} * width;
  std::uint8_t previous_u = frame[kU];
  std::uint8_t previous_v = frame[kV];
  const auto filter_pair = [&](const std::uint8_t* other) {
    *out++ = block_mean(previous_u, frame, other, kU);
    *out++ = frame[kY];
    *out++ = block_mean(previous_v, frame, other, kV);
    *out++ = frame[3 + kY];
    previous_u = frame[3 + kU];
    previous_v = frame[3 + kV];
    frame += 6;
  };
  if (ahead >= 2) {
    for (std::uint32_t q = 0; q < ahead - 1; ++q) filter_pair(frame - 3 + pitch);
  }
  if (width >> 1 >= 2) {
    for (std::uint32_t q = 0; q < (width >> 1) - 1; ++q) filter_pair(frame - 3 - pitch);
  }
  for (int q = 0; q < 2; ++q, frame += 6) {
    *out++ = frame[kU];
    *out++ = frame[kY];
    *out++ = frame[kV];
    *out++ = frame[3 + kY];
  }
}

void Raw8ToBGR_IntYUV422(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                         std::uint32_t pattern) {
  const Halves halves(width, height);
  BayerToYUV444(dst, src, width, height, pattern);
  pack_yuv422(src, dst, halves.pairs);
  convert(dst, src, halves.pixels);
  pack_yuv422(src, dst + halves.second_half, halves.pairs);
  convert(dst + halves.second_half, src, halves.pixels);
}

void Raw8ToBGR_IntLCAA(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                       std::uint32_t pattern) {
  const Halves halves(width, height);
  BayerToYUV444(dst, src, width, height, pattern);
  pack_lcaa(src, dst, halves.pairs);
  convert(dst, src, halves.pixels);
  pack_lcaa(src, dst + halves.second_half, halves.pairs);
  convert(dst + halves.second_half, src, halves.pixels);
}

void Raw8ToBGR_IntLCAAV(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                        std::uint32_t pattern) {
  const Halves halves(width, height);
  BayerToYUV444(dst, src, width, height, pattern);
  PackLCAAV(src, dst, width, height >> 1);
  convert(dst, src, halves.pixels);
  PackLCAAV(src, dst + halves.second_half, width, height >> 1);
  convert(dst + halves.second_half, src, halves.pixels);
}

}  // namespace reference
