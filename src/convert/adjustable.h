// YUV 4:2:2 to packed pixels with a hue and a saturation, for any put.
#pragma once

#include "convert/yuv_rows.h"
#include "convert/yuv_tables.h"

namespace qvn {

// The arithmetic of ColorTables; without a vector form, since no entry reaches it.
struct AdjustableChroma {
  static Rgb<uint32_t> pixel(uint8_t y, uint8_t u, uint8_t v) {
    const ColorTables& t = color_tables;
    return {clamp(t.redFromU[u] + y + t.redFromV[v]), clamp(t.greenFromU[u] + y + t.greenFromV[v]),
            clamp(t.blueFromV[v] + y + t.blueFromU[u])};
  }

 private:
  // The sum of a luma and two offsets of a byte's range each: -256 .. 509.
  static uint32_t clamp(int32_t value) {
    return static_cast<uint32_t>(value < 0 ? 0 : value > 255 ? 255 : value);
  }
};

// Whole groups only. Hue 0 with saturation 1 is the plain conversion; any other pair brings ColorTables up to
// date first and needs the caller to keep other threads out. Always true.
template <class Put>
bool YUV422ToTargetAdjustable(uint8_t* dst, const uint8_t* src, uint32_t count, float hue, float saturation) {
  if (adjust_color_tables(hue, saturation)) {
    yuv_row_plain<Yuv422, AdjustableChroma>(PackedOutput<Put>{dst}, src, 0, count);
  } else {
    yuv_to_packed<Yuv422, Put>(dst, src, count);
  }
  return true;
}

}  // namespace qvn
