// The loader took the library of the level that this run is for: a run for v2 that quietly got v3 would leave
// v2 untested.
#include <gtest/gtest.h>
#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>

#include "quorvane/quorvane.h"

namespace {

#ifdef _WIN32
std::string library_path() {
  char path[MAX_PATH] = {};
  GetModuleFileNameA(GetModuleHandleA("quorvane.dll"), path, sizeof path);
  std::string text = path;
  std::replace(text.begin(), text.end(), '\\', '/');
  return text;
}
#else
std::string library_path() {
  Dl_info info{};
  void* entry = dlsym(RTLD_DEFAULT, "QVN_GetVersion");
  if (entry == nullptr || dladdr(entry, &info) == 0 || info.dli_fname == nullptr) return {};
  return info.dli_fname;
}
#endif

// Each level but the baseline has a folder of its own, named after it.
std::string level_of(const std::string& path) {
  const std::string folder = path.substr(0, path.rfind('/'));
  const std::string name = folder.substr(folder.rfind('/') + 1);
  return name.starts_with("x86-64-v") ? name : "baseline";
}

TEST(Level, TheLoaderTookTheExpectedLibrary) {
  const char* expected = std::getenv("QVN_TEST_LEVEL");
  if (expected == nullptr) GTEST_SKIP() << "QVN_TEST_LEVEL names no level; the library is " << library_path();
  const std::string path = library_path();
  EXPECT_EQ(level_of(path), expected) << path;
  std::cout << "library " << path << "\n";
}

}  // namespace
