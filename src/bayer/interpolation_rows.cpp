// The interpolations row by row.
//
// Why the caller's buffers suffice. Row k of the second half, frame row L + k of 2 * L, leaves its 4:2:2 form
// in bytes 2kw to 2(k+1)w of `src`, w being the width. What is still to be read starts at the row at hand,
// byte (L+k)w, or for the block filter, which is one row ahead, at the row behind it. The writing stays
// before that in every row but the last, which is parked in its row of `dst` until it has been read. The
// first half writes nothing to `src`: the second half writes the same bytes.
//
// The block filter sums its four columns once for each line and keeps the sums of the line ahead, with its
// luma, in that line's place in `dst`: one byte and two words for two pixels each, which is what the BGR
// takes. The last two lines of a half look at each other, so that they have the same sums of both.
#include "bayer/interpolation_rows.h"

#include <cstring>

#include "bayer/chroma_strip.h"
#include "convert/yuv_to_bgr.h"

namespace qvn {

namespace {

using PairWords = std::array<uint16_t, kStripPairs>;
using PairBytes = std::array<uint8_t, kStripPairs>;

// U and V of the pairs of a strip, as sums of pixels or as the bytes of the result.
template <class T>
struct UV {
  T u, v;
};

// What is left of the last pair of a strip for the strip behind it: of its line or of the next one.
struct LeftTap {
  uint16_t u, v;
};

// One half frame at hand, with everything that its rows share.
struct Half {
  Mosaic mosaic;
  uint8_t* dst;         // the whole frame's
  uint8_t* packed;      // where the 4:2:2 form goes, null in the first half
  uint32_t first, end;  // rows of the frame

  uint32_t width() const { return mosaic.width; }
  uint8_t* dst_at(uint32_t row, size_t x) const { return dst + 3 * (size_t{row} * width() + x); }
  uint8_t* packed_at(uint32_t row, size_t x) const {
    return packed + 2 * (size_t{row - first} * width() + x);
  }
  bool is_parked(uint32_t row) const { return packed != nullptr && row + 1 == end; }
};

// U Y0 V Y1 of n / 2 pairs.
void pack_strip(uint8_t* out, const uint8_t* y, const UV<PairBytes>& chroma, size_t n) {
  size_t q = 0;
  if constexpr (kVectorRows) {
    for (; q + kLaneBytes <= n / 2; q += kLaneBytes) {
      const Bytes u = load<Bytes>(&chroma.u[q]), v = load<Bytes>(&chroma.v[q]);
      const Bytes y0 = load<Bytes>(y + 2 * q), y1 = load<Bytes>(y + 2 * q + kLaneBytes);
      const Bytes uv0 = zip_low(u, v), uv1 = zip_high(u, v);
      store(out + 4 * q, zip_low(uv0, y0));
      store(out + 4 * q + kLaneBytes, zip_high(uv0, y0));
      store(out + 4 * q + 2 * kLaneBytes, zip_low(uv1, y1));
      store(out + 4 * q + 3 * kLaneBytes, zip_high(uv1, y1));
    }
  }
  for (; q < n / 2; ++q) {
    out[4 * q] = chroma.u[q];
    out[4 * q + 1] = y[2 * q];
    out[4 * q + 2] = chroma.v[q];
    out[4 * q + 3] = y[2 * q + 1];
  }
}

// A finished 4:2:2 strip to where it belongs.
void emit_strip(const Half& half, uint32_t row, uint32_t x, size_t n, const uint8_t* packed) {
  if (half.is_parked(row)) {
    std::memcpy(half.dst_at(row, 0) + 2 * size_t{x}, packed, 2 * n);
    return;
  }
  if (half.packed != nullptr) std::memcpy(half.packed_at(row, x), packed, 2 * n);
  yuv422_to_bgr(half.dst_at(row, x), packed, n);
}

// Behind the last row: its parked strips, from the end on, since BGR takes more room than what it is made
// from.
void emit_parked_row(const Half& half) {
  const uint32_t row = half.end - 1;
  for (auto end = half.width(); end > 0;) {
    const auto x = static_cast<uint32_t>((end - 1) / kStripStep * kStripStep);
    const size_t n = end - x;
    std::array<uint8_t, 2 * kStripPixels> packed;
    std::memcpy(packed.data(), half.dst_at(row, 0) + 2 * size_t{x}, 2 * n);
    std::memcpy(half.packed_at(row, x), packed.data(), 2 * n);
    yuv422_to_bgr(half.dst_at(row, x), packed.data(), n);
    end = x;
  }
}

void mean_of_pair(PairBytes& out, const ChromaPairs& c, size_t pairs) {
  for (size_t q = 0; q < pairs; ++q) out[q] = static_cast<uint8_t>((c.even[q + 1] + c.odd[q + 1]) >> 1);
}

void mean_of_box(PairBytes& out, const ChromaPairs& c, size_t pairs) {
  for (size_t q = 0; q < pairs; ++q) {
    out[q] = static_cast<uint8_t>((c.even[q + 1] + c.odd[q + 1] + c.even[q + 2] + c.odd[q + 2]) >> 2);
  }
}

// The pixel before the pair, the pair, the pixel behind it.
void sum_of_four(PairWords& out, const ChromaPairs& c, size_t pairs) {
  for (size_t q = 0; q < pairs; ++q) {
    out[q] = static_cast<uint16_t>(c.odd[q] + c.even[q + 1] + c.odd[q + 1] + c.even[q + 2]);
  }
}

void mean_of_block(PairBytes& out, const PairWords& sums, size_t pairs) {
  for (size_t q = 0; q < pairs; ++q) out[q] = static_cast<uint8_t>((sums[q] + 4) >> 3);
}

// The filters that look at their own line only.
void run_line_filter(const Half& half, ChromaFilter filter) {
  for (uint32_t row = half.first; row < half.end; ++row) {
    size_t n;
    for (uint32_t x = 0; x < half.width(); x += static_cast<uint32_t>(n)) {
      n = strip_length(half.width() - x);
      ChromaStrip strip;
      UV<PairBytes> chroma;
      std::array<uint8_t, 2 * kStripPixels> packed;
      fill_strip(strip, half.mosaic, row, x, n);
      if (filter == ChromaFilter::kPair) {
        mean_of_pair(chroma.u, strip.u, n / 2);
        mean_of_pair(chroma.v, strip.v, n / 2);
      } else {
        fill_right_halo(strip, half.mosaic, row, x, n);
        mean_of_box(chroma.u, strip.u, n / 2);
        mean_of_box(chroma.v, strip.v, n / 2);
      }
      pack_strip(packed.data(), strip.y.data(), chroma, n);
      if (filter == ChromaFilter::kBox4 && row + 1 == half.end && x + n == half.width()) {
        // The last two pairs repeat the one before them, luma and all.
        uint8_t* behind = packed.data() + 2 * n - 8;
        std::memcpy(behind, behind - 4, 4);
        std::memcpy(behind + 4, behind - 4, 4);
      }
      emit_strip(half, row, x, n, packed.data());
    }
  }
  if (half.packed != nullptr) emit_parked_row(half);
}

// Luma and chroma sums of a strip of one line.
struct SumStrip {
  std::array<uint8_t, kStripPixels> y;
  UV<PairWords> sums;

  // As they wait in the line's place in `dst`.
  void store(uint8_t* place, size_t n) const {
    std::memcpy(place, y.data(), n);
    std::memcpy(place + n, sums.u.data(), n);
    std::memcpy(place + 2 * n, sums.v.data(), n);
  }
  void load(const uint8_t* place, size_t n) {
    std::memcpy(y.data(), place, n);
    std::memcpy(sums.u.data(), place + n, n);
    std::memcpy(sums.v.data(), place + 2 * n, n);
  }
};

// Luma and sums of a strip; `left` is the pixel before it and becomes its last one.
void sum_strip(SumStrip& out, const Mosaic& mosaic, uint32_t row, uint32_t x, size_t n, LeftTap& left) {
  ChromaStrip strip;
  fill_strip(strip, mosaic, row, x, n);
  fill_right_halo(strip, mosaic, row, x, n);
  strip.u.odd[0] = left.u;
  strip.v.odd[0] = left.v;
  left = {strip.u.odd[n / 2], strip.v.odd[n / 2]};
  out.y = strip.y;
  sum_of_four(out.sums.u, strip.u, n / 2);
  sum_of_four(out.sums.v, strip.v, n / 2);
}

void add_sums(PairWords& to, const PairWords& more, size_t pairs) {
  for (size_t q = 0; q < pairs; ++q) to[q] = static_cast<uint16_t>(to[q] + more[q]);
}

// The block filter. Row by row: the line at hand waits in `dst` as luma and sums, the next one is made.
void run_block_filter(const Half& half) {
  const Mosaic& mosaic = half.mosaic;
  const uint32_t width = half.width();
  size_t n;

  // The half's first pair has its own first pixel for a left tap.
  const Yuv<uint32_t> corner = mosaic.pixel(half.first, 0);
  LeftTap left{static_cast<uint16_t>(corner.u), static_cast<uint16_t>(corner.v)};
  for (uint32_t x = 0; x < width; x += static_cast<uint32_t>(n)) {
    n = strip_length(width - x);
    SumStrip strip;
    sum_strip(strip, mosaic, half.first, x, n, left);
    strip.store(half.dst_at(half.first, x), n);
  }

  UV<uint16_t> above{};  // sums of the last pair of the line above
  for (uint32_t row = half.first; row < half.end; ++row) {
    const bool last_row = row + 1 == half.end, last_but_one = row + 2 == half.end;
    for (uint32_t x = 0; x < width; x += static_cast<uint32_t>(n)) {
      n = strip_length(width - x);
      const size_t pairs = n / 2, last = pairs - 1;
      SumStrip strip, next;
      UV<PairBytes> chroma;
      std::array<uint8_t, 2 * kStripPixels> packed;
      strip.load(half.dst_at(row, x), n);
      const UV<uint16_t> own_last{strip.sums.u[last], strip.sums.v[last]};
      if (!last_row) {
        sum_strip(next, mosaic, row + 1, x, n, left);
        add_sums(strip.sums.u, next.sums.u, pairs);
        add_sums(strip.sums.v, next.sums.v, pairs);
        // The half's last line looks up to this one: the same sums of both.
        if (last_but_one) next.sums = strip.sums;
        next.store(half.dst_at(row + 1, x), n);
        // The last pair of the last line but one looks up already.
        if (last_but_one && x + n == width) {
          strip.sums.u[last] = static_cast<uint16_t>(own_last.u + above.u);
          strip.sums.v[last] = static_cast<uint16_t>(own_last.v + above.v);
        }
      }
      mean_of_block(chroma.u, strip.sums.u, pairs);
      mean_of_block(chroma.v, strip.sums.v, pairs);
      if (last_row && x + n == width) {
        // The last two pairs are not filtered: chroma of their first pixels.
        for (uint32_t q = 0; q < 2; ++q) {
          const Yuv<uint32_t> first = mosaic.pixel(row, width - 4 + 2 * q);
          chroma.u[last - 1 + q] = static_cast<uint8_t>(first.u);
          chroma.v[last - 1 + q] = static_cast<uint8_t>(first.v);
        }
      }
      pack_strip(packed.data(), strip.y.data(), chroma, n);
      emit_strip(half, row, x, n, packed.data());
      if (x + n == width) above = own_last;
    }
  }
  if (half.packed != nullptr) emit_parked_row(half);
}

}  // namespace

void interpolate_rows(ChromaFilter filter, uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height,
                      uint32_t pattern) {
  const uint32_t lines = height / 2;
  const Mosaic mosaic{src, width, height, pattern};
  for (const Half& half : {Half{mosaic, dst, nullptr, 0, lines}, Half{mosaic, dst, src, lines, height}}) {
    if (filter == ChromaFilter::kBlock8) {
      run_block_filter(half);
    } else {
      run_line_filter(half, filter);
    }
  }
}

}  // namespace qvn
