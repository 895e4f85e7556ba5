// Runs of mono and RGB pixels, as rows of n pixels, each with its plain form beside it.
//
// A row reads and writes its n pixels and nothing else. dst and src are disjoint or the same pointer; the
// same only where a pixel of dst is no longer than one of src.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

namespace qvn {

// Which bits of a 16-bit sample become the byte, and which two below them push a channel up by one. A byte of
// 255 is never pushed.
struct SampleCut {
  uint32_t shift;      // below 16
  uint16_t byte_mask;  // 0xFF, or 0 where nothing of the sample is left
  uint16_t roundBit;   // pushes red, and mono
  uint16_t dropBit;    // pushes blue
};

// The top byte, for samples of 16 bits and for all that are aligned to the top.
inline constexpr SampleCut kCutTopByte = {8, 0xFF, 0x80, 0x40};

// For samples of `bits` bits aligned to bit 0. Counts take their low five bits and shift everything out from
// 16 on, as the shift instructions of 16-bit words do; callers rely on no number of bits being refused.
constexpr SampleCut cut_low_aligned(uint32_t bits) {
  const auto bit = [](uint32_t place) {
    return static_cast<uint16_t>(place % 32 < 16 ? 1U << place % 32 : 0);
  };
  const uint32_t shift = (bits - 8) % 32;
  return {shift % 16, static_cast<uint16_t>(shift < 16 ? 0xFF : 0), bit(shift - 1), bit(shift - 2)};
}

enum class SampleOrder { kLittleEndian, kBigEndian };
inline constexpr SampleOrder kHostOrder =
    std::endian::native == std::endian::little ? SampleOrder::kLittleEndian : SampleOrder::kBigEndian;

void rgb8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n);
void rgb8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n);

// (0.72 * G + 0.21 * R) + 0.07 * B in doubles.
void rgb8_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n);
void rgb8_to_y8(uint8_t* dst, const uint8_t* src, size_t n);

void y8_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n);
void y8_to_bgr(uint8_t* dst, const uint8_t* src, size_t n);

void y16_to_bgr_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);
void y16_to_bgr(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);

void y16_to_y8_plain(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);
void y16_to_y8(uint8_t* dst, const uint8_t* src, size_t n, SampleOrder order, SampleCut cut);

}  // namespace qvn
