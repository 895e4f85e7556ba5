#include "deep/raw12.h"

#include "correction/corrected_2x2.h"
#include "pixel/put16.h"

namespace qvn {

namespace {

constexpr uint32_t kValues = 4096;

constexpr Recipe2x2 kRaw12ToBgr =
    recipe_2x2<FetchRaw12TopByte, PackedPixels<PutBgr>, CopyOfPixelBefore>(ColumnStep::kTwo);
constexpr Recipe2x2 kRaw12ToBgr16 =
    recipe_2x2<FetchRaw12, PackedPixels<PutBgr16>, CopyOfPixelBefore>(ColumnStep::kTwo);

// The rule that changes nothing.
struct Uncorrected {
  void row(Planes<uint16_t>&, size_t, size_t) const {}
};

// In a width of 2, the left green of a line's one window counts as 0; callers depend on it. The right green
// is the one at column 1.
template <class CorrectionRule>
uint8_t* lines_of_two(CorrectionRule& rule, uint8_t* dst, const uint8_t* src, uint32_t height,
                      uint32_t pattern) {
  using Put = PutBgr16;
  Planes<uint16_t> planes{};
  return walk_2x2(dst, 2 * Put::kPixelBytes, src, FetchRaw12::line_bytes(2), height, pattern,
                  [&](const CellLine& line, uint8_t* out) {
                    Rgb<uint32_t> window = window_2x2<FetchRaw12>(line, 0);
                    window.g = FetchRaw12::sample(line.column_phase == 0 ? line.red : line.blue, 1) >> 1;
                    PlaneOutput<uint16_t>{planes}.pixel(0, window);
                    rule.row(planes, 0, 1);
                    put_planes<Put>(out, planes, 1);
                    CopyOfPixelBefore::finish<FetchRaw12>(PackedPixels<Put>{out}, line, 1);
                  });
}

// The last line's first half is a copy of the line above, its second half is left alone: the byte count is
// that of 8-bit channels. Callers depend on it.
void copy_half_last_line(uint8_t* out, uint32_t width) {
  std::memmove(out, out - size_t{PutBgr16::kPixelBytes} * width, size_t{PutBgr::kPixelBytes} * width);
}

}  // namespace

void raw12_to_bgr(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
  demosaic_2x2(kRaw12ToBgr, dst, src, width, height, pattern);
}

void raw12_to_bgr16(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t pattern) {
  uint8_t* last = nullptr;
  if (width == 2) {
    const Uncorrected rule;
    last = lines_of_two(rule, dst, src, height, pattern);
  } else {
    last = demosaic_lines_2x2(kRaw12ToBgr16, dst, src, width, height, pattern);
  }
  copy_half_last_line(last, width);
}

int32_t raw12_to_bgr_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                               uint32_t pattern, const ColorCorrection* object) {
  if (object == nullptr) {
    raw12_to_bgr(dst, src, width, height, pattern);
    return 0;
  }
  return dispatch<uint8_t>(Family::kRaw12ToBgr, object, {256, samples_of(width, height)}, [&](auto& rule) {
    uint8_t* last = corrected_lines<FetchRaw12TopByte, PutBgr, uint8_t>(rule, dst, src, width, height,
                                                                        pattern, ColumnStep::kTwo);
    copy_last_line(last, size_t{PutBgr::kPixelBytes} * width);
  });
}

int32_t raw12_to_bgr16_corrected(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                                 uint32_t pattern, const ColorCorrection* object) {
  if (object == nullptr) {
    raw12_to_bgr16(dst, src, width, height, pattern);
    return 0;
  }
  return dispatch<uint16_t>(
      Family::kRaw12ToBgr16, object, {kValues, samples_of(width, height)}, [&](auto& rule) {
        uint8_t* last = width == 2 ? lines_of_two(rule, dst, src, height, pattern)
                                   : corrected_lines<FetchRaw12, PutBgr16, uint16_t>(
                                         rule, dst, src, width, height, pattern, ColumnStep::kTwo);
        copy_half_last_line(last, width);
      });
}

}  // namespace qvn
