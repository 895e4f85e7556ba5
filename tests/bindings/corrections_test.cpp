// Corrections as objects: each kind against the C call with a record made by hand, tables that are too short,
// bands, and the matrix that stops at black and white.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <numeric>
#include <quorvane.hpp>

#include "bindings/buffers.h"
#include "bindings/entries.h"
#include "support/random.h"

namespace bindings {
namespace {

using quorvane::Cause;
using quorvane::ClampedMatrix;
using quorvane::Correction;
using quorvane::Pattern;
using quorvane::Result;
using quorvane::Shift;
using quorvane::Size;

constexpr quorvane::Matrix kMatrix{1.25F, -0.5F, 0.25F, -0.125F, 1.5F, -0.375F, 0.0F, -0.75F, 1.75F};

std::vector<std::uint16_t> table_of(std::size_t entries, std::uint32_t top) {
  std::vector<std::uint16_t> table(entries);
  support::Random random(11);
  for (std::uint16_t& level : table) {
    level = static_cast<std::uint16_t>(random.below(top + 1));
  }
  return table;
}

/// Each kind that an entry of these index bits serves.
std::vector<Correction> corrections_for(const quorvane::Entry& entry, std::uint32_t shift) {
  const auto white = static_cast<float>((1U << entry.correction.index_bits >> shift) - 1);
  std::vector<Correction> all;
  all.push_back(Correction::matrix(kMatrix));
  all.push_back(Correction::gamma(0.5F, white));
  all.push_back(Correction::gamma_matrix(2.0F, white, kMatrix));
  const Buffer bytes = random_bytes(256, 12);
  if (entry.source.bytes == 1) {
    all.push_back(Correction::fixed_int8(kMatrix));
    all.push_back(Correction::table8(bytes));
  } else {
    all.push_back(Correction::fixed_int16(kMatrix));
    const std::size_t entries = std::size_t{1} << entry.correction.index_bits >> shift;
    all.push_back(entry.correction.index_bits == 8
                      ? Correction::table16_of_bytes(bytes)
                      : Correction::table16(table_of(entries, static_cast<std::uint32_t>(entries) - 1)));
  }
  return all;
}

TEST(CorrectionTest, EachKindGivesTheBytesOfTheCCallInBandsToo) {
  for (const Known& known : known_entries()) {
    if (known.entry->correction.index_bits == 0) {
      continue;
    }
    for (Selection with : selections(known)) {
      for (const Correction& correction : corrections_for(*known.entry, with.shift)) {
        with.correction = &correction;
        const Size size{34, 40};
        Buffer src = random_bytes(known.source_bytes(size), 13);
        Buffer right = random_bytes(known.bytes(size, with), 14);
        const Buffer before = right;
        ASSERT_EQ(known.call(right.data(), src.data(), size.width, size.height, with), QVN_OK);
        for (const std::size_t bands : {1U, 3U}) {
          Buffer dst = before;
          const Result<void> done = call(*known.entry, {dst}, src, size, with.arguments(), {.bands = bands});
          ASSERT_TRUE(done) << done.failure().message;
          ASSERT_EQ(dst, right) << known.entry->name << ", kind " << correction.kind();
        }
      }
    }
  }
}

TEST(CorrectionTest, ObjectsHoldWhatTheRecordsTell) {
  ColorCorrectionFloat record{};
  record.kind = CcGammaMatrix;
  std::copy(kMatrix.begin(), kMatrix.end(), record.matrix);
  record.gamma = 0.45F;
  record.maxValue = 255;
  const Size size{8, 6};
  const Buffer src = random_bytes(size.pixels(), 15);
  Buffer right(size.pixels() * 3);
  Buffer dst(size.pixels() * 3);
  QVN_Raw8ToBGR_CC(right.data(), src.data(), 8, 6, 1, reinterpret_cast<const ColorCorrection*>(&record));
  Correction correction = Correction::gamma_matrix(0.45F, 255, kMatrix);
  const Correction moved = std::move(correction);
  quorvane::raw8_to_bgr_cc(dst, src, size, Pattern::kGbrg, &moved);
  EXPECT_EQ(dst, right);

  // No object, no correction.
  QVN_Raw8ToBGR(right.data(), src.data(), 8, 6, 1);
  quorvane::raw8_to_bgr_cc(dst, src, size, Pattern::kGbrg, nullptr);
  EXPECT_EQ(dst, right);
}

TEST(CorrectionTest, AMovedTableStaysWhole) {
  Buffer table(256);
  std::iota(table.rbegin(), table.rend(), std::uint8_t{0});
  std::vector<Correction> all;
  all.push_back(Correction::table8(table));
  all.reserve(100);
  const Size size{4, 2};
  const Buffer src(8, 200);
  Buffer dst(8);
  quorvane::raw8_to_y8_cc(dst, src, size, Pattern::kRggb, &all.front());
  EXPECT_EQ(dst, Buffer(8, 55));
}

TEST(CorrectionTest, TakesOverObjectsOfEveryKind) {
  for (std::uint32_t kind = 0; kind <= 9; ++kind) {
    auto* const record = static_cast<ColorCorrectionTable*>(::operator new(64));
    *record = {};
    record->kind = kind;
    if (kind >= 7) {
      constexpr std::size_t kBytes = 4 * sizeof(void*);
      record->first = ::operator new(kBytes);
      std::memset(record->first, 0, kBytes);
      record->last = record->end = static_cast<std::uint8_t*>(record->first) + kBytes;
    }
    const Correction adopted = Correction::adopt(reinterpret_cast<ColorCorrection*>(record));
    EXPECT_EQ(adopted.kind(), kind);
    EXPECT_EQ(adopted.table_bytes(), kind >= 8 ? 4 * sizeof(void*) : 0);
  }
}

TEST(CorrectionTest, RefusesKindsThatAnEntryDoesNotServe) {
  const Size size{8, 6};
  const Buffer src(size.pixels() * 2);
  Buffer dst(size.pixels() * 6, 1);
  const Buffer before = dst;
  const Correction int8 = Correction::fixed_int8(kMatrix);
  const Correction int16 = Correction::fixed_int16(kMatrix);
  const Correction table8 = Correction::table8(Buffer(256));
  const Correction table16 = Correction::table16(std::vector<std::uint16_t>(65536));
  const auto refused = [&](const Result<void>& result) {
    return !result && result.failure().cause == Cause::kArgument && result.failure().status == QVN_E_FAIL;
  };
  EXPECT_TRUE(refused(quorvane::raw8_to_bgr_cc.attempt(dst, src, size, Pattern::kRggb, &int16)));
  EXPECT_TRUE(refused(quorvane::raw8_to_y8_cc.attempt(dst, src, size, Pattern::kRggb, &table16)));
  EXPECT_TRUE(refused(quorvane::raw12_to_bgr_cc.attempt(dst, src, size, Pattern::kRggb, &int8)));
  EXPECT_TRUE(refused(quorvane::raw12_to_bgr16_cc.attempt(dst, src, size, Pattern::kRggb, &table8)));
  EXPECT_TRUE(refused(quorvane::raw16_to_y16_cc.attempt(dst, src, size, Pattern::kRggb, Shift{0}, &int8)));
  quorvane::Arguments arguments;
  arguments.correction = &int8;
  EXPECT_TRUE(refused(call(quorvane::raw8_to_bgr, {dst}, src, size, arguments)));
  EXPECT_EQ(dst, before);
}

TEST(CorrectionTest, RefusesTablesThatWouldEndTheProcess) {
  const Size size{8, 6};
  const Buffer src(size.pixels() * 2, 255);
  Buffer dst(size.pixels() * 6);
  const auto good = [](const Result<void>& result) {
    EXPECT_TRUE(result || result.failure().cause == Cause::kArgument);
    return static_cast<bool>(result);
  };
  const auto bytes = [](std::size_t entries) { return Correction::table8(Buffer(entries)); };
  const auto words = [](std::size_t entries, std::uint16_t level = 0) {
    return Correction::table16(std::vector<std::uint16_t>(entries, level));
  };
  Correction table = bytes(255);
  EXPECT_FALSE(good(quorvane::raw8_to_bgr_cc.attempt(dst, src, size, Pattern::kRggb, &table)));
  EXPECT_FALSE(good(quorvane::raw8_to_y8_cc.attempt(dst, src, size, Pattern::kRggb, &table)));
  table = bytes(256);
  EXPECT_TRUE(good(quorvane::raw8_to_bgr_cc.attempt(dst, src, size, Pattern::kRggb, &table)));
  table = bytes(0);
  EXPECT_FALSE(good(quorvane::raw8_to_bgr_cc.attempt(dst, src, size, Pattern::kRggb, &table)));

  // Words are read as bytes there.
  table = words(127);
  EXPECT_FALSE(good(quorvane::raw12_to_bgr_cc.attempt(dst, src, size, Pattern::kRggb, &table)));
  table = words(128);
  EXPECT_TRUE(good(quorvane::raw12_to_bgr_cc.attempt(dst, src, size, Pattern::kRggb, &table)));
  table = words(4095);
  EXPECT_FALSE(good(quorvane::raw12_to_bgr16_cc.attempt(dst, src, size, Pattern::kRggb, &table)));
  table = words(4096, 65535);
  EXPECT_TRUE(good(quorvane::raw12_to_bgr16_cc.attempt(dst, src, size, Pattern::kRggb, &table)));

  for (const std::uint32_t shift : {0U, 1U, 4U, 8U, 9U, 16U}) {
    const std::size_t wanted = shift > 8 ? 1 : 65536U >> shift;
    table = words(wanted);
    EXPECT_TRUE(
        good(quorvane::raw16_to_bgr16_cc.attempt(dst, src, size, Pattern::kRggb, Shift{shift}, &table)));
    EXPECT_TRUE(
        good(quorvane::raw16_to_y16_cc.attempt(dst, src, size, Pattern::kRggb, Shift{shift}, &table)));
    table = words(wanted - 1);
    EXPECT_FALSE(
        good(quorvane::raw16_to_bgr16_cc.attempt(dst, src, size, Pattern::kRggb, Shift{shift}, &table)));
    EXPECT_FALSE(
        good(quorvane::raw16_to_y16_cc.attempt(dst, src, size, Pattern::kRggb, Shift{shift}, &table)));
    // What comes out goes in again.
    if (wanted < 65536) {
      table = words(wanted, static_cast<std::uint16_t>(wanted));
      EXPECT_FALSE(
          good(quorvane::raw16_to_bgr16_cc.attempt(dst, src, size, Pattern::kRggb, Shift{shift}, &table)));
    }
  }
  const Result<void> shifted =
      quorvane::raw16_to_bgr16_cc.attempt(dst, src, size, Pattern::kRggb, Shift{17}, nullptr);
  ASSERT_FALSE(shifted);
  EXPECT_EQ(shifted.failure().status, QVN_E_PARAM6);
}

TEST(ClampedMatrixTest, RoundsAndStops) {
  const ClampedMatrix matrix({1.5F, 0, 0, 0, 1, -1, 0, 0.25F, 0.25F});
  Buffer bgr{30, 20, 200, 2, 1, 3};
  matrix.apply_bgr(bgr);
  // red 300 stops, green 20 - 30 stops, blue 12.5 goes up; red 4.5 goes up, green -1, blue 0.75.
  EXPECT_EQ(bgr, (Buffer{13, 0, 255, 1, 0, 5}));
  Buffer bgra{30, 20, 200, 77};
  matrix.apply_bgra(bgra);
  EXPECT_EQ(bgra, (Buffer{13, 0, 255, 77}));
  Buffer rgb{200, 20, 30};
  matrix.apply(rgb.data(), 1, 3, 0, 255);
  EXPECT_EQ(rgb, (Buffer{255, 0, 13}));
  std::vector<std::uint16_t> deep{3000, 2000, 2800};
  matrix.apply_bgr16(deep, 4095);
  EXPECT_EQ(deep, (std::vector<std::uint16_t>{1250, 0, 4095}));
  EXPECT_THROW(ClampedMatrix({NAN, 0, 0, 0, 0, 0, 0, 0, 0}), quorvane::Error);
}

/// One pixel at a time, as the rule is told.
template <class T>
void apply_plainly(std::vector<T>& picture, const quorvane::Matrix& m, std::size_t step, std::size_t red,
                   double top) {
  for (std::size_t i = 0; i + step <= picture.size(); i += step) {
    const std::array<double, 3> rgb{double(picture[i + red]), double(picture[i + 1]),
                                    double(picture[i + 2 - red])};
    std::array<T, 3> out{};
    for (std::size_t row = 0; row < 3; ++row) {
      const double sum =
          rgb[0] * double{m[3 * row]} + rgb[1] * double{m[3 * row + 1]} + rgb[2] * double{m[3 * row + 2]};
      out.at(row) = static_cast<T>(std::floor(std::clamp(sum, 0.0, top) + 0.5));
    }
    picture[i + red] = out[0];
    picture[i + 1] = out[1];
    picture[i + 2 - red] = out[2];
  }
}

template <class T>
void compare_with_plain(const quorvane::Matrix& matrix, std::uint32_t top) {
  const ClampedMatrix clamped(matrix);
  for (const std::size_t step : {3U, 4U}) {
    for (const std::size_t red : {0U, 2U}) {
      for (std::size_t count = 0; count <= 200; ++count) {
        std::vector<T> picture(count * step + 16);
        support::Random(17 + count)
            .fill(reinterpret_cast<std::uint8_t*>(picture.data()), picture.size() * sizeof(T));
        const std::vector<T> margin(picture.end() - 16, picture.end());
        std::vector<T> right(picture.begin(), picture.end() - 16);
        apply_plainly(right, matrix, step, red, top);
        right.insert(right.end(), margin.begin(), margin.end());
        clamped.apply(picture.data(), count, step, red, top);
        ASSERT_EQ(picture, right) << count << " pixels of " << step << " samples, red at " << red;
      }
    }
  }
}

TEST(ClampedMatrixTest, EachLengthIsWhatSinglePixelsAre) {
  for (const quorvane::Matrix& matrix :
       {kMatrix, quorvane::Matrix{1.6F, -0.4F, -0.2F, -0.3F, 1.5F, -0.2F, 0.05F, -0.65F, 1.6F},
        quorvane::Matrix{1e30F, -1e30F, 1e-30F, 0.5F, 0.0F, -0.0F, 3e38F, 3e38F, 3e38F},
        quorvane::Matrix{0.0019607844F, 0, 0, 0, 0.5F, 0, 0, 0, -1}}) {
    compare_with_plain<std::uint8_t>(matrix, 255);
    compare_with_plain<std::uint16_t>(matrix, 65535);
    compare_with_plain<std::uint16_t>(matrix, 4095);
  }
}

TEST(ClampedMatrixTest, TheIdentityChangesNothing) {
  const ClampedMatrix identity({1, 0, 0, 0, 1, 0, 0, 0, 1});
  Buffer picture = random_bytes(3 * 1000, 16);
  const Buffer before = picture;
  identity.apply_bgr(picture);
  EXPECT_EQ(picture, before);
}

}  // namespace
}  // namespace bindings
