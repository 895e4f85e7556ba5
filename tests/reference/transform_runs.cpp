/// The runs, one pixel or one group after the other.
#include "reference/transform_runs.h"

#include <cstddef>
#include <cstring>

#include "reference/transform_pixel.h"
#include "reference/yuv_to_bgr.h"

namespace reference {
namespace {

using GroupToBgr = void (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t);

/// Groups of a YUV layout: the clamped bytes of each pixel go on into the target's formula.
void put_groups(std::uint8_t* out, const std::uint8_t* src, std::uint32_t groups, std::uint32_t group_pixels,
                std::size_t group_bytes, GroupToBgr to_bgr, std::uint32_t target) {
  for (; groups != 0; --groups, src += group_bytes) {
    std::uint8_t bgr[12];
    to_bgr(bgr, src, group_pixels);
    for (std::uint32_t pixel = 0; pixel < group_pixels; ++pixel) {
      out = put_target(out, target, bgr[3 * pixel + 2], bgr[3 * pixel + 1], bgr[3 * pixel]);
    }
  }
}

}  // namespace

bool shift_of(const SampleFormat& format, std::uint32_t& shift) {
  if (format.alignment > 1 || format.byteOrder > 1) return false;
  shift = format.alignment == 1 ? 16 - format.bitsPerSample : 0;
  switch (shift) {
    case 0:
    case 1:
    case 2:
    case 3:
    case 4:
    case 6:
      return true;
    default:
      return false;
  }
}

std::uint32_t word_at(const std::uint8_t* src, std::uint32_t byteOrder) {
  if (byteOrder == 1) return static_cast<std::uint32_t>(src[0] * 256 + src[1]);
  std::uint16_t word;
  std::memcpy(&word, src, sizeof word);
  return word;
}

bool RGB8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                        std::uint32_t target) {
  if (target > 3) return false;
  for (; count != 0; --count, src += 3) dst = put_target(dst, target, src[0], src[1], src[2]);
  return true;
}

bool RGBA8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                         std::uint32_t target) {
  if (target > 3) return false;
  for (; count != 0; --count, src += 4) {
    if (target == 2) dst[3] = src[3];
    dst = put_target(dst, target, src[0], src[1], src[2]);
  }
  return true;
}

bool YUV444ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                          std::uint32_t target) {
  if (target > 3) return false;
  put_groups(dst, src, count, 1, 3, YUV444ToBGR, target);
  return true;
}

bool YUV422ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                          std::uint32_t target) {
  if (target > 3) return false;
  put_groups(dst, src, count >> 1, 2, 4, YUV422ToBGR, target);
  return true;
}

bool YUV411ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                          std::uint32_t target) {
  if (target > 3) return false;
  put_groups(dst, src, count >> 2, 4, 6, YUV411ToBGR, target);
  return true;
}

bool Y8ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count, std::uint32_t target) {
  switch (target) {
    case 0:
    case 3:
      for (std::uint32_t i = 0; i < count; ++i) dst[i] = src[i];
      return true;
    case 1:
    case 2:
      for (; count != 0; --count, ++src) dst = put_target(dst, target, *src, *src, *src);
      return true;
    case 4:
      for (std::uint32_t i = 0; i < count; ++i, ++src) {
        if (i % 2 == 0) {
          dst[0] = 0;
          dst[1] = *src;
          dst[2] = 0;
        } else {
          dst[3] = *src;
          dst += 4;
        }
      }
      return true;
    default:
      return false;
  }
}

bool Y16ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                       std::uint32_t target) {
  if (target > 3) return false;
  for (; count != 0; --count, src += 2) {
    const std::uint8_t h = src[0];
    const std::uint8_t l = src[1];
    std::uint8_t red = h;
    std::uint8_t blue = h;
    if ((l & 0x80) != 0 && h < 255) red = static_cast<std::uint8_t>(h + 1);
    if ((l & 0x40) != 0 && h < 255) blue = static_cast<std::uint8_t>(h + 1);
    dst = put_target(dst, target, red, h, blue);
  }
  return true;
}

bool Y16ImageTransformEx(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                         std::uint32_t target, const SampleFormat* format) {
  const SampleFormat top_aligned = {0, 0, 1};
  if (format == nullptr) format = &top_aligned;
  std::uint32_t shift = 0;
  if (target == 4 || target > 7 || !shift_of(*format, shift)) return false;

  for (; count != 0; --count, src += 2) {
    const std::uint32_t w = word_at(src, format->byteOrder);
    const auto top = static_cast<std::uint8_t>(w >> (8 - shift));
    switch (target) {
      case 0:
      case 3:
        *dst++ = top;
        break;
      case 1:
      case 2:
        dst = put_target(dst, target, top, top, top);
        break;
      case 5:
      case 6:
        dst = put_word(dst, w << shift);
        break;
      default:
        for (int channel = 0; channel < 3; ++channel) dst = put_word(dst, w << shift);
        break;
    }
  }
  return true;
}

bool Y12ImageTransform(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count,
                       std::uint32_t target) {
  if (target > 3) return false;
  const std::uint8_t* const end = dst + std::size_t{count} * target_bytes(target);
  for (; dst != end; src += 3) {
    for (const std::uint8_t top : {src[0], src[2]}) {
      if (target == 1 || target == 2) {
        dst = put_target(dst, target, top, top, top);
      } else {
        *dst++ = top;
      }
    }
  }
  return true;
}

}  // namespace reference
