/// The two paths, each with its own formula for the second field.
#include "reference/interlace.h"

#include <cstring>
#include <vector>

namespace reference {
namespace {

void weave_to(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
  const std::uint32_t second_offset = (width >> 1) * height;
  const std::uint8_t* first = src;
  const std::uint8_t* second = src + second_offset;
  for (std::uint32_t k = 0; k < height >> 1; ++k) {
    std::memcpy(dst, second, width);
    dst += width;
    std::memcpy(dst, first, width);
    dst += width;
    second += width;
    first += width;
  }
}

void weave_in_place(std::uint8_t* buffer, std::uint32_t width, std::uint32_t height) {
  const std::uint32_t half = (width * height) >> 1;
  std::vector<std::uint8_t> scratch(buffer, buffer + half);
  scratch.push_back(0);
  const std::uint8_t* first = scratch.data();
  const std::uint8_t* second = buffer + half;
  std::uint8_t* out = buffer;
  for (std::uint32_t k = 0; k < height >> 1; ++k) {
    std::memmove(out, second, width);
    out += width;
    std::memcpy(out, first, width);
    out += width;
    second += width;
    first += width;
  }
}

}  // namespace

void InterlacedToProgressive(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width,
                             std::uint32_t height) {
  if (dst == src) {
    weave_in_place(dst, width, height);
  } else {
    weave_to(dst, src, width, height);
  }
}

}  // namespace reference
