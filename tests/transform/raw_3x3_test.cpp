/// QVN_Raw8ImageTransform_3x3: against the slow reference over whole arenas, between inaccessible pages,
/// against numbers worked out by hand, and by what tells it from QVN_Raw8ToBGR_3x3.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <vector>

#include "reference/transform_3x3.h"
#include "transform/frame_transforms.h"

namespace {

using support::numbers;
using transforms::Bytes;
using transforms::FrameTransform;

FrameTransform transform_to(std::uint32_t target) {
  constexpr std::size_t kPixelBytes[] = {1, 3, 4, 1};
  return {"Raw8_3x3_" + std::to_string(target),
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern) {
            return QVN_Raw8ImageTransform_3x3(dst, src, width, height, target, pattern);
          },
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern) {
            return reference::Raw8ImageTransform_3x3(dst, src, width, height, target, pattern);
          },
          transforms::Samples::kBytes,
          kPixelBytes[target],
          true};
}

class Raw8Transform3x3 : public testing::TestWithParam<FrameTransform> {};

INSTANTIATE_TEST_SUITE_P(Targets, Raw8Transform3x3,
                         testing::Values(transform_to(0), transform_to(1), transform_to(2), transform_to(3)),
                         transforms::transform_name);

TEST_P(Raw8Transform3x3, EqualsReferenceAtEvenWidths) {
  support::Random random(1);
  for (std::uint32_t width : support::even_widths()) {
    for (std::uint32_t height : numbers(2, 7)) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
  for (std::uint32_t width : {2U, 4U, 16U, 34U, 66U, 130U, 258U}) {
    for (std::uint32_t height : {10U, 31U, 47U, 64U, 70U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

TEST_P(Raw8Transform3x3, EqualsReferenceAtOddWidths) {
  support::Random random(2);
  for (std::uint32_t width : support::frame_widths()) {
    if (width % 2 == 0) continue;
    for (std::uint32_t height : {2U, 3U, 4U, 8U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

TEST_P(Raw8Transform3x3, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 48U}, std::pair{1024U, 34U}, std::pair{1288U, 20U}}) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
    }
  }
}

TEST_P(Raw8Transform3x3, EqualsReferenceOnAVeryWideLine) {
  support::Random random(6);
  ASSERT_TRUE(matches(GetParam(), 70002, 3, 3, random));
}

/// All codes above 3 count as odd row phase.
TEST_P(Raw8Transform3x3, EqualsReferenceInPatternsAboveThree) {
  support::Random random(4);
  for (std::uint32_t width : {2U, 5U, 16U, 34U, 70U}) {
    for (std::uint32_t pattern : {4U, 5U, 6U, 7U, 8U, 9U, 0x80000000U, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
      for (std::uint32_t height : {2U, 3U, 6U}) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

TEST_P(Raw8Transform3x3, NeedsNoAlignment) {
  support::Random random(5);
  for (std::uint32_t width : {4U, 16U, 34U, 66U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        ASSERT_TRUE(matches(GetParam(), width, 5, random.below(4), random, dst_offset, src_offset));
      }
    }
  }
}

TEST_P(Raw8Transform3x3, TouchesNothingOutsideOfItsBuffers) {
  transforms::expect_nothing_touched_outside(GetParam());
}

/// The fourth bytes too: the zeroed first line is copied.
TEST_P(Raw8Transform3x3, HeightTwoIsAllZero) {
  for (std::uint32_t width : {2U, 4U, 70U}) {
    const Bytes zero(GetParam().dst_line(width) * 2, 0);
    for (std::uint32_t pattern : numbers(0, 3)) {
      EXPECT_EQ(zero, transforms::picture(GetParam(), Bytes(std::size_t{2} * width, 200), width, 2, pattern));
    }
  }
}

TEST_P(Raw8Transform3x3, FlatFramesStayFlat) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    for (std::uint32_t pattern : numbers(0, 3)) {
      // The fourth bytes are prefilled with the same value.
      ASSERT_EQ(Bytes(GetParam().dst_line(36) * 4, grey),
                transforms::picture(GetParam(), Bytes(36 * 4, grey), 36, 4, pattern, grey));
    }
  }
}

/// Three lines of four samples: two inner pixels, whose neighbourhoods are
///
///      10  22  35  47          centre 60: corners 10 35 98 113, cross 22 53 68 105
///      53  60  68  79          centre 68: corners 22 47 105 124, cross 35 60 79 113
///      98 105 113 124
const Bytes kTwelve = {10, 22, 35, 47, 53, 60, 68, 79, 98, 105, 113, 124};

Bytes inner_pixels(std::uint32_t target, std::uint32_t pattern) {
  const FrameTransform transform = transform_to(target);
  const Bytes dst = transforms::picture(transform, kTwelve, 4, 3, pattern);
  const auto first = dst.begin() + static_cast<std::ptrdiff_t>(5 * transform.pixel_bytes);
  return {first, first + static_cast<std::ptrdiff_t>(2 * transform.pixel_bytes)};
}

TEST(Raw8ImageTransform_3x3, WorkedNeighbourhoods) {
  // 60: diagonals 64, cross 62, smoothed 63, across 60, along 63. 68: diagonals 74, cross 71, smoothed 72,
  // across 69, along 74.
  EXPECT_EQ((Bytes{60, 62, 64, 69, 72, 74}), inner_pixels(1, 0));  // blue, green on a blue line
  EXPECT_EQ((Bytes{63, 63, 60, 74, 71, 68}), inner_pixels(1, 1));  // green on a red line, red
  EXPECT_EQ((Bytes{60, 63, 63, 68, 71, 74}), inner_pixels(1, 2));  // green on a blue line, blue
  // Red, and a green on a red line: red along and blue across, for the other way about.
  EXPECT_EQ((Bytes{64, 62, 60, 69, 72, 74}), inner_pixels(1, 3));
}

TEST(Raw8ImageTransform_3x3, WorkedLuma) {
  // 150 * 62 + 77 * 64 + 29 * 60 = 15968, 150 * 72 + 77 * 74 + 29 * 69 = 18499.
  EXPECT_EQ((Bytes{62, 72}), inner_pixels(0, 0));
  // 184 * 62 + 18 * (192 + 60) + 128 = 16072, 184 * 72 + 18 * (222 + 69) + 128 = 18614.
  EXPECT_EQ((Bytes{62, 72}), inner_pixels(3, 0));
  // A red site: red alone is 200, with the rest at 40. Its neighbour to the right, a green on its line, has
  // red along, 40, and blue across, 120: 6000 + 3080 + 3480 = 12560, and not 6000 + 9240 + 1160 = 16400.
  const Bytes src = {40, 40, 40, 40, 40, 200, 40, 40, 40, 40, 40, 40};
  const Bytes luma = transforms::picture(transform_to(0), src, 4, 3, 3);
  EXPECT_EQ(88, luma[5]);  // 6000 + 15400 + 1160 = 22560
  EXPECT_EQ(49, luma[6]);
  // 184 * 40 + 18 * (120 + 120) + 128 = 11808.
  EXPECT_EQ(46, transforms::picture(transform_to(3), src, 4, 3, 3)[6]);
}

Bytes random_frame(std::size_t count, std::uint64_t stream) {
  support::Random random(stream);
  Bytes frame(count);
  random.fill(frame.data(), count);
  return frame;
}

TEST(Raw8ImageTransform_3x3, BgrIsThePlainDemosaicInEvenColumnPhase) {
  const Bytes src = random_frame(38 * 9, 601);
  for (std::uint32_t pattern : {0U, 1U}) {
    Bytes plain(3 * src.size());
    QVN_Raw8ToBGR_3x3(plain.data(), src.data(), 38, 9, pattern);
    EXPECT_EQ(plain, transforms::picture(transform_to(1), src, 38, 9, pattern));
  }
}

/// In odd column phase the greens of red lines have red and blue exchanged: on the inner lines 2, 4, 6 and so
/// on of internal code 1, which is public code 2, and 1, 3, 5 and so on of code 3, at the inner columns of
/// the other parity. What is copied to the border repeats it.
TEST(Raw8ImageTransform_3x3, GreensOfRedLinesAreExchangedInOddColumnPhase) {
  constexpr std::size_t kWidth = 38;
  for (std::size_t height : {8U, 9U}) {
    const Bytes src = random_frame(kWidth * height, 602);
    for (std::uint32_t pattern : {2U, 3U}) {
      Bytes expected(3 * src.size());
      const auto lines = static_cast<std::uint32_t>(height);
      QVN_Raw8ToBGR_3x3(expected.data(), src.data(), kWidth, lines, pattern);
      for (std::size_t y = 0; y < height; ++y) {
        const std::size_t inner_y = std::clamp(y, std::size_t{1}, height - 2);
        if (inner_y % 2 != (pattern == 2 ? 0 : 1)) continue;
        for (std::size_t x = 0; x < kWidth; ++x) {
          const std::size_t inner_x = std::clamp(x, std::size_t{1}, kWidth - 2);
          // Red lines are R G R G from an odd column on.
          if (inner_x % 2 != 0) continue;
          std::swap(expected[(y * kWidth + x) * 3], expected[(y * kWidth + x) * 3 + 2]);
        }
      }
      EXPECT_EQ(expected, transforms::picture(transform_to(1), src, kWidth, lines, pattern))
          << "height " << height << ", pattern " << pattern;
    }
  }
}

/// Crops that keep the column phase agree inside their borders; by an odd column, greens of red lines differ.
TEST(Raw8ImageTransform_3x3, CropsByEvenColumnsAgree) {
  constexpr std::uint32_t kWidth = 90;
  constexpr std::uint32_t kHeight = 16;
  constexpr std::uint32_t kCropWidth = 70;
  constexpr std::uint32_t kCropHeight = 9;
  const Bytes frame = random_frame(kWidth * kHeight, 603);
  for (std::uint32_t target : numbers(0, 3)) {
    const FrameTransform transform = transform_to(target);
    const std::size_t pixel = transform.pixel_bytes;
    for (std::uint32_t internal : numbers(0, 3)) {
      const Bytes whole =
          transforms::picture(transform, frame, kWidth, kHeight, reference::public_to_internal(internal));
      for (std::uint32_t top : numbers(0, 3)) {
        for (std::uint32_t left = 0; left <= 12; left += 2) {
          const Bytes crop = transforms::crop_of(frame, 1, kWidth, left, top, kCropWidth, kCropHeight);
          const Bytes small = transforms::picture(transform, crop, kCropWidth, kCropHeight,
                                                  reference::public_to_internal(internal ^ ((top & 1) << 1)));
          for (std::uint32_t y = 1; y + 1 < kCropHeight; ++y) {
            ASSERT_EQ(0, std::memcmp(&whole[((top + y) * kWidth + left + 1) * pixel],
                                     &small[(y * kCropWidth + 1) * pixel], (kCropWidth - 2) * pixel))
                << "target " << target << ", internal code " << internal << ", crop at line " << top
                << ", column " << left << ", line " << y;
          }
        }
      }
    }
  }
}

TEST(Raw8ImageTransform_3x3, ACropByOneColumnIsNoShift) {
  const Bytes frame = random_frame(36 * 8, 604);
  const Bytes whole = transforms::picture(transform_to(1), frame, 36, 8, 0);
  const Bytes small =
      transforms::picture(transform_to(1), transforms::crop_of(frame, 1, 36, 1, 0, 34, 8), 34, 8, 2);
  // Line 2 is a red line: its red sites agree, its greens have red and blue the other way about.
  for (std::size_t x = 1; x < 33; ++x) {
    const std::uint8_t* const a = &whole[(2 * 36 + x + 1) * 3];
    const std::uint8_t* const b = &small[(2 * 34 + x) * 3];
    const bool green = x % 2 == 0;
    EXPECT_EQ(a[0], b[green ? 2 : 0]);
    EXPECT_EQ(a[1], b[1]);
    EXPECT_EQ(a[2], b[green ? 0 : 2]);
  }
}

}  // namespace
