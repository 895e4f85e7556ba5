// The runs as compositions: a source of colours or of grey samples, and a put. Vector loops leave their tails
// to the plain ones, so that they work in place.
#include "transform/runs.h"

#include <algorithm>
#include <cstring>

#include "convert/mono_rgb.h"
#include "convert/yuv_rows.h"
#include "pixel/aligned_run.h"
#include "pixel/cache_lines.h"
#include "pixel/stream.h"
#include "transform/colour_sources.h"
#include "transform/put_grey.h"

namespace qvn {

namespace {

template <class Source, class Put>
[[gnu::flatten]] bool colour_run(uint8_t* dst, const uint8_t* src, size_t n) {
  size_t x = 0;
  if constexpr (kVectorRows) {
    for (; x + kLaneBytes <= n; x += kLaneBytes) {
      const uint8_t* from = src + x * Source::kPixelBytes;
      prefetch_ahead<kLaneBytes * Source::kPixelBytes>(from);
      Put::pixels(dst + x * Put::kPixelBytes, Source::pixels(from));
    }
  }
  for (; x < n; ++x) Put::pixel(dst + x * Put::kPixelBytes, Source::pixel(src + x * Source::kPixelBytes));
  return true;
}

// kGroup pixels make a step; the end is met, not passed.
template <class Fetch, class Put, size_t kGroup = 1>
[[gnu::flatten]] bool grey_run(uint8_t* dst, const uint8_t* src, size_t n) {
  constexpr size_t kStep = Fetch::kColumns;
  size_t x = 0;
  if constexpr (kVectorRows) {
    for (; x + kStep <= n; x += kStep) Put::pixels(dst + x * Put::kPixelBytes, Fetch::samples(src, x));
  }
  for (; x != n; x += kGroup) {
    for (size_t i = x; i < x + kGroup; ++i) {
      Put::pixel(dst + i * Put::kPixelBytes, Fetch::sample(src, i));
    }
  }
  return true;
}

bool copy_run(uint8_t* dst, const uint8_t* src, size_t n) {
  std::memmove(dst, src, n);
  return true;
}

template <void (*row)(uint8_t* dst, const uint8_t* src, size_t n)>
bool row_run(uint8_t* dst, const uint8_t* src, size_t n) {
  row(dst, src, n);
  return true;
}

// Of pixels that are made without arithmetic, which the memory alone holds up.
template <PixelRun run, size_t kPixelBytes, size_t kSourcePairBytes>
bool large_run(uint8_t* dst, const uint8_t* src, size_t n) {
  return stream_run<kPixelBytes>(dst, src, kSourcePairBytes, n, run);
}

template <class Fetch, class Put, size_t kGroup = 1>
constexpr PixelRun kLargeGreyRun =
    large_run<grey_run<Fetch, Put, kGroup>, Put::kPixelBytes, Fetch::line_bytes(2)>;

// Those that are never streamed: of one or two bytes a pixel, or with a byte that stays.
template <PixelRun run, size_t kPixelBytes, size_t kSourcePairBytes>
bool unstreamed_run(uint8_t* dst, const uint8_t* src, size_t n) {
  return aligned_run<kPixelBytes>(dst, src, kSourcePairBytes, n, run);
}

template <class Fetch, class Put, size_t kGroup = 1>
constexpr PixelRun kGreyRun =
    unstreamed_run<grey_run<Fetch, Put, kGroup>, Put::kPixelBytes, Fetch::line_bytes(2)>;

// The group of an odd last pixel has both of its chroma bytes, and no second luma.
bool y8_to_422_run(uint8_t* dst, const uint8_t* src, size_t n) {
  grey_run<FetchRaw8, GreyHalf422>(dst, src, n);
  if (n % 2 != 0) dst[2 * n] = 0;
  return true;
}

// Red and blue change places; alpha stays, and is the fourth byte.
bool rgba8_to_bgra_run(uint8_t* dst, const uint8_t* src, size_t n) {
  size_t x = 0;
  if constexpr (kVectorRows) {
    for (; x + kLaneBytes / 4 <= n; x += kLaneBytes / 4) {
      const DoubleWords v = load<DoubleWords>(src + 4 * x);
      store(dst + 4 * x, (v & 0xFF00FF00) | ((v & 0xFF) << 16) | ((v >> 16) & 0xFF));
    }
  }
  for (; x < n; ++x) {
    const uint8_t *from = src + 4 * x, bgra[] = {from[2], from[1], from[0], from[3]};
    std::memcpy(dst + 4 * x, bgra, sizeof bgra);
  }
  return true;
}

// Runs from packed pixels by permutations of what a block holds. Without those, by way of channels.

// The loads of three bytes a pixel touch kThreesMargin pixels to either side.
template <class Put>
bool rgb8_to_grey_run(uint8_t* dst, const uint8_t* src, size_t n) {
  size_t x = std::min<size_t>(n, kLaneBytes);
  colour_run<Rgb8, Put>(dst, src, x);
  for (; x + kLaneBytes + kThreesMargin <= n; x += kLaneBytes) {
    prefetch_ahead<3 * kLaneBytes>(src + 3 * x);
    store(dst + x, Put::grey_of_fours(
                       [=](size_t i) { return load_threes_as_rgbg(src + 3 * (x + i * kFoursPixels)); }));
  }
  return colour_run<Rgb8, Put>(dst + x, src + 3 * x, n - x);
}

template <class Put>
bool rgba8_to_grey_run(uint8_t* dst, const uint8_t* src, size_t n) {
  size_t x = 0;
  for (; x + kLaneBytes <= n; x += kLaneBytes) {
    prefetch_ahead<4 * kLaneBytes>(src + 4 * x);
    store(dst + x,
          Put::grey_of_fours([=](size_t i) { return load_fours_as_rgbg(src + 4 * (x + i * kFoursPixels)); }));
  }
  return colour_run<Rgba8, Put>(dst + x, src + 4 * x, n - x);
}

namespace places {
// Pixels of three bytes, with their ends exchanged, from pixels of four:
//
//     R0 G0 B0 A0 R1 G1 ...   ->   B0 G0 R0 B1 G1 R1 ... 0 0 0 0
constexpr int threes_of_fours(int i) { return i % 16 >= 12 ? 128 : i % 16 / 3 * 4 + 2 - i % 16 % 3; }

// The first three double words of each block, then any.
constexpr int threes_of_double_words(int i) {
  constexpr int kBlocks = kLaneBytes / 16;
  return i < 3 * kBlocks ? i / 3 * 4 + i % 3 : 3;
}
}  // namespace places

bool rgb8_to_bgra_run(uint8_t* dst, const uint8_t* src, size_t n) {
  constexpr size_t kStep = kLineBytes / 4;
  size_t x = std::min(n, kFoursPixels);
  colour_run<Rgb8, PutBgra>(dst, src, x);
  for (; x + kStep + kThreesMargin <= n; x += kStep) {
    prefetch_ahead<kLineBytes>(dst + 4 * x);
    for (size_t i = x; i < x + kStep; i += kFoursPixels) {
      store_over_three(dst + 4 * i, as<DoubleWords>(load_threes_as_bgr0(src + 3 * i)));
    }
  }
  return colour_run<Rgb8, PutBgra>(dst + 4 * x, src + 3 * x, n - x);
}

// A fourth of a vector behind the pixels is written, and then written again: half as many pixels have room
// for it. In place, all sources to come lie behind it.
bool rgba8_to_bgr_run(uint8_t* dst, const uint8_t* src, size_t n) {
  constexpr size_t kStep = kLaneBytes / 4;
  size_t x = 0;
  for (; x + kStep + kStep / 2 <= n; x += kStep) {
    const Bytes pixels = permute_blocks(load<Bytes>(src + 4 * x), constant<Bytes, places::threes_of_fours>());
    store(dst + 3 * x, shuffle<places::threes_of_double_words>(as<DoubleWords>(pixels)));
  }
  return colour_run<Rgba8, PutBgr>(dst + 3 * x, src + 4 * x, n - x);
}

constexpr bool kByPermutes = kVectorRows && kBytePermutes;
constexpr PixelRun kRgb8ToBgra = kByPermutes ? rgb8_to_bgra_run : colour_run<Rgb8, PutBgra>;
constexpr PixelRun kRgba8ToBgr = kByPermutes ? rgba8_to_bgr_run : colour_run<Rgba8, PutBgr>;
template <class Put>
constexpr PixelRun kRgb8ToGrey = kByPermutes ? rgb8_to_grey_run<Put> : colour_run<Rgb8, Put>;
template <class Put>
constexpr PixelRun kRgba8ToGrey = kByPermutes ? rgba8_to_grey_run<Put> : colour_run<Rgba8, Put>;

template <class Layout>
constexpr ByTarget<PixelRun> yuv_runs() {
  return {row_run<yuv_to_packed<Layout, PutY8>>, row_run<yuv_to_packed<Layout, PutBgr>>,
          row_run<yuv_to_packed<Layout, PutBgra>>, row_run<yuv_to_packed<Layout, PutY8Rounded>>};
}

// Grey has one luma, whatever the weights.
template <class Fetch, size_t kGroup = 1>
constexpr ByTarget<PixelRun> grey_runs() {
  constexpr PixelRun kY8 = kGreyRun<Fetch, GreyY8, kGroup>;
  return {kY8, kLargeGreyRun<Fetch, GreyBgr, kGroup>, kGreyRun<Fetch, GreyBgra, kGroup>, kY8};
}

struct Y16LayoutRuns {
  template <ByteOrder Order, int Shift>
  static constexpr ByTarget<PixelRun> of() {
    ByTarget<PixelRun> runs = grey_runs<FetchShiftedRaw16TopByte<Order, Shift>>();
    runs[5] = runs[6] = kGreyRun<FetchRaw16<Order, Shift>, GreyY16>;
    runs[7] = kLargeGreyRun<FetchRaw16<Order, Shift>, GreyBgr16>;
    return runs;
  }
};

}  // namespace

constexpr ByTarget<PixelRun> kRgb8Runs = {kRgb8ToGrey<PutY8>, large_run<row_run<rgb8_to_bgr>, 3, 6>,
                                          unstreamed_run<kRgb8ToBgra, 4, 6>, kRgb8ToGrey<PutY8Rounded>};
constexpr ByTarget<PixelRun> kRgba8Runs = {kRgba8ToGrey<PutY8>, kRgba8ToBgr, rgba8_to_bgra_run,
                                           kRgba8ToGrey<PutY8Rounded>};
constexpr ByTarget<PixelRun> kYuv444Runs = yuv_runs<Yuv444>();
constexpr ByTarget<PixelRun> kYuv422Runs = yuv_runs<Yuv422>();
constexpr ByTarget<PixelRun> kYuv411Runs = yuv_runs<Yuv411>();
constexpr ByTarget<PixelRun> kY8Runs = {copy_run, kLargeGreyRun<FetchRaw8, GreyBgr>,
                                        kGreyRun<FetchRaw8, GreyBgra>, copy_run,
                                        unstreamed_run<y8_to_422_run, 2, 2>};

// A push of red and blue weighs (77 + 29) / 256, or (54 + 18) / 256 with the rounding's 128: never a whole
// one, so that luma is the first byte.
constexpr PixelRun kY16ToY8 = kGreyRun<FetchRaw16TopByte, GreyY8>;
constexpr ByTarget<PixelRun> kY16Runs = {kY16ToY8, colour_run<PushedY16, PutBgr>,
                                         colour_run<PushedY16, PutBgra>, kY16ToY8};

constexpr ByTarget<PixelRun> kY12Runs = grey_runs<FetchRaw12TopByte, 2>();
constexpr ByLayout<PixelRun> kY16LayoutRuns = by_layout<PixelRun, Y16LayoutRuns>();

}  // namespace qvn
