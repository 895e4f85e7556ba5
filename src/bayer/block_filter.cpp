// The block filter, row by row.
//
// It sums its four columns once for each line and keeps the sums of the line ahead, with its luma, in the
// working frame: one byte and two words for two pixels each, which is what the BGR takes. The last
// two lines of a half look at each other, so that they have the same sums of both.
#include "bayer/block_filter.h"

#include <algorithm>
#include <cstring>

namespace qvn {

namespace {

// The pixel before the pair, the pair, the pixel behind it. Chroma is around 0.
struct SumOfFour {
  static SignedWords sum(const ChromaPairs& c, ptrdiff_t q) {
    return load_words(&c.odd[q - 1]) + load_words(&c.even[q]) + load_words(&c.odd[q]) +
           load_words(&c.even[q + 1]);
  }
  UV operator()(const ChromaStrip& strip, ptrdiff_t q) const { return {sum(strip.u, q), sum(strip.v, q)}; }
};

// Lanes behind a row's last pixel hold anything, so that their sums may wrap.
SignedWords wrapping_sum(SignedWords a, SignedWords b) {
  return as<SignedWords>(as<Words>(a) + as<Words>(b));
}

UV mean_of_block(UV sums) {
  const SignedWords half = SignedWords{} + int16_t{4};
  return {wrapping_sum(sums.u, half) >> 3, wrapping_sum(sums.v, half) >> 3};
}

// What is left of the last pair of a strip for the strip behind it: of its line or of the next one.
struct LeftTap {
  int16_t u, v;
};

// A block of a row that waits: luma, then the sums of U and of V.
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
  return {load<Bytes>(place), {load<SignedWords>(place + kBlock), load<SignedWords>(place + 2 * kBlock)}};
}

// The last pair of a waiting row: its luma and sums.
struct WaitingPair {
  uint8_t y0, y1;
  int16_t u, v;
};

template <class Put>
WaitingPair load_last_waiting(const Half<Put>& half, uint32_t row) {
  size_t x = 0, n = 0;
  for (; x < half.width(); x += n) n = strip_length(half.width() - x);
  const size_t tail = n % kBlock == 0 ? kBlock : n % kBlock;
  const uint8_t* place = half.waiting_at(row, half.width() - tail);
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

}  // namespace

// Row by row: the row at hand waits, the next one is made. Both may have the same place, where a block is
// loaded before the next row's is stored.
template <class Put>
void run_block_filter(const Half<Put>& half) {
  const Mosaic& mosaic = half.mosaic;
  const uint32_t width = half.width();
  const uint32_t last_row = half.end - 1;
  ChromaStrip strip;

  // The half's first pair has its own first pixel for a left tap.
  const Yuv<uint32_t> corner = mosaic.pixel(half.first, 0);
  LeftTap left{centred(corner.u), centred(corner.v)};
  for (uint32_t x = 0; x < width;) {
    const size_t n = strip_length(width - x);
    fill_summable_strip(strip, mosaic, half.first, x, n, left);
    for (size_t i = 0; i < n; i += kBlock) {
      store_waiting(half.waiting_at(half.first, x + i),
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
      uint8_t* own_place = half.waiting_at(row, x);
      uint8_t* next_place = half.waiting_at(row + 1, x);
      put_strip(
          half, row, x, n, [&](size_t i, size_t count) __attribute__((always_inline)) {
            const StripBlock own = load_waiting(own_place + 3 * i, count);
            const UV next = SumOfFour{}(strip, static_cast<ptrdiff_t>(i / 2));
            const UV both{wrapping_sum(own.chroma.u, next.u), wrapping_sum(own.chroma.v, next.v)};
            // The last row looks up to this one: the same sums of both.
            store_waiting(next_place + 3 * i, {load<Bytes>(&strip.y[i]), last_but_one ? both : next}, count);
            return StripBlock{own.y, mean_of_block(both)};
          });
      x += static_cast<uint32_t>(n);
    }
    if (last_but_one) {
      // Its last pair looks up already.
      const auto mean = [](int32_t sum) { return static_cast<uint8_t>(((sum + 4) >> 3) + kChromaCentre); };
      const Group group{mean(own_last.u + above.u), own_last.y0, mean(own_last.v + above.v), own_last.y1};
      emit_groups(half, row, width - 2, &group, 1);
    }
    above = own_last;
  }

  for (uint32_t x = 0; x < width;) {
    const size_t n = strip_length(width - x);
    uint8_t* place = half.waiting_at(last_row, x);
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

template void run_block_filter(const Half<PutBgr>& half);
template void run_block_filter(const Half<PutBgra>& half);
template void run_block_filter(const Half<PutY8>& half);
template void run_block_filter(const Half<PutY8Rounded>& half);

}  // namespace qvn
