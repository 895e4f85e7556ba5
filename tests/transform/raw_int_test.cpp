/// QVN_Raw8ImageTransform_IntYUV422, QVN_Raw8ImageTransform_IntLCAA and QVN_Raw8ImageTransform_IntLCAAV:
/// against the slow reference over whole arenas of both buffers, between inaccessible pages, against numbers
/// worked out by hand, and against the demosaics with a fixed output.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "reference/pattern.h"
#include "reference/transform_int.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kPixelBytes[] = {1, 3, 4, 1};

struct Family {
  const char* name;
  std::uint32_t (*library)(std::uint8_t*, std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t,
                           std::uint32_t);
  bool (*reference)(std::uint8_t*, std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t);
  std::uint32_t (*to_bgr)(std::uint8_t*, std::uint8_t*, std::uint32_t, std::uint32_t, std::uint32_t);
  std::uint32_t smallest_height;
  std::uint32_t least_pairs;  ///< in a half frame
};

constexpr std::array<Family, 3> kFamilies = {{
    {"IntYUV422", QVN_Raw8ImageTransform_IntYUV422, reference::Raw8ImageTransform_IntYUV422,
     QVN_Raw8ToBGR_IntYUV422, 2, 1},
    {"IntLCAA", QVN_Raw8ImageTransform_IntLCAA, reference::Raw8ImageTransform_IntLCAA, QVN_Raw8ToBGR_IntLCAA,
     2, 3},
    {"IntLCAAV", QVN_Raw8ImageTransform_IntLCAAV, reference::Raw8ImageTransform_IntLCAAV,
     QVN_Raw8ToBGR_IntLCAAV, 4, 2},
}};

struct Entry {
  Family family;
  std::uint32_t target;
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.family.name << " to " << entry.target; }

std::vector<Entry> all_entries() {
  std::vector<Entry> all;
  for (const Family& family : kFamilies) {
    for (std::uint32_t target : numbers(0, 3)) all.push_back({family, target});
  }
  return all;
}

testing::AssertionResult matches(const Entry& entry, std::uint32_t width, std::uint32_t height,
                                 std::uint32_t pattern, support::Random& random, std::size_t dst_offset = 0,
                                 std::size_t src_offset = 0) {
  const std::size_t line = kPixelBytes[entry.target] * width;
  auto same = support::same_effect(
      support::Room{.size = line * height, .line_bytes = line, .before = 64 + dst_offset},
      support::Room{.size = std::size_t{width} * height, .line_bytes = width, .before = 64 + src_offset},
      random,
      [&](std::uint8_t* dst, std::uint8_t* src) {
        return entry.family.library(dst, src, width, height, entry.target, pattern);
      },
      [&](std::uint8_t* dst, std::uint8_t* src) {
        EXPECT_TRUE(entry.family.reference(dst, src, width, height, entry.target,
                                           reference::public_to_internal(pattern)));
      });
  if (same) return same;
  return same << "; width " << width << ", height " << height << ", pattern " << pattern << ", offsets "
              << dst_offset << " and " << src_offset;
}

class InterpolatingTransform : public testing::TestWithParam<Entry> {
 protected:
  static bool serves(std::uint32_t width, std::uint32_t height) {
    const Family& family = GetParam().family;
    return height >= family.smallest_height && (height / 2 * width) / 2 >= family.least_pairs;
  }
  static std::size_t dst_size(std::uint32_t width, std::uint32_t height) {
    return kPixelBytes[GetParam().target] * width * height;
  }
  static std::uint32_t run(Bytes& dst, Bytes& src, std::uint32_t width, std::uint32_t height,
                           std::uint32_t pattern) {
    return GetParam().family.library(dst.data(), src.data(), width, height, GetParam().target, pattern);
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, InterpolatingTransform, testing::ValuesIn(all_entries()),
                         [](const auto& info) {
                           return std::string(info.param.family.name) + "_" +
                                  std::to_string(info.param.target);
                         });

TEST_P(InterpolatingTransform, EqualsReferenceAtEvenHeights) {
  support::Random random(1);
  for (std::uint32_t width : support::even_widths()) {
    for (std::uint32_t height : {2U, 4U, 6U, 8U, 10U}) {
      if (!serves(width, height)) continue;
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
  for (std::uint32_t width : {2U, 4U, 16U, 34U, 66U, 130U, 258U}) {
    for (std::uint32_t height : {16U, 30U, 48U, 70U}) {
      for (std::uint32_t pattern : numbers(0, 3)) {
        ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
      }
    }
  }
}

/// With an odd height the halves are packed a line short, and the conversion's last pairs are what `src`
/// held.
TEST_P(InterpolatingTransform, EqualsReferenceAtOddHeights) {
  support::Random random(2);
  for (std::uint32_t width : support::even_widths()) {
    for (std::uint32_t height : {3U, 5U, 7U, 9U}) {
      if (!serves(width, height)) continue;
      ASSERT_TRUE(matches(GetParam(), width, height, random.below(4), random));
    }
  }
}

TEST_P(InterpolatingTransform, EqualsReferenceOnCameraSizes) {
  support::Random random(3);
  for (auto [width, height] : {std::pair{640U, 48U}, std::pair{1024U, 34U}, std::pair{1288U, 20U}}) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      ASSERT_TRUE(matches(GetParam(), width, height, pattern, random));
    }
  }
}

TEST_P(InterpolatingTransform, EqualsReferenceOnAVeryWideLine) {
  support::Random random(11);
  ASSERT_TRUE(matches(GetParam(), 70002, 6, 3, random));
}

/// Codes above 3 go to the kernel as they are.
TEST_P(InterpolatingTransform, EqualsReferenceInPatternsAboveThree) {
  support::Random random(4);
  for (std::uint32_t width : {6U, 16U, 34U, 70U}) {
    for (std::uint32_t pattern : {4U, 5U, 6U, 7U, 9U, 0x7FFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
      ASSERT_TRUE(matches(GetParam(), width, 4, pattern, random));
      ASSERT_TRUE(matches(GetParam(), width, 8, pattern, random));
    }
  }
}

TEST_P(InterpolatingTransform, NeedsNoAlignment) {
  support::Random random(5);
  for (std::uint32_t width : {4U, 16U, 34U, 66U, 262U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        ASSERT_TRUE(matches(GetParam(), width, 6, random.below(4), random, dst_offset, src_offset));
      }
    }
  }
}

/// `dst` needs the size of its output only, and is written by the conversions alone: no height looks outside
/// of it, nor of `src`.
TEST_P(InterpolatingTransform, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(6);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t width : support::even_widths()) {
      for (std::uint32_t height : numbers(2, 8)) {
        if (!serves(width, height)) continue;
        support::GuardedBuffer src(std::size_t{width} * height, flush);
        random.fill(src.data(), src.size());
        Bytes expected_src(src.data(), src.data() + src.size());
        support::GuardedBuffer dst(dst_size(width, height), flush);
        random.fill(dst.data(), dst.size());
        Bytes expected(dst.data(), dst.data() + dst.size());
        const Entry& entry = GetParam();
        entry.family.reference(expected.data(), expected_src.data(), width, height, entry.target, 0);
        ASSERT_EQ(QVN_OK, entry.family.library(dst.data(), src.data(), width, height, entry.target, 0));
        ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
            << "dst; width " << width << ", height " << height;
        ASSERT_EQ(0, std::memcmp(expected_src.data(), src.data(), src.size()))
            << "src; width " << width << ", height " << height;
      }
    }
  }
}

TEST_P(InterpolatingTransform, FourthBytesAreLeftAlone) {
  if (GetParam().target != 2) return;
  support::Random random(7);
  Bytes src(34 * 8);
  random.fill(src.data(), src.size());
  Bytes dst(4 * src.size());
  random.fill(dst.data(), dst.size());
  const Bytes before = dst;
  ASSERT_EQ(QVN_OK, run(dst, src, 34, 8, 1));
  for (std::size_t i = 3; i < dst.size(); i += 4) EXPECT_EQ(before[i], dst[i]) << "byte " << i;
}

TEST_P(InterpolatingTransform, GreyStaysGreyAndLeavesItsStream) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    for (std::uint32_t pattern : numbers(0, 3)) {
      Bytes src(34 * 6, grey);
      Bytes dst(dst_size(34, 6), grey);  // fourth bytes included
      ASSERT_EQ(QVN_OK, run(dst, src, 34, 6, pattern));
      ASSERT_EQ(Bytes(dst.size(), grey), dst);
      for (std::size_t i = 0; i < src.size(); ++i) ASSERT_EQ(i % 2 == 0 ? 128 : grey, src[i]);
    }
  }
}

/// Red 255 alone makes Y 76, U 85, V 255, and that makes blue 0, green 0, red 254, whose lumas are 77 * 254 =
/// 19558 and 54 * 254 + 128 = 13844 of 256.
TEST_P(InterpolatingTransform, PureRedIsWorkedOut) {
  const Bytes pixels[4] = {{76}, {0, 0, 254}, {0, 0, 254, 0xA5}, {54}};
  const std::array<std::uint8_t, 4> red_sites[4] = {
      {255, 0, 0, 0}, {0, 0, 255, 0}, {0, 255, 0, 0}, {0, 0, 0, 255}};
  const Bytes& pixel = pixels[GetParam().target];
  for (std::uint32_t pattern : numbers(0, 3)) {
    Bytes src;
    for (std::size_t y = 0; y < 6; ++y) {
      for (std::size_t x = 0; x < 8; ++x) src.push_back(red_sites[pattern][(y & 1) * 2 + (x & 1)]);
    }
    Bytes dst(dst_size(8, 6), 0xA5);
    ASSERT_EQ(QVN_OK, run(dst, src, 8, 6, pattern));
    for (std::size_t i = 0; i < dst.size(); ++i) ASSERT_EQ(pixel[i % pixel.size()], dst[i]) << "byte " << i;
    const std::uint8_t stream[4] = {85, 76, 255, 76};
    for (std::size_t i = 0; i < src.size(); ++i) ASSERT_EQ(stream[i % 4], src[i]) << "byte " << i;
  }
}

/// From six lines on nothing looks out of a frame, and the demosaics to BGR give the same picture: as it is,
/// with fourth bytes, or weighed.
TEST_P(InterpolatingTransform, IsThePlainDemosaicInItsOutput) {
  support::Random random(8);
  constexpr std::uint32_t kWidth = 46;
  constexpr std::uint32_t kHeight = 10;
  for (std::uint32_t pattern : numbers(0, 3)) {
    Bytes src(kWidth * kHeight);
    random.fill(src.data(), src.size());
    Bytes plain_src = src;
    Bytes bgr(3 * src.size());
    ASSERT_EQ(QVN_OK, GetParam().family.to_bgr(bgr.data(), plain_src.data(), kWidth, kHeight, pattern));
    Bytes dst(dst_size(kWidth, kHeight), 0xA5);
    ASSERT_EQ(QVN_OK, run(dst, src, kWidth, kHeight, pattern));
    EXPECT_EQ(plain_src, src);
    Bytes expected;
    for (std::size_t i = 0; i < bgr.size(); i += 3) {
      const std::uint32_t b = bgr[i], g = bgr[i + 1], r = bgr[i + 2];
      switch (GetParam().target) {
        case 0:
          expected.push_back(static_cast<std::uint8_t>((77 * r + 150 * g + 29 * b) >> 8));
          break;
        case 3:
          expected.push_back(static_cast<std::uint8_t>((54 * r + 184 * g + 18 * b + 128) >> 8));
          break;
        default:
          expected.insert(expected.end(), {bgr[i], bgr[i + 1], bgr[i + 2]});
          if (GetParam().target == 2) expected.push_back(0xA5);
      }
    }
    EXPECT_EQ(expected, dst);
  }
}

/// The scratch frame belongs to the call.
TEST_P(InterpolatingTransform, ManyThreadsDoNotMeet) {
  constexpr std::uint32_t kWidth = 64;
  constexpr std::uint32_t kHeight = 32;
  std::array<Bytes, 4> sources;
  std::array<Bytes, 4> pictures;
  for (std::size_t i = 0; i < sources.size(); ++i) {
    support::Random random(20 + i);
    sources[i].resize(kWidth * kHeight);
    random.fill(sources[i].data(), sources[i].size());
    pictures[i].assign(dst_size(kWidth, kHeight), 0xA5);
  }
  std::array<Bytes, 4> expected_sources = sources;
  std::array<Bytes, 4> expected = pictures;
  std::vector<std::thread> threads;
  const Entry entry = GetParam();
  for (std::size_t i = 0; i < sources.size(); ++i) {
    threads.emplace_back([&, i] {
      entry.family.library(pictures[i].data(), sources[i].data(), kWidth, kHeight, entry.target, 0);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < sources.size(); ++i) {
    entry.family.reference(expected[i].data(), expected_sources[i].data(), kWidth, kHeight, entry.target, 0);
    EXPECT_EQ(expected[i], pictures[i]);
    EXPECT_EQ(expected_sources[i], sources[i]);
  }
}

/// These two have no line structure behind the demosaic, so odd widths have an outcome too.
TEST(OddWidthTransforms, YUV422AndLCAAEqualReference) {
  support::Random random(9);
  for (std::uint32_t width : support::frame_widths()) {
    if (width % 2 == 0) continue;
    for (std::uint32_t height : {4U, 5U, 6U, 7U}) {
      for (std::uint32_t target : numbers(0, 3)) {
        ASSERT_TRUE(matches({kFamilies[0], target}, width, height, random.below(4), random));
        ASSERT_TRUE(matches({kFamilies[1], target}, width, height, random.below(4), random));
      }
    }
  }
}

TEST(IntLCAATransform, TwoPairsAHalfCopyTheFourBytesBeforeTheSource) {
  support::Random random(10);
  for (std::uint32_t target : numbers(0, 3)) {
    for (auto [width, height] :
         {std::pair{4U, 2U}, std::pair{4U, 3U}, std::pair{2U, 4U}, std::pair{2U, 5U}}) {
      ASSERT_TRUE(matches({kFamilies[1], target}, width, height, random.below(4), random));
    }
  }
}

/// Two lines a half: the second line looks up past the first one's beginning, to three pixels that count as 0
/// before the scratch frame: of grey 100, U and V of the second pair are (128 * 5 + 4) >> 3 = 80, which is
/// blue - 85, green + 16 + 34 and red - 67 (48 times 1.771, 0.3457 and
/// 0.7144, 1.4022: 85.0, 16.6, 34.3, 67.3, each cut). Before the second half lies the grey first one.
TEST(IntLCAAVTransform, HeightFourCountsZeroBeforeTheFirstHalf) {
  Bytes src(16, 100);
  Bytes dst(48, 0xA5);
  ASSERT_EQ(QVN_OK, QVN_Raw8ImageTransform_IntLCAAV(dst.data(), src.data(), 4, 4, 1, 0));
  Bytes expected(48, 100);
  const Bytes second_pair = {15, 150, 33, 15, 150, 33};
  std::copy(second_pair.begin(), second_pair.end(), expected.begin() + 6);
  EXPECT_EQ(expected, dst);
  for (std::size_t i = 0; i < src.size(); ++i) EXPECT_EQ(i % 2 == 0 ? 128 : 100, src[i]) << "byte " << i;
}

}  // namespace
