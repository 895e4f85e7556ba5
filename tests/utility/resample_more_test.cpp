/// QVN_ResampleScanlinesEx with so many lines that a plan of a line is worth its time: against the slow
/// reference, by rates that need every kind of plan or allow none, and where positions pass 2^32.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <ostream>
#include <vector>

#include "reference/resample.h"
#include "support/compare.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// Not QVN_OK: callers depend on it.
constexpr std::uint32_t kSuccess = 1;

/// Elements between output lines, which are left alone.
constexpr std::int32_t kSlack = 3;

struct Rates {
  float src;
  float dst;
};

/// Steps from none to some that leave a vector's elements too far apart, so that all kinds of plans are made.
constexpr Rates kRates[] = {
    {1, 1},    {2, 1},      {1, 2},    {3, 4},  {4, 3},  {1.7F, 1},  {2.3F, 1}, {3, 1},
    {3.6F, 1}, {5.3F, 1},   {7.9F, 1}, {11, 1}, {16, 1}, {23.4F, 1}, {31, 1},   {64, 1},
    {1, 7.3F}, {0.999F, 1}, {1, 100},  {0, 1},  {-1, 1}, {-1, 3},    {kNaN, 1}, {1, kInfinity},
};

/// Positions pass 2^32, and small indices come back with fractions out of the usual range.
constexpr Rates kWrappingRates[] = {
    {16055953, 2}, {16663307, 4}, {1431655808.0F, 1}, {858993472.0F, 1},
    {1e9F, 1},     {3e9F, 1},     {4294967808.0F, 1},
};

struct Kind {
  std::uint32_t type;
  std::uint32_t method;
};

std::vector<Kind> all_kinds() {
  std::vector<Kind> kinds;
  for (std::uint32_t method : {0U, 1U}) {
    for (std::uint32_t type : numbers(1, 6)) kinds.push_back({type, method});
  }
  return kinds;
}

void PrintTo(const Kind& kind, std::ostream* out) {
  *out << (kind.method == 0 ? "Nearest" : "Linear") << kind.type;
}

struct Shape {
  std::int32_t dst_length;
  std::int32_t src_length;
  std::int32_t lines;  ///< more than any plan asks for
};

class ResampleManyLines : public testing::TestWithParam<Kind> {
 protected:
  /// What the tables reach of a source line.
  static std::int32_t elements_read(const Shape& shape, const Rates& rates) {
    const auto table = reference::ScanlineIndexTable(shape.dst_length, shape.src_length, rates.src, rates.dst,
                                                     GetParam().method);
    return static_cast<std::int32_t>(*std::max_element(table.begin(), table.end()) + 1);
  }

  /// A frame of such lines, the first of which lies last where the pitch is negative.
  static std::size_t frame_bytes(std::int32_t length, std::int32_t pitch, std::int32_t lines) {
    const auto travel = static_cast<std::size_t>(std::abs(pitch)) * static_cast<std::size_t>(lines - 1);
    return (travel + static_cast<std::size_t>(length)) * GetParam().type;
  }
  static std::size_t first_line(std::int32_t pitch, std::int32_t lines) {
    if (pitch >= 0) return 0;
    return static_cast<std::size_t>(-pitch) * static_cast<std::size_t>(lines - 1) * GetParam().type;
  }

  static testing::AssertionResult matches(const Shape& shape, const Rates& rates, support::Random& random,
                                          bool upward = false, std::size_t offset = 0) {
    const Kind kind = GetParam();
    const std::int32_t read = elements_read(shape, rates);
    const std::int32_t way = upward ? -1 : 1;
    const std::int32_t dst_pitch = way * (shape.dst_length + kSlack);
    const std::int32_t src_pitch = way * read;
    const std::size_t dst_first = first_line(dst_pitch, shape.lines);
    const std::size_t src_first = first_line(src_pitch, shape.lines);
    auto same = support::same_effect(
        {.size = frame_bytes(shape.dst_length, dst_pitch, shape.lines), .before = 64 + offset},
        {.size = frame_bytes(read, src_pitch, shape.lines), .before = 64 + offset}, random,
        [&](std::uint8_t* out, const std::uint8_t* in) {
          return QVN_ResampleScanlinesEx(out + dst_first, in + src_first, shape.dst_length, dst_pitch,
                                         shape.src_length, src_pitch, shape.lines, rates.src, rates.dst,
                                         kind.type, kind.method);
        },
        [&](std::uint8_t* out, const std::uint8_t* in) {
          reference::ResampleScanlinesEx(out + dst_first, in + src_first, shape.dst_length, dst_pitch,
                                         shape.src_length, src_pitch, shape.lines, rates.src, rates.dst,
                                         kind.type, kind.method);
        },
        kSuccess);
    if (same) return same;
    return same << "; lengths " << shape.dst_length << " from " << shape.src_length << ", pitches "
                << dst_pitch << " from " << src_pitch << ", lines " << shape.lines << ", rates " << rates.src
                << " to " << rates.dst << ", offset " << offset;
  }

  /// The source length that a caller would have for a line of `dst_length`.
  static std::int32_t fitting_length(std::int32_t dst_length, const Rates& rates) {
    const double length = static_cast<double>(dst_length) * rates.src / rates.dst;
    return length >= 1 && length < 1e6 ? static_cast<std::int32_t>(length) : 1 + dst_length / 3;
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, ResampleManyLines, testing::ValuesIn(all_kinds()),
                         testing::PrintToStringParamName());

TEST_P(ResampleManyLines, EqualsReferenceAroundVectorLengths) {
  support::Random random(821);
  for (std::int32_t length : {1, 2, 15, 16, 17, 31, 32, 33, 47, 48, 63, 64, 65, 96, 100, 129, 257}) {
    for (const Rates& rates : kRates) {
      ASSERT_TRUE(matches({length, fitting_length(length, rates), 16}, rates, random));
      ASSERT_TRUE(matches({length, 1 + fitting_length(length, rates) / 2, 17}, rates, random, true, 5));
    }
  }
}

/// The line ends before a vector does, with only a few source elements to read.
TEST_P(ResampleManyLines, EqualsReferenceFromShortLines) {
  support::Random random(822);
  for (std::int32_t src_length : {1, 2, 3, 4, 5, 7, 8, 11, 15, 16, 17, 32, 33}) {
    for (std::int32_t length : {16, 32, 40, 64, 100}) {
      const auto dst_rate = static_cast<float>(length);
      ASSERT_TRUE(matches({length, src_length, 20}, {static_cast<float>(src_length), dst_rate}, random));
    }
  }
}

TEST_P(ResampleManyLines, EqualsReferenceAtRandomRates) {
  support::Random random(823);
  for (int round = 0; round < 60; ++round) {
    const Rates rates{static_cast<float>(random.below(1 << 18)) / 4096,
                      static_cast<float>(1 + random.below(1 << 16)) / 4096};
    const auto length = static_cast<std::int32_t>(1 + random.below(300));
    const auto src_length = static_cast<std::int32_t>(1 + random.below(1200));
    ASSERT_TRUE(matches({length, src_length, 20}, rates, random));
  }
}

TEST_P(ResampleManyLines, WrappedPositionsKeepToTheLine) {
  support::Random random(824);
  for (std::int32_t length : {33, 300, 1300}) {
    for (const Rates& rates : kWrappingRates) ASSERT_TRUE(matches({length, 1200, 16}, rates, random));
  }
}

/// The last position alone passes 2^32, so that the largest index, which bounds what may be read, is not the
/// last one; the strip before it repeats the limit.
TEST_P(ResampleManyLines, LastElementMayComeBack) {
  support::Random random(828);
  const auto last = static_cast<std::int32_t>(2 * 16384 / GetParam().type + 100);
  const float step =
      std::nextafter(std::nextafter(4294967296.0F / static_cast<float>(last), kInfinity), kInfinity);
  const Shape shape{last + 1, last + 1, 16};
  const auto table =
      reference::ScanlineIndexTable(shape.dst_length, shape.src_length, step, 1, GetParam().method);
  ASSERT_EQ(static_cast<std::uint32_t>(last), table[static_cast<std::size_t>(last) - 1]);
  ASSERT_LT(table.back(), static_cast<std::uint32_t>(last) - 100);
  ASSERT_GT(table.back(), 64U);
  ASSERT_TRUE(matches(shape, {step, 1}, random));
}

/// Output lines around 16 KiB and beyond. Where the source is short, the strips behind its end repeat one
/// element and so have other plans than the first.
TEST_P(ResampleManyLines, EqualsReferenceOnLinesOfSeveralStrips) {
  support::Random random(825);
  const auto strip = static_cast<std::int32_t>(16384 / GetParam().type);
  for (std::int32_t length : {strip - 64, strip, strip + 5, strip + 70, 2 * strip + 301}) {
    for (const Rates& rates : {Rates{1, 1}, Rates{2, 1}, Rates{1, 3}, Rates{1.37F, 1}, Rates{9.1F, 1}}) {
      ASSERT_TRUE(matches({length, fitting_length(length, rates), 17}, rates, random));
    }
    ASSERT_TRUE(matches({length, length / 2, 16}, {1, 1}, random, true));
  }
}

}  // namespace
