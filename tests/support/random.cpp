/// The seed of a test program: a fixed number, or the one in QVN_TEST_SEED (decimal, or hexadecimal with 0x).
#include "support/random.h"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>

namespace support {

std::uint64_t test_seed() {
  static const std::uint64_t seed = [] {
    std::uint64_t value = 20240229;
    if (const char* text = std::getenv("QVN_TEST_SEED")) value = std::strtoull(text, nullptr, 0);
    std::printf("QVN_TEST_SEED=%" PRIu64 "\n", value);
    std::fflush(stdout);
    return value;
  }();
  return seed;
}

}  // namespace support
