/// A program with the library linked into it, whose own static initialiser already calls an entry.
///
/// Built once for each entry in question, since what a program takes from the archive hangs on what it calls:
/// QVN_TEST_ENTRY is 1 for QVN_GetVersion, 2 for QVN_GetBitsPerPixel alone, 3 for QVN_GetErrorInfo, 4 for
/// QVN_Raw8ToBGR. Exit code 0 if the library was ready.
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "quorvane/quorvane.h"

namespace qvn {
// A weak reference takes nothing from the archive by itself.
[[gnu::weak]] extern std::atomic<uint32_t> version_word;
}  // namespace qvn

namespace {

bool entry_works() {
#if QVN_TEST_ENTRY == 1
  uint32_t version = 0;
  return QVN_GetVersion(&version) == QVN_OK && version == 0x02010200;
#elif QVN_TEST_ENTRY == 2
  uint32_t bits = 0;
  return QVN_GetBitsPerPixel(133, &bits) == QVN_OK && bits == 36;
#elif QVN_TEST_ENTRY == 3
  char text[64];
  return QVN_GetErrorInfo(QVN_E_PARAM1, text, sizeof text) == QVN_OK &&
         std::strcmp(text, "Parameter 1 is invalid") == 0;
#else
  // Public pattern 1 is G B over R G, once the version is known.
  const uint8_t src[4] = {10, 20, 30, 40};
  uint8_t dst[12] = {};
  return QVN_Raw8ToBGR(dst, src, 2, 2, 1) == QVN_OK && dst[0] == 20 && dst[1] == 25 && dst[2] == 30;
#endif
}

bool version_is_read() {
  std::atomic<uint32_t>* word = &qvn::version_word;
  return word != nullptr && *word == 0x02010200;
}

bool fail(const char* what) {
  std::fprintf(stderr, "%s\n", what);
  return false;
}

struct Early {
  bool version_good = version_is_read() || fail("static initialiser: no version word");
  bool entry_good = entry_works() || fail("static initialiser: the entry does not work");
  ~Early() {
    if (!entry_works()) std::_Exit(3);
  }
};

const Early early;

}  // namespace

int main() { return early.version_good && early.entry_good && entry_works() ? 0 : 1; }
