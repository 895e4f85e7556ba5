// What the corrected entries make of a kernel's result.
#pragma once

#include <cstdint>

#include "correction/kind_map.h"

namespace qvn {

inline uint32_t correction_status(int32_t result) {
  const bool refused =
      result == static_cast<int32_t>(Rule::kNotServed) || result == static_cast<int32_t>(Rule::kUnknownKind);
  return refused ? QVN_E_FAIL : QVN_OK;
}

// Of 8-bit and 12-bit sources, whatever the kernel throws is a failure. The 16-bit entries let it out.
template <class Kernel>
uint32_t guarded_correction(const Kernel& kernel) {
  try {
    return correction_status(kernel());
  } catch (...) {
    return QVN_E_FAIL;
  }
}

}  // namespace qvn
