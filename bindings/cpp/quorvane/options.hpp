// How a call is to be run: in how many bands, on which threads, and what becomes of a fourth byte.
#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <thread>
#include <vector>

namespace quorvane {

/// Runs job(0) to job(jobs - 1), in any order and on any threads, and returns when all of them have.
using Executor = std::function<void(std::size_t jobs, const std::function<void(std::size_t)>& job)>;

/// One std::thread a job, beside the caller's own.
inline void run_on_threads(std::size_t jobs, const std::function<void(std::size_t)>& job) {
  std::vector<std::thread> threads;
  threads.reserve(jobs);
  std::size_t next = 1;
  try {
    for (; next < jobs; ++next) {
      threads.emplace_back(job, next);
    }
  } catch (const std::exception&) {
    // No more threads: what is left is done here.
  }
  job(0);
  for (; next < jobs; ++next) {
    job(next);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

struct Options {
  /// Sets every fourth byte of a BGRA picture to 255; else the library leaves what is there.
  bool opaque = false;
  /// Into so many bands a frame is cut where its function permits; the bytes are those of one call.
  std::size_t bands = 1;
  /// Runs the bands; empty: run_on_threads.
  Executor executor{};
};

}  // namespace quorvane
