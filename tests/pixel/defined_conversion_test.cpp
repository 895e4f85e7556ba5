/// Conversions from floating point whose every result is defined: at the ends of the range, beyond them, and
/// the machine's form against the one that tests the range.
#include "pixel/defined_conversion.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <vector>

#include "support/random.h"

namespace qvn {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

static_assert(truncate_to_int32(-1.9) == -1);
static_assert(truncate_to_int32(2147483648.0) == kLowestInt32);
static_assert(truncate_to_int64(0x1p62) == int64_t{1} << 62);
static_assert(truncate_to_int64(kNan) == kLowestInt64);

TEST(TruncateToInt32, TowardZero) {
  EXPECT_EQ(truncate_to_int32(0.99), 0);
  EXPECT_EQ(truncate_to_int32(-0.99), 0);
  EXPECT_EQ(truncate_to_int32(7.5), 7);
  EXPECT_EQ(truncate_to_int32(-7.5), -7);
}

TEST(TruncateToInt32, TheEndsOfTheRange) {
  EXPECT_EQ(truncate_to_int32(2147483647.0), 2147483647);
  EXPECT_EQ(truncate_to_int32(2147483647.999), 2147483647);
  EXPECT_EQ(truncate_to_int32(2147483648.0), kLowestInt32);
  EXPECT_EQ(truncate_to_int32(-2147483647.999), -2147483647);
  EXPECT_EQ(truncate_to_int32(-2147483648.0), kLowestInt32);
  EXPECT_EQ(truncate_to_int32(-2147483648.999), kLowestInt32);
  EXPECT_EQ(truncate_to_int32(-2147483649.0), kLowestInt32);
}

TEST(TruncateToInt32, NumbersWithoutAnInteger) {
  for (const double value : {1e10, -1e10, 1e300, -1e300, kInfinity, -kInfinity, kNan, -kNan}) {
    EXPECT_EQ(truncate_to_int32(value), kLowestInt32) << value;
  }
}

TEST(TruncateToInt64, TheEndsOfTheRange) {
  const double last_below = std::nextafter(0x1p63, 0.0);
  EXPECT_EQ(truncate_to_int64(last_below), std::numeric_limits<int64_t>::max() - 1023);
  EXPECT_EQ(truncate_to_int64(0x1p63), kLowestInt64);
  EXPECT_EQ(truncate_to_int64(-last_below), -(std::numeric_limits<int64_t>::max() - 1023));
  EXPECT_EQ(truncate_to_int64(-0x1p63), kLowestInt64);
  EXPECT_EQ(truncate_to_int64(4294967296.5), int64_t{1} << 32);
  EXPECT_EQ(truncate_to_int64(-2.5), -2);
}

TEST(TruncateToInt64, NumbersWithoutAnInteger) {
  for (const double value : {1e19, -1e19, 1e300, -1e300, kInfinity, -kInfinity, kNan, -kNan}) {
    EXPECT_EQ(truncate_to_int64(value), kLowestInt64) << value;
  }
}

/// Doubles of all exponents, from random bits.
TEST(DefinedConversion, BothFormsAreEqual) {
  support::Random random(1);
  for (int i = 0; i < 200000; ++i) {
    const double any = std::bit_cast<double>(random.next());
    const int exponent = static_cast<int>(random.below(70));
    const bool has_exponent = std::isfinite(any) && any != 0;
    const double near_the_ends = has_exponent ? std::ldexp(any, exponent - std::ilogb(any)) : any;
    for (const double value : {any, near_the_ends}) {
      ASSERT_EQ(truncate_to_int32(value), tested_range::truncate_to_int32(value)) << value;
      ASSERT_EQ(truncate_to_int64(value), tested_range::truncate_to_int64(value)) << value;
    }
  }
}

}  // namespace
}  // namespace qvn
