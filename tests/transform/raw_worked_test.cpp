/// The 2x2 transforms of 8-bit depth against numbers worked out by hand: the line ends, the exchanged column
/// before the last, studio 4:2:2, the fourth bytes, and what they share with the plain demosaics.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <vector>

#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Bytes = std::vector<std::uint8_t>;
using Library = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, std::uint32_t, std::uint32_t,
                                  std::uint32_t, std::uint32_t);

struct Size {
  std::uint32_t width;
  std::uint32_t height;
};

/// Whatever is not written stays 0xA5.
Bytes convert(Library library, std::uint32_t target, const Bytes& src, Size size, std::uint32_t pattern,
              std::size_t dst_bytes) {
  Bytes dst(dst_bytes, 0xA5);
  EXPECT_EQ(QVN_OK, library(dst.data(), src.data(), size.width, size.height, target, pattern));
  return dst;
}

Bytes twice(Bytes line) {
  const Bytes once = line;
  line.insert(line.end(), once.begin(), once.end());
  return line;
}

Bytes random_bytes(std::size_t count, std::uint64_t stream) {
  support::Random random(stream);
  Bytes bytes(count);
  random.fill(bytes.data(), count);
  return bytes;
}

/// B G over G R, and R G over G B: blue 10 and red 200, greens 90 and 111 with the mean 100.
const Bytes kBlueFirst = {10, 90, 111, 200};
const Bytes kRedFirst = {200, 90, 111, 10};

constexpr Size kTwoByTwo = {2, 2};

TEST(Raw8ImageTransform, WidthTwoInEvenColumnPhase) {
  const auto run = [](std::uint32_t target, std::size_t bytes) {
    return convert(QVN_Raw8ImageTransform, target, kRedFirst, kTwoByTwo, 0, bytes);
  };
  // 15000 + 15400 + 290 = 30690; 18400 + 18 * 610 + 128 = 29508.
  EXPECT_EQ(twice({119, 119}), run(0, 4));
  EXPECT_EQ(twice({10, 100, 200, 10, 100, 200}), run(1, 12));
  EXPECT_EQ(twice({10, 100, 200, 0xA5, 10, 100, 200, 0xA5}), run(2, 16));
  EXPECT_EQ(twice({115, 115}), run(3, 4));
  // Y (12900 + 250 + 13200 + 128) >> 8 = 103, U (1120 - 7400 - 7600 + 128) >> 8 = -54, V (22400 - 9400 - 180
  // + 128) >> 8 = 50.
  EXPECT_EQ(twice({74, 119, 178, 119}), run(4, 8));
}

/// The first of the two columns is the one before the last: red and blue are exchanged in it alone.
TEST(Raw8ImageTransform, WidthTwoInOddColumnPhase) {
  const auto run = [](std::uint32_t target, std::size_t bytes) {
    return convert(QVN_Raw8ImageTransform, target, kBlueFirst, kTwoByTwo, 3, bytes);
  };
  // Exchanged: 15000 + 770 + 5800 = 21570, and 18400 + 18 * 230 + 128 = 22668.
  EXPECT_EQ(twice({84, 119}), run(0, 4));
  EXPECT_EQ(twice({200, 100, 10, 10, 100, 200}), run(1, 12));
  EXPECT_EQ(twice({200, 100, 10, 0xA5, 10, 100, 200, 0xA5}), run(2, 16));
  EXPECT_EQ(twice({88, 115}), run(3, 4));
  // Exchanged: Y (12900 + 5000 + 660 + 128) >> 8 = 73, U (22400 - 7400 - 380 + 128) >> 8 = 57, V (1120 - 9400
  // - 3600 + 128) >> 8 = -46. The pair has the means of 185 and 74, and of 82 and 178.
  EXPECT_EQ(twice({129, 89, 130, 119}), run(4, 8));
}

/// Internal code 1, G R over B G, is public code 2: the exchange there, and none in public code 1, whose
/// column phase is even.
TEST(Raw8ImageTransform, ExchangeHangsOnTheInternalCode) {
  EXPECT_EQ(twice({200, 100, 10, 10, 100, 200}),
            convert(QVN_Raw8ImageTransform, 1, {90, 200, 10, 111}, kTwoByTwo, 2, 12));
  EXPECT_EQ(twice({10, 100, 200, 10, 100, 200}),
            convert(QVN_Raw8ImageTransform, 1, {90, 10, 200, 111}, kTwoByTwo, 1, 12));
}

TEST(Raw8ImageTransform, ColumnsOfAWiderLine) {
  // B G B G over G R G R. Windows: (10 90 / 111 200), (90 30 / 200 51), (30 71 / 51 220).
  const Bytes src = {10, 90, 30, 71, 111, 200, 51, 220};
  EXPECT_EQ(twice({10, 100, 200, 30, 70, 200, 220, 61, 30, 30, 61, 220}),
            convert(QVN_Raw8ImageTransform, 1, src, {4, 2}, 3, 24));
  // The same samples as R G R G over G B G B: no exchange, and the last two columns alike.
  EXPECT_EQ(twice({200, 100, 10, 200, 70, 30, 220, 61, 30, 220, 61, 30}),
            convert(QVN_Raw8ImageTransform, 1, src, {4, 2}, 0, 24));
}

TEST(Raw8ImageTransform, StudioRangeOfThePrimaries) {
  const auto run = [](const Bytes& window) {
    return convert(QVN_Raw8ImageTransform, 4, window, kTwoByTwo, 0, 8);
  };
  EXPECT_EQ(twice({128, 16, 128, 16}), run({0, 0, 0, 0}));
  EXPECT_EQ(twice({128, 235, 128, 235}), run({255, 255, 255, 255}));  // 56100 + 128 = 219 * 256 + 164
  EXPECT_EQ(twice({90, 82, 240, 82}), run({255, 0, 0, 0}));           // 16958, -9562, 28688
  EXPECT_EQ(twice({54, 144, 34, 144}), run({0, 255, 255, 0}));        // 33023, -18742, -23842
  EXPECT_EQ(twice({240, 41, 110, 41}), run({0, 0, 0, 255}));          // 6503, 28688, -4462
}

/// Blue 10, green 100, red 204: V is (1120 - 9400 - 3672 + 128) >> 8 = -47 exchanged and (22848 - 9400 - 180
/// + 128) >> 8 = 52, of 81 and 180 the mean of 130 and a half.
TEST(Raw8ImageTransform, MeansOfChromaAreCut) {
  EXPECT_EQ(twice({130, 89, 130, 120}),
            convert(QVN_Raw8ImageTransform, 4, {10, 90, 111, 204}, kTwoByTwo, 3, 8));
}

TEST(Raw8ImageTransform, GreyKeepsItsValue) {
  for (unsigned value = 0; value < 256; ++value) {
    const auto grey = static_cast<std::uint8_t>(value);
    const auto studio = static_cast<std::uint8_t>(((220 * value + 128) >> 8) + 16);
    const Bytes src(38 * 4, grey);
    for (std::uint32_t pattern : numbers(0, 3)) {
      for (std::uint32_t target : {0U, 1U, 3U}) {
        const std::size_t bytes = src.size() * (target == 1 ? 3 : 1);
        ASSERT_EQ(Bytes(bytes, grey), convert(QVN_Raw8ImageTransform, target, src, {38, 4}, pattern, bytes));
      }
      const Bytes pairs = convert(QVN_Raw8ImageTransform, 4, src, {38, 4}, pattern, 2 * src.size());
      for (std::size_t i = 0; i < pairs.size(); ++i) ASSERT_EQ(i % 2 == 0 ? 128 : studio, pairs[i]);
    }
  }
}

TEST(Raw8ImageTransform, HeightTwoIsALineAndItsCopy) {
  const Bytes src = random_bytes(34 * 2, 401);
  for (std::uint32_t target : numbers(0, 4)) {
    const std::size_t line = std::size_t{34} * std::vector<std::size_t>{1, 3, 4, 1, 2}[target];
    const Bytes dst = convert(QVN_Raw8ImageTransform, target, src, {34, 2}, 3, 2 * line);
    const auto middle = dst.begin() + static_cast<std::ptrdiff_t>(line);
    EXPECT_TRUE(std::equal(dst.begin(), middle, middle)) << "target " << target;
  }
}

/// The plain demosaic but for the column before the last of odd column phases, where red and blue change
/// places; the plain one's last column is a copy of that, and the right form here.
TEST(Raw8ImageTransform, BgrIsThePlainDemosaicButForTheExchange) {
  constexpr std::uint32_t kWidth = 70;
  constexpr std::uint32_t kHeight = 9;
  const Bytes src = random_bytes(kWidth * kHeight, 402);
  for (std::uint32_t pattern : numbers(0, 3)) {
    Bytes expected(3 * src.size());
    QVN_Raw8ToBGR(expected.data(), src.data(), kWidth, kHeight, pattern);
    if (pattern >= 2) {
      for (std::size_t y = 0; y < kHeight; ++y) {
        std::uint8_t* const before_last = &expected[(y * kWidth + kWidth - 2) * 3];
        std::swap(before_last[0], before_last[2]);
      }
    }
    EXPECT_EQ(expected, convert(QVN_Raw8ImageTransform, 1, src, {kWidth, kHeight}, pattern, expected.size()));
  }
}

TEST(Raw8ImageTransform, LumaIsThePlainOneInEvenColumnPhase) {
  const Bytes src = random_bytes(70 * 9, 403);
  for (std::uint32_t pattern : {0U, 1U}) {
    Bytes expected(src.size());
    QVN_Raw8ToY8(expected.data(), src.data(), 70, 9, pattern);
    EXPECT_EQ(expected, convert(QVN_Raw8ImageTransform, 0, src, {70, 9}, pattern, expected.size()));
  }
}

/// Width 3 makes four pixels a line at an unchanged source pitch; each output line begins where the last one
/// ended, and the last line is three pixels, copied.
TEST(Raw8ImageTransform, OddWidthWritesOnePixelMoreALine) {
  // Windows (10 20 / 40 50), (20 30 / 50 60), (30 40 / 60 70): the third one reaches into the next line and
  // behind the frame. Column 2 is an exchanged tail, column 3 its right form, in odd column phase.
  const Bytes src = {10, 20, 30, 40, 50, 60, 70};
  EXPECT_EQ((Bytes{50, 30, 10, 50, 40, 30, 70, 50, 30, 70,  50, 30,  //
                   50, 40, 30, 70, 50, 30, 70, 50, 30, 0xA5}),
            convert(QVN_Raw8ImageTransform, 1, src, {3, 2}, 0, 22));
  EXPECT_EQ((Bytes{10, 30, 50, 30, 40, 50, 70, 50, 30, 30,  50, 70,  //
                   30, 40, 50, 70, 50, 30, 30, 50, 70, 0xA5}),
            convert(QVN_Raw8ImageTransform, 1, src, {3, 2}, 3, 22));
}

/// A line of width 3 is two whole groups, and the last line is the one group that 3 >> 1 pairs have.
TEST(Raw8ImageTransform, OddWidthKeepsThePairsOf422) {
  // Grey: 100 makes Y (22000 + 128) >> 8 = 86.
  const Bytes line = {128, 102, 128, 102, 128, 102, 128, 102};
  Bytes expected = twice(line);
  expected.insert(expected.end(), {128, 102, 128, 102, 0xA5, 0xA5});
  EXPECT_EQ(expected, convert(QVN_Raw8ImageTransform, 4, Bytes(10, 100), {3, 3}, 0, 22));
}

/// Fourth bytes stay the caller's on every line but the last, whose copy brings those of the line above.
template <typename FourthByte>
void expect_fourth_bytes(Library library, std::size_t src_bytes, FourthByte fourth) {
  constexpr std::uint32_t kWidth = 38;
  constexpr std::uint32_t kHeight = 5;
  const Bytes src = random_bytes(src_bytes * kWidth * kHeight, 404);
  const Bytes before = random_bytes(std::size_t{4} * kWidth * kHeight, 405);
  for (std::uint32_t pattern : numbers(0, 3)) {
    Bytes dst = before;
    ASSERT_EQ(QVN_OK, library(dst.data(), src.data(), kWidth, kHeight, 2, pattern));
    for (std::size_t y = 0; y < kHeight; ++y) {
      for (std::size_t x = 0; x < kWidth; ++x) {
        const std::size_t from = fourth(y, x, kWidth, kHeight);
        ASSERT_EQ(before[4 * from + 3], dst[4 * (y * kWidth + x) + 3]) << "line " << y << ", column " << x;
      }
    }
  }
}

std::size_t own_but_in_the_last_line(std::size_t y, std::size_t x, std::size_t width, std::size_t height) {
  return std::min(y, height - 2) * width + x;
}

TEST(FourthBytes, StayTheCallersButInTheLastLine) {
  expect_fourth_bytes(QVN_Raw8ImageTransform, 1, own_but_in_the_last_line);
  expect_fourth_bytes(QVN_Raw12ImageTransform, 2, own_but_in_the_last_line);
  expect_fourth_bytes(QVN_Raw16ImageTransform, 2, own_but_in_the_last_line);
  expect_fourth_bytes(
      [](std::uint8_t* dst, const std::uint8_t* src, std::uint32_t width, std::uint32_t height,
         std::uint32_t target, std::uint32_t pattern) {
        const SampleFormatBlock block = {0, 1, 12, 0, pattern};
        return QVN_Raw16ImageTransformEx(dst, src, width, height, target, &block);
      },
      2, own_but_in_the_last_line);
}

/// Whole pixels and lines are copied to the border: the fourth byte comes from the nearest inner pixel.
TEST(FourthBytes, ComeWithTheCopiesOf3x3) {
  expect_fourth_bytes(
      QVN_Raw8ImageTransform_3x3, 1, [](std::size_t y, std::size_t x, std::size_t width, std::size_t height) {
        return std::clamp(y, std::size_t{1}, height - 2) * width + std::clamp(x, std::size_t{1}, width - 2);
      });
}

TEST(Raw12ImageTransform, TakesTheOuterBytesAndHasNoExchange) {
  // Two samples a group, the byte between them without influence.
  for (std::uint8_t nibbles : Bytes{0x00, 0xFF}) {
    const Bytes src = {10, nibbles, 90, 111, nibbles, 200};
    const auto run = [&](std::uint32_t target, std::uint32_t pattern, std::size_t bytes) {
      return convert(QVN_Raw12ImageTransform, target, src, kTwoByTwo, pattern, bytes);
    };
    EXPECT_EQ(twice({119, 119}), run(0, 3, 4));
    EXPECT_EQ(twice({10, 100, 200, 10, 100, 200}), run(1, 3, 12));
    EXPECT_EQ(twice({200, 100, 10, 200, 100, 10}), run(1, 0, 12));
    EXPECT_EQ(twice({10, 100, 200, 0xA5, 10, 100, 200, 0xA5}), run(2, 3, 16));
    EXPECT_EQ(twice({115, 115}), run(3, 3, 4));
  }
}

TEST(Raw12ImageTransform, IsThePlain8BitDemosaicOfTheTopBytes) {
  constexpr std::uint32_t kWidth = 70;
  constexpr std::uint32_t kHeight = 9;
  const Bytes top = random_bytes(kWidth * kHeight, 406);
  const Bytes nibbles = random_bytes(top.size() / 2, 407);
  Bytes src;
  for (std::size_t i = 0; i < top.size(); i += 2) {
    src.insert(src.end(), {top[i], nibbles[i / 2], top[i + 1]});
  }
  for (std::uint32_t pattern : numbers(0, 3)) {
    Bytes bgr(3 * top.size());
    QVN_Raw8ToBGR(bgr.data(), top.data(), kWidth, kHeight, pattern);
    EXPECT_EQ(bgr, convert(QVN_Raw12ImageTransform, 1, src, {kWidth, kHeight}, pattern, bgr.size()));
    Bytes luma(top.size());
    QVN_Raw8ToY8(luma.data(), top.data(), kWidth, kHeight, pattern);
    EXPECT_EQ(luma, convert(QVN_Raw12ImageTransform, 0, src, {kWidth, kHeight}, pattern, luma.size()));
  }
}

TEST(Raw16ImageTransform, TakesTheFirstByteAndLeavesTheLastColumnBlack) {
  const Bytes src = {10, 0xFF, 90, 0xFF, 111, 0xFF, 200, 0xFF};
  const auto run = [&](std::uint32_t target, std::size_t bytes) {
    return convert(QVN_Raw16ImageTransform, target, src, kTwoByTwo, 3, bytes);
  };
  EXPECT_EQ(twice({10, 100, 200, 0, 0, 0}), run(1, 12));
  EXPECT_EQ(twice({10, 100, 200, 0xA5, 0, 0, 0, 0xA5}), run(2, 16));
  EXPECT_EQ(twice({115, 0}), run(3, 4));
}

/// The mono frame of the first weights, 119 here, is made and then written over by that of the second.
TEST(Raw16ImageTransform, Target0IsTarget3) {
  const Bytes window = {10, 0xFF, 90, 0xFF, 111, 0xFF, 200, 0xFF};
  EXPECT_EQ(twice({115, 0}), convert(QVN_Raw16ImageTransform, 0, window, kTwoByTwo, 3, 4));
  const Bytes src = random_bytes(std::size_t{2} * 71 * 9, 408);
  for (std::uint32_t pattern : numbers(0, 3)) {
    EXPECT_EQ(convert(QVN_Raw16ImageTransform, 3, src, {71, 9}, pattern, 71 * 9),
              convert(QVN_Raw16ImageTransform, 0, src, {71, 9}, pattern, 71 * 9));
  }
}

TEST(Raw16ImageTransform, BgrIsThePlainDemosaic) {
  for (std::uint32_t width : {70U, 71U}) {
    const Bytes src = random_bytes(std::size_t{2} * width * 9, 409);
    for (std::uint32_t pattern : numbers(0, 3)) {
      Bytes expected(std::size_t{3} * width * 9);
      QVN_Raw16ToBGR(expected.data(), src.data(), width, 9, pattern);
      EXPECT_EQ(expected, convert(QVN_Raw16ImageTransform, 1, src, {width, 9}, pattern, expected.size()));
    }
  }
}

}  // namespace
