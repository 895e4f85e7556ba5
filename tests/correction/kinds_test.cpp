/// Which entry serves which kind of object: every kind at every entry, the statuses, the untouched
/// destination, the order of the checks, and a null object, which is the plain entry.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/corrected_entries.h"
#include "support/corrections.h"
#include "support/guard.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::CorrectedEntry;
using support::Correction;
using support::Frame;
using Bytes = std::vector<std::uint8_t>;

class Kinds : public testing::TestWithParam<CorrectedEntry> {};

INSTANTIATE_TEST_SUITE_P(Entries, Kinds, testing::ValuesIn(support::kCorrectedEntries),
                         [](const auto& info) { return std::string(info.param.name); });

/// The kinds that each entry serves, by its name.
std::vector<std::uint32_t> served(const std::string& entry) {
  if (entry == "Raw8ToBGR_CC" || entry == "Raw8ToY8_CC") return {1, 2, 4, 5, 8};
  return {1, 3, 4, 5, 9};
}

constexpr std::uint32_t kRefusedEverywhere[] = {
    0, 6, 7, 10, 11, 16, 255, 256, 257, 0x10001, 0x01000000, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFF};

TEST_P(Kinds, ServesItsFiveAndRefusesAllOthers) {
  const std::vector<std::uint32_t> good = served(GetParam().name);
  std::vector<std::uint32_t> kinds(std::begin(kRefusedEverywhere), std::end(kRefusedEverywhere));
  for (std::uint32_t kind : support::numbers(1, 9)) kinds.push_back(kind);
  support::Random random(1);
  for (std::uint32_t kind : kinds) {
    const bool serves = std::find(good.begin(), good.end(), kind) != good.end();
    EXPECT_EQ(serves, GetParam().serves(kind)) << "the reference, kind " << kind;
    const Correction correction =
        serves ? support::random_correction(kind, support::Temper::kGentle, GetParam().corrected_bits,
                                            GetParam().word_tables(), random)
               : Correction::of_kind(kind);
    const Frame frame = {36, 4, 1, 0};
    if (serves) {
      EXPECT_TRUE(matches(GetParam(), frame, correction.get(), random)) << "kind " << kind;
      continue;
    }
    const support::Room dst = {.size = GetParam().dst_bytes(frame)};
    const support::Room src = {.size = GetParam().src_bytes(frame)};
    EXPECT_TRUE(support::same_effect(
        dst, src, random,
        [&](std::uint8_t* out, const std::uint8_t* in) {
          return GetParam().library(out, in, frame, correction.get());
        },
        [](std::uint8_t*, const std::uint8_t*) {}, QVN_E_FAIL))
        << "kind " << kind;
  }
}

/// Of an object that is refused nothing but the kind is read, and of the frame nothing at all.
TEST_P(Kinds, ARefusedObjectIsItsKindAlone) {
  const std::vector<std::uint32_t> good = served(GetParam().name);
  support::GuardedBuffer object(4, support::Flush::kEnd);
  support::GuardedBuffer frame(1, support::Flush::kEnd);
  std::uint8_t* nothing = frame.data() + 1;
  for (std::uint32_t kind : support::numbers(0, 12)) {
    if (std::find(good.begin(), good.end(), kind) != good.end()) continue;
    std::memcpy(object.data(), &kind, sizeof kind);
    EXPECT_EQ(QVN_E_FAIL, GetParam().library(nothing, nothing, {640, 480, 0, 0}, object.data()));
  }
}

TEST_P(Kinds, PointersAreTestedBeforeTheObject) {
  Bytes bytes(1024, 7);
  const Frame frame = {4, 4, 1000, 17};
  for (std::uint32_t kind : {0U, 1U, 4U, 7U, 10U}) {
    const Correction correction = Correction::of_kind(kind);
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, frame, correction.get()));
    EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, bytes.data(), frame, correction.get()));
    EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, frame, correction.get()));
  }
  EXPECT_EQ(QVN_E_PARAM1, GetParam().library(nullptr, nullptr, frame, nullptr));
  EXPECT_EQ(QVN_E_PARAM2, GetParam().library(bytes.data(), nullptr, frame, nullptr));
  EXPECT_EQ(Bytes(1024, 7), bytes);
}

TEST_P(Kinds, NoObjectIsThePlainEntry) {
  support::Random random(2);
  for (std::uint32_t width : support::numbers(2, 70)) {
    for (std::uint32_t pattern : {0U, 1U, 2U, 3U, 6U, 9U}) {
      ASSERT_TRUE(matches(GetParam(), {width, 3, pattern, random.below(10)}, nullptr, random));
    }
  }
  if (!GetParam().shifts) return;
  std::vector<std::uint32_t> shifts = support::numbers(0, 40);
  shifts.insert(shifts.end(), {255, 0x10000, 0xFFFFFFFF});
  for (std::uint32_t shift : shifts) {
    for (std::uint32_t pattern : support::numbers(0, 3)) {
      ASSERT_TRUE(matches(GetParam(), {22, 3, pattern, shift}, nullptr, random));
    }
  }
}

Bytes picture(std::uint32_t (*entry)(std::uint8_t*, const std::uint8_t*, const Frame&), const Bytes& src,
              const Frame& frame, std::uint32_t pixel_bytes) {
  Bytes dst(std::size_t{pixel_bytes} * frame.width * frame.height, 0xA5);
  EXPECT_EQ(QVN_OK, entry(dst.data(), src.data(), frame));
  return dst;
}

/// The library's own plain entries, beside its corrected ones without an object.
TEST(NoCorrection, GivesTheBytesOfThePlainEntries) {
  using Call = std::uint32_t (*)(std::uint8_t*, const std::uint8_t*, const Frame&);
  const Call plain[] = {
      [](auto* dst, auto* src, auto& f) { return QVN_Raw8ToBGR(dst, src, f.width, f.height, f.pattern); },
      [](auto* dst, auto* src, auto& f) { return QVN_Raw8ToY8(dst, src, f.width, f.height, f.pattern); },
      [](auto* dst, auto* src, auto& f) { return QVN_Raw12ToBGR(dst, src, f.width, f.height, f.pattern); },
      [](auto* dst, auto* src, auto& f) {
        return QVN_Raw12ToBGR16(support::as_words(dst), src, f.width, f.height, f.pattern);
      },
      [](auto* dst, auto* src, auto& f) {
        return QVN_Raw16ToBGR16(support::as_words(dst), src, f.width, f.height, f.pattern, f.shift);
      },
      [](auto* dst, auto* src, auto& f) {
        return QVN_Raw16ToY16(support::as_words(dst), src, f.width, f.height, f.pattern, f.shift);
      },
  };
  support::Random random(3);
  Bytes src(std::size_t{2} * 70 * 9);
  random.fill(src.data(), src.size());
  for (std::size_t i = 0; i < std::size(plain); ++i) {
    const CorrectedEntry& entry = support::kCorrectedEntries[i];
    for (std::uint32_t pattern : support::numbers(0, 3)) {
      for (std::uint32_t shift : {0U, 3U, 16U}) {
        const Frame frame = {70, 9, pattern, shift};
        Bytes corrected(entry.dst_bytes(frame), 0xA5);
        ASSERT_EQ(QVN_OK, entry.library(corrected.data(), src.data(), frame, nullptr));
        EXPECT_EQ(picture(plain[i], src, frame, entry.pixel_bytes), corrected) << entry.name;
      }
    }
  }
}

}  // namespace
