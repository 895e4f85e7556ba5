/// QVN_Raw8ImageTransform, QVN_Raw12ImageTransform, QVN_Raw16ImageTransform and QVN_Raw16ImageTransformEx in
/// every output: against the slow reference over whole arenas, and between inaccessible pages.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <vector>

#include "reference/transform_2x2.h"
#include "reference/transform_raw16_ex.h"
#include "transform/frame_transforms.h"

namespace {

using support::numbers;
using transforms::FrameTransform;
using transforms::Samples;

/// Codes above 3 go to the kernel as they are; the row bound grows with them and does not wrap.
constexpr std::uint32_t kHighPatterns[] = {4, 5, 6, 7, 9, 0x7FFFFFFD, 0xFFFFFFFE, 0xFFFFFFFF};

constexpr std::uint32_t kPixelBytes[] = {1, 3, 4, 1, 2, 2, 2, 6};

/// Raw8, Raw12 or Raw16 with a target.
template <typename Library, typename Reference>
FrameTransform plain(const char* name, Library library, Reference reference, std::uint32_t target,
                     Samples samples) {
  return {std::string(name) + "_" + std::to_string(target),
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern) { return library(dst, src, width, height, target, pattern); },
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern) { return reference(dst, src, width, height, target, pattern); },
          samples,
          kPixelBytes[target],
          samples != Samples::kWords};
}

/// Alignment 0 for 0 bits, else alignment 1.
FrameTransform extended(std::uint32_t target, std::uint32_t order, std::uint32_t bits) {
  const reference::SampleFormat format = {bits == 0 ? 0U : 1U, bits, order};
  return {"Raw16Ex_" + std::to_string(target) + "_" + std::to_string(order) + "_" + std::to_string(bits),
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern) {
            const SampleFormatBlock block = {0xDEADBEEF, format.alignment, bits, order, pattern};
            return QVN_Raw16ImageTransformEx(dst, src, width, height, target, &block);
          },
          [=](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern) {
            return reference::Raw16ImageTransformEx(dst, src, width, height, target, format, pattern);
          },
          Samples::kWords, kPixelBytes[target]};
}

std::vector<FrameTransform> plain_transforms() {
  std::vector<FrameTransform> all;
  for (std::uint32_t target : numbers(0, 4)) {
    all.push_back(
        plain("Raw8", QVN_Raw8ImageTransform, reference::Raw8ImageTransform, target, Samples::kBytes));
  }
  for (std::uint32_t target : numbers(0, 3)) {
    all.push_back(
        plain("Raw12", QVN_Raw12ImageTransform, reference::Raw12ImageTransform, target, Samples::kPacked12));
    all.push_back(
        plain("Raw16", QVN_Raw16ImageTransform, reference::Raw16ImageTransform, target, Samples::kWords));
  }
  for (std::uint32_t target : {0U, 1U, 2U, 3U, 5U, 6U, 7U}) {
    all.push_back(extended(target, 0, 14));
    all.push_back(extended(target, 1, 0));
  }
  return all;
}

std::vector<FrameTransform> extended_transforms() {
  std::vector<FrameTransform> all;
  for (std::uint32_t target : {0U, 1U, 2U, 3U, 5U, 6U, 7U}) {
    for (std::uint32_t order : {0U, 1U}) {
      for (std::uint32_t bits : {0U, 16U, 15U, 14U, 13U, 12U, 10U}) {
        all.push_back(extended(target, order, bits));
      }
    }
  }
  return all;
}

class RawTransform : public testing::TestWithParam<FrameTransform> {};

INSTANTIATE_TEST_SUITE_P(Entries, RawTransform, testing::ValuesIn(plain_transforms()),
                         transforms::transform_name);

TEST_P(RawTransform, EqualsReferenceAtSmallHeights) {
  support::Random random(1);
  for (std::uint32_t width : support::frame_widths()) {
    for (std::uint32_t height : {2U, 3U, 4U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

TEST_P(RawTransform, EqualsReferenceAtLargerHeights) {
  support::Random random(2);
  for (std::uint32_t width : {2U, 3U, 4U, 17U, 34U, 66U, 70U, 130U, 258U}) {
    for (std::uint32_t height : {5U, 8U, 9U, 31U, 70U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

TEST_P(RawTransform, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 48U}, std::pair{1024U, 34U}, std::pair{1288U, 20U}}) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
    }
  }
}

/// Wider than 16 bits count, and odd where that is good.
TEST_P(RawTransform, EqualsReferenceOnAVeryWideLine) {
  support::Random random(7);
  ASSERT_TRUE(matches(GetParam(), GetParam().drifts ? 70002 : 70003, 2, 3, random));
}

TEST_P(RawTransform, EqualsReferenceInPatternsAboveThree) {
  support::Random random(4);
  for (std::uint32_t width : {2U, 3U, 16U, 33U, 70U}) {
    for (std::uint32_t height : {1U, 2U, 5U}) {
      for (std::uint32_t pattern : kHighPatterns) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

/// 16-bit words at odd addresses among them.
TEST_P(RawTransform, NeedsNoAlignment) {
  support::Random random(5);
  for (std::uint32_t width : {2U, 16U, 34U, 66U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        const std::uint32_t pattern = random.below(4);
        ASSERT_TRUE(matches(GetParam(), width, 3, pattern, random, dst_offset, src_offset));
      }
    }
  }
}

/// Row phases above 0 bring the line bound of a height of 0 below the first line; without a row phase it
/// wraps, and the walk runs away.
TEST_P(RawTransform, HeightsWithoutALineCopyFromBeforeTheDestination) {
  support::Random random(6);
  for (std::uint32_t width : {2U, 3U, 8U, 16U, 33U, 70U, 258U}) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_TRUE(matches(GetParam(), width, 1, pattern, random));
      if (reference::public_to_internal(pattern) >> 1 == 0) continue;
      ASSERT_TRUE(matches(GetParam(), width, 0, pattern, random));
    }
  }
}

TEST_P(RawTransform, TouchesNothingOutsideOfItsBuffers) {
  transforms::expect_nothing_touched_outside(GetParam());
}

class Raw16Formats : public testing::TestWithParam<FrameTransform> {};

INSTANTIATE_TEST_SUITE_P(Entries, Raw16Formats, testing::ValuesIn(extended_transforms()),
                         transforms::transform_name);

TEST_P(Raw16Formats, EqualsReference) {
  support::Random random(11);
  for (std::uint32_t width : numbers(2, 70)) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_TRUE(matches(GetParam(), width, 2 + pattern % 2, pattern, random));
    }
  }
  for (std::uint32_t width : {255U, 256U, 257U, 258U, 511U, 514U}) {
    ASSERT_TRUE(matches(GetParam(), width, 6, random.below(4), random));
  }
}

TEST_P(Raw16Formats, NeedsNoAlignment) {
  support::Random random(12);
  for (std::size_t dst_offset : {0U, 1U, 2U, 3U}) {
    for (std::size_t src_offset : {0U, 1U, 2U, 3U}) {
      for (std::uint32_t width : {5U, 32U, 67U, 130U}) {
        ASSERT_TRUE(matches(GetParam(), width, 3, random.below(4), random, dst_offset, src_offset));
      }
    }
  }
}

/// Every sample in each of the four places of a window, as red, as blue and as either green.
TEST_P(Raw16Formats, EqualsReferenceForEverySample) {
  constexpr std::uint32_t kWidth = 512;
  constexpr std::uint32_t kHeight = 130;
  transforms::Bytes src(GetParam().src_line(kWidth) * kHeight);
  for (std::size_t i = 0; i < src.size() / 2; ++i) {
    // The factor is odd, so that every value comes once in 65,536, and neighbours are far apart.
    const auto sample = static_cast<std::uint16_t>(i * 40503);
    src[2 * i] = static_cast<std::uint8_t>(sample >> 8);
    src[2 * i + 1] = static_cast<std::uint8_t>(sample);
  }
  for (std::uint32_t pattern : numbers(0, 3)) {
    transforms::Bytes expected(GetParam().dst_line(kWidth) * kHeight, 0xA5);
    ASSERT_TRUE(GetParam().reference(expected.data(), src.data(), kWidth, kHeight,
                                     reference::public_to_internal(pattern)));
    ASSERT_TRUE(expected == transforms::picture(GetParam(), src, kWidth, kHeight, pattern));
  }
}

}  // namespace
