// The frame plan of 3x3 windows, its table of lines and its rows, for all targets.
#include "cygm/full_3x3.h"

#include <memory>

namespace qvn {

namespace {

// The addresses of a frame's lines in display order. With an odd height the last one stays null. Offsets wrap
// at 32 bits.
class CygmLineTable {
 public:
  CygmLineTable(const uint8_t* src, uint32_t width, uint32_t height)
      : lines_(std::make_unique<const uint8_t*[]>(height)) {
    uint32_t first = 0, second = (width * height) >> 1;
    for (size_t j = 0; j < height / 2; ++j, first += width, second += width) {
      lines_[2 * j] = src + second;
      lines_[2 * j + 1] = src + first;
    }
  }

  // Three lines from `first` on, for a row of the given kind.
  NeighbourLines from(size_t first, uint32_t phase) const {
    return {lines_[first], lines_[first + 1], lines_[first + 2], phase};
  }

 private:
  std::unique_ptr<const uint8_t*[]> lines_;
};

// Calls a row function with the window of its kind.
//
//     phase   1      2      3      0
//             C Y    G M    C Y    M G
//             G M    C Y    M G    C Y
//             C Y    M G    C Y    G M
template <class Row>
void with_window(const NeighbourLines& lines, const Row& row) {
  const auto [above, centre, below, phase] = lines;
  switch (phase) {
    case 0:
      return row(CyanYellowWindow{below, centre, above});
    case 1:
      return row(GreenMagentaWindow<EvenSite::kGreen>{above, centre, below});
    case 2:
      return row(CyanYellowWindow{above, centre, below});
    default:
      return row(GreenMagentaWindow<EvenSite::kMagenta>{above, centre, below});
  }
}

template <class Output>
void row_3x3(const NeighbourLines& lines, uint8_t* dst, uint32_t first_pixel, uint32_t width) {
  with_window(lines,
              [&](const auto& window) { row_with_edge_copies(window, Output(dst, first_pixel), width); });
}

template <class Put>
constexpr NeighbourRecipe kRecipe = {row_3x3<PackedRow<Put>>, PackedRow<Put>::line_bytes};

constexpr NeighbourRecipe kRecipes[] = {kRecipe<PutY8>, kRecipe<PutBgr>, kRecipe<PutBgra>,
                                        kRecipe<PutY8Rounded>};

}  // namespace

const NeighbourRecipe* full_3x3_recipe(uint32_t target) { return find_recipe(kRecipes, target); }

// Row 0 is a copy of row 1, the last row of the one before it. The two rows before that take the last four
// lines as if they were of kinds 1 and 2, which they are where the height is a multiple of 4; of a height
// 4m + 2 the second of them and the copy behind it lie beyond the picture.
void convert_3x3(const NeighbourRecipe& recipe, uint8_t* dst, const uint8_t* src, uint32_t width,
                 uint32_t height) {
  const CygmLineTable table(src, width, height);
  const CygmPicture picture(recipe, dst, width);
  const uint32_t blocks = height == 4 ? 0 : ((height - 5) >> 2) + 1;
  uint32_t row = 1;
  for (; row <= 4 * blocks; ++row) picture.write_row(row, table.from(row - 1, row % 4));
  picture.write_row(row, table.from(height - 4, 1));
  picture.write_row(row + 1, table.from(height - 3, 2));
  picture.copy_row(0, 1);
  picture.copy_row(row + 2, row + 1);
}

}  // namespace qvn
