// Lanes: vectors of the level's own width, in the compilers' portable vector form.
//
// A vector row is written once over Lanes<T> and compiled for every level; the width follows from what the
// compiler was told to build for, never from the processor. Where kVectorRows is false (NEON and the rest)
// the plain rows ship: their loops already become the machine's best.
//
// Operators act on each lane and wrap; shifts of unsigned lanes are logical. Nothing here reads or writes
// beyond the stated bytes, and no pointer needs an alignment.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace qvn {

#if defined(__AVX512BW__)
inline constexpr int kLaneBytes = 64;
#elif defined(__AVX2__)
inline constexpr int kLaneBytes = 32;
#else
inline constexpr int kLaneBytes = 16;
#endif

#if defined(__SSE2__) || defined(__wasm_simd128__)
inline constexpr bool kVectorRows = true;
static_assert(std::endian::native == std::endian::little);
#else
inline constexpr bool kVectorRows = false;
#endif

// Whether one instruction permutes the bytes of a 16-byte block freely.
#if defined(__SSSE3__) || defined(__wasm_simd128__)
inline constexpr bool kBytePermutes = true;
#else
inline constexpr bool kBytePermutes = false;
#endif

// Whether one instruction picks each byte from one of two vectors.
#if defined(__SSE4_1__) || defined(__wasm_simd128__)
inline constexpr bool kByteBlends = true;
#else
inline constexpr bool kByteBlends = false;
#endif

// Whether it is one operation, too. In vectors of 32 bytes it may take three.
inline constexpr bool kQuickByteBlends = kByteBlends && kLaneBytes != 32;

template <class T, int Bytes>
struct VectorOf {
  typedef T type __attribute__((vector_size(Bytes)));
};

template <class T>
using Lanes = typename VectorOf<T, kLaneBytes>::type;

template <class V>
inline constexpr int kLaneCount = int(sizeof(V) / sizeof(V{}[0]));

using Bytes = Lanes<uint8_t>;
using Words = Lanes<uint16_t>;
using DoubleWords = Lanes<uint32_t>;
using QuadWords = Lanes<uint64_t>;
using SignedBytes = Lanes<int8_t>;
using SignedWords = Lanes<int16_t>;

template <class V>
inline V load(const uint8_t* from) {
  V lanes;
  std::memcpy(&lanes, from, sizeof lanes);
  return lanes;
}

template <class V>
inline void store(uint8_t* to, V lanes) {
  std::memcpy(to, &lanes, sizeof lanes);
}

// Stores one 16-byte block of a vector.
inline void store_block(uint8_t* to, Lanes<uint8_t> lanes, int block) {
  std::memcpy(to, reinterpret_cast<const uint8_t*>(&lanes) + 16 * block, 16);
}

inline uint64_t load_quad_word(const uint8_t* from) {
  uint64_t bytes;
  std::memcpy(&bytes, from, sizeof bytes);
  return bytes;
}

inline void store_quad_word(uint8_t* to, uint64_t bytes) { std::memcpy(to, &bytes, sizeof bytes); }

// The same bits as lanes of another type.
template <class To, class From>
inline To as(From lanes) {
  static_assert(sizeof(To) == sizeof(From));
  return reinterpret_cast<To>(lanes);
}

// A number in every lane, hidden from the compiler's arithmetic. g++ 12 takes a multiplication by a known
// number apart into shifts and sums, which costs the luma rows twice the time of the one instruction.
template <class V>
inline V factor(int value) {
  V lanes = V{} + static_cast<std::remove_cvref_t<decltype(V{}[0])>>(value);
#if defined(__x86_64__) || defined(__i386__)
  asm("" : "+x"(lanes));
#endif
  return lanes;
}

// Lane i of the result is lane At(i) of a and b put end to end.
template <int (*At)(int), class V>
inline V shuffle(V a, V b) {
  return [&]<int... I>(std::integer_sequence<int, I...>) {
    return V(__builtin_shufflevector(a, b, At(I)...));
  }
  (std::make_integer_sequence<int, kLaneCount<V>>());
}

template <int (*At)(int), class V>
inline V shuffle(V a) {
  return shuffle<At>(a, a);
}

// A vector whose lane i is At(i).
template <class V, int (*At)(int)>
inline V constant() {
  return []<int... I>(std::integer_sequence<int, I...>) {
    return V{static_cast<std::remove_cvref_t<decltype(V{}[0])>>(At(I))...};
  }
  (std::make_integer_sequence<int, kLaneCount<V>>());
}

namespace places {
template <int (*Take)(int)>
constexpr int blend(int i) {
  return Take(i) != 0 ? i : kLaneBytes + i;
}
template <int (*Take)(int)>
constexpr int mask(int i) {
  return Take(i) != 0 ? 0xFF : 0;
}
}  // namespace places

// Byte i from a where Take(i) is not 0, else from b: by a mask, and by the level's own blend where it has
// one.
template <int (*Take)(int)>
inline Bytes masked_blend(Bytes a, Bytes b) {
  const Bytes mask = constant<Bytes, places::mask<Take>>();
  return (a & mask) | (b & ~mask);
}

template <int (*Take)(int)>
inline Bytes blend(Bytes a, Bytes b) {
  if constexpr (kByteBlends) {
    return shuffle<places::blend<Take>>(a, b);
  } else {
    return masked_blend<Take>(a, b);
  }
}

// ---- Bytes in pairs, as words, without a shuffle. Vector rows run on little-endian machines only, so that a
// ---- word's lower byte is the one at the even place.

inline Words even_bytes(Bytes v) { return as<Words>(v) & 0xFF; }
inline Words odd_bytes(Bytes v) { return as<Words>(v) >> 8; }

// Bits 15..8 of two sets of words as bytes: those of `even` at even places, those of `odd` at odd ones.
inline Bytes join_top_bytes(Words even, Words odd) { return as<Bytes>((even >> 8) | (odd & 0xFF00)); }

// Words up to 255 as bytes, at the same places.
inline Bytes join_bytes(Words even, Words odd) { return as<Bytes>(even | (odd << 8)); }

// The mean of each pair of bytes, rounded down: their common bits and half of the others.
inline Bytes mean_floor(Bytes a, Bytes b) { return (a & b) + ((a ^ b) >> 1); }
inline Words mean_floor(Words a, Words b) { return (a & b) + ((a ^ b) >> 1); }

// ---- Interleaves within 16-byte blocks: lanes of a and b in turn, from the lower or upper half of each
// block.

namespace places {
template <int Size, int Half>
constexpr int interleave(int i) {
  constexpr int kPerBlock = 16 / Size;
  const int block = i / kPerBlock * kPerBlock, place = i % kPerBlock;
  return block + Half * kPerBlock / 2 + place / 2 + (place % 2) * (kLaneBytes / Size);
}

constexpr int even(int i) { return 2 * i; }
constexpr int odd(int i) { return 2 * i + 1; }
}  // namespace places

template <class V>
inline V interleave_low(V a, V b) {
  return shuffle<places::interleave<int(sizeof a[0]), 0>>(a, b);
}

template <class V>
inline V interleave_high(V a, V b) {
  return shuffle<places::interleave<int(sizeof a[0]), 1>>(a, b);
}

// ---- Two channels: bytes c0 c1 c0 c1 ... of two vectors to the vector of all c0, or of all c1.

inline Bytes split2_even(Bytes first, Bytes second) { return shuffle<places::even>(first, second); }
inline Bytes split2_odd(Bytes first, Bytes second) { return shuffle<places::odd>(first, second); }

// ---- And back: lanes of a and b in turn, over the whole vector; the lower and the upper half of the result.

namespace places {
template <int Half, int Count>
constexpr int zip(int i) {
  return Half * Count / 2 + i / 2 + (i % 2) * Count;
}
}  // namespace places

template <class V>
inline V zip_low(V a, V b) {
  return shuffle<places::zip<0, kLaneCount<V>>>(a, b);
}
template <class V>
inline V zip_high(V a, V b) {
  return shuffle<places::zip<1, kLaneCount<V>>>(a, b);
}

}  // namespace qvn
