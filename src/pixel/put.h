// Puts: what is written for a pixel's channels. A put knows its bytes a pixel and how many of them, the first
// ones, it writes, how one pixel is written, and how a vector of consecutive pixels is, in the form `Form` or
// as Rgb<Bytes>; it writes those bytes only. A put of one grey byte a pixel has `grey`, which makes the
// bytes, in the order of the pixels, whatever that is, and `grey_of_fours`, which makes them of packed pixels
// (luma.h).
#pragma once

#include <type_traits>

#include "pixel/lanes.h"
#include "pixel/luma.h"
#include "pixel/merge3_words.h"
#include "pixel/merge4.h"
#include "pixel/rgb.h"

namespace qvn {

struct PutBgr {
  using Form = Rgb<Bytes>;
  static constexpr size_t kPixelBytes = 3;
  static constexpr size_t kWrittenBytes = 3;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    out[0] = static_cast<uint8_t>(p.b);
    out[1] = static_cast<uint8_t>(p.g);
    out[2] = static_cast<uint8_t>(p.r);
  }
  static void pixels(uint8_t* out, Rgb<Bytes> p) { store_merge3(out, p.b, p.g, p.r); }
  static void pixels(uint8_t* out, const BgrPairs& p) { store_merge3(out, p.b0_g0, p.r0_b1, p.g1_r1); }
};

// A pixel's fourth byte is stepped over.
struct PutBgra {
  using Form = Rgb<Bytes>;
  static constexpr size_t kPixelBytes = 4;
  static constexpr size_t kWrittenBytes = 3;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) { PutBgr::pixel(out, p); }
  static void pixels(uint8_t* out, Rgb<Bytes> p) { store_three_of_four(out, p.b, p.g, p.r); }
  static void dealt_pixels(uint8_t* out, Rgb<Bytes> p) { store_dealt_three_of_four(out, p.b, p.g, p.r); }
};

struct PutY8 {
  using Form = RgbPairs;
  static constexpr size_t kPixelBytes = 1;
  static constexpr size_t kWrittenBytes = 1;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    out[0] = static_cast<uint8_t>(luma_77_150_29(p.r, p.g, p.b));
  }
  template <class Pixels>
  static void pixels(uint8_t* out, const Pixels& p) {
    store(out, grey(p));
  }
  template <class Pixels>
  static Bytes grey(const Pixels& p) {
    return luma_77_150_29(p);
  }
  template <class Channels>
  static Bytes grey_of_fours(const Channels& channels) {
    return luma_77_150_29_of_fours(channels);
  }
};

// Luma by the second set of weights.
struct PutY8Rounded {
  using Form = RgbPairs;
  static constexpr size_t kPixelBytes = 1;
  static constexpr size_t kWrittenBytes = 1;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    out[0] = static_cast<uint8_t>(luma_54_184_18(p.r, p.g, p.b));
  }
  template <class Pixels>
  static void pixels(uint8_t* out, const Pixels& p) {
    store(out, grey(p));
  }
  template <class Pixels>
  static Bytes grey(const Pixels& p) {
    return luma_54_184_18(p);
  }
  template <class Channels>
  static Bytes grey_of_fours(const Channels& channels) {
    return luma_54_184_18_of_fours(channels);
  }
};

// Luma in all three bytes of a pixel.
struct PutGreyBgr {
  using Form = RgbPairs;
  static constexpr size_t kPixelBytes = 3;
  static constexpr size_t kWrittenBytes = 3;
  static void pixel(uint8_t* out, Rgb<uint32_t> p) {
    out[0] = out[1] = out[2] = static_cast<uint8_t>(luma_77_150_29(p.r, p.g, p.b));
  }
  template <class Pixels>
  static void pixels(uint8_t* out, const Pixels& p) {
    store_triple(out, luma_77_150_29(p));
  }
};

// A vector of pixels that are at hand as words, in the form that the put takes.
template <class Put>
inline void put_pairs(uint8_t* out, RgbPairs p) {
  if constexpr (std::is_same_v<typename Put::Form, RgbPairs>) {
    Put::pixels(out, p);
  } else if constexpr (std::is_same_v<Put, PutBgr>) {
    Put::pixels(out,
                BgrPairs{p.even.b | (p.even.g << 8), p.even.r | (p.odd.b << 8), p.odd.g | (p.odd.r << 8)});
  } else {
    Put::pixels(
        out, {join_bytes(p.even.r, p.odd.r), join_bytes(p.even.g, p.odd.g), join_bytes(p.even.b, p.odd.b)});
  }
}

}  // namespace qvn
