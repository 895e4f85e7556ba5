/// What the transforms refuse: null pointers in argument order, outputs that an entry does not offer, sample
/// formats without a kernel. A refusal touches neither buffer.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "reference/transform_raw16_ex.h"
#include "reference/transform_runs.h"
#include "support/arena.h"
#include "support/random.h"
#include "support/sizes.h"

namespace {

using support::numbers;
using Targets = std::vector<std::uint32_t>;

/// A frame or a run of a size that all entries take.
struct Entry {
  const char* name;
  Targets offered;
  std::uint32_t (*call)(std::uint8_t* dst, std::uint8_t* src, std::uint32_t target);
};

void PrintTo(const Entry& entry, std::ostream* out) { *out << entry.name; }

constexpr std::uint32_t kWidth = 12;
constexpr std::uint32_t kHeight = 8;
constexpr std::uint32_t kCount = kWidth * kHeight;

constexpr SampleFormatBlock kTwelveBits = {0, 1, 12, 0, 1};

const Targets kFour = {0, 1, 2, 3};
const Targets kFive = {0, 1, 2, 3, 4};
const Targets kEx = {0, 1, 2, 3, 5, 6, 7};

const std::vector<Entry> kEntries = {
    {"RGB8", kFour,
     [](auto* dst, auto* src, auto target) { return QVN_RGB8ImageTransform(dst, src, kCount, target); }},
    {"RGBA8", kFour,
     [](auto* dst, auto* src, auto target) { return QVN_RGBA8ImageTransform(dst, src, kCount, target); }},
    {"YUV444", kFour,
     [](auto* dst, auto* src, auto target) { return QVN_YUV444ImageTransform(dst, src, kCount, target); }},
    {"YUV422", kFour,
     [](auto* dst, auto* src, auto target) { return QVN_YUV422ImageTransform(dst, src, kCount, target); }},
    {"YUV411", kFour,
     [](auto* dst, auto* src, auto target) { return QVN_YUV411ImageTransform(dst, src, kCount, target); }},
    {"Y8", kFive,
     [](auto* dst, auto* src, auto target) { return QVN_Y8ImageTransform(dst, src, kCount, target); }},
    {"Y16", kFour,
     [](auto* dst, auto* src, auto target) { return QVN_Y16ImageTransform(dst, src, kCount, target); }},
    {"Y16Ex", kEx,
     [](auto* dst, auto* src, auto target) {
       return QVN_Y16ImageTransformEx(dst, src, kCount, target, &kTwelveBits);
     }},
    {"Y16Ex_null", kEx,
     [](auto* dst, auto* src, auto target) {
       return QVN_Y16ImageTransformEx(dst, src, kCount, target, nullptr);
     }},
    {"Y12", kFour,
     [](auto* dst, auto* src, auto target) { return QVN_Y12ImageTransform(dst, src, kCount, target); }},
    {"Raw8", kFive,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw8ImageTransform(dst, src, kWidth, kHeight, target, 1);
     }},
    {"Raw8_3x3", kFour,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw8ImageTransform_3x3(dst, src, kWidth, kHeight, target, 1);
     }},
    {"Raw8_IntYUV422", kFour,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw8ImageTransform_IntYUV422(dst, src, kWidth, kHeight, target, 1);
     }},
    {"Raw8_IntLCAA", kFour,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw8ImageTransform_IntLCAA(dst, src, kWidth, kHeight, target, 1);
     }},
    {"Raw8_IntLCAAV", kFour,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw8ImageTransform_IntLCAAV(dst, src, kWidth, kHeight, target, 1);
     }},
    {"Raw12", kFour,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw12ImageTransform(dst, src, kWidth, kHeight, target, 1);
     }},
    {"Raw16", kFour,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw16ImageTransform(dst, src, kWidth, kHeight, target, 1);
     }},
    {"Raw16Ex", kEx,
     [](auto* dst, auto* src, auto target) {
       return QVN_Raw16ImageTransformEx(dst, src, kWidth, kHeight, target, &kTwelveBits);
     }},
};

/// Calls over two arenas and tells whether any byte of them changed.
class TwoArenas {
 public:
  TwoArenas() : dst_(64, std::size_t{6} * kCount, 64), src_(64, std::size_t{4} * kCount, 64) {
    support::Random random(701);
    dst_.fill(random);
    src_.fill(random);
  }
  template <typename Call>
  testing::AssertionResult refuses(std::uint32_t status, Call call) const {
    support::Arena dst(dst_);
    support::Arena src(src_);
    const std::uint32_t answer = call(dst.data(), src.data());
    if (answer != status) {
      return testing::AssertionFailure() << "status 0x" << std::hex << answer << " instead of 0x" << status;
    }
    if (auto same = support::same_bytes("dst", dst_, dst); !same) return same;
    return support::same_bytes("src", src_, src);
  }

 private:
  support::Arena dst_;
  support::Arena src_;
};

class Transforms : public testing::TestWithParam<Entry> {
 protected:
  static bool offers(std::uint32_t target) {
    return std::find(GetParam().offered.begin(), GetParam().offered.end(), target) !=
           GetParam().offered.end();
  }
};

INSTANTIATE_TEST_SUITE_P(Entries, Transforms, testing::ValuesIn(kEntries),
                         [](const auto& info) { return std::string(info.param.name); });

/// Values that a comparison with a narrower or signed type would let pass among them.
Targets all_targets() {
  Targets targets = numbers(0, 300);
  for (std::uint32_t high : {0x100U, 0x1000U, 0x10000U, 0x1000000U, 0x7FFFFFF8U, 0x80000000U, 0xFFFFFFF8U}) {
    for (std::uint32_t low : numbers(0, 7)) targets.push_back(high + low);
  }
  return targets;
}

TEST_P(Transforms, OfferTheirOutputsAndRefuseAllOthers) {
  const TwoArenas arenas;
  for (std::uint32_t target : all_targets()) {
    const auto call = [target](auto* dst, auto* src) { return GetParam().call(dst, src, target); };
    if (!offers(target)) {
      EXPECT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED, call)) << "target " << target;
      continue;
    }
    std::vector<std::uint8_t> dst(std::size_t{6} * kCount), src(std::size_t{4} * kCount);
    EXPECT_EQ(QVN_OK, call(dst.data(), src.data())) << "target " << target;
  }
}

TEST_P(Transforms, RefuseNullPointersBeforeTheOutput) {
  const TwoArenas arenas;
  for (std::uint32_t target : {0U, 2U, 4U, 8U, 0xFFFFFFFFU}) {
    EXPECT_TRUE(arenas.refuses(QVN_E_PARAM1,
                               [&](auto*, auto*) { return GetParam().call(nullptr, nullptr, target); }));
    EXPECT_TRUE(arenas.refuses(QVN_E_PARAM1,
                               [&](auto*, auto* src) { return GetParam().call(nullptr, src, target); }));
    EXPECT_TRUE(arenas.refuses(QVN_E_PARAM2,
                               [&](auto* dst, auto*) { return GetParam().call(dst, nullptr, target); }));
  }
}

/// Selectors of sizes 0 to 2 lines and pixels are looked at too: a wrong one is refused before anything runs.
TEST(TransformRefusals, HoldAtAnySize) {
  const TwoArenas arenas;
  for (std::uint32_t size : {0U, 1U, 2U}) {
    EXPECT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED, [size](auto* dst, auto* src) {
      return QVN_RGB8ImageTransform(dst, src, size, 4);
    }));
    EXPECT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED, [size](auto* dst, auto* src) {
      return QVN_Y12ImageTransform(dst, src, size, 4);
    }));
    EXPECT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED, [size](auto* dst, auto* src) {
      return QVN_Raw8ImageTransform(dst, src, size, size, 5, 0);
    }));
    EXPECT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED, [size](auto* dst, auto* src) {
      return QVN_Raw8ImageTransform_3x3(dst, src, size, size, 4, 0);
    }));
    EXPECT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED, [size](auto* dst, auto* src) {
      return QVN_Raw16ImageTransformEx(dst, src, size, size, 4, &kTwelveBits);
    }));
  }
}

std::vector<std::uint32_t> depths() {
  std::vector<std::uint32_t> all = numbers(0, 40);
  for (std::uint32_t bits : {0x10CU, 0x1000CU, 0x7FFFFFFFU, 0x8000000CU, 0xFFFFFFFAU, 0xFFFFFFFFU}) {
    all.push_back(bits);
  }
  return all;
}

template <typename Check>
void for_every_format(Check check) {
  for (std::uint32_t alignment : {0U, 1U, 2U, 3U, 0x100U, 0x101U, 0xFFFFFFFFU}) {
    for (std::uint32_t bits : depths()) {
      for (std::uint32_t order : {0U, 1U, 2U, 0x100U, 0x101U, 0xFFFFFFFFU}) {
        check(SampleFormatBlock{0, alignment, bits, order, 2});
        if (testing::Test::HasFailure()) {
          ADD_FAILURE() << "alignment " << alignment << ", bits " << bits << ", order " << order;
          return;
        }
      }
    }
  }
}

reference::SampleFormat format_of(const SampleFormatBlock& block) {
  return {block.alignment, block.bitsPerSample, block.byteOrder};
}

/// Accepted formats are converted in other tests; here it matters which they are, a count of 0 included.
TEST(Y16ImageTransformEx, RefusesFormatsWithoutAKernelAtAnyCount) {
  const TwoArenas arenas;
  std::vector<std::uint8_t> dst(12), src(4);
  int accepted = 0;
  for_every_format([&](const SampleFormatBlock& block) {
    for (std::uint32_t target : numbers(0, 9)) {
      const reference::SampleFormat format = format_of(block);
      const bool serves = reference::Y16ImageTransformEx(dst.data(), src.data(), 0, target, &format);
      for (std::uint32_t count : {0U, 2U}) {
        if (serves) {
          ASSERT_EQ(QVN_OK, QVN_Y16ImageTransformEx(dst.data(), src.data(), count, target, &block));
          ++accepted;
        } else {
          ASSERT_TRUE(arenas.refuses(
              QVN_E_NOT_IMPLEMENTED,
              [&](auto* out, auto* in) { return QVN_Y16ImageTransformEx(out, in, count, target, &block); }))
              << "target " << target << ", count " << count;
        }
      }
    }
  });
  // Seven targets, two orders, two counts; every depth at the top and six at the bottom.
  EXPECT_EQ(7 * 2 * 2 * (static_cast<int>(depths().size()) + 6), accepted);
}

TEST(Raw16ImageTransformEx, RefusesFormatsWithoutAKernel) {
  const TwoArenas arenas;
  std::vector<std::uint8_t> dst(24), src(8);
  int accepted = 0;
  for_every_format([&](const SampleFormatBlock& block) {
    for (std::uint32_t target : numbers(0, 9)) {
      if (reference::Raw16ImageTransformEx(dst.data(), src.data(), 2, 2, target, format_of(block), 0)) {
        ASSERT_EQ(QVN_OK, QVN_Raw16ImageTransformEx(dst.data(), src.data(), 2, 2, target, &block));
        ++accepted;
      } else {
        ASSERT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED,
                                   [&](auto* out, auto* in) {
                                     return QVN_Raw16ImageTransformEx(out, in, kWidth, kHeight, target,
                                                                      &block);
                                   }))
            << "target " << target;
      }
    }
  });
  EXPECT_EQ(7 * 2 * (static_cast<int>(depths().size()) + 6), accepted);
}

TEST(Y16ImageTransformEx, NamedRefusals) {
  const TwoArenas arenas;
  const auto refuses = [&](SampleFormatBlock block, std::uint32_t target) {
    return arenas.refuses(QVN_E_NOT_IMPLEMENTED, [&](auto* dst, auto* src) {
      return QVN_Y16ImageTransformEx(dst, src, 4, target, &block);
    });
  };
  EXPECT_TRUE(refuses({0, 1, 11, 0, 0}, 0));
  EXPECT_TRUE(refuses({0, 1, 9, 0, 0}, 0));
  EXPECT_TRUE(refuses({0, 1, 17, 0, 0}, 0));
  EXPECT_TRUE(refuses({0, 2, 12, 0, 0}, 0));
  EXPECT_TRUE(refuses({0, 0, 12, 2, 0}, 0));
  EXPECT_TRUE(refuses({0, 0, 12, 0, 0}, 4));
}

TEST(Raw16ImageTransformEx, RefusesANullRecordAfterThePointers) {
  const TwoArenas arenas;
  for (std::uint32_t target : {0U, 4U, 9U}) {
    EXPECT_TRUE(arenas.refuses(QVN_E_PARAM6, [&](auto* dst, auto* src) {
      return QVN_Raw16ImageTransformEx(dst, src, kWidth, kHeight, target, nullptr);
    }));
    EXPECT_TRUE(arenas.refuses(QVN_E_PARAM2, [&](auto* dst, auto*) {
      return QVN_Raw16ImageTransformEx(dst, nullptr, kWidth, kHeight, target, nullptr);
    }));
    EXPECT_TRUE(arenas.refuses(QVN_E_PARAM1, [&](auto*, auto* src) {
      return QVN_Raw16ImageTransformEx(nullptr, src, kWidth, kHeight, target, nullptr);
    }));
  }
}

/// The pointers come before the record, and a bad record is no bad parameter.
TEST(Y16ImageTransformEx, ReadsTheRecordAfterThePointers) {
  const TwoArenas arenas;
  const SampleFormatBlock bad = {0, 2, 11, 2, 0};
  EXPECT_TRUE(arenas.refuses(
      QVN_E_PARAM1, [&](auto*, auto* src) { return QVN_Y16ImageTransformEx(nullptr, src, 4, 9, &bad); }));
  EXPECT_TRUE(arenas.refuses(
      QVN_E_PARAM2, [&](auto* dst, auto*) { return QVN_Y16ImageTransformEx(dst, nullptr, 4, 9, &bad); }));
  EXPECT_TRUE(arenas.refuses(QVN_E_NOT_IMPLEMENTED, [&](auto* dst, auto* src) {
    return QVN_Y16ImageTransformEx(dst, src, 4, 0, &bad);
  }));
}

}  // namespace
