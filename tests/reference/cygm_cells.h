/// The cell model of complementary mosaics: where fields and lines lie, which colour a site has, how a
/// pixel's colours follow from its samples, and the plans of the binned and 3x3 frames.
///
/// F(n) is line n of the picture. Even lines are those of the second stored field, odd lines those of the
/// first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace reference {

enum class CygmSite { kC, kY, kG, kM };

/// What lies at a column of F(line). The pattern repeats every four lines and two columns.
CygmSite site_at(std::uint32_t line, std::uint32_t column);

/// The channels of a pixel after the clamp.
struct CygmColour {
  std::uint8_t red;
  std::uint8_t green;
  std::uint8_t blue;
};

/// Brightness with ten fraction bits to a byte.
std::uint8_t ClampShift10(std::int32_t value);

/// From a blue and a red line of a binned frame, columns x and x + 1. Both pointers stand at column x.
CygmColour binned_colour(const std::uint8_t* blue_line, const std::uint8_t* red_line, std::uint32_t x);

/// From a cell of four sites, columns x and x + 1 of F(line) and F(line + 1). Both pointers stand at column
/// x.
CygmColour cell_colour(const std::uint8_t* first, const std::uint8_t* second, std::uint32_t line,
                       std::uint32_t x);

/// From nine sites, columns x - 1 to x + 1 of F(line - 1), F(line) and F(line + 1), weighted 1 2 1 both ways.
/// The pointers stand at column x.
CygmColour neighbourhood_colour(const std::uint8_t* above, const std::uint8_t* centre,
                                const std::uint8_t* below, std::uint32_t line, std::uint32_t x);

/// Bytes from the first stored field to the second.
inline std::uint32_t second_field_offset(std::uint32_t width, std::uint32_t height) {
  return (width * height) >> 1;
}

/// The addresses of F(0), F(1), ...; a line that belongs to no field has none.
inline std::vector<const std::uint8_t*> cygm_line_table(const std::uint8_t* src, std::uint32_t width,
                                                        std::uint32_t height) {
  std::vector<const std::uint8_t*> table(height, nullptr);
  std::uint32_t first_offset = 0;
  std::uint32_t second_offset = second_field_offset(width, height);
  for (std::uint32_t j = 0; j < height / 2; ++j) {
    table[2 * j] = src + second_offset;
    table[2 * j + 1] = src + first_offset;
    first_offset += width;
    second_offset += width;
  }
  return table;
}

/// Which lines of a binned frame make which rows. `rows` has blue_first(row, line) and red_first(row, line),
/// which take the two lines from `line` on, and copy(from, to).
template <typename Rows>
void plan_binned_frame(Rows& rows, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
  const std::uint8_t* a = src;
  const std::uint8_t* b = src + second_field_offset(width, height);
  const std::int32_t half = static_cast<std::int32_t>(height) / 2;
  std::int32_t blocks = half - 3 > 0 ? ((half - 4) >> 1) + 1 : 0;
  std::int32_t row = 0;
  for (; blocks > 0; --blocks) {
    rows.blue_first(row, b);
    rows.red_first(row + 1, a);
    rows.red_first(row + 2, b + width);
    rows.blue_first(row + 3, a + width);
    row += 4;
    a += std::size_t{2} * width;
    b += std::size_t{2} * width;
  }
  rows.blue_first(row, b);
  rows.red_first(row + 1, a);
  rows.copy(row + 1, row + 2);
  rows.copy(row + 1, row + 3);
}

/// Which lines make which rows of a 3x3 frame. `rows` has make(row, kind, above, centre, below), `kind` being
/// the row number from which the kernel takes its sites, and copy(from, to). The last two rows are made from
/// the last four lines by kernels 1 and 2, whatever lines those are.
template <typename Rows>
void plan_3x3_frame(Rows& rows, const std::uint8_t* src, std::uint32_t width, std::uint32_t height) {
  const std::vector<const std::uint8_t*> table = cygm_line_table(src, width, height);
  std::int32_t row = 1;
  if (height != 4) {
    std::size_t entry = 0;
    for (std::uint32_t blocks = ((height - 5) >> 2) + 1; blocks != 0; --blocks) {
      for (const std::uint32_t kind : {1U, 2U, 3U, 0U}) {
        rows.make(row, kind, table[entry], table[entry + 1], table[entry + 2]);
        ++row;
        ++entry;
      }
    }
  }
  rows.make(row, 1, table[height - 4], table[height - 3], table[height - 2]);
  rows.make(row + 1, 2, table[height - 3], table[height - 2], table[height - 1]);
  rows.copy(1, 0);
  rows.copy(row + 1, row + 2);
}

}  // namespace reference
