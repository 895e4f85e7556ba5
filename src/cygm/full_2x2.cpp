// The two frame plans of 2x2 cells, and their rows.
#include "cygm/full_2x2.h"

#include "cygm/cygm_frame.h"

namespace qvn {

namespace {

// Calls a row function with the window of its kind.
//
//     phase   0      1      2      3
//             C Y    G M    C Y    M G
//             G M    C Y    M G    C Y
template <class Row>
void with_window(const CellRowLines& lines, const Row& row) {
  const bool cyan_above = lines.phase % 2 == 0;
  const uint8_t* cyan_yellow = cyan_above ? lines.upper : lines.lower;
  const uint8_t* green_magenta = cyan_above ? lines.lower : lines.upper;
  if (lines.phase < 2) {
    row(CellWindow<EvenSite::kGreen>{cyan_yellow, green_magenta});
  } else {
    row(CellWindow<EvenSite::kMagenta>{cyan_yellow, green_magenta});
  }
}

CellRowLines lines_of(const CygmFrame& frame, uint32_t row) {
  return {frame.line(row), frame.line(size_t{row} + 1), row % 4};
}

// Whole pairs of pixels. The last cell of an even width reaches one sample beyond its lines, into the next
// line of the same field; callers depend on that pixel.
template <class Output>
void plain_row(const CellRowLines& lines, uint8_t* dst, uint32_t first_pixel, uint32_t width) {
  with_window(lines,
              [&](const auto& window) { row_of_windows(window, Output(dst, first_pixel), width & ~1u); });
}

// No sample beyond the line of an even width. An odd width gets a pixel more than it has, and its last cell
// reaches one sample beyond its lines.
template <class Output>
void transform_row(const CellRowLines& lines, uint8_t* dst, uint32_t first_pixel, uint32_t width) {
  with_window(lines, [&](const auto& window) {
    row_with_last_cell_twice(window, Output(dst, first_pixel), (width - 1) & ~1u);
  });
}

constexpr CellRecipe kPlainBgr = {plain_row<PackedRow<PutBgr>>, PackedRow<PutBgr>::line_bytes};

template <class Output>
constexpr CellRecipe kTransform = {transform_row<Output>, Output::line_bytes};

constexpr CellRecipe kTransforms[] = {kTransform<PackedRow<PutY8>>, kTransform<PackedRow<PutBgr>>,
                                      kTransform<PackedRow<PutBgra>>, kTransform<PackedRow<PutY8Rounded>>,
                                      kTransform<StudioRow>};

}  // namespace

// Of a height 4m: rows 0 to 4m - 5 from their lines, three copies of the last of them, and the last row of
// the picture untouched.
void convert_2x2_to_bgr(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height) {
  const CygmFrame frame = halved_frame(src, width, height);
  const CygmPicture picture(kPlainBgr, dst, width);
  const uint32_t field_lines = height >> 1;
  const uint32_t blocks = field_lines == 2 ? 0 : ((field_lines - 3) >> 1) + 1;
  const uint32_t computed = 4 * blocks;
  for (uint32_t row = 0; row < computed; ++row) picture.write_row(row, lines_of(frame, row));
  if (width < 4 || height < 4) return;
  for (uint32_t copy = 0; copy < 3; ++copy) picture.copy_row(computed + copy, int64_t{computed} - 1);
}

const CellRecipe* transform_2x2_recipe(uint32_t target) { return find_recipe(kTransforms, target); }

// Of a height 4m, the last row is a copy of the one before it; of any other height, all rows come from their
// lines, and of 4m + 2 the last one reads beyond the second field.
void transform_2x2(const CellRecipe& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                   uint32_t height) {
  if (height < 2) return;
  const CygmFrame frame = frame_of_whole_lines(src, width, height);
  const CygmPicture picture(recipe, dst, width);
  const bool last_is_copy = height % 4 == 0;
  const uint32_t computed = last_is_copy ? height - 1 : height;
  for (uint32_t row = 0; row < computed; ++row) picture.write_row(row, lines_of(frame, row));
  if (last_is_copy) picture.copy_row(height - 1, int64_t{height} - 2);
}

}  // namespace qvn
