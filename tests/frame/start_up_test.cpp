/// Load and unload: the version word and its line, the pattern swap that hangs on it, the exit list, and the
/// shared tables of the frame room.
#include "frame/start_up.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "convert/yuv_tables.h"
#include "frame/call_frame.h"
#include "frame/error_text.h"
#include "frame/error_texts.h"
#include "frame/failing_new.h"
#include "frame/pixel_format.h"
#include "frame/platform.h"
#include "frame/test_logger.h"
#include "quorvane/quorvane.h"
#include "support/invalid_parameter.h"

namespace {

using support::Installed;
using support::line_of;
using support::TestLogger;
using Lines = std::vector<std::string>;

/// Gives the version word back when the test ends.
class VersionWord : public testing::Test {
 protected:
  void TearDown() override { qvn::version_word = 0x02010200; }
};

bool no_record(qvn::VersionRecord&) { return false; }

std::string own_version_line() {
  return std::string("File ") + qvn::read_own_path().data() +
         " (Prod. version 2.1.2.0, File version 2.1.2.0)";
}

TEST_F(VersionWord, IsReadAtLoad) { EXPECT_EQ(qvn::version_word, 0x02010200u); }

TEST_F(VersionWord, IsReadAgainOnEveryNotification) {
  qvn::version_word = 0;
  EXPECT_EQ(qvn::notify(), 1);
  EXPECT_EQ(qvn::version_word, 0x02010200u);
  uint32_t answer = 0;
  EXPECT_EQ(QVN_GetVersion(&answer), QVN_OK);
  EXPECT_EQ(answer, 0x02010200u);
}

TEST_F(VersionWord, KeepsItsValueWithoutARecord) {
  TestLogger logger;
  const Installed installed(logger);
  for (const uint32_t word : {0u, 0x01000000u, 0x12345678u}) {
    qvn::version_word = word;
    EXPECT_EQ(qvn::notify(no_record), 1);
    uint32_t answer = ~word;
    EXPECT_EQ(QVN_GetVersion(&answer), QVN_OK);
    EXPECT_EQ(answer, word);
  }
  EXPECT_TRUE(logger.lines().empty());
}

TEST_F(VersionWord, ComesFromTheProductVersionAlone) {
  TestLogger logger;
  const Installed installed(logger);
  qvn::notify([](qvn::VersionRecord& record) {
    record = {{1, 2, 3, 4}, {65535, 6, 7, 8}};
    return true;
  });
  EXPECT_EQ(qvn::version_word, 0x01020304u);
  EXPECT_EQ(logger.lines(),
            Lines{line_of("INFO   ", std::string("File ") + qvn::read_own_path().data() +
                                         " (Prod. version 1.2.3.4, File version 65535.6.7.8)")});
}

TEST_F(VersionWord, PartsAbove255SpillIntoTheNextOneUp) {
  EXPECT_EQ(qvn::version_word_of({1, 0, 0, 256}), 0x01000100u);
  EXPECT_EQ(qvn::version_word_of({2, 256, 0, 0}), 0x03000000u);
  EXPECT_EQ(qvn::version_word_of({1, 256, 0, 0}), 0x01000000u);  // or, not plus: the bit is there already
  EXPECT_EQ(qvn::version_word_of({300, 0, 0, 0}), 0x2C000000u);
  EXPECT_EQ(qvn::version_word_of({1, 0x123, 0xFFFF, 0x100}), 0x01FFFF00u);
  qvn::notify([](qvn::VersionRecord& record) {
    record = {{0, 0, 0, 65535}, {}};
    return true;
  });
  EXPECT_EQ(qvn::version_word, 0x0000FFFFu);
}

TEST_F(VersionWord, LineIsAtLevelThree) {
  TestLogger logger;
  const Installed installed(logger);
  logger.threshold = 2;
  qvn::notify();
  EXPECT_TRUE(logger.lines().empty());
  logger.threshold = 3;
  qvn::notify();
  EXPECT_EQ(logger.lines(), Lines{line_of("INFO   ", own_version_line())});
}

TEST_F(VersionWord, LineNamesTheFileThatHoldsTheLibrary) {
  const std::filesystem::path path = qvn::read_own_path().data();
  ASSERT_TRUE(path.has_filename());
#if defined(__GLIBC__)
  // Not what the system runs, which is an emulator or the loader in some builds.
  if (path.has_parent_path()) {
    EXPECT_TRUE(std::filesystem::equivalent(path, program_invocation_name)) << path;
  }
#endif
}

TEST_F(VersionWord, ReadingLeavesNoMemoryBehind) {
  const long before = support::live_allocations();
  for (int i = 0; i < 100; ++i) qvn::notify();
  EXPECT_EQ(support::live_allocations(), before);
}

TEST_F(VersionWord, DecidesThePatternSwap) {
  for (const uint32_t word : {0u, 0x01000000u, 0x0100FFFFu}) {
    qvn::version_word = word;
    for (uint32_t pattern = 0; pattern < 10; ++pattern) EXPECT_EQ(qvn::internal_pattern(pattern), pattern);
  }
  for (const uint32_t word : {0x01010000u, 0x02010200u, 0x80000000u, 0xFFFFFFFFu}) {
    qvn::version_word = word;
    EXPECT_EQ(qvn::internal_pattern(0), 0u);
    EXPECT_EQ(qvn::internal_pattern(1), 2u);
    EXPECT_EQ(qvn::internal_pattern(2), 1u);
    for (const uint32_t other : {3u, 4u, 5u, 6u, 7u, 0x80000001u, 0xFFFFFFFFu}) {
      EXPECT_EQ(qvn::internal_pattern(other), other);
    }
  }
}

/// The mosaic 10 20 over 30 40: whichever sample is red, the greens are the other diagonal.
std::array<uint8_t, 3> first_pixel(uint32_t pattern) {
  const std::array<uint8_t, 4> src = {10, 20, 30, 40};
  std::array<uint8_t, 12> dst = {};
  EXPECT_EQ(QVN_Raw8ToBGR(dst.data(), src.data(), 2, 2, pattern), QVN_OK);
  return {dst[0], dst[1], dst[2]};
}

TEST_F(VersionWord, DecidesTheSwapInAnEntry) {
  using Bgr = std::array<uint8_t, 3>;
  const Bgr gb_over_rg = {20, 25, 30};
  const Bgr gr_over_bg = {30, 25, 20};
  const Bgr rg_over_gb = {40, 25, 10};
  const Bgr bg_over_gr = {10, 25, 40};
  for (const uint32_t word : {0x01000000u, 0x01010000u}) {
    qvn::version_word = word;
    const bool swapped = word == 0x01010000u;
    EXPECT_EQ(first_pixel(0), rg_over_gb);
    EXPECT_EQ(first_pixel(1), swapped ? gb_over_rg : gr_over_bg);
    EXPECT_EQ(first_pixel(2), swapped ? gr_over_bg : gb_over_rg);
    EXPECT_EQ(first_pixel(3), bg_over_gr);
    EXPECT_EQ(first_pixel(5), gr_over_bg);
    EXPECT_EQ(first_pixel(7), bg_over_gr);
  }
}

std::vector<int> released;

TEST(ExitList, RunsInReverseOrderOfRegistrationAndOnce) {
  released.clear();
  qvn::ExitList list;
  list.add([] { released.push_back(1); });
  list.add([] { released.push_back(2); });
  list.add([] { released.push_back(3); });
  EXPECT_EQ(list.registered().size(), 3u);
  list.run_in_reverse();
  list.run_in_reverse();
  EXPECT_EQ(released, (std::vector<int>{3, 2, 1}));
  EXPECT_TRUE(list.registered().empty());
}

std::vector<qvn::Release> registered_releases() {
  const auto releases = qvn::exit_list.registered();
  return {releases.begin(), releases.end()};
}

TEST(LoadOrder, RegistersStringSupportBeforeTheTexts) {
  EXPECT_EQ(registered_releases(),
            (std::vector<qvn::Release>{qvn::release_string_support, qvn::free_error_text_map}));
}

/// The text map is the first to take memory. By then the tables are built, which clears their guard; set once
/// more, it is cleared by the second registration of the same initialiser.
TEST(LoadOrder, BuildsTheTablesBeforeTheTextsAndAsksAgainBehindThem) {
  static uint8_t guard_at_texts = 0xFF;
  qvn::unload_library();
  qvn::yuv_tables_guard = 1;
  support::at_next_allocation([] {
    guard_at_texts = qvn::yuv_tables_guard;
    qvn::yuv_tables_guard = 1;
  });
  qvn::load_library();
  EXPECT_EQ(guard_at_texts, 0);
  EXPECT_EQ(qvn::yuv_tables_guard, 0);
}

TEST(LoadOrder, UnloadNotifiesAndFreesAndALoadFollows) {
  TestLogger logger;
  const Installed installed(logger);
  qvn::version_word = 0;
  // The text map must still be there while the version line is written.
  std::vector<bool> map_there;
  logger.memory.at_write = [&] { map_there.push_back(qvn::error_text_map != nullptr); };
  qvn::unload_library();
  EXPECT_EQ(qvn::error_text_map, nullptr);
  EXPECT_TRUE(registered_releases().empty());
  EXPECT_EQ(qvn::version_word, 0x02010200u);
  qvn::load_library();
  EXPECT_NE(qvn::error_text_map, nullptr);
  EXPECT_EQ(registered_releases().size(), 2u);
  EXPECT_EQ(map_there, (std::vector<bool>{true, true}));
  const std::string line = line_of("INFO   ", own_version_line());
  EXPECT_EQ(logger.lines(), (Lines{line, line}));
}

TEST(LoadOrder, AThousandLoadsLeaveNoMemoryBehind) {
  const long before = support::live_allocations();
  for (int i = 0; i < 1000; ++i) {
    qvn::unload_library();
    qvn::load_library();
  }
  EXPECT_EQ(support::live_allocations(), before);
}

class StderrSink : public qvn::LogSink {
 public:
  void Close() override {}
  void Flush() override {}
  void Write(const char* line) override { std::fprintf(stderr, "%s\n", line); }
};

/// The real unload: a second version line appears when the process ends.
TEST(LoadOrderDeathTest, TheEndOfTheProcessNotifiesOnceMore) {
  EXPECT_EXIT(
      {
        auto* logger = new TestLogger;
        logger->sink = new StderrSink;
        logger->lineFormat = "%u %u%s %s %s";
        qvn::process_logger = logger;
        std::exit(0);
      },
      testing::ExitedWithCode(0), "INFO    File .*Prod. version 2.1.2.0, File version 2.1.2.0");
}

TEST(ErrorTextMap, HoldsEveryTextUnderItsSignedCode) {
  EXPECT_EQ(qvn::error_text_map->size(), std::size(kExpectedTexts));
  for (size_t row = 0; row < std::size(kExpectedTexts); ++row) {
    const auto found = qvn::error_text_map->find(static_cast<int32_t>(kExpectedTexts[row].code));
    ASSERT_NE(found, qvn::error_text_map->end());
    EXPECT_EQ(found->second, row);
  }
  EXPECT_EQ(qvn::error_text_map->begin()->first, INT32_MIN + 0x08000000);
}

TEST(ErrorTextMap, TellsWhetherACodeIsKnown) {
  std::array<char, 64> text;
  EXPECT_TRUE(qvn::copy_error_text(0, text.data(), text.size()));
  EXPECT_STREQ(text.data(), "No error");
  EXPECT_FALSE(qvn::copy_error_text(QVN_E_FAIL, text.data(), text.size()));
  EXPECT_STREQ(text.data(), "return code not found");
}

std::string trimmed(std::string text) {
  text.push_back('\0');
  qvn::trim_line_end(text.data(), static_cast<uint32_t>(text.size()));
  text.resize(text.find('\0'));
  return text;
}

TEST(TrimLineEnd, CutsACarriageReturnAndLineFeed) {
  EXPECT_EQ(trimmed("text\r\n"), "text");
  EXPECT_EQ(trimmed("t\r\n"), "t");
  EXPECT_EQ(trimmed("text\r\n\r\n"), "text\r\n");
}

TEST(TrimLineEnd, CutsNothingElse) {
  for (const char* text : {"", "\n", "\r\n", "text", "text\n", "text\r", "text\n\r", "\n\n\n", "te\r\nxt"}) {
    EXPECT_EQ(trimmed(text), text);
  }
}

TEST(TrimLineEnd, LeavesTheLineFeedBehindTheNewEnd) {
  char text[] = "ab\r\n";
  qvn::trim_line_end(text, sizeof text);
  EXPECT_EQ(std::string(text, sizeof text), std::string("ab\0\n\0", 5));
}

TEST(TrimLineEnd, LooksNoFurtherThanTheSize) {
  char text[] = "abc\r\n";
  qvn::trim_line_end(text, 4);
  EXPECT_STREQ(text, "abc\r\n");
  qvn::trim_line_end(text, 5);
  EXPECT_STREQ(text, "abc");
}

TEST(PixelFormats, KnowTheElementThatAFlipMoves) {
  const std::vector<std::pair<uint32_t, uint32_t>> elements = {
      {0, 1},  {1, 2},   {2, 2},   {3, 2},   {4, 3},   {5, 2},   {6, 6},   {7, 2},   {8, 6},   {9, 1},
      {10, 2}, {128, 1}, {129, 1}, {130, 1}, {132, 0}, {133, 0}, {134, 0}, {135, 0}, {136, 0}, {141, 0}};
  for (const auto& [code, element] : elements) {
    const qvn::PixelFormat* format = qvn::find_pixel_format(code);
    ASSERT_NE(format, nullptr) << code;
    EXPECT_EQ(format->code, code);
    EXPECT_EQ(format->flip_element, element) << code;
  }
  EXPECT_EQ(qvn::find_pixel_format(131), nullptr);
}

/// One more fixed order: the first null pointer in argument order decides.
TEST(CallFrame, NamesTheFirstNullPointer) {
  int object = 0;
  EXPECT_EQ(qvn::check_pointers({&object, &object}), QVN_OK);
  EXPECT_EQ(qvn::check_pointers({nullptr, nullptr}), QVN_E_PARAM1);
  EXPECT_EQ(qvn::check_pointers({&object, nullptr, nullptr}), QVN_E_PARAM2);
  EXPECT_EQ(qvn::check_pointers({&object, &object, nullptr}), QVN_E_PARAM3);
  EXPECT_EQ(qvn::check_pointers({&object, &object, &object, &object, nullptr}), QVN_E_PARAM5);
}

TEST(CallFrame, KernelResultsBecomeStatuses) {
  EXPECT_EQ(qvn::run_kernel([] {}), QVN_OK);
  EXPECT_EQ(qvn::run_kernel([](uint32_t status) { return status; }, QVN_E_FAIL), QVN_E_FAIL);
}

TEST(InvalidParameter, CarriesOnBehindAHandlerThatReturns) {
  const support::CountedReports reports;
  qvn::report_invalid_parameter();
  EXPECT_EQ(reports.count(), 1);
}

TEST(InvalidParameterDeathTest, EndsTheProcessByDefault) {
  EXPECT_EXIT(qvn::report_invalid_parameter(), support::EndedByReport(), "");
}

#ifndef _WIN32
TEST(InvalidParameterDeathTest, EndsTheProcessFromAThreadThatBlocksAllSignals) {
  const auto report = [] {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
    qvn::report_invalid_parameter();
  };
  EXPECT_EXIT(report(), support::EndedByReport(), "");
}

TEST(InvalidParameter, CarriesOnWhereTheSignalIsIgnored) {
  auto* const before = std::signal(SIGABRT, SIG_IGN);
  qvn::report_invalid_parameter();
  std::signal(SIGABRT, before);
}
#endif

}  // namespace
