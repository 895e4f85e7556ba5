// Sources of the colour runs: a pixel's channels, one pixel at a time and a vector at a time.
#pragma once

#include "convert/sample_cut.h"
#include "pixel/split3.h"

namespace qvn {

struct Rgb8 {
  static constexpr size_t kPixelBytes = 3;
  static Rgb<uint32_t> pixel(const uint8_t* from) { return {from[0], from[1], from[2]}; }
  static Rgb<Bytes> pixels(const uint8_t* from) {
    const auto [r, g, b] = load_split3(from);
    return {r, g, b};
  }
};

// Without its alpha.
struct Rgba8 {
  static constexpr size_t kPixelBytes = 4;
  static Rgb<uint32_t> pixel(const uint8_t* from) { return {from[0], from[1], from[2]}; }

  // By twos: R B and G A of two vectors, then one channel of four.
  static Rgb<Bytes> pixels(const uint8_t* from) {
    const auto vector = [=](size_t i) { return load<Bytes>(from + i * kLaneBytes); };
    const Bytes first = vector(0), second = vector(1), third = vector(2), fourth = vector(3);
    const Bytes rb_low = split2_even(first, second), rb_high = split2_even(third, fourth);
    const Bytes ga_low = split2_odd(first, second), ga_high = split2_odd(third, fourth);
    return {split2_even(rb_low, rb_high), split2_even(ga_low, ga_high), split2_odd(rb_low, rb_high)};
  }
};

// Big-endian mono samples as colours: the two bits below the top byte push red and blue.
struct PushedY16 {
  static constexpr size_t kPixelBytes = 2;
  static Rgb<uint32_t> pixel(const uint8_t* from) {
    return cut_colours(load_sample(from, SampleOrder::kBigEndian), kCutTopByte);
  }
  static Rgb<Bytes> pixels(const uint8_t* from) {
    const CutLanes cut(kCutTopByte);
    const SamplePair samples = load_samples<SampleOrder::kBigEndian>(from);
    return {samples.red(cut), samples.green(cut), samples.blue(cut)};
  }
};

}  // namespace qvn
