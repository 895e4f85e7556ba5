/// QVN_Raw12ToBGR, QVN_Raw12ToBGR16, QVN_Raw16ToBGR16 and QVN_Raw16ToY16: against the slow reference over
/// whole arenas, between inaccessible pages, and by the order of their checks.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "reference/pattern.h"
#include "reference/raw12.h"
#include "reference/raw16.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

std::uint16_t* words(std::uint8_t* bytes) { return static_cast<std::uint16_t*>(static_cast<void*>(bytes)); }

struct Entry {
  const char* name;
  std::uint32_t (*library)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                           std::uint32_t);
  void (*reference)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                    std::uint32_t);
  std::uint32_t sample_bits;
  std::uint32_t pixel_bytes;
  std::uint32_t good_width;  ///< least one that reads nothing before `dst`
  bool shifts;

  std::size_t src_line(std::uint32_t width) const {
    return sample_bits == 12 ? std::size_t{width >> 1} * 3 : std::size_t{2} * width;
  }
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

constexpr std::array<Entry, 4> kEntries = {{
    {"Raw12ToBGR",
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern, std::uint32_t) { return QVN_Raw12ToBGR(dst, src, width, height, pattern); },
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern, std::uint32_t) { reference::Raw12ToBGR(dst, src, width, height, pattern); },
     12, 3, 2, false},
    {"Raw12ToBGR16",
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern,
        std::uint32_t) { return QVN_Raw12ToBGR16(words(dst), src, width, height, pattern); },
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern, std::uint32_t) { reference::Raw12ToBGR16(dst, src, width, height, pattern); },
     12, 6, 2, false},
    {"Raw16ToBGR16",
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern,
        std::uint32_t shift) { return QVN_Raw16ToBGR16(words(dst), src, width, height, pattern, shift); },
     reference::Raw16ToBGR16, 16, 6, 4, true},
    {"Raw16ToY16",
     [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern,
        std::uint32_t shift) { return QVN_Raw16ToY16(words(dst), src, width, height, pattern, shift); },
     reference::Raw16ToY16, 16, 2, 4, true},
}};

constexpr std::uint32_t kPatterns[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 0x7FFFFFFD, 0xFFFFFFFE, 0xFFFFFFFF};

class DeepPlain : public testing::TestWithParam<Entry> {
 protected:
  /// The shifts that the entry accepts.
  std::vector<std::uint32_t> shifts() const { return numbers(0, GetParam().shifts ? 16 : 0); }

  std::uint32_t any_shift(support::Random& random) const { return GetParam().shifts ? random.below(10) : 0; }

  testing::AssertionResult matches(std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
                                   std::uint32_t shift, support::Random& random, std::size_t dst_offset = 0,
                                   std::size_t src_offset = 0) const {
    const Entry& entry = GetParam();
    const std::size_t line = std::size_t{entry.pixel_bytes} * width;
    const support::Room dst{.size = line * height,
                            .line_bytes = line,
                            .before = (line + 127) / 64 * 64 + dst_offset,
                            .behind = line + std::size_t{entry.pixel_bytes} * height + 64};
    const support::Room src{.size = entry.src_line(width) * height,
                            .line_bytes = entry.src_line(width),
                            .before = 64 + src_offset};
    auto same = support::same_effect(
        dst, src, random,
        [&](std::uint8_t* out, const std::uint8_t* in) {
          return entry.library(out, in, width, height, pattern, shift);
        },
        [&](std::uint8_t* out, const std::uint8_t* in) {
          entry.reference(out, in, width, height, reference::public_to_internal(pattern), shift);
        });
    if (same) return same;
    return same << "; width " << width << ", height " << height << ", pattern " << pattern << ", shift "
                << shift << ", offsets " << dst_offset << " and " << src_offset;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, DeepPlain, testing::ValuesIn(kEntries),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(DeepPlain, EqualsReferenceAtSmallHeights) {
  support::Random random(1);
  for (std::uint32_t width : support::frame_widths()) {
    for (std::uint32_t height : numbers(2, 5)) {
      for (std::uint32_t pattern : kPatterns) {
        ASSERT_TRUE(matches(width, height, pattern, any_shift(random), random));
      }
    }
  }
}

TEST_P(DeepPlain, EqualsReferenceAtLargerHeights) {
  support::Random random(2);
  for (std::uint32_t width : {3U, 4U, 5U, 15U, 16U, 17U, 33U, 34U, 66U, 70U, 130U, 258U}) {
    for (std::uint32_t height : {10U, 16U, 31U, 47U, 64U, 69U, 70U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(width, height, pattern, any_shift(random), random));
      }
    }
  }
}

TEST_P(DeepPlain, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 480U}, std::pair{1024U, 34U}, std::pair{1288U, 20U}}) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_TRUE(matches(width, height, pattern, any_shift(random), random));
    }
  }
}

TEST_P(DeepPlain, EqualsReferenceAtEveryShift) {
  support::Random random(4);
  for (std::uint32_t shift : shifts()) {
    for (std::uint32_t width : numbers(4, 40)) {
      for (std::uint32_t pattern : numbers(0, 3)) ASSERT_TRUE(matches(width, 3, pattern, shift, random));
    }
    for (std::uint32_t width : {66U, 131U, 262U, 518U}) {
      for (std::uint32_t pattern : numbers(0, 3)) ASSERT_TRUE(matches(width, 3, pattern, shift, random));
    }
  }
}

TEST_P(DeepPlain, NeedsNoAlignment) {
  support::Random random(5);
  for (std::uint32_t width : {4U, 6U, 16U, 34U, 66U, 130U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        for (std::uint32_t pattern : numbers(0, 3)) {
          ASSERT_TRUE(matches(width, 3, pattern, any_shift(random), random, dst_offset, src_offset));
        }
      }
    }
  }
}

TEST_P(DeepPlain, HeightsOneAndZeroCopyTheLineBeforeTheDestination) {
  support::Random random(6);
  for (std::uint32_t width : {4U, 5U, 16U, 34U, 70U, 260U}) {
    for (std::uint32_t pattern : kPatterns) {
      ASSERT_TRUE(matches(width, 1, pattern, any_shift(random), random));
      // Without a row phase a height of 0 runs away.
      if (reference::public_to_internal(pattern) >> 1 == 0) continue;
      ASSERT_TRUE(matches(width, 0, pattern, any_shift(random), random));
    }
  }
}

TEST_P(DeepPlain, TouchesNothingOutsideOfItsBuffers) {
  const Entry& entry = GetParam();
  support::Random random(7);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : support::even_widths()) {
      if (width < entry.good_width) continue;
      for (std::uint32_t height : {2U, 3U, 5U}) {
        support::GuardedBuffer src(entry.src_line(width) * height, flush);
        support::GuardedBuffer dst(std::size_t{entry.pixel_bytes} * width * height, flush);
        random.fill(src.data(), src.size());
        for (std::uint32_t pattern : numbers(0, 3)) {
          const std::uint32_t shift = any_shift(random);
          random.fill(dst.data(), dst.size());
          Bytes expected(dst.data(), dst.data() + dst.size());
          ASSERT_EQ(QVN_OK, entry.library(dst.data(), src.data(), width, height, pattern, shift));
          entry.reference(expected.data(), src.data(), width, height, reference::public_to_internal(pattern),
                          shift);
          ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
              << "width " << width << ", height " << height << ", pattern " << pattern << ", shift " << shift;
        }
      }
    }
  }
}

TEST_P(DeepPlain, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(512, 9);
  for (std::uint32_t shift : {0U, 16U, 17U, 0xFFFFFFFFU}) {
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, 4, 4, 0, shift));
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), 4, 4, 0, shift));
    EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 4, 4, 0, shift));
    EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 4, 4, 1000, shift));
  }
  EXPECT_EQ(Bytes(512, 9), bytes);
}

TEST_P(DeepPlain, RefusesShiftsAboveSixteenBehindThePointers) {
  if (!GetParam().shifts) GTEST_SKIP() << "no shift";
  const Bytes src(64, 5);
  Bytes dst(96, 9);
  for (std::uint32_t shift : {17U, 18U, 24U, 31U, 32U, 40U, 255U, 256U, 0x10000U, 0x80000000U, 0xFFFFFFFFU}) {
    for (std::uint32_t pattern : numbers(0, 5)) {
      EXPECT_EQ(QVN_E_PARAM6, GetParam().library(dst.data(), src.data(), 4, 4, pattern, shift)) << shift;
    }
  }
  EXPECT_EQ(Bytes(96, 9), dst);
  EXPECT_EQ(QVN_OK, GetParam().library(dst.data(), src.data(), 4, 4, 0, 16));
}

}  // namespace
