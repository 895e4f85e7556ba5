/// Two cursors that swap and step inward.
#include "reference/flip.h"

#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

namespace reference {
namespace {

/// Returns the end of the line.
std::uint8_t* reverse_line(std::uint8_t* line, std::uint32_t count, std::uint32_t element) {
  std::uint8_t* const end = line + std::size_t{count} * element;
  if (count == 0) return end;
  std::uint8_t* first = line;
  std::uint8_t* last = end - element;
  while (first < last) {
    for (std::uint32_t b = 0; b < element; ++b) std::swap(first[b], last[b]);
    first += element;
    last -= element;
  }
  return end;
}

}  // namespace

std::uint32_t flip_element(std::uint32_t colorCoding) {
  switch (colorCoding) {
    case 1:
    case 2:
    case 3:
    case 5:
    case 7:
    case 10:
      return 2;
    case 4:
      return 3;
    case 6:
    case 8:
      return 6;
    default:
      return 1;
  }
}

void Flip(std::uint8_t* buffer, std::uint32_t width, std::uint32_t height, std::uint32_t axis,
          std::uint32_t colorCoding) {
  const std::uint32_t element = flip_element(colorCoding);
  if (axis == 1) {
    std::uint8_t* line = buffer;
    for (std::uint32_t y = 0; y < height; ++y) line = reverse_line(line, width, element);
  } else if (axis == 2) {
    FlipVertical(buffer, element * width, height);
  } else {
    reverse_line(buffer, width * height, element);
  }
}

void FlipVertical(std::uint8_t* buffer, std::uint32_t lineBytes, std::uint32_t height) {
  std::vector<std::uint8_t> scratch(lineBytes + std::size_t{1});
  std::uint8_t* a = buffer;
  std::uint8_t* b = buffer + (height - 1) * lineBytes;
  for (std::uint32_t k = 0; k < height / 2; ++k) {
    std::memcpy(scratch.data(), a, lineBytes);
    std::memmove(a, b, lineBytes);
    std::memcpy(b, scratch.data(), lineBytes);
    a += lineBytes;
    b -= lineBytes;
  }
}

}  // namespace reference
