/// The tables, entry by entry. Conversions to integers truncate toward zero.
#include "reference/yuv_tables.h"

#include <cmath>
#include <memory>

namespace reference {
namespace {

std::uint32_t pack(std::int32_t high, std::int32_t low) {
  return (static_cast<std::uint32_t>(high) << 16) | (static_cast<std::uint32_t>(low) & 0xFFFF);
}

double clamp(double value, double low, double high) {
  if (value < low) return low;
  if (value > high) return high;
  return value;
}

std::unique_ptr<YuvTables> build() {
  auto tables = std::make_unique<YuvTables>();
  for (std::int32_t i = 0; i < 256; ++i) {
    const double c = i - 128;
    const auto index = static_cast<std::size_t>(i);
    tables->UTable[index] =
        pack(static_cast<std::int32_t>(c * 1.771), static_cast<std::int32_t>(c * -0.3457));
    tables->VTable[index] =
        pack(static_cast<std::int32_t>(c * 1.4022), static_cast<std::int32_t>(c * -0.7144));
  }
  for (std::int32_t a = 0; a < 256; ++a) {
    for (std::int32_t b = 0; b < 256; ++b) {
      const std::size_t index = static_cast<std::size_t>(a) * 256 + static_cast<std::size_t>(b);
      const std::int32_t signed_b = b < 128 ? b : b - 256;
      tables->PlaneRTable[index] = static_cast<std::uint8_t>(clamp(a + (b - 128) * 1.4022, 0, 255));
      tables->PlaneBTable[index] = static_cast<std::uint8_t>(clamp(a + (b - 128) * 1.771, 0, 255));
      tables->PlaneGDeltaTable[index] = static_cast<std::uint8_t>(
          static_cast<std::int32_t>(clamp((a - 128) * -0.3457 - (b - 128) * 0.7144, -128, 127)));
      tables->PlaneGTable[index] = clamp_to_byte(a + signed_b);
    }
  }
  return tables;
}

std::int16_t truncate_and_clamp(float value) {
  if (!(value > -128.0F)) return -128;
  if (value > 127.0F) return 127;
  return static_cast<std::int16_t>(value);
}

}  // namespace

std::int32_t high_half(std::uint32_t entry) { return static_cast<std::int32_t>(entry) >> 16; }

std::int32_t low_half(std::uint32_t entry) { return static_cast<std::int16_t>(entry & 0xFFFF); }

std::uint8_t clamp_to_byte(std::int32_t value) {
  if (value < 0) return 0;
  if (value > 255) return 255;
  return static_cast<std::uint8_t>(value);
}

const YuvTables& yuv_tables() {
  static const std::unique_ptr<YuvTables> tables = build();
  return *tables;
}

void RebuildHueSat(ColorTables& tables, float hue, float saturation) {
  const float s = std::sin(hue);
  const float k = std::cos(hue) * saturation;
  for (int i = 0; i < 256; ++i) {
    const auto c = static_cast<float>(i - 128);
    const auto index = static_cast<std::size_t>(i);
    for (auto& identity : tables.identity) identity[index] = static_cast<std::uint16_t>(i);
    tables.redFromU[index] = truncate_and_clamp(c * (s * 1.4022F));
    tables.greenFromU[index] = truncate_and_clamp((k * -0.3457F - s * 0.7144F) * c);
    tables.blueFromU[index] = truncate_and_clamp(k * 1.771F * c);
    tables.redFromV[index] = truncate_and_clamp(c * (k * 1.4022F));
    tables.greenFromV[index] = truncate_and_clamp((s * 0.3457F - k * 0.7144F) * c);
    tables.blueFromV[index] = truncate_and_clamp(s * -1.771F * c);
  }
}

bool plain_after_cache_check(ColorTables& tables, float hue, float saturation) {
  if (hue == 0.0F && saturation == 1.0F) return true;
  if (hue != tables.hue) {
    tables.hue = hue;
    RebuildHueSat(tables, hue, tables.saturation);
  }
  if (saturation != tables.saturation) {
    tables.saturation = saturation;
    RebuildHueSat(tables, tables.hue, saturation);
  }
  return false;
}

}  // namespace reference
