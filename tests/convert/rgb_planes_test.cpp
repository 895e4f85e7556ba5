/// QVN_RGB8ToRGBYPlanes where it differs from its sisters: luma read back from the planes, planes that
/// overlap or lie on the source, and the luma plane that may be null or alone.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <array>
#include <vector>

#include "reference/planes.h"
#include "support/compare.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using reference::Planes;

TEST(RGB8ToRGBYPlanes, NullLumaPlaneGivesTheColours) {
  support::Random random(6);
  std::vector<std::uint32_t> counts = support::numbers(0, 300);
  // Long rows go on from where their red plane begins a line of cache; the count is the planes' distance.
  for (std::uint32_t count : support::numbers(4080, 4240)) counts.push_back(count);
  for (std::uint32_t count : counts) {
    Bytes src(3 * count + 1);
    random.fill(src.data(), src.size());
    Bytes expected(3 * count + 3, 0xA5);
    Bytes actual = expected;
    reference::RGB8ToRGBYPlanes({&expected[0], &expected[count], &expected[2 * count], nullptr}, src.data(),
                                count);
    ASSERT_EQ(QVN_OK, QVN_RGB8ToRGBYPlanes(&actual[0], &actual[count], &actual[2 * count], nullptr,
                                           src.data(), count, 1));
    ASSERT_EQ(expected, actual) << "count " << count;
  }
}

TEST(RGB8ToRGBYPlanes, WorkedColours) {
  // White stays white, 37 does not stay; 0.299 * 255 = 76.2, 0.587 * 255 = 149.7, 0.114 * 255 = 29.1.
  const Bytes src = {255, 255, 255, 37, 37, 37, 255, 0, 0, 0, 255, 0, 0, 0, 255};
  Bytes dst(20);
  EXPECT_EQ(QVN_OK, QVN_RGB8ToRGBYPlanes(&dst[0], &dst[5], &dst[10], &dst[15], src.data(), 5, 1));
  EXPECT_EQ((Bytes{255, 37, 255, 0, 0, 255, 37, 0, 255, 0, 255, 37, 0, 0, 255, 255, 36, 76, 149, 29}), dst);
}

/// The colours are written pass by pass and read back for luma, so planes may share bytes; the passes decide.
TEST(RGB8ToRGBYPlanes, OverlappingColourPlanes) {
  support::Random random(7);
  for (std::uint32_t count : {1U, 2U, 15U, 16U, 33U, 64U, 100U, 257U}) {
    for (std::size_t g : {0U, 1U, 2U, 7U, 16U, 50U}) {
      for (std::size_t b : {0U, 1U, 2U, 7U, 16U, 50U}) {
        const std::size_t y = count + 50;
        ASSERT_TRUE(support::same_effect(
            support::Room{.size = 2 * y}, support::Room{.size = std::size_t{3} * count}, random,
            [&](std::uint8_t* dst, const std::uint8_t* src) {
              return QVN_RGB8ToRGBYPlanes(dst, dst + g, dst + b, dst + y, src, count, 1);
            },
            [&](std::uint8_t* dst, const std::uint8_t* src) {
              reference::RGB8ToRGBYPlanes({dst, dst + g, dst + b, dst + y}, src, count);
            }))
            << "count " << count << ", planes at 0, " << g << ", " << b;
      }
    }
  }
}

/// Luma that lands in a colour plane is read back as that colour if it lands ahead of the pixel at work.
TEST(RGB8ToRGBYPlanes, LumaPlaneOverAColourPlane) {
  support::Random random(8);
  for (std::uint32_t count : {1U, 2U, 15U, 16U, 33U, 64U, 100U, 257U}) {
    const std::size_t stride = count + 40;
    for (std::size_t plane = 0; plane < 3; ++plane) {
      for (std::size_t shift : {0U, 1U, 2U, 7U, 16U, 31U, 32U, 40U}) {
        for (bool ahead : {true, false}) {
          const std::size_t y = 40 + plane * stride + (ahead ? shift : 0) - (ahead ? 0 : shift);
          const auto planes = [&](std::uint8_t* dst) {
            return Planes{dst + 40, dst + 40 + stride, dst + 40 + 2 * stride, dst + y};
          };
          ASSERT_TRUE(support::same_effect(
              support::Room{.size = 3 * stride + 80}, support::Room{.size = std::size_t{3} * count}, random,
              [&](std::uint8_t* dst, const std::uint8_t* src) {
                const Planes to = planes(dst);
                return QVN_RGB8ToRGBYPlanes(to.r, to.g, to.b, to.y, src, count, 1);
              },
              [&](std::uint8_t* dst, const std::uint8_t* src) {
                reference::RGB8ToRGBYPlanes(planes(dst), src, count);
              }))
              << "count " << count << ", luma " << shift << (ahead ? " ahead of" : " behind") << " plane "
              << plane;
        }
      }
    }
  }
}

/// A plane on the source: the later passes read what the earlier ones left there.
TEST(RGB8ToRGBYPlanes, PlaneOnTheSource) {
  support::Random random(9);
  for (std::uint32_t count : {1U, 16U, 33U, 100U, 257U}) {
    for (std::size_t plane = 0; plane < 4; ++plane) {
      for (std::size_t shift : {0U, 1U, 2U, 31U, 96U}) {
        Bytes expected(std::size_t{8} * count + 96);
        random.fill(expected.data(), expected.size());
        Bytes actual = expected;
        const auto planes = [&](Bytes& frame) {
          std::array<std::uint8_t*, 4> to{};
          for (std::size_t k = 0; k < 4; ++k) to[k] = frame.data() + (4 + k) * count + 96;
          to[plane] = frame.data() + shift;
          return Planes{to[0], to[1], to[2], to[3]};
        };
        reference::RGB8ToRGBYPlanes(planes(expected), expected.data(), count);
        const Planes to = planes(actual);
        ASSERT_EQ(QVN_OK, QVN_RGB8ToRGBYPlanes(to.r, to.g, to.b, to.y, actual.data(), count, 1));
        ASSERT_EQ(expected, actual) << "count " << count << ", plane " << plane << ", shift " << shift;
      }
    }
  }
}

/// With the luma plane alone the tests are passed over, and the first pass writes to a null plane.
TEST(RGB8ToRGBYPlanesDeathTest, LumaPlaneAloneFaults) {
  Bytes src(3);
  Bytes luma(1);
  EXPECT_DEATH(QVN_RGB8ToRGBYPlanes(nullptr, nullptr, nullptr, luma.data(), src.data(), 1, 1), "");
}

}  // namespace
