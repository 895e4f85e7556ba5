// Y, U and V of a pixel with full-range weights, as the interpolations through YUV use them. Luma is the first
// set of weights. The chroma weights sum to 0, so that grey has chroma 128; their sums lie in -32640..32640 and
// are floored by the shift, which as unsigned words reads
//
//     ((sum) >> 8) + 128  =  (sum + 32768) >> 8  with 128 <= sum + 32768 <= 65408
//
// so that one formula serves numbers and 16-bit lanes, and nothing needs a clamp.
#pragma once

#include "pixel/luma.h"
#include "pixel/merge3.h"

namespace qvn {

template <class T>
struct Yuv {
  T y, u, v;
};

inline Yuv<uint32_t> yuv_of(Rgb<uint32_t> p) {
  return {luma_77_150_29(p.r, p.g, p.b), (p.b * 128 - p.g * 85 - p.r * 43 + 32768) >> 8,
          (p.r * 128 - p.g * 107 - p.b * 21 + 32768) >> 8};
}

// A vector of pixels: chroma with its result in bits 15..8 of each word.
inline Words weighted_u(Rgb<Words> p) {
  return (p.b << 7) - p.g * factor<Words>(85) - p.r * factor<Words>(43) + 32768;
}
inline Words weighted_v(Rgb<Words> p) {
  return (p.r << 7) - p.g * factor<Words>(107) - p.b * factor<Words>(21) + 32768;
}

// Three bytes a pixel in the order Y, U, V.
struct PutYuv444 {
  using Pixels = RgbPairs;
  static constexpr size_t kPixelBytes = 3;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    const Yuv<uint32_t> yuv = yuv_of(p);
    out[0] = static_cast<uint8_t>(yuv.y);
    out[1] = static_cast<uint8_t>(yuv.u);
    out[2] = static_cast<uint8_t>(yuv.v);
  }
  static void pixels(uint8_t* out, RgbPairs p) {
    store_merge3(out, luma_77_150_29(p), join_top_bytes(weighted_u(p.even), weighted_u(p.odd)),
                 join_top_bytes(weighted_v(p.even), weighted_v(p.odd)));
  }
};

}  // namespace qvn
