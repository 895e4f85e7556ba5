/// Pair after pair, counted by the bytes written.
#include "reference/packed12.h"

namespace reference {

void Packed12BitTo8Bit(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                       std::uint32_t height) {
  const std::uint32_t bytes = width * height;
  std::uint64_t written = 0;
  while (written < bytes) {
    *dst++ = src[0];
    *dst++ = src[2];
    src += 3;
    written += 2;
  }
}

void Packed12BitTo16Bit(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                        std::uint32_t height) {
  const std::uint32_t samples = width * height;
  const std::uint32_t bytes = 2 * samples;
  std::uint64_t written = 0;
  while (written < bytes) {
    const std::uint8_t b = src[1];
    *dst++ = src[0];
    *dst++ = static_cast<std::uint8_t>(b << 4);
    *dst++ = src[2];
    *dst++ = static_cast<std::uint8_t>(b & 0xF0);
    src += 3;
    written += 4;
  }
}

}  // namespace reference
