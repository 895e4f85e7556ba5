// Threads take the next item each; one lock guards the counts and standard error.
#include "batch.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <map>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>

#include "failure.h"
#include "process.h"

namespace qvn::tool {
namespace {

namespace fs = std::filesystem;

double seconds_since(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Outputs appear whole, so one that is there is finished, unless the input has changed since.
bool finished(const BatchItem& item) {
  std::error_code code;
  const fs::file_time_type input = fs::last_write_time(item.input, code);
  if (code) {
    return false;
  }
  return std::all_of(item.outputs.begin(), item.outputs.end(), [&](const std::string& output) {
    const fs::file_time_type time = fs::last_write_time(output, code);
    return !code && time >= input;
  });
}

class Batch {
 public:
  Batch(const std::vector<BatchItem>& items, bool again, const std::function<void(const BatchItem&)>& convert)
      : items_(items), again_(again), convert_(convert) {}

  /// Until nothing is left. Any number of threads.
  void work() {
    for (std::size_t number = take(); number < items_.size(); number = take()) {
      const BatchItem& item = items_[number];
      try {
        if (!again_ && finished(item)) {
          report(item, kThere, "");
        } else {
          convert_(item);
          report(item, kConverted, "");
        }
      } catch (const std::bad_alloc&) {
        report(item, kLost, "not enough memory");
      } catch (const std::exception& error) {
        report(item, kLost, error.what());
      }
    }
  }

  void finish() {
    if (bar_) {
      show_bar(true);
    }
    const double seconds = seconds_since(start_);
    say(std::to_string(items_.size()) + " frames: " + std::to_string(counts_[kConverted]) + " converted, " +
        std::to_string(counts_[kThere]) + " there already, " + std::to_string(counts_[kLost]) + " failed; " +
        rate_text(counts_[kConverted], seconds) + " frames a second");
    if (counts_[kLost] > 0) {
      throw Failure("expected to convert every frame, found " + std::to_string(counts_[kLost]) +
                    " that failed");
    }
  }

 private:
  enum Fate : std::size_t { kConverted, kThere, kLost };

  std::size_t take() {
    const std::lock_guard guard(lock_);
    return next_++;
  }

  /// Asks for no memory, which may be what was missing.
  void report(const BatchItem& item, Fate fate, const char* trouble) {
    const std::lock_guard guard(lock_);
    ++counts_.at(fate);
    ++done_;
    if (fate == kLost) {
      if (std::strstr(trouble, item.input.c_str()) == nullptr) {
        say(item.input.c_str(), trouble);
      } else {
        say(trouble);
      }
    }
    if (bar_) {
      show_bar(false);
    } else if (fate != kLost) {
      std::fprintf(stderr, "[%zu/%zu] %s -> %s%s\n", done_, items_.size(), item.input.c_str(),
                   item.output.c_str(), fate == kThere ? ", there already" : "");
    }
  }

  void show_bar(bool last) {
    constexpr double kSecondsBetween = 0.1;
    constexpr std::size_t kWidth = 40;
    const double seconds = seconds_since(start_);
    if (!last && seconds < shown_ + kSecondsBetween) {
      return;
    }
    shown_ = seconds;
    const std::size_t full = items_.empty() ? kWidth : done_ * kWidth / items_.size();
    std::array<char, kWidth + 1> bar{};
    std::fill_n(bar.begin(), kWidth, '.');
    std::fill_n(bar.begin(), full, '#');
    std::fprintf(stderr, "\r[%s] %zu/%zu frames, %s a second ", bar.data(), done_, items_.size(),
                 rate_text(counts_[kConverted], seconds).c_str());
    set_line_open(true);
  }

  const std::vector<BatchItem>& items_;
  const bool again_;
  const std::function<void(const BatchItem&)>& convert_;
  const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  const bool bar_ = ::isatty(STDERR_FILENO) == 1;
  std::mutex lock_;
  std::size_t next_ = 0;
  std::size_t done_ = 0;
  std::array<std::size_t, 3> counts_{};
  double shown_ = -1;
};

}  // namespace

std::vector<BatchItem> plan_batch(const std::vector<std::string>& inputs, const std::string& folder,
                                  const std::string& suffix,
                                  const std::function<std::vector<std::string>(const std::string&)>& names) {
  std::vector<BatchItem> items;
  std::map<std::string, std::string> taken;
  for (const std::string& input : inputs) {
    if (input == "-") {
      throw Failure("standard input has no name for an output in a folder: expected files, found '-'");
    }
    const std::string output = (fs::path(folder) / fs::path(input).stem()).string() + "." + suffix;
    BatchItem item{input, output, names(output)};
    for (const std::string& name : item.outputs) {
      const auto [place, first] = taken.emplace(name, input);
      if (!first) {
        throw Failure("expected inputs with names of their own, found " + tool::quoted(place->second) +
                      " and " + tool::quoted(input) + ", which would both become " + tool::quoted(name));
      }
      std::error_code code;
      if (fs::equivalent(name, input, code)) {
        throw Failure("expected a folder without the inputs, found that " + tool::quoted(input) +
                      " would be replaced");
      }
    }
    items.push_back(std::move(item));
  }
  return items;
}

void run_batch(const std::vector<BatchItem>& items, unsigned int jobs, bool again,
               const std::function<void(const BatchItem&)>& convert) {
  Batch batch(items, again, convert);
  std::vector<std::jthread> helpers;
  helpers.reserve(jobs);
  try {
    while (helpers.size() + 1 < std::min<std::size_t>(jobs, items.size())) {
      helpers.emplace_back([&] { batch.work(); });
    }
  } catch (const std::system_error&) {
    // As many as the system allows do the same work.
  }
  batch.work();
  helpers.clear();
  batch.finish();
}

std::string rate_text(std::size_t frames, double seconds) {
  std::array<char, 32> text{};
  static_cast<void>(
      std::snprintf(text.data(), text.size(), "%.1f", static_cast<double>(frames) / std::max(seconds, 1e-6)));
  return text.data();
}

}  // namespace qvn::tool
