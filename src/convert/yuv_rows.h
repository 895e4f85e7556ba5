// Rows of packed YUV: n pixels of a source layout to whatever an output writes for a pixel's colours and
// luma.
//
// A row is made of whole groups of pixels that share their chroma; pixels beyond the last whole group are
// neither read nor written. The output must not overlap the source, but 4:4:4 pixels may be rewritten in
// place by three bytes a pixel.
//
// A layout knows its group, one group at a time, and a vector's worth of them. An arithmetic is PackedChroma
// or PlaneChroma, or in plain rows any other with a `pixel`. An output takes pixel x as numbers, or pixels x,
// x + 1, ... as lanes: bytes, or words that are still to be clamped.
#pragma once

#include <type_traits>

#include "convert/chroma.h"
#include "pixel/cache_lines.h"
#include "pixel/clamped_pairs.h"
#include "pixel/put.h"
#include "pixel/split3.h"

namespace qvn {

// Two vectors of words each to bytes, clamped.
inline Rgb<Bytes> narrow_to_bytes(const Rgb<SignedWords>& first, const Rgb<SignedWords>& second) {
  return {narrow_to_bytes(first.r, second.r), narrow_to_bytes(first.g, second.g),
          narrow_to_bytes(first.b, second.b)};
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

namespace places {
// The channels of four groups of four bytes, one behind the other.
constexpr int channels_of_fours(int i) { return i / 16 * 16 + i % 4 * 4 + i % 16 / 4; }

constexpr int quads_by_halves(int i) { return i / 2 + i % 2 * (kLaneBytes / 16); }
}  // namespace places

// Eight bytes at a time: those of the first half of a vector to the lower halves of the blocks, those of the
// second half to the upper ones.
inline Bytes by_halves(Bytes v) { return as<Bytes>(shuffle<places::quads_by_halves>(as<QuadWords>(v))); }

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
    if constexpr (requires { requires Output::kTakesDealt; }) {
      out.dealt_pixels(x, in_pairs<Arithmetic>(by_halves(lower), by_halves(upper)));
      return;
    }
    const Bytes first = shuffle<places::every_other_block<0>>(lower, upper);
    const Bytes second = shuffle<places::every_other_block<1>>(lower, upper);
    if constexpr (requires { requires Output::kPrefersPairs; }) {
      const auto [u_y0, v_y1] = channels(first, second);
      const SignedWords u = chroma_low(u_y0), v = chroma_low(v_y1);
      out.pixels(x,
                 RgbWordPairs{Arithmetic::colours(luma_high(u_y0), u, v),
                              Arithmetic::colours(luma_high(v_y1), u, v)},
                 interleave_high(u_y0, v_y1));
    } else {
      out.pixels(x, in_pairs<Arithmetic>(first, second), narrow_to_bytes(luma_odd(first), luma_odd(second)));
    }
  }

 private:
  // Each block of the first vector and then that of the second.
  template <class Arithmetic>
  static Rgb<Bytes> in_pairs(Bytes first, Bytes second) {
    const Rgb<SignedWords> low = Arithmetic::colours_of_pairs(luma_odd(first), chroma_even(first));
    const Rgb<SignedWords> high = Arithmetic::colours_of_pairs(luma_odd(second), chroma_even(second));
    return narrow_to_bytes(low, high);
  }

  struct Channels {
    Bytes u_y0, v_y1;
  };

  // Eight groups in each 16-byte block:
  //
  //     U Y0 V Y1 U Y0 ..          U U U U Y0 Y0 Y0 Y0 V V ..           U U .. Y0 Y0 ..
  //     U Y0 V Y1 U Y0 ..    ->    U U U U Y0 Y0 Y0 Y0 V V ..    ->     V V .. Y1 Y1 ..
  static Channels channels(Bytes first, Bytes second) {
    if constexpr (kBytePermutes) {
      const auto a = as<DoubleWords>(shuffle<places::channels_of_fours>(first));
      const auto b = as<DoubleWords>(shuffle<places::channels_of_fours>(second));
      return {as<Bytes>(interleave_low(a, b)), as<Bytes>(interleave_high(a, b))};
    } else {
      const Bytes a = interleave_low(first, second), b = interleave_high(first, second);
      const Bytes c = interleave_low(a, b), d = interleave_high(a, b);
      return {interleave_low(c, d), interleave_high(c, d)};
    }
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

  // A lane is a group: its words of U and V serve four pixels.
  //
  //     U V U V ..                 u u u u ..             u u u u u u ..
  //     Y0 Y2 Y0 Y2 ..      ->     v v v v ..      ->     v v v v v v ..      for each half of
  //     Y1 Y3 Y1 Y3 ..                                    Y0 Y2 Y0 Y2 ..      a 16-byte block
  //                                                       Y1 Y3 Y1 Y3 ..
  template <class Arithmetic, class Output>
  static void vector(const Output& out, size_t x, const uint8_t* from) {
    const auto [uv, y02, y13] = load_split3(from);
    const Bytes chroma = by_halves(uv), even = by_halves(y02), odd = by_halves(y13);
    const Rgb<SignedWords> add = Arithmetic::colours(SignedWords{}, chroma_even(chroma), chroma_odd(chroma));
    if constexpr (requires {
                    Output::grey(RgbWordPairs{});
                  }) {  // one channel to put in order in place of three
      const Words p01 = as<Words>(Output::grey(pixels(luma_even(even), luma_even(odd), add)));
      const Words p23 = as<Words>(Output::grey(pixels(luma_odd(even), luma_odd(odd), add)));
      out.greys(x, as<Bytes>(interleave_low(p01, p23)));
      out.greys(x + kLaneBytes, as<Bytes>(interleave_high(p01, p23)));
      return;
    }
    const auto low = [](SignedWords v) { return interleave_low(v, v); };
    const auto high = [](SignedWords v) { return interleave_high(v, v); };
    out.pixels(x, pixels(luma_low(even), luma_low(odd), {low(add.r), low(add.g), low(add.b)}),
               interleave_low(even, odd));
    out.pixels(x + kLaneBytes,
               pixels(luma_high(even), luma_high(odd), {high(add.r), high(add.g), high(add.b)}),
               interleave_high(even, odd));
  }

 private:
  static RgbWordPairs pixels(SignedWords even, SignedWords odd, const Rgb<SignedWords>& add) {
    return {{even + add.r, even + add.g, even + add.b}, {odd + add.r, odd + add.g, odd + add.b}};
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
[[gnu::flatten]] void yuv_row(Output out, const uint8_t* src, size_t n) {
  constexpr size_t kStep = Layout::kVectorPixels / Layout::kGroupPixels;
  const auto vector = [&](size_t group) {
    const uint8_t* from = src + group * Layout::kGroupBytes;
    prefetch_ahead<kStep * Layout::kGroupBytes>(from);
    Layout::template vector<Arithmetic>(out, group * Layout::kGroupPixels, from);
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

// An output that writes packed pixels by a put. Bytes of BGRA are wanted as they are dealt to blocks, which a
// pair's words are not.
template <class Put>
struct PackedOutput {
  static constexpr bool kTakesDealt = std::is_same_v<Put, PutBgra>;
  static constexpr bool kPrefersPairs = !kTakesDealt;
  uint8_t* dst;
  void pixel(size_t x, Rgb<uint32_t> p, uint8_t) const { Put::pixel(dst + x * Put::kPixelBytes, p); }
  void pixels(size_t x, Rgb<Bytes> p, Bytes) const { Put::pixels(dst + x * Put::kPixelBytes, p); }
  void pixels(size_t x, const RgbWordPairs& p, Bytes) const {
    put_clamped<Put>(dst + x * Put::kPixelBytes, p);
  }
  void dealt_pixels(size_t x, Rgb<Bytes> p) const { Put::dealt_pixels(dst + x * Put::kPixelBytes, p); }

  static Bytes grey(const RgbWordPairs& p) requires requires { Put::grey(narrow_to_pairs(p)); }
  { return Put::grey(narrow_to_pairs(p)); }
  void greys(size_t x, Bytes grey) const { store(dst + x, grey); }
};

// The conversions to packed pixels.
template <class Layout, class Put>
void yuv_to_packed(uint8_t* dst, const uint8_t* src, size_t n) {
  yuv_row<Layout, PackedChroma>(PackedOutput<Put>{dst}, src, n);
}

}  // namespace qvn
