// The rows of CYGM windows: vectors against one pixel at a time, for every kind of window and output, every
// length and alignment; the matrices over all differences; the sums by hand.
#include "cygm/row.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "convert/yuv_tables.h"
#include "cygm/mono.h"
#include "reference/cygm.h"

namespace qvn {
namespace {

constexpr size_t kLongest = 150, kMargin = 8;

class CygmWindowRows : public testing::Test {
 protected:
  CygmWindowRows() {
    for (auto& line : lines_) {
      for (uint8_t& sample : line) sample = sample_();
    }
  }

  // Half of the samples are extreme, so that sums and colours reach their bounds.
  uint8_t sample_() {
    const auto draw = random_();
    return static_cast<uint8_t>(draw % 4 == 0 ? 0 : draw % 4 == 1 ? 255 : draw >> 8);
  }

  // Rows begin with a column whose left neighbour is there.
  const uint8_t* line(size_t index, size_t offset) const { return lines_[index].data() + 1 + offset; }

  template <class Output, class Row>
  std::vector<uint8_t> written_by(Row row) const {
    std::vector<uint8_t> bytes(kMargin + 4 * (kLongest + 4) + kMargin, 0xC3);
    row(Output(bytes.data() + kMargin, 0));
    return bytes;
  }

  template <class Output, class Window>
  void compare(const Window& window, size_t n) const {
    constexpr size_t kFirst = kFirstColumn<Window>;
    const auto plain =
        written_by<Output>([&](const Output& out) { row_plain(window, out, kFirst, kFirst + n); });
    const auto vectors = written_by<Output>([&](const Output& out) { row_of_windows(window, out, n); });
    ASSERT_EQ(plain, vectors) << "n " << n;
  }

  template <class Output>
  void compare_2x2() const {
    for (size_t n = 0; n <= kLongest; n += 2) {
      const uint8_t *a = line(0, n % 5), *b = line(1, n / 2 % 7);
      compare<Output>(BinnedWindow{a, b}, n);
      compare<Output>(CellWindow<EvenSite::kGreen>{a, b}, n);
      compare<Output>(CellWindow<EvenSite::kMagenta>{a, b}, n);
    }
  }

  template <class Output>
  void compare_all() const {
    compare_2x2<Output>();
    for (size_t n = 0; n <= kLongest; n += 2) {
      const uint8_t *a = line(0, n % 5), *b = line(1, n / 2 % 7), *c = line(2, n / 4 % 3);
      compare<Output>(GreenMagentaWindow<EvenSite::kGreen>{a, b, c}, n);
      compare<Output>(GreenMagentaWindow<EvenSite::kMagenta>{a, b, c}, n);
      compare<Output>(CyanYellowWindow{a, b, c}, n);
    }
  }

 private:
  std::mt19937 random_{7};
  std::vector<uint8_t> lines_[3] = {std::vector<uint8_t>(kLongest + 16), std::vector<uint8_t>(kLongest + 16),
                                    std::vector<uint8_t>(kLongest + 16)};
};

TEST_F(CygmWindowRows, Y8) { compare_all<PackedRow<PutY8>>(); }
TEST_F(CygmWindowRows, Bgr) { compare_all<PackedRow<PutBgr>>(); }
TEST_F(CygmWindowRows, Bgra) { compare_all<PackedRow<PutBgra>>(); }
TEST_F(CygmWindowRows, Y8Rounded) { compare_all<PackedRow<PutY8Rounded>>(); }
TEST_F(CygmWindowRows, Studio422) { compare_2x2<StudioRow>(); }

TEST_F(CygmWindowRows, Mono) {
  for (size_t n = 0; n <= kLongest; ++n) {
    const uint8_t *upper = line(0, n % 7), *lower = line(1, n / 7 % 5);
    std::vector<uint8_t> plain(3 * kLongest + 2 * kMargin, 0xC3), vectors(plain);
    mono_row_plain(plain.data() + kMargin, upper, lower, n);
    mono_row(vectors.data() + kMargin, upper, lower, n);
    ASSERT_EQ(plain, vectors) << "n " << n;
  }
}

// A row that begins at an odd pixel of the frame finds the first half of its group in place.
TEST_F(CygmWindowRows, Studio422FromAnOddPixel) {
  const CellWindow<EvenSite::kGreen> window{line(0, 0), line(1, 0)};
  const size_t n = 64;
  std::vector<uint8_t> bytes(2 * (n + 2), 100);
  row_of_windows(window, StudioRow(bytes.data(), 7), n);
  for (size_t x = 0; x < n; ++x) {
    const Yuv<uint32_t> own = studio_yuv_of(colours_at(window, x));
    const uint8_t* group = bytes.data() + (x + 1) / 2 * 4;
    ASSERT_EQ(group[x % 2 == 0 ? 3 : 1], own.y) << x;
    if (x % 2 != 0) continue;
    const Yuv<uint32_t> before = studio_yuv_of(colours_at(window, x == 0 ? 0 : x - 1));
    ASSERT_EQ(group[0], ((x == 0 ? 100 : before.u) + own.u) >> 1) << x;
    ASSERT_EQ(group[2], ((x == 0 ? 100 : before.v) + own.v) >> 1) << x;
  }
}

// ---- Both matrices over all differences, and all brightnesses at which something is clamped or not.

int32_t channel_by_hand(int32_t luma, int32_t red_diff, int32_t blue_diff, CygmWeights weights) {
  const int32_t value = (luma << 10) + red_diff * weights.red_diff + blue_diff * weights.blue_diff;
  return value < 0 ? 0 : value >= 0x3FC00 ? 255 : value / 1024;
}

void compare_matrix(const CygmMatrix& matrix) {
  constexpr int kCells = kLaneCount<Words>;
  for (const int32_t luma : {0, 1, 17, 100, 128, 200, 254, 255}) {
    for (int32_t red = -127; red <= 127; ++red) {
      for (int32_t blue = -127; blue <= 127; blue += kCells) {
        ColourDifferences<SignedWords> cells{SignedWords{} + static_cast<int16_t>(luma),
                                             SignedWords{} + static_cast<int16_t>(red), SignedWords{}};
        for (int i = 0; i < kCells; ++i) cells.blue_diff[i] = static_cast<int16_t>(std::min(blue + i, 127));
        const Rgb<SignedWords> colours = colours_of(matrix, cells);
        const Rgb<Bytes> bytes{narrow_to_bytes(colours.r, colours.r), narrow_to_bytes(colours.g, colours.g),
                               narrow_to_bytes(colours.b, colours.b)};
        for (int i = 0; i < kCells; ++i) {
          const int32_t cell_blue = cells.blue_diff[i];
          const int at = i / 8 * 16 + i % 8;  // narrowed twice, block by block
          const Rgb<uint32_t> plain = colours_of(matrix, ColourDifferences<int32_t>{luma, red, cell_blue});
          const auto r = static_cast<uint32_t>(channel_by_hand(luma, red, cell_blue, matrix.r));
          const auto g = static_cast<uint32_t>(channel_by_hand(luma, red, cell_blue, matrix.g));
          const auto b = static_cast<uint32_t>(channel_by_hand(luma, red, cell_blue, matrix.b));
          ASSERT_TRUE(plain.r == r && plain.g == g && plain.b == b) << luma << ' ' << red << ' ' << cell_blue;
          if (!kVectorRows) continue;
          ASSERT_TRUE(bytes.r[at] == r && bytes.g[at] == g && bytes.b[at] == b)
              << luma << ' ' << red << ' ' << cell_blue;
        }
      }
    }
  }
}

TEST(CygmColour, BinMatrix) { compare_matrix(CygmBinMatrix); }
TEST(CygmColour, FullMatrix) { compare_matrix(CygmFullMatrix); }

TEST(CygmColour, ClampShift10StopsAtBothEnds) {
  EXPECT_EQ(ClampShift10(-1), 0u);
  EXPECT_EQ(ClampShift10(-879348), 0u);
  EXPECT_EQ(ClampShift10(0), 0u);
  EXPECT_EQ(ClampShift10(1023), 0u);
  EXPECT_EQ(ClampShift10(1024), 1u);
  EXPECT_EQ(ClampShift10(0x3FBFF), 254u);
  EXPECT_EQ(ClampShift10(0x3FC00), 255u);
  EXPECT_EQ(ClampShift10(1140468), 255u);
}

// All differences that a window can have.
template <int Shift, int Largest>
void compare_truncation() {
  for (int value = -Largest; value <= Largest; ++value) {
    const SignedWords quotient = truncated<Shift>(Words{} + static_cast<uint16_t>(value));
    ASSERT_EQ(quotient[0], value / (1 << Shift)) << value;
  }
}

TEST(CygmColour, DifferencesAreTruncatedTowardZero) {
  compare_truncation<1, 16383>();
  compare_truncation<2, 510>();
  compare_truncation<4, 2040>();
}

// ---- The sums of a window by hand, with samples that name their places.

TEST(CygmWindow, CellTakesEachColourOnce) {
  const uint8_t cyan_yellow[] = {10, 21, 32}, green_magenta[] = {43, 55, 60};
  const CellWindow<EvenSite::kGreen> green{cyan_yellow, green_magenta};
  const auto even = cell_of<decltype(green)>(pair_sums(green, 0));  // C 10, Y 21, G 43, M 55
  EXPECT_EQ(even.luma, (10 + 21 + 43 + 55) >> 2);
  EXPECT_EQ(even.red_diff, (55 + 21 - 43 - 10) / 4);
  EXPECT_EQ(even.blue_diff, (55 + 10 - 43 - 21) / 4);
  const auto odd = cell_of<decltype(green)>(pair_sums(green, 1));  // Y 21, C 32, M 55, G 60
  EXPECT_EQ(odd.red_diff, (55 + 21 - 60 - 32) / 4);
  EXPECT_EQ(odd.blue_diff, (55 + 32 - 60 - 21) / 4);
  const CellWindow<EvenSite::kMagenta> magenta{cyan_yellow, green_magenta};
  const auto other = cell_of<decltype(magenta)>(pair_sums(magenta, 0));  // M 43, G 55
  EXPECT_EQ(other.red_diff, (43 + 21 - 55 - 10) / 4);
  EXPECT_EQ(other.blue_diff, (43 + 10 - 55 - 21) / 4);
}

TEST(CygmWindow, BinnedKeepsItsSignAtOddColumns) {
  const uint8_t blue[] = {100, 40, 60}, red[] = {30, 90, 11};
  const BinnedWindow window{blue, red};
  const auto even = cell_of<BinnedWindow>(pair_sums(window, 0));
  EXPECT_EQ(even.blue_diff, (100 - 40) / 2);
  EXPECT_EQ(even.red_diff, (90 - 30) / 2);
  const auto odd = cell_of<BinnedWindow>(pair_sums(window, 1));
  EXPECT_EQ(odd.blue_diff, (60 - 40) / 2);
  EXPECT_EQ(odd.red_diff, (90 - 11) / 2);
  EXPECT_EQ(odd.luma, (40 + 60 + 90 + 11) >> 2);
}

// ---- The gains of the grey conversion, which nothing sets in the library.

class CygmGains : public testing::Test {
 protected:
  ~CygmGains() override {
    color_tables.CygmMonoGains = {};
    color_tables.useGains = 0;
  }

  // The first pixel of a frame of two lines, C Y over G M.
  static uint8_t first_pixel(MonoGains gains, uint32_t phase) {
    color_tables.CygmMonoGains = gains;
    color_tables.useGains = 1;
    const uint8_t src[] = {43, 55, 10, 21};  // the first stored field lies below
    uint8_t dst[12] = {};
    convert_to_mono(dst, src, 2, 2, phase);
    for (const uint8_t byte : dst) EXPECT_EQ(byte, dst[0]);
    return dst[0];
  }
};

TEST_F(CygmGains, EachColourHasItsOwn) {
  EXPECT_EQ(first_pixel({4, 0, 0, 0}, 0), 10);
  EXPECT_EQ(first_pixel({0, 4, 0, 0}, 0), 55);
  EXPECT_EQ(first_pixel({0, 0, 4, 0}, 0), 21);
  EXPECT_EQ(first_pixel({0, 0, 0, 4}, 0), 43);
}

TEST_F(CygmGains, PhaseSelectsColours) {
  EXPECT_EQ(first_pixel({4, 0, 0, 0}, 1), 21);  // a column on: Y C over M G
  EXPECT_EQ(first_pixel({0, 4, 0, 0}, 1), 43);
  EXPECT_EQ(first_pixel({0, 4, 0, 0}, 2), 55);  // a line on: G M still
  EXPECT_EQ(first_pixel({0, 4, 0, 0}, 4), 43);  // two lines on: M G
  EXPECT_EQ(first_pixel({0, 4, 0, 0}, 5), 55);
}

TEST_F(CygmGains, SumIsTruncatedAndKeepsItsLowEightBits) {
  EXPECT_EQ(first_pixel({0, 0, 0, 4.0999F}, 0), 44);    // 44.07
  EXPECT_EQ(first_pixel({40, 0, 0, 0}, 0), 100);        // not clamped below 256
  EXPECT_EQ(first_pixel({0, 40, 0, 0}, 0), 550 - 512);  // nor above
  EXPECT_EQ(first_pixel({-4, 0, 0, 0}, 0), 256 - 10);   // negative
  EXPECT_EQ(first_pixel({-0.04F, 0, 0, 0}, 0), 0);      // -0.1 truncates to 0
  EXPECT_EQ(first_pixel({3e10F, 0, 0, 0}, 0), 0);       // no 32-bit integer: the lowest one
}

TEST_F(CygmGains, MatchReference) {
  std::mt19937 random(3);
  std::uniform_real_distribution<float> gain(-3, 3);
  constexpr uint32_t kWidth = 37, kHeight = 10;
  std::vector<uint8_t> src(kWidth * kHeight);
  for (uint8_t& sample : src) sample = static_cast<uint8_t>(random());
  for (const uint32_t phase : {0u, 1u, 2u, 3u, 4u, 5u, 7u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
    const MonoGains gains{gain(random), gain(random), gain(random), gain(random)};
    std::vector<uint8_t> ours(3 * kWidth * kHeight, 0xC3), theirs(ours);
    color_tables.CygmMonoGains = gains;
    color_tables.useGains = 1;
    convert_to_mono(ours.data(), src.data(), kWidth, kHeight, phase);
    reference::IRaw8CYGMToMono_gains(theirs.data(), src.data(), kWidth, kHeight, phase,
                                     {gains.c, gains.m, gains.y, gains.g, true});
    ASSERT_EQ(ours, theirs) << "phase " << phase;
  }
}

}  // namespace
}  // namespace qvn
