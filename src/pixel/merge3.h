// Three channels to packed pixels of three bytes, for a whole vector of pixels.
//
// In each 16-byte block the channels' bytes go to 48 bytes of output, three blocks j = 0, 1, 2. Byte i of
// block j belongs to channel (16 * j + i) % 3 = (j + i) % 3 and to pixel (16 * j + i) / 3:
//
//     a:  a0 a1 a2 ... a15             block 0:  a0 b0 c0 a1 b1 c1 ... a4 b4 c4 a5
//     b:  b0 b1 b2 ... b15      ->     block 1:  b5 c5 a6 b6 c6 a7 ... b9 c9 a10 b10
//     c:  c0 c1 c2 ... c15             block 2:  c10 a11 b11 c11 ...     a15 b15 c15
//
// A channel fills each place i in exactly one of the three blocks, so one permutation of the channel serves
// all three, and blends do the rest: 3 permutations and 6 blends, where permuting for each block takes 9
// and 6.
#pragma once

#include "pixel/products.h"

namespace qvn {

namespace places {
// Channel c's byte for place i of the block in which that place is the channel's.
template <int Channel>
constexpr int spread3(int i) {
  const int place = i % 16, block = (Channel - place % 3 + 3) % 3;
  return i / 16 * 16 + (16 * block + place) / 3;
}

template <int Block, int Channel>
constexpr int is_channel(int i) {
  return (Block + i % 16) % 3 == Channel ? 1 : 0;
}

// Two 16-byte blocks of two vectors side by side; blocks are counted through both.
template <int First, int Second>
constexpr int join_blocks(int i) {
  return i < 16 ? First * 16 + i : Second * 16 + i - 16;
}

// Bytes moved down by N within a 16-byte block, with a second vector of zeros behind.
template <int N>
constexpr int down(int i) {
  return i % 16 + N < 16 ? i + N : kLaneBytes + i;
}
}  // namespace places

// Three blocks for each 16 pixels, in memory order.
inline void store_blocks3(uint8_t* to, Bytes block0, Bytes block1, Bytes block2) {
  if constexpr (kLaneBytes == 32) {
    // Blocks 0 1 2 of the lower 16 pixels, then 0 1 2 of the upper ones.
    store(to, shuffle<places::join_blocks<0, 2>>(block0, block1));
    store(to + 32, shuffle<places::join_blocks<0, 3>>(block2, block0));
    store(to + 64, shuffle<places::join_blocks<1, 3>>(block1, block2));
  } else {
    for (int lane = 0; lane < kLaneBytes / 16; ++lane) {
      store_block(to + 48 * lane, block0, lane);
      store_block(to + 48 * lane + 16, block1, lane);
      store_block(to + 48 * lane + 32, block2, lane);
    }
  }
}

namespace places {
// Block `Block` from pairs a b, of which the block's first is `First`, and from c; 128 where a byte is not
// there.
template <int Block, int First>
constexpr int from_pairs3(int i) {
  const int byte = 16 * Block + i % 16;
  return byte % 3 == 2 ? 128 : byte / 3 * 2 + byte % 3 - 2 * First;
}
template <int Block>
constexpr int from_third3(int i) {
  const int byte = 16 * Block + i % 16;
  return byte % 3 == 2 ? byte / 3 : 128;
}

// Bytes N and on of the two blocks of a and b put end to end.
template <int N>
constexpr int down_through(int i) {
  return i % 16 + N < 16 ? i + N : kLaneBytes + i + N - 16;
}
}  // namespace places

template <int Block, int First>
inline Bytes block_of_pairs3(Bytes ab, Bytes c) {
  return permute_blocks(ab, constant<Bytes, places::from_pairs3<Block, First>>()) |
         permute_blocks(c, constant<Bytes, places::from_third3<Block>>());
}

// 3 * kLaneBytes bytes to `to`: a[0] b[0] c[0] a[1] b[1] c[1] ..., where bytes are permuted freely. Where a
// blend takes three operations, pairs a b take 12 in place of 21.
inline void store_merge3_permuted(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  if constexpr (!kQuickByteBlends) {
    const Bytes low = interleave_low(a, b), high = interleave_high(a, b);
    const Bytes middle = shuffle<places::down_through<10>>(low, high);
    store_blocks3(to, block_of_pairs3<0, 0>(low, c), block_of_pairs3<1, 5>(middle, c),
                  block_of_pairs3<2, 8>(high, c));
    return;
  }
  a = shuffle<places::spread3<0>>(a), b = shuffle<places::spread3<1>>(b), c = shuffle<places::spread3<2>>(c);
  store_blocks3(to, blend<places::is_channel<0, 0>>(a, blend<places::is_channel<0, 1>>(b, c)),
                blend<places::is_channel<1, 0>>(a, blend<places::is_channel<1, 1>>(b, c)),
                blend<places::is_channel<2, 0>>(a, blend<places::is_channel<2, 1>>(b, c)));
}

// 48 bytes to `to`: the lower six of each of eight 64-bit lanes. For 16-byte vectors. Eight bytes are stored
// for each, and the next eight over the two behind them.
inline void store_six_bytes_of_each(uint8_t* to, QuadWords first, QuadWords second, QuadWords third,
                                    QuadWords fourth) {
  store_quad_word(to, first[0]);
  store_quad_word(to + 6, first[1]);
  store_quad_word(to + 12, second[0]);
  store_quad_word(to + 18, second[1]);
  store_quad_word(to + 24, third[0]);
  store_quad_word(to + 30, third[1]);
  store_quad_word(to + 36, fourth[0]);
  // The last six bytes have nothing of ours behind them: eight bytes that end where they end.
  store_quad_word(to + 40, (fourth[0] >> 32) | (fourth[1] << 16));
}

// Pixels of three words, without permutations: a b c 0 of eight bytes, six of which are left.
inline void store_merge3_interleaved(uint8_t* to, Words a, Words b, Words c) {
  static_assert(kBytePermutes || !kVectorRows || kLaneBytes == 16);
  const Words zero{};
  const DoubleWords ab_low = as<DoubleWords>(interleave_low(a, b)),
                    ab_high = as<DoubleWords>(interleave_high(a, b));
  const DoubleWords c_low = as<DoubleWords>(interleave_low(c, zero)),
                    c_high = as<DoubleWords>(interleave_high(c, zero));
  store_six_bytes_of_each(
      to, as<QuadWords>(interleave_low(ab_low, c_low)), as<QuadWords>(interleave_high(ab_low, c_low)),
      as<QuadWords>(interleave_low(ab_high, c_high)), as<QuadWords>(interleave_high(ab_high, c_high)));
}

// Of bytes, two pixels at a time:
//
//     a0 a1 ..                     a0 b0 ..
//     b0 b1 ..   as words    ->    c0 a1 ..
//     c0 c1 ..                     b1 c1 ..
inline void store_merge3_interleaved(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  const auto upper = [](Bytes v) { return as<Words>(v) & 0xFF00; };
  store_merge3_interleaved(to, even_bytes(a) | (as<Words>(b) << 8), even_bytes(c) | upper(a),
                           odd_bytes(b) | upper(c));
}

inline void store_merge3(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  if constexpr (kBytePermutes) {
    store_merge3_permuted(to, a, b, c);
  } else {
    store_merge3_interleaved(to, a, b, c);
  }
}

// Blocks that hold their even pixels first, then their odd ones, in order.
namespace places {
constexpr int riffle(int i) { return i / 16 * 16 + i % 2 * 8 + i % 16 / 2; }
}  // namespace places

inline Bytes riffle_halves(Bytes v) {
  if constexpr (kBytePermutes) return shuffle<places::riffle>(v);
  return interleave_low(v, shuffle<places::down<8>>(v, Bytes{}));
}

// One byte three times for each pixel: without blends, since all channels are the same.
namespace places {
template <int Block>
constexpr int repeat3(int i) {
  return i / 16 * 16 + (16 * Block + i % 16) / 3;
}
}  // namespace places

inline void store_triple(uint8_t* to, Bytes v) {
  if constexpr (kBytePermutes) {
    store_blocks3(to, shuffle<places::repeat3<0>>(v), shuffle<places::repeat3<1>>(v),
                  shuffle<places::repeat3<2>>(v));
  } else {
    store_merge3_interleaved(to, v, v, v);
  }
}

}  // namespace qvn
