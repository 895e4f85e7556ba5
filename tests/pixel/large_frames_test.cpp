/// Frames and runs that are too large for the caches are written another way than smaller ones: the same
/// frame in two parts, each of which is small, has the same bytes.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "quorvane/quorvane.h"
#include "support/arena.h"
#include "support/random.h"

namespace {

using support::Arena;

// ---- Mosaics: the upper part has one line more than it is compared for, the lower one starts on its last
// line.

struct Mosaic {
  std::string name;
  uint32_t src_bytes;    // of two pixels
  uint32_t dst_bytes;    // of a pixel
  bool columns_in_twos;  // an odd width makes one pixel a line more
  std::function<uint32_t(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern)>
      convert;
};

const SampleFormatBlock kLittleEndianLayout = {0, 0, 12, 0, 0};

uint16_t* words(uint8_t* bytes) { return static_cast<uint16_t*>(static_cast<void*>(bytes)); }

std::vector<Mosaic> mosaics() {
  std::vector<Mosaic> all = {
      {"Raw8ToBGR", 2, 3, true, QVN_Raw8ToBGR},
      {"Raw8ToBGR_mono", 2, 3, false, QVN_Raw8ToBGR_mono},
      {"Raw16ToBGR", 4, 3, false, QVN_Raw16ToBGR},
      {"Raw12ToBGR", 3, 3, true, QVN_Raw12ToBGR},
      {"Raw12ToBGR16", 3, 6, true,
       [](uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
         return QVN_Raw12ToBGR16(words(dst), src, width, height, pattern);
       }}};
  for (const uint32_t shift : {0U, 3U, 12U}) {
    all.push_back({"Raw16ToBGR16 by " + std::to_string(shift), 4, 6, true,
                   [=](uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
                     return QVN_Raw16ToBGR16(words(dst), src, width, height, pattern, shift);
                   }});
  }
  const auto transform = [&](const char* name, uint32_t src_bytes, bool columns_in_twos, auto entry) {
    all.push_back({name, src_bytes, 3, columns_in_twos,
                   [=](uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
                     return entry(dst, src, width, height, 1, pattern);
                   }});
  };
  transform("Raw8ImageTransform", 2, true, QVN_Raw8ImageTransform);
  transform("Raw12ImageTransform", 3, true, QVN_Raw12ImageTransform);
  transform("Raw16ImageTransform", 4, false, QVN_Raw16ImageTransform);
  for (const uint32_t target : {1U, 7U}) {
    all.push_back({"Raw16ImageTransformEx to " + std::to_string(target), 4, target == 7 ? 6U : 3U, false,
                   [=](uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
                     SampleFormatBlock format = kLittleEndianLayout;
                     format.pattern = pattern;
                     return QVN_Raw16ImageTransformEx(dst, src, width, height, target, &format);
                   }});
  }
  return all;
}

// Any place that a pixel's samples may have.
size_t any_margin(support::Random& random, uint32_t pixel_bytes) {
  return 64 + random.below(64) / (pixel_bytes / 3) * (pixel_bytes / 3);
}

constexpr size_t kLarge = size_t{32} << 20;  // bytes read and written, from where on a frame is large

TEST(LargeFrames, MosaicsAreThoseOfTheirParts) {
  support::Random random(411);
  for (const Mosaic& mosaic : mosaics()) {
    for (const uint32_t width : {3000U, 2777U}) {
      const size_t src_line = size_t{width / 2} * mosaic.src_bytes +
                              (mosaic.src_bytes != 3 && width % 2 != 0 ? mosaic.src_bytes / 2 : 0);
      const size_t pixels = mosaic.columns_in_twos ? width + width % 2 : width;
      const size_t dst_line = pixels * mosaic.dst_bytes;
      const auto height = static_cast<uint32_t>(kLarge / (src_line + dst_line) + 2);
      const uint32_t upper = height / 4 * 2, pattern = random.below(4);  // an even number of lines

      Arena src(64, src_line * height + 64, 64);
      src.fill(random);
      Arena expected(any_margin(random, mosaic.dst_bytes), dst_line * height, 64);
      expected.fill(0x5A);
      Arena actual(expected);
      const std::string message = mosaic.name + " " + std::to_string(width) + " " + std::to_string(pattern);
      ASSERT_EQ(mosaic.convert(expected.data(), src.data(), width, upper + 1, pattern), 0U) << message;
      ASSERT_EQ(mosaic.convert(expected.data() + upper * dst_line, src.data() + upper * src_line, width,
                               height - upper, pattern),
                0U)
          << message;
      ASSERT_EQ(mosaic.convert(actual.data(), src.data(), width, height, pattern), 0U) << message;
      ASSERT_TRUE(same_bytes("dst", expected, actual, dst_line)) << message;
    }
  }
}

// ---- Runs.

struct PixelRun {
  const char* name;
  uint32_t src_bytes;  // of two pixels
  uint32_t dst_bytes;  // of a pixel
  std::function<uint32_t(uint8_t* dst, const uint8_t* src, uint32_t count)> convert;
};

std::vector<PixelRun> runs() {
  const auto to = [](auto entry, uint32_t target) {
    return [=](uint8_t* dst, const uint8_t* src, uint32_t count) { return entry(dst, src, count, target); };
  };
  const auto y16_to = [](uint32_t target) {
    return [=](uint8_t* dst, const uint8_t* src, uint32_t count) {
      return QVN_Y16ImageTransformEx(dst, src, count, target, &kLittleEndianLayout);
    };
  };
  return {{"RGB8ToBGR", 6, 3, QVN_RGB8ToBGR},
          {"Y8ToBGR", 2, 3, QVN_Y8ToBGR},
          {"RGB8ImageTransform", 6, 3, to(QVN_RGB8ImageTransform, 1)},
          {"Y8ImageTransform", 2, 3, to(QVN_Y8ImageTransform, 1)},
          {"Y12ImageTransform", 3, 3, to(QVN_Y12ImageTransform, 1)},
          {"Y16ImageTransformEx to 1", 4, 3, y16_to(1)},
          {"Y16ImageTransformEx to 7", 4, 6, y16_to(7)}};
}

TEST(LargeFrames, RunsAreThoseOfTheirParts) {
  support::Random random(412);
  for (const PixelRun& run : runs()) {
    const auto pairs = static_cast<uint32_t>(kLarge / (run.src_bytes + 2 * run.dst_bytes) + 1);
    const uint32_t count = 2 * (pairs + random.below(600)), first = 2 * random.below(pairs);
    Arena src(64, size_t{count} / 2 * run.src_bytes, 64);
    src.fill(random);
    Arena expected(any_margin(random, run.dst_bytes), size_t{count} * run.dst_bytes, 64);
    expected.fill(0x5A);
    Arena actual(expected);
    ASSERT_EQ(run.convert(expected.data(), src.data(), first), 0U);
    ASSERT_EQ(run.convert(expected.data() + size_t{first} * run.dst_bytes,
                          src.data() + size_t{first} / 2 * run.src_bytes, count - first),
              0U);
    ASSERT_EQ(run.convert(actual.data(), src.data(), count), 0U);
    ASSERT_TRUE(same_bytes("dst", expected, actual)) << run.name;
  }
}

TEST(LargeFrames, ALargeRunWorksInPlace) {
  support::Random random(413);
  constexpr uint32_t kCount = kLarge / 6 + 5;
  Arena frame(64, size_t{3} * kCount, 64);
  frame.fill(random);
  const Arena src(frame);
  ASSERT_EQ(QVN_RGB8ToBGR(frame.data(), frame.data(), kCount), 0U);
  Arena expected(src);
  for (size_t i = 0; i < size_t{3} * kCount; i += 3) std::swap(expected.data()[i], expected.data()[i + 2]);
  EXPECT_TRUE(same_bytes("frame", expected, frame));
}

}  // namespace
