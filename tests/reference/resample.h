/// Slow reference of the scanline resampling.
///
/// An element is `type` bytes, 1 to 6; method 0 takes the nearest element, 1 blends an element with the one
/// before it. Positions are floats that a caller may make as odd as it likes; every conversion has a result.
#pragma once

#include <cstdint>
#include <vector>

namespace reference {

/// Truncated; 0x80000000 for what has no 32-bit integer. A length that is no multiple of 4 goes to the next
/// one, by a division that truncates.
std::int32_t GetResampledScanlineLength(std::int32_t srcLength, float srcRate, float dstRate);

/// For each output element the source element that it is taken from. Beyond 64 bits a position counts as 0;
/// below, its low 32 bits are kept.
std::vector<std::uint32_t> ScanlineIndexTable(std::int32_t dstLength, std::int32_t srcLength, float srcRate,
                                              float dstRate, std::uint32_t method);

/// Pitches are in elements. For lengths of 0 and more.
void ResampleScanlinesEx(std::uint8_t* dst, const std::uint8_t* src, std::int32_t dstLength,
                         std::int32_t dstPitch, std::int32_t srcLength, std::int32_t srcPitch,
                         std::int32_t lineCount, float srcRate, float dstRate, std::uint32_t type,
                         std::uint32_t method);

}  // namespace reference
