/// The six entries with a colour correction, for each kind that they serve: against the slow reference over
/// whole arenas, with random objects of every temper, and between inaccessible pages.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::CorrectedEntry;
using support::Correction;
using support::Frame;
using support::numbers;
using support::Temper;
using Bytes = std::vector<std::uint8_t>;

struct Case {
  const CorrectedEntry* entry;
  std::uint32_t kind;
};

void PrintTo(const Case& item, std::ostream* out) { *out << item.entry->name << " kind " << item.kind; }

std::vector<Case> served_cases() {
  std::vector<Case> cases;
  for (const CorrectedEntry& entry : support::kCorrectedEntries) {
    for (std::uint32_t kind = 0; kind < 12; ++kind) {
      if (entry.serves(kind)) cases.push_back({&entry, kind});
    }
  }
  return cases;
}

/// 0 to 8 act on whole samples, 9 to 23 leave nothing, 24 to 31 follow the counts modulo 32.
constexpr std::uint32_t kShifts[] = {0,  1,  2,  3,  4,  5,  6,  7,  8,   9,          16,         17,
                                     23, 24, 25, 30, 31, 32, 33, 40, 255, 0xFFFFFFFF, 0x00010000, 0x80000004};

class Corrected : public testing::TestWithParam<Case> {
 protected:
  const CorrectedEntry& entry() const { return *GetParam().entry; }

  Correction object(Temper temper, support::Random& random) const {
    return support::random_correction(GetParam().kind, temper, entry().corrected_bits, entry().word_tables(),
                                      random);
  }

  /// Tables have no temper.
  std::vector<Temper> tempers() const {
    if (GetParam().kind >= 8) return {Temper::kGentle};
    return {std::begin(support::kTempers), std::end(support::kTempers)};
  }

  /// A few objects of each temper.
  std::vector<Correction> objects(std::size_t of_each, support::Random& random) const {
    std::vector<Correction> all;
    for (Temper temper : tempers()) {
      for (std::size_t i = 0; i < of_each; ++i) all.push_back(object(temper, random));
    }
    return all;
  }

  /// The next shift of the list, for entries that have one.
  std::uint32_t next_shift() {
    if (!entry().shifts) return 0;
    return kShifts[shift_++ % std::size(kShifts)];
  }

  /// Runs library and reference over the same source; both pictures are compared.
  testing::AssertionResult same_picture(const Frame& frame, const Bytes& src, const void* correction) const {
    Bytes expected(entry().dst_bytes(frame));
    Bytes actual(expected.size());
    entry().reference(expected.data(), src.data(), frame, correction);
    if (entry().library(actual.data(), src.data(), frame, correction) != QVN_OK) {
      return testing::AssertionFailure() << "refused";
    }
    if (expected == actual) return testing::AssertionSuccess();
    std::size_t at = 0;
    while (expected[at] == actual[at]) ++at;
    return testing::AssertionFailure() << frame << ": byte " << at << " is " << unsigned{actual[at]}
                                       << " instead of " << unsigned{expected[at]};
  }

 private:
  std::size_t shift_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Entries, Corrected, testing::ValuesIn(served_cases()), [](const auto& info) {
  return std::string(info.param.entry->name) + "_kind" + std::to_string(info.param.kind);
});

TEST_P(Corrected, EqualsReferenceAtEveryWidth) {
  support::Random random(1);
  for (std::uint32_t width : numbers(2, 70)) {
    const std::vector<Correction> corrections = objects(1, random);
    for (std::uint32_t pattern : numbers(0, 3)) {
      for (const Correction& correction : corrections) {
        const Frame frame = {width, 2 + random.below(3), pattern, next_shift()};
        ASSERT_TRUE(matches(entry(), frame, correction.get(), random));
      }
    }
  }
}

TEST_P(Corrected, EqualsReferenceAroundStrips) {
  support::Random random(2);
  const std::vector<Correction> corrections = objects(1, random);
  for (std::uint32_t middle : {128U, 192U, 256U, 320U, 512U, 768U}) {
    for (std::uint32_t width : numbers(middle - 2, middle + 5)) {
      for (const Correction& correction : corrections) {
        const Frame frame = {width, 3, random.below(4), next_shift()};
        ASSERT_TRUE(matches(entry(), frame, correction.get(), random));
      }
    }
  }
}

TEST_P(Corrected, EqualsReferenceWithManyObjects) {
  support::Random random(3);
  const std::vector<Correction> corrections = objects(GetParam().kind >= 8 ? 6 : 60, random);
  for (const Correction& correction : corrections) {
    for (std::uint32_t width : {14U, 39U}) {
      const Frame frame = {width, 5, random.below(4), next_shift()};
      ASSERT_TRUE(matches(entry(), frame, correction.get(), random));
    }
  }
}

/// Sizes to either side of where a frame has as many samples as a channel has values, and beyond.
TEST_P(Corrected, EqualsReferenceOnLargerFrames) {
  support::Random random(4);
  for (auto [width, height] :
       {std::pair{16U, 15U}, std::pair{16U, 16U}, std::pair{16U, 17U}, std::pair{18U, 16U},
        std::pair{64U, 63U}, std::pair{64U, 64U}, std::pair{64U, 65U}, std::pair{66U, 66U},
        std::pair{67U, 65U}, std::pair{130U, 70U}, std::pair{258U, 40U}}) {
    for (const Correction& correction : objects(1, random)) {
      const Frame frame = {width, height, random.below(4), next_shift()};
      ASSERT_TRUE(matches(entry(), frame, correction.get(), random));
    }
  }
}

TEST_P(Corrected, EqualsReferenceOnACameraSize) {
  support::Random random(5);
  const Correction correction = object(Temper::kGentle, random);
  ASSERT_TRUE(
      matches(entry(), {640, 480, random.below(4), entry().shifts ? 4U : 0U}, correction.get(), random));
}

TEST_P(Corrected, EveryShift) {
  if (!entry().shifts) GTEST_SKIP() << "no shift";
  support::Random random(6);
  std::vector<std::uint32_t> shifts = numbers(0, 40);
  shifts.insert(shifts.end(),
                {63, 64, 65, 255, 256, 0x8000, 0xFFF8, 0x10000, 0x10004, 0x80000000, 0xFFFFFFFF});
  const std::vector<Correction> corrections = objects(2, random);
  for (std::uint32_t shift : shifts) {
    for (std::uint32_t pattern : numbers(0, 3)) {
      for (const Correction& correction : corrections) {
        ASSERT_TRUE(matches(entry(), {22, 3, pattern, shift}, correction.get(), random));
      }
    }
  }
}

TEST_P(Corrected, PatternsAboveThreeAreUsedByTheirParities) {
  support::Random random(7);
  for (std::uint32_t pattern : {4U, 5U, 6U, 7U, 9U, 0x7FFFFFFDU, 0xFFFFFFFEU, 0xFFFFFFFFU}) {
    for (const Correction& correction : objects(1, random)) {
      ASSERT_TRUE(matches(entry(), {38, 5, pattern, next_shift()}, correction.get(), random));
    }
  }
}

/// No line is made, and what lies before the frame is copied as the last one.
TEST_P(Corrected, HeightsOneAndZeroCopyTheLineBeforeTheDestination) {
  support::Random random(8);
  const Correction correction = object(Temper::kGentle, random);
  for (std::uint32_t width : {4U, 5U, 16U, 34U, 70U}) {
    for (std::uint32_t pattern : numbers(0, 7)) {
      ASSERT_TRUE(matches(entry(), {width, 1, pattern, next_shift()}, correction.get(), random));
      // Without a row phase a height of 0 runs away.
      if (reference::public_to_internal(pattern) >> 1 == 0) continue;
      ASSERT_TRUE(matches(entry(), {width, 0, pattern, next_shift()}, correction.get(), random));
    }
  }
}

TEST_P(Corrected, NeedsNoAlignment) {
  support::Random random(9);
  const Correction correction = object(Temper::kGentle, random);
  for (std::uint32_t width : {4U, 6U, 18U, 34U, 66U, 130U}) {
    for (std::size_t dst_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
      for (std::size_t src_offset : {0U, 1U, 2U, 3U, 15U, 31U}) {
        const Frame frame = {width, 3, random.below(4), next_shift()};
        ASSERT_TRUE(matches(entry(), frame, correction.get(), random, dst_offset, src_offset));
      }
    }
  }
}

/// The frames, the object and its table lie against inaccessible pages, and the object ends with its last
/// field.
TEST_P(Corrected, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(10);
  for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    const Correction loose = object(Temper::kGentle, random);
    support::GuardedBuffer table(loose.storage().size(), flush);
    Correction tabled;
    const void* built = loose.get();
    if (table.size() != 0) {
      std::memcpy(table.data(), loose.storage().data(), table.size());
      tabled = Correction::table(GetParam().kind, table.data(), table.data() + table.size());
      built = tabled.get();
    }
    support::GuardedBuffer object(support::object_bytes(GetParam().kind), flush);
    std::memcpy(object.data(), built, object.size());
    for (std::uint32_t width : support::even_widths()) {
      if (width < entry().good_width) continue;
      const Frame frame = {width, 2 + random.below(3), random.below(4), next_shift()};
      support::GuardedBuffer src(entry().src_bytes(frame), flush);
      support::GuardedBuffer dst(entry().dst_bytes(frame), flush);
      random.fill(src.data(), src.size());
      Bytes expected(dst.size());
      entry().reference(expected.data(), src.data(), frame, object.data());
      // A last line that is written by half shows what the pages hold: zeros.
      ASSERT_EQ(QVN_OK, entry().library(dst.data(), src.data(), frame, object.data()));
      ASSERT_EQ(0, std::memcmp(expected.data(), dst.data(), dst.size())) << frame;
    }
  }
}

/// Every value of a sample in red and in blue.
TEST_P(Corrected, EverySampleValue) {
  // One sample in four is red, and one blue, so the frame has four samples for each value.
  const unsigned bits = entry().corrected_bits;
  const std::uint32_t side = 2U << (bits / 2);
  support::Random random(11);
  Bytes src;
  for (std::uint32_t y = 0; y < side; ++y) {
    for (std::uint32_t x = 0; x < side; ++x) {
      const std::uint32_t window = (y / 2) * (side / 2) + x / 2;
      // R G over G B: red counts up, blue down, the greens are near each other.
      std::uint32_t value = window;
      if (y % 2 == 1 && x % 2 == 1) value = (1U << bits) - 1 - window;
      if (y % 2 != x % 2) value = (window * 40503U + y % 2) & ((1U << bits) - 1);
      switch (entry().sample_bits) {
        case 8:
          src.push_back(static_cast<std::uint8_t>(value));
          break;
        case 16:
          src.push_back(static_cast<std::uint8_t>(value >> 8));
          src.push_back(static_cast<std::uint8_t>(value));
          break;
        default: {
          // Two samples in three bytes; 8-bit corrections see the top bytes.
          const std::uint32_t sample = bits == 12 ? value : value << 4;
          if (x % 2 == 0) {
            src.push_back(static_cast<std::uint8_t>(sample >> 4));
            src.push_back(static_cast<std::uint8_t>(sample & 15));
          } else {
            src.back() = static_cast<std::uint8_t>(src.back() | (sample & 15) << 4);
            src.push_back(static_cast<std::uint8_t>(sample >> 4));
          }
          break;
        }
      }
    }
  }
  for (const Correction& correction : objects(bits == 16 ? 1 : 10, random)) {
    ASSERT_TRUE(same_picture({side, side, 0, 0}, src, correction.get()));
  }
}

TEST_P(Corrected, DoesNotChangeTheObject) {
  support::Random random(12);
  for (Correction& correction : objects(1, random)) {
    const std::size_t size = support::object_bytes(GetParam().kind);
    const auto* bytes = static_cast<const std::uint8_t*>(correction.get());
    const Bytes object_before(bytes, bytes + size);
    const Bytes table_before = correction.storage();
    ASSERT_TRUE(matches(entry(), {34, 4, 1, 1}, correction.get(), random));
    EXPECT_EQ(object_before, Bytes(bytes, bytes + size));
    EXPECT_EQ(table_before, correction.storage());
  }
}

}  // namespace
