#include "utility/sis_block.h"

#include <cstring>

#include "frame/pixel_format.h"
#include "quorvane/quorvane.h"

namespace qvn {
namespace {

// 0 for an unknown kind.
constexpr uint32_t block_bytes(uint32_t kind) { return kind == 1 ? 12 : kind == 2 ? 52 : 0; }

// Wraps at 32 bits.
uint32_t first_pixel(const SisPlace& place) {
  const uint32_t position = static_cast<uint32_t>(place.position);
  return place.position >= 0 ? place.width * position : place.width * place.height + position;
}

}  // namespace

// A block that ends with the frame's last byte is refused: callers know the largest position by it.
uint32_t copy_sis_block(uint8_t* dst, const uint8_t* frame, const SisPlace& place) {
  const PixelFormat* format = find_pixel_format(place.color_coding);
  if (format == nullptr) return QVN_E_PARAM5;
  const uint32_t first_bit = first_pixel(place) * format->bits_per_pixel;
  if ((first_bit & 7) != 0) return QVN_E_PARAM2;
  const uint32_t bytes = block_bytes(place.block_kind);
  if (bytes == 0) return QVN_E_PARAM7;
  const uint32_t frame_bytes = (format->bits_per_pixel * place.width * place.height) >> 3;
  const uint32_t first_byte = first_bit >> 3;
  if (first_byte + bytes >= frame_bytes) return QVN_E_UNCLASSIFIED;
  std::memcpy(dst, frame + first_byte, bytes);
  return QVN_OK;
}

}  // namespace qvn
