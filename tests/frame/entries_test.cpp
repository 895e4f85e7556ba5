/// The frame room's entries through the public header: version, capability record, pixel sizes, error texts.
///
/// Texts that come from the operating system are tested where that system is glibc; elsewhere only their
/// form.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "frame/error_texts.h"
#include "quorvane/quorvane.h"
#include "support/guard.h"
#include "support/random.h"

namespace {

constexpr char kUnknownText[] = "return code not found";
constexpr std::uint8_t kCanary = 0xC3;

/// A code of the library's own family that has no text anywhere.
constexpr std::uint32_t kUnknownCode = 0x8800FFF0;

bool has_text(std::uint32_t code) {
  return std::any_of(std::begin(kExpectedTexts), std::end(kExpectedTexts),
                     [code](const ExpectedText& row) { return row.code == code; });
}

/// What the entry leaves in a buffer of canaries that it is told holds `size` bytes.
std::vector<std::uint8_t> buffer_after(std::uint32_t code, std::uint32_t size, std::size_t capacity) {
  std::vector<std::uint8_t> buffer(capacity, kCanary);
  EXPECT_EQ(QVN_GetErrorInfo(code, reinterpret_cast<char*>(buffer.data()), size), QVN_OK);
  return buffer;
}

/// The text and its terminator cut to `size` bytes, canaries behind.
std::vector<std::uint8_t> cut_text(const std::string& text, std::uint32_t size, std::size_t capacity) {
  std::vector<std::uint8_t> buffer(capacity, kCanary);
  std::copy_n(text.c_str(), std::min<std::size_t>(size, text.size() + 1), buffer.begin());
  return buffer;
}

std::string text_of(std::uint32_t code) {
  std::array<char, 512> buffer;
  buffer.fill('#');
  EXPECT_EQ(QVN_GetErrorInfo(code, buffer.data(), buffer.size()), QVN_OK);
  return buffer.data();
}

TEST(GetVersion, IsTheProductVersionAsBytes) {
  std::uint32_t version = 0xAAAAAAAA;
  EXPECT_EQ(QVN_GetVersion(&version), QVN_OK);
  EXPECT_EQ(version, 0x02010200u);
}

TEST(GetTechnoInfo, RefusesNull) { EXPECT_EQ(QVN_GetTechnoInfo(nullptr), QVN_E_PARAM1); }

TEST(GetTechnoInfo, WritesTwelveFlagsAndNothingElse) {
  for (const int prefill : {0x55, 0xAA}) {
    std::array<std::uint8_t, 16> bytes;
    bytes.fill(static_cast<std::uint8_t>(prefill));
    TechnoInfo info;
    std::memset(&info, prefill, sizeof info);
    EXPECT_EQ(QVN_GetTechnoInfo(reinterpret_cast<TechnoInfo*>(bytes.data() + 2)), QVN_OK);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      if (i < 2 || i >= 14) {
        EXPECT_EQ(bytes[i], prefill) << i;
      } else {
        EXPECT_LE(bytes[i], 1) << i;
      }
    }
  }
}

const std::map<std::uint32_t, std::uint32_t> kBitsPerPixel = {
    {0, 8},   {1, 12},  {2, 16},  {3, 24},  {4, 24},   {5, 16},   {6, 48},   {7, 16},   {8, 48},   {9, 8},
    {10, 16}, {128, 8}, {129, 8}, {130, 8}, {132, 12}, {133, 36}, {134, 12}, {135, 36}, {136, 12}, {141, 32},
};

void expect_bits(std::uint32_t code) {
  constexpr std::uint32_t kBefore = 0xDEADBEEF;
  std::uint32_t bits = kBefore;
  const std::uint32_t status = QVN_GetBitsPerPixel(code, &bits);
  const auto known = kBitsPerPixel.find(code);
  ASSERT_EQ(status, known != kBitsPerPixel.end() ? QVN_OK : QVN_E_PARAM1) << code;
  ASSERT_EQ(bits, known != kBitsPerPixel.end() ? known->second : kBefore) << code;
}

TEST(GetBitsPerPixel, KnowsItsCodesAndRefusesAllOthers) {
  for (std::uint32_t code = 0; code < 0x20000; ++code) expect_bits(code);
}

TEST(GetBitsPerPixel, RefusesCodesThatDifferInHighBits) {
  for (int bit = 8; bit < 32; ++bit) {
    for (std::uint32_t low = 0; low < 256; ++low) expect_bits(low | std::uint32_t{1} << bit);
  }
  expect_bits(0xFFFFFFFF);
}

TEST(GetBitsPerPixel, RefusesANullResultBeforeTheCode) {
  EXPECT_EQ(QVN_GetBitsPerPixel(0, nullptr), QVN_E_PARAM2);
  EXPECT_EQ(QVN_GetBitsPerPixel(131, nullptr), QVN_E_PARAM2);
}

TEST(GetErrorInfo, RefusesANullBufferBeforeASizeOfZero) {
  char untouched = 'x';
  EXPECT_EQ(QVN_GetErrorInfo(0, nullptr, 0), QVN_E_PARAM2);
  EXPECT_EQ(QVN_GetErrorInfo(0, nullptr, 64), QVN_E_PARAM2);
  EXPECT_EQ(QVN_GetErrorInfo(0, &untouched, 0), QVN_E_PARAM3);
  EXPECT_EQ(QVN_GetErrorInfo(kUnknownCode, &untouched, 0), QVN_E_PARAM3);
  EXPECT_EQ(untouched, 'x');
}

TEST(GetErrorInfo, GivesTheNamedExamples) {
  EXPECT_EQ(text_of(0), "No error");
  EXPECT_EQ(text_of(0x88000002), "Parameter 1 is invalid");
  EXPECT_EQ(text_of(0xCCCCCCCC), "No description for this error available");
  EXPECT_EQ(text_of(0x88000019), "Insufficient FireWire ressources");
  EXPECT_EQ(text_of(0x8A0003FE), "A pararmeter had to be adjusted");
}

TEST(GetErrorInfo, CutsATextWithoutATerminator) {
  std::array<char, 8> buffer;
  buffer.fill('#');
  EXPECT_EQ(QVN_GetErrorInfo(0x88000001, buffer.data(), 4), QVN_OK);
  EXPECT_EQ(std::string(buffer.data(), buffer.size()), "Uncl####");
}

TEST(GetErrorInfo, EveryKnownTextAtEverySize) {
  for (const ExpectedText& row : kExpectedTexts) {
    for (std::uint32_t size = 1; size <= 64; ++size) {
      ASSERT_EQ(buffer_after(row.code, size, 80), cut_text(row.text, size, 80))
          << std::hex << row.code << std::dec << " size " << size;
    }
  }
}

TEST(GetErrorInfo, SixtyFourBytesHoldEveryText) {
  for (const ExpectedText& row : kExpectedTexts) EXPECT_LT(std::strlen(row.text), 64u) << row.text;
}

TEST(GetErrorInfo, UnknownCodeAtEverySize) {
  for (std::uint32_t size = 1; size <= 64; ++size) {
    ASSERT_EQ(buffer_after(kUnknownCode, size, 80), cut_text(kUnknownText, size, 80)) << size;
  }
}

/// Measuring a cut text must stop at the buffer's end, and nothing may be written behind it.
TEST(GetErrorInfo, UnknownCodesFlushAgainstAClosedPage) {
  for (std::uint32_t size = 1; size <= 24; ++size) {
    for (const std::uint32_t code : {kUnknownCode, 0x8800000Eu, 0x7FFFFFFFu}) {
      support::GuardedBuffer buffer(size, support::Flush::kEnd);
      std::memset(buffer.data(), kCanary, size);
      ASSERT_EQ(QVN_GetErrorInfo(code, reinterpret_cast<char*>(buffer.data()), size), QVN_OK);
      const std::vector<std::uint8_t> got(buffer.data(), buffer.data() + size);
      ASSERT_EQ(got, cut_text(kUnknownText, size, size)) << size;
    }
  }
}

TEST(GetErrorInfo, KnownCodesFlushAgainstAClosedPage) {
  for (const ExpectedText& row : kExpectedTexts) {
    for (std::uint32_t size = 1; size <= 66; ++size) {
      support::GuardedBuffer buffer(size, support::Flush::kEnd);
      std::memset(buffer.data(), kCanary, size);
      ASSERT_EQ(QVN_GetErrorInfo(row.code, reinterpret_cast<char*>(buffer.data()), size), QVN_OK);
      const std::vector<std::uint8_t> got(buffer.data(), buffer.data() + size);
      ASSERT_EQ(got, cut_text(row.text, size, size)) << size;
    }
  }
}

/// A size beyond the buffer is a lie that only matters where the text needs the room.
TEST(GetErrorInfo, TouchesNothingBehindTheTerminatorWhateverTheSize) {
  support::GuardedBuffer buffer(sizeof kUnknownText, support::Flush::kEnd);
  auto* text = reinterpret_cast<char*>(buffer.data());
  ASSERT_EQ(QVN_GetErrorInfo(kUnknownCode, text, 0xFFFFFFFF), QVN_OK);
  EXPECT_STREQ(text, kUnknownText);
}

TEST(GetErrorInfo, SweepOfTheFamiliesFindsNoTextBetweenTheKnownCodes) {
  for (const std::uint32_t family : {0x88000000u, 0x8A000000u, 0xCCCC0000u}) {
    for (std::uint32_t low = 0; low < 0x10000; ++low) {
      if (!has_text(family | low)) {
        ASSERT_EQ(text_of(family | low), kUnknownText) << std::hex << (family | low);
      }
    }
  }
}

TEST(GetErrorInfo, SystemTextOfAFailedCorrectionHasNoLineEnd) {
  const std::string text = text_of(QVN_E_FAIL);
  ASSERT_FALSE(text.empty());
  EXPECT_NE(text, kUnknownText);
  EXPECT_GE(text.back(), ' ');
}

TEST(GetErrorInfo, SameAnswersOnManyThreads) {
  std::vector<std::thread> threads;
  std::array<int, 4> wrong = {};
  threads.reserve(wrong.size());
  for (int& count : wrong) {
    threads.emplace_back([&count] {
      for (int round = 0; round < 200; ++round) {
        for (const ExpectedText& row : kExpectedTexts) {
          std::array<char, 64> buffer;
          QVN_GetErrorInfo(row.code, buffer.data(), buffer.size());
          count += std::strcmp(buffer.data(), row.text) != 0;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, (std::array<int, 4>{}));
}

#if defined(__unix__)

TEST(GetErrorInfo, SystemTextOfAFailedCorrection) { EXPECT_EQ(text_of(QVN_E_FAIL), "Unspecified error"); }

/// A system text that does not fit whole leaves what was there: the cut "return code not found".
TEST(GetErrorInfo, SystemTextThatDoesNotFitIsLeftOut) {
  const std::string text = "Unspecified error";
  for (std::uint32_t size = 1; size <= 64; ++size) {
    const bool fits = size > text.size();
    auto expected = cut_text(kUnknownText, size, 80);
    if (fits) std::copy_n(text.c_str(), text.size() + 1, expected.begin());
    ASSERT_EQ(buffer_after(QVN_E_FAIL, size, 80), expected) << size;
  }
}

TEST(GetErrorInfo, SweepOfRandomCodesFindsNoText) {
  support::Random random(0xE220);
  for (int i = 0; i < 100000; ++i) {
    const auto code = static_cast<std::uint32_t>(random.next()) | 0x00010000u;
    if (has_text(code) || code == QVN_E_FAIL) continue;
    ASSERT_EQ(text_of(code), kUnknownText) << std::hex << code;
  }
}

#endif

#if defined(__GLIBC__)

TEST(GetErrorInfo, SystemErrorsHaveTheSystemsText) {
  for (const int code : {EPERM, ENOENT, ENOMEM, EINVAL, ETIMEDOUT}) {
    EXPECT_EQ(text_of(static_cast<std::uint32_t>(code)), std::strerror(code));
  }
}

#endif

}  // namespace
