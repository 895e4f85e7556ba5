/// Bytes that go past the caches: each at its place and none beside it, for all alignments, pieces and
/// lengths.
#include "pixel/stream.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/arena.h"
#include "support/random.h"

namespace qvn {
namespace {

constexpr size_t kLine = 64;

/// Pieces of random sizes, none and the largest among them.
TEST(Stream, PiecesFollowOneAnother) {
  constexpr size_t kLargest = (kStreamedPixels + 2) * 6;
  support::Random random(401);
  for (size_t offset = 0; offset < kLine; ++offset) {
    for (const uint32_t most : {3U, 100U, uint32_t{kLargest}}) {
      const size_t pieces = most == kLargest ? 6 : 80;
      support::Arena expected(kLine + offset, pieces * most, kLine), actual(expected);
      expected.fill(random);
      actual.fill(0xAA);
      Stream stream(actual.data());
      size_t done = 0;
      for (size_t piece = 0; piece < pieces; ++piece) {
        const size_t n = piece == 1 ? most : random.below(most + 1);
        std::memcpy(stream.place(), expected.data() + done, n);
        stream.push(n);
        done += n;
      }
      stream.finish();
      ASSERT_EQ(0, std::memcmp(expected.data(), actual.data(), done)) << offset << " " << most;
      for (size_t i = 0; i < kLine + offset; ++i) ASSERT_EQ(actual.whole()[i], 0xAA) << offset;
      for (size_t i = done; i < actual.size() + kLine; ++i) ASSERT_EQ(actual.data()[i], 0xAA) << offset;
    }
  }
}

TEST(Stream, NothingIsWrittenOfNothing) {
  std::vector<uint8_t> bytes(2 * kLine, 0xAA);
  Stream stream(bytes.data() + 1);
  stream.push(0);
  stream.finish();
  EXPECT_EQ(bytes, std::vector<uint8_t>(2 * kLine, 0xAA));
}

/// Sizes count together, and no byte may be shared.
TEST(Stream, LargeAndDisjointBlocksGoPastTheCaches) {
  std::vector<uint8_t> memory(kStreamedBytes);
  const uint8_t* first = memory.data();
  const size_t part = kStreamedBytes / 4;
  EXPECT_EQ(streams({first, 3 * part}, {first + 3 * part, part}), kStreams);
  EXPECT_EQ(streams({first + part, 3 * part}, {first, part}), kStreams);
  EXPECT_FALSE(streams({first, 3 * part - 1}, {first + 3 * part, part}));
  EXPECT_FALSE(streams({first, 3 * part}, {first + 3 * part - 1, part}));
  EXPECT_FALSE(streams({first, kStreamedBytes}, {first, kStreamedBytes}));
}

/// Three bytes for each byte, in runs on both sides of the threshold, whole strips and not.
TEST(StreamRun, EveryPixelOnce) {
  constexpr size_t kThreshold = kStreamedBytes / 4;
  for (const size_t n : {kThreshold - 2, kThreshold, kThreshold + 1, kThreshold + 513}) {
    support::Random random(402 + n % 7);
    std::vector<uint8_t> src(n), dst(3 * n + 2, 0xAA), expected(dst);
    random.fill(src.data(), n);
    for (size_t i = 0; i < 3 * n; ++i) expected[1 + i] = src[i / 3];
    size_t calls = 0;
    const size_t last =
        stream_run<3>(dst.data() + 1, src.data(), 2, n, [&](uint8_t* to, const uint8_t* from, size_t pixels) {
          ++calls;
          for (size_t i = 0; i < 3 * pixels; ++i) to[i] = from[i / 3];
          return pixels;
        });
    const bool streamed = calls > 1;
    EXPECT_EQ(streamed, kStreams && n >= kThreshold) << n;
    EXPECT_EQ(last, streamed ? n % kStreamedPixels : n);
    EXPECT_TRUE(dst == expected) << n;
  }
}

}  // namespace
}  // namespace qvn
