/// Buffers that lie flush against inaccessible memory: a read or a write of one byte too many ends the
/// program.
///
/// A page can only be closed as a whole, so a buffer touches the closed page either at its end or at its
/// beginning; a test runs a conversion in both positions.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support {

enum class Flush {
  kEnd,    ///< the byte behind the buffer is inaccessible
  kBegin,  ///< the byte before the buffer is inaccessible
};

class GuardedBuffer {
 public:
  /// Zero-filled; a size of 0 gives a pointer that must not be used.
  GuardedBuffer(std::size_t size, Flush flush);
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;
  ~GuardedBuffer();

  std::uint8_t* data() { return data_; }
  std::size_t size() const { return size_; }

 private:
  std::size_t size_;
  std::size_t mapped_;
  std::uint8_t* base_;
  std::uint8_t* data_;
};

}  // namespace support
