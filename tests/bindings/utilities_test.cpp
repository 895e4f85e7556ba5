// The checked utilities against their C functions, and each of their checks.
#include <gtest/gtest.h>

#include <cstring>
#include <quorvane.hpp>

#include "bindings/buffers.h"

namespace bindings {
namespace {

using quorvane::Axis;
using quorvane::Cause;
using quorvane::Destination;
using quorvane::Result;
using quorvane::Size;
using quorvane::Source;

Destination shorter(Buffer& bytes) { return {bytes.data(), bytes.size() - 1, 0}; }
Source shorter(const Buffer& bytes) { return {bytes.data(), bytes.size() - 1, 0}; }

void expect_refused(const Result<void>& result, Cause cause) {
  ASSERT_FALSE(result);
  EXPECT_EQ(result.failure().cause, cause) << result.failure().message;
}

TEST(QueriesTest, AnswerAsTheCFunctions) {
  EXPECT_EQ(quorvane::version(), 0x02010200U);
  EXPECT_EQ(quorvane::bits_per_pixel(quorvane::ColorCoding::kRgb16), 48U);
  EXPECT_EQ(quorvane::bits_per_pixel(141U), 32U);
  EXPECT_THROW(quorvane::bits_per_pixel(131U), quorvane::Error);
  EXPECT_EQ(quorvane::attempt_bits_per_pixel(11).failure().status, QVN_E_PARAM1);
  TechnoInfo info{};
  QVN_GetTechnoInfo(&info);
  const TechnoInfo told = quorvane::techno_info();
  EXPECT_EQ(std::memcmp(&info, &told, sizeof info), 0);
  EXPECT_EQ(quorvane::status_text(QVN_E_PARAM1), "Parameter 1 is invalid");
}

TEST(FlipTest, MirrorsAndChecks) {
  const Size size{7, 5};
  constexpr std::pair<ColorCodingId, std::size_t> kElements[] = {{0, 1},  {1, 2},   {2, 2},   {3, 2},  {4, 3},
                                                                 {5, 2},  {6, 6},   {7, 2},   {8, 6},  {9, 1},
                                                                 {10, 2}, {128, 1}, {129, 1}, {130, 1}};
  for (const auto& [code, element] : kElements) {
    for (const Axis axis : {Axis::kHorizontal, Axis::kVertical, Axis::kBoth}) {
      Buffer right = random_bytes(size.pixels() * element, code);
      Buffer frame = right;
      ASSERT_EQ(QVN_Flip(right.data(), size.width, size.height, static_cast<std::uint32_t>(axis), code),
                QVN_OK);
      expect_refused(quorvane::attempt_flip(shorter(frame), size, axis, code), Cause::kDestination);
      ASSERT_TRUE(quorvane::attempt_flip(frame, size, axis, code));
      EXPECT_EQ(frame, right) << code;
    }
  }
  Buffer bytes = random_bytes(35, 1);
  EXPECT_TRUE(quorvane::attempt_flip(bytes, size, Axis::kVertical, 132));
  expect_refused(quorvane::attempt_flip(bytes, size, Axis::kBoth, 132), Cause::kStatus);
  expect_refused(quorvane::attempt_flip(bytes, {7, 1}, Axis::kBoth, 0), Cause::kStatus);
  expect_refused(quorvane::attempt_flip(bytes, {0x10001, 0x10000}, Axis::kBoth, 0), Cause::kSize);
  EXPECT_THROW(quorvane::flip(bytes, {7, 6}, Axis::kBoth, quorvane::ColorCoding::kMono8), quorvane::Error);
}

TEST(FlipTest, SwapsLines) {
  Buffer right = random_bytes(40, 2);
  Buffer frame = right;
  QVN_FlipVertical(right.data(), 8, 5);
  expect_refused(quorvane::attempt_flip_vertical(shorter(frame), 8, 5), Cause::kDestination);
  quorvane::flip_vertical(frame, 8, 5);
  EXPECT_EQ(frame, right);
  expect_refused(quorvane::attempt_flip_vertical(frame, 0x10000, 0x10001), Cause::kSize);
}

TEST(WeaveTest, WeavesAndChecks) {
  for (const Size size : {Size{6, 4}, Size{5, 4}, Size{6, 5}, Size{5, 7}}) {
    const Buffer src = random_bytes(size.pixels(), 3);
    Buffer right(src.size(), 9);
    Buffer dst = right;
    QVN_InterlacedToProgressive(right.data(), src.data(), size.width, size.height);
    expect_refused(quorvane::attempt_weave(shorter(dst), src, size), Cause::kDestination);
    expect_refused(quorvane::attempt_weave(dst, shorter(src), size), Cause::kSource);
    quorvane::weave(dst, src, size);
    EXPECT_EQ(dst, right);

    right = src;
    QVN_InterlacedToProgressive(right.data(), right.data(), size.width, size.height);
    dst = src;
    quorvane::weave(dst, dst, size);
    EXPECT_EQ(dst, right);
    Buffer two(src.size() + 1);
    expect_refused(quorvane::attempt_weave(Destination(two.data() + 1, src.size(), 0),
                                           Source(two.data(), src.size(), 0), size),
                   Cause::kOverlap);
  }
}

TEST(UnpackTest, KnowsTheSampleBeyondAnOddNumber) {
  for (const Size size : {Size{4, 3}, Size{5, 3}, Size{1, 1}}) {
    const std::size_t pairs = (size.pixels() + 1) / 2;
    const Buffer src = random_bytes(pairs * 3, 4);
    Buffer right(pairs * 2);
    Buffer dst(pairs * 2);
    QVN_Packed12BitTo8Bit(right.data(), src.data(), size.width, size.height);
    expect_refused(quorvane::attempt_unpack12_to_8(shorter(dst), src, size), Cause::kDestination);
    expect_refused(quorvane::attempt_unpack12_to_8(dst, shorter(src), size), Cause::kSource);
    quorvane::unpack12_to_8(dst, src, size);
    EXPECT_EQ(dst, right);

    right.resize(pairs * 4);
    dst.resize(pairs * 4);
    QVN_Packed12BitTo16Bit(right.data(), src.data(), size.width, size.height);
    expect_refused(quorvane::attempt_unpack12_to_16(shorter(dst), src, size), Cause::kDestination);
    expect_refused(quorvane::attempt_unpack12_to_16(dst, shorter(src), size), Cause::kSource);
    expect_refused(quorvane::attempt_unpack12_to_16(dst, Source(dst.data(), src.size(), 0), size),
                   Cause::kOverlap);
    quorvane::unpack12_to_16(dst, src, size);
    EXPECT_EQ(dst, right);
  }
}

TEST(ResampleTest, ResamplesAndChecks) {
  using quorvane::ResampleBy;
  EXPECT_EQ(quorvane::resampled_length(641, 1, 1), 644);
  for (const ResampleBy method : {ResampleBy::kNearest, ResampleBy::kLinear}) {
    for (std::uint32_t element = 1; element <= 6; ++element) {
      for (const auto& [length, source_length, rate, source_rate, read] :
           {std::tuple{12, 20, 1.0F, 1.5F, method == ResampleBy::kLinear ? 12 : 18},
            std::tuple{20, 12, 5.0F, 3.0F, 12}, std::tuple{9, 9, 1.0F, 1.0F, 9}}) {
        for (const int pad : {0, 2}) {
          const quorvane::ResampledLines lines{.length = length,
                                               .source_length = source_length,
                                               .count = 3,
                                               .rate = rate,
                                               .source_rate = source_rate,
                                               .element_bytes = element,
                                               .method = method,
                                               .pitch = pad == 0 ? 0 : length + pad,
                                               .source_pitch = pad == 0 ? 0 : source_length + pad};
          const auto bytes = [&](int line, int last) {
            return std::size_t(2 * (line + pad) + last) * element;
          };
          const Buffer src = random_bytes(bytes(source_length, read), 5);
          Buffer right(bytes(length, length), 7);
          Buffer dst = right;
          // The last line is shorter by what nothing reads; the C call does not know.
          ASSERT_EQ(QVN_ResampleScanlinesEx(right.data(), src.data(), length, length + pad, source_length,
                                            source_length + pad, 3, source_rate, rate, element,
                                            static_cast<std::uint32_t>(method)),
                    1U);
          expect_refused(quorvane::attempt_resample(shorter(dst), src, lines), Cause::kDestination);
          const Result<void> refused = quorvane::attempt_resample(dst, shorter(src), lines);
          if (method == ResampleBy::kLinear && read > source_length) {
            expect_refused(refused, Cause::kSize);
            continue;
          }
          expect_refused(refused, Cause::kSource);
          const Result<void> done = quorvane::attempt_resample(dst, src, lines);
          ASSERT_TRUE(done) << done.failure().message;
          EXPECT_EQ(dst, right);
        }
      }
    }
  }
}

TEST(ResampleTest, RefusesWhatTheLibraryWouldRunAwayWith) {
  Buffer src(100);
  Buffer dst(100);
  const quorvane::ResampledLines good{
      .length = 8, .source_length = 8, .count = 1, .rate = 1, .source_rate = 1};
  EXPECT_TRUE(quorvane::attempt_resample(dst, src, good));
  const auto refused = [&](auto change, Cause cause) {
    quorvane::ResampledLines lines = good;
    change(lines);
    expect_refused(quorvane::attempt_resample(dst, src, lines), cause);
  };
  refused([](auto& lines) { lines.element_bytes = 0; }, Cause::kArgument);
  refused([](auto& lines) { lines.element_bytes = 7; }, Cause::kArgument);
  refused([](auto& lines) { lines.rate = 0; }, Cause::kArgument);
  refused([](auto& lines) { lines.source_rate = -1; }, Cause::kArgument);
  refused([](auto& lines) { lines.rate = NAN; }, Cause::kArgument);
  refused([](auto& lines) { lines.source_rate = INFINITY; }, Cause::kArgument);
  refused([](auto& lines) { lines.length = 0; }, Cause::kSize);
  refused([](auto& lines) { lines.source_length = 0; }, Cause::kSize);
  refused([](auto& lines) { lines.count = -1; }, Cause::kSize);
  refused([](auto& lines) { lines.pitch = 7; }, Cause::kPitch);
  refused([](auto& lines) { lines.source_pitch = 7; }, Cause::kPitch);
  // A line that linear stretches to more elements than it has, at a rate that does not reach them all.
  refused(
      [](auto& lines) {
        lines.length = 12;
        lines.method = quorvane::ResampleBy::kLinear;
      },
      Cause::kSize);
}

TEST(SisTest, ReadsTheBlockAndChecks) {
  using quorvane::SisKind;
  const Size size{64, 48};
  const Buffer frame = random_bytes(size.pixels(), 6);
  for (const SisKind kind : {SisKind::k12Bytes, SisKind::k52Bytes}) {
    Buffer right(kind == SisKind::k12Bytes ? 12 : 52);
    Buffer dst = right;
    for (const std::int32_t position : {0, 3, 47, -64, -53, -13}) {
      const std::uint32_t status = QVN_GetSIS(right.data(), frame.data(), size.width, size.height, 0,
                                              position, static_cast<std::uint32_t>(kind));
      expect_refused(quorvane::attempt_sis(shorter(dst), frame, size, 0, position, kind),
                     Cause::kDestination);
      expect_refused(quorvane::attempt_sis(dst, shorter(frame), size, 0, position, kind), Cause::kSource);
      const Result<void> done = quorvane::attempt_sis(dst, frame, size, 0, position, kind);
      EXPECT_EQ(done ? QVN_OK : done.failure().status, status) << position;
      EXPECT_EQ(dst, right);
    }
    expect_refused(quorvane::attempt_sis(dst, frame, size, 0, 48, kind), Cause::kArgument);
    expect_refused(quorvane::attempt_sis(dst, frame, size, 0, -3073, kind), Cause::kArgument);
    expect_refused(quorvane::attempt_sis(dst, frame, size, 131, 0, kind), Cause::kArgument);
    expect_refused(quorvane::attempt_sis(dst, frame, {16384, 16384}, 10, 0, kind), Cause::kSize);
  }
}

}  // namespace
}  // namespace bindings
