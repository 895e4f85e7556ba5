// Texts of the status codes: those of this library and of the camera-control and driver layers beside it.
//
// The map is built at load and read-only until unload, so any number of threads may look texts up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

namespace qvn {

// From a code, taken as a signed number, to its row in the table of texts.
using ErrorTextMap = std::map<int32_t, size_t>;

// Null before load and after unload.
extern const ErrorTextMap* error_text_map;

void build_error_text_map();
void free_error_text_map();

// Writes the code's text, or "return code not found", and its terminator as far as they fit in `size` bytes.
// True if the code has a text.
bool copy_error_text(uint32_t code, char* buffer, uint32_t size);

// Cuts a carriage return and line feed off a text of at least 3 bytes. Looks no further than `size` bytes:
// the text may be cut and have no terminator.
void trim_line_end(char* buffer, uint32_t size);

}  // namespace qvn
