#include "deep/raw16.h"

#include "bayer/demosaic_2x2.h"
#include "deep/raw16_reading.h"
#include "pixel/put16.h"

namespace qvn {

namespace {

using End = TwoCopiesOfPixelBefore;

// An output that shifts the channels of a window before it writes them.
template <class Put, class Shift>
struct ShiftedPixels : PackedPixels<Put> {
  Shift shift;
  void pixel(size_t x, Rgb<uint32_t> p) const { PackedPixels<Put>::pixel(x, shift(p)); }
  void pixels(size_t x, const Rgb<Words>& p) const { PackedPixels<Put>::pixels(x, shift(p)); }
};

template <class Put>
void demosaic(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern,
              uint32_t shift) {
  const size_t pixels = line_pixels(ColumnStep::kTwo, width), windows = pixels - End::kPixels;
  uint8_t* last = with_raw16_reading(shift, [&]<class Fetch, class Shift>(Fetch, Shift channel_shift) {
    const auto output_at = [&](uint8_t* place) { return ShiftedPixels<Put, Shift>{{place}, channel_shift}; };
    const auto run_line = [&](const CellLine& line, uint8_t* out) {
      row_2x2<Fetch>(output_at(out), line, windows);
      End::finish<Fetch>(output_at(out), line, windows);
    };
    const size_t out_bytes = pixels * Put::kPixelBytes, src_bytes = Fetch::line_bytes(width);
    if constexpr (kStreamed<Put>) {
      return walk_2x2(dst, out_bytes, src, src_bytes, height, pattern, run_line,
                      [&](const CellLine& line, Stream& stream) {
                        streamed_line_2x2<Fetch, End>(line, stream, pixels, output_at);
                      });
    } else {
      return walk_2x2(dst, out_bytes, src, src_bytes, height, pattern, run_line);
    }
  });
  copy_last_line(last, size_t{Put::kPixelBytes} * width);
}

}  // namespace

void raw16_to_bgr16(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern,
                    uint32_t shift) {
  demosaic<PutBgr16>(dst, src, width, height, pattern, shift);
}

void raw16_to_y16(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern,
                  uint32_t shift) {
  demosaic<PutY16>(dst, src, width, height, pattern, shift);
}

}  // namespace qvn
