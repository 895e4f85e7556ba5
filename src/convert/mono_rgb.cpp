// The mono and RGB rows. A vector row leaves its tail to the plain one, so that it works in place.
#include "convert/mono_rgb.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "convert/luma_float.h"
#include "pixel/cache_lines.h"
#include "pixel/put.h"
#include "pixel/split3.h"

namespace qvn {

namespace {

// Runs `vector` at x = 0, kStep, ... as far as whole vectors go; returns where they end.
template <size_t kStep, class Vector>
size_t run_vectors(size_t n, Vector&& vector) {
  size_t x = 0;
  if constexpr (kVectorRows) {
    for (; x + kStep <= n; x += kStep) vector(x);
  }
  return x;
}

namespace places {
// Which channel the byte at `i` of vector `Vector` of three belongs to.
template <int Vector, int Channel>
constexpr int is_packed_channel(int i) {
  return (Vector * kLaneBytes + i) % 3 == Channel ? 1 : 0;
}

// Five pixels of a 16-byte block with their ends exchanged. The sixteenth byte, the next pixel's, stays.
//
//     R G B R G B ... R G B R   ->   B G R B G R ... B G R R
constexpr int exchange_five(int i) {
  const int place = i % 16;
  return place == 15 ? i : i - place % 3 + 2 - place % 3;
}
}  // namespace places

// Every byte is the one two behind, its own, or the one two before:
//
//     src    R G B R G B ...
//     dst    B G R B G R ...
template <int Vector>
Bytes exchange_ends(const uint8_t* from) {
  const uint8_t* at = from + Vector * kLaneBytes;
  const Bytes behind = load<Bytes>(at + 2), own = load<Bytes>(at), before = load<Bytes>(at - 2);
  return blend<places::is_packed_channel<Vector, 0>>(
      behind, blend<places::is_packed_channel<Vector, 1>>(own, before));
}

// Without permutations. The loads reach two bytes to either side, so the first and the last pixel are left to
// the plain row. In place the bytes before a vector are rewritten ones, but they are not the ones that are
// picked.
void rgb8_to_bgr_blended(uint8_t* dst, const uint8_t* src, size_t n) {
  if (n < 3) return rgb8_to_bgr_plain(dst, src, n);
  rgb8_to_bgr_plain(dst, src, 1);
  const size_t done = 1 + run_vectors<kLaneBytes>(n - 2, [=](size_t x) {
                        const uint8_t* from = src + 3 * (1 + x);
                        uint8_t* to = dst + 3 * (1 + x);
                        const Bytes first = exchange_ends<0>(from);
                        const Bytes second = exchange_ends<1>(from);
                        const Bytes third = exchange_ends<2>(from);
                        store(to, first);
                        store(to + kLaneBytes, second);
                        store(to + 2 * kLaneBytes, third);
                      });
  rgb8_to_bgr_plain(dst + 3 * done, src + 3 * done, n - done);
}

// Blocks that follow one another by 15 bytes; each ends with a byte that the next one writes again, and that
// in place is the byte that is there. The last one needs a pixel behind it for that byte.
void rgb8_to_bgr_by_fives(uint8_t* dst, const uint8_t* src, size_t n) {
  constexpr size_t kBlocks = kLaneBytes / 16, kStep = 5 * kBlocks;
  const size_t done = run_vectors<kStep>(n - std::min<size_t>(n, 1), [=](size_t x) {
    const Bytes pixels = shuffle<places::exchange_five>(load_blocks<15>(src + 3 * x));
    for (size_t block = 0; block < kBlocks; ++block) {
      store_block(dst + 3 * x + 15 * block, pixels, static_cast<int>(block));
    }
  });
  rgb8_to_bgr_plain(dst + 3 * done, src + 3 * done, n - done);
}

}  // namespace

void rgb8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n) {
  for (size_t x = 0; x < n; ++x, dst += 3, src += 3) {
    const uint8_t r = src[0], g = src[1], b = src[2];
    dst[0] = b;
    dst[1] = g;
    dst[2] = r;
  }
}

void rgb8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) {
  constexpr auto kRow = kBytePermutes ? rgb8_to_bgr_by_fives : rgb8_to_bgr_blended;
  kRow(dst, src, n);
}

void rgb8_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n) {
  for (size_t x = 0; x < n; ++x) dst[x] = luma_by_doubles(src[3 * x], src[3 * x + 1], src[3 * x + 2]);
}

namespace {

// Pixels whose luma waits on the stack.
constexpr size_t kLumaStrip = 2048;

// Of a vector's pixels, those whose bit is set in `whole`, by the doubles. Where they are many, as in grey,
// all of them.
void mend_whole_luma(uint8_t* luma, const uint8_t* src, uint64_t whole) {
  constexpr int kMany = kLaneBytes / 4;
  if (std::popcount(whole) >= kMany) {
    const auto [r, g, b] = load_split3(src);
    store(luma, luma_by_doubles(Rgb<Bytes>{r, g, b}));
    return;
  }
  for (; whole != 0; whole &= whole - 1) {
    const int i = std::countr_zero(whole);
    rgb8_to_y8_plain(luma + i, src + 3 * i, 1);
  }
}

// n pixels, whole vectors. One colour in a hundred has a whole luma, so one vector in four has such a pixel:
// too many to leave the loop for each, which nothing foresees. They are noted, and mended afterwards.
void exact_luma_strip(uint8_t* luma, const uint8_t* src, size_t n) {
  struct Note {
    size_t x;
    uint64_t whole;
  };
  std::array<Note, kLumaStrip / kLaneBytes> notes;
  size_t noted = 0;
  for (size_t x = 0; x < n; x += kLaneBytes) {
    prefetch_ahead<3 * kLaneBytes>(src + 3 * x);
    const ExactLuma exact{TwoHundredfoldLuma(src + 3 * x)};
    store(luma + x, exact.floor);
    notes[noted] = {x, exact.whole};
    noted += exact.whole != 0 ? 1 : 0;
  }
  for (size_t i = 0; i < noted; ++i) {
    const auto [x, whole] = notes[i];
    mend_whole_luma(luma + x, src + 3 * x, whole);
  }
}

}  // namespace

// By strips, so that in place all of a strip's source is read before a byte of it is written.
void rgb8_to_y8(uint8_t* dst, const uint8_t* src, size_t n) {
  size_t x = std::min<size_t>(n, kLaneBytes);
  rgb8_to_y8_plain(dst, src, x);
  if constexpr (kVectorRows) {
    std::array<uint8_t, kLumaStrip> strip;
    while (x + kLaneBytes + kThreesMargin <= n) {
      const size_t step = std::min(kLumaStrip, (n - kThreesMargin - x) / kLaneBytes * kLaneBytes);
      exact_luma_strip(strip.data(), src + 3 * x, step);
      std::memcpy(dst + x, strip.data(), step);
      x += step;
    }
  }
  rgb8_to_y8_plain(dst + x, src + 3 * x, n - x);
}

void y8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n) {
  for (size_t x = 0; x < n; ++x) dst[3 * x] = dst[3 * x + 1] = dst[3 * x + 2] = src[x];
}

void y8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n) {
  const size_t done =
      run_vectors<kLaneBytes>(n, [=](size_t x) { store_triple(dst + 3 * x, load<Bytes>(src + x)); });
  y8_to_bgr_plain(dst + 3 * done, src + done, n - done);
}

void y16_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  for (size_t x = 0; x < n; ++x)
    PutBgr::pixel(dst + 3 * x, cut_colours(load_sample(src + 2 * x, order), cut));
}

void y16_to_bgr(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  const CutLanes lanes(cut);
  const auto run = [&]<SampleOrder kOrder>() {
    return run_vectors<kLaneBytes>(n, [&](size_t x) {
      prefetch_ahead<2 * kLaneBytes>(src + 2 * x);
      const SamplePair samples = load_samples<kOrder>(src + 2 * x);
      store_merge3(dst + 3 * x, samples.blue(lanes), samples.green(lanes), samples.red(lanes));
    });
  };
  const size_t done = order == SampleOrder::kBigEndian
                          ? run.template operator()<SampleOrder::kBigEndian>()
                          : run.template operator()<SampleOrder::kLittleEndian>();
  y16_to_bgr_plain(dst + 3 * done, src + 2 * done, n - done, order, cut);
}

void y16_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  for (size_t x = 0; x < n; ++x) {
    dst[x] = static_cast<uint8_t>(cut_colours(load_sample(src + 2 * x, order), cut).r);
  }
}

void y16_to_y8(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut) {
  const CutLanes lanes(cut);
  const auto run = [&]<SampleOrder kOrder>() {
    if (!cut.is_a_byte_above_its_push()) {
      return run_vectors<kLaneBytes>(
          n, [&](size_t x) { store(dst + x, load_samples<kOrder>(src + 2 * x).red(lanes)); });
    }
    const uint32_t lift = 8 - cut.shift;
    if (lift == 0) {  // a quarter less time without a shift
      return run_vectors<kLaneBytes>(
          n, [=](size_t x) { store(dst + x, load_samples<kOrder>(src + 2 * x).rounded_top_bytes()); });
    }
    return run_vectors<kLaneBytes>(n, [=](size_t x) {
      store(dst + x, load_samples<kOrder>(src + 2 * x).lifted(lift).rounded_top_bytes());
    });
  };
  const size_t done = order == SampleOrder::kBigEndian
                          ? run.template operator()<SampleOrder::kBigEndian>()
                          : run.template operator()<SampleOrder::kLittleEndian>();
  y16_to_y8_plain(dst + done, src + 2 * done, n - done, order, cut);
}

}  // namespace qvn
