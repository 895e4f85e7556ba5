/// QVN_InterlacedToProgressive: both paths against the slow reference, the second field's two places, and
/// examples.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <cstring>
#include <vector>

#include "reference/interlace.h"
#include "support/arena.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

testing::AssertionResult weaves_apart(std::uint32_t width, std::uint32_t height, support::Random& random,
                                      std::size_t dst_offset = 0, std::size_t src_offset = 0) {
  const std::size_t size = std::size_t{width} * height;
  auto same = support::same_effect(
      {.size = size, .line_bytes = width, .before = 64 + dst_offset},
      {.size = size, .line_bytes = width, .before = 64 + src_offset}, random,
      [&](std::uint8_t* dst, const std::uint8_t* src) {
        return QVN_InterlacedToProgressive(dst, src, width, height);
      },
      [&](std::uint8_t* dst, const std::uint8_t* src) {
        reference::InterlacedToProgressive(dst, src, width, height);
      });
  if (same) return same;
  return same << "; width " << width << ", height " << height;
}

testing::AssertionResult weaves_in_place(std::uint32_t width, std::uint32_t height, support::Random& random,
                                         std::size_t offset = 0) {
  support::Arena expected(64 + offset, std::size_t{width} * height, 64);
  expected.fill(random);
  support::Arena actual(expected);
  reference::InterlacedToProgressive(expected.data(), expected.data(), width, height);
  const std::uint32_t status = QVN_InterlacedToProgressive(actual.data(), actual.data(), width, height);
  if (status != QVN_OK) return testing::AssertionFailure() << "status 0x" << std::hex << status;
  auto same = support::same_bytes("frame", expected, actual, width);
  if (same) return same;
  return same << "; width " << width << ", height " << height << ", offset " << offset;
}

TEST(InterlacedToProgressive, EqualsReferenceAtAllSizes) {
  support::Random random(850);
  for (std::uint32_t width : numbers(0, 70)) {
    for (std::uint32_t height : numbers(0, 17)) {
      ASSERT_TRUE(weaves_apart(width, height, random));
      ASSERT_TRUE(weaves_in_place(width, height, random));
    }
  }
  for (std::uint32_t width : support::frame_widths()) {
    for (std::uint32_t height : {2U, 3U, 40U, 69U}) {
      ASSERT_TRUE(weaves_apart(width, height, random));
      ASSERT_TRUE(weaves_in_place(width, height, random));
    }
  }
}

TEST(InterlacedToProgressive, EqualsReferenceOnCameraSizes) {
  support::Random random(851);
  for (std::uint32_t height : {480U, 494U, 485U}) {
    for (std::uint32_t width : {640U, 768U, 659U}) {
      ASSERT_TRUE(weaves_apart(width, height, random));
      ASSERT_TRUE(weaves_in_place(width, height, random));
    }
  }
}

TEST(InterlacedToProgressive, NeedsNoAlignment) {
  support::Random random(852);
  for (std::size_t offset : numbers(1, 33)) {
    for (std::uint32_t width : {5U, 32U, 67U}) {
      ASSERT_TRUE(weaves_apart(width, 6, random, offset, 33 - offset));
      ASSERT_TRUE(weaves_in_place(width, 6, random, offset));
    }
  }
}

TEST(InterlacedToProgressive, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(853);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : numbers(1, 70)) {
      for (std::uint32_t height : {2U, 3U, 6U, 7U}) {
        support::GuardedBuffer src(std::size_t{width} * height, flush);
        support::GuardedBuffer dst(std::size_t{width} * (height & ~1U), flush);
        random.fill(src.data(), src.size());
        Bytes expected(dst.size());
        reference::InterlacedToProgressive(expected.data(), src.data(), width, height);
        ASSERT_EQ(QVN_OK, QVN_InterlacedToProgressive(dst.data(), src.data(), width, height));
        ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size())) << width << " x " << height;

        Bytes same(src.data(), src.data() + src.size());
        reference::InterlacedToProgressive(same.data(), same.data(), width, height);
        ASSERT_EQ(QVN_OK, QVN_InterlacedToProgressive(src.data(), src.data(), width, height));
        ASSERT_EQ(0, std::memcmp(same.data(), src.data(), src.size())) << width << " x " << height;
      }
    }
  }
}

Bytes woven(const Bytes& src, std::uint32_t width, std::uint32_t height) {
  Bytes dst(src.size(), 0xA5);
  EXPECT_EQ(QVN_OK, QVN_InterlacedToProgressive(dst.data(), src.data(), width, height));
  return dst;
}

Bytes woven_in_place(Bytes frame, std::uint32_t width, std::uint32_t height) {
  EXPECT_EQ(QVN_OK, QVN_InterlacedToProgressive(frame.data(), frame.data(), width, height));
  return frame;
}

TEST(InterlacedToProgressive, FieldThatLiesSecondComesFirst) {
  const Bytes stored = {11, 12, 21, 22, 31, 32, 41, 42};
  const Bytes shown = {31, 32, 11, 12, 41, 42, 21, 22};
  EXPECT_EQ(shown, woven(stored, 2, 4));
  EXPECT_EQ(shown, woven_in_place(stored, 2, 4));
}

TEST(InterlacedToProgressive, TwoLinesChangePlaces) {
  const Bytes stored = {1, 2, 3, 4};
  EXPECT_EQ((Bytes{3, 4, 1, 2}), woven(stored, 2, 2));
  EXPECT_EQ((Bytes{3, 4, 1, 2}), woven_in_place(stored, 2, 2));
}

/// Three samples a line: (3 >> 1) * 2 is 2, (3 * 2) >> 1 is 3; callers depend on both.
TEST(InterlacedToProgressive, SecondFieldOfAnOddWidthLiesElsewhereOnEachPath) {
  const Bytes stored = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ((Bytes{3, 4, 5, 1, 2, 3}), woven(stored, 3, 2));
  EXPECT_EQ((Bytes{4, 5, 6, 1, 2, 3}), woven_in_place(stored, 3, 2));
  // One sample a line: both fields are the first one, or the second begins behind two samples.
  EXPECT_EQ((Bytes{1, 1, 2, 2}), woven({1, 2, 3, 4}, 1, 4));
  EXPECT_EQ((Bytes{3, 1, 4, 2}), woven_in_place({1, 2, 3, 4}, 1, 4));
}

/// Height 3: the second field begins in the middle of a line.
TEST(InterlacedToProgressive, OddHeightLeavesTheLastLine) {
  const Bytes stored = {1, 2, 3, 4, 5, 6};
  EXPECT_EQ((Bytes{4, 5, 1, 2, 0xA5, 0xA5}), woven(stored, 2, 3));
  EXPECT_EQ((Bytes{4, 5, 1, 2, 5, 6}), woven_in_place(stored, 2, 3));
}

TEST(InterlacedToProgressive, NoPairOfLinesNoBytes) {
  const Bytes stored = {1, 2, 3, 4};
  support::GuardedBuffer none(1, support::Flush::kEnd);
  support::GuardedBuffer other(1, support::Flush::kEnd);
  for (std::uint32_t height : {0U, 1U}) {
    EXPECT_EQ(stored, woven_in_place(stored, 4, height));
    EXPECT_EQ(Bytes(4, 0xA5), woven(stored, 4, height));
    EXPECT_EQ(QVN_OK, QVN_InterlacedToProgressive(none.data() + 1, other.data() + 1, 640, height));
  }
  EXPECT_EQ(QVN_OK, QVN_InterlacedToProgressive(none.data() + 1, other.data() + 1, 0, 9));
  EXPECT_EQ(QVN_OK, QVN_InterlacedToProgressive(none.data() + 1, none.data() + 1, 0, 9));
}

TEST(InterlacedToProgressive, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(16, 3);
  EXPECT_EQ(QVN_E_PARAM1, QVN_InterlacedToProgressive(nullptr, nullptr, 4, 4));
  EXPECT_EQ(QVN_E_PARAM1, QVN_InterlacedToProgressive(nullptr, bytes.data(), 4, 4));
  EXPECT_EQ(QVN_E_PARAM2, QVN_InterlacedToProgressive(bytes.data(), nullptr, 4, 4));
  EXPECT_EQ(QVN_E_PARAM2, QVN_InterlacedToProgressive(bytes.data(), nullptr, 0, 0));
  EXPECT_EQ(Bytes(16, 3), bytes);
}

}  // namespace
