// The call frame that every exported function runs through: the log line first, the null tests in argument
// order, then the family's own checks, the pattern swap of the Bayer entries, the kernel, and its status.
// An entry that deviates spells the deviation out itself, from the steps below.
//
// Nothing here is noexcept: a logger or a kernel may throw, and some entries let that out.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <type_traits>
#include <utility>

#include "frame/process_state.h"
#include "quorvane/quorvane.h"

namespace qvn {

// The status that refuses argument `index`, counted from 0.
constexpr uint32_t refused_argument(uint32_t index) { return QVN_E_PARAM1 + index; }

// "Entered method NAME" to the logger, if one is installed. NAME is the entry's own __func__.
inline void log_entry(const char* name) {
  if (process_logger != nullptr) log_entered_method(name);
}

// The status of the first null pointer in argument order, else QVN_OK.
inline uint32_t check_pointers(std::initializer_list<const void*> pointers) {
  uint32_t index = 0;
  for (const void* pointer : pointers) {
    if (pointer == nullptr) return refused_argument(index);
    ++index;
  }
  return QVN_OK;
}

// Public codes 1 and 2 change places from product version 1.1.0.0 on. All other codes, those above 3 among
// them, stay as they are.
inline uint32_t internal_pattern(uint32_t public_pattern) {
  constexpr uint32_t kFirstSwappedVersion = 0x01010000;
  const bool swapped = version_word.load(std::memory_order_relaxed) >= kFirstSwappedVersion;
  return swapped && (public_pattern == 1 || public_pattern == 2) ? 3 - public_pattern : public_pattern;
}

// A kernel that returns a status decides it; one without a result gives QVN_OK.
template <class Kernel, class... Arguments>
uint32_t run_kernel(Kernel&& kernel, Arguments... arguments) {
  if constexpr (std::is_void_v<std::invoke_result_t<Kernel, Arguments...>>) {
    std::forward<Kernel>(kernel)(arguments...);
    return QVN_OK;
  } else {
    return std::forward<Kernel>(kernel)(arguments...);
  }
}

// The frame of most entries.
template <class Kernel>
uint32_t run_entry(const char* name, std::initializer_list<const void*> pointers, Kernel&& kernel) {
  log_entry(name);
  if (const uint32_t status = check_pointers(pointers); status != QVN_OK) return status;
  return run_kernel(std::forward<Kernel>(kernel));
}

// The frame of the Bayer entries: the kernel receives the internal pattern code.
template <class Kernel>
uint32_t run_bayer_entry(const char* name, const void* dst, const void* src, uint32_t pattern,
                         Kernel&& kernel) {
  log_entry(name);
  if (const uint32_t status = check_pointers({dst, src}); status != QVN_OK) return status;
  return run_kernel(std::forward<Kernel>(kernel), internal_pattern(pattern));
}

}  // namespace qvn
