// A strip of a line as Y, U and V: up to kStripPixels pixels, with chroma apart for even and odd pixels and
// for a halo of one pair on each side. A strip is a few kilobytes of stack, whatever the line's width.
//
// Chroma is kept around 0: 128 goes through every mean unchanged, and is added where a byte is written.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "bayer/row_2x2.h"
#include "pixel/yuv.h"

namespace qvn {

// A line is cut into strips of kStripStep pixels; what is left of up to kStripPixels makes the last one, so
// that no strip is shorter than kStripPixels - kStripStep, unless the line is.
inline constexpr size_t kStripStep = 256, kStripPixels = kStripStep + 16;
// Rows of vectors may read a vector's width more than a strip holds.
inline constexpr size_t kStripRoom = kStripPixels + kLaneBytes;

inline size_t strip_length(size_t left) { return left <= kStripPixels ? left : kStripStep; }

inline constexpr int kChromaCentre = 128;

// A word for each pair of a strip, from the pair before it (-1) to the one behind it. Pair 0 is aligned, so
// that vectors of pairs are.
class PairWords {
 public:
  int16_t& operator[](ptrdiff_t pair) { return words_[static_cast<size_t>(pair + kLead)]; }
  const int16_t& operator[](ptrdiff_t pair) const { return words_[static_cast<size_t>(pair + kLead)]; }

 private:
  static constexpr ptrdiff_t kLead = kLaneCount<Words>;
  alignas(64) std::array<int16_t, kLead + kStripRoom / 2> words_{};
};

// One chroma channel of a strip: the left pixels of the pairs and the right ones.
struct ChromaPairs {
  PairWords even, odd;
};

struct ChromaStrip {
  alignas(64) std::array<uint8_t, kStripRoom> y{};
  ChromaPairs u, v;
};

// The mosaic as a flat run of pixels: what the last column repeats and what the last line repeats.
struct Mosaic {
  const uint8_t* src;
  uint32_t width, height, pattern;

  CellLine line(uint32_t row) const {
    return cell_line(src, width, row < height - 2 ? row : height - 2, pattern);
  }
  Yuv<uint32_t> pixel(uint32_t row, uint32_t x) const {
    return yuv_of(window_2x2<FetchRaw8>(line(row), x < width - 2 ? x : width - 2));
  }
};

inline int16_t centred(uint32_t chroma) {
  return static_cast<int16_t>(static_cast<int32_t>(chroma) - kChromaCentre);
}

// Fills a strip from rows of windows.
struct StripOutput {
  using Form = RbgForm;
  static constexpr bool kWholePairs = true;
  ChromaStrip& strip;

  void pixel(size_t x, Rgb<uint32_t> p) const {
    const Yuv<uint32_t> yuv = yuv_of(p);
    const auto pair = static_cast<ptrdiff_t>(x / 2);
    strip.y[x] = static_cast<uint8_t>(yuv.y);
    (x % 2 == 0 ? strip.u.even : strip.u.odd)[pair] = centred(yuv.u);
    (x % 2 == 0 ? strip.v.even : strip.v.odd)[pair] = centred(yuv.v);
  }

  template <int Odd>
  void pixels(size_t x, const RbgPairs<Odd>& p) const {
    const auto pair = static_cast<ptrdiff_t>(x / 2);
    const Yuv<SignedWords> even = weighted_signed_yuv<Odd == 0>(p.even, p.even_green);
    const Yuv<SignedWords> odd = weighted_signed_yuv<Odd != 0>(p.odd, p.odd_green);
    store(&strip.y[x], join_top_bytes(as<Words>(even.y), as<Words>(odd.y)));
    store_words(&strip.u.even[pair], even.u);
    store_words(&strip.u.odd[pair], odd.u);
    store_words(&strip.v.even[pair], even.v);
    store_words(&strip.v.odd[pair], odd.v);
  }

 private:
  static void store_words(int16_t* to, SignedWords words) { std::memcpy(to, &words, sizeof words); }
};

// The n pixels of a line from column x on (both even); the halo is left alone.
inline void fill_strip(ChromaStrip& strip, const Mosaic& mosaic, uint32_t row, uint32_t x, size_t n) {
  CellLine line = mosaic.line(row);
  line.red += x;
  line.blue += x;
  const bool line_end = x + n == mosaic.width;
  row_2x2<FetchRaw8>(StripOutput{strip}, line, line_end ? n - 1 : n);
  if (!line_end) return;
  strip.y[n - 1] = strip.y[n - 2];
  const ptrdiff_t last = static_cast<ptrdiff_t>(n / 2) - 1;
  strip.u.odd[last] = strip.u.even[last];
  strip.v.odd[last] = strip.v.even[last];
}

// The pair right behind the strip: of the line, or of the start of the next one.
inline void fill_right_halo(ChromaStrip& strip, const Mosaic& mosaic, uint32_t row, uint32_t x, size_t n) {
  const auto end = static_cast<uint32_t>(x + n);
  const bool line_end = end == mosaic.width;
  const auto pixel = [&](uint32_t i) {
    return line_end ? mosaic.pixel(row + 1, i) : mosaic.pixel(row, end + i);
  };
  const Yuv<uint32_t> first = pixel(0), second = pixel(1);
  const auto behind = static_cast<ptrdiff_t>(n / 2);
  strip.u.even[behind] = centred(first.u);
  strip.v.even[behind] = centred(first.v);
  strip.u.odd[behind] = centred(second.u);
  strip.v.odd[behind] = centred(second.v);
}

}  // namespace qvn
