// Puts: what is written for a pixel's channels. A put knows its bytes a pixel, how one pixel is written, and
// how a vector of consecutive pixels is, in the form `Pixels`; it writes those bytes only.
#pragma once

#include "pixel/lanes.h"
#include "pixel/luma.h"
#include "pixel/merge3.h"
#include "pixel/rgb.h"

namespace qvn {

struct PutBgr {
  using Pixels = Rgb<Bytes>;
  static constexpr size_t kPixelBytes = 3;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    out[0] = static_cast<uint8_t>(p.b);
    out[1] = static_cast<uint8_t>(p.g);
    out[2] = static_cast<uint8_t>(p.r);
  }
  static void pixels(uint8_t* out, Rgb<Bytes> p) { store_merge3(out, p.b, p.g, p.r); }
};

struct PutY8 {
  using Pixels = RgbPairs;
  static constexpr size_t kPixelBytes = 1;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    out[0] = static_cast<uint8_t>(luma_77_150_29(p.r, p.g, p.b));
  }
  static void pixels(uint8_t* out, RgbPairs p) { store(out, luma_77_150_29(p)); }
};

// Luma in all three bytes of a pixel.
struct PutGreyBgr {
  using Pixels = RgbPairs;
  static constexpr size_t kPixelBytes = 3;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    out[0] = out[1] = out[2] = static_cast<uint8_t>(luma_77_150_29(p.r, p.g, p.b));
  }
  static void pixels(uint8_t* out, RgbPairs p) { store_triple(out, luma_77_150_29(p)); }
};

}  // namespace qvn
