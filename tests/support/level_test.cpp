// The loader took the library of the level that this run is for: a run for v2 that quietly got v3 would leave
// v2 untested.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>

#include "quorvane/quorvane.h"

namespace {

std::string library_path() {
  Dl_info info{};
  void* entry = dlsym(RTLD_DEFAULT, "QVN_GetVersion");
  if (entry == nullptr || dladdr(entry, &info) == 0 || info.dli_fname == nullptr) return {};
  return info.dli_fname;
}

TEST(Level, TheLoaderTookTheExpectedLibrary) {
  const char* expected = std::getenv("QVN_TEST_LEVEL");
  if (expected == nullptr) GTEST_SKIP() << "QVN_TEST_LEVEL names no level; the library is " << library_path();
  const std::string path = library_path();
  const size_t folder = path.rfind("glibc-hwcaps/");
  const std::string level =
      folder == std::string::npos ? "baseline" : path.substr(folder + 13, path.rfind('/') - folder - 13);
  EXPECT_EQ(level, expected) << path;
  std::cout << "library " << path << "\n";
}

}  // namespace
