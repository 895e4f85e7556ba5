/// QVN_YUV444ToBGR, QVN_YUV422ToBGR and QVN_YUV411ToBGR: against the slow reference for every count and every
/// combination of luma and chroma, between inaccessible pages, and against numbers worked out by hand.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <vector>

#include "reference/yuv_to_bgr.h"
#include "support/runs.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using support::Run;

class YuvToBgr : public testing::TestWithParam<Run> {};

INSTANTIATE_TEST_SUITE_P(Entries, YuvToBgr,
                         testing::Values(Run{"YUV444ToBGR", QVN_YUV444ToBGR, reference::YUV444ToBGR, 1, 3, 3},
                                         Run{"YUV422ToBGR", QVN_YUV422ToBGR, reference::YUV422ToBGR, 2, 4, 6},
                                         Run{"YUV411ToBGR", QVN_YUV411ToBGR, reference::YUV411ToBGR, 4, 6,
                                             12}),
                         support::run_name);

TEST_P(YuvToBgr, EqualsReferenceForEveryCount) { support::expect_equal_for_every_count(GetParam()); }

TEST_P(YuvToBgr, NeedsNoAlignment) { support::expect_no_need_of_alignment(GetParam()); }

TEST_P(YuvToBgr, TouchesNothingOutsideOfItsGroups) { support::expect_nothing_touched_outside(GetParam()); }

TEST_P(YuvToBgr, TouchesNothingBelowAGroup) { support::expect_nothing_touched_below_a_group(GetParam()); }

/// A group of one, two or four pixels with these lumas, in the order of its layout.
void append_group(Bytes& src, std::uint32_t pixels, std::uint8_t u, std::uint8_t v, const std::uint8_t* y) {
  src.push_back(u);
  for (std::uint32_t k = 0; k < pixels; ++k) {
    if (k == pixels / 2 && pixels > 1) src.push_back(v);
    src.push_back(y[k]);
  }
  if (pixels == 1) src.push_back(v);
}

TEST_P(YuvToBgr, EqualsReferenceForEveryColour) {
  const std::uint32_t pixels = GetParam().group_pixels;
  for (unsigned u = 0; u < 256; ++u) {
    Bytes src;
    for (unsigned v = 0; v < 256; ++v) {
      for (unsigned y = 0; y < 256; y += pixels) {
        std::uint8_t lumas[4];
        for (unsigned k = 0; k < 4; ++k) lumas[k] = static_cast<std::uint8_t>(y + k);
        append_group(src, pixels, static_cast<std::uint8_t>(u), static_cast<std::uint8_t>(v), lumas);
      }
    }
    ASSERT_TRUE(support::same_output(GetParam(), src));
  }
}

/// What a group makes of one luma in all of its pixels; all must come out alike.
Bytes one_colour(const Run& run, std::uint8_t y, std::uint8_t u, std::uint8_t v) {
  const std::uint8_t lumas[4] = {y, y, y, y};
  Bytes src;
  append_group(src, run.group_pixels, u, v, lumas);
  Bytes dst(run.group_bytes_out);
  EXPECT_EQ(QVN_OK, run.library(dst.data(), src.data(), run.group_pixels));
  for (std::size_t k = 3; k < dst.size(); ++k) EXPECT_EQ(dst[k - 3], dst[k]);
  dst.resize(3);
  return dst;
}

TEST_P(YuvToBgr, WorkedColours) {
  EXPECT_EQ((Bytes{255, 122, 255}), one_colour(GetParam(), 255, 255, 255));  // 255 - 43 - 90
  EXPECT_EQ((Bytes{0, 135, 0}), one_colour(GetParam(), 0, 0, 0));            // 44 + 91
  EXPECT_EQ((Bytes{29, 233, 200}), one_colour(GetParam(), 200, 31, 128));    // -171.8, 33.5
  EXPECT_EQ((Bytes{29, 255, 255}), one_colour(GetParam(), 255, 0, 128));     // -226, 44
  EXPECT_EQ((Bytes{224, 0, 0}), one_colour(GetParam(), 0, 255, 128));        // 224, -43
  EXPECT_EQ((Bytes{200, 255, 21}), one_colour(GetParam(), 200, 128, 0));     // 91, -179
  EXPECT_EQ((Bytes{50, 0, 228}), one_colour(GetParam(), 50, 128, 255));      // -90, 178
  EXPECT_EQ((Bytes{100, 100, 99}), one_colour(GetParam(), 100, 128, 127));   // -1.4022 cut to -1, 0.7144 to 0
}

TEST_P(YuvToBgr, GreyKeepsItsLuma) {
  for (unsigned y = 0; y < 256; ++y) {
    EXPECT_EQ(Bytes(3, static_cast<std::uint8_t>(y)),
              one_colour(GetParam(), static_cast<std::uint8_t>(y), 128, 128));
  }
}

TEST_P(YuvToBgr, RefusesNullPointersInArgumentOrder) {
  Bytes bytes(16);
  for (std::uint32_t count : {0U, 4U}) {
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, count));
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), count));
    EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, count));
  }
  EXPECT_EQ(Bytes(16), bytes);
}

TEST(YUV422ToBGR, PixelsTakeTheirLumaInOrder) {
  Bytes dst(6);
  const Bytes src = {128, 10, 128, 20};
  EXPECT_EQ(QVN_OK, QVN_YUV422ToBGR(dst.data(), src.data(), 2));
  EXPECT_EQ((Bytes{10, 10, 10, 20, 20, 20}), dst);
}

TEST(YUV422ToBGR, OddCountLeavesTheLastPixelAlone) {
  Bytes dst(15, 0xA5);
  const Bytes src = {128, 10, 128, 20, 128, 30, 128, 40, 128, 50, 128, 60};
  EXPECT_EQ(QVN_OK, QVN_YUV422ToBGR(dst.data(), src.data(), 5));
  EXPECT_EQ((Bytes{10, 10, 10, 20, 20, 20, 30, 30, 30, 40, 40, 40, 0xA5, 0xA5, 0xA5}), dst);
}

TEST(YUV411ToBGR, PixelsTakeTheirLumaInOrder) {
  Bytes dst(12);
  const Bytes src = {128, 10, 20, 128, 30, 40};
  EXPECT_EQ(QVN_OK, QVN_YUV411ToBGR(dst.data(), src.data(), 4));
  EXPECT_EQ((Bytes{10, 10, 10, 20, 20, 20, 30, 30, 30, 40, 40, 40}), dst);
}

}  // namespace
