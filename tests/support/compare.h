/// Runs a library function and its reference over equal arenas and compares everything that both touched.
///
/// Both get the same source and the same prefilled destination; afterwards the whole destinations and the
/// whole sources must be equal, margins included. This is done twice, the second time with every byte of the
/// destination's prefill inverted, so that a byte that is written by chance with its old value shows.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "support/arena.h"
#include "support/random.h"

namespace support {

/// The memory that one argument of a conversion gets.
struct Room {
  std::size_t size;            ///< bytes of the frame
  std::size_t line_bytes = 0;  ///< for messages; 0 for a run without lines
  std::size_t before = 64;
  std::size_t behind = 64;
};

/// `library(dst, src)` returns a status, which must be `status`; `reference(dst, src)` returns nothing. Both
/// take plain byte pointers to the frames of the two rooms.
template <typename Library, typename Reference>
testing::AssertionResult same_effect(const Room& dst_room, const Room& src_room, Random& random,
                                     Library library, Reference reference, std::uint32_t status = 0) {
  Arena src(src_room.before, src_room.size, src_room.behind);
  src.fill(random);
  Arena prefill(dst_room.before, dst_room.size, dst_room.behind);
  prefill.fill(random);
  for (int run = 0; run < 2; ++run) {
    Arena expected_src(src);
    Arena actual_src(src);
    Arena expected(prefill);
    if (run == 1) expected.fill_inverse_of(prefill);
    Arena actual(expected);
    reference(expected.data(), expected_src.data());
    const std::uint32_t answer = library(actual.data(), actual_src.data());
    if (answer != status) {
      return testing::AssertionFailure() << "status 0x" << std::hex << answer << " instead of 0x" << status;
    }
    if (auto same = same_bytes("dst", expected, actual, dst_room.line_bytes); !same) return same;
    if (auto same = same_bytes("src", expected_src, actual_src, src_room.line_bytes); !same) return same;
  }
  return testing::AssertionSuccess();
}

}  // namespace support
