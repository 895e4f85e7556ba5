/// QVN_Flip and QVN_FlipVertical: against the slow reference for all codes and axes, between inaccessible
/// pages, by examples, and the order in which arguments are refused.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ostream>
#include <vector>

#include "reference/flip.h"
#include "support/arena.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kHorizontal = 1;
constexpr std::uint32_t kVertical = 2;
constexpr std::uint32_t kBoth = 3;

/// A code for each element, by its bytes: 1, 2, 3 and 6.
constexpr std::uint32_t kMono8 = 0;
constexpr std::uint32_t kMono16 = 5;
constexpr std::uint32_t kRgb8 = 4;
constexpr std::uint32_t kRgb16 = 6;
constexpr std::array<std::uint32_t, 4> kElementCodes = {kMono8, kMono16, kRgb8, kRgb16};

constexpr std::array<std::uint32_t, 14> kFlippableCodes = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 128, 129, 130};

/// All below 256, and such as look like known ones in their low bits.
std::vector<std::uint32_t> all_codes() {
  std::vector<std::uint32_t> codes = numbers(0, 255);
  for (std::uint32_t code : {0x100U, 0x104U, 0x180U, 0x10006U, 0x80000000U, 0x80000005U, 0xFFFFFFFFU}) {
    codes.push_back(code);
  }
  return codes;
}

bool is_flippable(std::uint32_t code) {
  return std::find(kFlippableCodes.begin(), kFlippableCodes.end(), code) != kFlippableCodes.end();
}

struct Case {
  std::uint32_t width;
  std::uint32_t height;
  std::uint32_t axis;
  std::uint32_t code;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << "width " << c.width << ", height " << c.height << ", axis " << c.axis << ", code " << c.code;
}

std::size_t frame_size(const Case& c) {
  return std::size_t{c.width} * c.height * reference::flip_element(c.code);
}

testing::AssertionResult matches(const Case& c, std::size_t size, support::Random& random,
                                 std::size_t offset = 0) {
  support::Arena expected(64 + offset, size, 64);
  expected.fill(random);
  support::Arena actual(expected);
  reference::Flip(expected.data(), c.width, c.height, c.axis, c.code);
  const std::uint32_t status = QVN_Flip(actual.data(), c.width, c.height, c.axis, c.code);
  if (status != QVN_OK) return testing::AssertionFailure() << "status 0x" << std::hex << status;
  auto same =
      support::same_bytes("buffer", expected, actual, std::size_t{c.width} * reference::flip_element(c.code));
  if (same) return same;
  return same << "; " << c << ", offset " << offset;
}

testing::AssertionResult matches(const Case& c, support::Random& random, std::size_t offset = 0) {
  return matches(c, frame_size(c), random, offset);
}

Bytes flipped(Bytes bytes, std::uint32_t width, std::uint32_t height, std::uint32_t axis,
              std::uint32_t code) {
  EXPECT_EQ(QVN_OK, QVN_Flip(bytes.data(), width, height, axis, code));
  return bytes;
}

TEST(Flip, EqualsReferenceAtEveryWidth) {
  support::Random random(830);
  std::vector<std::uint32_t> widths = support::frame_widths();
  widths.push_back(0);
  widths.push_back(1);
  for (std::uint32_t width : widths) {
    for (std::uint32_t height : {2U, 3U, 4U, 7U}) {
      for (std::uint32_t axis : numbers(1, 3)) {
        for (std::uint32_t code : kElementCodes) {
          ASSERT_TRUE(matches({width, height, axis, code}, random));
        }
      }
    }
  }
}

TEST(Flip, EqualsReferenceAtEveryHeight) {
  support::Random random(831);
  for (std::uint32_t width : {1U, 2U, 5U, 16U, 33U}) {
    for (std::uint32_t height : numbers(2, 70)) {
      for (std::uint32_t axis : numbers(1, 3)) {
        for (std::uint32_t code : kElementCodes) {
          ASSERT_TRUE(matches({width, height, axis, code}, random));
        }
      }
    }
  }
}

TEST(Flip, EqualsReferenceForEveryCode) {
  support::Random random(832);
  for (std::uint32_t code : all_codes()) {
    for (std::uint32_t width : {1U, 6U, 37U}) {
      ASSERT_TRUE(matches({width, 5, kVertical, code}, random));
      if (!is_flippable(code)) continue;
      ASSERT_TRUE(matches({width, 5, kHorizontal, code}, random));
      ASSERT_TRUE(matches({width, 5, kBoth, code}, random));
    }
  }
}

TEST(Flip, EqualsReferenceOnCameraSizes) {
  support::Random random(833);
  for (std::uint32_t axis : numbers(1, 3)) {
    for (std::uint32_t code : kElementCodes) {
      ASSERT_TRUE(matches({640, 480, axis, code}, random));
      ASSERT_TRUE(matches({1291, 35, axis, code}, random));
    }
  }
}

TEST(Flip, NeedsNoAlignment) {
  support::Random random(834);
  for (std::size_t offset : numbers(0, 33)) {
    for (std::uint32_t width : {3U, 16U, 33U, 64U, 129U}) {
      for (std::uint32_t axis : numbers(1, 3)) {
        for (std::uint32_t code : kElementCodes) ASSERT_TRUE(matches({width, 3, axis, code}, random, offset));
      }
    }
  }
}

TEST(Flip, TouchesNothingOutsideOfItsBuffer) {
  support::Random random(835);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : numbers(1, 70)) {
      for (std::uint32_t axis : numbers(1, 3)) {
        for (std::uint32_t code : kElementCodes) {
          const Case c{width, 3, axis, code};
          support::GuardedBuffer buffer(frame_size(c), flush);
          random.fill(buffer.data(), buffer.size());
          Bytes expected(buffer.data(), buffer.data() + buffer.size());
          reference::Flip(expected.data(), width, 3, axis, code);
          ASSERT_EQ(QVN_OK, QVN_Flip(buffer.data(), width, 3, axis, code)) << c;
          ASSERT_EQ(0, std::memcmp(expected.data(), buffer.data(), buffer.size())) << c;
        }
      }
    }
  }
}

TEST(Flip, TwiceRestoresTheFrame) {
  support::Random random(836);
  for (std::uint32_t code : kElementCodes) {
    for (std::uint32_t width : {1U, 21U, 64U, 101U}) {
      Bytes frame(std::size_t{width} * 7 * reference::flip_element(code));
      random.fill(frame.data(), frame.size());
      for (std::uint32_t axis : numbers(1, 3)) {
        const Bytes once = flipped(frame, width, 7, axis, code);
        EXPECT_EQ(frame, flipped(once, width, 7, axis, code));
      }
      EXPECT_EQ(flipped(flipped(frame, width, 7, kHorizontal, code), width, 7, kVertical, code),
                flipped(frame, width, 7, kBoth, code));
    }
  }
}

TEST(Flip, ElementsKeepTheirOrder) {
  const Bytes frame = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  EXPECT_EQ((Bytes{6, 5, 4, 3, 2, 1, 12, 11, 10, 9, 8, 7}), flipped(frame, 6, 2, kHorizontal, kMono8));
  EXPECT_EQ((Bytes{5, 6, 3, 4, 1, 2, 11, 12, 9, 10, 7, 8}), flipped(frame, 3, 2, kHorizontal, kMono16));
  EXPECT_EQ((Bytes{4, 5, 6, 1, 2, 3, 10, 11, 12, 7, 8, 9}), flipped(frame, 2, 2, kHorizontal, kRgb8));
  EXPECT_EQ((Bytes{7, 8, 9, 10, 11, 12, 1, 2, 3, 4, 5, 6}), flipped(frame, 1, 2, kVertical, kRgb16));
  EXPECT_EQ((Bytes{11, 12, 9, 10, 7, 8, 5, 6, 3, 4, 1, 2}), flipped(frame, 3, 2, kBoth, kMono16));
  EXPECT_EQ((Bytes{10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3}), flipped(frame, 2, 2, kBoth, kRgb8));
}

TEST(Flip, WidthOneKeepsEveryLine) {
  Bytes frame(18);
  support::Random(837).fill(frame.data(), frame.size());
  for (std::uint32_t code : kElementCodes) {
    EXPECT_EQ(frame, flipped(frame, 1, 18 / reference::flip_element(code), kHorizontal, code));
  }
}

/// Three bytes a pixel, but elements of two.
TEST(Flip, Yuv444MovesTwoBytes) {
  const Bytes line = {1, 2, 3, 4, 5, 6};
  Bytes frame = line;
  frame.insert(frame.end(), line.begin(), line.end());
  EXPECT_EQ((Bytes{5, 6, 3, 4, 1, 2, 5, 6, 3, 4, 1, 2}), flipped(frame, 3, 2, kHorizontal, 3));
  EXPECT_EQ((Bytes{3, 4, 1, 2, 5, 6, 1, 2}), flipped({1, 2, 3, 4, 1, 2, 5, 6}, 2, 2, kHorizontal, 3));
}

TEST(Flip, VerticalTakesAnyCodeAndUnknownOnesAsBytes) {
  const Bytes frame = {1, 2, 3, 4, 5, 6};
  for (std::uint32_t code : {132U, 133U, 134U, 135U, 136U, 141U, 11U, 127U, 131U, 140U, 0xFFFFFFFFU}) {
    EXPECT_EQ((Bytes{4, 5, 6, 1, 2, 3}), flipped(frame, 3, 2, kVertical, code)) << code;
    EXPECT_EQ((Bytes{5, 6, 3, 4, 1, 2}), flipped(frame, 2, 3, kVertical, code)) << code;
  }
}

/// Elements times width has 32 bits: these lines are of 2 bytes.
TEST(Flip, VerticalLineBytesWrap) {
  const Bytes frame = {1, 2, 3, 4, 5, 6, 0xA5};
  EXPECT_EQ((Bytes{5, 6, 3, 4, 1, 2, 0xA5}), flipped(frame, 0x80000001, 3, kVertical, kMono16));
  EXPECT_EQ((Bytes{5, 6, 3, 4, 1, 2, 0xA5}), flipped(frame, 0x55555556, 3, kVertical, kRgb8));
  EXPECT_EQ((Bytes{5, 6, 3, 4, 1, 2, 0xA5}), flipped(frame, 0x2AAAAAAB, 3, kVertical, kRgb16));
  EXPECT_EQ(frame, flipped(frame, 0x80000000, 3, kVertical, kMono16));
}

/// So has width times height.
TEST(Flip, BothAxesElementCountWraps) {
  support::Random random(838);
  for (std::uint32_t code : kElementCodes) {
    const std::size_t element = reference::flip_element(code);
    ASSERT_TRUE(matches({0x80000000, 2, kBoth, code}, 64, random));
    ASSERT_TRUE(matches({0x80000001, 2, kBoth, code}, 2 * element, random));
    ASSERT_TRUE(matches({0x80000003, 2, kBoth, code}, 6 * element, random));
    ASSERT_TRUE(matches({65536, 65536, kBoth, code}, 64, random));
    ASSERT_TRUE(matches({65537, 65536, kBoth, code}, 65536 * element, random));
    ASSERT_TRUE(matches({5, 858993460, kBoth, code}, 4 * element, random));
    ASSERT_TRUE(matches({0xFFFFFFFF, 0xFFFFFFFF, kBoth, code}, element, random));
  }
  EXPECT_EQ((Bytes{2, 1, 3}), flipped({1, 2, 3}, 0x80000001, 2, kBoth, kMono8));
}

TEST(Flip, RefusesInOrder) {
  Bytes frame(64);
  support::Random(839).fill(frame.data(), frame.size());
  const Bytes before = frame;
  EXPECT_EQ(QVN_E_PARAM1, QVN_Flip(nullptr, 4, 0, 9, 132));
  for (std::uint32_t axis : {0U, 1U, 2U, 3U, 4U, 0xFFFFFFFFU}) {
    for (std::uint32_t code : {0U, 4U, 11U, 132U, 141U, 0xFFFFFFFFU}) {
      EXPECT_EQ(QVN_E_PARAM1, QVN_Flip(nullptr, 4, 4, axis, code));
      EXPECT_EQ(QVN_E_PARAM3, QVN_Flip(frame.data(), 4, 0, axis, code));
      EXPECT_EQ(QVN_E_PARAM3, QVN_Flip(frame.data(), 4, 1, axis, code));
    }
  }
  for (std::uint32_t axis : {0U, 4U, 5U, 0x101U, 0x80000002U, 0xFFFFFFFFU}) {
    for (std::uint32_t code : {0U, 4U, 11U, 132U, 141U, 0xFFFFFFFFU}) {
      EXPECT_EQ(QVN_E_PARAM4, QVN_Flip(frame.data(), 4, 2, axis, code));
    }
  }
  for (std::uint32_t code : all_codes()) {
    if (is_flippable(code)) continue;
    EXPECT_EQ(QVN_E_PARAM5, QVN_Flip(frame.data(), 4, 2, kHorizontal, code)) << code;
    EXPECT_EQ(QVN_E_PARAM5, QVN_Flip(frame.data(), 4, 2, kBoth, code)) << code;
  }
  EXPECT_EQ(before, frame);
  EXPECT_EQ(QVN_E_PARAM4, QVN_Flip(frame.data(), 4, 2, 4, 132));
  EXPECT_EQ(QVN_E_PARAM5, QVN_Flip(frame.data(), 4, 2, 1, 132));
  EXPECT_EQ(QVN_OK, QVN_Flip(frame.data(), 4, 2, 2, 132));
}

TEST(FlipVertical, EqualsReferenceAtEveryLineLength) {
  support::Random random(840);
  for (std::uint32_t line_bytes : support::run_counts()) {
    for (std::uint32_t height : {2U, 3U, 5U, 8U}) {
      support::Arena expected(64, std::size_t{line_bytes} * height, 64);
      expected.fill(random);
      support::Arena actual(expected);
      reference::FlipVertical(expected.data(), line_bytes, height);
      ASSERT_EQ(QVN_OK, QVN_FlipVertical(actual.data(), line_bytes, height));
      ASSERT_TRUE(support::same_bytes("buffer", expected, actual, line_bytes));
    }
  }
}

TEST(FlipVertical, LinesWithoutBytesChangeNothing) {
  support::GuardedBuffer none(1, support::Flush::kEnd);
  for (std::uint32_t height : {2U, 3U, 1000U}) {
    EXPECT_EQ(QVN_OK, QVN_FlipVertical(none.data() + 1, 0, height));
    EXPECT_EQ(QVN_OK, QVN_Flip(none.data() + 1, 0, height, kVertical, kRgb16));
  }
}

TEST(FlipVertical, RefusesInOrder) {
  Bytes frame = {1, 2, 3, 4};
  EXPECT_EQ(QVN_E_PARAM1, QVN_FlipVertical(nullptr, 2, 0));
  EXPECT_EQ(QVN_E_PARAM1, QVN_FlipVertical(nullptr, 2, 2));
  EXPECT_EQ(QVN_E_PARAM3, QVN_FlipVertical(frame.data(), 4, 0));
  EXPECT_EQ(QVN_E_PARAM3, QVN_FlipVertical(frame.data(), 4, 1));
  EXPECT_EQ(QVN_E_PARAM3, QVN_FlipVertical(frame.data(), 0, 1));
  EXPECT_EQ((Bytes{1, 2, 3, 4}), frame);
  EXPECT_EQ(QVN_OK, QVN_FlipVertical(frame.data(), 2, 2));
  EXPECT_EQ((Bytes{3, 4, 1, 2}), frame);
}

}  // namespace
