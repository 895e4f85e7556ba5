/// The arithmetic that stands in for the tables in vector rows: every chroma byte, every pair of them, every
/// luma. And the luma weights in floating point, for every colour.
#include "convert/chroma.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>

#include "convert/luma_float.h"

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

struct OffsetArray {
  explicit OffsetArray(Offset offset) : up(bytes_of(offset.up)), down(bytes_of(offset.down)) {}
  int at(size_t i) const { return up[i] - down[i]; }
  bool one_way(size_t i) const { return up[i] == 0 || down[i] == 0; }
  ByteArray up, down;
};

TEST(Chroma, MagnitudesForEveryDistance) {
  for (uint32_t first = 0; first <= 128; first += kLaneBytes) {
    const Bytes distance = counting(first);
    const ByteArray blue = bytes_of(scaled_1_771(distance)), red = bytes_of(scaled_1_4022(distance));
    const ByteArray green_u = bytes_of(scaled_0_3457(distance)), green_v = bytes_of(scaled_0_7144(distance));
    for (uint32_t i = 0; i < kLaneBytes && first + i <= 128; ++i) {
      const uint32_t m = first + i;
      ASSERT_EQ(blue[i], m * 1771 / 1000) << m;
      ASSERT_EQ(red[i], m * 14022 / 10000) << m;
      ASSERT_EQ(green_u[i], m * 3457 / 10000) << m;
      ASSERT_EQ(green_v[i], m * 7144 / 10000) << m;
    }
  }
}

TEST(Chroma, PackedOffsetsAreTheTablesForEveryPair) {
  for (uint32_t u = 0; u < 256; ++u) {
    for (uint32_t v = 0; v < 256; v += kLaneBytes) {
      const Rgb<Offset> offsets = PackedChroma::offsets(all(u), counting(v));
      const OffsetArray red(offsets.r), green(offsets.g), blue(offsets.b);
      for (uint32_t i = 0; i < kLaneBytes; ++i) {
        ASSERT_EQ(red.at(i), high_half(VTable[v + i]));
        ASSERT_EQ(blue.at(i), high_half(UTable[u]));
        ASSERT_EQ(green.at(i), low_half(UTable[u]) + low_half(VTable[v + i])) << u << " " << v + i;
        ASSERT_TRUE(red.one_way(i) && green.one_way(i) && blue.one_way(i));
      }
    }
  }
}

TEST(Chroma, PlaneGreenDeltaIsTheTableForEveryPair) {
  for (uint32_t u = 0; u < 256; ++u) {
    for (uint32_t v = 0; v < 256; v += kLaneBytes) {
      const OffsetArray green(PlaneChroma::offsets(all(u), counting(v)).g);
      for (uint32_t i = 0; i < kLaneBytes; ++i) {
        ASSERT_EQ(green.at(i), static_cast<int8_t>(PlaneGDeltaTable[u * 256 + v + i])) << u << " " << v + i;
        ASSERT_TRUE(green.one_way(i));
      }
    }
  }
}

/// Red and green by V and blue by U, for every luma; the other chroma byte runs along, so that all pairs of
/// neighbouring values are met.
TEST(Chroma, PlaneColoursAreTheTablesForEveryLuma) {
  for (uint32_t y = 0; y < 256; ++y) {
    for (uint32_t u = 0; u < 256; ++u) {
      for (uint32_t v = 0; v < 256; v += kLaneBytes) {
        const Rgb<Bytes> p = shift_clamped(all(y), PlaneChroma::offsets(all(u), counting(v)));
        const ByteArray red = bytes_of(p.r), green = bytes_of(p.g), blue = bytes_of(p.b);
        for (uint32_t i = 0; i < kLaneBytes; ++i) {
          const auto byte = [](uint32_t value) { return static_cast<uint8_t>(value); };
          const Rgb<uint32_t> expected = PlaneChroma::pixel(byte(y), byte(u), byte(v + i));
          ASSERT_EQ(red[i], expected.r) << y << " " << u << " " << v + i;
          ASSERT_EQ(green[i], expected.g) << y << " " << u << " " << v + i;
          ASSERT_EQ(blue[i], expected.b) << y << " " << u << " " << v + i;
        }
      }
    }
  }
}

TEST(Chroma, PackedColoursAreTheTablesForEveryLuma) {
  for (uint32_t y = 0; y < 256; ++y) {
    for (uint32_t u = 0; u < 256; ++u) {
      for (uint32_t v = 0; v < 256; v += kLaneBytes) {
        const Rgb<Bytes> p = shift_clamped(all(y), PackedChroma::offsets(all(u), counting(v)));
        const ByteArray red = bytes_of(p.r), green = bytes_of(p.g), blue = bytes_of(p.b);
        for (uint32_t i = 0; i < kLaneBytes; ++i) {
          const auto byte = [](uint32_t value) { return static_cast<uint8_t>(value); };
          const Rgb<uint32_t> expected = PackedChroma::pixel(byte(y), byte(u), byte(v + i));
          ASSERT_EQ(red[i], expected.r) << y << " " << u << " " << v + i;
          ASSERT_EQ(green[i], expected.g) << y << " " << u << " " << v + i;
          ASSERT_EQ(blue[i], expected.b) << y << " " << u << " " << v + i;
        }
      }
    }
  }
}

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
    const auto r = static_cast<uint8_t>(i >> 16), g = static_cast<uint8_t>(i >> 8), b = static_cast<uint8_t>(i);
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
