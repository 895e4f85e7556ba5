// The interpolations row by row.
//
// Why the caller's buffers suffice. Row k of the second half, frame row L + k of 2 * L, leaves its 4:2:2 form
// in bytes 2kw to 2(k+1)w of `src`, w being the width. What is still to be read starts at the row at hand,
// byte (L+k)w, or for the block filter, which is one row ahead, at the row behind it. The writing stays
// before that in every row but the last, which is parked in its row of `dst` until it has been read. The
// first half writes nothing to `src`: the second half writes the same bytes.
//
// The block filter sums its four columns once for each line and keeps the sums of the line ahead, with its
// luma, in that line's place in `dst`: one byte and two words for two pixels each, which is what the BGR
// takes. The last two lines of a half look at each other, so that they have the same sums of both.
#include "bayer/interpolation_rows.h"

#include <algorithm>
#include <cstring>

#include "bayer/chroma_strip.h"
#include "convert/chroma.h"
#include "convert/yuv_to_bgr.h"

namespace qvn {

namespace {

// What is made at once: a vector of pixels. The last block of a line may have fewer, always an even number.
constexpr size_t kBlock = kLaneBytes;

// Chroma of the pairs of a block.
struct UV {
  Words u, v;
};

Words load_words(const uint16_t* from) {
  Words words;
  std::memcpy(&words, from, sizeof words);
  return words;
}

// The filters: chroma of the pairs of a strip from q on.
struct PairMean {
  static Words mean(const ChromaPairs& c, ptrdiff_t q) {
    return (load_words(&c.even[q]) + load_words(&c.odd[q])) >> 1;
  }
  UV operator()(const ChromaStrip& strip, ptrdiff_t q) const { return {mean(strip.u, q), mean(strip.v, q)}; }
};

struct BoxMean {
  static Words mean(const ChromaPairs& c, ptrdiff_t q) {
    return (load_words(&c.even[q]) + load_words(&c.odd[q]) + load_words(&c.even[q + 1]) +
            load_words(&c.odd[q + 1])) >>
           2;
  }
  UV operator()(const ChromaStrip& strip, ptrdiff_t q) const { return {mean(strip.u, q), mean(strip.v, q)}; }
};

// For the block filter: the pixel before the pair, the pair, the pixel behind it. At most 4 * 255.
struct SumOfFour {
  static Words sum(const ChromaPairs& c, ptrdiff_t q) {
    return load_words(&c.odd[q - 1]) + load_words(&c.even[q]) + load_words(&c.odd[q]) +
           load_words(&c.even[q + 1]);
  }
  UV operator()(const ChromaStrip& strip, ptrdiff_t q) const { return {sum(strip.u, q), sum(strip.v, q)}; }
};

UV mean_of_block(UV sums) { return {(sums.u + 4) >> 3, (sums.v + 4) >> 3}; }

// What is left of the last pair of a strip for the strip behind it: of its line or of the next one.
struct LeftTap {
  uint16_t u, v;
};

// A pair as U Y0 V Y1.
using Group = std::array<uint8_t, 4>;

// One half frame at hand, with everything that its rows share.
struct Half {
  Mosaic mosaic;
  uint8_t* dst;         // the whole frame's
  uint8_t* packed;      // where the 4:2:2 form goes, null in the first half
  uint32_t first, end;  // rows of the frame

  uint32_t width() const { return mosaic.width; }
  uint8_t* dst_at(uint32_t row, size_t x) const { return dst + 3 * (size_t{row} * width() + x); }
  uint8_t* packed_at(uint32_t row, size_t x) const {
    return packed + 2 * (size_t{row - first} * width() + x);
  }
  uint8_t* parked_at(size_t x) const { return dst_at(end - 1, 0) + 2 * x; }
  bool is_parked(uint32_t row) const { return packed != nullptr && row + 1 == end; }
};

// U Y0 V Y1 of a block.
[[gnu::always_inline]] inline void put_groups(uint8_t* out, Bytes y, UV chroma) {
  const Words first = chroma.u | as<Words>(y) << 8, second = chroma.v | (as<Words>(y) & 0xFF00);
  store(out, zip_low(first, second));
  store(out + kBlock, zip_high(first, second));
}

// BGR of a block. The chroma words serve the even and the odd pixels of the pairs alike.
[[gnu::always_inline]] inline void put_bgr(uint8_t* out, Bytes y, UV chroma) {
  const Words centre = factor<Words>(4 * 128);
  const SignedWords u = as<SignedWords>((chroma.u << 2) - centre),
                    v = as<SignedWords>((chroma.v << 2) - centre);
  const Rgb<SignedWords> even = PackedChroma::colours(as<SignedWords>(even_bytes(y)), u, v);
  const Rgb<SignedWords> odd = PackedChroma::colours(as<SignedWords>(odd_bytes(y)), u, v);
  store_merge3_halves(out, narrow_to_bytes(even.b, odd.b), narrow_to_bytes(even.g, odd.g),
                      narrow_to_bytes(even.r, odd.r));
}

// A block and its chroma.
struct StripBlock {
  Bytes y;
  UV chroma;
};

template <bool kBgr, bool kPacked>
[[gnu::always_inline]] inline void put_block(uint8_t* bgr, uint8_t* packed, const StripBlock& block) {
  if constexpr (kPacked) put_groups(packed, block.y, block.chroma);
  if constexpr (kBgr) put_bgr(bgr, block.y, block.chroma);
}

// n pixels, block by block: source(i, count) makes the one at pixel i, of `count` pixels.
template <bool kBgr, bool kPacked, class Source>
[[gnu::always_inline]] inline void put_blocks(uint8_t* bgr, uint8_t* packed, size_t n, const Source& source) {
  size_t i = 0;
  for (; i + kBlock <= n; i += kBlock)
    put_block<kBgr, kPacked>(bgr + 3 * i, packed + 2 * i, source(i, kBlock));
  if (i == n) return;
  std::array<uint8_t, 3 * kBlock> bgr_part;
  std::array<uint8_t, 2 * kBlock> packed_part;
  put_block<kBgr, kPacked>(bgr_part.data(), packed_part.data(), source(i, n - i));
  if constexpr (kPacked) std::memcpy(packed + 2 * i, packed_part.data(), 2 * (n - i));
  if constexpr (kBgr) std::memcpy(bgr + 3 * i, bgr_part.data(), 3 * (n - i));
}

// A strip of a row to where it belongs: BGR, with its 4:2:2 form in the second half, of which the last row is
// parked.
template <class Source>
void put_strip(const Half& half, uint32_t row, size_t x, size_t n, const Source& source) {
  uint8_t* bgr = half.dst_at(row, x);
  if (half.packed == nullptr) {
    put_blocks<true, false>(bgr, bgr, n, source);
  } else if (!half.is_parked(row)) {
    put_blocks<true, true>(bgr, half.packed_at(row, x), n, source);
  } else {
    put_blocks<false, true>(bgr, half.parked_at(x), n, source);
  }
}

// Pairs of a row by themselves, over what the filter made of them.
void emit_groups(const Half& half, uint32_t row, size_t x, const Group* groups, size_t count) {
  for (size_t i = 0; i < count; ++i, x += 2) {
    if (half.is_parked(row)) {
      std::memcpy(half.parked_at(x), groups[i].data(), sizeof(Group));
    } else {
      if (half.packed != nullptr) std::memcpy(half.packed_at(row, x), groups[i].data(), sizeof(Group));
      yuv422_to_bgr(half.dst_at(row, x), groups[i].data(), 2);
    }
  }
}

// Behind the last row: its parked strips, from the end on, since BGR takes more room than what it is made
// from.
void emit_parked_row(const Half& half) {
  const uint32_t row = half.end - 1;
  for (auto end = half.width(); end > 0;) {
    const auto x = static_cast<uint32_t>((end - 1) / kStripStep * kStripStep);
    const size_t n = end - x;
    std::array<uint8_t, 2 * kStripStep> packed;
    std::memcpy(packed.data(), half.parked_at(x), 2 * n);
    std::memcpy(half.packed_at(row, x), packed.data(), 2 * n);
    yuv422_to_bgr(half.dst_at(row, x), packed.data(), n);
    end = x;
  }
}

// The filters that look at their own line only.
template <class Filter>
void run_line_filter(const Half& half, const Filter& filter) {
  ChromaStrip strip;
  for (uint32_t row = half.first; row < half.end; ++row) {
    for (uint32_t x = 0; x < half.width();) {
      const size_t n = strip_length(half.width() - x);
      fill_strip(strip, half.mosaic, row, x, n);
      fill_right_halo(strip, half.mosaic, row, x, n);
      put_strip(
          half, row, x, n, [&](size_t i, size_t) __attribute__((always_inline)) {
            return StripBlock{load<Bytes>(&strip.y[i]), filter(strip, static_cast<ptrdiff_t>(i / 2))};
          });
      x += static_cast<uint32_t>(n);
    }
  }
}

// The box filter's last two pairs repeat the one before them, luma and all.
void repeat_third_last_pair(const Half& half) {
  const uint32_t row = half.end - 1, x = half.width() - 6;
  Group group;
  if (half.is_parked(row)) {
    std::memcpy(group.data(), half.parked_at(x), sizeof group);
    const Group groups[] = {group, group};
    emit_groups(half, row, x + 2, groups, 2);
  } else {
    std::memcpy(half.dst_at(row, x + 2), half.dst_at(row, x), 6);
    std::memcpy(half.dst_at(row, x + 4), half.dst_at(row, x), 6);
  }
}

// A block of a row that waits in its place in `dst`: luma, then the sums of U and of V.
[[gnu::always_inline]] inline void store_waiting(uint8_t* place, const StripBlock& block, size_t n) {
  std::array<uint8_t, 3 * kBlock> part;
  uint8_t* to = n == kBlock ? place : part.data();
  store(to, block.y);
  store(to + kBlock, block.chroma.u);
  store(to + 2 * kBlock, block.chroma.v);
  if (n == kBlock) return;
  for (size_t plane = 0; plane < 3; ++plane) std::memcpy(place + plane * n, to + plane * kBlock, n);
}

[[gnu::always_inline]] inline StripBlock load_waiting(const uint8_t* place, size_t n) {
  std::array<uint8_t, 3 * kBlock> part;
  if (n != kBlock) {
    for (size_t plane = 0; plane < 3; ++plane) std::memcpy(&part[plane * kBlock], place + plane * n, n);
    place = part.data();
  }
  return {load<Bytes>(place), {load<Words>(place + kBlock), load<Words>(place + 2 * kBlock)}};
}

// The last pair of a waiting row: its luma and sums.
struct WaitingPair {
  uint8_t y0, y1;
  uint16_t u, v;
};

WaitingPair load_last_waiting(const Half& half, uint32_t row) {
  size_t x = 0, n = 0;
  for (; x < half.width(); x += n) n = strip_length(half.width() - x);
  const size_t tail = n % kBlock == 0 ? kBlock : n % kBlock;
  const uint8_t* place = half.dst_at(row, half.width() - tail);
  WaitingPair pair{place[tail - 2], place[tail - 1], 0, 0};
  std::memcpy(&pair.u, place + 2 * tail - 2, 2);
  std::memcpy(&pair.v, place + 3 * tail - 2, 2);
  return pair;
}

// A strip of the row that waits next, with both halos; `left` is the pixel before it and becomes its last
// one.
void fill_summable_strip(ChromaStrip& strip, const Mosaic& mosaic, uint32_t row, uint32_t x, size_t n,
                         LeftTap& left) {
  fill_strip(strip, mosaic, row, x, n);
  fill_right_halo(strip, mosaic, row, x, n);
  const ptrdiff_t last = static_cast<ptrdiff_t>(n / 2) - 1;
  strip.u.odd[-1] = left.u;
  strip.v.odd[-1] = left.v;
  left = {strip.u.odd[last], strip.v.odd[last]};
}

// The block filter. Row by row: the row at hand waits in `dst`, the next one is made.
void run_block_filter(const Half& half) {
  const Mosaic& mosaic = half.mosaic;
  const uint32_t width = half.width();
  const uint32_t last_row = half.end - 1;
  ChromaStrip strip;

  // The half's first pair has its own first pixel for a left tap.
  const Yuv<uint32_t> corner = mosaic.pixel(half.first, 0);
  LeftTap left{static_cast<uint16_t>(corner.u), static_cast<uint16_t>(corner.v)};
  for (uint32_t x = 0; x < width;) {
    const size_t n = strip_length(width - x);
    fill_summable_strip(strip, mosaic, half.first, x, n, left);
    for (size_t i = 0; i < n; i += kBlock) {
      store_waiting(half.dst_at(half.first, x + i),
                    {load<Bytes>(&strip.y[i]), SumOfFour{}(strip, static_cast<ptrdiff_t>(i / 2))},
                    std::min(kBlock, n - i));
    }
    x += static_cast<uint32_t>(n);
  }

  WaitingPair above{};  // the last pair of the row above
  for (uint32_t row = half.first; row < last_row; ++row) {
    const bool last_but_one = row + 1 == last_row;
    const WaitingPair own_last = load_last_waiting(half, row);
    for (uint32_t x = 0; x < width;) {
      const size_t n = strip_length(width - x);
      fill_summable_strip(strip, mosaic, row + 1, x, n, left);
      uint8_t* own_place = half.dst_at(row, x);
      uint8_t* next_place = half.dst_at(row + 1, x);
      put_strip(
          half, row, x, n, [&](size_t i, size_t count) __attribute__((always_inline)) {
            const StripBlock own = load_waiting(own_place + 3 * i, count);
            const UV next = SumOfFour{}(strip, static_cast<ptrdiff_t>(i / 2));
            const UV both{own.chroma.u + next.u, own.chroma.v + next.v};
            // The last row looks up to this one: the same sums of both.
            store_waiting(next_place + 3 * i, {load<Bytes>(&strip.y[i]), last_but_one ? both : next}, count);
            return StripBlock{own.y, mean_of_block(both)};
          });
      x += static_cast<uint32_t>(n);
    }
    if (last_but_one) {
      // Its last pair looks up already.
      const auto mean = [](uint32_t sum) { return static_cast<uint8_t>((sum + 4) >> 3); };
      const Group group{mean(own_last.u + above.u), own_last.y0, mean(own_last.v + above.v), own_last.y1};
      emit_groups(half, row, width - 2, &group, 1);
    }
    above = own_last;
  }

  for (uint32_t x = 0; x < width;) {
    const size_t n = strip_length(width - x);
    uint8_t* place = half.dst_at(last_row, x);
    put_strip(
        half, last_row, x, n, [&](size_t i, size_t count) __attribute__((always_inline)) {
          const StripBlock own = load_waiting(place + 3 * i, count);
          return StripBlock{own.y, mean_of_block(own.chroma)};
        });
    x += static_cast<uint32_t>(n);
  }
  // The last two pairs are not filtered: chroma of their first pixels.
  Group groups[2];
  for (uint32_t q = 0; q < 2; ++q) {
    const uint32_t x = width - 4 + 2 * q;
    const Yuv<uint32_t> first = mosaic.pixel(last_row, x), second = mosaic.pixel(last_row, x + 1);
    groups[q] = {static_cast<uint8_t>(first.u), static_cast<uint8_t>(first.y), static_cast<uint8_t>(first.v),
                 static_cast<uint8_t>(second.y)};
  }
  emit_groups(half, last_row, width - 4, groups, 2);
}

}  // namespace

void interpolate_rows(ChromaFilter filter, uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                      uint32_t pattern) {
  const uint32_t lines = height / 2;
  const Mosaic mosaic{src, width, height, pattern};
  for (const Half& half : {Half{mosaic, dst, nullptr, 0, lines}, Half{mosaic, dst, src, lines, height}}) {
    switch (filter) {
      case ChromaFilter::kPair:
        run_line_filter(half, PairMean{});
        break;
      case ChromaFilter::kBox4:
        run_line_filter(half, BoxMean{});
        repeat_third_last_pair(half);
        break;
      case ChromaFilter::kBlock8:
        run_block_filter(half);
        break;
    }
    if (half.packed != nullptr) emit_parked_row(half);
  }
}

}  // namespace qvn
