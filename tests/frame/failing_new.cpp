/// Replacements of the program's operator new and delete, over malloc and free.
#include "frame/failing_new.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace {

thread_local std::size_t count = 0;
thread_local std::size_t last_size = 0;
thread_local std::size_t calls_to_failure = 0;
thread_local void (*next_callback)() = nullptr;
std::atomic<long> live = 0;

void* allocate(std::size_t size) {
  ++count;
  last_size = size;
  if (next_callback != nullptr) {
    auto* const callback = next_callback;
    next_callback = nullptr;
    callback();
  }
  if (calls_to_failure != 0 && --calls_to_failure == 0) throw std::bad_alloc();
  void* memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  ++live;
  return memory;
}

void* allocate_or_null(std::size_t size) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void release(void* memory) {
  if (memory == nullptr) return;
  --live;
  std::free(memory);
}

/// The block's own address lies before the aligned one.
void* allocate_aligned(std::size_t size, std::align_val_t alignment) {
  const auto step = static_cast<std::size_t>(alignment);
  void* const block = allocate(size + step + sizeof(void*));
  void* aligned = static_cast<char*>(block) + sizeof(void*);
  std::size_t space = size + step;
  std::align(step, size, aligned, space);
  std::memcpy(static_cast<char*>(aligned) - sizeof(void*), &block, sizeof block);
  return aligned;
}

void release_aligned(void* memory) {
  if (memory == nullptr) return;
  void* block = nullptr;
  std::memcpy(&block, static_cast<char*>(memory) - sizeof(void*), sizeof block);
  release(block);
}

}  // namespace

namespace support {

std::size_t allocation_count() { return count; }
std::size_t last_allocation_size() { return last_size; }
void fail_allocation(std::size_t calls) { calls_to_failure = calls; }
void at_next_allocation(void (*callback)()) { next_callback = callback; }
long live_allocations() { return live; }

}  // namespace support

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate_or_null(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate_or_null(size); }
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }
void* operator new(std::size_t size, std::align_val_t alignment) { return allocate_aligned(size, alignment); }
void operator delete(void* memory, std::align_val_t) noexcept { release_aligned(memory); }
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept { release_aligned(memory); }
