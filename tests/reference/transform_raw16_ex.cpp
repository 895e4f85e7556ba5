/// One window at a time; samples are fetched, shifted to the top and, for 8-bit targets, cut to a byte.
#include "reference/transform_raw16_ex.h"

#include <cstddef>
#include <cstring>

#include "reference/demosaic_2x2.h"
#include "reference/transform_pixel.h"

namespace reference {
namespace {

std::uint8_t* put(std::uint8_t* out, std::uint32_t target, std::uint32_t red, std::uint32_t green,
                  std::uint32_t blue) {
  switch (target) {
    case 5:
      return put_word(out, (green * 150 + red * 77 + blue * 29) >> 8);
    case 6:
      return put_word(out, (green * 184 + (red * 3 + blue) * 18 + 128) >> 8);
    case 7:
      return put_word(put_word(put_word(out, blue), green), red);
    default:
      return put_target(out, target, static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                        static_cast<std::uint8_t>(blue));
  }
}

}  // namespace

std::uint32_t raw16_ex_target_bytes(std::uint32_t target) {
  if (target == 7) return 6;
  if (target >= 5) return 2;
  return static_cast<std::uint32_t>(target_bytes(target));
}

bool Raw16ImageTransformEx(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                           std::uint32_t height, std::uint32_t target, const SampleFormat& format,
                           std::uint32_t pattern) {
  std::uint32_t shift = 0;
  if (target == 4 || target > 7 || !shift_of(format, shift)) return false;
  const bool top_byte = target < 4;
  const std::size_t pixel = raw16_ex_target_bytes(target);
  const auto fetch = [&](const std::uint8_t* at) {
    const std::uint32_t sample = (word_at(at, format.byteOrder) << shift) & 0xFFFF;
    return top_byte ? sample >> 8 : sample;
  };

  CellWalker walker(src, pattern, width, height, 2);
  std::uint8_t* out = dst;
  while (walker.begin_line()) {
    for (; walker.in_line(); walker.step()) {
      const std::uint32_t green = (fetch(walker.G1) + fetch(walker.G2)) >> 1;
      out = put(out, target, fetch(walker.R), green, fetch(walker.B));
    }
    std::memset(out, 0, target == 2 ? 3 : pixel);
    out += pixel;
    walker.end_line();
  }
  const std::size_t line_bytes = pixel * width;
  std::memcpy(out, out - line_bytes, line_bytes);
  return true;
}

}  // namespace reference
