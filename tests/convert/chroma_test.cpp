/// The arithmetic that stands in for the tables in vector rows: every chroma byte, every pair of them, every
/// luma. And the luma weights in floating point, for every colour.
#include "convert/chroma.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>

#include "convert/luma_float.h"
#include "convert/yuv_rows.h"

namespace qvn {
namespace {

using ByteArray = std::array<uint8_t, kLaneBytes>;

ByteArray bytes_of(Bytes lanes) {
  ByteArray bytes;
  store(bytes.data(), lanes);
  return bytes;
}

Bytes all(uint32_t value) { return Bytes{} + static_cast<uint8_t>(value); }

/// first, first + 1, ...
Bytes counting(uint32_t first) {
  ByteArray bytes;
  for (uint32_t i = 0; i < kLaneBytes; ++i) bytes[i] = static_cast<uint8_t>(first + i);
  return load<Bytes>(bytes.data());
}

using WordArray = std::array<int16_t, kLaneBytes / 2>;

WordArray words_of(SignedWords lanes) {
  WordArray words;
  std::memcpy(words.data(), &lanes, sizeof lanes);
  return words;
}

SignedWords chroma_word(uint32_t chroma) { return all_words(static_cast<int16_t>(4 * chroma - 512)); }

SignedWords counting_chroma(uint32_t first) {
  SignedWords words{};
  for (int i = 0; i < kLaneBytes / 2; ++i)
    words[i] = static_cast<int16_t>(4 * (static_cast<int>(first) + i) - 512);
  return words;
}

/// U and first, U and first + 1, ...
SignedWords counting_pairs(uint32_t u, uint32_t first) {
  SignedWords words{};
  for (int i = 0; i < kLaneBytes / 2; ++i) {
    const int chroma = i % 2 == 0 ? static_cast<int>(u) : static_cast<int>(first) + i / 2;
    words[i] = static_cast<int16_t>(4 * chroma - 512);
  }
  return words;
}

TEST(Chroma, BytesToWords) {
  for (uint32_t first = 0; first < 256; first += kLaneBytes) {
    const Bytes bytes = counting(first);
    const WordArray low = words_of(chroma_low(bytes)), high = words_of(chroma_high(bytes));
    const WordArray even = words_of(chroma_even(bytes));
    for (uint32_t i = 0; i < kLaneBytes / 2; ++i) {
      const uint32_t place = first + i / 8 * 16 + i % 8;
      ASSERT_EQ(low[i], 4 * (static_cast<int>(place) - 128));
      ASSERT_EQ(high[i], 4 * (static_cast<int>(place) + 8 - 128));
      ASSERT_EQ(even[i], 4 * (static_cast<int>(first + 2 * i) - 128));
    }
  }
}

TEST(Chroma, PackedOffsetsAreTheTablesForEveryPair) {
  for (uint32_t u = 0; u < 256; ++u) {
    for (uint32_t v = 0; v < 256; v += kLaneBytes / 2) {
      const Rgb<SignedWords> p = PackedChroma::colours(SignedWords{}, chroma_word(u), counting_chroma(v));
      const WordArray red = words_of(p.r), green = words_of(p.g), blue = words_of(p.b);
      for (uint32_t i = 0; i < kLaneBytes / 2; ++i) {
        ASSERT_EQ(red[i], high_half(VTable[v + i]));
        ASSERT_EQ(green[i], low_half(UTable[u]) + low_half(VTable[v + i])) << u << " " << v + i;
        ASSERT_EQ(blue[i], high_half(UTable[u]));
      }
    }
  }
}

/// The form for pairs of pixels equals the one for single pixels, for every pair of chroma bytes.
template <class Arithmetic>
void compare_pairs_with_singles() {
  for (uint32_t u = 0; u < 256; ++u) {
    for (uint32_t v = 0; v < 256; v += kLaneBytes / 4) {
      const Rgb<SignedWords> p = Arithmetic::colours_of_pairs(all_words(7), counting_pairs(u, v));
      const Rgb<SignedWords> q = Arithmetic::colours(all_words(7), chroma_word(u), counting_chroma(v));
      for (int i = 0; i < kLaneBytes / 2; ++i) {
        ASSERT_EQ(p.r[i], q.r[i / 2]);
        ASSERT_EQ(p.g[i], q.g[i / 2]);
        ASSERT_EQ(p.b[i], q.b[i / 2]);
      }
    }
  }
}

TEST(Chroma, PackedPairsAreSingles) { compare_pairs_with_singles<PackedChroma>(); }
TEST(Chroma, PlanePairsAreSingles) { compare_pairs_with_singles<PlaneChroma>(); }

TEST(Chroma, PlaneGreenDeltaIsTheTableForEveryPair) {
  for (uint32_t u = 0; u < 256; ++u) {
    for (uint32_t v = 0; v < 256; v += kLaneBytes / 2) {
      const WordArray green =
          words_of(PlaneChroma::colours(SignedWords{}, chroma_word(u), counting_chroma(v)).g);
      for (uint32_t i = 0; i < kLaneBytes / 2; ++i) {
        ASSERT_EQ(green[i], static_cast<int8_t>(PlaneGDeltaTable[u * 256 + v + i])) << u << " " << v + i;
      }
    }
  }
}

template <class Arithmetic>
void compare_every_colour() {
  const auto byte = [](uint32_t value) { return static_cast<uint8_t>(value); };
  for (uint32_t y = 0; y < 256; ++y) {
    for (uint32_t u = 0; u < 256; ++u) {
      for (uint32_t v = 0; v < 256; v += kLaneBytes) {
        const Bytes vs = counting(v);
        const SignedWords luma = all_words(static_cast<int16_t>(y));
        const Rgb<Bytes> p = narrow_to_bytes(Arithmetic::colours(luma, chroma_word(u), chroma_low(vs)),
                                             Arithmetic::colours(luma, chroma_word(u), chroma_high(vs)));
        const ByteArray red = bytes_of(p.r), green = bytes_of(p.g), blue = bytes_of(p.b);
        for (uint32_t i = 0; i < kLaneBytes; ++i) {
          const Rgb<uint32_t> expected = Arithmetic::pixel(byte(y), byte(u), byte(v + i));
          ASSERT_EQ(red[i], expected.r) << y << " " << u << " " << v + i;
          ASSERT_EQ(green[i], expected.g) << y << " " << u << " " << v + i;
          ASSERT_EQ(blue[i], expected.b) << y << " " << u << " " << v + i;
        }
      }
    }
  }
}

TEST(Chroma, PackedColoursAreTheTablesForEveryPixel) { compare_every_colour<PackedChroma>(); }
TEST(Chroma, PlaneColoursAreTheTablesForEveryPixel) { compare_every_colour<PlaneChroma>(); }

/// Every colour, through volatile sums: each rounding is the type's own.
template <class Number, class Luma>
void compare_luma_of_every_colour(Number red, Number green, Number blue, bool green_first, Luma luma) {
  for (uint32_t r = 0; r < 256; ++r) {
    for (uint32_t g = 0; g < 256; ++g) {
      const volatile Number by_red = static_cast<Number>(r) * red;
      const volatile Number by_green = static_cast<Number>(g) * green;
      const volatile Number two = green_first ? by_green + by_red : by_red + by_green;
      for (uint32_t b = 0; b < 256; b += kLaneBytes) {
        const ByteArray lanes = bytes_of(luma(Rgb<Bytes>{all(r), all(g), counting(b)}));
        for (uint32_t i = 0; i < kLaneBytes; ++i) {
          const volatile Number by_blue = static_cast<Number>(b + i) * blue;
          const volatile Number sum = two + by_blue;
          ASSERT_EQ(lanes[i], static_cast<uint32_t>(sum)) << r << " " << g << " " << b + i;
        }
      }
    }
  }
}

TEST(LumaFloat, DoublesOfEveryColour) {
  compare_luma_of_every_colour<double>(0.21, 0.72, 0.07, true,
                                       [](const Rgb<Bytes>& p) { return luma_by_doubles(p); });
}

TEST(LumaFloat, SinglesOfEveryColour) {
  compare_luma_of_every_colour<float>(0.299F, 0.587F, 0.114F, false,
                                      [](const Rgb<Bytes>& p) { return luma_by_singles(p); });
}

TEST(LumaFloat, OnePixelIsOneLane) {
  for (uint32_t i = 0; i < 0x1000000; i += 251) {
    const auto r = static_cast<uint8_t>(i >> 16), g = static_cast<uint8_t>(i >> 8),
               b = static_cast<uint8_t>(i);
    const Rgb<Bytes> p{all(r), all(g), all(b)};
    ASSERT_EQ(luma_by_doubles(r, g, b), luma_by_doubles(p)[0]);
    ASSERT_EQ(luma_by_singles(r, g, b), luma_by_singles(p)[0]);
  }
}

TEST(LumaFloat, GreysThatAreNotKept) {
  EXPECT_EQ(luma_by_doubles(255, 255, 255), 254);
  EXPECT_EQ(luma_by_doubles(10, 10, 10), 9);
  EXPECT_EQ(luma_by_doubles(0, 0, 0), 0);
  EXPECT_EQ(luma_by_singles(255, 255, 255), 255);
  EXPECT_EQ(luma_by_singles(37, 37, 37), 36);
}

}  // namespace
}  // namespace qvn
