// Frames mirrored in place. An element is a run of 1, 2, 3 or 6 bytes that keeps its own order.
#pragma once

#include <cstddef>
#include <cstdint>

namespace qvn {

// Reverses the order of the n elements of `element` bytes each.
void reverse_elements_plain(uint8_t* elements, size_t n, uint32_t element);
void reverse_elements(uint8_t* elements, size_t n, uint32_t element);

// Exchanges line 0 with the last line, line 1 with the one before it, and so on; `scratch` holds one line.
// The place of the last line wraps at 32 bits.
void exchange_lines(uint8_t* lines, uint8_t* scratch, uint32_t line_bytes, uint32_t height);

}  // namespace qvn
