// The chroma filter over a block four pixels wide and two lines high, for a half frame.
#pragma once

#include "bayer/half_frame.h"

namespace qvn {

// All rows of the half; the last one of the second half is left parked.
template <class Put>
void run_block_filter(const Half<Put>& half);

}  // namespace qvn
