// The frame plan of binned frames, for all targets.
#include "cygm/binned.h"

#include "cygm/cygm_frame.h"

namespace qvn {

namespace {

// The last of the even number of pixels is the last cell again; an odd width leaves its last pixel alone.
template <class Output>
void binned_row(const BinnedWindow& window, uint8_t* dst, uint32_t first_pixel, uint32_t width) {
  row_with_last_cell_twice(window, Output(dst, first_pixel), (width & ~1u) - 2);
}

template <class Output>
constexpr BinnedRecipe kRecipe = {binned_row<Output>, Output::line_bytes};

constexpr BinnedRecipe kRecipes[] = {kRecipe<PackedRow<PutY8>>, kRecipe<PackedRow<PutBgr>>,
                                     kRecipe<PackedRow<PutBgra>>, kRecipe<PackedRow<PutY8Rounded>>,
                                     kRecipe<StudioRow>};

// Lines F(row) and F(row + 2) are neighbours in their field. In display order the kinds of lines are blue,
// red, red, blue: CygmBinRowBlueFirst in rows 0 and 3 of four, CygmBinRowRedFirst in rows 1 and 2.
BinnedWindow lines_of(const CygmFrame& frame, uint32_t row) {
  const uint8_t *upper = frame.line(row), *lower = frame.line(size_t{row} + 2);
  const bool blue_first = row % 4 == 0 || row % 4 == 3;
  return blue_first ? BinnedWindow{upper, lower} : BinnedWindow{lower, upper};
}

// Rows with lines of their own: a whole number of blocks of four, and two more.
uint32_t computed_rows(uint32_t height) {
  const int32_t field_lines = static_cast<int32_t>(height) / 2;
  const int32_t blocks = field_lines > 3 ? ((field_lines - 4) >> 1) + 1 : 0;
  return static_cast<uint32_t>(4 * blocks) + 2;
}

}  // namespace

const BinnedRecipe* binned_recipe(uint32_t target) { return find_recipe(kRecipes, target); }

// Of a height 4m, all rows are written; of 4m + 2, all but the last two.
void convert_binned(const BinnedRecipe& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                    uint32_t height) {
  const CygmFrame frame = halved_frame(src, width, height);
  const CygmPicture picture(recipe, dst, width);
  const uint32_t computed = computed_rows(height);
  for (uint32_t row = 0; row < computed; ++row) picture.write_row(row, lines_of(frame, row));
  picture.copy_row(computed, computed - 1);
  picture.copy_row(computed + 1, computed - 1);
}

}  // namespace qvn
