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
    return walk_2x2(dst, pixels * Put::kPixelBytes, src, Fetch::line_bytes(width), height, pattern,
                    [&](const CellLine& line, uint8_t* out) {
                      const ShiftedPixels<Put, Shift> output{{out}, channel_shift};
                      row_2x2<Fetch>(output, line, windows);
                      End::finish<Fetch>(output, line, windows);
                    });
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
