/// The line writer: exact lines, thresholds, flushes, times, and what happens when a writer fails or
/// re-enters.
///
/// Entries of this and of the Bayer room serve as callers.
#include "frame/logger.h"

#include <gtest/gtest.h>
#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "frame/failing_new.h"
#include "frame/platform.h"
#include "frame/process_state.h"
#include "frame/test_logger.h"
#include "quorvane/quorvane.h"

namespace {

using support::Installed;
using support::line_of;
using support::TestLogger;
using Lines = std::vector<std::string>;

TEST(LoggerFields, StandInTheirOrder) {
  TestLogger test_logger;
  const qvn::Logger& logger = test_logger;
  const std::vector<const void*> fields = {&logger,
                                           &logger.sink,
                                           &logger.threshold,
                                           &logger.flushAlways,
                                           &logger.timeFormat,
                                           &logger.lineFormat,
                                           &logger.timeText,
                                           &logger.useTime,
                                           &logger.disabled,
                                           &logger.formatResult,
                                           &logger.scratch,
                                           &logger.formatBuffer,
                                           &logger.lock,
                                           &logger.ticksPerUnit,
                                           &logger.startCount};
  EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end(), std::less<>()));
  EXPECT_EQ(std::adjacent_find(fields.begin(), fields.end()), fields.end());
  EXPECT_EQ(sizeof logger.scratch, 8192u);
  EXPECT_EQ(sizeof logger.formatBuffer, 8192u);
}

TEST(LoggerLine, HasTheWordOfItsLevel) {
  TestLogger logger;
  const Installed installed(logger);
  for (int32_t level = 1; level <= 5; ++level) EXPECT_EQ(logger.Log(level, "text"), 0);
  EXPECT_EQ(logger.lines(),
            (Lines{line_of("ERROR  ", "text"), line_of("WARNING", "text"), line_of("INFO   ", "text"),
                   line_of("DEBUG  ", "text"), line_of("CHATTER", "text")}));
}

TEST(LoggerLine, AnyOtherLevelAsksLevelName) {
  TestLogger logger;
  logger.threshold = 6;
  const Installed installed(logger);
  EXPECT_EQ(logger.Log(6, "six"), 0);
  EXPECT_EQ(logger.Log(-1, "below"), 0);
  EXPECT_EQ(logger.lines(), (Lines{line_of("level 6", "six"), line_of("level -1", "below")}));
}

#ifdef _WIN32
auto own_process() { return GetCurrentProcessId(); }
auto own_thread() { return GetCurrentThreadId(); }
#else
auto own_process() { return getpid(); }
auto own_thread() { return gettid(); }
#endif

TEST(LoggerLine, HoldsProcessAndThreadInThisOrder) {
  TestLogger logger;
  logger.lineFormat = "%u,%u,%s,%s,%s";
  const Installed installed(logger);
  std::string expected;
  std::thread([&] {
    logger.Log(3, "m");
    expected = std::to_string(own_process()) + "," + std::to_string(own_thread()) + ",,INFO   ,m";
  }).join();
  EXPECT_EQ(logger.lines(), Lines{expected});
  EXPECT_NE(qvn::thread_id(), 0u);
}

TEST(LoggerLine, IsFormattedInTheBufferAndCutToIt) {
  TestLogger logger;
  logger.scratch.fill('s');
  const Installed installed(logger);
  const std::string message(10000, 'm');
  logger.Log(3, message.c_str());
  EXPECT_EQ(logger.formatResult, logger.formatBuffer.data());
  EXPECT_EQ(logger.memory.written_from, logger.formatBuffer.data());
  EXPECT_EQ(logger.lines(), Lines{line_of("INFO   ", message).substr(0, 8191)});
  EXPECT_TRUE(std::all_of(logger.scratch.begin(), logger.scratch.end(), [](char c) { return c == 's'; }));
}

TEST(LoggerLine, PercentSignsOfAMessageAreText) {
  TestLogger logger;
  const Installed installed(logger);
  logger.Log(3, "100 %s %n");
  EXPECT_EQ(logger.lines(), Lines{line_of("INFO   ", "100 %s %n")});
}

TEST(LoggerLine, WithoutASinkIsFormattedAndDropped) {
  TestLogger logger;
  logger.sink = nullptr;
  logger.flushAlways = true;
  const Installed installed(logger);
  EXPECT_EQ(logger.Log(0, "lost"), 0);
  EXPECT_EQ(logger.formatResult, logger.formatBuffer.data());
  EXPECT_EQ(std::string(logger.formatResult), line_of("FATAL  ", "lost"));
  EXPECT_TRUE(logger.lines().empty());
}

TEST(LoggerThreshold, IsTheHighestLevelWritten) {
  for (int32_t threshold = -2; threshold <= 6; ++threshold) {
    TestLogger logger;
    logger.threshold = threshold;
    const Installed installed(logger);
    for (int32_t level = -2; level <= 6; ++level) {
      logger.lines().clear();
      EXPECT_EQ(logger.Log(level, "text"), 0);
      EXPECT_EQ(logger.lines().empty(), level > threshold) << level << " at " << threshold;
    }
  }
}

TEST(LoggerThreshold, DisabledDropsEvenFatalLines) {
  TestLogger logger;
  logger.disabled = true;
  logger.flushAlways = true;
  const Installed installed(logger);
  for (int32_t level = -1; level <= 6; ++level) EXPECT_EQ(logger.Log(level, "text"), 0);
  EXPECT_TRUE(logger.lines().empty());
  EXPECT_EQ(logger.formatResult, nullptr);
}

TEST(LoggerThreshold, DroppedLinesAllocateNothing) {
  TestLogger logger;
  logger.threshold = 3;
  const Installed installed(logger);
  const std::size_t before = support::allocation_count();
  EXPECT_EQ(QVN_Raw8ToBGR(nullptr, nullptr, 2, 2, 0), QVN_E_PARAM1);
  EXPECT_EQ(QVN_GetErrorInfo(0, nullptr, 0), QVN_E_PARAM2);
  EXPECT_EQ(support::allocation_count(), before);
  EXPECT_TRUE(logger.lines().empty());
}

TEST(LoggerThreshold, DroppedLinesDoNotWaitForTheLock) {
  TestLogger logger;
  logger.threshold = 3;
  const Installed installed(logger);
  logger.lock.enter();
  std::thread([] { QVN_GetErrorInfo(0, nullptr, 0); }).join();
  logger.lock.leave();
  EXPECT_TRUE(logger.lines().empty());
}

/// The copy of the message is made between the two tests; here it switches the logger off on the way.
TEST(LoggerThreshold, IsTestedAgainUnderTheLock) {
  static TestLogger* current = nullptr;
  TestLogger logger;
  current = &logger;
  const Installed installed(logger);
  support::at_next_allocation([] { current->disabled = true; });
  EXPECT_EQ(logger.Log(0, "a message that is too long for a string without memory"), 0);
  EXPECT_TRUE(logger.disabled);
  logger.disabled = false;
  support::at_next_allocation([] { current->threshold = 2; });
  EXPECT_EQ(logger.Log(3, "a message that is too long for a string without memory"), 0);
  EXPECT_EQ(logger.threshold, 2);
  EXPECT_TRUE(logger.lines().empty());
  EXPECT_EQ(logger.formatResult, nullptr);
}

TEST(LoggerFlush, FollowsFatalLinesOnly) {
  TestLogger logger;
  logger.threshold = 6;
  const Installed installed(logger);
  for (const int32_t level : {1, 0, 5, 6, -1}) logger.Log(level, "t");
  EXPECT_EQ(logger.lines(),
            (Lines{line_of("ERROR  ", "t"), line_of("FATAL  ", "t"), "<flush>", line_of("CHATTER", "t"),
                   line_of("level 6", "t"), line_of("level -1", "t")}));
  EXPECT_EQ(logger.memory.closes, 0);
}

TEST(LoggerFlush, FollowsEveryLineWhenAlways) {
  TestLogger logger;
  logger.flushAlways = true;
  const Installed installed(logger);
  logger.Log(4, "a");
  logger.Log(0, "b");
  EXPECT_EQ(logger.lines(), (Lines{line_of("DEBUG  ", "a"), "<flush>", line_of("FATAL  ", "b"), "<flush>"}));
}

TEST(LoggerTime, IsMadeFromTheCounter) {
  TestLogger logger;
  logger.startCount = 1000;
  const std::vector<std::pair<int64_t, std::string>> cases = {
      {0, "0:00:00.0000"},
      {1, "0:00:00.0001"},
      {9999, "0:00:00.9999"},
      {10000, "0:00:01.0000"},
      {600000, "0:01:00.0000"},
      {35999999, "0:59:59.9999"},
      {36000000, "1:00:00.0000"},
      {37234567, "1:02:03.4567"},
      {3600000000, "100:00:00.0000"},
      {36000000000, "1000:00:00.0000"},
  };
  for (const auto& [units, text] : cases) {
    for (const int64_t part : {0, 99999}) {
      qvn::format_time(logger, 1000 + units * 100000 + part);
      EXPECT_EQ(logger.timeText, text);
      EXPECT_EQ(std::string(logger.formatBuffer.data()), text);
    }
  }
}

TEST(LoggerTime, BeforeTheOriginTakesTheRestAsUnsigned) {
  TestLogger logger;
  logger.startCount = 100000;
  qvn::format_time(logger, 1);  // -0.99999 units
  EXPECT_EQ(logger.timeText, "0:00:00.0000");
  qvn::format_time(logger, 0);  // -1 unit: 4294967295 = 7158 * 600000 + 16 * 10000 + 7295
  EXPECT_EQ(logger.timeText, "0:7158:16.7295");
}

TEST(LoggerTime, StandsInTheLine) {
  TestLogger logger;
  logger.useTime = true;
  logger.startCount = qvn::read_counter() - int64_t{5} * 10000 * 100000;
  const Installed installed(logger);
  logger.Log(3, "now");
  EXPECT_EQ(logger.lines(), Lines{line_of("INFO   ", "now", logger.timeText)});
  EXPECT_GE(logger.timeText, "0:00:05.0000");
  EXPECT_LT(logger.timeText, "0:01:00.0000");
}

TEST(LoggerTime, IsEmptyInTheLineWhenNotUsed) {
  TestLogger logger;
  logger.timeText = "12:00";
  logger.ticksPerUnit = 0;
  const Installed installed(logger);
  logger.Log(3, "now");
  EXPECT_EQ(logger.lines(), Lines{line_of("INFO   ", "now")});
  EXPECT_EQ(logger.timeText, "12:00");
}

TEST(LoggerTime, CounterCountsNanoseconds) {
#ifdef _WIN32
  GTEST_SKIP() << "this system's counter has a unit of its own";
#endif
  const auto steady = [] {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
  };
  const int64_t before = steady();
  const int64_t count = qvn::read_counter();
  EXPECT_LE(before, count);
  EXPECT_LE(count, steady());
}

TEST(LoggerHook, ActsOnTheInstalledLogger) {
  TestLogger installed_logger;
  TestLogger other;
  other.disabled = true;
  other.threshold = -5;
  const Installed installed(installed_logger);
  EXPECT_EQ(other.Log(4, "text"), 0);
  EXPECT_EQ(installed_logger.lines(), Lines{line_of("DEBUG  ", "text")});
  EXPECT_TRUE(other.lines().empty());
}

TEST(LoggerHook, IsEmptyUntilSomeoneInstallsALogger) { EXPECT_EQ(qvn::process_logger, nullptr); }

TEST(LoggerHook, EntriesLogBeforeTheirChecks) {
  TestLogger logger;
  const Installed installed(logger);
  uint8_t byte = 0;
  EXPECT_EQ(QVN_GetErrorInfo(0, nullptr, 0), QVN_E_PARAM2);
  EXPECT_EQ(QVN_Raw8ToBGR(nullptr, nullptr, 2, 2, 0), QVN_E_PARAM1);
  EXPECT_EQ(QVN_Raw8ToBGR_mono(nullptr, &byte, 2, 2, 0), QVN_E_PARAM1);
  EXPECT_EQ(QVN_Raw8ToY8(&byte, nullptr, 2, 2, 0), QVN_E_PARAM2);
  EXPECT_EQ(QVN_Raw16ToBGR(nullptr, nullptr, 2, 2, 0), QVN_E_PARAM1);
  EXPECT_EQ(logger.lines(), (Lines{line_of("DEBUG  ", "Entered method QVN_GetErrorInfo"),
                                   line_of("DEBUG  ", "Entered method QVN_Raw8ToBGR"),
                                   line_of("DEBUG  ", "Entered method QVN_Raw8ToBGR_mono"),
                                   line_of("DEBUG  ", "Entered method QVN_Raw8ToY8"),
                                   line_of("DEBUG  ", "Entered method QVN_Raw16ToBGR")}));
}

TEST(LoggerHook, EntriesLogGoodCallsOnce) {
  TestLogger logger;
  logger.threshold = 4;
  const Installed installed(logger);
  const uint8_t src[4] = {1, 2, 3, 4};
  uint8_t dst[12] = {};
  char text[64];
  EXPECT_EQ(QVN_Raw8ToBGR(dst, src, 2, 2, 0), QVN_OK);
  EXPECT_EQ(QVN_GetErrorInfo(1, text, sizeof text), QVN_OK);
  EXPECT_EQ(logger.lines(), (Lines{line_of("DEBUG  ", "Entered method QVN_Raw8ToBGR"),
                                   line_of("DEBUG  ", "Entered method QVN_GetErrorInfo")}));
}

TEST(LoggerHook, EntryLinesAreAtLevelFour) {
  TestLogger logger;
  logger.threshold = 3;
  const Installed installed(logger);
  EXPECT_EQ(QVN_GetErrorInfo(0, nullptr, 0), QVN_E_PARAM2);
  EXPECT_TRUE(logger.lines().empty());
}

TEST(LoggerHook, QueriesWriteNoLine) {
  TestLogger logger;
  const Installed installed(logger);
  uint32_t number = 0;
  TechnoInfo info;
  EXPECT_EQ(QVN_GetVersion(&number), QVN_OK);
  EXPECT_EQ(QVN_GetTechnoInfo(&info), QVN_OK);
  EXPECT_EQ(QVN_GetTechnoInfo(nullptr), QVN_E_PARAM1);
  EXPECT_EQ(QVN_GetBitsPerPixel(0, &number), QVN_OK);
  EXPECT_EQ(QVN_GetBitsPerPixel(131, &number), QVN_E_PARAM1);
  EXPECT_EQ(QVN_GetBitsPerPixel(131, nullptr), QVN_E_PARAM2);
  EXPECT_TRUE(logger.lines().empty());
}

TEST(LoggerThreads, ASinkMayCallEntriesOnItsOwnThread) {
  TestLogger logger;
  const Installed installed(logger);
  int depth = 0;
  logger.memory.at_write = [&] {
    if (++depth < 3) QVN_Raw8ToBGR(nullptr, nullptr, 0, 0, 0);
  };
  QVN_GetErrorInfo(0, nullptr, 0);
  EXPECT_EQ(logger.lines(), (Lines{line_of("DEBUG  ", "Entered method QVN_GetErrorInfo"),
                                   line_of("DEBUG  ", "Entered method QVN_Raw8ToBGR"),
                                   line_of("DEBUG  ", "Entered method QVN_Raw8ToBGR")}));
  // The lock has been left as often as entered: another thread gets through.
  std::thread([] { QVN_GetErrorInfo(0, nullptr, 0); }).join();
  EXPECT_EQ(logger.lines().size(), 4u);
}

TEST(LoggerThreads, LinesComeOutWhole) {
  TestLogger logger;
  logger.useTime = true;
  logger.startCount = qvn::read_counter();
  const Installed installed(logger);
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      const std::string message =
          "thread " + std::to_string(t) + std::string(static_cast<size_t>(t) * 50, '.');
      for (int i = 0; i < 200; ++i) qvn::process_logger->Log(4, message.c_str());
    });
  }
  for (std::thread& thread : threads) thread.join();
  ASSERT_EQ(logger.lines().size(), 800u);
  std::vector<int> seen(4, 0);
  for (const std::string& line : logger.lines()) {
    const auto at = line.find("|DEBUG  |thread ");
    ASSERT_NE(at, std::string::npos) << line;
    const int t = line[at + 16] - '0';
    ASSERT_TRUE(t >= 0 && t < 4) << line;
    ASSERT_EQ(line.substr(at + 17), std::string(static_cast<size_t>(t) * 50, '.'));
    ++seen[static_cast<size_t>(t)];
  }
  EXPECT_EQ(seen, (std::vector<int>{200, 200, 200, 200}));
}

/// Whether another thread has to wait at the lock. The caller must be able to leave it.
bool held_against_others(TestLogger& logger) {
  std::atomic<bool> entered = false;
  std::thread other([&] {
    logger.lock.enter();
    entered = true;
    logger.lock.leave();
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  const bool held = !entered;
  if (held) logger.lock.leave();
  other.join();
  return held;
}

TEST(LoggerFailure, AFailedCopyLeavesTheEntryWithTheLockHeld) {
  TestLogger logger;
  const Installed installed(logger);
  // The shortest name of an entry already takes memory: "Entered method " fills a short string.
  support::fail_allocation(1);
  EXPECT_THROW(QVN_Raw8ToY8(nullptr, nullptr, 0, 0, 0), std::bad_alloc);
  support::fail_allocation(0);
  EXPECT_TRUE(logger.lines().empty());
  EXPECT_TRUE(held_against_others(logger));
}

TEST(LoggerFailure, AFailedTimeTextLeavesTheLockHeldToo) {
  TestLogger logger;
  logger.useTime = true;
  logger.timeFormat = "%u hours and %u minutes and %u.%u seconds";
  const Installed installed(logger);
  support::fail_allocation(2);
  char text[8] = "intact";
  EXPECT_THROW(QVN_GetErrorInfo(0, text, sizeof text), std::bad_alloc);
  support::fail_allocation(0);
  EXPECT_STREQ(text, "intact");
  EXPECT_TRUE(held_against_others(logger));
}

TEST(LoggerFailure, ASinkThatThrowsLeavesTheLockHeldToo) {
  TestLogger logger;
  logger.memory.at_write = [] { throw 7; };
  const Installed installed(logger);
  EXPECT_THROW(QVN_GetErrorInfo(0, nullptr, 0), int);
  EXPECT_TRUE(held_against_others(logger));
}

TEST(LoggerFailure, AGoodLineLeavesTheLockFree) {
  TestLogger logger;
  const Installed installed(logger);
  QVN_GetErrorInfo(0, nullptr, 0);
  EXPECT_FALSE(held_against_others(logger));
}

}  // namespace
