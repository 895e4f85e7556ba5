/// Word tables with as many entries as a sample has values under a shift, over frames with more samples than
/// that: against the reference, pictures and numbers of reports, to either side of each bound. And gamma over
/// frames that have room for its curve.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>
#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"
#include "support/guard.h"
#include "support/invalid_parameter.h"
#include "support/random.h"

namespace {

using support::CorrectedEntry;
using support::Correction;
using support::Frame;
using Bytes = std::vector<std::uint8_t>;
using Entries = std::vector<std::uint16_t>;

struct Case {
  const CorrectedEntry* entry;
  std::uint32_t shift;
};

void PrintTo(const Case& item, std::ostream* out) { *out << item.entry->name << " shift " << item.shift; }

std::vector<Case> cases(std::initializer_list<std::uint32_t> shifts) {
  std::vector<Case> all;
  for (const CorrectedEntry& entry : support::kCorrectedEntries) {
    if (!entry.shifts) continue;
    for (const std::uint32_t shift : shifts) all.push_back({&entry, shift});
  }
  return all;
}

std::string name_of(const testing::TestParamInfo<Case>& info) {
  return std::string(info.param.entry->name) + "_shift" + std::to_string(info.param.shift);
}

class WordTables : public testing::TestWithParam<Case> {
 protected:
  const CorrectedEntry& entry() const { return *GetParam().entry; }
  std::uint32_t shift() const { return GetParam().shift; }
  std::uint32_t values() const { return 65536U >> shift(); }

  /// More samples than values, in an even and in an odd width, and just fewer.
  std::vector<Frame> frames() const {
    const std::uint32_t line = 3 * 18;
    const std::uint32_t height = values() / line + 3;
    return {{18, height, 0, shift()},
            {18, height + 1, 3, shift()},
            {19, height, 1, shift()},
            {18, (values() - 1) / line, 2, shift()}};
  }

  /// Random entries below `limit`, and behind the first `count` of them random words.
  static Entries entries(std::uint32_t count, std::uint32_t limit, support::Random& random) {
    Entries words(65536);
    for (std::uint32_t i = 0; i < words.size(); ++i) {
      words[i] = static_cast<std::uint16_t>(random.below(i < count ? limit : 65536));
    }
    return words;
  }

  /// The bytes and the number of reports, of a table of the first `length` words.
  void compare(const Entries& words, std::size_t length, const Frame& frame, support::Random& random,
               bool reports) const {
    const Correction correction = Correction::words(words, length);
    // Room for the pixel more of an odd width, and for the sample that it reads.
    const std::size_t room = std::size_t{entry().pixel_bytes} * (frame.width + 2) * frame.height;
    Bytes src(entry().src_bytes(frame) + 8);
    random.fill(src.data(), src.size());
    Bytes expected(room, 0xA5);
    Bytes actual(room, 0xA5);
    int expected_reports = 0;
    reference::at_range_failure = [&] { ++expected_reports; };
    entry().reference(expected.data(), src.data(), frame, correction.get());
    reference::at_range_failure = {};
    const support::CountedReports counted;
    ASSERT_EQ(QVN_OK, entry().library(actual.data(), src.data(), frame, correction.get()));
    EXPECT_EQ(expected_reports, counted.count()) << frame;
    EXPECT_EQ(reports, expected_reports != 0) << frame;
    EXPECT_TRUE(expected == actual) << frame;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, WordTables, testing::ValuesIn(cases({1, 4, 6, 8})), name_of);

TEST_P(WordTables, AnEntryForEachValue) {
  support::Random random(61);
  for (const Frame& frame : frames()) {
    compare(entries(values(), values(), random), values(), frame, random, false);
  }
}

/// Entries that lead out of the table: they are looked up again, or tested, in the pairs that come by them.
TEST_P(WordTables, EntriesThatLeadOutOfTheTable) {
  support::Random random(62);
  for (const Frame& frame : frames()) {
    Entries words = entries(values(), values(), random);
    for (std::uint32_t i = 0; i < values(); i += 4) words[i] = static_cast<std::uint16_t>(values());
    compare(words, values(), frame, random, true);
    // One entry more, and all is well.
    compare(words, values() + 1, frame, random, false);
  }
}

TEST_P(WordTables, OneEntryShort) {
  support::Random random(63);
  for (const Frame& frame : frames()) {
    Entries words = entries(values(), values() - 1, random);
    const Correction correction = Correction::words(words, values() - 1);
    Bytes src(entry().src_bytes(frame) + 8, 0xFF);
    Bytes dst(std::size_t{entry().pixel_bytes} * (frame.width + 2) * frame.height);
    const support::CountedReports reports;
    ASSERT_EQ(QVN_OK, entry().library(dst.data(), src.data(), frame, correction.get()));
    EXPECT_NE(0, reports.count());
  }
}

/// Nothing is read before the first entry and behind the last one.
TEST_P(WordTables, NothingElseIsRead) {
  support::Random random(64);
  for (const support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
    support::GuardedBuffer storage(std::size_t{2} * values(), flush);
    const Entries words = entries(values(), values(), random);
    std::memcpy(storage.data(), words.data(), storage.size());
    const Correction correction = Correction::table(9, storage.data(), storage.data() + storage.size());
    for (const Frame& frame : frames()) {
      const support::CountedReports reports;
      ASSERT_TRUE(matches(entry(), frame, correction.get(), random));
      EXPECT_EQ(0, reports.count());
    }
  }
}

using GammaCurves = WordTables;
INSTANTIATE_TEST_SUITE_P(Entries, GammaCurves, testing::ValuesIn(cases({0, 1, 2, 3, 4, 32, 33})), name_of);

/// Frames with room for a curve of every value and without, of odd and even heights; results that go through
/// the rule again are below the values, or anything.
TEST_P(GammaCurves, EqualTheReference) {
  support::Random random(65);
  for (const std::uint32_t kind : {4U, 5U}) {
    for (const std::uint32_t height : {60U, 121U, 122U, 175U, 181U, 307U}) {
      const float max_value = height % 3 == 0 ? 65535.0F : static_cast<float>(65535U >> (shift() & 31));
      const support::Matrix matrix = {
          0.9F, 0.2F, -0.1F, 0.1F, 0.8F, 0, 0, 0.1F, height % 2 == 0 ? 0.9F : 3.0F};
      const Correction correction = Correction::floats(kind, matrix, 0.6F, max_value);
      ASSERT_TRUE(matches(entry(), {322, height, random.below(4), shift()}, correction.get(), random));
    }
  }
}

}  // namespace
