/// Slow reference of the YUV tables: packed chroma offsets, plane tables, and the block of adjustable tables.
///
/// All are built by their formulas, in double precision but for the adjustable block, which is built in
/// single precision. yuv_tables() builds once and is read-only from then on.
#pragma once

#include <array>
#include <cstdint>

namespace reference {

/// The two signed halves of an entry of UTable or VTable.
std::int32_t high_half(std::uint32_t entry);
std::int32_t low_half(std::uint32_t entry);

/// Below 0 becomes 0, above 255 becomes 255.
std::uint8_t clamp_to_byte(std::int32_t value);

struct YuvTables {
  std::array<std::uint32_t, 256> UTable;  ///< high: blue from U; low: green from U
  std::array<std::uint32_t, 256> VTable;  ///< high: red from V; low: green from V

  std::array<std::uint8_t, 65536> PlaneRTable;       ///< index Y, V
  std::array<std::uint8_t, 65536> PlaneBTable;       ///< index Y, U
  std::array<std::uint8_t, 65536> PlaneGDeltaTable;  ///< index U, V
  std::array<std::uint8_t, 65536> PlaneGTable;       ///< index Y, delta
};

const YuvTables& yuv_tables();

/// The adjustable tables and the pair that they were last built for.
struct ColorTables {
  std::array<std::uint16_t, 256> identity[3] = {};
  std::array<std::int16_t, 256> redFromU = {};
  std::array<std::int16_t, 256> greenFromU = {};
  std::array<std::int16_t, 256> blueFromU = {};
  std::array<std::int16_t, 256> redFromV = {};
  std::array<std::int16_t, 256> greenFromV = {};
  std::array<std::int16_t, 256> blueFromV = {};
  float hue = 0.0F;
  float saturation = 1.0F;
};

/// Builds the six tables; the cached pair is the caller's business. A hue that is not finite gives tables of
/// -128 wherever no number comes out.
void RebuildHueSat(ColorTables& tables, float hue, float saturation);

/// The check before a conversion. True if the plain path is to run; else the tables fit the pair.
bool plain_after_cache_check(ColorTables& tables, float hue, float saturation);

}  // namespace reference
