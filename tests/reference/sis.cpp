/// The tests in their order; all arithmetic wraps at 32 bits.
#include "reference/sis.h"

#include <quorvane/quorvane.h>

namespace reference {
namespace {

/// 0 for an unknown code.
std::uint32_t bits_per_pixel(std::uint32_t colorCoding) {
  switch (colorCoding) {
    case 0:
    case 9:
    case 128:
    case 129:
    case 130:
      return 8;
    case 1:
    case 132:
    case 134:
    case 136:
      return 12;
    case 2:
    case 5:
    case 7:
    case 10:
      return 16;
    case 3:
    case 4:
      return 24;
    case 141:
      return 32;
    case 133:
    case 135:
      return 36;
    case 6:
    case 8:
      return 48;
    default:
      return 0;
  }
}

}  // namespace

SisPlace find_sis(std::uint32_t width, std::uint32_t height, std::uint32_t colorCoding, std::int32_t position,
                  std::uint32_t blockKind) {
  const std::uint32_t bits = bits_per_pixel(colorCoding);
  if (bits == 0) return {QVN_E_PARAM5, 0, 0};

  const auto unsigned_position = static_cast<std::uint32_t>(position);
  const std::uint32_t pixel = position >= 0 ? width * unsigned_position : width * height + unsigned_position;
  const std::uint32_t bit = pixel * bits;
  if (bit % 8 != 0) return {QVN_E_PARAM2, 0, 0};
  const std::uint32_t offset = bit >> 3;

  std::uint32_t size = 0;
  if (blockKind == 1) {
    size = 12;
  } else if (blockKind == 2) {
    size = 52;
  } else {
    return {QVN_E_PARAM7, 0, 0};
  }

  const std::uint32_t frame_bytes = (bits * width * height) >> 3;
  if (offset + size >= frame_bytes) return {QVN_E_UNCLASSIFIED, 0, 0};
  return {QVN_OK, offset, size};
}

}  // namespace reference
