// Y, U and V in studio range, 16..235 and 16..240, and 4:2:2 of them.
//
// The luma weights sum to 220 and the chroma weights to 0; U and V sums lie in -28560..28560. With the
// range's foot added before the shift,
//
//     Y = ((sum + 128) >> 8) + 16    =  (sum + 128 + 4096) >> 8     at most 60324 before the shift
//     U = ((sum + 128) >> 8) + 128   =  (sum + 128 + 32768) >> 8    4336 .. 61456
//
// one formula serves numbers and 16-bit lanes, and nothing needs a clamp.
#pragma once

#include "pixel/yuv.h"

namespace qvn {

inline Yuv<uint32_t> studio_yuv_of(Rgb<uint32_t> p) {
  return {(p.g * 129 + p.b * 25 + p.r * 66 + (128 + 4096)) >> 8,
          (p.b * 112 - p.g * 74 - p.r * 38 + (128 + 32768)) >> 8,
          (p.r * 112 - p.g * 94 - p.b * 18 + (128 + 32768)) >> 8};
}

// The same of a vector of pixels, with the results in bits 15..8 of each word.
inline Yuv<Words> weighted_studio_yuv(const Rgb<Words>& p) {
  const Words luma_foot = factor<Words>(128 + 4096), chroma_foot = factor<Words>(128 + 32768);
  const Words strongest = factor<Words>(112);
  return {p.g * factor<Words>(129) + p.b * factor<Words>(25) + p.r * factor<Words>(66) + luma_foot,
          p.b * strongest - p.g * factor<Words>(74) - p.r * factor<Words>(38) + chroma_foot,
          p.r * strongest - p.g * factor<Words>(94) - p.b * factor<Words>(18) + chroma_foot};
}

template <bool RedFirst>
inline Yuv<Words> weighted_studio_yuv(Bytes red_blue, Words green) {
  const Words luma_foot = factor<Words>(128 + 4096), chroma_foot = factor<Words>(128 + 32768);
  return {weighted_red_blue<66, 25, RedFirst>(red_blue) + green * factor<Words>(129) + luma_foot,
          weighted_red_blue<-38, 112, RedFirst>(red_blue) - green * factor<Words>(74) + chroma_foot,
          weighted_red_blue<112, -18, RedFirst>(red_blue) - green * factor<Words>(94) + chroma_foot};
}

struct StudioPairs {
  explicit StudioPairs(const RgbPairs& p)
      : even(weighted_studio_yuv(p.even)), odd(weighted_studio_yuv(p.odd)) {}
  template <int Odd>
  explicit StudioPairs(const RbgPairs<Odd>& p)
      : even(weighted_studio_yuv<Odd == 0>(p.even, p.even_green)),
        odd(weighted_studio_yuv<Odd != 0>(p.odd, p.odd_green)) {}
  Yuv<Words> even, odd;
};

// An output that writes two pixels as U Y0 V Y1, from an even pixel on. Chroma is the mean of the two,
// rounded down, of values that are shifted and offset already.
struct Studio422 {
  using Form = RbgForm;
  static constexpr bool kWholePairs = true;
  static constexpr size_t kPixelBytes = 2;
  static constexpr size_t kWrittenBytes = 2;
  static constexpr size_t line_bytes(uint32_t width) { return size_t{width >> 1} * 4; }
  uint8_t* dst;

  // A pair's even pixel first: the odd one finds its chroma in the group.
  void pixel(size_t x, Rgb<uint32_t> p) const {
    const Yuv<uint32_t> yuv = studio_yuv_of(p);
    uint8_t* group = dst + x / 2 * 4;
    const bool second = x % 2 != 0;
    group[second ? 3 : 1] = static_cast<uint8_t>(yuv.y);
    group[0] = static_cast<uint8_t>(second ? (yuv.u + group[0]) >> 1 : yuv.u);
    group[2] = static_cast<uint8_t>(second ? (yuv.v + group[2]) >> 1 : yuv.v);
  }

  // RgbPairs or RbgPairs.
  template <class Pairs>
  void pixels(size_t x, const Pairs& p) const {
    const StudioPairs yuv(p);
    const Words first = (((yuv.even.u >> 8) + (yuv.odd.u >> 8)) >> 1) | (yuv.even.y & 0xFF00);
    const Words second = (((yuv.even.v >> 8) + (yuv.odd.v >> 8)) >> 1) | (yuv.odd.y & 0xFF00);
    uint8_t* groups = dst + x / 2 * 4;
    store(groups, zip_low(first, second));
    store(groups + kLaneBytes, zip_high(first, second));
  }
};

}  // namespace qvn
