/// Sites, differences and the two matrices.
#include "reference/cygm_cells.h"

namespace reference {
namespace {

/// What a channel takes of the red and of the blue difference, in 1024ths.
struct Share {
  std::int32_t red_diff;
  std::int32_t blue_diff;
};

struct Matrix {
  Share red;
  Share green;
  Share blue;
};

constexpr Matrix kCygmBinMatrix = {{4811, 2113}, {-2206, -2161}, {-1261, 5586}};
constexpr Matrix kCygmFullMatrix = {{2165, 344}, {-917, -1078}, {-959, 4645}};

std::uint8_t channel(const Share& share, std::int32_t luma_base, std::int32_t red_diff,
                     std::int32_t blue_diff) {
  return ClampShift10(luma_base + red_diff * share.red_diff + blue_diff * share.blue_diff);
}

CygmColour colour(const Matrix& matrix, std::int32_t luma_base, std::int32_t red_diff,
                  std::int32_t blue_diff) {
  return {channel(matrix.red, luma_base, red_diff, blue_diff),
          channel(matrix.green, luma_base, red_diff, blue_diff),
          channel(matrix.blue, luma_base, red_diff, blue_diff)};
}

/// A weighted sum of samples, of all and with the signs of the two differences.
struct Sums {
  std::int32_t all = 0;
  std::int32_t red = 0;   ///< M + Y - G - C
  std::int32_t blue = 0;  ///< M + C - G - Y

  void add(std::int32_t sample, std::int32_t weight, CygmSite site) {
    const std::int32_t term = weight * sample;
    all += term;
    switch (site) {
      case CygmSite::kC:
        red -= term;
        blue += term;
        break;
      case CygmSite::kY:
        red += term;
        blue -= term;
        break;
      case CygmSite::kG:
        red -= term;
        blue -= term;
        break;
      case CygmSite::kM:
        red += term;
        blue += term;
        break;
    }
  }
};

}  // namespace

CygmSite site_at(std::uint32_t line, std::uint32_t column) {
  const bool even = column % 2 == 0;
  switch (line % 4) {
    case 1:
      return even ? CygmSite::kG : CygmSite::kM;
    case 3:
      return even ? CygmSite::kM : CygmSite::kG;
    default:
      return even ? CygmSite::kC : CygmSite::kY;
  }
}

std::uint8_t ClampShift10(std::int32_t value) {
  if (value < 0) return 0;
  if (value >= 0x3fc00) return 255;
  return static_cast<std::uint8_t>(value / 1024);
}

CygmColour binned_colour(const std::uint8_t* blue_line, const std::uint8_t* red_line, std::uint32_t x) {
  const std::size_t even = x % 2 == 0 ? 0 : 1;
  const std::size_t odd = 1 - even;
  const std::int32_t le = blue_line[even];
  const std::int32_t lo = blue_line[odd];
  const std::int32_t qe = red_line[even];
  const std::int32_t qo = red_line[odd];
  const std::int32_t luma_base = ((le + lo + qe + qo) >> 2) << 10;
  return colour(kCygmBinMatrix, luma_base, (qo - qe) / 2, (le - lo) / 2);
}

CygmColour cell_colour(const std::uint8_t* first, const std::uint8_t* second, std::uint32_t line,
                       std::uint32_t x) {
  Sums sums;
  for (std::uint32_t k = 0; k < 2; ++k) {
    sums.add(first[k], 1, site_at(line, x + k));
    sums.add(second[k], 1, site_at(line + 1, x + k));
  }
  return colour(kCygmFullMatrix, (sums.all >> 2) << 10, sums.red / 4, sums.blue / 4);
}

CygmColour neighbourhood_colour(const std::uint8_t* above, const std::uint8_t* centre,
                                const std::uint8_t* below, std::uint32_t line, std::uint32_t x) {
  constexpr std::int32_t kWeights[] = {1, 2, 1};
  Sums sums;
  for (std::uint32_t k = 0; k < 3; ++k) {
    sums.add(*(above + k - 1), kWeights[k], site_at(line - 1, x + k - 1));
    sums.add(*(centre + k - 1), 2 * kWeights[k], site_at(line, x + k - 1));
    sums.add(*(below + k - 1), kWeights[k], site_at(line + 1, x + k - 1));
  }
  return colour(kCygmFullMatrix, (sums.all >> 4) << 10, sums.red / 16, sums.blue / 16);
}

}  // namespace reference
