// Mosaic frames to grey in three bytes a pixel: means of 2x2 samples, or sums weighted by the gain of each
// colour.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

// Gains are those of the process's ColorTables. They are never set, so that the means run and the phase makes
// no difference. Width and height at least 2.
void convert_to_mono(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height, uint32_t phase);

// n pixels, the means of samples x and x + 1 of two lines. Reads n + 1 samples of each.
void mono_row_plain(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, size_t n);
void mono_row(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, size_t n);

}  // namespace qvn
