/// The plain 2x2 demosaics against numbers worked out by hand: each pattern, the codes above 3, the last
/// column and line, the drift of odd widths, and the order of means and weights.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;
using Library = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                  std::uint32_t);

// The samples 10, 20 over 31, 40 have the diagonal means 25 (10 and 40, as well
// as 20 and 31, whose 25.5 loses its half).

Bytes times(std::size_t count, const Bytes& pixel) {
  Bytes all;
  for (std::size_t i = 0; i < count; ++i) all.insert(all.end(), pixel.begin(), pixel.end());
  return all;
}

Bytes convert(Library library, const Bytes& src, std::uint32_t width, std::uint32_t height,
              std::uint32_t pattern, std::size_t dst_bytes) {
  Bytes dst(dst_bytes, 0xA5);
  EXPECT_EQ(QVN_OK, library(dst.data(), src.data(), width, height, pattern));
  return dst;
}

TEST(Raw8ToBGR, OneWindowInEachPattern) {
  const Bytes src = {10, 20, 31, 40};
  const auto run = [&](std::uint32_t pattern) { return convert(QVN_Raw8ToBGR, src, 2, 2, pattern, 12); };
  EXPECT_EQ(times(4, {40, 25, 10}), run(0));  // R G over G B
  EXPECT_EQ(times(4, {20, 25, 31}), run(1));  // G B over R G
  EXPECT_EQ(times(4, {31, 25, 20}), run(2));  // G R over B G
  EXPECT_EQ(times(4, {10, 25, 40}), run(3));  // B G over G R
}

TEST(Raw8ToBGR, PatternsAboveThreeAreUsedByTheirParities) {
  const Bytes src = {10, 20, 31, 40};
  const auto run = [&](std::uint32_t pattern) { return convert(QVN_Raw8ToBGR, src, 2, 2, pattern, 12); };
  EXPECT_EQ(times(4, {40, 25, 10}), run(4));
  EXPECT_EQ(times(4, {31, 25, 20}), run(5));
  EXPECT_EQ(times(4, {20, 25, 31}), run(6));
  EXPECT_EQ(times(4, {10, 25, 40}), run(7));
  EXPECT_EQ(times(4, {31, 25, 20}), run(9));
  EXPECT_EQ(times(4, {20, 25, 31}), run(0xFFFFFFFE));
}

TEST(Raw8ToBGR, RowPhaseTakesTurnsFromThePattern) {
  const Bytes src = {10, 20, 31, 40, 50, 70};
  // Pattern 3: B G, then G R, then B G. The second window has R G over G B upside down: R 40, B 50.
  const Bytes lines = {10, 25, 40, 10, 25, 40, 50, 50, 40, 50, 50, 40, 50, 50, 40, 50, 50, 40};
  EXPECT_EQ(lines, convert(QVN_Raw8ToBGR, src, 2, 3, 3, 18));
}

TEST(Raw8ToBGR, LastColumnRepeatsTheColumnBefore) {
  const Bytes src = {10, 20, 30, 40, 50, 61, 72, 83};
  // Windows: (10 20 / 50 61), (20 30 / 61 72), (30 40 / 72 83).
  const Bytes line = {61, 35, 10, 61, 46, 30, 83, 56, 30, 83, 56, 30};
  EXPECT_EQ(times(2, line), convert(QVN_Raw8ToBGR, src, 4, 2, 0, 24));
}

TEST(Raw8ToBGR, OddWidthWritesOnePixelMoreALine) {
  // The third window of the line reaches to the next line and, below, to the byte behind the frame.
  const Bytes src = {10, 20, 30, 40, 50, 60, 70};
  const Bytes expected = {50,   30,  10, 50, 40, 30, 70, 50, 30, 70, 50, 30,  // four pixels
                          50,   40,  30, 70, 50, 30, 70, 50, 30,              // the last three again
                          0xA5, 0xA5};
  EXPECT_EQ(expected, convert(QVN_Raw8ToBGR, src, 3, 2, 0, 23));
}

TEST(Raw8ToY8, TakesTheMeanOfTheGreensFirst) {
  // 150 * ((255 + 254) >> 1) = 38100, that is 148; weighting each green by 75 would give 149.
  EXPECT_EQ(Bytes(4, 148), convert(QVN_Raw8ToY8, {0, 255, 254, 0}, 2, 2, 0, 4));
}

TEST(Raw8ToY8, WeightsOfTheChannels) {
  // 77 * 255 = 19635: 76; 150 * 255 = 38250: 149; 29 * 255 = 7395: 28.
  EXPECT_EQ(Bytes(4, 76), convert(QVN_Raw8ToY8, {255, 0, 0, 0}, 2, 2, 0, 4));
  EXPECT_EQ(Bytes(4, 149), convert(QVN_Raw8ToY8, {0, 255, 255, 0}, 2, 2, 0, 4));
  EXPECT_EQ(Bytes(4, 28), convert(QVN_Raw8ToY8, {0, 0, 0, 255}, 2, 2, 0, 4));
  EXPECT_EQ(Bytes(4, 255), convert(QVN_Raw8ToY8, {255, 255, 255, 255}, 2, 2, 0, 4));
}

TEST(Raw8ToY8, OddWidthKeepsToItsLines) {
  // Windows (0 100 / 100 0) and (100 0 / 0 100): 150 * 100 >> 8 = 58, (77 + 29) * 100 >> 8 = 41 in a frame
  // R G R over G B G.
  EXPECT_EQ((Bytes{58, 58, 58, 58, 58, 58, 0xA5}),
            convert(QVN_Raw8ToY8, {0, 100, 0, 100, 0, 100}, 3, 2, 0, 7));
  EXPECT_EQ((Bytes{41, 41, 41, 41, 41, 41, 0xA5}),
            convert(QVN_Raw8ToY8, {100, 0, 100, 0, 100, 0}, 3, 2, 0, 7));
}

TEST(Raw8ToBGR_mono, LumaInAllThreeBytes) {
  EXPECT_EQ(Bytes(12, 148), convert(QVN_Raw8ToBGR_mono, {0, 255, 254, 0}, 2, 2, 0, 12));
}

TEST(Raw16ToBGR, TakesTheFirstByteAndLeavesTheLastColumnBlack) {
  const Bytes src = {10, 0xFF, 20, 0xFF, 31, 0xFF, 40, 0xFF};
  const auto run = [&](std::uint32_t pattern) { return convert(QVN_Raw16ToBGR, src, 2, 2, pattern, 12); };
  EXPECT_EQ(times(2, {40, 25, 10, 0, 0, 0}), run(0));
  EXPECT_EQ(times(2, {20, 25, 31, 0, 0, 0}), run(1));
  EXPECT_EQ(times(2, {31, 25, 20, 0, 0, 0}), run(2));
  EXPECT_EQ(times(2, {10, 25, 40, 0, 0, 0}), run(3));
}

TEST(Raw16ToBGR, OddWidthKeepsToItsLines) {
  const Bytes src = {10, 1, 20, 2, 30, 3, 40, 4, 50, 5, 60, 6};
  // Windows (10 20 / 40 50) and (20 30 / 50 60).
  const Bytes line = {50, 30, 10, 50, 40, 30, 0, 0, 0};
  EXPECT_EQ(times(2, line), convert(QVN_Raw16ToBGR, src, 3, 2, 0, 18));
}

}  // namespace
