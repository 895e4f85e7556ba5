// The plane rows: outputs for the YUV rows, and the RGB8 passes.
#include "convert/planes.h"

#include <initializer_list>

#include "convert/luma_float.h"
#include "convert/yuv_rows.h"
#include "pixel/aligned_run.h"
#include "pixel/cache_lines.h"
#include "pixel/overlap.h"

namespace qvn {

namespace {

struct ColourPlanes {
  uint8_t *r, *g, *b;

  void pixel(size_t x, Rgb<uint32_t> p, uint8_t) const {
    r[x] = static_cast<uint8_t>(p.r);
    g[x] = static_cast<uint8_t>(p.g);
    b[x] = static_cast<uint8_t>(p.b);
  }
  void pixels(size_t x, Rgb<Bytes> p, Bytes) const {
    store(r + x, p.r);
    store(g + x, p.g);
    store(b + x, p.b);
  }
  void pixels(size_t x, const RgbWordPairs& p, Bytes luma) const { pixels(x, narrow_to_bytes(p), luma); }
};

struct ColourAndLumaPlanes {
  ColourPlanes colours;
  uint8_t* y;

  void pixel(size_t x, Rgb<uint32_t> p, uint8_t luma) const {
    colours.pixel(x, p, luma);
    y[x] = luma;
  }
  void pixels(size_t x, Rgb<Bytes> p, Bytes luma) const {
    colours.pixels(x, p, luma);
    store(y + x, luma);
  }
  void pixels(size_t x, const RgbWordPairs& p, Bytes luma) const { pixels(x, narrow_to_bytes(p), luma); }
};

bool all_disjoint(std::initializer_list<Block> blocks) {
  for (const Block* a = blocks.begin(); a != blocks.end(); ++a) {
    for (const Block* b = a + 1; b != blocks.end(); ++b) {
      if (!disjoint(*a, *b)) return false;
    }
  }
  return true;
}

bool all_disjoint(const Planes& planes, size_t n, Block src) {
  return all_disjoint(
      {{planes.r, n}, {planes.g, n}, {planes.b, n}, {planes.y, planes.y == nullptr ? 0 : n}, src});
}

template <class Layout, class Arithmetic>
void yuv_to_planes(const Planes& planes, const uint8_t* src, size_t n) {
  const bool fast = all_disjoint(planes, n, {src, n / Layout::kGroupPixels * Layout::kGroupBytes});
  const auto run = [&](const auto& out) {
    if (fast) {
      yuv_row<Layout, Arithmetic>(out, src, n);
    } else {
      yuv_row_plain<Layout, Arithmetic>(out, src, 0, n);
    }
  };
  const ColourPlanes colours{planes.r, planes.g, planes.b};
  if (planes.y != nullptr) {
    run(ColourAndLumaPlanes{colours, planes.y});
  } else {
    run(colours);
  }
}

// Channel `channel` of every pixel.
void copy_channel(uint8_t* plane, const uint8_t* src, size_t n, size_t channel) {
  for (size_t x = 0; x < n; ++x) plane[x] = src[3 * x + channel];
}

void rgb8_in_passes(const Planes& planes, const uint8_t* src, size_t n) {
  copy_channel(planes.r, src, n, 0);
  copy_channel(planes.g, src, n, 1);
  copy_channel(planes.b, src, n, 2);
  if (planes.y == nullptr) return;
  for (size_t x = 0; x < n; ++x) planes.y[x] = luma_by_singles(planes.r[x], planes.g[x], planes.b[x]);
}

// Pixels x to n; returns how far whole vectors go.
template <bool kWithLuma>
size_t rgb8_in_vectors(const Planes& planes, const uint8_t* src, size_t x, size_t n) {
  for (; x + kLaneBytes <= n; x += kLaneBytes) {
    const uint8_t* from = src + 3 * x;
    prefetch_ahead<3 * kLaneBytes>(from);
    const auto [r, g, b] = load_split3(from);
    store(planes.r + x, r);
    store(planes.g + x, g);
    store(planes.b + x, b);
    if (kWithLuma) store(planes.y + x, luma_by_singles(Rgb<Bytes>{r, g, b}));
  }
  return x;
}

template <int Channel>
void store_channel(uint8_t* plane, const Blocks3& first, const Blocks3& second) {
  store(plane, first.channel<Channel>());
  store(plane + kLaneBytes, second.channel<Channel>());
}

// Two vectors of a plane before the next plane's, from where a line of cache begins, if the planes are as far
// from each other as whole lines: in cache two thirds of the time of vectors that cross lines, and a tenth
// less than one by one. Returns how far it goes.
size_t rgb8_in_lines(const Planes& planes, const uint8_t* src, size_t n) {
  constexpr size_t kStep = 2 * kLaneBytes;
  if (n < kAlignedPixels) return 0;
  size_t x = bytes_to_line(planes.r);
  rgb8_in_vectors<false>(planes, src, 0, x + kLaneBytes - 1);
  for (; x + kStep <= n; x += kStep) {
    const uint8_t* from = src + 3 * x;
    prefetch_ahead<3 * kStep>(from);
    const Blocks3 first = Blocks3::load(from), second = Blocks3::load(from + 3 * kLaneBytes);
    store_channel<0>(planes.r + x, first, second);
    store_channel<1>(planes.g + x, first, second);
    store_channel<2>(planes.b + x, first, second);
  }
  return x;
}

size_t rgb8_disjoint(const Planes& planes, const uint8_t* src, size_t n) {
  if (planes.y != nullptr) return rgb8_in_vectors<true>(planes, src, 0, n);
  return rgb8_in_vectors<false>(planes, src, kBytePermutes ? rgb8_in_lines(planes, src, n) : 0, n);
}

}  // namespace

void yuv444_to_planes(const Planes& planes, const uint8_t* src, size_t n) {
  yuv_to_planes<Yuv444, PlaneChroma>(planes, src, n);
}

// The odd one out: its sisters use the plane tables.
void yuv422_to_planes(const Planes& planes, const uint8_t* src, size_t n) {
  yuv_to_planes<Yuv422, PackedChroma>(planes, src, n);
}

void yuv411_to_planes(const Planes& planes, const uint8_t* src, size_t n) {
  yuv_to_planes<Yuv411, PlaneChroma>(planes, src, n);
}

void rgb8_to_planes(const Planes& planes, const uint8_t* src, size_t n) {
  const bool fast = kVectorRows && all_disjoint(planes, n, {src, 3 * n});
  const size_t done = fast ? rgb8_disjoint(planes, src, n) : 0;
  const Planes rest{planes.r + done, planes.g + done, planes.b + done,
                    planes.y != nullptr ? planes.y + done : nullptr};
  rgb8_in_passes(rest, src + 3 * done, n - done);
}

}  // namespace qvn
