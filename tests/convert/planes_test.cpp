/// The conversions to separate planes: against the slow reference for every count and colour, with wrapping
/// sizes and null planes, between inaccessible pages, and against worked numbers.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "reference/planes.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using reference::Planes;

struct Entry {
  const char* name;
  std::uint32_t (*library)(Planes planes, const std::uint8_t* src, std::uint32_t width, std::uint32_t height);
  void (*reference)(Planes planes, const std::uint8_t* src, std::uint32_t count);
  std::uint32_t group_pixels;
  std::uint32_t group_bytes;
  bool with_luma;
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

const std::array<Entry, 7> kEntries = {{
    {"YUV444ToRGBPlanes",
     [](Planes to, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
       return QVN_YUV444ToRGBPlanes(to.r, to.g, to.b, src, width, height);
     },
     reference::YUV444ToRGBPlanes, 1, 3, false},
    {"YUV422ToRGBPlanes",
     [](Planes to, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
       return QVN_YUV422ToRGBPlanes(to.r, to.g, to.b, src, width, height);
     },
     reference::YUV422ToRGBPlanes, 2, 4, false},
    {"YUV411ToRGBPlanes",
     [](Planes to, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
       return QVN_YUV411ToRGBPlanes(to.r, to.g, to.b, src, width, height);
     },
     reference::YUV411ToRGBPlanes, 4, 6, false},
    {"YUV444ToRGBYPlanes",
     [](Planes to, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
       return QVN_YUV444ToRGBYPlanes(to.r, to.g, to.b, to.y, src, width, height);
     },
     reference::YUV444ToRGBYPlanes, 1, 3, true},
    {"YUV422ToRGBYPlanes",
     [](Planes to, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
       return QVN_YUV422ToRGBYPlanes(to.r, to.g, to.b, to.y, src, width, height);
     },
     reference::YUV422ToRGBYPlanes, 2, 4, true},
    {"YUV411ToRGBYPlanes",
     [](Planes to, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
       return QVN_YUV411ToRGBYPlanes(to.r, to.g, to.b, to.y, src, width, height);
     },
     reference::YUV411ToRGBYPlanes, 4, 6, true},
    {"RGB8ToRGBYPlanes",
     [](Planes to, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
       return QVN_RGB8ToRGBYPlanes(to.r, to.g, to.b, to.y, src, width, height);
     },
     reference::RGB8ToRGBYPlanes, 1, 3, true},
}};

/// Four planes of `stride` bytes, one behind the other.
Planes planes_at(std::uint8_t* base, std::size_t stride) {
  return {base, base + stride, base + 2 * stride, base + 3 * stride};
}

class ToPlanes : public testing::TestWithParam<Entry> {
 protected:
  std::size_t bytes_in(std::uint32_t count) const {
    return std::size_t{count / GetParam().group_pixels} * GetParam().group_bytes;
  }
  std::size_t bytes_out(std::uint32_t count) const {
    return std::size_t{count / GetParam().group_pixels} * GetParam().group_pixels;
  }

  /// Planes with gaps between them, all in one arena. `count` is what width * height makes in 32 bits.
  testing::AssertionResult matches(std::uint32_t width, std::uint32_t height, std::uint32_t count,
                                   support::Random& random, std::size_t gap = 37,
                                   std::size_t src_offset = 0) const {
    const std::size_t stride = count + gap;
    auto same = support::same_effect(
        support::Room{.size = 4 * stride, .line_bytes = stride},
        support::Room{.size = bytes_in(count), .before = 64 + src_offset}, random,
        [&](std::uint8_t* dst, const std::uint8_t* src) {
          return GetParam().library(planes_at(dst, stride), src, width, height);
        },
        [&](std::uint8_t* dst, const std::uint8_t* src) {
          GetParam().reference(planes_at(dst, stride), src, count);
        });
    if (same) return same;
    return same << "; each line is a plane; width " << width << ", height " << height << ", gap " << gap;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, ToPlanes, testing::ValuesIn(kEntries),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(ToPlanes, EqualsReferenceForEveryCount) {
  support::Random random(1);
  for (std::uint32_t count : support::run_counts()) {
    ASSERT_TRUE(matches(count, 1, count, random));
    ASSERT_TRUE(matches(1, count, count, random));
  }
  for (std::uint32_t width : {2U, 3U, 17U, 33U}) {
    for (std::uint32_t height : {2U, 3U, 5U, 31U}) {
      ASSERT_TRUE(matches(width, height, width * height, random));
    }
  }
}

TEST_P(ToPlanes, NeedsNoAlignment) {
  support::Random random(2);
  for (std::size_t gap = 0; gap < 20; ++gap) {
    for (std::size_t src_offset = 0; src_offset < 4; ++src_offset) {
      ASSERT_TRUE(matches(64, 3, 192, random, gap, src_offset));
    }
  }
}

TEST_P(ToPlanes, SizesWrapAtThirtyTwoBits) {
  support::Random random(3);
  EXPECT_TRUE(matches(65536, 65536, 0, random));
  EXPECT_TRUE(matches(65537, 65536, 65536, random));
  EXPECT_TRUE(matches(0x80000001, 2, 2, random));
  EXPECT_TRUE(matches(0xFFFFFFFF, 0xFFFFFFFF, 1, random));
  EXPECT_TRUE(matches(0, 0xFFFFFFFF, 0, random));
}

TEST_P(ToPlanes, TouchesNothingOutsideOfItsGroups) {
  support::Random random(4);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::uint32_t count = GetParam().group_pixels; count <= 300; ++count) {
      support::GuardedBuffer src(bytes_in(count), flush);
      random.fill(src.data(), src.size());
      std::array<std::unique_ptr<support::GuardedBuffer>, 4> planes;
      for (auto& plane : planes) plane = std::make_unique<support::GuardedBuffer>(bytes_out(count), flush);
      const Planes to = {planes[0]->data(), planes[1]->data(), planes[2]->data(), planes[3]->data()};
      ASSERT_EQ(QVN_OK, GetParam().library(to, src.data(), count, 1));

      Bytes expected(4 * bytes_out(count));
      GetParam().reference(planes_at(expected.data(), bytes_out(count)), src.data(), count);
      for (std::size_t k = 0; k < (GetParam().with_luma ? 4U : 3U); ++k) {
        ASSERT_EQ(0, std::memcmp(&expected[k * bytes_out(count)], planes[k]->data(), bytes_out(count)))
            << "plane " << k << ", count " << count;
      }
    }
  }
}

TEST_P(ToPlanes, CountsBelowAGroupTouchNothing) {
  support::GuardedBuffer none(1, support::Flush::kEnd);
  std::uint8_t* closed = none.data() + 1;
  for (std::uint32_t count = 0; count < GetParam().group_pixels; ++count) {
    EXPECT_EQ(QVN_OK, GetParam().library({closed, closed, closed, closed}, closed, count, 1));
    EXPECT_EQ(QVN_OK, GetParam().library({closed, closed, closed, closed}, closed, 1, count));
  }
}

/// Planes that share bytes: the order of the writes decides.
TEST_P(ToPlanes, PlanesMayShareMemory) {
  support::Random random(9);
  for (std::uint32_t count : {4U, 64U, 100U, 257U}) {
    for (std::size_t g : {0U, 1U, 7U, 32U}) {
      for (std::size_t b : {0U, 1U, 7U, 32U}) {
        for (std::size_t y : {0U, 1U, 32U, 400U}) {
          const auto planes = [=](std::uint8_t* dst) { return Planes{dst, dst + g, dst + b, dst + y}; };
          ASSERT_TRUE(support::same_effect(
              support::Room{.size = 700}, support::Room{.size = bytes_in(count)}, random,
              [&](std::uint8_t* dst, const std::uint8_t* src) {
                return GetParam().library(planes(dst), src, count, 1);
              },
              [&](std::uint8_t* dst, const std::uint8_t* src) {
                GetParam().reference(planes(dst), src, count);
              }))
              << "count " << count << ", planes at 0, " << g << ", " << b << ", " << y;
        }
      }
    }
  }
}

/// Every luma with every pair of chromas, or every red, green and blue.
TEST_P(ToPlanes, EqualsReferenceForEveryColour) {
  const std::uint32_t pixels = GetParam().group_pixels;
  constexpr std::uint32_t kCount = 65536;
  Bytes expected(std::size_t{4} * kCount);
  Bytes actual(std::size_t{4} * kCount);
  for (unsigned u = 0; u < 256; ++u) {
    Bytes src;
    for (unsigned v = 0; v < 256; ++v) {
      for (unsigned y = 0; y < 256; y += pixels) {
        src.push_back(static_cast<std::uint8_t>(u));
        for (unsigned k = 0; k < pixels; ++k) {
          if (k == pixels / 2 && pixels > 1) src.push_back(static_cast<std::uint8_t>(v));
          src.push_back(static_cast<std::uint8_t>(y + k));
        }
        if (pixels == 1) src.push_back(static_cast<std::uint8_t>(v));
      }
    }
    GetParam().reference(planes_at(expected.data(), kCount), src.data(), kCount);
    ASSERT_EQ(QVN_OK, GetParam().library(planes_at(actual.data(), kCount), src.data(), 256, 256));
    ASSERT_EQ(0, std::memcmp(expected.data(), actual.data(), expected.size())) << "first source byte " << u;
  }
}

/// All combinations of null arguments, with the status that the order of the tests gives.
TEST_P(ToPlanes, RefusesNullPointersInArgumentOrder) {
  const std::string name = GetParam().name;
  const bool unchecked = name == "YUV411ToRGBYPlanes";
  const bool rgb = name == "RGB8ToRGBYPlanes";
  const bool luma = GetParam().with_luma;
  Bytes bytes(64);
  for (unsigned present = 0; present < 32; ++present) {
    const auto pointer = [&](unsigned bit) { return (present >> bit & 1) != 0 ? bytes.data() : nullptr; };
    const Planes planes = {pointer(0), pointer(1), pointer(2), pointer(3)};
    const std::uint8_t* src = pointer(4);
    std::uint32_t expected = QVN_OK;
    if (unchecked) {
      expected = QVN_OK;
    } else if (rgb && planes.y != nullptr && planes.r == nullptr && planes.g == nullptr &&
               planes.b == nullptr) {
      expected = src == nullptr ? QVN_E_PARAM5 : QVN_OK;
    } else if (planes.r == nullptr) {
      expected = QVN_E_PARAM1;
    } else if (planes.g == nullptr) {
      expected = QVN_E_PARAM2;
    } else if (planes.b == nullptr) {
      expected = QVN_E_PARAM3;
    } else if (luma && !rgb && planes.y == nullptr) {
      expected = QVN_E_PARAM4;
    } else if (src == nullptr) {
      expected = luma ? QVN_E_PARAM5 : QVN_E_PARAM4;
    }
    EXPECT_EQ(expected, GetParam().library(planes, src, 0, 0)) << "present pointers " << present;
    if (expected != QVN_OK) {
      EXPECT_EQ(expected, GetParam().library(planes, src, 4, 4)) << "present pointers " << present;
    }
  }
  EXPECT_EQ(Bytes(64), bytes);
}

/// One group of a single luma; red, green, blue, luma of its first pixel.
Bytes one_colour(const Entry& entry, std::uint8_t y, std::uint8_t u, std::uint8_t v) {
  Bytes src = {u, y, v};
  if (entry.group_pixels == 2) src = {u, y, v, y};
  if (entry.group_pixels == 4) src = {u, y, y, v, y, y};
  Bytes dst(16, 0xA5);
  EXPECT_EQ(QVN_OK, entry.library(planes_at(dst.data(), 4), src.data(), entry.group_pixels, 1));
  return {dst[0], dst[4], dst[8], dst[12]};
}

TEST(PlaneTables, WorkedColours) {
  for (std::size_t index : {0U, 2U, 3U, 5U}) {
    const Entry& entry = kEntries[index];
    SCOPED_TRACE(entry.name);
    const auto luma = [&](std::uint8_t y) { return entry.with_luma ? y : std::uint8_t{0xA5}; };
    EXPECT_EQ((Bytes{200, 200, 200, luma(200)}), one_colour(entry, 200, 128, 128));
    // Red 255, green 255 - trunc(43.9 + 90.7) limited to -128 = 127, blue 255.
    EXPECT_EQ((Bytes{255, 127, 255, luma(255)}), one_colour(entry, 255, 255, 255));
    // Green delta 44.2 + 91.4 is limited to 127.
    EXPECT_EQ((Bytes{0, 127, 0, luma(0)}), one_colour(entry, 0, 0, 0));
    // The sum is truncated: 98.6 and 98.2.
    EXPECT_EQ((Bytes{98, 101, 98, luma(100)}), one_colour(entry, 100, 127, 127));
  }
}

TEST(PackedOffsets, WorkedColours) {
  for (std::size_t index : {1U, 4U}) {
    const Entry& entry = kEntries[index];
    SCOPED_TRACE(entry.name);
    const auto luma = [&](std::uint8_t y) { return entry.with_luma ? y : std::uint8_t{0xA5}; };
    EXPECT_EQ((Bytes{200, 200, 200, luma(200)}), one_colour(entry, 200, 128, 128));
    EXPECT_EQ((Bytes{255, 122, 255, luma(255)}), one_colour(entry, 255, 255, 255));
    EXPECT_EQ((Bytes{0, 135, 0, luma(0)}), one_colour(entry, 0, 0, 0));
    // Each offset is truncated: -1.4, 0.35 + 0.7 and -1.8.
    EXPECT_EQ((Bytes{99, 100, 99, luma(100)}), one_colour(entry, 100, 127, 127));
  }
}

TEST(YUV422ToRGBPlanes, OddCountLeavesTheLastPixelOut) {
  const Bytes src = {128, 10, 128, 20, 128, 30, 128, 40};
  Bytes dst(12, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_YUV422ToRGBPlanes(&dst[0], &dst[4], &dst[8], src.data(), 3, 1));
  EXPECT_EQ((Bytes{10, 20, 0xA5, 0xA5, 10, 20, 0xA5, 0xA5, 10, 20, 0xA5, 0xA5}), dst);
}

TEST(YUV411ToRGBPlanes, ThreePixelsWriteNothing) {
  const Bytes src(6, 128);
  Bytes dst(12, 0xA5);
  EXPECT_EQ(QVN_OK, QVN_YUV411ToRGBPlanes(&dst[0], &dst[4], &dst[8], src.data(), 3, 1));
  EXPECT_EQ(Bytes(12, 0xA5), dst);
}

TEST(YUV411ToRGBYPlanes, TestsNoPointer) {
  EXPECT_EQ(QVN_OK, QVN_YUV411ToRGBYPlanes(nullptr, nullptr, nullptr, nullptr, nullptr, 0, 0));
  EXPECT_EQ(QVN_OK, QVN_YUV411ToRGBYPlanes(nullptr, nullptr, nullptr, nullptr, nullptr, 3, 1));
}

TEST(YUV411ToRGBYPlanes, NullLumaPlaneIsSkipped) {
  support::Random random(5);
  for (std::uint32_t count : support::numbers(0, 300)) {
    Bytes src(6 * (count / 4) + 1);
    random.fill(src.data(), src.size());
    Bytes expected(3 * count + 3, 0xA5);
    Bytes actual = expected;
    reference::YUV411ToRGBYPlanes({&expected[0], &expected[count], &expected[2 * count], nullptr}, src.data(),
                                  count);
    ASSERT_EQ(QVN_OK, QVN_YUV411ToRGBYPlanes(&actual[0], &actual[count], &actual[2 * count], nullptr,
                                             src.data(), count, 1));
    ASSERT_EQ(expected, actual) << "count " << count;
  }
}

}  // namespace
