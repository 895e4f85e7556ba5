// Every checked conversion against the C call: the same bytes, whether lines are padded or not, in bands or
// not; and a refusal that writes nothing where one byte is missing or a size is outside the contract.
#include "bindings/entries.h"

#include <gtest/gtest.h>

#include <cstring>

#include "bindings/buffers.h"

namespace bindings {
namespace {

using quorvane::Cause;
using quorvane::Destination;
using quorvane::Options;
using quorvane::Result;
using quorvane::Size;
using quorvane::Source;

/// The two buffers of a call, exactly as long as it needs them.
struct Pair {
  Pair(const Known& known, Size size, const Selection& with)
      : src(random_bytes(known.source_bytes(size), 1)),
        dst(random_bytes(known.bytes(size, with) * known.planes, 2)) {
    src.reserve(1);  // the C functions refuse null pointers, whatever they would read
  }
  Buffer src;
  Buffer dst;
};

std::array<Destination, 4> planes_of(Buffer& dst, std::uint32_t planes, std::size_t pitch = 0,
                                     std::size_t missing = 0) {
  std::array<Destination, 4> parts;
  const std::size_t plane = dst.size() / planes;
  for (std::uint32_t i = 0; i < planes; ++i) {
    parts[i] = Destination(dst.data() + i * plane, plane - missing, pitch);
  }
  return parts;
}

/// Lines moved apart, with what lies between them.
Buffer spread(const Buffer& tight, std::size_t line, std::size_t pitch, std::size_t lines) {
  Buffer padded = random_bytes((lines - 1) * pitch + line, 3);
  for (std::size_t i = 0; i < lines; ++i) {
    std::memcpy(padded.data() + i * pitch, tight.data() + i * line, line);
  }
  return padded;
}

class EntriesTest : public testing::TestWithParam<Known> {
 protected:
  const Known& known() const { return GetParam(); }

  Pair expected(Size size, const Selection& with) const {
    Pair pair(known(), size, with);
    EXPECT_EQ(known().call(pair.dst.data(), pair.src.data(), size.width, size.height, with), QVN_OK);
    return pair;
  }

  Result<void> checked(Pair& pair, Size size, const Selection& with, const Options& options = {}) const {
    return call(*known().entry, planes_of(pair.dst, known().planes), pair.src, size, with.arguments(),
                options);
  }

  static std::string told(Size size, const Selection& with) {
    return std::to_string(size.width) + "x" + std::to_string(size.height) + ", target " +
           std::to_string(with.target) + ", pattern " + std::to_string(with.pattern) + ", shift " +
           std::to_string(with.shift) + ", order " + std::to_string(with.order);
  }
};

TEST_P(EntriesTest, GivesTheBytesOfTheCCall) {
  for (const Size size : known().good) {
    for (const Selection& with : selections(known())) {
      const Pair right = expected(size, with);
      Pair pair(known(), size, with);
      const Result<void> result = checked(pair, size, with);
      ASSERT_TRUE(result) << result.failure().message;
      ASSERT_EQ(pair.dst, right.dst) << told(size, with);
      ASSERT_EQ(pair.src, right.src) << told(size, with);
    }
  }
}

TEST_P(EntriesTest, RefusesABufferThatLacksAByte) {
  for (const Size size : known().good) {
    for (const Selection& with : selections(known())) {
      const Pair before(known(), size, with);
      Pair pair = before;
      if (!pair.src.empty()) {
        const Source short_source(pair.src.data(), pair.src.size() - 1, 0);
        const Result<void> result =
            call(*known().entry, planes_of(pair.dst, known().planes), short_source, size, with.arguments());
        ASSERT_FALSE(result) << told(size, with);
        ASSERT_EQ(result.failure().cause, Cause::kSource);
      }
      for (std::uint32_t plane = 0; plane < known().planes; ++plane) {
        std::array<Destination, 4> parts = planes_of(pair.dst, known().planes);
        parts[plane] = Destination(parts[plane].data(), parts[plane].size() - 1, 0);
        const Result<void> result = call(*known().entry, parts, pair.src, size, with.arguments());
        ASSERT_FALSE(result) << told(size, with);
        ASSERT_EQ(result.failure().cause, Cause::kDestination);
      }
      ASSERT_EQ(pair.dst, before.dst) << told(size, with);
      ASSERT_EQ(pair.src, before.src) << told(size, with);
    }
  }
}

TEST_P(EntriesTest, RefusesSizesOutsideTheContract) {
  Buffer src(std::size_t{1} << 12);
  Buffer dst(std::size_t{1} << 16);
  const Buffer before = dst;
  for (const Size size : known().bad) {
    const Result<void> result = call(*known().entry, planes_of(dst, known().planes), src, size,
                                     selections(known()).front().arguments());
    ASSERT_FALSE(result) << told(size, {});
    EXPECT_EQ(result.failure().cause, Cause::kSize) << result.failure().message;
  }
  EXPECT_EQ(dst, before);
}

TEST_P(EntriesTest, RefusesTargetsThatItDoesNotOffer) {
  if (known().pixel_bytes != 0) {
    return;
  }
  for (std::uint32_t target = 0; target < 10; ++target) {
    Selection with = selections(known()).front();
    with.target = target;
    const Size size = known().good.back();
    Buffer src(known().source_bytes(size));
    Buffer dst(static_cast<std::size_t>(size.pixels()) * 6);
    const bool offered =
        std::find(known().targets.begin(), known().targets.end(), target) != known().targets.end();
    const Result<void> result = call(*known().entry, {dst}, src, size, with.arguments());
    EXPECT_EQ(static_cast<bool>(result), offered) << target;
    if (!result) {
      EXPECT_EQ(result.failure().status, QVN_E_NOT_IMPLEMENTED);
    }
  }
}

TEST_P(EntriesTest, TakesPaddedLinesOnBothSides) {
  for (const Size size : known().good) {
    if (size.width % known().group != 0 || size.height == 1) {
      continue;
    }
    for (const Selection& with : selections(known())) {
      if (with.target == 4 && known().pixel_bytes == 0 && size.width % 2 == 1) {
        continue;
      }
      const Pair right = expected(size, with);
      const std::size_t line = known().line(size, with);
      const std::size_t source_line = known().source_line(size);
      const Pair given(known(), size, with);
      for (const std::size_t source_pad : {0U, 3U}) {
        for (const std::size_t pad : {0U, 5U}) {
          const std::size_t pitch = line + pad;
          const std::size_t source_pitch = source_line + source_pad;
          Buffer src = spread(given.src, source_line, source_pitch, size.height);
          Buffer dst;
          Buffer wanted;
          const std::size_t plane = known().bytes(size, with);
          for (std::uint32_t i = 0; i < known().planes; ++i) {
            const auto part = [&](const Buffer& whole) {
              return spread(Buffer(whole.begin() + static_cast<std::ptrdiff_t>(i * plane),
                                   whole.begin() + static_cast<std::ptrdiff_t>((i + 1) * plane)),
                            line, pitch, size.height);
            };
            const Buffer from = part(given.dst);
            const Buffer to = part(right.dst);
            dst.insert(dst.end(), from.begin(), from.end());
            wanted.insert(wanted.end(), to.begin(), to.end());
          }
          const Buffer wanted_src = spread(right.src, source_line, source_pitch, size.height);
          const auto convert = [&](std::size_t missing, std::size_t source_missing) {
            return call(*known().entry, planes_of(dst, known().planes, pitch, missing),
                        Source(src.data(), src.size() - source_missing, source_pitch), size,
                        with.arguments());
          };
          EXPECT_FALSE(convert(1, 0));
          EXPECT_FALSE(convert(0, 1));
          const Result<void> result = convert(0, 0);
          ASSERT_TRUE(result) << result.failure().message;
          ASSERT_EQ(dst, wanted) << told(size, with) << ", pads " << source_pad << ", " << pad;
          ASSERT_EQ(src, wanted_src) << told(size, with);
        }
      }
    }
  }
}

TEST_P(EntriesTest, RefusesLinesThatLieTooClose) {
  const Size size = known().good.back();
  const Selection with = selections(known()).front();
  Pair pair(known(), size, with);
  const Buffer before = pair.dst;
  const std::size_t line = known().line(size, with);
  const std::size_t source_line = known().source_line(size);
  Result<void> result =
      call(*known().entry, planes_of(pair.dst, known().planes, line - 1), pair.src, size, with.arguments());
  ASSERT_FALSE(result);
  EXPECT_EQ(result.failure().cause, Cause::kPitch);
  result = call(*known().entry, planes_of(pair.dst, known().planes), Source(pair.src, source_line - 1), size,
                with.arguments());
  ASSERT_FALSE(result);
  EXPECT_EQ(result.failure().cause, Cause::kPitch);
  result = call(*known().entry, planes_of(pair.dst, known().planes), Source(pair.src, SIZE_MAX), size,
                with.arguments());
  ASSERT_FALSE(result);
  EXPECT_EQ(result.failure().cause, size.width % known().group == 0 ? Cause::kSource : Cause::kPitch);
  EXPECT_EQ(pair.dst, before);
}

TEST_P(EntriesTest, GivesTheSameBytesInBands) {
  for (const Size size : known().good) {
    for (const Selection& with : selections(known())) {
      const Pair right = expected(size, with);
      for (const std::size_t bands : {2U, 3U, 8U, 100U}) {
        Pair pair(known(), size, with);
        std::size_t most = 0;
        Options options{.bands = bands};
        // Backwards, so that no band can rely on the one before it.
        options.executor = [&](std::size_t jobs, const std::function<void(std::size_t)>& job) {
          most = jobs;
          for (std::size_t i = jobs; i > 0; --i) {
            job(i - 1);
          }
        };
        const Result<void> result = checked(pair, size, with, options);
        ASSERT_TRUE(result) << result.failure().message;
        ASSERT_EQ(pair.dst, right.dst) << told(size, with) << ", bands " << bands;
        ASSERT_EQ(pair.src, right.src) << told(size, with) << ", bands " << bands;
        ASSERT_LE(most, bands);
        const bool large = size.height >= 60 && size.pixels() >= 6400;
        ASSERT_EQ(most, known().cut && large && bands <= 8 ? bands : most);
        if (!known().cut) {
          ASSERT_EQ(most, 0U);
        }
      }
    }
  }
}

TEST_P(EntriesTest, GivesTheSameBytesOnThreadsAndPaddedLines) {
  const Size size = known().good.back();
  if (size.width % known().group != 0) {
    return;
  }
  for (const Selection& with : selections(known())) {
    if (known().planes > 1 || (with.target == 4 && size.width % 2 == 1)) {
      continue;
    }
    const Pair right = expected(size, with);
    Pair pair(known(), size, with);
    Result<void> result = checked(pair, size, with, {.bands = 4});
    ASSERT_TRUE(result) << result.failure().message;
    ASSERT_EQ(pair.dst, right.dst) << told(size, with);

    const std::size_t line = known().line(size, with);
    const std::size_t source_line = known().source_line(size);
    const Pair given(known(), size, with);
    Buffer src = spread(given.src, source_line, source_line + 8, size.height);
    Buffer dst = spread(given.dst, line, line + 6, size.height);
    result = call(*known().entry, {Destination(dst, line + 6)}, Source(src, source_line + 8), size,
                  with.arguments(), {.bands = 4});
    ASSERT_TRUE(result) << result.failure().message;
    ASSERT_EQ(dst, spread(right.dst, line, line + 6, size.height)) << told(size, with);
  }
}

TEST_P(EntriesTest, MakesPicturesOpaqueOnRequest) {
  for (const Size size : known().good) {
    for (const Selection& with : selections(known())) {
      const bool bgra = known().pixel_bytes == 0 && with.target == 2;
      for (const std::size_t bands : {1U, 3U}) {
        Pair pair(known(), size, with);
        const Result<void> result = checked(pair, size, with, {.opaque = true, .bands = bands});
        ASSERT_EQ(static_cast<bool>(result), bgra);
        if (bgra) {
          Pair right = expected(size, with);
          for (std::size_t i = 3; i < right.dst.size(); i += 4) {
            right.dst[i] = 255;
          }
          ASSERT_EQ(pair.dst, right.dst) << told(size, with);
        }
      }
    }
  }
}

TEST_P(EntriesTest, KeepsTheSourceOnRequest) {
  const Size size = known().good.back();
  for (const Selection& with : selections(known())) {
    const Pair right = expected(size, with);
    for (const std::size_t pad : {0U, 3U}) {
      if (pad != 0 && size.width % known().group != 0) {
        continue;
      }
      Pair pair(known(), size, with);
      const std::size_t line = known().source_line(size);
      const Buffer src = pad == 0 ? pair.src : spread(pair.src, line, line + pad, size.height);
      const Buffer before = src;
      const Result<void> result =
          call_keeping_source(*known().entry, planes_of(pair.dst, known().planes),
                              Source(src, pad == 0 ? 0 : line + pad), size, with.arguments());
      ASSERT_TRUE(result) << result.failure().message;
      ASSERT_EQ(pair.dst, right.dst);
      ASSERT_EQ(src, before);
    }
  }
}

TEST_P(EntriesTest, RefusesBuffersThatOverlap) {
  const Size size = known().good.back();
  const Selection with = selections(known()).front();
  const std::size_t source_bytes = known().source_bytes(size);
  const std::size_t bytes = known().bytes(size, with) * known().planes;
  Buffer memory = random_bytes(source_bytes + bytes, 4);
  const Buffer before = memory;
  const auto convert = [&](std::size_t dst_at, std::size_t src_at) {
    std::array<Destination, 4> parts;
    for (std::uint32_t i = 0; i < known().planes; ++i) {
      const std::size_t plane = bytes / known().planes;
      parts[i] = Destination(memory.data() + dst_at + i * plane, plane, 0);
    }
    return call(*known().entry, parts, Source(memory.data() + src_at, source_bytes, 0), size,
                with.arguments());
  };
  for (const auto& [dst_at, src_at] :
       {std::pair<std::size_t, std::size_t>{0, bytes - 1}, {source_bytes - 1, 0}, {1, 0}, {0, 1}}) {
    const Result<void> result = convert(dst_at, src_at);
    ASSERT_FALSE(result) << dst_at << ", " << src_at;
    EXPECT_EQ(result.failure().cause, Cause::kOverlap);
  }
  EXPECT_EQ(memory, before);
  EXPECT_TRUE(convert(source_bytes, 0));
}

INSTANTIATE_TEST_SUITE_P(Cpp, EntriesTest, testing::ValuesIn(known_entries()),
                         [](const testing::TestParamInfo<Known>& info) {
                           // Two objects stand for the function that can leave its luma out.
                           return std::string(info.param.entry->name) + "_" + std::to_string(info.index);
                         });

TEST(InPlaceTest, WorksWhereTheLibraryDoes) {
  const std::vector<const quorvane::Entry*> good{
      &quorvane::yuv444_to_bgr,  &quorvane::rgb8_to_bgr,     &quorvane::rgb8_to_y8,
      &quorvane::y16_to_y8,      &quorvane::y16_to_y8_ex,    &quorvane::y16_to_y8_mmx,
      &quorvane::rgb8_transform, &quorvane::rgba8_transform, &quorvane::yuv444_transform,
      &quorvane::y8_transform,   &quorvane::y16_transform,   &quorvane::y16_transform_ex,
      &quorvane::y12_transform};
  const Size size{64, 37};
  for (const Known& known : known_entries()) {
    if (known.planes > 1 || known.has_pattern || known.entry->size.least.pixels() != 0) {
      continue;
    }
    for (const Selection& with : selections(known)) {
      const bool fits = known.bytes_of_pixel(with) * known.group <= known.group_bytes;
      const bool listed = std::find(good.begin(), good.end(), known.entry) != good.end();
      Pair right(known, size, with);
      const Buffer src = right.src;
      ASSERT_EQ(known.call(right.dst.data(), right.src.data(), size.width, size.height, with), QVN_OK);
      for (const std::size_t bands : {1U, 4U}) {
        Buffer memory = src;
        memory.resize(std::max(src.size(), right.dst.size()));
        const Result<void> result =
            call(*known.entry, {Destination(memory.data(), right.dst.size(), 0)},
                 Source(memory.data(), src.size(), 0), size, with.arguments(), {.bands = bands});
        ASSERT_EQ(static_cast<bool>(result), listed && fits)
            << known.entry->name << ", target " << with.target;
        if (result) {
          // Fourth bytes are those of the source, unless the function writes them.
          const bool alpha = with.target == 2 && known.pixel_bytes == 0;
          for (std::size_t i = 0; i < right.dst.size(); ++i) {
            if (!alpha || i % 4 != 3) {
              ASSERT_EQ(memory[i], right.dst[i]) << known.entry->name << " byte " << i;
            }
          }
        }
      }
    }
  }
}

TEST(EmptyRunTest, IsGoodAndWritesNothing) {
  EXPECT_TRUE(quorvane::rgb8_to_bgr.attempt(Buffer{}, Buffer{}, {0, 1}));
  EXPECT_TRUE(quorvane::yuv411_to_bgr.attempt(Buffer{}, Buffer{}, {0, 0}));
}

}  // namespace
}  // namespace bindings
