/// QVN_ResampleScanlinesEx against the slow reference: all element widths and lengths with both methods,
/// ordinary and odd rates, pitches of every sign, and no byte touched but the ones that the tables name.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <exception>
#include <limits>
#include <ostream>
#include <vector>

#include "reference/resample.h"
#include "support/arena.h"
#include "support/compare.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kLargest = std::numeric_limits<float>::max();
constexpr float kSmallest = std::numeric_limits<float>::min();
constexpr float kDenormal = std::numeric_limits<float>::denorm_min();
constexpr float k2To32 = 4294967296.0F;

/// Not QVN_OK: callers depend on it.
constexpr std::uint32_t kSuccess = 1;

struct Rates {
  float src;
  float dst;
};

constexpr Rates kRates[] = {
    {1, 1},         {2, 1},           {1, 2},         {3, 1},    {1, 3},       {4, 3},
    {3, 4},         {5, 4},           {0.1F, 1},      {0.9F, 1}, {1, 1.0001F}, {1.0001F, 1},
    {44100, 48000}, {48000, 44100},   {1, 7},         {7.3F, 1}, {0.3F, 0.3F}, {2.5F, 2},
    {1e-3F, 1},     {1e30F, 1.3e30F}, {33.3F, 22.2F}, {1, 8},    {1.5F, 10},   {0.25F, 0.75F},
};

/// Each of them gives every output element some source element, of whichever sense.
constexpr Rates kOddRates[] = {
    {0, 1},
    {-0.0F, 1},
    {1, 0},
    {1, -0.0F},
    {0, 0},
    {-1, 1},
    {1, -1},
    {-1, -3},
    {-0.1F, 1},
    {kNaN, 1},
    {1, kNaN},
    {kInfinity, 1},
    {1, kInfinity},
    {-kInfinity, 1},
    {kInfinity, kInfinity},
    {kLargest, kSmallest},
    {-kLargest, kSmallest},
    {kLargest, 1},
    {kSmallest, kLargest},
    {kDenormal, 1},
    {1, kDenormal},
    {kDenormal, kDenormal},
    {1e9F, 1},
    {3e9F, 1},
    {16055953, 2},    // element 535 lies at 2^32 + 131.5
    {16663307, 4},    // element 1031 lies at 2^32 + 83.25
    {1431655808, 1},  // three steps are 2^32 + 128: small indices between held ones
    {858993472, 1},   // five steps are 2^32 + 64
    {k2To32, 1},
    {k2To32 + 512, 1},
    {3 * k2To32 - 512, 2},
    {-k2To32 - 512, 1},
    {9.0e17F, 1},
    {9.2e18F, 1},
    {9.3e18F, 1},
    {1.0e20F, 1},
    {16777215.0F * 1073741824.0F, 1},
    {16777215.0F * 2147483648.0F, 1},
};

struct Shape {
  std::int32_t dst_length;
  std::int32_t src_length;
  std::int32_t lines = 2;
  std::int32_t dst_slack = 0;  ///< the pitch minus the length, of the walk down
  std::int32_t src_slack = 0;
  bool dst_upward = false;
  bool src_upward = false;
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

/// Lines of `elements` elements, the first of which a call gets, wherever it lies among them.
struct Lines {
  Lines(std::int32_t elements, std::int32_t pitch, std::int32_t lines, std::uint32_t type) {
    const std::ptrdiff_t travel = std::ptrdiff_t{pitch} * (std::max(lines, 1) - 1);
    first = static_cast<std::size_t>(std::max<std::ptrdiff_t>(-travel, 0)) * type;
    size = static_cast<std::size_t>(std::abs(travel) + elements) * type;
  }
  std::size_t first;  ///< offset of the first line
  std::size_t size;
};

class Resample : public testing::TestWithParam<Kind> {
 protected:
  /// What the tables reach of a source line.
  static std::int32_t elements_read(const Shape& shape, const Rates& rates) {
    const auto table = reference::ScanlineIndexTable(shape.dst_length, shape.src_length, rates.src, rates.dst,
                                                     GetParam().method);
    return table.empty() ? 0 : static_cast<std::int32_t>(*std::max_element(table.begin(), table.end()) + 1);
  }

  static testing::AssertionResult matches(const Shape& shape, const Rates& rates, support::Random& random,
                                          std::size_t dst_offset = 0, std::size_t src_offset = 0) {
    const Kind kind = GetParam();
    const std::int32_t read = elements_read(shape, rates);
    const std::int32_t dst_down = shape.dst_length + shape.dst_slack;
    const std::int32_t src_down = read + shape.src_slack;
    const std::int32_t dst_pitch = shape.dst_upward ? -dst_down : dst_down;
    const std::int32_t src_pitch = shape.src_upward ? -src_down : src_down;
    const Lines dst(shape.dst_length, dst_pitch, shape.lines, kind.type);
    const Lines src(read, src_pitch, shape.lines, kind.type);
    auto same = support::same_effect(
        {.size = dst.size, .before = 64 + dst_offset}, {.size = src.size, .before = 64 + src_offset}, random,
        [&](std::uint8_t* out, const std::uint8_t* in) {
          return QVN_ResampleScanlinesEx(out + dst.first, in + src.first, shape.dst_length, dst_pitch,
                                         shape.src_length, src_pitch, shape.lines, rates.src, rates.dst,
                                         kind.type, kind.method);
        },
        [&](std::uint8_t* out, const std::uint8_t* in) {
          reference::ResampleScanlinesEx(out + dst.first, in + src.first, shape.dst_length, dst_pitch,
                                         shape.src_length, src_pitch, shape.lines, rates.src, rates.dst,
                                         kind.type, kind.method);
        },
        kSuccess);
    if (same) return same;
    return same << "; lengths " << shape.dst_length << " from " << shape.src_length << ", pitches "
                << dst_pitch << " from " << src_pitch << ", lines " << shape.lines << ", rates " << rates.src
                << " to " << rates.dst << ", offsets " << dst_offset << " and " << src_offset;
  }

  /// The source length that a caller would have for a line of `dst_length`.
  static std::int32_t fitting_length(std::int32_t dst_length, const Rates& rates) {
    return std::max(1, static_cast<std::int32_t>(static_cast<float>(dst_length) * rates.src / rates.dst));
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, Resample, testing::ValuesIn(all_kinds()), testing::PrintToStringParamName());

TEST_P(Resample, EqualsReferenceAtEveryLength) {
  support::Random random(801);
  for (std::uint32_t number : numbers(0, 70)) {
    const auto length = static_cast<std::int32_t>(number);
    for (const Rates& rates : kRates) {
      ASSERT_TRUE(matches({length, fitting_length(length, rates)}, rates, random));
    }
  }
}

TEST_P(Resample, EqualsReferenceOnLongLines) {
  support::Random random(802);
  for (std::int32_t length : {127, 255, 256, 257, 639, 640, 1003}) {
    for (const Rates& rates : kRates) {
      ASSERT_TRUE(matches({length, fitting_length(length, rates), 3}, rates, random));
    }
  }
}

TEST_P(Resample, EqualsReferenceOnManyLines) {
  support::Random random(811);
  for (const Rates& rates : {Rates{1, 1}, Rates{2, 1}, Rates{1, 2}, Rates{1.7F, 1}}) {
    ASSERT_TRUE(matches({320, fitting_length(320, rates), 30, 4, 3}, rates, random));
  }
}

/// The index that a source line ends with is taken from its length by one method, from the output's by the
/// other; neither may go beyond it.
TEST_P(Resample, EqualsReferenceAtUnfittingLengths) {
  support::Random random(803);
  for (std::int32_t length : {1, 2, 3, 8, 17, 33, 66}) {
    for (std::int32_t src_length : {0, 1, 2, 3, 5, 16, 31, 64, 500, -1, -2, -500}) {
      for (const Rates& rates : kRates) ASSERT_TRUE(matches({length, src_length}, rates, random));
    }
  }
}

TEST_P(Resample, EqualsReferenceAtRandomRates) {
  support::Random random(804);
  for (int round = 0; round < 300; ++round) {
    const Rates rates{static_cast<float>(random.below(1 << 20)) / 4096,
                      static_cast<float>(1 + random.below(1 << 20)) / 4096};
    const auto length = static_cast<std::int32_t>(random.below(200));
    const std::int32_t full = std::min(fitting_length(length, rates), 2000);
    const auto src_length = static_cast<std::int32_t>(1 + random.below(static_cast<std::uint32_t>(full)));
    ASSERT_TRUE(matches({length, src_length}, rates, random));
  }
}

TEST_P(Resample, OddRatesKeepToTheLine) {
  support::Random random(805);
  for (std::int32_t length : {1, 2, 3, 16, 33, 70, 600}) {
    for (std::int32_t src_length : {1, length, 1500}) {
      for (const Rates& rates : kOddRates) ASSERT_TRUE(matches({length, src_length}, rates, random));
    }
  }
  for (const Rates& rates : kOddRates) ASSERT_TRUE(matches({2100, 1500, 1}, rates, random));
}

TEST_P(Resample, NeedsNoAlignment) {
  support::Random random(806);
  for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
    for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (const Rates& rates : {Rates{1, 1}, Rates{2, 1}, Rates{1, 2}, Rates{3, 4}, Rates{4, 3}}) {
        ASSERT_TRUE(matches({67, 90}, rates, random, dst_offset, src_offset));
      }
    }
  }
}

/// Lines in order, so that a later line wins where they overlap; a pitch of 0 keeps to one line.
TEST_P(Resample, PitchesOfEverySign) {
  support::Random random(807);
  for (std::int32_t length : {1, 7, 16, 40}) {
    for (std::int32_t dst_slack : {0, 1, 13, -1, -length / 2, -length}) {
      for (std::int32_t src_slack : {0, 1, 13, -1}) {
        for (int ways = 0; ways < 4; ++ways) {
          Shape shape{length, length, 5, dst_slack, src_slack, (ways & 1) != 0, (ways & 2) != 0};
          for (const Rates& rates : {Rates{1, 1}, Rates{2, 1}, Rates{3, 4}}) {
            ASSERT_TRUE(matches(shape, rates, random));
          }
        }
      }
    }
  }
}

/// The far pitch would pass 2^31 bytes if there were a second line.
TEST_P(Resample, PitchOfASingleLineIsOfNoEffect) {
  const Kind kind = GetParam();
  const std::vector<std::uint8_t> src(60, 7);
  for (std::int32_t pitch : {0, 0x7FFFFFFF, std::numeric_limits<std::int32_t>::min()}) {
    std::vector<std::uint8_t> dst(66, 9);
    ASSERT_EQ(kSuccess, QVN_ResampleScanlinesEx(dst.data(), src.data(), 10, pitch, 10, pitch, 1, 1, 1,
                                                kind.type, kind.method));
    std::vector<std::uint8_t> expected(std::size_t{10} * kind.type, 7);
    expected.resize(66, 9);
    ASSERT_EQ(expected, dst) << pitch;
  }
}

TEST_P(Resample, NoLinesNoBytes) {
  const Kind kind = GetParam();
  support::GuardedBuffer none(1, support::Flush::kEnd);
  for (std::int32_t lines : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(kSuccess, QVN_ResampleScanlinesEx(none.data() + 1, none.data() + 1, 40, 40, 40, 40, lines, 1, 1,
                                                kind.type, kind.method));
  }
  for (std::int32_t lines : {1, 3}) {
    EXPECT_EQ(kSuccess, QVN_ResampleScanlinesEx(none.data() + 1, none.data() + 1, 0, 0, 0, 0, lines, 1, 1,
                                                kind.type, kind.method));
  }
}

/// The source ends with the last element that an index names, which may be long before an output line's
/// length and, when a linear line is stretched, one behind its own.
TEST_P(Resample, TouchesNothingOutsideOfItsBuffers) {
  const Kind kind = GetParam();
  support::Random random(808);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    for (std::int32_t length : {1, 2, 3, 5, 8, 15, 16, 17, 31, 32, 33, 64, 65, 100}) {
      for (const Rates& rates : kRates) {
        const Shape shape{length, fitting_length(length, rates)};
        const std::int32_t read = elements_read(shape, rates);
        const Lines dst_lines(length, length, shape.lines, kind.type);
        const Lines src_lines(read, read, shape.lines, kind.type);
        support::GuardedBuffer src(src_lines.size, flush);
        support::GuardedBuffer dst(dst_lines.size, flush);
        random.fill(src.data(), src.size());
        std::vector<std::uint8_t> expected(dst.size());
        reference::ResampleScanlinesEx(expected.data(), src.data(), length, length, shape.src_length, read,
                                       shape.lines, rates.src, rates.dst, kind.type, kind.method);
        ASSERT_EQ(kSuccess,
                  QVN_ResampleScanlinesEx(dst.data(), src.data(), length, length, shape.src_length, read,
                                          shape.lines, rates.src, rates.dst, kind.type, kind.method));
        ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
            << "length " << length << ", rates " << rates.src << " to " << rates.dst;
      }
    }
  }
}

/// Positions beyond 2^32 come back to small indices; beyond 2^63 they count as 0.
TEST_P(Resample, SourceEndsWithTheIndicesOfOddRates) {
  const Kind kind = GetParam();
  support::Random random(809);
  for (const Rates& rates : kOddRates) {
    const Shape shape{300, 400, 1};
    const std::int32_t read = elements_read(shape, rates);
    support::GuardedBuffer src(static_cast<std::size_t>(read) * kind.type, support::Flush::kEnd);
    support::GuardedBuffer dst(std::size_t{300} * kind.type, support::Flush::kEnd);
    random.fill(src.data(), src.size());
    std::vector<std::uint8_t> expected(dst.size());
    reference::ResampleScanlinesEx(expected.data(), src.data(), 300, 300, 400, 400, 1, rates.src, rates.dst,
                                   kind.type, kind.method);
    ASSERT_EQ(kSuccess, QVN_ResampleScanlinesEx(dst.data(), src.data(), 300, 300, 400, 400, 1, rates.src,
                                                rates.dst, kind.type, kind.method));
    ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size()))
        << "rates " << rates.src << " to " << rates.dst;
  }
}

TEST_P(Resample, ShortEntryTakesTheLengthsAsPitches) {
  const Kind kind = GetParam();
  support::Random random(810);
  for (const Rates& rates : kRates) {
    // Four lines of what the linear method may read, whichever of the two lengths is the longer.
    for (const Shape& shape : {Shape{30, 41}, Shape{41, 30}, Shape{16, 16}}) {
      const std::size_t src_size = (std::size_t{3} * 41 + 41) * kind.type;
      ASSERT_TRUE(support::same_effect(
          {.size = std::size_t{4} * 41 * kind.type}, {.size = src_size}, random,
          [&](std::uint8_t* out, const std::uint8_t* in) {
            return QVN_ResampleScanlines(out, in, shape.dst_length, shape.src_length, 4, rates.src, rates.dst,
                                         kind.type, kind.method);
          },
          [&](std::uint8_t* out, const std::uint8_t* in) {
            reference::ResampleScanlinesEx(out, in, shape.dst_length, shape.dst_length, shape.src_length,
                                           shape.src_length, 4, rates.src, rates.dst, kind.type, kind.method);
          },
          kSuccess))
          << "lengths " << shape.dst_length << " from " << shape.src_length << ", rates " << rates.src
          << " to " << rates.dst;
    }
  }
}

/// Nothing is written before the tables exist.
TEST_P(Resample, NegativeLengthLeavesByException) {
  const Kind kind = GetParam();
  std::vector<std::uint8_t> dst(32, 9);
  const std::vector<std::uint8_t> src(32, 7);
  for (std::int32_t length : {-1, -4, -1000, std::numeric_limits<std::int32_t>::min()}) {
    for (std::int32_t lines : {0, 1}) {
      const auto call = [&] {
        QVN_ResampleScanlinesEx(dst.data(), src.data(), length, 4, 4, 4, lines, 1, 1, kind.type, kind.method);
      };
      EXPECT_THROW(call(), std::exception) << length;
    }
  }
  EXPECT_EQ(std::vector<std::uint8_t>(32, 9), dst);
}

}  // namespace
