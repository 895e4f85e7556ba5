/// The correction rules as rows: vectors against the rule for one pixel, curves against the recipe, and a
/// large frame against its lines one by one.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "correction/dispatch.h"
#include "deep/raw16.h"
#include "deep/raw16_reading.h"
#include "support/guard.h"
#include "support/random.h"

namespace qvn {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

template <class Record>
const ColorCorrection* object(const Record& record) {
  return reinterpret_cast<const ColorCorrection*>(&record);
}

template <class T>
Planes<T> random_planes(support::Random& random) {
  Planes<T> planes;
  random.fill(reinterpret_cast<uint8_t*>(&planes), sizeof planes);
  // The ends of the range, in each channel.
  for (size_t i = 0; i < 8; ++i) {
    planes.r[i] = (i & 1) != 0 ? std::numeric_limits<T>::max() : T{0};
    planes.g[i] = (i & 2) != 0 ? std::numeric_limits<T>::max() : T{0};
    planes.b[i] = (i & 4) != 0 ? std::numeric_limits<T>::max() : T{0};
  }
  return planes;
}

template <class T, class Matrix>
void compare_matrix(const Matrix& matrix, support::Random& random) {
  const Planes<T> source = random_planes<T>(random);
  for (size_t n = 0; n <= kStripPixels; n += n < 80 ? 1 : 16) {
    Planes<T> plain = source, vectors = source;
    matrix.row_plain(plain, 0, n);
    matrix.row(vectors, 0, n);
    for (size_t x = 0; x < n; ++x) {
      ASSERT_EQ(plain.r[x], vectors.r[x]) << "red " << x << " of " << n;
      ASSERT_EQ(plain.g[x], vectors.g[x]) << "green " << x << " of " << n;
      ASSERT_EQ(plain.b[x], vectors.b[x]) << "blue " << x << " of " << n;
    }
  }
}

// Sizes of coefficients from gentle ones to those whose sums leave 32 bits, 64 bits and the numbers.
TEST(MatrixFloat, VectorsEqualPixels) {
  support::Random random(41);
  const float sizes[] = {0.5F, 2, 300, 4e4F, 7e5F, 3e7F, 4e9F, 3e12F, 2e14F, 5e18F, 1e30F, 3e38F};
  for (const float size : sizes) {
    for (int round = 0; round < 6; ++round) {
      ColorCorrectionFloat record{CcMatrixFloat, 0, {}, 0, 0};
      for (float& m : record.matrix) m = (static_cast<float>(random.below(20001)) / 10000 - 1) * size;
      if (round == 5) record.matrix[random.below(9)] = size < 1e3F ? kNan : kInfinity;
      compare_matrix<uint8_t>(MatrixFloat<uint8_t>(object(record)), random);
      compare_matrix<uint16_t>(MatrixFloat<uint16_t>(object(record)), random);
    }
  }
}

// One pixel of a vector that needs more than 32 bits, at every place.
TEST(MatrixFloat, OneLargePixelAmongSmallOnes) {
  const ColorCorrectionFloat record{CcMatrixFloat, 0, {1, 0, 0, 0, 70001, 0, 0, 0, -1}, 0, 0};
  const MatrixFloat<uint16_t> matrix(object(record));
  for (size_t place = 0; place < 64; ++place) {
    Planes<uint16_t> planes{};
    planes.g.fill(3);
    planes.g[place] = 65535;
    matrix.row(planes, 0, 64);
    for (size_t x = 0; x < 64; ++x) {
      // 70001 * 65535 = 4587515535 is between 2^32 and 2^33: in single precision the next multiple of 512.
      const uint64_t expected = x == place ? 4587515392U : 70001 * 3;
      ASSERT_EQ(planes.g[x], static_cast<uint16_t>(expected)) << "pixel " << x;
    }
  }
}

TEST(MatrixFixed, VectorsEqualPixels) {
  support::Random random(42);
  for (const uint32_t size : {100U, 1024U, 4000U, 32767U, 32769U, 70000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
    for (int round = 0; round < 12; ++round) {
      ColorCorrectionFixed record{CcMatrixInt16, {}};
      for (int32_t& c : record.coefficients) {
        c = static_cast<int32_t>(round % 2 == 0 ? random.below(size) : size / 2 - random.below(size));
      }
      if (round == 1) std::fill_n(record.coefficients, 9, std::numeric_limits<int32_t>::min());
      if (round == 2) std::fill_n(record.coefficients, 9, -32768);
      if (round == 3) std::fill_n(record.coefficients, 9, 32768);
      compare_matrix<uint8_t>(MatrixFixed16(object(record)), random);
      compare_matrix<uint8_t>(MatrixFixed32<uint8_t>(object(record)), random);
      compare_matrix<uint16_t>(MatrixFixed32<uint16_t>(object(record)), random);
    }
  }
}

TEST(ByteTable, RowsEqualEntries) {
  support::Random random(44);
  for (int round = 0; round < 8; ++round) {
    std::array<uint8_t, 256> entries;
    random.fill(entries.data(), entries.size());
    const ByteTable table([&](uint8_t sample) { return entries[sample]; });
    for (uint32_t i = 0; i < 256; ++i) ASSERT_EQ(table(static_cast<uint8_t>(i)), entries[i]);
    for (size_t n = 0; n <= 300; ++n) {
      // Each byte comes, and room for a whole vector behind the last one.
      std::array<uint8_t, 300 + 64> row, plain, samples;
      for (size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<uint8_t>(i + 37 * n);
      row = plain = samples;
      table.row(row.data(), n);
      table.row_plain(plain.data(), n);
      for (size_t i = 0; i < n; ++i) {
        ASSERT_EQ(row[i], entries[samples[i]]) << i << " of " << n;
        ASSERT_EQ(plain[i], entries[samples[i]]) << i << " of " << n;
      }
      ASSERT_TRUE(std::equal(plain.begin() + static_cast<ptrdiff_t>(n), plain.end(),
                             samples.begin() + static_cast<ptrdiff_t>(n)));
    }
  }
}

TEST(LookUpWords, TouchesItsWordsAlone) {
  support::Random random(45);
  std::vector<uint16_t> entries(65536), samples(320);
  random.fill(reinterpret_cast<uint8_t*>(entries.data()), 2 * entries.size());
  random.fill(reinterpret_cast<uint8_t*>(samples.data()), 2 * samples.size());
  for (size_t n = 0; n <= 300; ++n) {
    std::vector<uint16_t> row = samples;
    look_up_words(row.data(), n, [&](uint16_t sample) { return entries[sample]; });
    for (size_t i = 0; i < row.size(); ++i) {
      ASSERT_EQ(row[i], i < n ? entries[samples[i]] : samples[i]) << i << " of " << n;
    }
  }
}

// A curve whose result tells the sample.
template <class T>
struct TellingCurve {
  T operator()(T sample) const { return static_cast<T>(sample * 5 + 3); }
  void row(T* samples, size_t n) const { correct_samples(samples, n, *this); }
};

template <class Fetch, class T, class Shift = NoShift>
void compare_windows_by_curve(Shift shift = {}) {
  support::Random random(46);
  const TellingCurve<T> curve;
  for (uint32_t phase = 0; phase < 2; ++phase) {
    for (size_t n = 1; n <= kStripPixels; ++n) {
      const size_t bytes = Fetch::line_bytes(2) == 3 ? (n + 1) / 2 * 3 + (n + 1) % 2 * 2
                                                     : Fetch::line_bytes(static_cast<uint32_t>(n + 1));
      support::GuardedBuffer red(bytes, support::Flush::kEnd), blue(bytes, support::Flush::kEnd);
      random.fill(red.data(), bytes);
      random.fill(blue.data(), bytes);
      const CellLine line{red.data(), blue.data(), phase};
      Planes<T> planes{};
      windows_by_curve<Fetch>(curve, planes, line, n, shift);
      for (size_t x = 0; x < n; ++x) {
        const Rgb<uint32_t> window = shift(window_2x2<Fetch>(line, x));
        ASSERT_EQ(planes.r[x], curve(static_cast<T>(window.r))) << "red " << x << " of " << n;
        ASSERT_EQ(planes.g[x], curve(static_cast<T>(window.g))) << "green " << x << " of " << n;
        ASSERT_EQ(planes.b[x], curve(static_cast<T>(window.b))) << "blue " << x << " of " << n;
      }
    }
  }
}

TEST(WindowsByCurve, EqualCorrectedWindows) {
  compare_windows_by_curve<FetchRaw8, uint8_t>();
  compare_windows_by_curve<FetchRaw12TopByte, uint8_t>();
  compare_windows_by_curve<FetchRaw12, uint16_t>();
  compare_windows_by_curve<FetchWholeRaw16, uint16_t>(ChannelShift<false, false>{0, 0});
  compare_windows_by_curve<FetchWholeRaw16, uint16_t>(ChannelShift<false, true>{0, 3});
  compare_windows_by_curve<FetchTwiceTopByte, uint16_t>(ChannelShift<true, true>{9, 0});
}

TEST(Curves, GiveTheRecipesResults) {
  const float laws[][2] = {{0.45F, 65535}, {2.2F, 4095}, {1, 255}, {-1, 255},     {0.5F, 0},
                           {0, 255},       {3, 1},       {7, -3},  {kNan, 65535}, {0.7F, kInfinity}};
  for (const auto& law_numbers : laws) {
    const float gamma = law_numbers[0], max_value = law_numbers[1];
    const ColorCorrectionFloat record{CcGamma, 0, {}, gamma, max_value};
    const PowerLaw law(object(record));
    const auto literal = [&](uint32_t sample) {
      const float scaled = std::pow(static_cast<float>(sample) / max_value, gamma) * max_value;
      return static_cast<uint64_t>(truncate_to_int64(static_cast<double>(scaled) + 0.5));
    };
    ByteCurve bytes(object(record));
    for (uint32_t i = 0; i < 256; ++i) {
      ASSERT_EQ(bytes(static_cast<uint8_t>(i)), static_cast<uint8_t>(literal(i)));
    }
    ShortWordCurve table(object(record));
    RecentCurve recent(object(record));
    std::vector<uint8_t> memory(2 * 8192 + 1);
    LentCurve lent(object(record), memory.data() + 1, 8192);
    for (uint32_t i = 0; i < 65536; i += i < 9000 ? 1 : 7) {
      const auto sample = static_cast<uint16_t>(i), expected = static_cast<uint16_t>(literal(i));
      ASSERT_EQ(recent(sample), expected) << i;
      ASSERT_EQ(recent(sample), expected) << i << " once more";
      ASSERT_EQ(lent(sample), expected) << i;
      ASSERT_EQ(law.result(sample), expected) << i;
      std::array<uint16_t, 9> row;
      row.fill(sample);
      lent.row(row.data(), row.size());
      ASSERT_EQ(row.front(), expected) << i;
      ASSERT_EQ(row.back(), expected) << i;
      if (i < 4096) {
        ASSERT_EQ(table(sample), expected) << i;
      }
    }
  }
}

// Frames in which gamma keeps its curve in the last lines, against frames too small for it: two lines each,
// of which the first one has windows of its own.
TEST(GammaOfWords, LargeFramesEqualTheirLines) {
  support::Random random(43);
  using Corrected =
      int32_t (*)(uint8_t*, const uint8_t*, uint32_t, uint32_t, uint32_t, uint32_t, const ColorCorrection*);
  struct Entry {
    Corrected corrected;
    size_t pixel_bytes;
  };
  constexpr uint32_t kWidth = 322, kHeight = 301;
  std::vector<uint8_t> src(size_t{2} * kWidth * kHeight);
  random.fill(src.data(), src.size());
  for (const Entry& entry : {Entry{raw16_to_bgr16_corrected, 6}, Entry{raw16_to_y16_corrected, 2}}) {
    const size_t line_bytes = entry.pixel_bytes * kWidth;
    for (const uint32_t kind : {CcGamma, CcGammaMatrix}) {
      for (const auto& [shift, pattern] :
           {std::pair{0U, 0U}, {0U, 2U}, {1U, 1U}, {1U, 2U}, {3U, 3U}, {4U, 0U}, {32U, 2U}}) {
        const ColorCorrectionFloat record{kind,
                                          0,
                                          {0.9F, 0.2F, -0.1F, 0.1F, 0.8F, 0, 0, 0.1F, 0.9F},
                                          0.6F,
                                          static_cast<float>(65535U >> (shift & 31))};
        std::vector<uint8_t> whole(line_bytes * kHeight), two_lines(2 * line_bytes);
        entry.corrected(whole.data(), src.data(), kWidth, kHeight, pattern, shift, object(record));
        for (uint32_t row = 0; row + 1 < kHeight; ++row) {
          const uint32_t row_pattern = pattern ^ (row % 2 == 0 ? 0 : 2);
          entry.corrected(two_lines.data(), src.data() + size_t{2} * kWidth * row, kWidth, 2, row_pattern,
                          shift, object(record));
          ASSERT_TRUE(std::equal(two_lines.begin(), two_lines.begin() + static_cast<ptrdiff_t>(line_bytes),
                                 whole.begin() + static_cast<ptrdiff_t>(line_bytes * row)))
              << "kind " << kind << ", shift " << shift << ", line " << row;
        }
        EXPECT_TRUE(std::equal(whole.end() - static_cast<ptrdiff_t>(line_bytes), whole.end(),
                               whole.end() - static_cast<ptrdiff_t>(2 * line_bytes)))
            << "kind " << kind << ", shift " << shift << ", last line";
      }
    }
  }
}

// What callers see of both refusals is one status; which one it is shows in a trace alone.
TEST(KindMap, TellsTheTwoRefusalsApart) {
  const auto result = [](Family family, uint32_t kind) {
    return static_cast<int32_t>(rule_of(family, reinterpret_cast<const ColorCorrection*>(&kind)));
  };
  for (const Family family : {Family::kRaw8, Family::kRaw12ToBgr, Family::kRaw12ToBgr16,
                              Family::kRaw16ToBgr16, Family::kRaw16ToY16}) {
    const bool deep = family == Family::kRaw16ToBgr16 || family == Family::kRaw16ToY16;
    for (const uint32_t kind : {0U, 10U, 11U, 0x80000001U, 0xFFFFFFFFU}) EXPECT_EQ(result(family, kind), -3);
    EXPECT_EQ(result(family, CcReserved6), deep ? -3 : -4);
    EXPECT_EQ(result(family, CcTableList), family == Family::kRaw16ToY16 ? -4 : -3);
    EXPECT_EQ(result(family, family == Family::kRaw8 ? CcMatrixInt16 : CcMatrixInt8), -4);
    EXPECT_EQ(result(family, family == Family::kRaw8 ? CcTable16 : CcTable8), -4);
  }
}

}  // namespace
}  // namespace qvn
