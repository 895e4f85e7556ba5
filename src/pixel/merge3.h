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

#include "pixel/lanes.h"

namespace qvn {

namespace places {
// Channel c's byte for place i of the block in which that place is the channel's.
template <int Channel>
constexpr int spread3(int i) {
  const int place = i % 16, block = (Channel - place % 3 + 3) % 3;
  return i / 16 * 16 + (16 * block + place) / 3;
}

// The same of a channel whose 16-byte blocks hold their even pixels first, then their odd ones.
template <int Channel>
constexpr int spread3_halves(int i) {
  const int from = spread3<Channel>(i), pixel = from % 16;
  return from - pixel + pixel / 2 + pixel % 2 * 8;
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

// 3 * kLaneBytes bytes to `to`, from channels that are spread over the places of their blocks already.
inline void store_spread3(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  const Bytes block0 = blend<places::is_channel<0, 0>>(a, blend<places::is_channel<0, 1>>(b, c));
  const Bytes block1 = blend<places::is_channel<1, 0>>(a, blend<places::is_channel<1, 1>>(b, c));
  const Bytes block2 = blend<places::is_channel<2, 0>>(a, blend<places::is_channel<2, 1>>(b, c));
  store_blocks3(to, block0, block1, block2);
}

// 3 * kLaneBytes bytes to `to`: a[0] b[0] c[0] a[1] b[1] c[1] ..., where bytes are permuted freely.
inline void store_merge3_permuted(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  store_spread3(to, shuffle<places::spread3<0>>(a), shuffle<places::spread3<1>>(b),
                shuffle<places::spread3<2>>(c));
}

// Without permutations: pairs a b and c 0, from them pixels a b c 0, whose fourth bytes are squeezed out of
// each eight bytes. Six bytes are left of eight, and the next eight are stored over the two behind them.
//
//     a b c 0 a b c 0   ->   a b c a b c 0 0
inline QuadWords squeeze_fourth_bytes(DoubleWords pixels) {
  const QuadWords twos = as<QuadWords>(pixels);
  return (twos & 0x0000000000FFFFFF) | ((twos >> 8) & 0x0000FFFFFF000000);
}

// 48 bytes to `to`: the lower six of each of eight 64-bit lanes. For 16-byte vectors.
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

inline void store_merge3_interleaved(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  static_assert(kBytePermutes || !kVectorRows || kLaneBytes == 16);
  const Bytes zero{};
  const Words ab_low = as<Words>(interleave_low(a, b)), ab_high = as<Words>(interleave_high(a, b));
  const Words c_low = as<Words>(interleave_low(c, zero)), c_high = as<Words>(interleave_high(c, zero));
  const QuadWords first = squeeze_fourth_bytes(as<DoubleWords>(interleave_low(ab_low, c_low)));
  const QuadWords second = squeeze_fourth_bytes(as<DoubleWords>(interleave_high(ab_low, c_low)));
  const QuadWords third = squeeze_fourth_bytes(as<DoubleWords>(interleave_low(ab_high, c_high)));
  const QuadWords fourth = squeeze_fourth_bytes(as<DoubleWords>(interleave_high(ab_high, c_high)));
  store_six_bytes_of_each(to, first, second, third, fourth);
}

inline void store_merge3(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  if constexpr (kBytePermutes) {
    store_merge3_permuted(to, a, b, c);
  } else {
    store_merge3_interleaved(to, a, b, c);
  }
}

// Blocks that hold their even pixels first, then their odd ones, in order.
inline Bytes riffle_halves(Bytes v) { return interleave_low(v, shuffle<places::down<8>>(v, Bytes{})); }

// The same for channels of such blocks.
inline void store_merge3_halves(uint8_t* to, Bytes a, Bytes b, Bytes c) {
  if constexpr (kBytePermutes) {
    store_spread3(to, shuffle<places::spread3_halves<0>>(a), shuffle<places::spread3_halves<1>>(b),
                  shuffle<places::spread3_halves<2>>(c));
  } else {
    store_merge3_interleaved(to, riffle_halves(a), riffle_halves(b), riffle_halves(c));
  }
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
