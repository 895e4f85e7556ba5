/// The colours of complementary mosaics against numbers worked out by hand: constant sites, single ones in
/// every row phase and column parity, and every output of the transforms.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <vector>

#include "cygm/frames.h"
#include "cygm/pictures.h"

namespace cygm {
namespace {

struct SitesAndPixel {
  Sites sites;
  Pixel pixel;
};

const std::vector<SitesAndPixel> kConstantSites = {
    // red difference 10 / 4 = 2, blue difference 50 / 4 = 12, luma 530 >> 2 = 132:
    // R = 135168 + 4330 + 4128 = 143626, G = 135168 - 1834 - 12936 = 120398,
    // B = 135168 - 1918 + 55740 = 188990
    {{200, 180, 60, 90}, {184, 117, 140}},
    // 100 / 4 = 25, -120 / 4 = -30, 540 >> 2 = 135: R = 182045, G = 147655, B = -25085
    {{90, 200, 130, 120}, {0, 144, 177}},
    // 510 / 4 = 127, 0, 127: R = 130048 + 274955 is beyond 255, G = 13589, B = 8255
    {{0, 255, 0, 255}, {8, 13, 255}},
    // -255 / 4 = -63, 63, 63: R = 64512 - 136395 + 21672 is below 0, G = 54369, B = 417564 is beyond 255
    {{255, 0, 0, 0}, {255, 53, 0}},
    // 255 / 4 = 63 twice, 191: G = 195584 - 57771 - 67914 = 69899
    {{255, 255, 0, 255}, {255, 68, 255}},
    // -63 twice, 63: G = 64512 + 57771 + 67914 = 190197
    {{0, 0, 255, 0}, {0, 185, 0}},
    // Differences of -2 / 4 and 2 / 4, 2 / 4 and -2 / 4, -1 / 4 twice: all 0.
    {{103, 101, 100, 100}, {101, 101, 101}},
    {{101, 103, 100, 100}, {101, 101, 101}},
    {{100, 100, 103, 102}, {101, 101, 101}},
    // 0, 7 / 4 = 1, and 407 >> 2 = 101, not 101.75: B = 103424 + 4645 = 108069
    {{104, 100, 100, 103}, {105, 99, 101}},
    // Sums that lie near a multiple of 1024, so that each factor of the matrix shows in its last digit.
    // -223 / 4 = -55, -56 / 4 = -14, 706 >> 2 = 176: R = 56333, G = 245751, B = 167939
    {{251, 168, 213, 74}, {164, 239, 55}},
    // 126 / 4 = 31, 174 / 4 = 43, 350 >> 2 = 87: R = 170995, G = 14307, B = 259094
    {{99, 75, 13, 163}, {253, 13, 166}},
    // -174 / 4 = -43, -192 / 4 = -48, 568 >> 2 = 142: R = 35801, G = 236583, B below 0
    {{184, 193, 187, 4}, {0, 231, 34}},
    {{0, 0, 0, 0}, {0, 0, 0}},
    {{255, 255, 255, 255}, {255, 255, 255}},
};

TEST(CygmColours, ConstantSites) {
  for (const auto& [name, library] : kMosaicToBgr) {
    for (const auto& [sites, pixel] : kConstantSites) {
      const Picture picture(library, mosaic(10, 16, sites));
      // The plain 2x2 conversion leaves the last row alone, and its last column reaches into another line.
      const bool is_plain = library == kCells;
      for (std::size_t row = 0; row < (is_plain ? 15 : 16); ++row) {
        for (std::size_t x = 0; x < (is_plain ? 9 : 10); ++x) {
          ASSERT_EQ(pixel, picture.at(row, x)) << name << ", row " << row << ", column " << x;
        }
      }
    }
  }
}

struct KindsAndPixel {
  Kinds kinds;
  Pixel pixel;
};

const std::vector<KindsAndPixel> kConstantKinds = {
    // blue difference 20 / 2 = 10, red difference -10 / 2 = -5, luma 390 >> 2 = 97:
    // R = 99328 - 24055 + 21130 = 96403, G = 99328 + 11030 - 21610 = 88748, B = 99328 + 6305 + 55860 = 161493
    {{120, 100, 90, 80}, {157, 86, 94}},
    // -1 / 2 = 0, 3 / 2 = 1, 304 >> 2 = 76: R = 82635, G = 75618, B = 76563
    {{100, 101, 50, 53}, {74, 73, 80}},
    // 1 / 2 = 0, -3 / 2 = -1: R = 73013, G = 80030, B = 79085
    {{101, 100, 53, 50}, {77, 78, 71}},
    // 100 / 2 = 50, 80 / 2 = 40, 500 >> 2 = 125: R and B beyond 255, G = 128000 - 88240 - 108050 below 0
    {{200, 100, 60, 140}, {255, 0, 255}},
    // -190 / 2 = -95, 60 / 2 = 30, 330 >> 2 = 82: R = 27563, G = 223083, B = -484532
    {{10, 200, 30, 90}, {0, 217, 26}},
    // Near multiples of 1024 again. 228 / 2 = 114, -138 / 2 = -69, 472 >> 2 = 118: R = 29755, G = 26692
    {{243, 15, 176, 38}, {255, 26, 29}},
    // 229 / 2 = 114, -125 / 2 = -62, 530 >> 2 = 132: R = 77768, G = 25586
    {{252, 23, 190, 65}, {255, 24, 75}},
    // 52 / 2 = 26, -36 / 2 = -18, 330 >> 2 = 82: R = 52308, G = 67490, B = 251902
    {{107, 55, 102, 66}, {245, 65, 51}},
    // 30 / 2 = 15, -62 / 2 = -31, 450 >> 2 = 112: R below 0, G = 150659, B = 237569
    {{134, 104, 137, 75}, {232, 147, 0}},
    {{1, 2, 2, 1}, {1, 1, 1}},
    {{2, 1, 1, 2}, {1, 1, 1}},
};

TEST(CygmColours, ConstantLinesOfABinnedFrame) {
  for (const auto& [name, library] : kBinnedToBgr) {
    for (const auto& [kinds, pixel] : kConstantKinds) {
      const Picture picture(library, binned(10, 16, kinds));
      for (std::size_t row = 0; row < 16; ++row) {
        for (std::size_t x = 0; x < 10; ++x) {
          ASSERT_EQ(pixel, picture.at(row, x)) << name << ", row " << row << ", column " << x;
        }
      }
    }
  }
}

/// Of 1640, 1680 or 1760 sixteenths, luma is 102, 105 or 110; differences are 2 (of 2.5), 5 or 10.
Pixel neighbourhood_with(char site, int weight) {
  if (weight == 4) return cell_with(site);
  const bool side = weight == 2;
  switch (site) {
    case 'C':
      return side ? Pixel{132, 104, 96} : Pixel{112, 101, 98};
    case 'Y':
      return side ? Pixel{77, 105, 113} : Pixel{91, 102, 105};
    case 'G':
      return side ? Pixel{87, 114, 92} : Pixel{94, 105, 97};
    default:
      return side ? Pixel{122, 95, 117} : Pixel{109, 98, 106};
  }
}

/// Lines 4 to 7 and columns 4 and 5 are in the middle of every plan.
TEST(CygmColours, SingleSitesOfCells) {
  for (const auto& [name, library] : kCellsToBgr) {
    for (std::size_t n = 4; n < 8; ++n) {
      for (std::size_t at = 4; at < 6; ++at) {
        Lines lines = flat(10, 16, 100);
        lines[n][at] = 140;
        const Picture picture(library, lines);
        for (std::size_t row = 0; row < 12; ++row) {
          for (std::size_t x = 0; x < 10; ++x) {
            const bool sees = (row == n || row + 1 == n) && (x == at || x + 1 == at);
            ASSERT_EQ(sees ? cell_with(kSites[n % 4][at % 2]) : kGrey, picture.at(row, x))
                << "site at line " << n << ", column " << at << "; row " << row << ", column " << x;
          }
        }
      }
    }
  }
}

TEST(CygmColours, SingleSitesOfNeighbourhoods) {
  for (const auto& [name, library] : kCells3x3ToBgr) {
    for (std::size_t n = 4; n < 8; ++n) {
      for (std::size_t at = 4; at < 6; ++at) {
        Lines lines = flat(10, 16, 100);
        lines[n][at] = 140;
        const Picture picture(library, lines);
        for (std::size_t row = 0; row < 16; ++row) {
          for (std::size_t x = 0; x < 10; ++x) {
            const int down = row == n ? 2 : row + 1 == n || row == n + 1 ? 1 : 0;
            const int across = x == at ? 2 : x + 1 == at || x == at + 1 ? 1 : 0;
            const Pixel expected =
                down * across == 0 ? kGrey : neighbourhood_with(kSites[n % 4][at % 2], down * across);
            ASSERT_EQ(expected, picture.at(row, x))
                << "site at line " << n << ", column " << at << "; row " << row << ", column " << x;
          }
        }
      }
    }
  }
}

/// Row r takes F(r) and F(r + 2), one of each kind. Luma is 110, one difference 20 or -20: 112640 +- 42260 or
/// +- 96220 in red, -+ 43220 or -+ 44120 in green, +- 111720 or -+ 25220 in blue.
TEST(CygmColours, SingleSamplesOfABinnedFrame) {
  for (const auto& [name, library] : kBinnedToBgr) {
    for (std::size_t n = 8; n < 12; ++n) {
      for (std::size_t at = 4; at < 6; ++at) {
        Lines lines = flat(10, 20, 100);
        lines[n][at] = 140;
        const Picture picture(library, lines);
        const Pixel colour = is_blue_line(n) ? (at == 4 ? Pixel{219, 67, 151} : Pixel{0, 152, 68})
                                             : (at == 4 ? Pixel{134, 153, 16} : Pixel{85, 66, 203});
        for (std::size_t row = 0; row < 20; ++row) {
          for (std::size_t x = 0; x < 10; ++x) {
            const bool sees = (row == n || row + 2 == n) && (x == at || x + 1 == at);
            ASSERT_EQ(sees ? colour : kGrey, picture.at(row, x))
                << name << ", sample at line " << n << ", column " << at << "; row " << row << ", column "
                << x;
          }
        }
      }
    }
  }
}

TEST(CygmColours, FlatFramesStayFlat) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    const Lines lines = flat(38, 8, grey);
    const std::size_t pixels = std::size_t{38} * 8;
    const Bytes whole(3 * pixels, grey);
    ASSERT_EQ(whole, convert(kBin, lines, 3));
    ASSERT_EQ(whole, convert(kCells3x3, lines, 3));
    ASSERT_EQ(whole, convert(kMono, lines, 3));
    ASSERT_EQ(whole, convert(kTransformBin<1>, lines, 3));
    ASSERT_EQ(whole, convert(kTransform<1>, lines, 3));
    ASSERT_EQ(whole, convert(kTransform3x3<1>, lines, 3));
    Bytes but_the_last_row = whole;
    std::fill(but_the_last_row.end() - std::ptrdiff_t{3} * 38, but_the_last_row.end(), kPrefill);
    ASSERT_EQ(but_the_last_row, convert(kCells, lines, 3));
    for (const Library to_y8 : {kTransformBin<0>, kTransform<0>, kTransform3x3<0>, kTransformBin<3>,
                                kTransform<3>, kTransform3x3<3>}) {
      ASSERT_EQ(Bytes(pixels, grey), convert(to_y8, lines, 1));
    }
    const Bytes four = repeated(pixels, {grey, grey, grey, kPrefill});
    for (const Library to_bgra : {kTransformBin<2>, kTransform<2>, kTransform3x3<2>}) {
      ASSERT_EQ(four, convert(to_bgra, lines, 4));
    }
    const auto y = static_cast<std::uint8_t>(((220 * value + 128) >> 8) + 16);
    for (const Library to_yuv422 : {kTransformBin<4>, kTransform<4>}) {
      ASSERT_EQ(repeated(pixels / 2, {128, y, 128, y}), convert(to_yuv422, lines, 2));
    }
  }
}

/// R 140, G 117, B 184 everywhere.
TEST(CygmTargets, OneColour) {
  const Lines lines = mosaic(6, 8, {200, 180, 60, 90});
  // 17550 + 10780 + 5336 = 33666
  EXPECT_EQ(Bytes(48, 131), convert(kTransform<0>, lines, 1));
  EXPECT_EQ(Bytes(48, 131), convert(kTransform3x3<0>, lines, 1));
  EXPECT_EQ(repeated(48, {184, 117, 140}), convert(kTransform<1>, lines, 3));
  EXPECT_EQ(repeated(48, {184, 117, 140}), convert(kTransform3x3<1>, lines, 3));
  EXPECT_EQ(repeated(48, {184, 117, 140, kPrefill}), convert(kTransform<2>, lines, 4));
  EXPECT_EQ(repeated(48, {184, 117, 140, kPrefill}), convert(kTransform3x3<2>, lines, 4));
  // 21528 + 604 * 18 + 128 = 32528
  EXPECT_EQ(Bytes(48, 127), convert(kTransform<3>, lines, 1));
  EXPECT_EQ(Bytes(48, 127), convert(kTransform3x3<3>, lines, 1));
  // Y: 15093 + 4600 + 9240 + 128 = 29061; U: 20608 - 8658 - 5320 + 128 = 6758;
  // V: 15680 - 10998 - 3312 + 128 = 1498
  EXPECT_EQ(repeated(24, {154, 129, 133, 129}), convert(kTransform<4>, lines, 2));
}

/// R 94, G 86, B 157 everywhere.
TEST(CygmTargets, OneColourOfABinnedFrame) {
  const Lines lines = binned(6, 8, {120, 100, 90, 80});
  // 12900 + 7238 + 4553 = 24691
  EXPECT_EQ(Bytes(48, 96), convert(kTransformBin<0>, lines, 1));
  EXPECT_EQ(repeated(48, {157, 86, 94}), convert(kTransformBin<1>, lines, 3));
  EXPECT_EQ(repeated(48, {157, 86, 94, kPrefill}), convert(kTransformBin<2>, lines, 4));
  // 15824 + 439 * 18 + 128 = 23854
  EXPECT_EQ(Bytes(48, 93), convert(kTransformBin<3>, lines, 1));
  // Y: 11094 + 3925 + 6204 + 128 = 21351; U: 17584 - 6364 - 3572 + 128 = 7776;
  // V: 10528 - 8084 - 2826 + 128 = -254, which rounds down to -1
  EXPECT_EQ(repeated(24, {158, 99, 127, 99}), convert(kTransformBin<4>, lines, 2));
}

/// Cells with a raised C: Y 110, U 155, V 117. Grey: Y 102, U 128, V 128.
TEST(CygmTargets, ChromaOfAPairIsTheTruncatedMean) {
  Lines lines = flat(10, 8, 100);
  lines[2][4] = 140;  // pixels 3 and 4 of rows 1 and 2
  const Bytes dst = convert(kTransform<4>, lines, 2);
  // (128 + 155) >> 1 = 141, (128 + 117) >> 1 = 122
  const Bytes row = {128, 102, 128, 102, 141, 102, 122, 110, 141, 110,
                     122, 102, 128, 102, 128, 102, 128, 102, 128, 102};
  EXPECT_EQ(row, Bytes(dst.begin() + 20, dst.begin() + 40));
  EXPECT_EQ(row, Bytes(dst.begin() + 40, dst.begin() + 60));
}

/// Five pixels have two groups a row, four of them are written, and the counter of row 1 begins at 5: its
/// first pixel ends a group that nobody began, its last begins one in row 2, which a copy then covers.
TEST(CygmTargets, PairsOfOddWidthsGoByTheCounter) {
  // (128 + 16) >> 1 = 72
  const Bytes expected = {128, 102, 128, 102, 128, 102, 128, 102, 72, 16, 72, 102, 128, 102, 128, 102,
                          72,  16,  72,  102, 128, 102, 128, 102, 72, 16, 72, 102, 128, 102, 128, 102};
  const Bytes src(20, 100);
  Bytes dst(32, 16);
  EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMImageTransform_Bin(dst.data(), src.data(), 5, 4, 4));
  EXPECT_EQ(expected, dst);
}

/// Three pixels have one group a row, but four are written: a row's second group is its neighbour's first.
TEST(CygmTargets, RowsOfOddWidthsShareTheirGroups) {
  // F(0) and F(2) raised at their first C, which is cell 0 of rows 0, 1 and 2.
  const Lines lines = {{140, 100, 100}, {100, 100, 100}, {140, 100, 100}, {100, 100, 100}};
  Bytes src = stored(lines);
  src.resize(32, 100);
  Bytes dst(20, 16);
  EXPECT_EQ(QVN_OK, QVN_IRaw8CYGMImageTransform(dst.data(), src.data(), 3, 4, 4, 0));
  // Row 0, bytes 0 to 7: raised, grey, then twice a cell whose column 3, a Y, is the first sample of F(2),
  // raised: U 101, Y 110, V 139.
  //
  // Row 1 from byte 4, counter 3: a raised C ends that group with U (155 + 101) >> 1 and V (117 + 139) >> 1.
  // Three more pixels reach into rows 2 and 3.
  //
  // Row 2 from byte 8 writes its group, and that of row 3, anew: raised, grey, grey, grey. Row 3 is a copy of
  // four bytes.
  const Bytes expected = {141, 110, 122, 102, 128, 110, 128, 110, 141, 110,
                          122, 102, 141, 110, 122, 102, 16,  16,  16,  16};
  EXPECT_EQ(expected, dst);
}

}  // namespace
}  // namespace cygm
