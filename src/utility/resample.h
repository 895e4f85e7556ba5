// Lines stretched or shrunk along the line. An element is a run of 1 to 6 bytes; every byte of it is treated
// alike, whatever it means. What element an output element comes from, and with which weight, is worked out
// once a call, in tables that all lines share.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

struct Resampling {
  uint8_t* dst;
  const uint8_t* src;
  int32_t dst_length, dst_pitch;  // in elements, as all lengths and pitches
  int32_t src_length, src_pitch;
  int32_t line_count;
  float src_rate, dst_rate;
};

// src_length * dst_rate / src_rate, up to a multiple of 4.
int32_t resampled_length(int32_t src_length, float src_rate, float dst_rate);

// May throw what the tables' allocation throws, for a negative dst_length too.
using ResampleKernel = void (*)(const Resampling& lines);

// For elements of 1 to 6 bytes. Plain: one element at a time.
ResampleKernel nearest_kernel_plain(uint32_t element);
ResampleKernel nearest_kernel(uint32_t element);
ResampleKernel linear_kernel_plain(uint32_t element);
ResampleKernel linear_kernel(uint32_t element);

}  // namespace qvn
