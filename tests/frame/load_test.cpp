/// Loads the built shared library from its file: a thousand times over, from a long path, and from copies
/// whose version note has been altered.
///
/// QVN_TEST_LIBRARY names the file.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "quorvane/quorvane.h"

namespace {

namespace fs = std::filesystem;

fs::path library_file() {
  const char* name = std::getenv("QVN_TEST_LIBRARY");
  return name != nullptr ? fs::canonical(name) : fs::path();
}

class Library {
 public:
  explicit Library(const fs::path& file) : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    EXPECT_NE(handle_, nullptr) << dlerror();
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() {
    if (handle_ != nullptr) dlclose(handle_);
  }

  template <class Entry>
  Entry* entry(Entry*, const char* name) const {
    return handle_ != nullptr ? reinterpret_cast<Entry*>(dlsym(handle_, name)) : nullptr;
  }

  uint32_t version() const {
    uint32_t word = 0xAAAAAAAA;
    auto* get = entry(&QVN_GetVersion, "QVN_GetVersion");
    if (get != nullptr) get(&word);
    return word;
  }

  /// Public pattern 1 over the mosaic 10 20 / 30 40 takes red from the 30 if the swap is in force, else from
  /// the 20.
  bool swaps_patterns() const {
    const std::array<uint8_t, 4> src = {10, 20, 30, 40};
    std::array<uint8_t, 12> dst = {};
    auto* convert = entry(&QVN_Raw8ToBGR, "QVN_Raw8ToBGR");
    EXPECT_NE(convert, nullptr);
    if (convert == nullptr) return false;
    EXPECT_EQ(convert(dst.data(), src.data(), 2, 2, 1), QVN_OK);
    EXPECT_TRUE(dst[2] == 20 || dst[2] == 30);
    return dst[2] == 30;
  }

  std::string text(uint32_t code) const {
    std::array<char, 64> buffer = {};
    auto* get = entry(&QVN_GetErrorInfo, "QVN_GetErrorInfo");
    if (get != nullptr) get(code, buffer.data(), buffer.size());
    return buffer.data();
  }

 private:
  void* handle_;
};

class Load : public testing::Test {
 protected:
  void SetUp() override {
    file_ = library_file();
    if (file_.empty()) GTEST_SKIP() << "QVN_TEST_LIBRARY names no library";
    folder_ = fs::temp_directory_path() / ("quorvane_load_test." + std::to_string(getpid()));
    fs::create_directories(folder_);
  }
  void TearDown() override {
    if (!folder_.empty()) fs::remove_all(folder_);
  }

  /// A copy of the library with `alter` applied to the bytes of its version note.
  template <class Alter>
  fs::path altered_copy(const char* name, Alter alter) {
    std::ifstream in(file_, std::ios::binary);
    std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    // Sizes of the owner and the record, and the type, in the host's order, then the owner.
    std::array<char, 24> head = {};
    const std::array<uint32_t, 3> numbers = {9, 16, 1};
    std::memcpy(head.data(), numbers.data(), sizeof numbers);
    std::memcpy(head.data() + 12, "Quorvane", 8);
    // The loaded segments come first in the file; debugging information behind them may repeat the bytes.
    const auto note = std::search(bytes.begin(), bytes.end(), head.begin(), head.end());
    EXPECT_NE(note, bytes.end());
    if (note != bytes.end()) alter(&*note);
    fs::path copy = folder_ / name;
    std::ofstream(copy, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return copy;
  }

  fs::path copy_with_product(const char* name, const std::array<uint16_t, 4>& product) {
    return altered_copy(name, [&](char* note) { std::memcpy(note + 24, product.data(), sizeof product); });
  }

  fs::path file_;
  fs::path folder_;
};

TEST_F(Load, IsReadyAtOnce) {
  const Library library(file_);
  EXPECT_EQ(library.version(), 0x02010200u);
  EXPECT_TRUE(library.swaps_patterns());
  EXPECT_EQ(library.text(0x88000002), "Parameter 1 is invalid");
}

TEST_F(Load, WithoutAVersionNoteTheWordIsZeroAndNothingSwaps) {
  const Library library(altered_copy("no_owner.so", [](char* note) { note[12] = 'q'; }));
  EXPECT_EQ(library.version(), 0u);
  EXPECT_FALSE(library.swaps_patterns());
  EXPECT_EQ(library.text(0x88000002), "Parameter 1 is invalid");
}

TEST_F(Load, WithANoteOfAnotherTypeTheWordIsZero) {
  const Library library(altered_copy("other_type.so", [](char* note) {
    const uint32_t type = 2;
    std::memcpy(note + 8, &type, sizeof type);
  }));
  EXPECT_EQ(library.version(), 0u);
  EXPECT_FALSE(library.swaps_patterns());
}

TEST_F(Load, TakesTheVersionFromTheFile) {
  EXPECT_EQ(Library(copy_with_product("a.so", {1, 2, 3, 4})).version(), 0x01020304u);
  EXPECT_EQ(Library(copy_with_product("b.so", {2, 256, 0, 0})).version(), 0x03000000u);
}

TEST_F(Load, TheSwapBeginsAtVersionOneOne) {
  EXPECT_FALSE(Library(copy_with_product("old.so", {1, 0, 255, 255})).swaps_patterns());
  EXPECT_TRUE(Library(copy_with_product("new.so", {1, 1, 0, 0})).swaps_patterns());
}

TEST_F(Load, APathLongerThanItsTextIsNoObstacle) {
  fs::path deep = folder_;
  for (int i = 0; i < 6; ++i) deep /= std::string(60, 'd');
  fs::create_directories(deep);
  fs::copy_file(file_, deep / "copy.so");
  ASSERT_GT((deep / "copy.so").string().size(), 300u);
  EXPECT_EQ(Library(deep / "copy.so").version(), 0x02010200u);
}

TEST_F(Load, AThousandLoadsAndUnloadsLeaveNoMemoryBehind) {
  const auto load_once = [&] {
    const Library library(file_);
    ASSERT_EQ(library.version(), 0x02010200u);
  };
  for (int i = 0; i < 10; ++i) load_once();
  ASSERT_EQ(dlopen(file_.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library stays loaded";
#if defined(__GLIBC__)
  const auto used_before = mallinfo2().uordblks;
#endif
  for (int i = 0; i < 1000; ++i) load_once();
#if defined(__GLIBC__)
  // The texts alone take 79 map nodes, some 6 kilobytes, each time.
  EXPECT_LT(mallinfo2().uordblks, used_before + 16384);
#endif
}

}  // namespace
