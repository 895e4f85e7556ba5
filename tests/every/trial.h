/// One call, made by the library and by the reference in separate guarded memory, and all that both left
/// there compared: every destination and the source, with what lies around them, the status, the exception,
/// and the number of reports of a short table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "every/entry.h"

namespace every {

/// How buffers lie to the closed pages around the memory. Loose calls lie in the middle, whatever is asked.
enum class Place { kEnd, kBegin, kMiddle };

/// Null pointers by bits: 0 to 3 the destinations, 4 the source.
inline constexpr unsigned kNullSource = 1 << 4;

/// Lets an allocation fail. Programs that replace operator new have one.
struct Allocations {
  void (*fail)(std::size_t number);  ///< counted from 1; 0: none
  bool (*has_failed)();              ///< since the last call of fail()
};

struct Trial {
  Place place = Place::kEnd;
  std::size_t dst_offset = 0;  ///< in the middle
  std::size_t src_offset = 0;
  std::uint64_t contents = 0;          ///< seed of what all buffers hold before
  std::span<const std::uint8_t> head;  ///< what the source begins with instead
  unsigned nulls = 0;
  const Allocations* allocations = nullptr;
  std::size_t failing_allocation = 0;
};

struct Verdict {
  std::string trouble;  ///< empty: none
  bool ran = false;     ///< false: the buffers are too large for the memory here
  bool failed_allocation = false;
};

Verdict try_call(const Entry& entry, const Call& call, const Trial& trial);

/// For messages.
std::string text_of(const Entry& entry, const Call& call);

}  // namespace every
