// Two fields, stored one behind the other, woven to lines in display order. The field that lies second in
// memory comes first in the picture. All products wrap at 32 bits.
#pragma once

#include <cstdint>

namespace qvn {

// The second field starts at (width >> 1) * height.
void weave_fields(uint8_t* dst, const uint8_t* src, uint32_t width, uint32_t height);

// The second field starts at (width * height) >> 1, which is another place for odd widths: callers depend on
// both. Allocates a copy of the first field.
void weave_fields_in_place(uint8_t* frame, uint32_t width, uint32_t height);

}  // namespace qvn
