/// QVN_Raw8ToBGR, QVN_Raw8ToBGR_mono, QVN_Raw8ToY8 and QVN_Raw16ToBGR: against the slow reference over whole
/// arenas, between inaccessible pages, and by properties of the window.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>
#include <ostream>
#include <string>
#include <vector>

#include "reference/demosaic_2x2.h"
#include "support/arena.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;
using Library = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                  std::uint32_t);
using Reference = void (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t);

struct Entry {
  const char* name;
  Library library;
  Reference reference;
  std::uint32_t bytes_out;  ///< bytes a pixel
  std::uint32_t bytes_in;   ///< bytes a sample
  bool drifts;              ///< an odd width writes width + 1 pixels a line
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

constexpr std::array<Entry, 4> kEntries = {{
    {"Raw8ToBGR", QVN_Raw8ToBGR, reference::Raw8ToBGR, 3, 1, true},
    {"Raw8ToBGR_mono", QVN_Raw8ToBGR_mono, reference::Raw8ToBGR_mono, 3, 1, false},
    {"Raw8ToY8", QVN_Raw8ToY8, reference::Raw8ToY8, 1, 1, false},
    {"Raw16ToBGR", QVN_Raw16ToBGR, reference::Raw16ToBGR, 3, 2, false},
}};

/// Codes above 3 go to the kernel as they are; the row bound grows with them and does not wrap.
constexpr std::uint32_t kPatterns[] = {0, 1, 2, 3, 4, 5, 6, 7, 9, 0x7FFFFFFD, 0xFFFFFFFE, 0xFFFFFFFF};

class Demosaic2x2 : public testing::TestWithParam<Entry> {
 protected:
  std::size_t dst_size(std::uint32_t width, std::uint32_t height) const {
    return std::size_t{GetParam().bytes_out} * width * height;
  }
  std::size_t src_size(std::uint32_t width, std::uint32_t height) const {
    return std::size_t{GetParam().bytes_in} * width * height;
  }

  /// The picture of a frame of one byte a sample; 16-bit entries get each sample with a second byte.
  Bytes picture(const Bytes& samples, std::uint32_t width, std::uint32_t height,
                std::uint32_t pattern) const {
    Bytes src;
    for (std::uint8_t sample : samples) {
      src.push_back(sample);
      if (GetParam().bytes_in == 2) src.push_back(static_cast<std::uint8_t>(~sample));
    }
    Bytes dst(dst_size(width, height), 0xA5);
    EXPECT_EQ(QVN_OK, GetParam().library(dst.data(), src.data(), width, height, pattern));
    return dst;
  }

  /// Compares with the reference. `dst_offset` and `src_offset` shift the frames off their alignment.
  testing::AssertionResult matches(std::uint32_t width, std::uint32_t height, std::uint32_t pattern,
                                   support::Random& random, std::size_t dst_offset = 0,
                                   std::size_t src_offset = 0) const {
    const Entry& entry = GetParam();
    // A line of room before and behind the frame for the copy of heights 1 and 0, and more behind it for the
    // drift of odd widths; the walk of a drifting line reads one sample behind the source.
    const std::size_t line = std::size_t{entry.bytes_out} * width;
    const support::Room dst{.size = dst_size(width, height),
                            .line_bytes = line,
                            .before = (line + 127) / 64 * 64 + dst_offset,
                            .behind = line + std::size_t{3} * height + 64};
    const support::Room src{.size = src_size(width, height),
                            .line_bytes = std::size_t{entry.bytes_in} * width,
                            .before = 64 + src_offset};
    auto same = support::same_effect(
        dst, src, random,
        [&](std::uint8_t* out, const std::uint8_t* in) {
          return entry.library(out, in, width, height, pattern);
        },
        [&](std::uint8_t* out, const std::uint8_t* in) {
          entry.reference(out, in, width, height, reference::public_to_internal(pattern));
        });
    if (same) return same;
    return same << "; width " << width << ", height " << height << ", pattern " << pattern << ", offsets "
                << dst_offset << " and " << src_offset;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, Demosaic2x2, testing::ValuesIn(kEntries),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(Demosaic2x2, EqualsReferenceAtSmallHeights) {
  support::Random random(1);
  for (std::uint32_t width : support::frame_widths()) {
    for (std::uint32_t height : numbers(2, 9)) {
      for (std::uint32_t pattern : kPatterns) ASSERT_TRUE(matches(width, height, pattern, random));
    }
  }
}

TEST_P(Demosaic2x2, EqualsReferenceAtLargerHeights) {
  support::Random random(2);
  for (std::uint32_t width : {2U, 3U, 4U, 15U, 16U, 17U, 33U, 34U, 66U, 70U, 130U, 258U}) {
    for (std::uint32_t height : {10U, 16U, 31U, 47U, 64U, 69U, 70U}) {
      for (std::uint32_t pattern : numbers(0, 7)) ASSERT_TRUE(matches(width, height, pattern, random));
    }
  }
}

TEST_P(Demosaic2x2, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 480U}, std::pair{1024U, 34U}, std::pair{1288U, 20U}}) {
    for (std::uint32_t pattern : numbers(0, 3)) ASSERT_TRUE(matches(width, height, pattern, random));
  }
}

TEST_P(Demosaic2x2, NeedsNoAlignment) {
  support::Random random(4);
  for (std::uint32_t width : {2U, 6U, 16U, 34U, 66U, 130U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        for (std::uint32_t pattern : numbers(0, 3)) {
          ASSERT_TRUE(matches(width, 4, pattern, random, dst_offset, src_offset));
        }
      }
    }
  }
}

TEST_P(Demosaic2x2, HeightOneCopiesTheLineBeforeTheDestination) {
  support::Random random(5);
  for (std::uint32_t width : support::frame_widths()) {
    for (std::uint32_t pattern : kPatterns) ASSERT_TRUE(matches(width, 1, pattern, random));
  }
  Bytes dst(GetParam().bytes_out * 8U);
  std::iota(dst.begin(), dst.end(), std::uint8_t{1});
  const Bytes src(8, 0xEE);
  const auto line = static_cast<std::ptrdiff_t>(dst.size() / 2);
  ASSERT_EQ(QVN_OK, GetParam().library(dst.data() + line, src.data(), 4, 1, 0));
  EXPECT_TRUE(std::equal(dst.begin(), dst.begin() + line, dst.begin() + line));
  EXPECT_EQ(1, dst[0]);
  EXPECT_EQ(line, dst[static_cast<std::size_t>(line) - 1]);
}

/// Row phases above 0 bring the line bound of a height of 0 below the first line; without a row phase it
/// wraps, and the walk runs away.
TEST_P(Demosaic2x2, HeightZeroWithARowPhaseCopiesToo) {
  support::Random random(9);
  for (std::uint32_t width : {2U, 3U, 16U, 70U}) {
    for (std::uint32_t pattern : kPatterns) {
      if (reference::public_to_internal(pattern) >> 1 == 0) continue;
      ASSERT_TRUE(matches(width, 0, pattern, random));
    }
  }
}

TEST_P(Demosaic2x2, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(6);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : support::frame_widths()) {
      if (width % 2 != 0 && GetParam().drifts) continue;
      for (std::uint32_t height : {2U, 3U, 5U}) {
        support::GuardedBuffer src(src_size(width, height), flush);
        support::GuardedBuffer dst(dst_size(width, height), flush);
        Bytes expected(dst.size());
        random.fill(src.data(), src.size());
        for (std::uint32_t pattern : numbers(0, 3)) {
          ASSERT_EQ(QVN_OK, GetParam().library(dst.data(), src.data(), width, height, pattern));
          GetParam().reference(expected.data(), src.data(), width, height,
                               reference::public_to_internal(pattern));
          ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
              << "width " << width << ", height " << height << ", pattern " << pattern;
        }
      }
    }
  }
}

TEST_P(Demosaic2x2, FlatFramesStayFlat) {
  for (std::uint32_t value = 0; value < 256; ++value) {
    constexpr std::uint32_t kWidth = 38;
    constexpr std::uint32_t kHeight = 4;
    const auto grey = static_cast<std::uint8_t>(value);
    const bool black_end = GetParam().bytes_in == 2;
    for (std::uint32_t pattern : numbers(0, 3)) {
      const Bytes dst = picture(Bytes(kWidth * kHeight, grey), kWidth, kHeight, pattern);
      for (std::size_t i = 0; i < dst.size(); ++i) {
        const bool last_column = i / GetParam().bytes_out % kWidth == kWidth - 1;
        ASSERT_EQ(black_end && last_column ? 0 : grey, dst[i]) << "byte " << i;
      }
    }
  }
}

/// Where the window lies decides, not where the frame begins: the picture of a crop is the crop of the
/// picture, if the pattern is taken over, and so all four orders of a mosaic agree.
TEST_P(Demosaic2x2, CropsAndOrdersAgree) {
  constexpr std::uint32_t kWidth = 150;
  constexpr std::uint32_t kHeight = 20;
  constexpr std::uint32_t kCropWidth = 70;
  constexpr std::uint32_t kCropHeight = 9;
  const std::uint32_t pixel = GetParam().bytes_out;
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
      for (std::uint32_t y = 0; y + 1 < kCropHeight; ++y) {
        ASSERT_EQ(0, std::memcmp(&whole[((top + y) * kWidth + left) * pixel], &small[y * kCropWidth * pixel],
                                 (kCropWidth - 1) * pixel))
            << "crop at line " << top << ", column " << left << ", differs in its line " << y;
      }
    }
  }
}

TEST_P(Demosaic2x2, LastLineIsACopyOfTheLineAbove) {
  support::Random random(8);
  for (std::uint32_t height : {2U, 3U, 8U}) {
    Bytes frame(34 * height);
    random.fill(frame.data(), frame.size());
    for (std::uint32_t pattern : numbers(0, 3)) {
      const Bytes dst = picture(frame, 34, height, pattern);
      const std::size_t line = std::size_t{34} * GetParam().bytes_out;
      EXPECT_EQ(0, std::memcmp(&dst[(height - 1) * line], &dst[(height - 2) * line], line));
    }
  }
}

TEST_P(Demosaic2x2, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(64);
  const Bytes before = bytes;
  EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, 4, 4, 0));
  EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), 4, 4, 0));
  EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 4, 4, 0));
  EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, 4, 4, 1000));
  EXPECT_EQ(before, bytes);
}

}  // namespace
