/// Every function against inaccessible pages, with buffers of exactly the bytes that it is told to touch:
/// ending where a closed page begins, and beginning right behind one; and in the middle of its memory at
/// addresses of every alignment. What it leaves is compared with the reference.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "every/draw.h"
#include "every/trial.h"
#include "support/random.h"

namespace every {
namespace {

class EveryEntry : public testing::TestWithParam<Entry> {};

INSTANTIATE_TEST_SUITE_P(All, EveryEntry, testing::ValuesIn(table()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(EveryEntryTable, HoldsAll76) {
  std::set<std::string_view> names;
  for (const Entry& entry : table()) names.insert(entry.name);
  EXPECT_EQ(names.size(), 76U);
}

constexpr int kCalls = 200;
constexpr std::size_t kDrawBytes = 80;

struct Drawn {
  Call call;
  Trial trial;
};

Drawn draw(const Entry& entry, support::Random& random) {
  std::array<std::uint8_t, kDrawBytes> bytes;
  random.fill(bytes.data(), bytes.size());
  Input input(bytes.data(), bytes.size());
  Drawn drawn{draw_call(entry, input), {}};
  drawn.trial.contents = random.next();
  return drawn;
}

TEST_P(EveryEntry, TouchesNothingOutsideOfItsBuffers) {
  support::Random random(901);
  int tight = 0;
  for (int i = 0; i < kCalls; ++i) {
    Drawn drawn = draw(GetParam(), random);
    if (!GetParam().is_tight(drawn.call)) continue;
    for (const Place place : {Place::kEnd, Place::kBegin}) {
      drawn.trial.place = place;
      const Verdict verdict = try_call(GetParam(), drawn.call, drawn.trial);
      ASSERT_EQ(verdict.trouble, "") << text_of(GetParam(), drawn.call);
      tight += verdict.ran ? 1 : 0;
    }
  }
  EXPECT_GT(tight, kCalls / 8);
}

TEST_P(EveryEntry, EqualsItsReferenceAtEveryAlignment) {
  support::Random random(902);
  for (int i = 0; i < kCalls; ++i) {
    Drawn drawn = draw(GetParam(), random);
    drawn.trial.place = Place::kMiddle;
    drawn.trial.dst_offset = random.below(64);
    drawn.trial.src_offset = random.below(64);
    const Verdict verdict = try_call(GetParam(), drawn.call, drawn.trial);
    ASSERT_EQ(verdict.trouble, "") << text_of(GetParam(), drawn.call);
  }
}

TEST_P(EveryEntry, AnswersEveryChoiceOfNullPointers) {
  support::Random random(903);
  for (unsigned nulls = 0; nulls < 32; ++nulls) {
    Drawn drawn = draw(GetParam(), random);
    drawn.trial.nulls = nulls;
    const Verdict verdict = try_call(GetParam(), drawn.call, drawn.trial);
    ASSERT_EQ(verdict.trouble, "") << text_of(GetParam(), drawn.call) << ", nulls " << nulls;
  }
}

}  // namespace
}  // namespace every
