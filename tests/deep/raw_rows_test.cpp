/// The rows over 12-bit and 16-bit mosaics: vectors against one pixel at a time, for every length, phase and
/// alignment, with lines that end where the last sample does; and how 16-bit samples are read with a shift.
#include <gtest/gtest.h>

#include <vector>

#include "bayer/staged_row.h"
#include "deep/raw16_reading.h"
#include "pixel/put16.h"
#include "support/guard.h"
#include "support/random.h"

namespace qvn {
namespace {

constexpr size_t kLongest = 200, kMargin = 8;

// Bytes from a line's first sample to its last one.
template <class Fetch>
constexpr size_t bytes_of(size_t samples) {
  if (Fetch::line_bytes(2) == 4) return 2 * samples;
  return 3 * (samples / 2) + (samples % 2 == 0 ? 0 : 2);
}

template <class Fetch, class Put>
void compare_rows() {
  support::Random random(512);
  for (uint32_t phase = 0; phase < 2; ++phase) {
    for (size_t n = 0; n <= kLongest; ++n) {
      const size_t bytes = bytes_of<Fetch>(n + 1);
      const auto flush = n % 3 == 0 ? support::Flush::kBegin : support::Flush::kEnd;
      support::GuardedBuffer red(bytes, flush), blue(bytes, flush);
      random.fill(red.data(), bytes);
      random.fill(blue.data(), bytes);
      const CellLine line{red.data(), blue.data(), phase};
      std::vector<uint8_t> plain(n * Put::kPixelBytes + 2 * kMargin, 0xC3), vectors = plain, staged = plain;
      row_2x2_plain<Fetch>(PackedPixels<Put>{plain.data() + kMargin}, line, 0, n);
      row_2x2<Fetch>(PackedPixels<Put>{vectors.data() + kMargin}, line, n);
      staged_row_2x2<Fetch>(PackedPixels<Put>{staged.data() + kMargin}, line, n);
      ASSERT_EQ(plain, vectors) << "n " << n << ", column phase " << phase;
      ASSERT_EQ(plain, staged) << "n " << n << ", column phase " << phase;
    }
  }
}

using RoundedMono16 = PutMono16<54, 184, 18, 128>;
template <int Shift>
using FetchLittle = FetchRaw16<ByteOrder::kLittle, Shift>;

TEST(RawRows, Raw12TopByteToBgr) { compare_rows<FetchRaw12TopByte, PutBgr>(); }
TEST(RawRows, Raw12TopByteToY8) { compare_rows<FetchRaw12TopByte, PutY8>(); }
TEST(RawRows, Raw12ToBgr16) { compare_rows<FetchRaw12, PutBgr16>(); }
TEST(RawRows, Raw12ToY16) { compare_rows<FetchRaw12, PutY16>(); }
TEST(RawRows, Raw16ToBgr16) { compare_rows<FetchWholeRaw16, PutBgr16>(); }
TEST(RawRows, Raw16ToY16) { compare_rows<FetchWholeRaw16, PutY16>(); }
TEST(RawRows, Raw16ToRoundedMono) { compare_rows<FetchWholeRaw16, RoundedMono16>(); }
TEST(RawRows, TwiceTopByteToBgr16) { compare_rows<FetchTwiceTopByte, PutBgr16>(); }
TEST(RawRows, LittleEndianToBgr16) { compare_rows<FetchLittle<0>, PutBgr16>(); }
TEST(RawRows, LittleEndianShiftedToBgr16) { compare_rows<FetchLittle<6>, PutBgr16>(); }
TEST(RawRows, ShiftedTopByteToBgr) { compare_rows<FetchShiftedRaw16TopByte<ByteOrder::kBig, 3>, PutBgr>(); }
TEST(RawRows, LittleEndianTopByteToBgr) {
  compare_rows<FetchShiftedRaw16TopByte<ByteOrder::kLittle, 0>, PutBgr>();
}

// 65536 samples, each value once, as all three channels.
TEST(PutMono16, WhiteAndBlackAndAllBetween) {
  for (uint32_t value = 0; value < 65536; ++value) {
    uint16_t mono = 0;
    PutY16::pixel(reinterpret_cast<uint8_t*>(&mono), {value, value, value});
    ASSERT_EQ(mono, value * 248 >> 8);
  }
}

// Group ab cd ef: the even sample abd, the odd one efc.
TEST(Packed12, NibblesFollowTheColumn) {
  const uint8_t group[3] = {0xAB, 0xCD, 0xEF};
  EXPECT_EQ(FetchRaw12::sample(group, 0), 0xABDU);
  EXPECT_EQ(FetchRaw12::sample(group, 1), 0xEFCU);
  EXPECT_EQ(FetchRaw12TopByte::sample(group, 0), 0xABU);
  EXPECT_EQ(FetchRaw12TopByte::sample(group, 1), 0xEFU);
}

// Every value of a packed pair, in vectors, in both places of the pair and from either one on.
TEST(Packed12, VectorsHoldEverySample) {
  if constexpr (kVectorRows) {
    std::vector<uint8_t> line;
    for (uint32_t value = 0; value < 4096; ++value) {
      const uint32_t other = 4095 - value;
      line.push_back(static_cast<uint8_t>(value >> 4));
      line.push_back(static_cast<uint8_t>((value & 15) | (other & 15) << 4));
      line.push_back(static_cast<uint8_t>(other >> 4));
    }
    for (size_t x = 0; x + kLaneWords <= 8192; ++x) {
      const Words samples = FetchRaw12::samples(line.data(), x);
      for (size_t i = 0; i < kLaneWords; ++i) {
        const size_t pair = (x + i) / 2;
        ASSERT_EQ(samples[i], (x + i) % 2 == 0 ? pair : 4095 - pair) << "column " << x + i;
      }
    }
  }
}

// The two bytes of a sample are shifted apart, by counts modulo 32.
uint32_t literal_channel(uint32_t high, uint32_t low, uint32_t shift) {
  return ((high << ((8 - shift) & 31)) + (low >> (shift & 31))) & 0xFFFF;
}
uint32_t literal_green(uint32_t high_sum, uint32_t low_sum, uint32_t shift) {
  return (((low_sum >> (shift & 31)) + (high_sum << ((8 - shift) & 31))) >> 1) & 0xFFFF;
}

TEST(Raw16Reading, ShiftsAreThoseOfTheBytes) {
  support::Random random(16);
  std::vector<uint32_t> shifts = {255, 256, 0xFFFFFFFF, 0x80000000};
  for (uint32_t shift = 0; shift <= 70; ++shift) shifts.push_back(shift);
  for (const uint32_t shift : shifts) {
    for (int round = 0; round < 300; ++round) {
      uint8_t red_line[4], blue_line[4];
      random.fill(red_line, 4);
      random.fill(blue_line, 4);
      if (round == 0) std::fill_n(red_line, 4, uint8_t{255}), std::fill_n(blue_line, 4, uint8_t{255});
      const auto channels = with_raw16_reading(shift, [&]<class Fetch, class Shift>(Fetch, Shift after) {
        return after(window_2x2<Fetch>({red_line, blue_line, 0}, 0));
      });
      ASSERT_EQ(channels.r, literal_channel(red_line[0], red_line[1], shift)) << "shift " << shift;
      ASSERT_EQ(channels.b, literal_channel(blue_line[2], blue_line[3], shift)) << "shift " << shift;
      ASSERT_EQ(channels.g, literal_green(uint32_t{red_line[2]} + blue_line[0],
                                          uint32_t{red_line[3]} + blue_line[1], shift))
          << "shift " << shift;
    }
  }
}

}  // namespace
}  // namespace qvn
