/// The stages over a scratch frame, each over a whole frame or half frame before the next begins.
#include "reference/transform_int.h"

#include <cstddef>
#include <vector>

#include "reference/interpolation.h"
#include "reference/transform_pixel.h"
#include "reference/transform_runs.h"

namespace reference {
namespace {

/// Three pixels of Y, U, V.
constexpr std::size_t kLookBack = 9;

/// The pair that no caller changes.
ColorTables& color_tables() {
  static ColorTables tables;
  return tables;
}

/// `pack(out, half)` packs a half of the scratch frame.
template <typename Pack>
bool interpolate(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
                 std::uint32_t target, std::uint32_t pattern, Pack pack) {
  if (target > 3) return false;
  const std::uint32_t pixels = (width * height) >> 1;
  const std::uint32_t second_half = (width * height * static_cast<std::uint32_t>(target_bytes(target))) >> 1;
  ColorTables& tables = color_tables();

  std::vector<std::uint8_t> memory(kLookBack + std::size_t{3} * width * height);
  std::uint8_t* const scratch = memory.data() + kLookBack;
  BayerToYUV444(scratch, src, width, height, pattern);
  pack(src, scratch);
  YUV422ToTargetAdjustable(tables, target, dst, src, pixels, tables.hue, tables.saturation);
  pack(src, scratch + ((width * height * 3) >> 1));
  YUV422ToTargetAdjustable(tables, target, dst + second_half, src, pixels, tables.hue, tables.saturation);
  return true;
}

}  // namespace

bool YUV422ToTargetAdjustable(ColorTables& tables, std::uint32_t target, std::uint8_t* dst,
                              const std::uint8_t* src, std::uint32_t count, float hue, float saturation) {
  if (plain_after_cache_check(tables, hue, saturation)) {
    return YUV422ImageTransform(dst, src, count, target);
  }
  for (std::uint32_t group = 0; group < count >> 1; ++group, src += 4) {
    const std::uint8_t u = src[0];
    const std::uint8_t v = src[2];
    for (const std::uint8_t y : {src[1], src[3]}) {
      const auto red = static_cast<std::int16_t>(tables.redFromU[u] + y + tables.redFromV[v]);
      const auto green = static_cast<std::int16_t>(tables.greenFromU[u] + y + tables.greenFromV[v]);
      const auto blue = static_cast<std::int16_t>(tables.blueFromV[v] + y + tables.blueFromU[u]);
      dst = put_target(dst, target, clamp_to_byte(red), clamp_to_byte(green), clamp_to_byte(blue));
    }
  }
  return true;
}

bool Raw8ImageTransform_IntYUV422(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width,
                                  std::uint32_t height, std::uint32_t target, std::uint32_t pattern) {
  const std::uint32_t pairs = ((height >> 1) * width) >> 1;
  return interpolate(dst, src, width, height, target, pattern,
                     [pairs](std::uint8_t* out, const std::uint8_t* half) { pack_yuv422(out, half, pairs); });
}

bool Raw8ImageTransform_IntLCAA(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width,
                                std::uint32_t height, std::uint32_t target, std::uint32_t pattern) {
  const std::uint32_t pairs = ((height >> 1) * width) >> 1;
  return interpolate(dst, src, width, height, target, pattern,
                     [pairs](std::uint8_t* out, const std::uint8_t* half) { pack_lcaa(out, half, pairs); });
}

bool Raw8ImageTransform_IntLCAAV(std::uint8_t* dst, std::uint8_t* src, std::uint32_t width,
                                 std::uint32_t height, std::uint32_t target, std::uint32_t pattern) {
  const std::uint32_t lines = height >> 1;
  return interpolate(
      dst, src, width, height, target, pattern,
      [width, lines](std::uint8_t* out, const std::uint8_t* half) { PackLCAAV(out, half, width, lines); });
}

}  // namespace reference
