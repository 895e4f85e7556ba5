// Floating point to integers, truncated toward zero, with one result for what has none: a number whose
// truncated value does not fit, an infinity and a NaN all give the lowest integer. Callers depend on it
// where a rate or a weight runs out of range.
//
// The machine's own instruction does this on x86; elsewhere the range is tested first, since the language
// leaves such a conversion undefined and machines differ.
#pragma once

#include <cstdint>
#include <limits>
#include <type_traits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace qvn {

inline constexpr int32_t kLowestInt32 = std::numeric_limits<int32_t>::min();
inline constexpr int64_t kLowestInt64 = std::numeric_limits<int64_t>::min();

namespace tested_range {
// Both comparisons fail for a NaN. The bounds are doubles without rounding; a value between the lowest
// integer and the number one below it truncates to the lowest integer either way.
constexpr int32_t truncate_to_int32(double value) {
  return value >= -0x1p31 && value < 0x1p31 ? static_cast<int32_t>(value) : kLowestInt32;
}

constexpr int64_t truncate_to_int64(double value) {
  return value >= -0x1p63 && value < 0x1p63 ? static_cast<int64_t>(value) : kLowestInt64;
}
}  // namespace tested_range

#if defined(__SSE2__)
// The number in a register. Hidden from the compiler: g++ 12 works the instruction out itself where it knows
// the number, and stops at the highest integer instead.
inline __m128d in_register(double value) {
  __m128d lanes = _mm_set_sd(value);
  asm("" : "+x"(lanes));
  return lanes;
}
#endif

constexpr int32_t truncate_to_int32(double value) {
#if defined(__SSE2__)
  if (!std::is_constant_evaluated()) return _mm_cvttsd_si32(in_register(value));
#endif
  return tested_range::truncate_to_int32(value);
}

constexpr int64_t truncate_to_int64(double value) {
#if defined(__SSE2__) && defined(__x86_64__)
  if (!std::is_constant_evaluated()) return _mm_cvttsd_si64(in_register(value));
#endif
  return tested_range::truncate_to_int64(value);
}

}  // namespace qvn
