// Packed pixels by fours: a vector with four consecutive pixels in each of its 16-byte blocks, four bytes for
// each, for rows that weigh or move a pixel's bytes where they lie.
//
// Of pixels of three bytes, a block's four take 12 bytes, and a 32-byte vector has its fours at the end of
// the lower block and at the start of the upper one, so that one load brings both:
//
//     . . . . r0 g0 b0 r1 g1 b1 r2 g2 b2 r3 g3 b3 | r4 g4 b4 r5 g5 b5 r6 g6 b6 r7 g7 b7 . . . .
#pragma once

#include "pixel/products.h"

namespace qvn {

// Pixels of such a vector.
inline constexpr size_t kFoursPixels = kLaneBytes / 4;

// Pixels of three bytes to either side of a vector that its load may touch.
inline constexpr size_t kThreesMargin = 2;

inline Bytes load_threes(const uint8_t* from) {
  return kLaneBytes == 32 ? load<Bytes>(from - 4) : load_blocks<12>(from);
}

namespace places {
// Where load_threes leaves channel `Channel` of place i's pixel.
template <int Channel>
constexpr int channel_of_threes(int i) {
  return (kLaneBytes == 32 && i < 16 ? 4 : 0) + i % 16 / 4 * 3 + Channel;
}

constexpr int rgbg_of_threes(int i) {
  return i % 4 == 1 || i % 4 == 3 ? channel_of_threes<1>(i)
         : i % 4 == 0             ? channel_of_threes<0>(i)
                                  : channel_of_threes<2>(i);
}
constexpr int bgr0_of_threes(int i) { return i % 4 == 3 ? 128 : channel_of_threes<2>(i) - i % 4; }
constexpr int rgbg_of_fours(int i) { return i % 16 / 4 * 4 + (i % 4 == 3 ? 1 : i % 4); }

// Double word k of 16-byte block j, which two narrowings put there, is number k * blocks + j.
constexpr int collect_from_blocks(int i) {
  constexpr int kBlocks = kLaneBytes / 16;
  return i % kBlocks * 4 + i / kBlocks;
}
}  // namespace places

// Bytes of four such vectors, one for each pixel, as two narrowings leave them.
inline Bytes in_order_of_fours(Bytes narrowed) {
  return as<Bytes>(shuffle<places::collect_from_blocks>(as<DoubleWords>(narrowed)));
}

// Pixels R G B as R G B G or B G R 0, and pixels R G B A as R G B G.
inline Bytes load_threes_as_rgbg(const uint8_t* from) {
  return permute_blocks(load_threes(from), constant<Bytes, places::rgbg_of_threes>());
}
inline Bytes load_threes_as_bgr0(const uint8_t* from) {
  return permute_blocks(load_threes(from), constant<Bytes, places::bgr0_of_threes>());
}
inline Bytes load_fours_as_rgbg(const uint8_t* from) {
  return permute_blocks(load<Bytes>(from), constant<Bytes, places::rgbg_of_fours>());
}

}  // namespace qvn
