// The YUV tables: chroma offsets for the packed conversions, the four plane tables, and the block that
// depends on a hue and a saturation.
//
// Built once while the library loads and read-only from then on, except ColorTables: an adjustable conversion
// with a new pair rebuilds it, without a lock. No entry passes a new pair, so the pair keeps its load values.
#pragma once

#include <array>
#include <cstdint>

namespace qvn {

// The one conversion that all tables are made of; chroma is centred on 128.
inline constexpr double kRedFromV = 1.4022;
inline constexpr double kBlueFromU = 1.771;
inline constexpr double kGreenFromU = -0.3457;
inline constexpr double kGreenFromV = -0.7144;

// Two signed 16-bit offsets an entry, each truncated toward zero on its own. High half: blue from U, red from
// V. Low half: green.
extern std::array<uint32_t, 256> UTable, VTable;

constexpr int32_t high_half(uint32_t entry) { return static_cast<int32_t>(entry) >> 16; }
constexpr int32_t low_half(uint32_t entry) { return static_cast<int16_t>(entry & 0xFFFF); }

// Bytes at first * 256 + second. They truncate the whole sum, so for chroma below 128 red and blue can be one
// lower than UTable and VTable make them, and green differs by its own clamp and truncation. Callers depend
// on the difference: the two sets stay apart.
using PlaneTable = std::array<uint8_t, 65536>;
extern PlaneTable PlaneRTable;       // Y, V
extern PlaneTable PlaneBTable;       // Y, U
extern PlaneTable PlaneGDeltaTable;  // U, V; a signed byte, to be added to Y
extern PlaneTable PlaneGTable;       // Y, delta

// Integer approximations of the same factors, laid out like UTable and VTable. No conversion reads them.
extern std::array<uint32_t, 256> UApproximationTable, VApproximationTable;

// Builds everything above if the guard is set, and clears it. The load order holds it twice; the second run
// finds nothing to do.
extern uint8_t yuv_tables_guard;
void build_yuv_tables();

struct HueSatPair {
  float hue = 0.0F;  // an angle in radians
  float saturation = 1.0F;
};

struct MonoGains {
  float c = 0.0F, m = 0.0F, y = 0.0F, g = 0.0F;
};

// The adjustable state of the process.
struct ColorTables {
  std::array<std::array<uint16_t, 256>, 3> identity = {};  // filled by a rebuild, read by no conversion
  std::array<int16_t, 256> redFromU = {};
  std::array<int16_t, 256> greenFromU = {};
  std::array<int16_t, 256> blueFromU = {};
  std::array<int16_t, 256> redFromV = {};
  std::array<int16_t, 256> greenFromV = {};
  std::array<int16_t, 256> blueFromV = {};
  HueSatPair hue_sat;  // the pair that the six tables were last built for
  MonoGains CygmMonoGains;
  uint8_t useGains = 0;
};

extern ColorTables color_tables;

// Builds the six tables for a pair; the cached pair is the caller's business. Offsets stop at -128 and 127.
void RebuildHueSat(float hue, float saturation);

// Brings the six tables up to date with a pair, one rebuild for each of the two that differs from the cached
// one. False for hue 0 and saturation 1, the plain conversion: then nothing is looked at. `rebuild` is there
// for tests that count.
bool adjust_color_tables(float hue, float saturation, void (*rebuild)(float, float) = RebuildHueSat);

}  // namespace qvn
