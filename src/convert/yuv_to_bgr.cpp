// The packed YUV rows that end in BGR.
#include "convert/yuv_to_bgr.h"

#include "convert/yuv_rows.h"
#include "pixel/put.h"

namespace qvn {

namespace {

using BgrOutput = PackedOutput<PutBgr>;

// The sum of a luma and two offsets of a byte's range each: -256 .. 509.
uint32_t clamp_to_byte(int32_t value) {
  return static_cast<uint32_t>(value < 0 ? 0 : value > 255 ? 255 : value);
}

// The arithmetic of ColorTables; without a vector form, since no entry reaches it.
struct AdjustableChroma {
  static Rgb<uint32_t> pixel(uint8_t y, uint8_t u, uint8_t v) {
    const ColorTables& t = color_tables;
    return {clamp_to_byte(t.redFromU[u] + y + t.redFromV[v]),
            clamp_to_byte(t.greenFromU[u] + y + t.greenFromV[v]),
            clamp_to_byte(t.blueFromV[v] + y + t.blueFromU[u])};
  }
};

}  // namespace

void yuv444_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) {
  yuv_row<Yuv444, PackedChroma>(BgrOutput{dst}, src, n);
}

void yuv422_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) {
  yuv_row<Yuv422, PackedChroma>(BgrOutput{dst}, src, n);
}

void yuv411_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) {
  yuv_row<Yuv411, PackedChroma>(BgrOutput{dst}, src, n);
}

bool YUV422ToBGRAdjustable(uint8_t* dst, const uint8_t* src, uint32_t count, float hue, float saturation) {
  if (adjust_color_tables(hue, saturation)) {
    yuv_row_plain<Yuv422, AdjustableChroma>(BgrOutput{dst}, src, 0, count);
  } else {
    yuv422_to_bgr(dst, src, count);
  }
  return true;
}

}  // namespace qvn
