// Kernels by TransformTarget: what an entry offers is a constant table, and what it does not offer an empty
// place in it.
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>

#include "quorvane/quorvane.h"

namespace qvn {

// By target 0 to 7. A kernel that is not offered is a null pointer or nullopt.
template <class Kernel>
using ByTarget = std::array<Kernel, 8>;

// Runs run(kernel) for the target's kernel: one without a result, or one that tells whether it ran. None of
// them comes to say no; `refused` is the status if one does.
template <class Kernel, class Run>
uint32_t run_target(const ByTarget<Kernel>& kernels, TransformTarget target, Run&& run,
                    uint32_t refused = QVN_E_UNCLASSIFIED) {
  if (target >= kernels.size() || !kernels[target]) return QVN_E_NOT_IMPLEMENTED;
  if constexpr (std::is_void_v<decltype(run(kernels[target]))>) {
    run(kernels[target]);
    return QVN_OK;
  } else {
    return run(kernels[target]) ? QVN_OK : refused;
  }
}

}  // namespace qvn
