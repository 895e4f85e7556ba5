// Rows of packed YUV: n pixels of a source layout to whatever an output writes for a pixel's colours and luma.
//
// A row is made of whole groups of pixels that share their chroma; pixels beyond the last whole group are
// neither read nor written. The output must not overlap the source, but 4:4:4 pixels may be rewritten in
// place by three bytes a pixel.
//
// A layout knows its group, one group at a time, and a vector's worth of them. An arithmetic is PackedChroma
// or PlaneChroma. An output takes pixel x as numbers, or pixels x, x + 1, ... as lanes.
#pragma once

#include "convert/chroma.h"
#include "pixel/split3.h"

namespace qvn {

inline Rgb<Offset> doubled_low(const Rgb<Offset>& o) {
  return {{zip_low(o.r.up, o.r.up), zip_low(o.r.down, o.r.down)},
          {zip_low(o.g.up, o.g.up), zip_low(o.g.down, o.g.down)},
          {zip_low(o.b.up, o.b.up), zip_low(o.b.down, o.b.down)}};
}

inline Rgb<Offset> doubled_high(const Rgb<Offset>& o) {
  return {{zip_high(o.r.up, o.r.up), zip_high(o.r.down, o.r.down)},
          {zip_high(o.g.up, o.g.up), zip_high(o.g.down, o.g.down)},
          {zip_high(o.b.up, o.b.up), zip_high(o.b.down, o.b.down)}};
}

// U Y V
struct Yuv444 {
  static constexpr size_t kGroupPixels = 1, kGroupBytes = 3;
  static constexpr bool kInPlace = true;

  template <class Arithmetic, class Output>
  static void group(const Output& out, size_t x, const uint8_t* from) {
    const uint8_t u = from[0], y = from[1], v = from[2];
    out.pixel(x, Arithmetic::pixel(y, u, v), y);
  }

  // One vector of groups.
  template <class Arithmetic, class Output>
  static void groups(const Output& out, size_t x, const uint8_t* from) {
    const auto [u, y, v] = load_split3(from);
    out.pixels(x, shift_clamped(y, Arithmetic::offsets(u, v)), y);
  }
};

// U Y0 V Y1
struct Yuv422 {
  static constexpr size_t kGroupPixels = 2, kGroupBytes = 4;
  static constexpr bool kInPlace = false;

  template <class Arithmetic, class Output>
  static void group(const Output& out, size_t x, const uint8_t* from) {
    const uint8_t u = from[0], y0 = from[1], v = from[2], y1 = from[3];
    out.pixel(x, Arithmetic::pixel(y0, u, v), y0);
    out.pixel(x + 1, Arithmetic::pixel(y1, u, v), y1);
  }

  template <class Arithmetic, class Output>
  static void groups(const Output& out, size_t x, const uint8_t* from) {
    const Bytes first = load<Bytes>(from), second = load<Bytes>(from + kLaneBytes);
    const Bytes third = load<Bytes>(from + 2 * kLaneBytes), fourth = load<Bytes>(from + 3 * kLaneBytes);
    const Bytes uv0 = split2_even(first, second), uv1 = split2_even(third, fourth);
    const Rgb<Offset> offsets = Arithmetic::offsets(split2_even(uv0, uv1), split2_odd(uv0, uv1));
    const Bytes y0 = split2_odd(first, second), y1 = split2_odd(third, fourth);
    out.pixels(x, shift_clamped(y0, doubled_low(offsets)), y0);
    out.pixels(x + kLaneBytes, shift_clamped(y1, doubled_high(offsets)), y1);
  }
};

// U Y0 Y1 V Y2 Y3, which is threes of one chroma and two lumas, with U and V in turn
struct Yuv411 {
  static constexpr size_t kGroupPixels = 4, kGroupBytes = 6;
  static constexpr bool kInPlace = false;

  template <class Arithmetic, class Output>
  static void group(const Output& out, size_t x, const uint8_t* from) {
    const uint8_t u = from[0], v = from[3];
    const uint8_t lumas[] = {from[1], from[2], from[4], from[5]};
    for (size_t i = 0; i < 4; ++i) out.pixel(x + i, Arithmetic::pixel(lumas[i], u, v), lumas[i]);
  }

  template <class Arithmetic, class Output>
  static void groups(const Output& out, size_t x, const uint8_t* from) {
    const auto [uv0, even0, odd0] = load_split3(from);
    const auto [uv1, even1, odd1] = load_split3(from + 3 * kLaneBytes);
    const Rgb<Offset> offsets = Arithmetic::offsets(split2_even(uv0, uv1), split2_odd(uv0, uv1));
    half<Arithmetic>(out, x, doubled_low(offsets), even0, odd0);
    half<Arithmetic>(out, x + 2 * kLaneBytes, doubled_high(offsets), even1, odd1);
  }

 private:
  template <class Arithmetic, class Output>
  static void half(const Output& out, size_t x, const Rgb<Offset>& offsets, Bytes even, Bytes odd) {
    const Bytes y0 = zip_low(even, odd), y1 = zip_high(even, odd);
    out.pixels(x, shift_clamped(y0, doubled_low(offsets)), y0);
    out.pixels(x + kLaneBytes, shift_clamped(y1, doubled_high(offsets)), y1);
  }
};

// Groups `from` to the last whole one, one at a time.
template <class Layout, class Arithmetic, class Output>
void yuv_row_plain(const Output& out, const uint8_t* src, size_t from, size_t n) {
  for (size_t group = from; group < n / Layout::kGroupPixels; ++group) {
    Layout::template group<Arithmetic>(out, group * Layout::kGroupPixels, src + group * Layout::kGroupBytes);
  }
}

// A vector of groups at a time; the last one overlaps the one before it, so that no group is left over, unless
// the one before may have rewritten its source.
template <class Layout, class Arithmetic, class Output>
void yuv_row(const Output& out, const uint8_t* src, size_t n) {
  constexpr size_t kStep = kLaneBytes;
  const auto vector = [&](size_t group) {
    Layout::template groups<Arithmetic>(out, group * Layout::kGroupPixels, src + group * Layout::kGroupBytes);
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
};

}  // namespace qvn
