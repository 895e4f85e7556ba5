// Pixels at hand as signed words, those at even places of the run and those at odd ones, that are still to be
// stopped at 0 and 255: narrowing does that, and brings two words' bytes together on the way.
#pragma once

#include <type_traits>

#include "pixel/merge3_words.h"
#include "pixel/put.h"
#include "pixel/yuv.h"

namespace qvn {

struct RgbWordPairs {
  Rgb<SignedWords> even, odd;
};

// Each channel with its even pixels first and then its odd ones, in each block of 16 bytes.
inline Rgb<Bytes> narrow_to_halves(const RgbWordPairs& p) {
  return {narrow_to_bytes(p.even.r, p.odd.r), narrow_to_bytes(p.even.g, p.odd.g),
          narrow_to_bytes(p.even.b, p.odd.b)};
}

// Each channel in memory order.
inline Rgb<Bytes> narrow_to_bytes(const RgbWordPairs& p) {
  const Rgb<Bytes> halves = narrow_to_halves(p);
  return {riffle_halves(halves.r), riffle_halves(halves.g), riffle_halves(halves.b)};
}

// In the form that weighted sums take at the level: red and blue weighed at once where one instruction does
// that.
inline auto narrow_to_pairs(const RgbWordPairs& p) {
  const auto [r, g, b] = narrow_to_halves(p);
  const auto low = [](Bytes v) { return as<Words>(interleave_low(v, Bytes{})); };
  const auto high = [](Bytes v) { return as<Words>(interleave_high(v, Bytes{})); };
  if constexpr (kBytePermutes) {
    return RbgPairs<0>{interleave_low(r, b), interleave_high(b, r), low(g), high(g)};
  } else {
    return RgbPairs{{low(r), low(g), low(b)}, {high(r), high(g), high(b)}};
  }
}

inline Bytes luma_77_150_29(const RbgPairs<0>& p) {
  const Words green = factor<Words>(150);
  return join_top_bytes(weighted_red_blue<77, 29, true>(p.even) + p.even_green * green,
                        weighted_red_blue<77, 29, false>(p.odd) + p.odd_green * green);
}

inline Bytes luma_54_184_18(const RbgPairs<0>& p) {
  const Words green = factor<Words>(184);
  return join_top_bytes(weighted_red_blue<54, 18, true>(p.even) + p.even_green * green + 128,
                        weighted_red_blue<54, 18, false>(p.odd) + p.odd_green * green + 128);
}

namespace places {
// Words of merge3_words.h whose lower bytes are the lower half of a block and whose upper bytes are the upper
// half.
template <int Channel>
constexpr int spread3_split_words(int i) {
  const int word = spread3_words<Channel>(i) % 16 / 2;
  return i / 16 * 16 + word + i % 2 * 8;
}
}  // namespace places

// Packed pixels of three bytes, 3 * kLaneBytes bytes to `to`. Two pixels are three words, so that words move
// instead of bytes, which blend in one instruction: 6 of those against 18.
//
//     b0 b2 b4 .. | g0 g2 g4 ..
//     r0 r2 r4 .. | b1 b3 b5 ..    ->    b0 g0  r0 b1  g1 r1  b2 g2  r2 b3  ...
//     g1 g3 g5 .. | r1 r3 r5 ..
inline void store_clamped_bgr(uint8_t* to, const RgbWordPairs& p) {
  if constexpr (kBytePermutes) {
    const Bytes bg = shuffle<places::spread3_split_words<0>>(narrow_to_bytes(p.even.b, p.even.g));
    const Bytes rb = shuffle<places::spread3_split_words<1>>(narrow_to_bytes(p.even.r, p.odd.b));
    const Bytes gr = shuffle<places::spread3_split_words<2>>(narrow_to_bytes(p.odd.g, p.odd.r));
    store_blocks3(to, block3_words<0>(bg, rb, gr), block3_words<1>(bg, rb, gr), block3_words<2>(bg, rb, gr));
  } else {
    store_merge3(to, as<Words>(riffle_halves(narrow_to_bytes(p.even.b, p.even.g))),
                 as<Words>(riffle_halves(narrow_to_bytes(p.even.r, p.odd.b))),
                 as<Words>(riffle_halves(narrow_to_bytes(p.odd.g, p.odd.r))));
  }
}

// Of a vector of such pixels, what a put writes.
template <class Put>
[[gnu::always_inline]] inline void put_clamped(uint8_t* to, const RgbWordPairs& p) {
  if constexpr (std::is_same_v<Put, PutBgr>) {
    store_clamped_bgr(to, p);
  } else if constexpr (std::is_same_v<typename Put::Form, RgbPairs>) {
    Put::pixels(to, narrow_to_pairs(p));
  } else {
    Put::pixels(to, narrow_to_bytes(p));
  }
}

}  // namespace qvn
