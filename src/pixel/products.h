// Products of signed words and narrowings that the portable vector form has no name for, and that every
// machine has an instruction for. Written with the machine's intrinsics, because a fixed-point multiplication
// by other means takes three times the instructions, and a clamp four for one.
//
// What narrows two vectors to one works block by block: each 16-byte block of the result holds that block of
// the first vector and then that of the second, which undoes interleave_low and interleave_high.
//
// For 64-byte vectors g++ 12 works narrowings of constants out wrongly; give them loaded or hidden operands.
#pragma once

#include "pixel/lanes.h"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace qvn {

using SignedDoubleWords = Lanes<int32_t>;

// (a * b) >> 16 of each lane, rounded down.
inline SignedWords multiply_high(SignedWords a, SignedWords b) {
#if defined(__AVX512BW__)
  return as<SignedWords>(_mm512_mulhi_epi16(as<__m512i>(a), as<__m512i>(b)));
#elif defined(__AVX2__)
  return as<SignedWords>(_mm256_mulhi_epi16(as<__m256i>(a), as<__m256i>(b)));
#elif defined(__SSE2__)
  return as<SignedWords>(_mm_mulhi_epi16(as<__m128i>(a), as<__m128i>(b)));
#else
  SignedWords high{};
  for (int i = 0; i < kLaneCount<SignedWords>; ++i) {
    high[i] = static_cast<int16_t>((int32_t{a[i]} * b[i]) >> 16);
  }
  return high;
#endif
}

// The sum of the two products of each pair of bytes, which must fit a word.
inline SignedWords multiply_add_pairs(Bytes a, SignedBytes b) {
#if defined(__AVX512BW__)
  return as<SignedWords>(_mm512_maddubs_epi16(as<__m512i>(a), as<__m512i>(b)));
#elif defined(__AVX2__)
  return as<SignedWords>(_mm256_maddubs_epi16(as<__m256i>(a), as<__m256i>(b)));
#elif defined(__SSSE3__)
  return as<SignedWords>(_mm_maddubs_epi16(as<__m128i>(a), as<__m128i>(b)));
#else
  const SignedWords factors = as<SignedWords>(b);
  return as<SignedWords>(even_bytes(a)) * ((factors << 8) >> 8) +
         as<SignedWords>(odd_bytes(a)) * (factors >> 8);
#endif
}

// The sum of the two products of each pair of lanes.
inline SignedDoubleWords multiply_add_pairs(SignedWords a, SignedWords b) {
#if defined(__AVX512BW__)
  return as<SignedDoubleWords>(_mm512_madd_epi16(as<__m512i>(a), as<__m512i>(b)));
#elif defined(__AVX2__)
  return as<SignedDoubleWords>(_mm256_madd_epi16(as<__m256i>(a), as<__m256i>(b)));
#elif defined(__SSE2__)
  return as<SignedDoubleWords>(_mm_madd_epi16(as<__m128i>(a), as<__m128i>(b)));
#else
  SignedDoubleWords sums{};
  for (int i = 0; i < kLaneCount<SignedDoubleWords>; ++i) {
    sums[i] = int32_t{a[2 * i]} * b[2 * i] + int32_t{a[2 * i + 1]} * b[2 * i + 1];
  }
  return sums;
#endif
}

// Words to bytes, stopped at 0 and 255.
inline Bytes narrow_to_bytes(SignedWords first, SignedWords second) {
#if defined(__AVX512BW__)
  return as<Bytes>(_mm512_packus_epi16(as<__m512i>(first), as<__m512i>(second)));
#elif defined(__AVX2__)
  return as<Bytes>(_mm256_packus_epi16(as<__m256i>(first), as<__m256i>(second)));
#elif defined(__SSE2__)
  return as<Bytes>(_mm_packus_epi16(as<__m128i>(first), as<__m128i>(second)));
#else
  Bytes bytes{};
  for (int i = 0; i < kLaneBytes; ++i) {
    const int16_t word = i % 16 < 8 ? first[i / 16 * 8 + i % 16] : second[i / 16 * 8 + i % 16 - 8];
    bytes[i] = static_cast<uint8_t>(word < 0 ? 0 : word > 255 ? 255 : word);
  }
  return bytes;
#endif
}

// Double words to words, stopped at both ends.
inline SignedWords narrow_to_words(SignedDoubleWords first, SignedDoubleWords second) {
#if defined(__AVX512BW__)
  return as<SignedWords>(_mm512_packs_epi32(as<__m512i>(first), as<__m512i>(second)));
#elif defined(__AVX2__)
  return as<SignedWords>(_mm256_packs_epi32(as<__m256i>(first), as<__m256i>(second)));
#elif defined(__SSE2__)
  return as<SignedWords>(_mm_packs_epi32(as<__m128i>(first), as<__m128i>(second)));
#else
  SignedWords words{};
  for (int i = 0; i < kLaneCount<SignedWords>; ++i) {
    const int32_t value = i % 8 < 4 ? first[i / 8 * 4 + i % 8] : second[i / 8 * 4 + i % 8 - 4];
    words[i] = static_cast<int16_t>(value < -32768 ? -32768 : value > 32767 ? 32767 : value);
  }
  return words;
#endif
}

namespace places {
// Of two vectors' 16-byte blocks, those at even or at odd places: narrowed, such a pair comes out in memory
// order.
template <int Odd>
constexpr int every_other_block(int i) {
  return i / 16 * 32 + Odd * 16 + i % 16;
}

// And back: the lower and the upper half of what every_other_block took apart.
template <int Upper>
constexpr int alternate_blocks(int i) {
  const int block = i / 16 + Upper * (kLaneBytes / 16);
  return (block % 2) * kLaneBytes + block / 2 * 16 + i % 16;
}

constexpr int first_of_pair(int i) { return i / 2 * 2; }
constexpr int second_of_pair(int i) { return i / 2 * 2 + 1; }
constexpr int other_of_pair(int i) { return i ^ 1; }
}  // namespace places

}  // namespace qvn
