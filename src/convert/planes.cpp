// The plane rows: outputs for the YUV rows, and the RGB8 passes.
#include "convert/planes.h"

#include <initializer_list>

#include "convert/luma_float.h"
#include "convert/yuv_rows.h"
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

template <bool kWithLuma>
size_t rgb8_in_vectors(const Planes& planes, const uint8_t* src, size_t n) {
  size_t x = 0;
  for (; x + kLaneBytes <= n; x += kLaneBytes) {
    const auto [r, g, b] = load_split3(src + 3 * x);
    store(planes.r + x, r);
    store(planes.g + x, g);
    store(planes.b + x, b);
    if (kWithLuma) store(planes.y + x, luma_by_singles(Rgb<Bytes>{r, g, b}));
  }
  return x;
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
  size_t done = 0;
  if (kVectorRows && all_disjoint(planes, n, {src, 3 * n})) {
    done =
        planes.y != nullptr ? rgb8_in_vectors<true>(planes, src, n) : rgb8_in_vectors<false>(planes, src, n);
  }
  const Planes rest{planes.r + done, planes.g + done, planes.b + done,
                    planes.y != nullptr ? planes.y + done : nullptr};
  rgb8_in_passes(rest, src + 3 * done, n - done);
}

}  // namespace qvn
