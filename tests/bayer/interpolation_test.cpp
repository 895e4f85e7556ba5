/// QVN_Raw8ToBGR_IntYUV422, QVN_Raw8ToBGR_IntLCAA and QVN_Raw8ToBGR_IntLCAAV: against the slow reference over
/// whole arenas of both buffers, between inaccessible pages, and against numbers worked out by hand.
#include "reference/interpolation.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "reference/pattern.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kPatterns[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 0x7FFFFFFD, 0xFFFFFFFE, 0xFFFFFFFF};

struct Entry {
  const char* name;
  std::uint32_t (*library)(std::uint8_t*, std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t);
  void (*reference)(std::uint8_t*, std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t);
  std::uint32_t smallest_height;
  std::uint32_t least_pairs;     ///< in a half frame
  std::uint32_t outward_height;  ///< frames up to this height read before `dst`
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

const std::array<Entry, 3> kEntries = {{
    {"IntYUV422",
     [](std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern) { return QVN_Raw8ToBGR_IntYUV422(dst, src, width, height, pattern); },
     reference::Raw8ToBGR_IntYUV422, 2, 1, 0},
    {"IntLCAA",
     [](std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern) { return QVN_Raw8ToBGR_IntLCAA(dst, src, width, height, pattern); },
     reference::Raw8ToBGR_IntLCAA, 2, 3, 0},
    {"IntLCAAV",
     [](std::uint8_t* dst, std::uint8_t* src, std::uint32_t width, std::uint32_t height,
        std::uint32_t pattern) { return QVN_Raw8ToBGR_IntLCAAV(dst, src, width, height, pattern); },
     reference::Raw8ToBGR_IntLCAAV, 4, 2, 5},
}};

testing::AssertionResult matches(const Entry& entry, std::uint32_t width, std::uint32_t height,
                                 std::uint32_t pattern, support::Random& random, std::size_t dst_offset = 0,
                                 std::size_t src_offset = 0) {
  const std::size_t line = std::size_t{3} * width;
  auto same = support::same_effect(
      support::Room{.size = line * height, .line_bytes = line, .before = line + 64 + dst_offset},
      support::Room{.size = std::size_t{width} * height, .line_bytes = width, .before = 64 + src_offset},
      random,
      [&](std::uint8_t* dst, std::uint8_t* src) { return entry.library(dst, src, width, height, pattern); },
      [&](std::uint8_t* dst, std::uint8_t* src) {
        entry.reference(dst, src, width, height, reference::public_to_internal(pattern));
      });
  if (same) return same;
  return same << "; width " << width << ", height " << height << ", pattern " << pattern << ", offsets "
              << dst_offset << " and " << src_offset;
}

class Interpolation : public testing::TestWithParam<Entry> {
 protected:
  bool serves(std::uint32_t width, std::uint32_t height) const {
    return height >= GetParam().smallest_height && (height / 2 * width) / 2 >= GetParam().least_pairs;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, Interpolation, testing::ValuesIn(kEntries),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(Interpolation, EqualsReferenceAtEvenHeights) {
  support::Random random(1);
  for (std::uint32_t width : support::even_widths()) {
    for (std::uint32_t height : {2U, 4U, 6U, 8U, 10U}) {
      if (!serves(width, height)) continue;
      for (std::uint32_t pattern : kPatterns) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
  for (std::uint32_t width : {2U, 4U, 16U, 34U, 66U, 130U, 258U}) {
    for (std::uint32_t height : {16U, 30U, 48U, 64U, 70U}) {
      for (std::uint32_t pattern : numbers(0, 7)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

/// With an odd height the halves are packed a line short, and the conversion's last pairs are what `src`
/// held.
TEST_P(Interpolation, EqualsReferenceAtOddHeights) {
  support::Random random(2);
  for (std::uint32_t width : support::even_widths()) {
    for (std::uint32_t height : {3U, 5U, 7U, 9U, 33U}) {
      if (!serves(width, height)) continue;
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

TEST_P(Interpolation, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 480U}, std::pair{1024U, 34U}, std::pair{1288U, 20U}}) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
    }
  }
}

/// Widths at which the last strip of a line is shortest and longest, and heights to either side of where
/// frames begin to be worked row by row.
TEST_P(Interpolation, EqualsReferenceAroundStrips) {
  support::Random random(10);
  for (std::uint32_t first : {254U, 510U}) {
    for (std::uint32_t width = first; width <= first + 22; width += 2) {
      for (std::uint32_t height : numbers(6, 14)) {
        for (std::uint32_t pattern : numbers(0, 3)) {
          ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
        }
      }
    }
  }
}

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAddressSanitizer = true;
#elif defined(__has_feature)
constexpr bool kAddressSanitizer = __has_feature(address_sanitizer);
#else
constexpr bool kAddressSanitizer = false;
#endif

/// Nothing on the stack grows with the width: a line of 100,000 pixels on a stack of 64 KiB.
TEST_P(Interpolation, WideLinesNeedNoStack) {
  if (kAddressSanitizer) GTEST_SKIP() << "the sanitizer needs more stack than this";
  struct Job {
    const Entry& entry;
    Bytes src, dst;
    std::uint32_t height;
    std::uint32_t status;
  };
  constexpr std::uint32_t kWidth = 100000;
  support::Random random(11);
  // Row by row, and as passes over the whole frame.
  for (std::uint32_t height : {6U, 7U}) {
    Job job{GetParam(), Bytes(kWidth * height), Bytes(std::size_t{3} * kWidth * height), height, 1};
    random.fill(job.src.data(), job.src.size());
    Bytes src = job.src;
    Bytes dst = job.dst;
    job.entry.reference(dst.data(), src.data(), kWidth, height, 0);

    pthread_attr_t attributes;
    pthread_t thread;
    ASSERT_EQ(0, pthread_attr_init(&attributes));
    std::size_t stack = std::size_t{64} * 1024;
#ifdef PTHREAD_STACK_MIN
    stack = std::max(stack, static_cast<std::size_t>(PTHREAD_STACK_MIN));
#endif
    ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, stack));
    const auto run = [](void* argument) -> void* {
      auto& mine = *static_cast<Job*>(argument);
      mine.status = mine.entry.library(mine.dst.data(), mine.src.data(), kWidth, mine.height, 0);
      return nullptr;
    };
    ASSERT_EQ(0, pthread_create(&thread, &attributes, run, &job));
    ASSERT_EQ(0, pthread_join(thread, nullptr));
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(QVN_OK, job.status);
    EXPECT_TRUE(dst == job.dst) << "dst, height " << height;
    EXPECT_TRUE(src == job.src) << "src, height " << height;
  }
}

TEST_P(Interpolation, NeedsNoAlignment) {
  support::Random random(4);
  for (std::uint32_t width : {4U, 6U, 16U, 34U, 66U, 130U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        ASSERT_TRUE(matches(GetParam(), width, 6, 0, random, dst_offset, src_offset));
      }
    }
  }
}

TEST_P(Interpolation, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(5);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : support::even_widths()) {
      for (std::uint32_t height : numbers(2, 9)) {
        if (!serves(width, height)) continue;
        if (flush == support::Flush::kBegin && height <= GetParam().outward_height) continue;
        support::GuardedBuffer src(std::size_t{width} * height, flush);
        random.fill(src.data(), src.size());
        Bytes expected_src(src.data(), src.data() + src.size());
        // Frames that reach outward get the three pixels that they read.
        const std::size_t before = height <= GetParam().outward_height ? 9 : 0;
        support::GuardedBuffer dst(std::size_t{3} * width * height + before, flush);
        random.fill(dst.data(), dst.size());
        Bytes expected(dst.data(), dst.data() + dst.size());
        GetParam().reference(expected.data() + before, expected_src.data(), width, height, 0);
        ASSERT_EQ(QVN_OK, GetParam().library(dst.data() + before, src.data(), width, height, 0));
        ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
            << "dst; width " << width << ", height " << height;
        ASSERT_EQ(0, std::memcmp(expected_src.data(), src.data(), src.size()))
            << "src; width " << width << ", height " << height;
      }
    }
  }
}

TEST_P(Interpolation, GreyStaysGreyAndLeavesItsStream) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    for (std::uint32_t pattern : numbers(0, 3)) {
      Bytes src(34 * 6, grey);
      Bytes dst(3 * 34 * 6, 0xA5);
      ASSERT_EQ(QVN_OK, GetParam().library(dst.data(), src.data(), 34, 6, pattern));
      ASSERT_EQ(Bytes(3 * 34 * 6, grey), dst);
      for (std::size_t i = 0; i < src.size(); ++i) ASSERT_EQ(i % 2 == 0 ? 128 : grey, src[i]);
    }
  }
}

/// Constant colour passes every chroma filter: red 255 alone makes Y 76, U 128 - 43 = 85 (the sum -10965 is
/// shifted down to -43), V 128 + 127 = 255; and that makes blue 76 - 76, green 76 + 14 - 90, red 76 + 178.
TEST_P(Interpolation, PureRedIsWorkedOut) {
  const std::array<std::uint8_t, 4> red_sites[4] = {
      {255, 0, 0, 0}, {0, 0, 255, 0}, {0, 255, 0, 0}, {0, 0, 0, 255}};
  for (std::uint32_t pattern : numbers(0, 3)) {
    Bytes src;
    for (std::size_t y = 0; y < 6; ++y) {
      for (std::size_t x = 0; x < 8; ++x) src.push_back(red_sites[pattern][(y & 1) * 2 + (x & 1)]);
    }
    Bytes dst(3 * src.size());
    ASSERT_EQ(QVN_OK, GetParam().library(dst.data(), src.data(), 8, 6, pattern));
    for (std::size_t i = 0; i < dst.size(); ++i) ASSERT_EQ(i % 3 == 2 ? 254 : 0, dst[i]) << "byte " << i;
    const std::uint8_t stream[4] = {85, 76, 255, 76};
    for (std::size_t i = 0; i < src.size(); ++i) ASSERT_EQ(stream[i % 4], src[i]) << "byte " << i;
  }
}

TEST_P(Interpolation, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(64);
  EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, 4, 4, 0));
  EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), 4, 4, 0));
  EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 4, 4, 0));
  EXPECT_EQ(Bytes(64), bytes);
}

/// These two have no line structure behind the demosaic, so odd widths have an outcome too.
TEST(OddWidths, YUV422AndLCAAEqualReference) {
  support::Random random(6);
  for (std::uint32_t width : support::frame_widths()) {
    if (width % 2 == 0) continue;
    for (std::uint32_t height : {4U, 5U, 6U, 7U, 10U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(kEntries[0], width, height, pattern, random));
        ASSERT_TRUE(matches(kEntries[1], width, height, pattern, random));
      }
    }
  }
}

TEST(IntLCAA, TwoPairsAHalfCopyTheFourBytesBeforeTheSource) {
  support::Random random(7);
  for (std::uint32_t pattern : numbers(0, 3)) {
    ASSERT_TRUE(matches(kEntries[1], 4, 2, pattern, random));
    ASSERT_TRUE(matches(kEntries[1], 4, 3, pattern, random));
    ASSERT_TRUE(matches(kEntries[1], 2, 4, pattern, random));
    ASSERT_TRUE(matches(kEntries[1], 2, 5, pattern, random));
  }
  // U, Y, V, Y of a grey pair: both halves become 50, 60, 50, 60.
  Bytes src = {128, 50, 128, 60, 1, 2, 3, 4, 5, 6, 7, 8};
  Bytes dst(24);
  ASSERT_EQ(QVN_OK, QVN_Raw8ToBGR_IntLCAA(dst.data(), src.data() + 4, 4, 2, 0));
  EXPECT_EQ((Bytes{128, 50, 128, 60, 128, 50, 128, 60, 128, 50, 128, 60}), src);
  for (std::size_t i = 0; i < dst.size(); ++i) EXPECT_EQ(i / 3 % 2 == 0 ? 50 : 60, dst[i]);
}

TEST(IntLCAA, LastTwoPairsOfAHalfRepeatThePairBefore) {
  support::Random random(8);
  Bytes src(34 * 6);
  random.fill(src.data(), src.size());
  Bytes dst(3 * src.size());
  ASSERT_EQ(QVN_OK, QVN_Raw8ToBGR_IntLCAA(dst.data(), src.data(), 34, 6, 0));
  EXPECT_EQ(0, std::memcmp(&src[src.size() - 8], &src[src.size() - 12], 4));
  EXPECT_EQ(0, std::memcmp(&src[src.size() - 4], &src[src.size() - 12], 4));
  for (std::size_t half : {dst.size() / 2, dst.size()}) {
    EXPECT_EQ(0, std::memcmp(&dst[half - 12], &dst[half - 18], 6));
    EXPECT_EQ(0, std::memcmp(&dst[half - 6], &dst[half - 18], 6));
  }
}

/// Two lines a half: the second looks up past the first one's beginning. A grey frame of 100 with coloured
/// pixels before `dst` (U 208): the second pair has U (128 * 5 + 208 * 3 + 4) >> 3 = 158, which is blue + 53
/// and green - 10. Before the second half lies the finished first one, 100 as luma and both chromas: U and V
/// (128 * 5 + 100 * 3 + 4) >> 3 = 118, which is blue - 17, green + 3 + 7 and red - 14.
TEST(IntLCAAV, HeightFourReadsThreePixelsBeforeEachHalf) {
  Bytes src(16, 100);
  Bytes arena = {1, 208, 128, 2, 208, 128, 3, 208, 128};
  arena.resize(9 + 48, 0xA5);
  ASSERT_EQ(QVN_OK, QVN_Raw8ToBGR_IntLCAAV(arena.data() + 9, src.data(), 4, 4, 0));
  Bytes expected(48, 100);
  const Bytes first = {153, 90, 100, 153, 90, 100};
  const Bytes second = {83, 110, 86, 83, 110, 86};
  std::copy(first.begin(), first.end(), expected.begin() + 6);
  std::copy(second.begin(), second.end(), expected.begin() + 24 + 6);
  EXPECT_EQ(expected, Bytes(arena.begin() + 9, arena.end()));
  EXPECT_EQ((Bytes{128, 100, 128, 100, 118, 100, 118, 100, 128, 100, 128, 100, 128, 100, 128, 100}), src);
}

/// A height below four is nothing to use: the one line of a half looks up to the line before it, and a pair
/// more than there is, is written to `src`. The bytes are told all the same.
TEST(IntLCAAV, OneLineAHalfEqualsReference) {
  support::Random random(9);
  for (std::uint32_t width : {4U, 6U, 16U, 34U, 66U, 130U}) {
    for (std::uint32_t height : {2U, 3U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(kEntries[2], width, height, pattern, random));
      }
    }
  }
}

}  // namespace
