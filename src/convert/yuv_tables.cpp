// The tables' formulas. Conversions from floating point truncate toward zero.
#include "convert/yuv_tables.h"

#include <algorithm>
#include <cmath>

namespace qvn {

constinit std::array<uint32_t, 256> UTable = {}, VTable = {};
constinit PlaneTable PlaneRTable = {}, PlaneBTable = {}, PlaneGDeltaTable = {}, PlaneGTable = {};
constinit std::array<uint32_t, 256> UApproximationTable = {}, VApproximationTable = {};
constinit uint8_t yuv_tables_guard = 1;
constinit ColorTables color_tables;

namespace {

constexpr uint32_t pack_halves(int32_t high, int32_t low) {
  return static_cast<uint32_t>(high) << 16 | (static_cast<uint32_t>(low) & 0xFFFF);
}

constexpr uint32_t pack_offsets(double c, double high_factor, double low_factor) {
  return pack_halves(static_cast<int32_t>(c * high_factor), static_cast<int32_t>(c * low_factor));
}

// 1 + 197/256 stands for 1.771 and 88/256 for 0.3457; 1 + 102/256 for 1.4022 and 182/256 for 0.7144.
constexpr uint32_t pack_approximation(int32_t c, int32_t high_factor, int32_t low_factor) {
  const int32_t t = c < 0 ? -c : c, sign = c < 0 ? -1 : 1;
  return pack_halves(sign * (t + ((t * high_factor) >> 8)), sign * -((t * low_factor) >> 8));
}

uint8_t truncated_byte(double value) {
  return static_cast<uint8_t>(static_cast<int32_t>(std::clamp(value, 0.0, 255.0)));
}

void build_offset_tables() {
  for (int32_t i = 0; i < 256; ++i) {
    const auto index = static_cast<size_t>(i);
    const int32_t c = i - 128;
    UTable[index] = pack_offsets(c, kBlueFromU, kGreenFromU);
    VTable[index] = pack_offsets(c, kRedFromV, kGreenFromV);
    UApproximationTable[index] = pack_approximation(c, 197, 88);
    VApproximationTable[index] = pack_approximation(c, 102, 182);
  }
}

void build_plane_tables() {
  size_t index = 0;
  for (int32_t a = 0; a < 256; ++a) {
    for (int32_t b = 0; b < 256; ++b, ++index) {
      const int32_t c = b - 128;
      const double green = std::clamp((a - 128) * kGreenFromU + c * kGreenFromV, -128.0, 127.0);
      PlaneRTable[index] = truncated_byte(a + c * kRedFromV);
      PlaneBTable[index] = truncated_byte(a + c * kBlueFromU);
      PlaneGDeltaTable[index] = static_cast<uint8_t>(static_cast<int32_t>(green));
      PlaneGTable[index] = static_cast<uint8_t>(std::clamp(a + static_cast<int8_t>(b), 0, 255));
    }
  }
}

// A pair that is not finite makes values that are no numbers; they become the lower end.
int16_t truncated_offset(float value) {
  constexpr float kLowest = -128.0F, kHighest = 127.0F;
  if (!(value > kLowest)) return static_cast<int16_t>(kLowest);
  return static_cast<int16_t>(std::min(value, kHighest));
}

}  // namespace

void build_yuv_tables() {
  if (yuv_tables_guard == 0) return;
  build_offset_tables();
  build_plane_tables();
  yuv_tables_guard = 0;
}

// All in single precision. Only the cosine is scaled by the saturation: hosts tune their pairs to that.
void RebuildHueSat(float hue, float saturation) {
  constexpr auto kRed = static_cast<float>(kRedFromV), kBlue = static_cast<float>(kBlueFromU);
  constexpr auto kGreenU = static_cast<float>(kGreenFromU), kGreenV = static_cast<float>(kGreenFromV);
  const float s = std::sin(hue);
  const float k = std::cos(hue) * saturation;
  ColorTables& tables = color_tables;
  for (size_t i = 0; i < 256; ++i) {
    const float c = static_cast<float>(i) - 128.0F;
    for (auto& identity : tables.identity) identity[i] = static_cast<uint16_t>(i);
    tables.redFromU[i] = truncated_offset(c * (s * kRed));
    tables.greenFromU[i] = truncated_offset((k * kGreenU + s * kGreenV) * c);
    tables.blueFromU[i] = truncated_offset(k * kBlue * c);
    tables.redFromV[i] = truncated_offset(c * (k * kRed));
    tables.greenFromV[i] = truncated_offset((k * kGreenV - s * kGreenU) * c);
    tables.blueFromV[i] = truncated_offset(s * -kBlue * c);
  }
}

bool adjust_color_tables(float hue, float saturation, void (*rebuild)(float, float)) {
  if (hue == 0.0F && saturation == 1.0F) return false;
  HueSatPair& cached = color_tables.hue_sat;
  if (hue != cached.hue) {
    cached.hue = hue;
    rebuild(hue, cached.saturation);
  }
  if (saturation != cached.saturation) {
    cached.saturation = saturation;
    rebuild(cached.hue, saturation);
  }
  return true;
}

}  // namespace qvn
