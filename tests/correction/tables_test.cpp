/// Look-ups outside of a table: the process ends, or, where a handler returns, the kernel carries on and
/// reads what lies behind the table; how often and in which order that is reported, and that entries are read
/// one by one.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <functional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"
#include "support/guard.h"
#include "support/invalid_parameter.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::CorrectedEntry;
using support::Correction;
using support::Frame;
using Bytes = std::vector<std::uint8_t>;

/// The reference's reports, counted as support::CountedReports counts the library's.
class ReferenceReports {
 public:
  explicit ReferenceReports(const std::function<void()>& at_report = {}) {
    reference::at_range_failure = [this, at_report] {
      ++count_;
      if (at_report) at_report();
    };
  }
  ReferenceReports(const ReferenceReports&) = delete;
  ReferenceReports& operator=(const ReferenceReports&) = delete;
  ~ReferenceReports() { reference::at_range_failure = {}; }
  int count() const { return count_; }

 private:
  int count_ = 0;
};

testing::AssertionResult same(const Bytes& expected, const Bytes& actual) {
  if (expected == actual) return testing::AssertionSuccess();
  const auto at = std::mismatch(expected.begin(), expected.end(), actual.begin());
  return testing::AssertionFailure() << "byte " << at.first - expected.begin() << " is "
                                     << unsigned{*at.second} << " instead of " << unsigned{*at.first};
}

struct Case {
  const CorrectedEntry* entry;
  std::uint32_t shift;
};

void PrintTo(const Case& item, std::ostream* out) { *out << item.entry->name << " shift " << item.shift; }

std::vector<Case> cases() {
  std::vector<Case> all;
  for (const CorrectedEntry& entry : support::kCorrectedEntries) {
    all.push_back({&entry, 0});
    if (entry.shifts) all.insert(all.end(), {{&entry, 4}, {&entry, 32}});
  }
  return all;
}

class Tables : public testing::TestWithParam<Case> {
 protected:
  const CorrectedEntry& entry() const { return *GetParam().entry; }
  std::uint32_t kind() const { return entry().sample_bits == 8 ? 8 : 9; }
  std::size_t entry_bytes() const { return entry().word_tables() ? 2 : 1; }

  /// The largest value of a window.
  std::uint32_t top() const { return ((1U << entry().corrected_bits) - 1) >> (GetParam().shift & 31); }

  /// Storage that goes far enough for everything that can be looked up: random entries.
  Bytes storage(support::Random& random) const {
    Bytes bytes(entry().word_tables() ? std::size_t{2} << 16 : 256);
    random.fill(bytes.data(), bytes.size());
    return bytes;
  }

  /// An entry of the storage.
  void set(Bytes& bytes, std::size_t index, std::uint32_t value) const {
    if (entry_bytes() == 1) {
      bytes[index] = static_cast<std::uint8_t>(value);
    } else {
      const auto word = static_cast<std::uint16_t>(value);
      std::memcpy(&bytes[2 * index], &word, 2);
    }
  }

  Correction table(const Bytes& bytes, std::size_t entries) const {
    return Correction::bytes(kind(), bytes, entries * entry_bytes());
  }

  /// A frame of R G over G B whose samples are `value` after the shift.
  Bytes flat(const Frame& frame, std::uint32_t value) const {
    Bytes src(entry().src_bytes(frame));
    for (std::uint32_t y = 0; y < frame.height; ++y) {
      for (std::uint32_t x = 0; x < frame.width; ++x) set_sample(src, frame, y, x, value);
    }
    return src;
  }

  void set_sample(Bytes& src, const Frame& frame, std::uint32_t y, std::uint32_t x,
                  std::uint32_t value) const {
    const std::size_t at = std::size_t{y} * frame.width + x;
    if (entry().sample_bits == 8) {
      src[at] = static_cast<std::uint8_t>(value);
    } else if (entry().sample_bits == 16) {
      const std::uint32_t sample = value << (GetParam().shift & 31);
      src[2 * at] = static_cast<std::uint8_t>(sample >> 8);
      src[2 * at + 1] = static_cast<std::uint8_t>(sample);
    } else {
      const std::uint32_t sample = entry().corrected_bits == 8 ? value << 4 : value;
      std::uint8_t* group = &src[at / 2 * 3];
      group[at % 2 * 2] = static_cast<std::uint8_t>(sample >> 4);
      const std::uint32_t nibbles =
          at % 2 == 0 ? (group[1] & 0xF0U) | (sample & 15) : (group[1] & 0x0FU) | (sample & 15) << 4;
      group[1] = static_cast<std::uint8_t>(nibbles);
    }
  }

  std::uint32_t run(Bytes& dst, const Bytes& src, const Frame& frame, const Correction& correction) const {
    return entry().library(dst.data(), src.data(), frame, correction.get());
  }

  Frame small() const { return {8, 4, 0, GetParam().shift}; }
};

INSTANTIATE_TEST_SUITE_P(Entries, Tables, testing::ValuesIn(cases()), [](const auto& info) {
  return std::string(info.param.entry->name) + "_shift" + std::to_string(info.param.shift);
});

using TablesDeathTest = Tables;
INSTANTIATE_TEST_SUITE_P(Entries, TablesDeathTest, testing::ValuesIn(cases()), [](const auto& info) {
  return std::string(info.param.entry->name) + "_shift" + std::to_string(info.param.shift);
});

/// One entry short: all is well up to the first sample of the top value, and that one ends the process, in
/// whatever colour it is. The catch-all of the entries does not see it.
TEST_P(TablesDeathTest, OneEntryShort) {
  const Frame frame = small();
  // Zeros, so that what is looked up twice stays in the table.
  const Bytes zeros(entry().word_tables() ? std::size_t{2} << 16 : 256);
  const Correction correction = table(zeros, top());
  Bytes dst(entry().dst_bytes(frame));
  const Bytes below = flat(frame, top() - 1);
  ASSERT_EQ(QVN_OK, run(dst, below, frame, correction));

  struct Spot {
    std::uint32_t y, x;
  };
  // A red sample, a blue one, and two greens of one window.
  const std::vector<std::vector<Spot>> spots = {{{2, 2}}, {{1, 3}}, {{2, 3}, {3, 2}}};
  for (const auto& spot : spots) {
    Bytes src = below;
    for (auto [y, x] : spot) set_sample(src, frame, y, x, top());
    EXPECT_EXIT(run(dst, src, frame, correction), support::EndedByReport(), "");
    EXPECT_EQ(QVN_OK, run(dst, src, frame, table(zeros, top() + 1)));
  }
}

TEST_P(TablesDeathTest, NoTable) {
  const Frame frame = small();
  const Bytes src = flat(frame, 0);
  Bytes dst(entry().dst_bytes(frame));
  const Bytes bytes(std::size_t{2} << 16);
  // No storage; no storage, but a length; an empty table.
  const Correction none = Correction::table(kind(), nullptr, nullptr);
  EXPECT_EXIT(run(dst, src, frame, none), support::EndedByReport(), "");
  const Correction length_only = Correction::table(kind(), nullptr, bytes.data() + 1000);
  EXPECT_EXIT(run(dst, src, frame, length_only), support::EndedByReport(), "");
  EXPECT_EXIT(run(dst, src, frame, table(bytes, 0)), support::EndedByReport(), "");
}

/// Two windows of a frame have the top value in all three colours; the last column and the last line report
/// nothing of their own.
TEST_P(Tables, OneReportForEachFailingLookUp) {
  const Frame frame = {4, 2, 0, GetParam().shift};
  const Bytes src = flat(frame, top());
  support::Random random(1);
  Bytes bytes = storage(random);
  // Behind the table lies a value that is in the table.
  set(bytes, top(), 7);
  set(bytes, 7, 9);
  const Correction correction = table(bytes, top());
  Bytes dst(entry().dst_bytes(frame));
  const support::CountedReports reports;
  ASSERT_EQ(QVN_OK, run(dst, src, frame, correction));
  const std::string name = entry().name;
  if (name == "Raw16ToBGR16_CC") {
    // The second pixel's blue is 7 by now.
    EXPECT_EQ(3 + 2, reports.count());
    const std::uint16_t line[] = {7, 7, 7, 9, 7, 7, 9, 7, 7, 9, 7, 7};
    EXPECT_EQ(0, std::memcmp(line, dst.data(), sizeof line));
  } else if (name == "Raw16ToY16_CC") {
    // Two pixels; under a shift the second one looks up its blue, and tests the red and green of the first,
    // which are 7.
    EXPECT_EQ(GetParam().shift == 0 ? 6 : 4, reports.count());
  } else {
    EXPECT_EQ(9, reports.count());
  }
}

/// The two look-ups whose results the second pixel does not use fail too.
TEST(TableOfRaw16ToY16, TheUnusedLookUpsAreTested) {
  std::vector<std::uint16_t> words(0x10000, 3);
  words[100] = 2000;
  const std::vector<std::uint8_t> src = [] {
    std::vector<std::uint8_t> bytes;
    for (int i = 0; i < 8; ++i) bytes.insert(bytes.end(), {0, 200});
    return bytes;
  }();
  // 100 is in the table, and brings 2000, which is not.
  const Correction correction = Correction::words(words, 1000);
  for (std::uint32_t pattern = 0; pattern < 4; ++pattern) {
    std::vector<std::uint16_t> dst(8);
    const support::CountedReports reports;
    ASSERT_EQ(QVN_OK, QVN_Raw16ToY16_CC(dst.data(), src.data(), 4, 2, pattern, 1,
                                        support::as_correction(correction.get())));
    EXPECT_EQ(2, reports.count());
    EXPECT_EQ((2000 * 248) >> 8, dst[0]);
    const int kept = pattern < 2 ? 21 : 77;  // blue or red
    EXPECT_EQ((100 * (248 - kept) + 2000 * kept) >> 8, dst[1]);
  }
}

/// Whatever the length of the table and the frame: the bytes and the number of reports.
TEST_P(Tables, KernelsCarryOnBehindTheTable) {
  support::Random random(2);
  for (std::uint32_t width : support::numbers(entry().good_width, 70)) {
    const Frame frame = {width, 2 + random.below(3), random.below(4), GetParam().shift};
    const Correction correction = table(storage(random), random.below(top() + 2));
    int expected = 0;
    int actual = 0;
    // Room for the pixel more of an odd width, and for the sample that it reads.
    const std::size_t room = std::size_t{entry().pixel_bytes} * (frame.width + 2) * frame.height;
    Bytes src(entry().src_bytes(frame) + 8);
    random.fill(src.data(), src.size());
    Bytes expected_dst(room, 0xA5);
    Bytes actual_dst(room, 0xA5);
    {
      const ReferenceReports reports;
      ASSERT_EQ(reference::kServed,
                entry().reference(expected_dst.data(), src.data(), frame, correction.get()));
      expected = reports.count();
    }
    {
      const support::CountedReports reports;
      ASSERT_EQ(QVN_OK, entry().library(actual_dst.data(), src.data(), frame, correction.get()));
      actual = reports.count();
    }
    ASSERT_TRUE(same(expected_dst, actual_dst)) << frame;
    ASSERT_EQ(expected, actual) << frame;
  }
}

/// The length in words is that in bytes, halved: a byte more makes no entry.
TEST_P(Tables, AnOddByteIsNoWord) {
  if (entry_bytes() == 1) GTEST_SKIP() << "a table of bytes";
  const Frame frame = {4, 2, 0, GetParam().shift};
  const Bytes bytes(std::size_t{2} << 16);
  const Correction correction = Correction::bytes(9, bytes, 2 * std::size_t{top()} + 1);
  Bytes dst(entry().dst_bytes(frame));
  const support::CountedReports reports;
  ASSERT_EQ(QVN_OK, run(dst, flat(frame, top()), frame, correction));
  EXPECT_NE(0, reports.count());
}

/// A table that ends with what the frame can ask for, flush against an inaccessible page, and one that goes
/// on: nothing is reported, and nothing is read beyond.
TEST_P(Tables, EntriesAreReadOneByOne) {
  support::Random random(5);
  for (std::uint32_t largest : {0U, 1U, 2U, 3U, 30U, 200U}) {
    for (support::Flush flush : {support::Flush::kEnd, support::Flush::kBegin}) {
      support::GuardedBuffer storage((std::size_t{largest} + 1) * entry_bytes(), flush);
      for (std::uint32_t i = 0; i <= largest; ++i) {
        const auto value = static_cast<std::uint16_t>(random.below(largest + 1));
        if (entry_bytes() == 1) {
          storage.data()[i] = static_cast<std::uint8_t>(value);
        } else {
          std::memcpy(storage.data() + 2 * std::size_t{i}, &value, 2);
        }
      }
      const Correction correction =
          Correction::table(kind(), storage.data(), storage.data() + storage.size());
      for (std::uint32_t width : {4U, 6U, 34U, 66U, 70U, 258U}) {
        const Frame frame = {width, 3, random.below(4), GetParam().shift};
        Bytes src(entry().src_bytes(frame));
        for (std::uint32_t y = 0; y < 3; ++y) {
          for (std::uint32_t x = 0; x < width; ++x) {
            set_sample(src, frame, y, x, std::min(random.below(largest + 1), top()));
          }
        }
        Bytes dst(entry().dst_bytes(frame));
        Bytes expected(dst.size());
        const ReferenceReports none;
        const support::CountedReports reports;
        ASSERT_EQ(QVN_OK, run(dst, src, frame, correction));
        ASSERT_EQ(0, reports.count());
        entry().reference(expected.data(), src.data(), frame, correction.get());
        ASSERT_EQ(0, none.count());
        ASSERT_TRUE(same(expected, dst)) << frame;
      }
    }
  }
}

#if defined(__unix__)

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitizer = true;
#elif defined(__has_feature)
constexpr bool kSanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kSanitizer = false;
#endif

/// Handles reports, for as long as it lives, by calling a function.
class Handler {
 public:
  explicit Handler(std::function<void()> at_report) {
    at_report_ = std::move(at_report);
    struct sigaction action = {};
    action.sa_handler = [](int) { at_report_(); };
    // A handler that is left by an exception must not leave the signal blocked.
    action.sa_flags = SA_NODEFER;
    sigaction(SIGABRT, &action, &before_);
  }
  Handler(const Handler&) = delete;
  Handler& operator=(const Handler&) = delete;
  ~Handler() { sigaction(SIGABRT, &before_, nullptr); }

 private:
  struct sigaction before_ = {};
  static inline std::function<void()> at_report_;
};

/// Whoever is called by a report sees it before the entry is read: red before green before blue, pixel by
/// pixel. A handler that numbers its calls and writes the number into the entries behind the table finds the
/// numbers in the picture.
TEST_P(Tables, ReportsComeInOrderAndBeforeTheEntryIsRead) {
  support::Random random(3);
  for (std::uint32_t pattern : support::numbers(0, 3)) {
    for (std::uint32_t width : {4U, 6U, 18U, 66U, 258U, 514U}) {  // strips end at 256
      const Frame frame = {width, 3, pattern, GetParam().shift};
      // Half of the samples lie outside of the table.
      const std::uint32_t largest = std::min(top(), 255U);
      const std::size_t entries = largest / 2;
      Bytes src = flat(frame, 0);
      for (std::uint32_t y = 0; y < frame.height; ++y) {
        for (std::uint32_t x = 0; x < width; ++x) set_sample(src, frame, y, x, random.below(largest + 1));
      }
      const Bytes fresh = storage(random);
      const auto picture = [&](auto&& call) {
        Correction correction = table(fresh, entries);
        std::uint32_t number = 0;
        Bytes dst(entry().dst_bytes(frame), 0xA5);
        call(dst, correction, [&] {
          ++number;
          for (std::size_t i = entries; i <= largest; ++i) set(correction.storage(), i, number);
        });
        return dst;
      };
      const Bytes expected = picture([&](Bytes& dst, Correction& correction, auto at_report) {
        const ReferenceReports reports(at_report);
        entry().reference(dst.data(), src.data(), frame, correction.get());
      });
      const Bytes actual = picture([&](Bytes& dst, Correction& correction, auto at_report) {
        const Handler handler(at_report);
        EXPECT_EQ(QVN_OK, run(dst, src, frame, correction));
      });
      ASSERT_TRUE(same(expected, actual)) << frame;
    }
  }
}

TEST_P(Tables, AnIgnoredReportCarriesOnToo) {
  const Frame frame = small();
  support::Random random(4);
  Bytes bytes = storage(random);
  set(bytes, top(), top());
  const Correction correction = table(bytes, 1);
  const auto before = std::signal(SIGABRT, SIG_IGN);
  Bytes dst(entry().dst_bytes(frame));
  EXPECT_EQ(QVN_OK, run(dst, flat(frame, top()), frame, correction));
  std::signal(SIGABRT, before);
  const ReferenceReports reports;
  Bytes expected(dst.size());
  entry().reference(expected.data(), flat(frame, top()).data(), frame, correction.get());
  EXPECT_TRUE(same(expected, dst));
}

#if defined(__x86_64__) && defined(__GLIBC__)

/// Where exceptions can cross a signal's frame, one that a handler throws shows who catches: the 8-bit and
/// 12-bit entries answer with their status, the 16-bit ones let it pass.
TEST_P(Tables, WhatAHandlerThrowsIsCaughtBelowSixteenBits) {
  if (kSanitizer) GTEST_SKIP() << "the sanitizer calls handlers in its own way";
  const Frame frame = small();
  const Correction none = Correction::table(kind(), nullptr, nullptr);
  Bytes dst(entry().dst_bytes(frame));
  std::uint32_t status = 0;
  int thrown = 0;
  const Handler handler([] { throw 42; });
  try {
    status = run(dst, flat(frame, 0), frame, none);
  } catch (int number) {
    thrown = number;
  }
  if (entry().sample_bits == 16) {
    EXPECT_EQ(42, thrown);
  } else {
    EXPECT_EQ(0, thrown);
    EXPECT_EQ(QVN_E_FAIL, status);
  }
}

#endif

#endif  // __unix__

}  // namespace
