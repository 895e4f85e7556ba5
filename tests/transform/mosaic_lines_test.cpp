/// The lines of every mosaic recipe: long ones, made in vectors and strips, against their pairs of pixels
/// made one at a time by lines too short for a vector; for every length, phase and alignment.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "support/random.h"
#include "transform/mosaics.h"

namespace qvn {
namespace {

constexpr size_t kLongest = 300, kMargin = 8, kRoom = 16;

struct Recipes {
  std::string name;
  const ByTarget<Mosaic2x2>* by_target;
  size_t pair_bytes;  // of the source
};

void PrintTo(const Recipes& recipes, std::ostream* out) { *out << recipes.name; }

std::vector<Recipes> all_recipes() {
  std::vector<Recipes> all = {
      {"Raw8", &kRaw8Mosaics, 2}, {"Raw12", &kRaw12Mosaics, 3}, {"Raw16", &kRaw16Mosaics, 4}};
  for (size_t order = 0; order < 2; ++order) {
    for (size_t shift = 0; shift < 7; ++shift) {
      if (shift == 5) continue;
      all.push_back({(order == 0 ? "Raw16Host" : "Raw16Big") + std::to_string(shift),
                     &kRaw16LayoutMosaics[order][shift], 4});
    }
  }
  return all;
}

class MosaicLine : public testing::TestWithParam<Recipes> {};

INSTANTIATE_TEST_SUITE_P(All, MosaicLine, testing::ValuesIn(all_recipes()),
                         [](const auto& info) { return info.param.name; });

// Four pixels, of which the first two have windows whatever the line end.
void put_pair(const Recipe2x2& recipe, uint8_t* out, const CellLine& line, size_t pair_bytes, size_t x) {
  std::vector<uint8_t> four(4 * recipe.pixel_bytes);
  std::memcpy(four.data(), out + x * recipe.pixel_bytes, 2 * recipe.pixel_bytes);
  const size_t at = x / 2 * pair_bytes;
  recipe.line({line.red + at, line.blue + at, line.column_phase}, four.data(), 4);
  std::memcpy(out + x * recipe.pixel_bytes, four.data(), 2 * recipe.pixel_bytes);
}

// Everything but the last two pixels, which are the line end's.
TEST_P(MosaicLine, EqualsItsPairsOneAtATime) {
  const Recipes& recipes = GetParam();
  support::Random random(64);
  std::vector<uint8_t> red(recipes.pair_bytes * (kLongest / 2 + 4) + kRoom), blue(red.size());
  random.fill(red.data(), red.size());
  random.fill(blue.data(), blue.size());
  for (const Mosaic2x2& recipe : *recipes.by_target) {
    if (!recipe) continue;
    const size_t pixel = recipe->pixel_bytes;
    for (uint32_t phase = 0; phase < 2; ++phase) {
      for (size_t n = 4; n <= kLongest; n += recipe->columns == ColumnStep::kTwo ? 2 : 1) {
        const CellLine line{red.data() + n % 4, blue.data() + n / 4 % 4, phase};
        std::vector<uint8_t> actual(n * pixel + 2 * kMargin);
        random.fill(actual.data(), actual.size());
        std::vector<uint8_t> expected(actual);
        recipe->line(line, actual.data() + kMargin, n);
        for (size_t x = 0; x + 2 < n; x += 2) {
          put_pair(*recipe, expected.data() + kMargin, line, recipes.pair_bytes, x);
        }
        // An odd line's second last pixel came along with a pair.
        const size_t checked = (n - 2) * pixel;
        ASSERT_TRUE(std::equal(actual.begin(), actual.begin() + kMargin + static_cast<ptrdiff_t>(checked),
                               expected.begin()))
            << "target " << &recipe - recipes.by_target->data() << ", n " << n << ", phase " << phase;
        ASSERT_TRUE(std::equal(actual.end() - kMargin, actual.end(), expected.end() - kMargin));
      }
    }
  }
}

// Rows of two windows have no vectors.
TEST(MosaicRow3x3, EqualsItsPairsOneAtATime) {
  support::Random random(65);
  std::vector<uint8_t> lines(3 * (kLongest + kRoom));
  random.fill(lines.data(), lines.size());
  for (const Mosaic3x3& recipe : kRaw8Mosaics3x3) {
    if (!recipe) continue;
    for (auto* row : {recipe->blue_row, recipe->red_row}) {
      for (const bool own_first : {false, true}) {
        for (size_t n = 0; n <= kLongest; n += 2) {
          const uint8_t* north = lines.data() + 1 + n / 2 % 4;
          const Line3x3 line{north, north + kLongest + kRoom, north + 2 * (kLongest + kRoom - 4), own_first};
          std::vector<uint8_t> actual(n * recipe->pixel_bytes + 2 * kMargin);
          random.fill(actual.data(), actual.size());
          std::vector<uint8_t> expected(actual);
          row(line, actual.data() + kMargin, n);
          for (size_t x = 0; x < n; x += 2) {
            row({line.north + x, line.centre + x, line.south + x, own_first},
                expected.data() + kMargin + x * recipe->pixel_bytes, 2);
          }
          ASSERT_EQ(actual, expected) << "n " << n;
        }
      }
    }
  }
}

}  // namespace
}  // namespace qvn
