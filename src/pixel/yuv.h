// Y, U and V of a pixel with full-range weights, as the interpolations through YUV use them. Luma is the
// first set of weights. The chroma weights sum to 0, so that grey has chroma 128; their sums lie in
// -32640..32640 and are floored by the shift, which as unsigned words reads
//
//     ((sum) >> 8) + 128  =  (sum + 32768) >> 8  with 128 <= sum + 32768 <= 65408
//
// so that one formula serves numbers and 16-bit lanes, and nothing needs a clamp.
#pragma once

#include "pixel/luma.h"
#include "pixel/merge3.h"
#include "pixel/products.h"

namespace qvn {

template <class T>
struct Yuv {
  T y, u, v;
};

inline Yuv<uint32_t> yuv_of(Rgb<uint32_t> p) {
  return {luma_77_150_29(p.r, p.g, p.b), (p.b * 128 - p.g * 85 - p.r * 43 + 32768) >> 8,
          (p.r * 128 - p.g * 107 - p.b * 21 + 32768) >> 8};
}

// red * Red + blue * Blue of pixels that have the two as bytes of a word.
template <int Red, int Blue, bool RedFirst>
inline Words weighted_red_blue(Bytes red_blue) {
  constexpr auto kLower = static_cast<uint8_t>(RedFirst ? Red : Blue);
  constexpr auto kUpper = static_cast<uint8_t>(RedFirst ? Blue : Red);
  return as<Words>(multiply_add_pairs(red_blue, as<SignedBytes>(factor<Words>(kUpper << 8 | kLower))));
}

// Y, U and V of a vector of pixels, with the results in bits 15..8 of each word.
template <bool RedFirst>
inline Yuv<Words> weighted_yuv(Bytes red_blue, Words green) {
  const Words centre = factor<Words>(32768);
  return {weighted_red_blue<77, 29, RedFirst>(red_blue) + green * factor<Words>(150),
          centre - weighted_red_blue<43, -128, RedFirst>(red_blue) - green * factor<Words>(85),
          centre - weighted_red_blue<-128, 21, RedFirst>(red_blue) - green * factor<Words>(107)};
}

// The same with chroma around 0, 128 less: as signed words, shifted already.
template <bool RedFirst>
inline Yuv<SignedWords> weighted_signed_yuv(Bytes red_blue, Words green) {
  const auto chroma = [](Words sum) { return as<SignedWords>(sum) >> 8; };
  return {as<SignedWords>(weighted_red_blue<77, 29, RedFirst>(red_blue) + green * factor<Words>(150)),
          chroma(green * factor<Words>(-85) - weighted_red_blue<43, -128, RedFirst>(red_blue)),
          chroma(green * factor<Words>(-107) - weighted_red_blue<-128, 21, RedFirst>(red_blue))};
}

template <int Odd>
struct YuvPairs {
  explicit YuvPairs(const RbgPairs<Odd>& p)
      : even(weighted_yuv<Odd == 0>(p.even, p.even_green)), odd(weighted_yuv<Odd != 0>(p.odd, p.odd_green)) {}
  Yuv<Words> even, odd;
};

// Three bytes a pixel in the order Y, U, V.
struct PutYuv444 {
  using Form = RbgForm;
  static constexpr size_t kPixelBytes = 3;
  static constexpr size_t kWrittenBytes = 3;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    const Yuv<uint32_t> yuv = yuv_of(p);
    out[0] = static_cast<uint8_t>(yuv.y);
    out[1] = static_cast<uint8_t>(yuv.u);
    out[2] = static_cast<uint8_t>(yuv.v);
  }
  template <int Odd>
  static void pixels(uint8_t* out, const RbgPairs<Odd>& p) {
    const YuvPairs yuv(p);
    store_merge3(out, join_top_bytes(yuv.even.y, yuv.odd.y), join_top_bytes(yuv.even.u, yuv.odd.u),
                 join_top_bytes(yuv.even.v, yuv.odd.v));
  }
};

}  // namespace qvn
