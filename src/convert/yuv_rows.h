// Rows of packed YUV: n pixels of a source layout to whatever an output writes for a pixel's colours and
// luma.
//
// A row is made of whole groups of pixels that share their chroma; pixels beyond the last whole group are
// neither read nor written. The output must not overlap the source, but 4:4:4 pixels may be rewritten in
// place by three bytes a pixel.
//
// A layout knows its group, one group at a time, and a vector's worth of them. An arithmetic is PackedChroma
// or PlaneChroma, or in plain rows any other with a `pixel`. An output takes pixel x as numbers, or pixels x,
// x + 1, ... as lanes.
#pragma once

#include "convert/chroma.h"
#include "pixel/put.h"
#include "pixel/split3.h"

namespace qvn {

// Two vectors of words each to bytes, clamped.
inline Rgb<Bytes> narrow_to_bytes(const Rgb<SignedWords>& first, const Rgb<SignedWords>& second) {
  return {narrow_to_bytes(first.r, second.r), narrow_to_bytes(first.g, second.g),
          narrow_to_bytes(first.b, second.b)};
}

// One vector to words up to 255.
inline Rgb<Words> clamp_to_bytes(const Rgb<SignedWords>& p) {
  const auto clamped = [](SignedWords v) { return as<Words>(clamp_words(v, 0, 255)); };
  return {clamped(p.r), clamped(p.g), clamped(p.b)};
}

// U Y V
struct Yuv444 {
  static constexpr size_t kGroupPixels = 1, kGroupBytes = 3, kVectorPixels = kLaneBytes;
  static constexpr bool kInPlace = true;

  template <class Arithmetic, class Output>
  static void group(const Output& out, size_t x, const uint8_t* from) {
    const uint8_t u = from[0], y = from[1], v = from[2];
    out.pixel(x, Arithmetic::pixel(y, u, v), y);
  }

  template <class Arithmetic, class Output>
  static void vector(const Output& out, size_t x, const uint8_t* from) {
    const auto [u, y, v] = load_split3(from);
    const Rgb<SignedWords> low = Arithmetic::colours(luma_low(y), chroma_low(u), chroma_low(v));
    const Rgb<SignedWords> high = Arithmetic::colours(luma_high(y), chroma_high(u), chroma_high(v));
    out.pixels(x, narrow_to_bytes(low, high), y);
  }
};

// U Y0 V Y1
struct Yuv422 {
  static constexpr size_t kGroupPixels = 2, kGroupBytes = 4, kVectorPixels = kLaneBytes;
  static constexpr bool kInPlace = false;

  template <class Arithmetic, class Output>
  static void group(const Output& out, size_t x, const uint8_t* from) {
    const uint8_t u = from[0], y0 = from[1], v = from[2], y1 = from[3];
    out.pixel(x, Arithmetic::pixel(y0, u, v), y0);
    out.pixel(x + 1, Arithmetic::pixel(y1, u, v), y1);
  }

  template <class Arithmetic, class Output>
  static void vector(const Output& out, size_t x, const uint8_t* from) {
    const Bytes lower = load<Bytes>(from), upper = load<Bytes>(from + kLaneBytes);
    const Bytes first = shuffle<places::every_other_block<0>>(lower, upper);
    const Bytes second = shuffle<places::every_other_block<1>>(lower, upper);
    const SignedWords y0 = luma_odd(first), y1 = luma_odd(second);
    out.pixels(x,
               narrow_to_bytes(Arithmetic::colours_of_pairs(y0, chroma_even(first)),
                               Arithmetic::colours_of_pairs(y1, chroma_even(second))),
               narrow_to_bytes(y0, y1));
  }
};

// U Y0 Y1 V Y2 Y3, which is threes of one chroma and two lumas, with U and V in turn
struct Yuv411 {
  static constexpr size_t kGroupPixels = 4, kGroupBytes = 6, kVectorPixels = 2 * kLaneBytes;
  static constexpr bool kInPlace = false;

  template <class Arithmetic, class Output>
  static void group(const Output& out, size_t x, const uint8_t* from) {
    const uint8_t u = from[0], v = from[3];
    const uint8_t lumas[] = {from[1], from[2], from[4], from[5]};
    for (size_t i = 0; i < 4; ++i) out.pixel(x + i, Arithmetic::pixel(lumas[i], u, v), lumas[i]);
  }

  // A lane is a group: the words of U and V serve the four words of luma. Everything stays within its 16-byte
  // block: pixels 0 .. 15 of each 32 in one vector, 16 .. 31 in another.
  template <class Arithmetic, class Output>
  static void vector(const Output& out, size_t x, const uint8_t* from) {
    const auto [uv, y02, y13] = load_split3(from);
    const SignedWords u = chroma_even(uv), v = chroma_odd(uv);
    const auto colours = [&](SignedWords first, SignedWords second) {
      return narrow_to_bytes(Arithmetic::colours(first, u, v), Arithmetic::colours(second, u, v));
    };
    const Rgb<Bytes> p01 = colours(luma_even(y02), luma_even(y13));
    const Rgb<Bytes> p23 = colours(luma_odd(y02), luma_odd(y13));
    if constexpr (requires { Output::grey(p01); }) {  // one channel to put in order in place of three
      const Riffled grey(Output::grey(p01), Output::grey(p23));
      out.greys(x, grey.template in_order<0>());
      out.greys(x + kLaneBytes, grey.template in_order<1>());
      return;
    }
    const Riffled r(p01.r, p23.r), g(p01.g, p23.g), b(p01.b, p23.b);
    const Bytes y_low = interleave_low(y02, y13), y_high = interleave_high(y02, y13);
    out.pixels(x, {r.in_order<0>(), g.in_order<0>(), b.in_order<0>()}, in_order<0>(y_low, y_high));
    out.pixels(x + kLaneBytes, {r.in_order<1>(), g.in_order<1>(), b.in_order<1>()},
               in_order<1>(y_low, y_high));
  }

 private:
  // Of each block's groups, first pixels then second ones, and third ones then fourth ones:
  //
  //     0 0 0 .. 1 1 1 ..          0 2 0 2 ..          0 1 2 3 0 1 2 3 ..
  //     2 2 2 .. 3 3 3 ..    ->    1 3 1 3 ..    ->    0 1 2 3 0 1 2 3 ..
  struct Riffled {
    Bytes low, high;
    Riffled(Bytes p01, Bytes p23) {
      const Bytes p02 = interleave_low(p01, p23), p13 = interleave_high(p01, p23);
      low = interleave_low(p02, p13);
      high = interleave_high(p02, p13);
    }
    template <int Upper>
    Bytes in_order() const {
      return Yuv411::in_order<Upper>(low, high);
    }
  };

  template <int Upper>
  static Bytes in_order(Bytes first, Bytes second) {
    return shuffle<places::alternate_blocks<Upper>>(first, second);
  }
};

// Groups `from` to the last whole one, one at a time.
template <class Layout, class Arithmetic, class Output>
void yuv_row_plain(const Output& out, const uint8_t* src, size_t from, size_t n) {
  for (size_t group = from; group < n / Layout::kGroupPixels; ++group) {
    Layout::template group<Arithmetic>(out, group * Layout::kGroupPixels, src + group * Layout::kGroupBytes);
  }
}

// A vector at a time; the last one overlaps the one before it, so that no group is left over, unless the one
// before may have rewritten its source.
template <class Layout, class Arithmetic, class Output>
[[gnu::flatten]] void yuv_row(const Output& out, const uint8_t* src, size_t n) {
  constexpr size_t kStep = Layout::kVectorPixels / Layout::kGroupPixels;
  const auto vector = [&](size_t group) {
    Layout::template vector<Arithmetic>(out, group * Layout::kGroupPixels, src + group * Layout::kGroupBytes);
  };
  const size_t groups = n / Layout::kGroupPixels;
  size_t done = 0;
  if constexpr (kVectorRows) {
    for (; done + kStep <= groups; done += kStep) vector(done);
    if (!Layout::kInPlace && done != 0 && done < groups) {
      vector(groups - kStep);
      return;
    }
  }
  yuv_row_plain<Layout, Arithmetic>(out, src, done, n);
}

// An output that writes packed pixels by a put.
template <class Put>
struct PackedOutput {
  uint8_t* dst;
  void pixel(size_t x, Rgb<uint32_t> p, uint8_t) const { Put::pixel(dst + x * Put::kPixelBytes, p); }
  void pixels(size_t x, Rgb<Bytes> p, Bytes) const { Put::pixels(dst + x * Put::kPixelBytes, p); }

  static Bytes grey(const Rgb<Bytes>& p) requires requires { Put::grey(p); }
  { return Put::grey(p); }
  void greys(size_t x, Bytes grey) const { store(dst + x, grey); }
};

// The conversions to packed pixels.
template <class Layout, class Put>
void yuv_to_packed(uint8_t* dst, const uint8_t* src, size_t n) {
  yuv_row<Layout, PackedChroma>(PackedOutput<Put>{dst}, src, n);
}

}  // namespace qvn
