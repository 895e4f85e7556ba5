/// Tests that every conversion of a run of pixels has to pass, whatever it computes.
///
/// A run is described by its two functions and by the shape of a group, the smallest number of pixels that
/// the conversion handles as one; pixels beyond the last whole group are neither read nor written.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/compare.h"
#include "support/guard.h"
#include "support/sizes.h"

namespace support {

struct Run {
  std::string name;
  std::function<std::uint32_t(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count)> library;
  std::function<void(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count)> reference;
  std::uint32_t group_pixels;
  std::uint32_t group_bytes_in;
  std::uint32_t group_bytes_out;
  std::uint32_t count_step = 1;  ///< counts that are no multiple of it are refused

  std::size_t bytes_in(std::uint32_t count) const {
    return std::size_t{count / group_pixels} * group_bytes_in;
  }
  std::size_t bytes_out(std::uint32_t count) const {
    return std::size_t{count / group_pixels} * group_bytes_out;
  }
  std::vector<std::uint32_t> counts() const {
    std::vector<std::uint32_t> all = run_counts();
    std::erase_if(all, [this](std::uint32_t count) { return count % count_step != 0; });
    return all;
  }
};

inline void PrintTo(const Run& run, std::ostream* out) { *out << run.name; }

inline std::string run_name(const testing::TestParamInfo<Run>& info) { return info.param.name; }

inline testing::AssertionResult matches(const Run& run, std::uint32_t count, Random& random,
                                        std::size_t dst_offset = 0, std::size_t src_offset = 0) {
  auto same = same_effect(
      Room{.size = run.bytes_out(count), .before = 64 + dst_offset},
      Room{.size = run.bytes_in(count), .before = 64 + src_offset}, random,
      [&](std::uint8_t* dst, const std::uint8_t* src) { return run.library(dst, src, count); },
      [&](std::uint8_t* dst, const std::uint8_t* src) { run.reference(dst, src, count); });
  if (same) return same;
  return same << "; count " << count << ", offsets " << dst_offset << " and " << src_offset;
}

inline void expect_equal_for_every_count(const Run& run) {
  Random random(101);
  for (std::uint32_t count : run.counts()) ASSERT_TRUE(matches(run, count, random));
}

inline void expect_no_need_of_alignment(const Run& run) {
  Random random(102);
  for (std::uint32_t count : {8U, 24U, 64U, 104U, 256U}) {
    for (std::size_t dst_offset = 0; dst_offset < 32; dst_offset += dst_offset < 4 ? 1 : 9) {
      for (std::size_t src_offset = 0; src_offset < 32; src_offset += src_offset < 4 ? 1 : 9) {
        ASSERT_TRUE(matches(run, count, random, dst_offset, src_offset));
      }
    }
  }
  // Long runs go on from where their destination is aligned.
  for (std::size_t dst_offset = 0; dst_offset < 64; ++dst_offset) {
    ASSERT_TRUE(matches(run, 4096 + 104, random, dst_offset, dst_offset * 11 % 64));
  }
}

/// Both buffers hold the whole groups alone, between inaccessible pages.
inline void expect_nothing_touched_outside(const Run& run) {
  Random random(103);
  for (Flush flush : {Flush::kEnd, Flush::kBegin}) {
    for (std::uint32_t count : run.counts()) {
      if (count > 5000 || run.bytes_in(count) == 0) continue;
      GuardedBuffer src(run.bytes_in(count), flush);
      GuardedBuffer dst(run.bytes_out(count), flush);
      random.fill(src.data(), src.size());
      std::vector<std::uint8_t> expected(dst.size());
      run.reference(expected.data(), src.data(), count);
      ASSERT_EQ(0U, run.library(dst.data(), src.data(), count)) << "count " << count;
      ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size())) << "count " << count;
    }
  }
}

/// Counts below a group do not even look at their buffers.
inline void expect_nothing_touched_below_a_group(const Run& run) {
  GuardedBuffer none(1, Flush::kEnd);
  for (std::uint32_t count = 0; count < run.group_pixels; ++count) {
    EXPECT_EQ(0U, run.library(none.data() + 1, none.data() + 1, count));
  }
}

/// Feeds `src`, whole groups, through both functions.
inline testing::AssertionResult same_output(const Run& run, const std::vector<std::uint8_t>& src) {
  const auto count = static_cast<std::uint32_t>(src.size() / run.group_bytes_in * run.group_pixels);
  std::vector<std::uint8_t> expected(run.bytes_out(count));
  std::vector<std::uint8_t> actual(run.bytes_out(count));
  run.reference(expected.data(), src.data(), count);
  run.library(actual.data(), src.data(), count);
  if (std::memcmp(expected.data(), actual.data(), expected.size()) == 0) {
    return testing::AssertionSuccess();
  }
  const std::size_t at = static_cast<std::size_t>(
      std::mismatch(expected.begin(), expected.end(), actual.begin()).first - expected.begin());
  auto failure = testing::AssertionFailure();
  failure << "group " << at / run.group_bytes_out << ", byte " << at % run.group_bytes_out << ": expected "
          << unsigned{expected[at]} << ", got " << unsigned{actual[at]} << "; the source group:";
  const std::size_t group = at / run.group_bytes_out * run.group_bytes_in;
  for (std::size_t k = 0; k < run.group_bytes_in; ++k) failure << ' ' << unsigned{src[group + k]};
  return failure;
}

}  // namespace support
