// ColorCorrection objects: made, read and released. Their records are public; a caller may have built one
// with no more memory than its kind needs, so only the fields of the kind at hand are read.
#pragma once

#include <cstdint>

#include "quorvane/quorvane.h"

namespace qvn {

// A new object of kind 2 or 3. Memory comes from operator new; its exception goes to the caller.
ColorCorrection* create_matrix(uint32_t kind, const float* matrix);

enum class Destroyed { kReleased = 0, kNoObject = -1, kFailed = -2 };

// Releases an object and the tables it owns.
Destroyed destroy_color_correction(ColorCorrection* object);

inline uint32_t kind_of(const ColorCorrection* object) { return *reinterpret_cast<const uint32_t*>(object); }

template <class Record>
const Record& record_of(const ColorCorrection* object) {
  return *reinterpret_cast<const Record*>(object);
}

}  // namespace qvn
