/// One formula for the three layouts: the offsets of a group, then its pixels in source order.
#include "reference/yuv_to_bgr.h"

namespace reference {
namespace {

struct Offsets {
  Offsets(std::uint8_t u, std::uint8_t v)
      : blue(high_half(yuv_tables().UTable[u])),
        green(low_half(yuv_tables().UTable[u]) + low_half(yuv_tables().VTable[v])),
        red(high_half(yuv_tables().VTable[v])) {}

  std::int32_t blue;
  std::int32_t green;
  std::int32_t red;
};

std::uint8_t* put(std::uint8_t* out, std::int32_t blue, std::int32_t green, std::int32_t red) {
  *out++ = clamp_to_byte(blue);
  *out++ = clamp_to_byte(green);
  *out++ = clamp_to_byte(red);
  return out;
}

std::uint8_t* put(std::uint8_t* out, const Offsets& at, std::uint8_t y) {
  return put(out, y + at.blue, y + at.green, y + at.red);
}

}  // namespace

void YUV444ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t group = 0; group < count; ++group, src += 3) {
    const Offsets offsets(src[0], src[2]);
    dst = put(dst, offsets, src[1]);
  }
}

void YUV422ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t group = 0; group < count >> 1; ++group, src += 4) {
    const Offsets offsets(src[0], src[2]);
    const std::uint8_t y0 = src[1];
    const std::uint8_t y1 = src[3];
    dst = put(dst, offsets, y0);
    dst = put(dst, offsets, y1);
  }
}

void YUV411ToBGR(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  for (std::uint32_t group = 0; group < count >> 2; ++group, src += 6) {
    const Offsets offsets(src[0], src[3]);
    const std::uint8_t y[4] = {src[1], src[2], src[4], src[5]};
    for (std::uint8_t luma : y) dst = put(dst, offsets, luma);
  }
}

bool YUV422ToBGRAdjustable(ColorTables& tables, std::uint8_t* dst, const std::uint8_t* src,
                           std::uint32_t count, float hue, float saturation) {
  if (plain_after_cache_check(tables, hue, saturation)) {
    YUV422ToBGR(dst, src, count);
    return true;
  }
  for (std::uint32_t group = 0; group < count >> 1; ++group, src += 4) {
    const std::uint8_t u = src[0];
    const std::uint8_t v = src[2];
    const std::uint8_t y[2] = {src[1], src[3]};
    for (std::uint8_t luma : y) {
      const auto red = static_cast<std::int16_t>(tables.redFromU[u] + luma + tables.redFromV[v]);
      const auto green = static_cast<std::int16_t>(tables.greenFromU[u] + luma + tables.greenFromV[v]);
      const auto blue = static_cast<std::int16_t>(tables.blueFromV[v] + luma + tables.blueFromU[u]);
      dst = put(dst, blue, green, red);
    }
  }
  return true;
}

}  // namespace reference
