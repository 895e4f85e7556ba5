/// The runs, one pixel after the other.
#include "reference/mono_rgb.h"

#include <cstddef>
#include <cstring>

namespace reference {
namespace {

/// 1 or a word, shifted as the 16-bit rule has it: the count takes its low 5 bits, and 16 or more gives 0.
std::uint32_t shift_left_16(std::uint32_t value, std::uint32_t count) {
  count &= 31;
  return count >= 16 ? 0 : (value << count) & 0xFFFF;
}

std::uint32_t shift_right_16(std::uint32_t value, std::uint32_t count) {
  count &= 31;
  return count >= 16 ? 0 : value >> count;
}

struct Cut {
  Cut(std::uint32_t alignment, std::uint32_t bitsPerSample)
      : shift(alignment == 1 ? bitsPerSample - 8 : 8),
        round_bit(shift_left_16(1, shift - 1)),
        drop_bit(shift_left_16(1, shift - 2)) {}

  std::uint32_t shift;
  std::uint32_t round_bit;
  std::uint32_t drop_bit;
};

std::uint32_t read_word(const std::uint8_t* src, std::uint32_t byteSwap) {
  if (byteSwap != 0) return static_cast<std::uint32_t>(src[0] * 256 + src[1]);
  std::uint16_t word;
  std::memcpy(&word, src, sizeof word);
  return word;
}

}  // namespace

void RGB8ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  std::memmove(dst, src, std::size_t{3} * count);
  for (std::uint32_t i = 0; i < count; ++i, dst += 3) {
    const std::uint8_t first = dst[0];
    dst[0] = dst[2];
    dst[2] = first;
  }
}

void RGB8ToY8(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i, src += 3) {
    const double red = src[0];
    const double green = src[1];
    const double blue = src[2];
    const double sum = (0.72 * green + 0.21 * red) + 0.07 * blue;
    *dst++ = static_cast<std::uint8_t>(static_cast<std::int32_t>(sum));
  }
}

void Y8ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i, ++src) {
    for (int channel = 0; channel < 3; ++channel) *dst++ = *src;
  }
}

void Y16ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i, src += 2) {
    const std::uint8_t h = src[0];
    const std::uint8_t l = src[1];
    std::uint8_t blue = h;
    std::uint8_t red = h;
    if (h != 255) {
      if ((l & 0x40) != 0) blue = static_cast<std::uint8_t>(h + 1);
      if ((l & 0x80) != 0) red = static_cast<std::uint8_t>(h + 1);
    }
    *dst++ = blue;
    *dst++ = h;
    *dst++ = red;
  }
}

void Y16ToY8(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t i = 0; i < count; ++i, src += 2) {
    std::uint8_t out = src[0];
    if (out != 255 && (src[1] & 0x80) != 0) ++out;
    *dst++ = out;
  }
}

void Y16ToBGREx(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t byteSwap,
                std::uint32_t alignment, std::uint32_t bitsPerSample) {
  const Cut cut(alignment, bitsPerSample);
  for (std::uint32_t i = 0; i < count; ++i, src += 2) {
    const std::uint32_t word = read_word(src, byteSwap);
    const auto b = static_cast<std::uint8_t>(shift_right_16(word, cut.shift));
    std::uint8_t blue = b;
    std::uint8_t red = b;
    if (b != 255) {
      if ((word & cut.drop_bit) != 0) blue = static_cast<std::uint8_t>(b + 1);
      if ((word & cut.round_bit) != 0) red = static_cast<std::uint8_t>(b + 1);
    }
    *dst++ = blue;
    *dst++ = b;
    *dst++ = red;
  }
}

void Y16ToY8Ex(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t byteSwap,
               std::uint32_t alignment, std::uint32_t bitsPerSample) {
  const Cut cut(alignment, bitsPerSample);
  for (std::uint32_t i = 0; i < count; ++i, src += 2) {
    const std::uint32_t word = read_word(src, byteSwap);
    auto b = static_cast<std::uint8_t>(shift_right_16(word, cut.shift));
    if (b != 255 && (word & cut.round_bit) != 0) ++b;
    *dst++ = b;
  }
}

void Y16ToY8_MMX(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  Y16ToY8(dst, src, count);
}

}  // namespace reference
