/// How the rows of complementary mosaics begin and end, by hand: copies, reads beyond a line, pixels left
/// alone, and fourth bytes.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <vector>

#include "cygm/frames.h"
#include "cygm/pictures.h"

namespace cygm {
namespace {

TEST(CygmRowEnds, LastCellOfAPlainRowTakesTheNextLineOfItsField) {
  const Picture picture(kCells, mosaic(10, 16, {200, 180, 60, 90}));
  // Lines 1 and 3 of a group of four begin with different colours: the last cell of rows 0 and 1 has an M of
  // 90 in the place of its G: red difference -20 / 4, blue difference 20 / 4, luma 560 >> 2. Rows 2 and 3
  // have a G of 60 in the place of M: the same differences, luma 500 >> 2.
  constexpr Pixel kTwoM = {167, 139, 131};
  constexpr Pixel kTwoG = {152, 124, 116};
  for (std::size_t row = 0; row < 12; ++row) {
    EXPECT_EQ(row % 4 < 2 ? kTwoM : kTwoG, picture.at(row, 9)) << "row " << row;
  }
}

/// Raised first columns show at the end of the rows two above, as an even column's site of the line there.
TEST(CygmRowEnds, FirstColumnShowsAtTheEndOfPlainRows) {
  for (std::size_t n = 4; n < 8; ++n) {
    Lines lines = flat(10, 16, 100);
    lines[n][0] = 140;
    const Picture picture(kCells, lines);
    const Pixel first = cell_with(kSites[n % 4][0]);
    const Pixel last = cell_with(kSites[(n - 2) % 4][0]);
    for (std::size_t row = 0; row < 12; ++row) {
      EXPECT_EQ(row == n || row + 1 == n ? first : kGrey, picture.at(row, 0)) << n << ' ' << row;
      for (std::size_t x = 1; x < 9; ++x) EXPECT_EQ(kGrey, picture.at(row, x)) << n << ' ' << row;
      EXPECT_EQ(row + 2 == n || row + 3 == n ? last : kGrey, picture.at(row, 9)) << n << ' ' << row;
    }
  }
}

TEST(CygmRowEnds, OtherFamiliesRepeatTheirLastPixel) {
  Lines lines = flat(10, 16, 100);
  for (std::size_t n = 0; n < 16; ++n) {
    lines[n][8] = 140;
    lines[n][9] = 60;
    lines[n][0] = static_cast<std::uint8_t>(n * 16);
  }
  for (const Library library : {kBin, kCells3x3, kTransformBin<1>, kTransform<1>, kTransform3x3<1>}) {
    const Picture picture(library, lines);
    for (std::size_t row = 0; row < 16; ++row) EXPECT_EQ(picture.at(row, 8), picture.at(row, 9));
  }
  for (const auto& [name, library] : kCells3x3ToBgr) {
    const Picture picture(library, lines);
    for (std::size_t row = 0; row < 16; ++row) EXPECT_EQ(picture.at(row, 1), picture.at(row, 0));
  }
}

/// An odd width leaves its last pixel alone in the plain 2x2 and both binned conversions.
TEST(CygmRowEnds, OddWidthsLeaveTheirLastPixel) {
  for (const Library library : {kBin, kTransformBin<1>, kCells}) {
    for (std::size_t width : {3U, 5U, 35U}) {
      const Picture picture(library, flat(width, 8, 100));
      for (std::size_t row = 0; row < 7; ++row) {
        if (library == kCells && width == 3 && row >= 4) continue;
        for (std::size_t x = 0; x + 1 < width; ++x) EXPECT_EQ(kGrey, picture.at(row, x));
        EXPECT_EQ((Pixel{kPrefill, kPrefill, kPrefill}), picture.at(row, width - 1));
      }
    }
  }
}

/// An odd width leaves the pixel before the last alone, which the last then repeats.
TEST(CygmRowEnds, OddWidthsOfNeighbourhoodsRepeatWhatWasThere) {
  for (const auto& [name, library] : kCells3x3ToBgr) {
    const Picture picture(library, flat(7, 8, 100));
    for (std::size_t row = 0; row < 8; ++row) {
      for (std::size_t x = 0; x < 5; ++x) EXPECT_EQ(kGrey, picture.at(row, x));
      EXPECT_EQ((Pixel{kPrefill, kPrefill, kPrefill}), picture.at(row, 5));
      EXPECT_EQ((Pixel{kPrefill, kPrefill, kPrefill}), picture.at(row, 6));
    }
  }
}

TEST(CygmRowEnds, NeighbourhoodsOfTwoOrThreeColumnsAreEdgeCopiesAlone) {
  for (const auto& [name, library] : kCells3x3ToBgr) {
    for (const std::uint32_t width : {2U, 3U}) {
      const Bytes src(std::size_t{width} * 4, 100);
      Bytes dst(std::size_t{width} * 12);
      for (std::size_t i = 0; i < dst.size(); ++i) dst[i] = static_cast<std::uint8_t>(i);
      const std::size_t row = std::size_t{3} * width;
      Bytes expected = dst;
      for (const std::size_t at : {row, 2 * row}) {
        for (std::size_t x = 0; x < width; ++x) {
          std::copy_n(dst.begin() + static_cast<std::ptrdiff_t>(at) + 3, 3,
                      expected.begin() + static_cast<std::ptrdiff_t>(at + 3 * x));
        }
      }
      std::copy_n(expected.begin() + static_cast<std::ptrdiff_t>(row), row, expected.begin());
      std::copy_n(expected.begin() + static_cast<std::ptrdiff_t>(2 * row), row,
                  expected.begin() + static_cast<std::ptrdiff_t>(3 * row));
      EXPECT_EQ(QVN_OK, library(dst.data(), src.data(), width, 4));
      EXPECT_EQ(expected, dst);
    }
  }
}

TEST(CygmRowEnds, CellsOfTwoColumns) {
  const Lines lines = mosaic(2, 8, {200, 180, 60, 90});
  // A transform makes one cell and writes it twice.
  EXPECT_EQ(repeated(16, {184, 117, 140}), convert(kTransform<1>, lines, 3));
  // The plain conversion reaches into the next line of the field, and copies no rows.
  const Picture picture(kCells, lines);
  for (std::size_t row = 0; row < 4; ++row) {
    EXPECT_EQ((Pixel{184, 117, 140}), picture.at(row, 0));
    EXPECT_EQ((row < 2 ? Pixel{167, 139, 131} : Pixel{152, 124, 116}), picture.at(row, 1));
  }
  for (std::size_t row = 4; row < 8; ++row) EXPECT_EQ(Bytes(6, kPrefill), picture.row(row));
}

TEST(CygmRowEnds, CellsOfOneColumnWriteNothing) {
  EXPECT_EQ(Bytes(24, kPrefill), convert(kCells, flat(1, 8, 100), 3));
}

TEST(CygmRowEnds, BinnedLineOfThreeColumns) {
  // One pixel, its copy, and a third that is left alone.
  const Lines lines = binned(3, 4, {120, 100, 90, 80});
  const Bytes row = {157, 86, 94, 157, 86, 94, kPrefill, kPrefill, kPrefill};
  for (const auto& [name, library] : kBinnedToBgr) {
    EXPECT_EQ(repeated(4, row), convert(library, lines, 3)) << name;
  }
}

/// Fourth bytes that count the pixels.
Bytes numbered(Library library, const Lines& lines) {
  const auto height = static_cast<std::uint32_t>(lines.size());
  const auto width = static_cast<std::uint32_t>(lines[0].size());
  const Bytes src = stored(lines);
  Bytes dst(std::size_t{4} * width * height, kPrefill);
  for (std::size_t i = 0; i < dst.size() / 4; ++i) dst[4 * i + 3] = static_cast<std::uint8_t>(i);
  EXPECT_EQ(QVN_OK, library(dst.data(), src.data(), width, height));
  Bytes fourths;
  for (std::size_t i = 3; i < dst.size(); i += 4) fourths.push_back(dst[i]);
  return fourths;
}

TEST(CygmFourthBytes, StayButForCopiesOfRowsAndEdges) {
  const Lines lines = flat(4, 4, 100);
  // Rows 0 and 1 are made, 2 and 3 repeat row 1.
  EXPECT_EQ((Bytes{0, 1, 2, 3, 4, 5, 6, 7, 4, 5, 6, 7, 4, 5, 6, 7}), numbered(kTransformBin<2>, lines));
  // Rows 0 to 2 are made, 3 repeats row 2.
  EXPECT_EQ((Bytes{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 8, 9, 10, 11}), numbered(kTransform<2>, lines));
  // Rows 1 and 2 are made with edges, 0 and 3 repeat them.
  EXPECT_EQ((Bytes{5, 5, 6, 6, 5, 5, 6, 6, 9, 9, 10, 10, 9, 9, 10, 10}), numbered(kTransform3x3<2>, lines));
}

}  // namespace
}  // namespace cygm
