// The rows of the benchmark: what is called, and how many bytes it moves. A file a room has them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Bytes are counted in twelfths, so that packed formats come out whole: 12 is one byte a pixel.
inline constexpr uint32_t kTwelfths = 12;

// One call over a frame of width * height pixels (runs take the product).
struct EntryRow {
  std::string name;        // the function without QVN_, and what is chosen of it behind an underscore
  uint32_t bytes_read;     // twelfths of a byte a pixel of the source
  uint32_t bytes_written;  // the same of the destination
  void (*call)(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height);

  size_t read(size_t pixels) const { return pixels * bytes_read / kTwelfths; }
  size_t written(size_t pixels) const { return pixels * bytes_written / kTwelfths; }
};

const std::vector<EntryRow>& bayer_rows();
const std::vector<EntryRow>& convert_rows();
const std::vector<EntryRow>& correction_rows();  // the correction and deep rooms'
const std::vector<EntryRow>& cygm_rows();
const std::vector<EntryRow>& transform_rows();
const std::vector<EntryRow>& utility_rows();
std::vector<EntryRow> all_rows();

// A function that makes no picture.
struct CallRow {
  std::string name;
  void (*call)();
};
const std::vector<CallRow>& call_rows();

// The shapes that most entries have.
template <auto kEntry>
void call_run(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(dst, src, width * height);
}
template <auto kEntry>
void call_frame(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(dst, src, width, height);
}
template <auto kEntry, uint32_t kPattern = 0>
void call_mosaic(uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
  kEntry(dst, src, width, height, kPattern);
}

// One window and one pixel a step: what the 2x2 demosaic is without vectors, under the same flags.
void scalar_raw8_to_bgr(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);
