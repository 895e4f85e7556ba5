/// Maps a run of pages with a closed page on both sides and puts the buffer at one end of the run.
#include "support/guard.h"

#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace support {
namespace {

#ifdef _WIN32

std::size_t page_size() {
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwPageSize;
}

std::uint8_t* reserve(std::size_t size) {
  return static_cast<std::uint8_t*>(VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS));
}

bool open_pages(std::uint8_t* pages, std::size_t size) {
  return VirtualAlloc(pages, size, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

void release(std::uint8_t* base, std::size_t) { VirtualFree(base, 0, MEM_RELEASE); }

#else

std::size_t page_size() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

std::uint8_t* reserve(std::size_t size) {
  void* base = mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return base == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(base);
}

bool open_pages(std::uint8_t* pages, std::size_t size) {
  return mprotect(pages, size, PROT_READ | PROT_WRITE) == 0;
}

void release(std::uint8_t* base, std::size_t size) { munmap(base, size); }

#endif

}  // namespace

GuardedBuffer::GuardedBuffer(std::size_t size, Flush flush) : size_(size) {
  const std::size_t page = page_size();
  const std::size_t open = (size + page - 1) / page * page;
  mapped_ = open + 2 * page;
  base_ = reserve(mapped_);
  if (base_ == nullptr) throw std::bad_alloc();
  if (open != 0 && !open_pages(base_ + page, open)) {
    release(base_, mapped_);
    throw std::bad_alloc();
  }
  data_ = flush == Flush::kBegin ? base_ + page : base_ + page + open - size;
}

GuardedBuffer::~GuardedBuffer() { release(base_, mapped_); }

}  // namespace support
