// The plain 2x2 demosaics as recipes, and the walk that runs any recipe.
#include "bayer/demosaic_2x2.h"

#include "pixel/yuv.h"

namespace qvn {

namespace {

template <class Fetch, class Put, class End>
constexpr Recipe2x2 packed(ColumnStep columns) {
  return recipe_2x2<Fetch, PackedPixels<Put>, End>(columns);
}

}  // namespace

constexpr Recipe2x2 kRaw8ToBgr = packed<FetchRaw8, PutBgr, CopyOfPixelBefore>(ColumnStep::kTwo);
constexpr Recipe2x2 kRaw8ToY8 = packed<FetchRaw8, PutY8, CopyOfPixelBefore>(ColumnStep::kOne);
constexpr Recipe2x2 kRaw8ToGreyBgr = packed<FetchRaw8, PutGreyBgr, CopyOfPixelBefore>(ColumnStep::kOne);
constexpr Recipe2x2 kRaw16ToBgr = packed<FetchRaw16TopByte, PutBgr, BlackPixel>(ColumnStep::kOne);

constexpr Recipe2x2 kRaw8ToYuv444 = packed<FetchRaw8, PutYuv444, CopyOfPixelBefore>(ColumnStep::kOne);

uint8_t* demosaic_lines_2x2(const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                            uint32_t height, uint32_t pattern) {
  const uint32_t pixels = line_pixels(recipe.columns, width);
  const size_t out_bytes = pixels * recipe.pixel_bytes, src_bytes = recipe.src_line_bytes(width);
  const auto line = [&](const CellLine& cells, uint8_t* out) { recipe.line(cells, out, pixels); };
  const auto streamed_line = [&](const CellLine& cells, Stream& stream) {
    recipe.streamed_line(cells, stream, pixels);
  };
  return recipe.streamed_line == nullptr
             ? walk_2x2(dst, out_bytes, src, src_bytes, height, pattern, line)
             : walk_2x2(dst, out_bytes, src, src_bytes, height, pattern, line, streamed_line);
}

void demosaic_2x2(const Recipe2x2& recipe, uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height,
                  uint32_t pattern) {
  uint8_t* last = demosaic_lines_2x2(recipe, dst, src, width, height, pattern);
  copy_last_line(last, recipe.dst_line_bytes(width));
}

}  // namespace qvn
