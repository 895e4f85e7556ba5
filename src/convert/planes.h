// Packed pixels to separate planes of n bytes, as runs of n pixels: only whole groups are read and written.
//
// Planes may lie on each other or on the source: then the order of the writes decides, pixel by pixel red,
// green, blue, luma (RGB8: plane by plane). Disjoint ones go the fast way.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

struct Planes {
  uint8_t *r, *g, *b;
  uint8_t* y;  // null: no luma plane
};

void yuv444_to_planes(const Planes& planes, const uint8_t* src, size_t n);
void yuv422_to_planes(const Planes& planes, const uint8_t* src, size_t n);
void yuv411_to_planes(const Planes& planes, const uint8_t* src, size_t n);

// The luma is made of what the colour planes hold in the end: (R * 0.299 + G * 0.587) + B * 0.114 in singles.
void rgb8_to_planes(const Planes& planes, const uint8_t* src, size_t n);

}  // namespace qvn
