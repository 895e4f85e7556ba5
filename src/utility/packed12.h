// Pairs of 12-bit samples, packed in three bytes: bits 11..4 of the first sample, the low nibbles of the
// first (below) and the second (above), bits 11..4 of the second sample.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

// The top eight bits of each sample: two bytes a pair.
void unpack12_to_8_plain(uint8_t* dst, const uint8_t* src, size_t pairs);
void unpack12_to_8(uint8_t* dst, const uint8_t* src, size_t pairs);

// All bits of each sample at the top of two bytes, high byte first: four bytes a pair.
void unpack12_to_16_plain(uint8_t* dst, const uint8_t* src, size_t pairs);
void unpack12_to_16(uint8_t* dst, const uint8_t* src, size_t pairs);

}  // namespace qvn
