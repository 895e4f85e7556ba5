// The interpolations row by row: the filters that look at their own line only, and the choice of the filter.
#include "bayer/interpolation_rows.h"

#include <cstring>

#include "bayer/block_filter.h"
#include "bayer/half_frame.h"

namespace qvn {

namespace {

// The filters: chroma of the pairs of a strip from q on.
struct PairMean {
  static SignedWords mean(const ChromaPairs& c, ptrdiff_t q) {
    return (load_words(&c.even[q]) + load_words(&c.odd[q])) >> 1;
  }
  UV operator()(const ChromaStrip& strip, ptrdiff_t q) const { return {mean(strip.u, q), mean(strip.v, q)}; }
};

struct BoxMean {
  static SignedWords mean(const ChromaPairs& c, ptrdiff_t q) {
    return (load_words(&c.even[q]) + load_words(&c.odd[q]) + load_words(&c.even[q + 1]) +
            load_words(&c.odd[q + 1])) >>
           2;
  }
  UV operator()(const ChromaStrip& strip, ptrdiff_t q) const { return {mean(strip.u, q), mean(strip.v, q)}; }
};

// The filters that look at their own line only.
template <class Put, class Filter>
void run_line_filter(const Half<Put>& half, const Filter& filter) {
  ChromaStrip strip;
  for (uint32_t row = half.first; row < half.end; ++row) {
    for (uint32_t x = 0; x < half.width();) {
      const size_t n = strip_length(half.width() - x);
      fill_strip(strip, half.mosaic, row, x, n);
      fill_right_halo(strip, half.mosaic, row, x, n);
      put_strip(
          half, row, x, n, [&](size_t i, size_t) __attribute__((always_inline)) {
            return StripBlock{load<Bytes>(&strip.y[i]), filter(strip, static_cast<ptrdiff_t>(i / 2))};
          });
      x += static_cast<uint32_t>(n);
    }
  }
}

// The box filter's last two pairs repeat the one before them, luma and all.
template <class Put>
void repeat_third_last_pair(const Half<Put>& half) {
  const uint32_t row = half.end - 1, x = half.width() - 6;
  Group group;
  if (half.is_parked(row)) {
    std::memcpy(group.data(), half.parked_at(x), sizeof group);
    const Group groups[] = {group, group};
    emit_groups(half, row, x + 2, groups, 2);
  } else {
    for (uint32_t i = 2; i < 6; ++i) {
      std::memcpy(half.dst_at(row, x + i), half.dst_at(row, x + i % 2), Put::kWrittenBytes);
    }
  }
}

}  // namespace

template <class Put>
void interpolate_rows(ChromaFilter filter, uint8_t* dst, WorkingRows working, uint8_t* src, uint32_t width,
                      uint32_t height, uint32_t pattern) {
  const uint32_t lines = height / 2;
  const Mosaic mosaic{src, width, height, pattern};
  for (const Half<Put>& half : {Half<Put>{mosaic, dst, working, nullptr, 0, lines},
                                Half<Put>{mosaic, dst, working, src, lines, height}}) {
    switch (filter) {
      case ChromaFilter::kPair:
        run_line_filter(half, PairMean{});
        break;
      case ChromaFilter::kBox4:
        run_line_filter(half, BoxMean{});
        repeat_third_last_pair(half);
        break;
      case ChromaFilter::kBlock8:
        run_block_filter(half);
        break;
    }
    if (half.packed != nullptr) emit_parked_row(half);
  }
}

template void interpolate_rows<PutBgr>(ChromaFilter, uint8_t*, WorkingRows, uint8_t*, uint32_t, uint32_t,
                                       uint32_t);
template void interpolate_rows<PutBgra>(ChromaFilter, uint8_t*, WorkingRows, uint8_t*, uint32_t, uint32_t,
                                        uint32_t);
template void interpolate_rows<PutY8>(ChromaFilter, uint8_t*, WorkingRows, uint8_t*, uint32_t, uint32_t,
                                      uint32_t);
template void interpolate_rows<PutY8Rounded>(ChromaFilter, uint8_t*, WorkingRows, uint8_t*, uint32_t,
                                             uint32_t, uint32_t);

}  // namespace qvn
