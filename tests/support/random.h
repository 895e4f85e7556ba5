/// Seeded random bytes and numbers for tests, the same on every platform.
///
/// Every test draws from a generator of its own, so that the order in which tests run does not matter. The
/// seed is fixed unless the environment variable QVN_TEST_SEED holds another number, and is printed once a
/// program, so that a failure can be repeated.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support {

/// The program's seed; prints it at the first call.
std::uint64_t test_seed();

/// A splitmix64 generator: one 64-bit word of state, good in every bit.
class Random {
 public:
  /// `stream` keeps the generators of two tests apart.
  explicit Random(std::uint64_t stream = 0) : state_(test_seed() + stream * 0x9E3779B97F4A7C15U) {}

  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return z ^ (z >> 31);
  }

  /// A number from 0 to bound - 1; the tiny bias of the modulo does not matter here.
  std::uint32_t below(std::uint32_t bound) { return static_cast<std::uint32_t>(next() % bound); }

  std::uint8_t byte() { return static_cast<std::uint8_t>(next()); }

  void fill(std::uint8_t* bytes, std::size_t count) {
    std::size_t i = 0;
    while (i < count) {
      std::uint64_t word = next();
      for (int k = 0; k < 8 && i < count; ++k, word >>= 8) bytes[i++] = static_cast<std::uint8_t>(word);
    }
  }

 private:
  std::uint64_t state_;
};

}  // namespace support
