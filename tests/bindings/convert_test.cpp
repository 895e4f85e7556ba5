// The table of conversions and convert(): every row against its C function, names that lead nowhere, frames
// that are repacked, planes, the matrix afterwards. And what a refusal says.
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <quorvane.hpp>
#include <set>

#include "bindings/buffers.h"
#include "bindings/entries.h"
#include "support/random.h"

namespace bindings {
namespace {

using quorvane::Cause;
using quorvane::Destination;
using quorvane::Frame;
using quorvane::Pattern;
using quorvane::Recipe;
using quorvane::Result;
using quorvane::Size;
using quorvane::Source;
using quorvane::Way;

const Known& known_of(const Way& way) {
  const auto& all = known_entries();
  return *std::find_if(all.begin(), all.end(), [&](const Known& known) { return known.entry == way.entry; });
}

TEST(TableTest, EachRowGivesTheBytesOfItsFunction) {
  const Size size{24, 12};
  for (const Way& way : quorvane::ways()) {
    const Known& known = known_of(way);
    Selection with;
    with.pattern = 2;
    with.target = static_cast<std::uint32_t>(quorvane::find_picture_form(way.target)->target);
    with.order = way.format.ends_with("le") && std::endian::native == std::endian::little ? 0 : 1;
    with.bits = way.reads_form ? 12 : 16;
    const quorvane::Format& format = *quorvane::find_format(way.format);
    const Buffer src = random_bytes(quorvane::frame_bytes(format, size), 1);
    ASSERT_EQ(src.size(), known.source_bytes(size)) << way.format;
    Buffer right = random_bytes(quorvane::picture_bytes(way, size), 2);
    ASSERT_EQ(right.size(), known.bytes(size, with) * known.planes) << way.target;
    Buffer dst = right;
    Buffer source = src;
    if (way.format.ends_with("le") && std::endian::native == std::endian::big) {
      for (std::size_t i = 0; i < source.size(); i += 2) {
        std::swap(source[i], source[i + 1]);
      }
    }
    ASSERT_EQ(known.call(right.data(), source.data(), size.width, size.height, with), QVN_OK);
    const Frame frame{way.format, size, Pattern::kGrbg, with.bits};
    const Recipe recipe{.method = way.method, .target = way.target};
    const Result<void> done = quorvane::attempt_convert(dst, src, frame, recipe);
    ASSERT_TRUE(done) << done.failure().message;
    ASSERT_EQ(dst, right) << way.format << ' ' << way.method << ' ' << way.target;

    const Destination short_dst(dst.data(), dst.size() - 1, 0);
    EXPECT_FALSE(quorvane::attempt_convert(short_dst, src, frame, recipe));
    EXPECT_FALSE(quorvane::attempt_convert(dst, Source(src.data(), src.size() - 1, 0), frame, recipe));
  }
}

TEST(TableTest, HoldsEveryConversion) {
  std::set<const quorvane::Entry*> reached;
  for (const Way& way : quorvane::ways()) {
    reached.insert(way.entry);
    if (way.corrected != nullptr) {
      reached.insert(way.corrected);
    }
  }
  for (const Known& known : known_entries()) {
    // What others do as well: these three are the Ex functions with their usual arguments.
    const bool same = known.entry == &quorvane::y16_to_bgr || known.entry == &quorvane::y16_to_y8 ||
                      known.entry == &quorvane::y16_to_y8_mmx;
    EXPECT_EQ(reached.count(known.entry), same ? 0U : 1U) << known.entry->name;
  }
}

TEST(TableTest, TheFirstMethodAndTargetAreTheDefault) {
  const Way& raw = *quorvane::find_way("raw8").value();
  EXPECT_EQ(raw.entry, &quorvane::raw8_to_bgr);
  EXPECT_EQ(quorvane::find_way("raw16le").value()->target, "bgr16");
  EXPECT_EQ(quorvane::find_way("raw12p", {}, "y8").value()->entry, &quorvane::raw12_transform);
  EXPECT_EQ(quorvane::find_way("y8", "transform").value()->target, "bgr");
}

TEST(TableTest, NamesThatLeadNowhereSayWhatThereIs) {
  const auto message = [](std::string_view format, std::string_view method, std::string_view target) {
    return quorvane::find_way(format, method, target).failure().message;
  };
  EXPECT_EQ(message("y12packed", "direct", ""), "quorvane: unknown method 'direct', expected transform");
  EXPECT_EQ(message("raw16be", "2x2", "y8"), "quorvane: unknown target 'y8', expected bgr, bgr16 or y16");
  EXPECT_NE(message("raw9", "", "").find("unknown format 'raw9', expected raw8, raw12packed"),
            std::string::npos);
}

/// Two samples of 12 bits.
using Pack = void (*)(std::uint32_t even, std::uint32_t odd, std::uint8_t* bytes);

TEST(ConvertTest, RepacksTheOtherTwelveBitLayouts) {
  constexpr std::pair<const char*, Pack> kLayouts[] = {
      {"raw12packed",
       [](std::uint32_t even, std::uint32_t odd, std::uint8_t* to) {
         to[0] = static_cast<std::uint8_t>(even >> 4);
         to[1] = static_cast<std::uint8_t>((even & 15) | (odd & 15) << 4);
         to[2] = static_cast<std::uint8_t>(odd >> 4);
       }},
      {"raw12p",
       [](std::uint32_t even, std::uint32_t odd, std::uint8_t* to) {
         to[0] = static_cast<std::uint8_t>(even & 255);
         to[1] = static_cast<std::uint8_t>(even >> 8 | (odd & 15) << 4);
         to[2] = static_cast<std::uint8_t>(odd >> 4);
       }},
      {"raw12csi2", [](std::uint32_t even, std::uint32_t odd, std::uint8_t* to) {
         to[0] = static_cast<std::uint8_t>(even >> 4);
         to[1] = static_cast<std::uint8_t>(odd >> 4);
         to[2] = static_cast<std::uint8_t>((even & 15) | (odd & 15) << 4);
       }}};
  const Size size{1000, 301};  // several strips
  Buffer right;
  for (const auto& [name, pack] : kLayouts) {
    support::Random random(3);
    Buffer src(size.pixels() / 2 * 3);
    for (std::size_t i = 0; i < src.size(); i += 3) {
      const std::uint32_t even = random.below(4096);
      pack(even, random.below(4096), &src[i]);
    }
    const Buffer before = src;
    for (const std::size_t bands : {1U, 4U}) {
      Buffer dst(6 * size.pixels());
      quorvane::convert(dst, src, {name, size, Pattern::kBggr},
                        {.target = "bgr16", .options = {.bands = bands}});
      if (right.empty()) {
        right = dst;
      }
      EXPECT_EQ(dst, right) << name;
      EXPECT_EQ(src, before);
    }
  }
}

TEST(ConvertTest, ReadsGreyInTheOtherTwelveBitLayoutsAndLumaBeforeChroma) {
  const Size size{1000, 301};  // several strips
  const Buffer packed = random_bytes(size.pixels() / 2 * 3, 5), yuv = random_bytes(size.pixels() * 2, 6);
  const auto picture = [&](const Buffer& src, const char* name) {
    return quorvane::convert(src, Frame{name, size}, {.target = "bgr"});
  };
  Buffer low_first = packed, bits_last = packed, luma_first = yuv;
  for (std::size_t i = 0; i < packed.size(); i += 3) {
    const std::uint32_t even = packed[i] << 4 | (packed[i + 1] & 15);
    low_first[i] = static_cast<std::uint8_t>(even & 255);
    low_first[i + 1] = static_cast<std::uint8_t>((packed[i + 1] & 0xF0) | even >> 8);
    std::swap(bits_last[i + 1], bits_last[i + 2]);
  }
  for (std::size_t i = 0; i < yuv.size(); i += 2) {
    std::swap(luma_first[i], luma_first[i + 1]);
  }
  EXPECT_EQ(picture(low_first, "y12p"), picture(packed, "y12packed"));
  EXPECT_EQ(picture(bits_last, "y12csi2"), picture(packed, "y12packed"));
  EXPECT_EQ(picture(luma_first, "yuyv"), picture(yuv, "uyvy"));
}

TEST(ConvertTest, PlanesLieOneBehindTheOtherWithTheirPitch) {
  const Size size{10, 6};
  const Buffer src = random_bytes(size.pixels() * 3, 4);
  const Frame frame{"yuv444", size};
  const Buffer tight = quorvane::convert(src, frame, {.target = "planes-y"});
  ASSERT_EQ(tight.size(), size.pixels() * 4);
  constexpr std::size_t kPitch = 16;
  Buffer padded(kPitch * 6 * 4 - 6, 9);  // without the last line's padding
  quorvane::convert(Destination(padded, kPitch), src, frame, {.target = "planes-y"});
  for (std::size_t line = 0; line < 24; ++line) {
    EXPECT_EQ(std::memcmp(padded.data() + line * kPitch, tight.data() + line * 10, 10), 0) << line;
    if (line < 23) {
      EXPECT_EQ(padded[line * kPitch + 10], 9);
    }
  }
  const Destination lacking(padded.data(), padded.size() - 1, kPitch);
  EXPECT_FALSE(quorvane::attempt_convert(lacking, src, frame, {.target = "planes-y"}));
}

TEST(ConvertTest, KeepsTheSourceOfAnInterpolation) {
  const Size size{16, 12};
  const Buffer src = random_bytes(size.pixels(), 5);
  const Buffer before = src;
  Buffer scratch = src;
  Buffer right(size.pixels() * 3);
  QVN_Raw8ToBGR_IntLCAAV(right.data(), scratch.data(), 16, 12, 0);
  EXPECT_EQ(quorvane::convert(src, {"raw8", size}, {.method = "lcaav"}), right);
  EXPECT_EQ(src, before);
}

TEST(ConvertTest, AppliesTheMatrixToTheFinishedPicture) {
  const Size size{32, 20};
  const quorvane::ClampedMatrix matrix({1.5F, -0.25F, 0, 0, 1.25F, 0, -0.5F, 0, 2});
  const Buffer src = random_bytes(size.pixels() * 2, 6);
  for (const char* const target : {"bgr", "bgra"}) {
    Buffer right = quorvane::convert(src, {"raw8", size}, {.target = target});
    if (std::string_view(target) == "bgr") {
      matrix.apply_bgr(right);
    } else {
      matrix.apply_bgra(right);
    }
    EXPECT_EQ(quorvane::convert(src, {"raw8", size}, {.target = target, .matrix = &matrix}), right);
  }
  // Stops at the top of what a shift leaves, at any alignment.
  std::vector<std::uint16_t> deep(size.pixels() * 3);
  quorvane::raw16_to_bgr16(deep, src, size, Pattern::kRggb, quorvane::Shift{4});
  matrix.apply_bgr16(deep, 4095);
  Buffer bytes(size.pixels() * 6 + 1);
  quorvane::convert(Destination(bytes.data() + 1, bytes.size() - 1, 0), src, {"raw16be", size},
                    {.target = "bgr16", .shift = {4}, .matrix = &matrix});
  EXPECT_EQ(std::memcmp(bytes.data() + 1, deep.data(), deep.size() * 2), 0);
}

/// Pictures longer than what is finished at a time, with and without padding, in bands and not.
TEST(ConvertTest, FinishesEachPixelOnce) {
  const Size size{402, 1003};
  const quorvane::ClampedMatrix matrix({1.5F, -0.25F, 0, 0, 1.25F, 0, -0.5F, 0, 2});
  struct Case {
    const char* format;
    const char* method;
    const char* target;
    std::size_t source_bytes;
    std::size_t pixel_bytes;
  };
  for (const Case& now : {Case{"raw8", "2x2", "bgr", 1, 3}, Case{"raw8", "transform-3x3", "bgra", 1, 4},
                          Case{"raw16be", "2x2", "bgr16", 2, 6}, Case{"uyvy", "transform", "bgra", 2, 4},
                          Case{"y8", "direct", "bgr", 1, 3}, Case{"rgba8", "transform", "bgra", 4, 4}}) {
    const std::size_t line = size.width * now.pixel_bytes;
    const Buffer src = random_bytes(size.pixels() * now.source_bytes, 18);
    const Buffer before = random_bytes(line * size.height, 19);
    const bool opaque = now.pixel_bytes == 4;
    const Frame frame{now.format, size};
    Recipe recipe{.method = now.method, .target = now.target};
    Buffer right = before;
    quorvane::convert(right, src, frame, recipe);
    for (std::size_t i = 3; opaque && i < right.size(); i += 4) {
      right[i] = 255;
    }
    if (now.pixel_bytes == 6) {
      matrix.apply_to_bytes<std::uint16_t>(right.data(), size.pixels(), 3, 2, 65535);
    } else {
      matrix.apply(right.data(), size.pixels(), now.pixel_bytes, 2, 255);
    }
    recipe.matrix = &matrix;
    recipe.options.opaque = opaque;
    for (const std::size_t bands : {1U, 3U}) {
      recipe.options.bands = bands;
      Buffer dst = before;
      quorvane::convert(dst, src, frame, recipe);
      EXPECT_EQ(dst, right) << now.format << " to " << now.target << " in bands: " << bands;

      const std::size_t pitch = line + 10;
      Buffer padded(pitch * size.height);
      for (std::size_t y = 0; y < size.height; ++y) {
        std::memcpy(padded.data() + y * pitch, before.data() + y * line, line);
      }
      quorvane::convert(Destination(padded, pitch), src, frame, recipe);
      for (std::size_t y = 0; y < size.height; ++y) {
        ASSERT_EQ(std::memcmp(padded.data() + y * pitch, right.data() + y * line, line), 0)
            << now.format << " to " << now.target << ", line " << y << " in bands: " << bands;
      }
    }
  }
}

TEST(ConvertTest, RefusesWhatARowDoesNotTake) {
  const Size size{16, 12};
  const Buffer src(size.pixels() * 2);
  Buffer dst(size.pixels() * 6);
  const auto refused = [&](const Frame& frame, const Recipe& recipe) {
    const Result<void> result = quorvane::attempt_convert(dst, src, frame, recipe);
    return !result && result.failure().cause == Cause::kArgument;
  };
  const quorvane::ClampedMatrix matrix({1, 0, 0, 0, 1, 0, 0, 0, 1});
  const quorvane::Correction correction = quorvane::Correction::matrix({1, 0, 0, 0, 1, 0, 0, 0, 1});
  EXPECT_TRUE(refused({"raw8", size}, {.shift = {1}}));
  EXPECT_TRUE(refused({"raw8", size}, {.method = "3x3", .correction = &correction}));
  EXPECT_TRUE(refused({"raw8", size}, {.target = "y8", .matrix = &matrix}));
  EXPECT_TRUE(refused({"raw8", size}, {.target = "uyvy", .matrix = &matrix}));
  EXPECT_TRUE(refused({"raw16be", size, Pattern::kRggb, 12}, {.method = "2x2"}));
  EXPECT_TRUE(refused({"raw8", size}, {.options = {.opaque = true}}));
  EXPECT_TRUE(refused({"raw8", size, static_cast<Pattern>(4)}, {}));
  EXPECT_TRUE(refused({"nothing", size}, {}));
  EXPECT_FALSE(quorvane::attempt_convert(*quorvane::find_way("y8").value(), dst, src, {"raw8", size}, {}));
  // The library refuses eleven bits itself.
  const Result<void> eleven =
      quorvane::attempt_convert(dst, src, {"raw16be", size, Pattern::kRggb, 11}, {.method = "transform-ex"});
  ASSERT_FALSE(eleven);
  EXPECT_EQ(eleven.failure().cause, Cause::kStatus);
  EXPECT_EQ(eleven.failure().status, QVN_E_NOT_IMPLEMENTED);
}

TEST(ErrorsTest, AreOneSentence) {
  const Buffer src(100);
  Buffer dst(299);
  try {
    quorvane::raw8_to_bgr(dst, src, {10, 10}, Pattern::kRggb);
    FAIL();
  } catch (const quorvane::Error& error) {
    EXPECT_STREQ(error.what(), "QVN_Raw8ToBGR: expected a destination of 300 bytes, found 299");
    EXPECT_EQ(error.cause(), Cause::kDestination);
  }
  const Result<void> odd = quorvane::raw8_to_bgr.attempt(dst, src, {11, 9}, Pattern::kRggb);
  ASSERT_FALSE(odd);
  EXPECT_EQ(odd.failure().message, "QVN_Raw8ToBGR: expected a width that is a multiple of 2, found 11x9");
  EXPECT_THROW(odd.value(), quorvane::Error);
}

TEST(ExecutorTest, ExceptionsOfABandReachTheCaller) {
  std::vector<int> order;
  const Buffer src(64 * 64);
  Buffer dst(64 * 64 * 3);
  const quorvane::Options options{.bands = 3, .executor = [&](std::size_t jobs, const auto& job) {
                                    for (std::size_t i = 0; i < jobs; ++i) {
                                      order.push_back(static_cast<int>(i));
                                      job(i);
                                    }
                                    throw std::bad_alloc();
                                  }};
  const Result<void> result = quorvane::raw8_to_bgr.attempt(dst, src, {64, 64}, Pattern::kRggb, options);
  ASSERT_FALSE(result);
  EXPECT_EQ(result.failure().cause, Cause::kMemory);
  EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
}

TEST(BuffersTest, AreAnyContiguousRange) {
  std::array<std::uint8_t, 4> mosaic{200, 100, 50, 25};
  std::array<std::byte, 12> picture{};
  quorvane::raw8_to_bgr(picture, mosaic, {2, 2}, Pattern::kRggb);
  EXPECT_EQ(std::to_integer<int>(picture[2]), 200);
  std::uint8_t plain[12];
  quorvane::raw8_to_bgr(plain, std::span<const std::uint8_t>(mosaic), {2, 2}, Pattern::kRggb);
  EXPECT_EQ(plain[0], 25);
  std::vector<std::uint16_t> words(12);
  quorvane::raw16_to_y16(words, std::vector<std::uint16_t>(8), {4, 2}, Pattern::kRggb, quorvane::Shift{0});
  EXPECT_EQ(Source(words).size(), 24U);
  // What is overwritten cannot be constant.
  static_assert(!std::is_constructible_v<Destination, const std::vector<std::uint8_t>&>);
  static_assert(std::is_constructible_v<Source, const std::vector<std::uint8_t>&>);
}

}  // namespace
}  // namespace bindings
