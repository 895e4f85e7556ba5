/// What the corrected entries need around them: a small stack, and nobody else's leave to read an object.
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"
#include "support/random.h"

namespace {

using support::CorrectedEntry;
using support::Correction;
using support::Frame;
using Bytes = std::vector<std::uint8_t>;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitizer = true;
#elif defined(__has_feature)
constexpr bool kSanitizer = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kSanitizer = false;
#endif

/// Bytes of a small stack, or as few as the system gives.
std::size_t small_stack() {
  std::size_t bytes = std::size_t{64} * 1024;
#ifdef PTHREAD_STACK_MIN
  bytes = std::max(bytes, static_cast<std::size_t>(PTHREAD_STACK_MIN));
#endif
  return bytes;
}

class Surroundings : public testing::TestWithParam<CorrectedEntry> {
 protected:
  /// One object of each kind that the entry serves.
  std::vector<Correction> corrections(support::Random& random) const {
    std::vector<Correction> all;
    for (std::uint32_t kind = 1; kind < 10; ++kind) {
      if (!GetParam().serves(kind)) continue;
      all.push_back(support::random_correction(kind, support::Temper::kGentle, GetParam().corrected_bits,
                                               GetParam().word_tables(), random));
    }
    return all;
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, Surroundings, testing::ValuesIn(support::kCorrectedEntries),
                         [](const auto& info) { return std::string(info.param.name); });

/// Nothing on the stack grows with the width or with the number of samples: 320,000 of them on 64 KiB.
TEST_P(Surroundings, WideLinesNeedNoStack) {
  if (kSanitizer) GTEST_SKIP() << "the sanitizer needs more stack than this";
  struct Job {
    const CorrectedEntry& entry;
    Frame frame;
    const void* correction;
    Bytes src, dst;
    std::uint32_t status;
  };
  support::Random random(1);
  for (const Correction& correction : corrections(random)) {
    for (std::uint32_t shift : {0U, 1U}) {
      const Frame frame = {80000, 4, 1, shift};
      Job job{GetParam(),
              frame,
              correction.get(),
              Bytes(GetParam().src_bytes(frame)),
              Bytes(GetParam().dst_bytes(frame)),
              1};
      random.fill(job.src.data(), job.src.size());
      pthread_attr_t attributes;
      pthread_t thread;
      ASSERT_EQ(0, pthread_attr_init(&attributes));
      ASSERT_EQ(0, pthread_attr_setstacksize(&attributes, small_stack()));
      const auto run = [](void* argument) -> void* {
        auto& mine = *static_cast<Job*>(argument);
        mine.status = mine.entry.library(mine.dst.data(), mine.src.data(), mine.frame, mine.correction);
        return nullptr;
      };
      ASSERT_EQ(0, pthread_create(&thread, &attributes, run, &job));
      ASSERT_EQ(0, pthread_join(thread, nullptr));
      pthread_attr_destroy(&attributes);
      EXPECT_EQ(QVN_OK, job.status);
      Bytes expected(job.dst.size());
      GetParam().reference(expected.data(), job.src.data(), frame, correction.get());
      EXPECT_TRUE(expected == job.dst);
    }
  }
}

TEST_P(Surroundings, OneObjectServesManyThreads) {
  support::Random random(2);
  const Frame frame = {66, 20, 2, 1};
  Bytes src(GetParam().src_bytes(frame));
  random.fill(src.data(), src.size());
  for (const Correction& correction : corrections(random)) {
    Bytes expected(GetParam().dst_bytes(frame));
    GetParam().reference(expected.data(), src.data(), frame, correction.get());
    std::vector<Bytes> pictures(4, Bytes(expected.size()));
    std::vector<std::thread> threads;
    threads.reserve(pictures.size());
    for (Bytes& picture : pictures) {
      threads.emplace_back([&] {
        for (int round = 0; round < 10; ++round) {
          GetParam().library(picture.data(), src.data(), frame, correction.get());
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    for (const Bytes& picture : pictures) EXPECT_TRUE(expected == picture);
  }
}

}  // namespace
