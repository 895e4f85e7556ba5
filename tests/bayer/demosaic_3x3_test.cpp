/// QVN_Raw8ToBGR_3x3: against the slow reference over whole arenas, between inaccessible pages, against
/// numbers worked out by hand, and by properties of the neighbourhood.
#include "reference/demosaic_3x3.h"

#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <cstring>
#include <vector>

#include "reference/pattern.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

/// All codes above 3 count as odd row phase.
constexpr std::uint32_t kPatterns[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF};

testing::AssertionResult matches(std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
                                 support::Random& random, std::size_t dst_offset = 0,
                                 std::size_t src_offset = 0) {
  // Odd widths write up to height pixels too many, and read as many samples behind the frame.
  auto same = support::same_effect(
      support::Room{.size = std::size_t{3} * width * height,
                    .line_bytes = std::size_t{3} * width,
                    .before = 64 + dst_offset,
                    .behind = std::size_t{3} * height + 64},
      support::Room{.size = std::size_t{width} * height,
                    .line_bytes = width,
                    .before = 64 + src_offset,
                    .behind = std::size_t{height} + 64},
      random,
      [&](std::uint8_t* dst, const std::uint8_t* src) {
        return QVN_Raw8ToBGR_3x3(dst, src, width, height, pattern);
      },
      [&](std::uint8_t* dst, const std::uint8_t* src) {
        reference::Raw8ToBGR_3x3(dst, src, width, height, reference::public_to_internal(pattern));
      });
  if (same) return same;
  return same << "; width " << width << ", height " << height << ", pattern " << pattern << ", offsets "
              << dst_offset << " and " << src_offset;
}

Bytes picture(const Bytes& src, std::uint32_t width, std::uint32_t height, std::uint32_t pattern) {
  Bytes dst(std::size_t{3} * width * height, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_Raw8ToBGR_3x3(dst.data(), src.data(), width, height, pattern));
  return dst;
}

TEST(Raw8ToBGR_3x3, EqualsReferenceAtEvenWidths) {
  support::Random random(1);
  for (std::uint32_t width : support::even_widths()) {
    for (std::uint32_t height : numbers(2, 9)) {
      for (std::uint32_t pattern : kPatterns) ASSERT_TRUE(matches(width, height, pattern, random));
    }
  }
  for (std::uint32_t width : {2U, 4U, 16U, 34U, 66U, 130U, 258U}) {
    for (std::uint32_t height : {10U, 16U, 31U, 47U, 64U, 69U, 70U}) {
      for (std::uint32_t pattern : numbers(0, 7)) ASSERT_TRUE(matches(width, height, pattern, random));
    }
  }
}

TEST(Raw8ToBGR_3x3, EqualsReferenceAtOddWidths) {
  support::Random random(2);
  for (std::uint32_t width : support::frame_widths()) {
    if (width % 2 == 0) continue;
    for (std::uint32_t height : {2U, 3U, 4U, 5U, 8U, 33U}) {
      for (std::uint32_t pattern : numbers(0, 5)) ASSERT_TRUE(matches(width, height, pattern, random));
    }
  }
}

TEST(Raw8ToBGR_3x3, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 480U}, std::pair{1024U, 34U}, std::pair{1288U, 20U}}) {
    for (std::uint32_t pattern : numbers(0, 3)) ASSERT_TRUE(matches(width, height, pattern, random));
  }
}

TEST(Raw8ToBGR_3x3, NeedsNoAlignment) {
  support::Random random(4);
  for (std::uint32_t width : {4U, 6U, 16U, 34U, 66U, 130U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        for (std::uint32_t pattern : numbers(0, 3)) {
          ASSERT_TRUE(matches(width, 5, pattern, random, dst_offset, src_offset));
        }
      }
    }
  }
}

TEST(Raw8ToBGR_3x3, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(5);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : support::even_widths()) {
      for (std::uint32_t height : {2U, 3U, 4U, 7U}) {
        support::GuardedBuffer src(std::size_t{width} * height, flush);
        support::GuardedBuffer dst(std::size_t{3} * width * height, flush);
        random.fill(src.data(), src.size());
        for (std::uint32_t pattern : numbers(0, 3)) {
          Bytes expected(dst.data(), dst.data() + dst.size());
          reference::Raw8ToBGR_3x3(expected.data(), src.data(), width, height,
                                   reference::public_to_internal(pattern));
          ASSERT_EQ(QVN_OK, QVN_Raw8ToBGR_3x3(dst.data(), src.data(), width, height, pattern));
          ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
              << "width " << width << ", height " << height << ", pattern " << pattern;
        }
      }
    }
  }
}

TEST(Raw8ToBGR_3x3, HeightTwoIsBlack) {
  for (std::uint32_t width : {2U, 4U, 70U}) {
    const Bytes black(std::size_t{6} * width, 0);
    for (std::uint32_t pattern : numbers(0, 3)) {
      EXPECT_EQ(black, picture(Bytes(std::size_t{2} * width, 200), width, 2, pattern));
    }
  }
}

TEST(Raw8ToBGR_3x3, WidthTwoRepeatsWhatColumnZeroHeld) {
  const Bytes src(8, 200);
  Bytes dst(24);
  for (std::size_t i = 0; i < dst.size(); ++i) dst[i] = static_cast<std::uint8_t>(i);
  EXPECT_EQ(QVN_OK, QVN_Raw8ToBGR_3x3(dst.data(), src.data(), 2, 4, 0));
  EXPECT_EQ((Bytes{6, 7, 8, 6, 7, 8, 6, 7, 8, 6, 7, 8, 12, 13, 14, 12, 13, 14, 12, 13, 14, 12, 13, 14}), dst);
}

TEST(Raw8ToBGR_3x3, BordersRepeatTheirNeighbours) {
  support::Random random(6);
  constexpr std::size_t kWidth = 38;
  constexpr std::size_t kHeight = 9;
  Bytes src(kWidth * kHeight);
  random.fill(src.data(), src.size());
  for (std::uint32_t pattern : numbers(0, 3)) {
    const Bytes dst = picture(src, kWidth, kHeight, pattern);
    const std::size_t line = 3 * kWidth;
    EXPECT_EQ(0, std::memcmp(&dst[0], &dst[line], line));
    EXPECT_EQ(0, std::memcmp(&dst[(kHeight - 1) * line], &dst[(kHeight - 2) * line], line));
    for (std::size_t y = 0; y < kHeight; ++y) {
      EXPECT_EQ(0, std::memcmp(&dst[y * line], &dst[y * line + 3], 3));
      EXPECT_EQ(0, std::memcmp(&dst[(y + 1) * line - 3], &dst[(y + 1) * line - 6], 3));
    }
  }
}

TEST(Raw8ToBGR_3x3, FlatFramesStayFlat) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_EQ(Bytes(3 * 36 * 4, grey), picture(Bytes(36 * 4, grey), 36, 4, pattern));
    }
  }
}

/// Inside its border the picture of a crop is the crop of the picture, whatever the crop does to the pattern.
TEST(Raw8ToBGR_3x3, CropsAndOrdersAgree) {
  constexpr std::uint32_t kWidth = 150;
  constexpr std::uint32_t kHeight = 20;
  constexpr std::uint32_t kCropWidth = 70;
  constexpr std::uint32_t kCropHeight = 9;
  support::Random random(7);
  Bytes frame(kWidth * kHeight);
  random.fill(frame.data(), frame.size());
  const Bytes whole = picture(frame, kWidth, kHeight, 0);
  for (std::uint32_t top : numbers(0, 5)) {
    for (std::uint32_t left : numbers(0, 40)) {
      Bytes crop;
      for (std::uint32_t y = 0; y < kCropHeight; ++y) {
        const std::uint8_t* line = &frame[(top + y) * kWidth + left];
        crop.insert(crop.end(), line, line + kCropWidth);
      }
      const std::uint32_t internal = (left & 1) + 2 * (top & 1);
      const Bytes small = picture(crop, kCropWidth, kCropHeight, reference::public_to_internal(internal));
      for (std::uint32_t y = 1; y + 1 < kCropHeight; ++y) {
        ASSERT_EQ(0, std::memcmp(&whole[std::size_t{3} * ((top + y) * kWidth + left + 1)],
                                 &small[std::size_t{3} * (y * kCropWidth + 1)], (kCropWidth - 2) * 3))
            << "crop at line " << top << ", column " << left << ", differs in its line " << y;
      }
    }
  }
}

TEST(Raw8ToBGR_3x3, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(64);
  EXPECT_EQ(QVN_E_PARAM1, QVN_Raw8ToBGR_3x3(nullptr, nullptr, 4, 4, 0));
  EXPECT_EQ(QVN_E_PARAM1, QVN_Raw8ToBGR_3x3(nullptr, bytes.data(), 4, 4, 0));
  EXPECT_EQ(QVN_E_PARAM2, QVN_Raw8ToBGR_3x3(bytes.data(), nullptr, 4, 4, 0));
  EXPECT_EQ(Bytes(64), bytes);
}

/// Three lines of four samples: two inner pixels, whose neighbourhoods are
///
///      10  22  35  47          centre 60: corners 10 35 98 113, cross 22 53 68 105
///      53  60  68  79          centre 68: corners 22 47 105 124, cross 35 60 79 113
///      98 105 113 124
const Bytes kTwelve = {10, 22, 35, 47, 53, 60, 68, 79, 98, 105, 113, 124};

Bytes inner_pixels(std::uint32_t pattern) {
  const Bytes dst = picture(kTwelve, 4, 3, pattern);
  return {dst[15], dst[16], dst[17], dst[18], dst[19], dst[20]};
}

TEST(Raw8ToBGR_3x3, WorkedNeighbourhoods) {
  // 60: diagonals 256 >> 2 = 64, cross 248 >> 2 = 62, smoothed (120 + 98 + 35) >> 2 = 63, across
  // (53 + 68) >> 1 = 60, along (22 + 105) >> 1 = 63.
  // 68: diagonals 298 >> 2 = 74, cross 287 >> 2 = 71, smoothed (136 + 105 + 47) >> 2 = 72, across
  // (60 + 79) >> 1 = 69, along (35 + 113) >> 1 = 74.
  EXPECT_EQ((Bytes{60, 62, 64, 69, 72, 74}), inner_pixels(0));  // blue, green on a blue line
  EXPECT_EQ((Bytes{63, 63, 60, 74, 71, 68}), inner_pixels(1));  // green on a red line, red
  EXPECT_EQ((Bytes{60, 63, 63, 68, 71, 74}), inner_pixels(2));  // green on a blue line, blue
  EXPECT_EQ((Bytes{64, 62, 60, 74, 72, 69}), inner_pixels(3));  // red, green on a red line
}

TEST(Raw8ToBGR_3x3, PatternsAboveThreeHaveOddRowPhase) {
  for (std::uint32_t even : {4U, 6U, 8U, 0xFFFFFFFEU}) EXPECT_EQ(inner_pixels(1), inner_pixels(even));
  for (std::uint32_t odd : {5U, 7U, 9U, 0xFFFFFFFFU}) EXPECT_EQ(inner_pixels(3), inner_pixels(odd));
}

TEST(Raw8ToBGR_3x3, GreenIsSmoothedAlongOneDiagonalOnly) {
  // A green site in the middle of the second column of public pattern 2: north-west and south-east do not
  // count.
  Bytes src = kTwelve;
  const Bytes before = picture(src, 4, 3, 2);
  src[0] = 255;
  src[10] = 255;
  const Bytes after = picture(src, 4, 3, 2);
  EXPECT_EQ(before[16], after[16]);
  src[2] = 255;
  EXPECT_NE(before[16], picture(src, 4, 3, 2)[16]);
}

}  // namespace
