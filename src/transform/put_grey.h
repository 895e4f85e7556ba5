// Puts of grey pixels: what is written for a sample. put.h tells what a put is; these take one sample in
// place of three channels, and a vector of bytes or of words.
#pragma once

#include "pixel/merge3.h"
#include "pixel/merge4.h"
#include "pixel/put16.h"

namespace qvn {

struct GreyY8 {
  static constexpr size_t kPixelBytes = 1;
  static void pixel(uint8_t* out, uint32_t v) { out[0] = static_cast<uint8_t>(v); }
  static void pixels(uint8_t* out, Bytes v) { store(out, v); }
};

struct GreyBgr {
  static constexpr size_t kPixelBytes = 3;
  static void pixel(uint8_t* out, uint32_t v) { out[0] = out[1] = out[2] = static_cast<uint8_t>(v); }
  static void pixels(uint8_t* out, Bytes v) { store_triple(out, v); }
};

struct GreyBgra {
  static constexpr size_t kPixelBytes = 4;
  static void pixel(uint8_t* out, uint32_t v) { GreyBgr::pixel(out, v); }
  static void pixels(uint8_t* out, Bytes v) { store_three_of_four(out, v, v, v); }
};

// Half of a 4:2:2 group. Chroma is 0, not the 128 of grey; callers depend on it.
struct GreyHalf422 {
  static constexpr size_t kPixelBytes = 2;
  static void pixel(uint8_t* out, uint32_t v) {
    out[0] = 0;
    out[1] = static_cast<uint8_t>(v);
  }
  static void pixels(uint8_t* out, Bytes v) {
    store(out, zip_low(Bytes{}, v));
    store(out + kLaneBytes, zip_high(Bytes{}, v));
  }
};

struct GreyY16 {
  static constexpr size_t kPixelBytes = 2;
  static void pixel(uint8_t* out, uint32_t v) { store_word(out, v); }
  static void pixels(uint8_t* out, Words v) { store(out, v); }
};

struct GreyBgr16 {
  static constexpr size_t kPixelBytes = 6;
  static void pixel(uint8_t* out, uint32_t v) { PutBgr16::pixel(out, {v, v, v}); }
  static void pixels(uint8_t* out, Words v) { PutBgr16::pixels(out, {v, v, v}); }
};

}  // namespace qvn
