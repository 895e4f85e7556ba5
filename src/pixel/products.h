// Products of signed words and narrowings that the portable vector form has no name for, and that every
// machine has an instruction for. Written with the machine's intrinsics, because a fixed-point multiplication
// by other means takes three times the instructions, and a clamp four for one.
//
// What narrows two vectors to one works block by block: each 16-byte block of the result holds that block of
// the first vector and then that of the second, which undoes interleave_low and interleave_high.
//
// For 64-byte vectors g++ 12 works narrowings of constants out wrongly; give them loaded or hidden operands.
#pragma once

#include <algorithm>

#include "pixel/lanes.h"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace qvn {

using SignedDoubleWords = Lanes<int32_t>;
using Floats = Lanes<float>;

// Two 16-byte blocks from anywhere, end to end in a 32-byte vector. g++ 12 loads both and joins them by a
// permutation if it is not told to load the second one into its place.
inline Bytes load_block_pair(const uint8_t* lower, const uint8_t* upper) {
#if defined(__AVX2__) && !defined(__AVX512BW__)
  return as<Bytes>(
      _mm256_inserti128_si256(_mm256_castsi128_si256(load<__m128i>(lower)), load<__m128i>(upper), 1));
#else
  using Block = typename VectorOf<uint8_t, 16>::type;
  Bytes blocks{};
  const Block halves[] = {load<Block>(lower), load<Block>(upper)};
  std::memcpy(&blocks, halves, std::min(sizeof blocks, sizeof halves));
  return blocks;
#endif
}

// A vector's 16-byte blocks from every `Stride` bytes.
template <size_t Stride>
inline Bytes load_blocks(const uint8_t* from) {
  if constexpr (kLaneBytes == 32) {
    return load_block_pair(from, from + Stride);
  } else {
    Bytes blocks;
    for (size_t i = 0; i < kLaneBytes / 16; ++i) {
      std::memcpy(reinterpret_cast<uint8_t*>(&blocks) + 16 * i, from + Stride * i, 16);
    }
    return blocks;
  }
}

// Byte i is byte from[i] of v's own 16-byte block, or 0 where from[i] is 128 or more; from 16 to 127 it is
// undefined.
inline Bytes permute_blocks(Bytes v, Bytes from) {
#if defined(__AVX512BW__)
  return as<Bytes>(_mm512_shuffle_epi8(as<__m512i>(v), as<__m512i>(from)));
#elif defined(__AVX2__)
  return as<Bytes>(_mm256_shuffle_epi8(as<__m256i>(v), as<__m256i>(from)));
#elif defined(__SSSE3__)
  return as<Bytes>(_mm_shuffle_epi8(as<__m128i>(v), as<__m128i>(from)));
#elif defined(__wasm_simd128__)
  return as<Bytes>(__builtin_wasm_swizzle_i8x16(as<SignedBytes>(v), as<SignedBytes>(from)));
#else
  Bytes bytes{};
  for (int i = 0; i < kLaneBytes; ++i) bytes[i] = from[i] < 128 ? v[i / 16 * 16 + from[i] % 16] : 0;
  return bytes;
#endif
}

// The sum of each lane, stopped at 65535.
inline Words add_saturated(Words a, Words b) {
#if defined(__AVX512BW__)
  return as<Words>(_mm512_adds_epu16(as<__m512i>(a), as<__m512i>(b)));
#elif defined(__AVX2__)
  return as<Words>(_mm256_adds_epu16(as<__m256i>(a), as<__m256i>(b)));
#elif defined(__SSE2__)
  return as<Words>(_mm_adds_epu16(as<__m128i>(a), as<__m128i>(b)));
#else
  const Words sum = a + b;
  return sum | as<Words>(sum < a);
#endif
}

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

inline Words multiply_high(Words a, Words b) {
#if defined(__AVX512BW__)
  return as<Words>(_mm512_mulhi_epu16(as<__m512i>(a), as<__m512i>(b)));
#elif defined(__AVX2__)
  return as<Words>(_mm256_mulhi_epu16(as<__m256i>(a), as<__m256i>(b)));
#elif defined(__SSE2__)
  return as<Words>(_mm_mulhi_epu16(as<__m128i>(a), as<__m128i>(b)));
#else
  Words high{};
  for (int i = 0; i < kLaneCount<Words>; ++i) high[i] = static_cast<uint16_t>((uint32_t{a[i]} * b[i]) >> 16);
  return high;
#endif
}

// a * b / 2^15 of each lane, rounded to nearest, halves upward. Not of the two smallest words.
inline SignedWords multiply_round(SignedWords a, SignedWords b) {
#if defined(__AVX512BW__)
  return as<SignedWords>(_mm512_mulhrs_epi16(as<__m512i>(a), as<__m512i>(b)));
#elif defined(__AVX2__)
  return as<SignedWords>(_mm256_mulhrs_epi16(as<__m256i>(a), as<__m256i>(b)));
#elif defined(__SSSE3__)
  return as<SignedWords>(_mm_mulhrs_epi16(as<__m128i>(a), as<__m128i>(b)));
#elif defined(__wasm_simd128__)
  return as<SignedWords>(__builtin_wasm_q15mulr_sat_s_i16x8(as<SignedWords>(a), as<SignedWords>(b)));
#else
  SignedWords rounded{};
  for (int i = 0; i < kLaneCount<SignedWords>; ++i) {
    rounded[i] = static_cast<int16_t>((int32_t{a[i]} * b[i] + (1 << 14)) >> 15);
  }
  return rounded;
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
    // The one sum that does not fit, of two products of the smallest words, wraps.
    sums[i] = static_cast<int32_t>(static_cast<uint32_t>(int32_t{a[2 * i]} * b[2 * i]) +
                                   static_cast<uint32_t>(int32_t{a[2 * i + 1]} * b[2 * i + 1]));
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

// Double words from -32768 to 65535 and beyond to unsigned words, stopped at 0 and 65535.
inline Words narrow_to_unsigned_words(SignedDoubleWords first, SignedDoubleWords second) {
#if defined(__AVX512BW__)
  return as<Words>(_mm512_packus_epi32(as<__m512i>(first), as<__m512i>(second)));
#elif defined(__AVX2__)
  return as<Words>(_mm256_packus_epi32(as<__m256i>(first), as<__m256i>(second)));
#elif defined(__SSE4_1__)
  return as<Words>(_mm_packus_epi32(as<__m128i>(first), as<__m128i>(second)));
#else
  // As signed words, 32768 lower. Double words near the lowest one would wrap.
  return as<Words>(narrow_to_words(first - 32768, second - 32768)) ^ 0x8000;
#endif
}

namespace places {
// Of two vectors' 16-byte blocks, those at even or at odd places: narrowed, such a pair comes out in memory
// order.
template <int Odd>
constexpr int every_other_block(int i) {
  return i / 16 * 32 + Odd * 16 + i % 16;
}

constexpr int first_of_pair(int i) { return i / 2 * 2; }
constexpr int second_of_pair(int i) { return i / 2 * 2 + 1; }
constexpr int other_of_pair(int i) { return i ^ 1; }
}  // namespace places

// ---- Floating point.

inline Floats to_floats(DoubleWords below_2_to_31) {
  return __builtin_convertvector(as<SignedDoubleWords>(below_2_to_31), Floats);
}

// Truncated toward zero. What does not fit, and what is no number, gives the lowest integer.
inline DoubleWords truncate_to_double_words(Floats v) {
#if defined(__AVX512BW__)
  return as<DoubleWords>(_mm512_cvttps_epi32(as<__m512>(v)));
#elif defined(__AVX2__)
  return as<DoubleWords>(_mm256_cvttps_epi32(as<__m256>(v)));
#elif defined(__SSE2__)
  return as<DoubleWords>(_mm_cvttps_epi32(as<__m128>(v)));
#else
  DoubleWords integers{};
  for (int i = 0; i < kLaneCount<DoubleWords>; ++i) {
    const bool fits = v[i] > -0x1p31F && v[i] < 0x1p31F;
    integers[i] = fits ? static_cast<uint32_t>(static_cast<int32_t>(v[i])) : 0x80000000;
  }
  return integers;
#endif
}

// Bit i is the uppermost bit of byte i.
inline uint64_t top_bits(Bytes v) {
#if defined(__AVX512BW__)
  return _mm512_movepi8_mask(as<__m512i>(v));
#elif defined(__AVX2__)
  return static_cast<uint32_t>(_mm256_movemask_epi8(as<__m256i>(v)));
#elif defined(__SSE2__)
  return static_cast<uint32_t>(_mm_movemask_epi8(as<__m128i>(v)));
#else
  uint64_t bits = 0;
  for (int i = 0; i < kLaneBytes; ++i) bits |= uint64_t{v[i] >= 128} << i;
  return bits;
#endif
}

// Whether a lane of a comparison's result is set.
inline bool any(DoubleWords lanes) {
#if defined(__AVX512BW__)
  return _mm512_movepi8_mask(as<__m512i>(lanes)) != 0;
#elif defined(__AVX2__)
  return _mm256_movemask_epi8(as<__m256i>(lanes)) != 0;
#elif defined(__SSE2__)
  return _mm_movemask_epi8(as<__m128i>(lanes)) != 0;
#else
  bool set = false;
  for (int i = 0; i < kLaneCount<DoubleWords>; ++i) set = set || lanes[i] != 0;
  return set;
#endif
}

}  // namespace qvn
