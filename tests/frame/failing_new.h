/// Control over the program's operator new: count its calls, look in on them, or let one fail.
///
/// The state belongs to the thread, so that other threads' allocations go their way. A program that uses it
/// links failing_new.cpp, which replaces the operators.
#pragma once

#include <cstddef>

namespace support {

/// Allocations of this thread since the program began.
std::size_t allocation_count();

/// Bytes that this thread's last allocation asked for, whether it failed or not.
std::size_t last_allocation_size();

/// The `calls`-th allocation of this thread from now on throws std::bad_alloc (1: the next one); 0: none
/// does.
void fail_allocation(std::size_t calls);

/// Called once, at the next allocation of this thread, before the memory is taken.
void at_next_allocation(void (*callback)());

/// Allocations minus deallocations of the whole program.
long live_allocations();

}  // namespace support
