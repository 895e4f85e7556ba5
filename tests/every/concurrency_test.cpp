/// All functions at once from four threads on buffers of their own: each result is the one that a single
/// thread gets. Under the thread sanitizer this is the test of what the functions share.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "every/draw.h"
#include "support/invalid_parameter.h"
#include "support/random.h"

namespace every {
namespace {

constexpr std::size_t kThreads = 4;
constexpr std::size_t kCallsOfEach = 8;
constexpr int kRounds = 3;

/// One call with the contents of its buffers before and after.
struct Task {
  const Entry* entry;
  Call call;
  std::vector<std::uint8_t> before;
  std::array<std::size_t, 5> begin;  ///< of each buffer; the source is the last
  std::uint32_t status = 0;
  std::vector<std::uint8_t> after = {};
};

constexpr std::size_t kAlignment = 16;

Task make_task(const Entry& entry, Call call, support::Random& random) {
  const Shape shape = entry.shape(call);
  std::array<std::size_t, 5> begin;
  std::size_t end = 0;
  for (std::size_t k = 0; k < 5; ++k) {
    begin[k] = end;
    end += ((k < 4 ? shape.dst[k] : shape.src) / kAlignment + 1) * kAlignment;
  }
  std::vector<std::uint8_t> before(end);
  random.fill(before.data(), before.size());
  return {&entry, std::move(call), std::move(before), begin};
}

std::uint32_t run(const Task& task, std::vector<std::uint8_t>& bytes) {
  bytes = task.before;
  Buffers buffers;
  for (std::size_t k = 0; k < 4; ++k) buffers.dst[k] = bytes.data() + task.begin[k];
  buffers.src = task.call.in_place ? buffers.dst[0] : bytes.data() + task.begin[4];
  return task.entry->library(task.call, buffers);
}

/// Tight calls, but for tables that are too short: their reports are the process's own.
std::vector<Task> make_tasks() {
  support::Random random(911);
  std::vector<Task> tasks;
  for (const Entry& entry : table()) {
    for (std::size_t made = 0, drawn = 0; made < kCallsOfEach && drawn < 100; ++drawn) {
      std::array<std::uint8_t, 80> bytes;
      random.fill(bytes.data(), bytes.size());
      Input input(bytes.data(), bytes.size());
      Call call = draw_call(entry, input);
      const Shape shape = entry.shape(call);
      if (!entry.is_tight(call) || shape.src > 100000 || shape.dst[0] > 100000) continue;
      Task task = make_task(entry, std::move(call), random);
      const support::CountedReports reports;
      task.status = run(task, task.after);
      if (reports.count() != 0) continue;
      tasks.push_back(std::move(task));
      ++made;
    }
  }
  return tasks;
}

TEST(Concurrency, EveryEntryAtOnceGivesWhatASingleThreadGets) {
  const std::vector<Task> tasks = make_tasks();
  EXPECT_GT(tasks.size(), 76 * kCallsOfEach / 2);
  std::atomic<std::size_t> waiting = kThreads;
  std::array<std::string, kThreads> troubles;
  const auto work = [&](std::size_t number) {
    support::Random random(920 + number);
    std::vector<std::size_t> order(tasks.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    --waiting;
    while (waiting != 0) std::this_thread::yield();
    std::vector<std::uint8_t> bytes;
    for (int round = 0; round < kRounds; ++round) {
      for (std::size_t i = order.size(); i > 1; --i) {
        std::swap(order[i - 1], order[random.below(static_cast<std::uint32_t>(i))]);
      }
      for (const std::size_t i : order) {
        const Task& task = tasks[i];
        if (run(task, bytes) != task.status || bytes != task.after) troubles[number] = task.entry->name;
      }
    }
  };
  std::vector<std::thread> threads;
  for (std::size_t number = 0; number < kThreads; ++number) threads.emplace_back(work, number);
  for (std::thread& thread : threads) thread.join();
  for (const std::string& trouble : troubles) EXPECT_EQ(trouble, "");
}

}  // namespace
}  // namespace every
