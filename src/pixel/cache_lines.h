// Lines of cache: what memory moves by.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace qvn {

inline constexpr size_t kLineBytes = 64;

// Bytes before the first one that begins a line.
inline size_t bytes_to_line(const uint8_t* at) { return (0 - reinterpret_cast<uintptr_t>(at)) % kLineBytes; }

// Asking for lines of cache that a row comes to later. Nothing is read: what lies there need not be ours, nor
// be there. Inlined by force, and without a loop: g++ 12 takes a function that does nothing else for one that
// does nothing, and the end of a short loop is foreseen wrongly.
template <size_t... I>
[[gnu::always_inline]] inline void prefetch_lines(uintptr_t first, std::index_sequence<I...>) {
  (__builtin_prefetch(reinterpret_cast<const void*>(first + I * kLineBytes)),  // NOLINT(performance-*)
   ...);
}

// The lines of `kBytes` bytes from `at` on.
template <size_t kBytes>
[[gnu::always_inline]] inline void prefetch(const uint8_t* at, uintptr_t ahead = 0) {
  prefetch_lines(reinterpret_cast<uintptr_t>(at) + ahead,
                 std::make_index_sequence<(kBytes + kLineBytes - 1) / kLineBytes>());
}

// For a step of a row: the lines that come half a page later. What the processor fetches by itself ends with
// the page, and a row with some arithmetic looks no further than its next few vectors: frames that lie in no
// cache take up to half of the time, and those in the second cache up to a fifth less. Rows without
// arithmetic gain nothing.
template <size_t kBytes>
[[gnu::always_inline]] inline void prefetch_ahead(const uint8_t* at) {
  prefetch<kBytes>(at, 2048);
}

}  // namespace qvn
