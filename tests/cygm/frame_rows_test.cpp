/// Which rows of a frame the conversions of complementary mosaics make, copy and leave alone, and from which
/// lines; the grey conversion by hand.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <vector>

#include "cygm/frames.h"
#include "cygm/pictures.h"

namespace cygm {
namespace {

/// Lines that no two rows share.
Lines ramp(std::size_t width, std::size_t height) {
  Lines lines = flat(width, height, 0);
  for (std::size_t n = 0; n < height; ++n) lines[n].assign(width, static_cast<std::uint8_t>(10 + n * n));
  return lines;
}

TEST(CygmRows, PlainCellsOfEightLines) {
  const Picture picture(kCells, ramp(8, 8));
  for (std::size_t row = 1; row < 4; ++row) EXPECT_NE(picture.row(row), picture.row(row - 1));
  for (std::size_t row = 4; row < 7; ++row) EXPECT_EQ(picture.row(3), picture.row(row));
  EXPECT_EQ(Bytes(24, kPrefill), picture.row(7));
}

TEST(CygmRows, PlainCellsOfTwelveLines) {
  const Picture picture(kCells, ramp(4, 12));
  for (std::size_t row = 1; row < 8; ++row) EXPECT_NE(picture.row(row), picture.row(row - 1));
  for (std::size_t row = 8; row < 11; ++row) EXPECT_EQ(picture.row(7), picture.row(row));
  EXPECT_EQ(Bytes(12, kPrefill), picture.row(11));
}

/// Four lines make no block: the row before `dst` is copied to rows 0 to 2.
TEST(CygmRows, PlainCellsOfFourLinesCopyTheRowBefore) {
  for (const std::uint32_t height : {4U, 5U}) {
    const Bytes src(std::size_t{4} * height, 100);
    Bytes arena(std::size_t{12} * (height + 1), kPrefill);
    for (std::uint8_t i = 0; i < 12; ++i) arena[i] = i;
    Bytes expected = arena;
    for (std::size_t row = 1; row < 4; ++row) {
      std::copy_n(arena.begin(), 12, expected.begin() + static_cast<std::ptrdiff_t>(12 * row));
    }
    EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMToBGR(arena.data() + 12, src.data(), 4, height, 0));
    EXPECT_EQ(expected, arena);
  }
}

/// Ten lines make eight rows, and the copies reach row 10.
TEST(CygmRows, PlainCellsOfTenLinesWriteARowBehindTheFrame) {
  Bytes src(4 * 10 + 1, 100);
  Bytes dst(12 * 12, kPrefill);
  EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMToBGR(dst.data(), src.data(), 4, 10, 0));
  Bytes expected(12 * 12, 100);
  std::fill(expected.end() - 12, expected.end(), kPrefill);
  EXPECT_EQ(expected, dst);
}

TEST(CygmRows, TransformedCellsOfEightLines) {
  const Lines lines = ramp(8, 8);
  const Picture picture(kTransform<1>, lines);
  for (std::size_t row = 1; row < 7; ++row) EXPECT_NE(picture.row(row), picture.row(row - 1));
  EXPECT_EQ(picture.row(6), picture.row(7));
}

/// Where both make a pixel, the plain 2x2 conversion and its transform agree; the plain one makes fewer rows,
/// and its last column reads on.
TEST(CygmRows, PlainAndTransformedCellsAgree) {
  Lines lines = flat(38, 8, 0);
  for (std::size_t n = 0; n < lines.size(); ++n) {
    for (std::size_t x = 0; x < 38; ++x) lines[n][x] = static_cast<std::uint8_t>(n * 83 + x * x * 7);
  }
  const Picture plain(kCells, lines);
  const Picture transformed(kTransform<1>, lines);
  for (std::size_t row = 0; row < 4; ++row) {
    for (std::size_t x = 0; x < 37; ++x) EXPECT_EQ(plain.at(row, x), transformed.at(row, x));
    EXPECT_EQ(transformed.at(row, 36), transformed.at(row, 37));
  }
}

TEST(CygmRows, TransformedCellsOfFourLines) {
  const Picture picture(kTransform<1>, ramp(6, 4));
  EXPECT_NE(picture.row(0), picture.row(1));
  EXPECT_NE(picture.row(1), picture.row(2));
  EXPECT_EQ(picture.row(2), picture.row(3));
}

TEST(CygmRows, TransformedCellsOfOneLineAreNone) {
  const Bytes src(8, 100);
  for (const std::uint32_t height : {0U, 1U}) {
    for (std::uint32_t target = 0; target < 5; ++target) {
      Bytes dst(64, kPrefill);
      EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMImageTransform(dst.data(), src.data(), 8, height, target, 0));
      EXPECT_EQ(Bytes(64, kPrefill), dst);
    }
  }
}

/// Six lines: rows 0 to 3, then 4 and 5, of which the latter takes the line behind the second field.
TEST(CygmRows, TransformedCellsOfSixLinesReadALineBehindTheFrame) {
  Bytes src(4 * 7, 100);
  std::fill(src.end() - 4, src.end(), std::uint8_t{20});
  Bytes dst(4 * 7, kPrefill);
  EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMImageTransform(dst.data(), src.data(), 4, 6, 0, 0));
  // F(5) of 100 over a line of 20: two sites each of 100 and 20, in all cells G and M over C and Y.
  Bytes expected(4 * 7, 100);
  std::fill(expected.begin() + 20, expected.end() - 4, std::uint8_t{60});
  std::fill(expected.end() - 4, expected.end(), kPrefill);
  EXPECT_EQ(expected, dst);
}

TEST(CygmRows, NeighbourhoodsOfFourLines) {
  for (const auto& [name, library] : kCells3x3ToBgr) {
    const Picture picture(library, ramp(6, 4));
    EXPECT_EQ(picture.row(1), picture.row(0));
    EXPECT_NE(picture.row(1), picture.row(2));
    EXPECT_EQ(picture.row(2), picture.row(3));
  }
}

TEST(CygmRows, NeighbourhoodsOfTwelveLines) {
  for (const auto& [name, library] : kCells3x3ToBgr) {
    const Picture picture(library, ramp(6, 12));
    EXPECT_EQ(picture.row(1), picture.row(0));
    for (std::size_t row = 2; row < 11; ++row) EXPECT_NE(picture.row(row), picture.row(row - 1));
    EXPECT_EQ(picture.row(10), picture.row(11));
  }
}

/// Six lines: rows 1 to 4 from a block, then rows 5 and 6 from the last four lines, whose colours are not
/// those of the kernels that make them, and the copy to row 7.
TEST(CygmRows, NeighbourhoodsOfSixLinesWriteTwoRowsBehindTheFrame) {
  const Bytes src = stored(mosaic(4, 6, {200, 180, 60, 90}));
  for (const auto& [name, library] : kCells3x3ToBgr) {
    Bytes dst(12 * 9, kPrefill);
    EXPECT_EQ(QVN_OK, library(dst.data(), src.data(), 4, 6));
    // Row 5: F(2), F(3) and F(4) hold C Y, M G, C Y and count as C Y, G M, C Y: red difference
    // (60 + 180 - 90 - 200) / 4 = -50 / 4 = -12, blue difference (60 + 200 - 90 - 180) / 4 = -10 / 4 = -2.
    // B = 135168 + 11508 - 9290 = 137386, G = 135168 + 11004 + 2156 = 148328,
    // R = 135168 - 25980 - 688 = 108500.
    // Row 6: F(3), F(4) and F(5) hold M G, C Y, G M and count as G M, C Y, M G: the same.
    Bytes expected = repeated(9 * 4, {134, 144, 105});
    const Bytes head = repeated(5 * 4, {184, 117, 140});
    std::copy(head.begin(), head.end(), expected.begin());
    std::fill(expected.end() - 12, expected.end(), kPrefill);
    EXPECT_EQ(expected, dst);
  }
}

TEST(CygmRows, BinnedFramesOfFourfoldHeight) {
  for (const auto& [name, library] : kBinnedToBgr) {
    for (const std::size_t height : {8U, 12U}) {
      const Picture picture(library, ramp(6, height));
      for (std::size_t row = 1; row + 2 < height; ++row) {
        EXPECT_NE(picture.row(row), picture.row(row - 1)) << name;
      }
      EXPECT_EQ(picture.row(height - 3), picture.row(height - 2)) << name;
      EXPECT_EQ(picture.row(height - 3), picture.row(height - 1)) << name;
    }
  }
}

TEST(CygmRows, BinnedFramesOfOtherEvenHeightsLeaveTwoRows) {
  for (const auto& [name, library] : kBinnedToBgr) {
    for (const std::size_t height : {6U, 10U, 14U}) {
      const Picture picture(library, ramp(6, height));
      for (std::size_t row = 0; row < height; ++row) {
        const bool left = row + 2 >= height;
        EXPECT_EQ(left, picture.row(row) == Bytes(18, kPrefill)) << name << ", row " << row;
      }
    }
  }
}

/// Row r is made of F(r) and F(r + 2), in the order of their kinds.
TEST(CygmRows, BinnedRowsTakeEverySecondLine) {
  for (const auto& [name, library] : kBinnedToBgr) {
    const Picture picture(library, ramp(6, 12));
    for (std::size_t row = 0; row < 10; ++row) {
      // Lines without differences: luma is the mean of the two lines, 10 + n * n.
      const auto mean = static_cast<std::uint8_t>((20 + row * row + (row + 2) * (row + 2)) / 2);
      EXPECT_EQ(Bytes(18, mean), picture.row(row)) << name << ", row " << row;
    }
  }
}

TEST(CygmMono, MeansOfFourTruncated) {
  const Lines lines = {{10, 20, 30}, {41, 50, 60}, {70, 80, 91}, {140, 150, 160}};
  // 121 and 160, 241 and 281, 440 and 481 quarters; the last pixel and the last row are copies.
  const Bytes expected = {30,  30,  30,  40,  40,  40,  40,  40,  40,  60,  60,  60,
                          70,  70,  70,  70,  70,  70,  110, 110, 110, 120, 120, 120,
                          120, 120, 120, 110, 110, 110, 120, 120, 120, 120, 120, 120};
  for (const std::uint32_t phase : {0U, 1U, 2U, 3U, 0xFFFFFFFFU}) {
    const Bytes src = stored(lines);
    Bytes dst(36, kPrefill);
    EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMToMono(dst.data(), src.data(), 3, 4, phase));
    EXPECT_EQ(expected, dst);
  }
}

TEST(CygmMono, OneColumnOrOneLineRepeatsWhatLiesBefore) {
  const Bytes src(4, 100);
  Bytes arena = {1, 2, 3, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9};
  EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMToMono(arena.data() + 3, src.data(), 1, 4, 0));
  EXPECT_EQ((Bytes{1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3, 1, 2, 3, 9}), arena);
  arena = {1, 2, 3, 4, 5, 6, 9, 9, 9, 9, 9, 9, 9};
  EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMToMono(arena.data() + 6, src.data(), 2, 1, 0));
  EXPECT_EQ((Bytes{1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6, 9}), arena);
}

}  // namespace
}  // namespace cygm
