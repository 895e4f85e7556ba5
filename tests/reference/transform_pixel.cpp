/// One pixel at a time, by the target's formula.
#include "reference/transform_pixel.h"

#include <cstring>

namespace reference {

std::size_t target_bytes(std::uint32_t target) {
  switch (target) {
    case 1:
      return 3;
    case 2:
      return 4;
    default:
      return 1;
  }
}

std::uint8_t* put_target(std::uint8_t* out, std::uint32_t target, std::uint8_t red, std::uint8_t green,
                         std::uint8_t blue) {
  switch (target) {
    case 0:
      *out = static_cast<std::uint8_t>((red * 77 + green * 150 + blue * 29) >> 8);
      break;
    case 1:
    case 2:
      out[0] = blue;
      out[1] = green;
      out[2] = red;
      break;
    default:
      *out = static_cast<std::uint8_t>((green * 184 + (red * 3 + blue) * 18 + 128) >> 8);
      break;
  }
  return out + target_bytes(target);
}

std::uint8_t* put_word(std::uint8_t* out, std::uint32_t value) {
  const auto word = static_cast<std::uint16_t>(value);
  std::memcpy(out, &word, sizeof word);
  return out + 2;
}

}  // namespace reference
