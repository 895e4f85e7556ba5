/// QVN_Packed12BitTo8Bit and QVN_Packed12BitTo16Bit: against the slow reference at every count, between
/// inaccessible pages, with counts that pass 32 bits, and by examples.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "reference/packed12.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Entry {
  const char* name;
  std::uint32_t (*library)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t);
  void (*reference)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t);
  std::uint32_t sample_bytes;
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

constexpr std::array<Entry, 2> kEntries = {{
    {"To8Bit", QVN_Packed12BitTo8Bit, reference::Packed12BitTo8Bit, 1},
    {"To16Bit", QVN_Packed12BitTo16Bit, reference::Packed12BitTo16Bit, 2},
}};

class Packed12 : public testing::TestWithParam<Entry> {
 protected:
  /// `samples` are those that a frame of width by height comes to, after all wraps.
  static testing::AssertionResult matches(std::uint32_t width, std::uint32_t height, std::uint32_t samples,
                                          support::Random& random, std::size_t dst_offset = 0,
                                          std::size_t src_offset = 0) {
    const std::size_t pairs = (std::size_t{samples} + 1) / 2;
    auto same = support::same_effect(
        {.size = 2 * pairs * GetParam().sample_bytes, .before = 64 + dst_offset},
        {.size = 3 * pairs, .before = 64 + src_offset}, random,
        [&](std::uint8_t* dst, const std::uint8_t* src) {
          return GetParam().library(dst, src, width, height);
        },
        [&](std::uint8_t* dst, const std::uint8_t* src) { GetParam().reference(dst, src, width, height); });
    if (same) return same;
    return same << "; width " << width << ", height " << height << ", offsets " << dst_offset << " and "
                << src_offset;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, Packed12, testing::ValuesIn(kEntries),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(Packed12, EqualsReferenceAtEveryCount) {
  support::Random random(860);
  for (std::uint32_t count : support::run_counts()) {
    ASSERT_TRUE(matches(count, 1, count, random));
    ASSERT_TRUE(matches(1, count, count, random));
  }
}

TEST_P(Packed12, EqualsReferenceOnFrames) {
  support::Random random(861);
  for (std::uint32_t width : {3U, 4U, 7U, 17U, 70U, 641U}) {
    for (std::uint32_t height : {2U, 3U, 5U, 31U}) {
      ASSERT_TRUE(matches(width, height, width * height, random));
    }
  }
  ASSERT_TRUE(matches(640, 480, 640 * 480, random));
}

TEST_P(Packed12, NeedsNoAlignment) {
  support::Random random(862);
  for (std::uint32_t count : {7U, 32U, 64U, 101U, 256U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        ASSERT_TRUE(matches(count, 1, count, random, dst_offset, src_offset));
      }
    }
  }
}

/// An odd count is one of whole pairs, and takes both buffers to their ends.
TEST_P(Packed12, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(863);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t count : support::numbers(1, 300)) {
      const std::size_t pairs = (count + 1) / 2;
      support::GuardedBuffer src(3 * pairs, flush);
      support::GuardedBuffer dst(2 * pairs * GetParam().sample_bytes, flush);
      random.fill(src.data(), src.size());
      Bytes expected(dst.size());
      GetParam().reference(expected.data(), src.data(), count, 1);
      ASSERT_EQ(QVN_OK, GetParam().library(dst.data(), src.data(), count, 1)) << count;
      ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size())) << count;
    }
  }
}

TEST_P(Packed12, CountWraps) {
  support::Random random(864);
  ASSERT_TRUE(matches(65536, 65536, 0, random));
  ASSERT_TRUE(matches(65537, 65536, 65536, random));
  ASSERT_TRUE(matches(0xFFFFFFFF, 0xFFFFFFFF, 1, random));
  ASSERT_TRUE(matches(0xFFFFFFFF, 0xFFFFFFFD, 3, random));
  ASSERT_TRUE(matches(0x80000001, 2, 2, random));
  ASSERT_TRUE(matches(5, 858993460, 4, random));
}

TEST_P(Packed12, NoSamplesNoBytes) {
  support::GuardedBuffer none(1, support::Flush::kEnd);
  EXPECT_EQ(QVN_OK, GetParam().library(none.data() + 1, none.data() + 1, 0, 0));
  EXPECT_EQ(QVN_OK, GetParam().library(none.data() + 1, none.data() + 1, 640, 0));
  EXPECT_EQ(QVN_OK, GetParam().library(none.data() + 1, none.data() + 1, 0, 480));
  EXPECT_EQ(QVN_OK, GetParam().library(none.data() + 1, none.data() + 1, 0x80000000, 2));
}

TEST_P(Packed12, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(16, 3);
  EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, 4, 1));
  EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), 4, 1));
  EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 4, 1));
  EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 0, 0));
  EXPECT_EQ(Bytes(16, 3), bytes);
}

/// Twice the samples has 32 bits too: half of 2^32 samples come to nothing, and each one more counts from
/// there.
TEST(Packed12BitTo16Bit, BytesWrap) {
  const Bytes src = {0x12, 0x34, 0x56, 0x78, 0x9A, 0xBC, 0xDE, 0xF0, 0x11};
  const auto run = [&src](std::uint32_t width, std::uint32_t height) {
    Bytes dst(9, 0xA5);
    EXPECT_EQ(QVN_OK, QVN_Packed12BitTo16Bit(dst.data(), src.data(), width, height));
    Bytes expected(9, 0xA5);
    reference::Packed12BitTo16Bit(expected.data(), src.data(), width, height);
    EXPECT_EQ(expected, dst);
    return dst;
  };
  const Bytes none(9, 0xA5);
  const Bytes one_pair = {0x12, 0x40, 0x56, 0x30, 0xA5, 0xA5, 0xA5, 0xA5, 0xA5};
  const Bytes two_pairs = {0x12, 0x40, 0x56, 0x30, 0x78, 0xA0, 0xBC, 0x90, 0xA5};
  EXPECT_EQ(none, run(0x80000000, 1));
  EXPECT_EQ(none, run(0x40000000, 2));
  EXPECT_EQ(one_pair, run(0x80000001, 1));
  EXPECT_EQ(one_pair, run(0x40000001, 2));
  EXPECT_EQ(two_pairs, run(0x80000003, 1));
  EXPECT_EQ(two_pairs, run(0x80000004, 1));
}

TEST(Packed12BitTo8Bit, TakesTheOuterBytesOfAPair) {
  Bytes dst(3, 0xA5);
  const Bytes src = {0xAB, 0xCD, 0xEF};
  ASSERT_EQ(QVN_OK, QVN_Packed12BitTo8Bit(dst.data(), src.data(), 2, 1));
  EXPECT_EQ((Bytes{0xAB, 0xEF, 0xA5}), dst);
}

TEST(Packed12BitTo16Bit, PutsTheHighByteFirst) {
  Bytes dst(5, 0xA5);
  const Bytes src = {0xAB, 0xCD, 0xEF};
  ASSERT_EQ(QVN_OK, QVN_Packed12BitTo16Bit(dst.data(), src.data(), 2, 1));
  EXPECT_EQ((Bytes{0xAB, 0xD0, 0xEF, 0xC0, 0xA5}), dst);
}

TEST(Packed12BitTo8Bit, OddCountWritesOneByteMore) {
  Bytes dst(5, 0xA5);
  const Bytes src = {1, 0x23, 4, 5, 0x67, 8};
  ASSERT_EQ(QVN_OK, QVN_Packed12BitTo8Bit(dst.data(), src.data(), 3, 1));
  EXPECT_EQ((Bytes{1, 4, 5, 8, 0xA5}), dst);
}

TEST(Packed12BitTo16Bit, OddCountWritesTwoBytesMore) {
  Bytes dst(9, 0xA5);
  const Bytes src = {1, 0x23, 4, 5, 0x67, 8};
  ASSERT_EQ(QVN_OK, QVN_Packed12BitTo16Bit(dst.data(), src.data(), 1, 3));
  EXPECT_EQ((Bytes{1, 0x30, 4, 0x20, 5, 0x70, 8, 0x60, 0xA5}), dst);
}

/// All pairs of samples' nibbles.
TEST(Packed12BitTo16Bit, EveryMiddleByte) {
  Bytes src;
  Bytes expected;
  for (std::uint32_t b = 0; b < 256; ++b) {
    for (std::uint32_t byte : {0x5AU, b, 0xC3U}) src.push_back(static_cast<std::uint8_t>(byte));
    for (std::uint32_t byte : {0x5AU, b % 16 * 16, 0xC3U, b / 16 * 16}) {
      expected.push_back(static_cast<std::uint8_t>(byte));
    }
  }
  Bytes dst(1024);
  ASSERT_EQ(QVN_OK, QVN_Packed12BitTo16Bit(dst.data(), src.data(), 16, 32));
  EXPECT_EQ(expected, dst);
}

}  // namespace
