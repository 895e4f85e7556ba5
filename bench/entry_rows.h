// The rows of the benchmark: what is called, and how many bytes it moves.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One call over a frame of width * height pixels (runs take the product). `dst` and `src` hold 8 bytes a
// pixel.
struct EntryRow {
  std::string name;
  uint32_t
      bytes_read;  // a 12th part of what a pixel's share of the source is, in bytes: 12 is one byte a pixel
  uint32_t bytes_written;  // the same of the destination
  void (*call)(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height);
};

const std::vector<EntryRow>& entry_rows();
const std::vector<EntryRow>& correction_rows();  // the correction and deep rooms'
const std::vector<EntryRow>& transform_rows();   // the transform room's
const std::vector<EntryRow>& utility_rows();     // the utility room's

// One window and one pixel a step: what the 2x2 demosaic is without vectors, under the same flags.
void scalar_raw8_to_bgr(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);
