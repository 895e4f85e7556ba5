/// Every function without memory: its first allocation fails, then its second, and so on. The status or the
/// exception is the one that the function promises, its buffers are as they were, and nothing is lost. The
/// same at load.
#include <gtest/gtest.h>

#include <array>
#include <new>
#include <string>

#include "every/draw.h"
#include "every/trial.h"
#include "frame/error_text.h"
#include "frame/failing_new.h"
#include "frame/process_state.h"
#include "frame/start_up.h"
#include "support/random.h"

namespace every {
namespace {

std::size_t count_before = 0;
std::size_t number_to_fail = 0;

constexpr Allocations kAllocations = {
    [](std::size_t number) {
      number_to_fail = number;
      count_before = support::allocation_count();
      support::fail_allocation(number);
    },
    [] { return support::allocation_count() - count_before >= number_to_fail; }};

class EveryEntryWithoutMemory : public testing::TestWithParam<Entry> {};

INSTANTIATE_TEST_SUITE_P(All, EveryEntryWithoutMemory, testing::ValuesIn(table()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(EveryEntryWithoutMemory, AnswersAsPromised) {
  const Entry& entry = GetParam();
  // The call makes the object here that it destroys; the function itself takes no memory.
  if (entry.name == "QVN_DestroyColorCorrection") return;
  support::Random random(931);
  std::size_t failures = 0;
  for (int i = 0; i < 60; ++i) {
    std::array<std::uint8_t, 80> bytes;
    random.fill(bytes.data(), bytes.size());
    Input input(bytes.data(), bytes.size());
    const Call call = draw_call(entry, input);
    Trial trial;
    trial.contents = random.next();
    trial.allocations = &kAllocations;
    for (bool failed = true; failed; failures += failed ? 1 : 0) {
      ++trial.failing_allocation;
      const long live = support::live_allocations();
      const Verdict verdict = try_call(entry, call, trial);
      const long live_behind = support::live_allocations();
      ASSERT_EQ(verdict.trouble, "") << text_of(entry, call) << ", allocation " << trial.failing_allocation;
      // The first call of all sets up the memory of the test.
      if (i != 0) {
        ASSERT_EQ(live_behind, live) << text_of(entry, call);
      }
      failed = verdict.failed_allocation;
    }
  }
  EXPECT_EQ(failures != 0, entry.without_memory != WithoutMemory::kNeverNeeds);
}

/// Runs `step` once for each of its allocations, which fails, until it gets by without.
template <class Step>
std::size_t failures_of(Step&& step) {
  for (std::size_t number = 1;; ++number) {
    const long live = support::live_allocations();
    bool failed = false;
    support::fail_allocation(number);
    try {
      step();
    } catch (const std::bad_alloc&) {
      failed = true;
    }
    support::fail_allocation(0);
    if (!failed) return number - 1;
    EXPECT_EQ(support::live_allocations(), live) << "allocation " << number;
  }
}

/// The map itself and a node for each text.
TEST(LoadWithoutMemory, LosesNothingWhileTheTextsAreLaidOut) {
  const auto* const map = qvn::error_text_map;
  const qvn::ExitList list = qvn::exit_list;
  const auto build = [&] {
    try {
      qvn::build_error_text_map();
    } catch (...) {
      EXPECT_EQ(qvn::error_text_map, map);
      EXPECT_EQ(qvn::exit_list.registered().size(), list.registered().size());
      throw;
    }
  };
  EXPECT_EQ(failures_of(build), map->size() + 1);
  qvn::free_error_text_map();
  qvn::error_text_map = map;
  qvn::exit_list = list;
}

/// The version word is stored before the line is formatted.
TEST(LoadWithoutMemory, ReadsTheVersionBeforeItsLineFails) {
  qvn::version_word = 0;
  EXPECT_GT(failures_of([] { qvn::notify(); }), 0U);
  EXPECT_EQ(qvn::version_word, 0x02010200U);
}

TEST(LoadWithoutMemory, CanBeTriedAgain) {
  qvn::unload_library();
  const std::size_t failures = failures_of([] {
    try {
      qvn::load_library();
    } catch (...) {
      qvn::run_exit_list();
      throw;
    }
  });
  EXPECT_GT(failures, 2U);
  EXPECT_EQ(qvn::error_text_map->size(), failures - 2);
}

}  // namespace
}  // namespace every
