/// Loads the built DLL from its file, also from copies whose version resource has been taken out or altered,
/// and watches the loader's notifications.
///
/// QVN_TEST_LIBRARY names the DLL, QVN_TEST_NOTIFIED_LIBRARY the one with a logger in it.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "frame/notified_library.h"
#include "quorvane/quorvane.h"

namespace {

namespace fs = std::filesystem;

class Library {
 public:
  explicit Library(const fs::path& file) : module_(LoadLibraryW(file.c_str())) {
    EXPECT_NE(module_, nullptr) << file << ": " << GetLastError();
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;
  ~Library() { unload(); }

  void unload() {
    if (module_ != nullptr) FreeLibrary(module_);
    module_ = nullptr;
  }

  template <class Function>
  Function function(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module_, name)));
  }

  uint32_t version() const {
    uint32_t word = 0xAAAAAAAA;
    function<decltype(&QVN_GetVersion)>("QVN_GetVersion")(&word);
    return word;
  }

  /// Public pattern 1 over the mosaic 10 20 / 30 40 takes red from the 30 if the swap is in force, else from
  /// the 20.
  bool swaps_patterns() const {
    const std::array<uint8_t, 4> src = {10, 20, 30, 40};
    std::array<uint8_t, 12> dst = {};
    EXPECT_EQ(function<decltype(&QVN_Raw8ToBGR)>("QVN_Raw8ToBGR")(dst.data(), src.data(), 2, 2, 1), QVN_OK);
    EXPECT_TRUE(dst[2] == 20 || dst[2] == 30);
    return dst[2] == 30;
  }

 private:
  HMODULE module_;
};

class Load : public testing::Test {
 protected:
  void SetUp() override {
    const char* name = std::getenv("QVN_TEST_LIBRARY");
    if (name == nullptr) GTEST_SKIP() << "QVN_TEST_LIBRARY names no library";
    file_ = name;
    folder_ = fs::temp_directory_path() / ("quorvane_load_test." + std::to_string(GetCurrentProcessId()));
    fs::create_directories(folder_);
  }
  void TearDown() override {
    if (!folder_.empty()) fs::remove_all(folder_);
  }

  fs::path copy(const char* name) {
    fs::path made = folder_ / name;
    fs::copy_file(file_, made);
    return made;
  }

  /// The fixed part of the record: a signature, the structure's version, two words of the file version, then
  /// the product version, the more significant of two parts in the high half of a word.
  fs::path copy_with_product(const char* name, const std::array<uint16_t, 4>& product) {
    std::ifstream in(file_, std::ios::binary);
    std::vector<char> bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const std::array<uint32_t, 2> head = {0xFEEF04BD, 0x00010000};
    std::array<char, sizeof head> head_bytes;
    std::memcpy(head_bytes.data(), head.data(), sizeof head);
    const auto fixed = std::search(bytes.begin(), bytes.end(), head_bytes.begin(), head_bytes.end());
    EXPECT_NE(fixed, bytes.end());
    const std::array<uint16_t, 4> words = {product[1], product[0], product[3], product[2]};
    if (fixed != bytes.end()) std::memcpy(&*fixed + 16, words.data(), sizeof words);
    fs::path made = folder_ / name;
    std::ofstream(made, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return made;
  }

  fs::path file_;
  fs::path folder_;
};

TEST_F(Load, ReadsTheVersionFromTheResource) {
  const Library library(copy("quorvane_copy.dll"));
  EXPECT_EQ(library.version(), 0x02010200U);
  EXPECT_TRUE(library.swaps_patterns());
}

TEST_F(Load, TakesTheProductVersionOfTheFile) {
  EXPECT_EQ(Library(copy_with_product("a.dll", {1, 2, 3, 4})).version(), 0x01020304U);
  EXPECT_EQ(Library(copy_with_product("b.dll", {2, 256, 0, 0})).version(), 0x03000000U);
}

TEST_F(Load, TheSwapBeginsAtVersionOneOne) {
  EXPECT_FALSE(Library(copy_with_product("old.dll", {1, 0, 255, 255})).swaps_patterns());
  EXPECT_TRUE(Library(copy_with_product("new.dll", {1, 1, 0, 0})).swaps_patterns());
}

TEST_F(Load, WithoutAResourceTheWordIsZeroAndNothingSwaps) {
  const fs::path stripped = copy("stripped.dll");
  constexpr BOOL kDropAll = TRUE;
  const HANDLE update = BeginUpdateResourceW(stripped.c_str(), kDropAll);
  ASSERT_NE(update, nullptr);
  ASSERT_TRUE(EndUpdateResourceW(update, FALSE));
  const Library library(stripped);
  EXPECT_EQ(library.version(), 0U);
  EXPECT_FALSE(library.swaps_patterns());
}

TEST_F(Load, ExceptionsLeaveThroughAnEntry) {
  const Library library(copy("quorvane_copy.dll"));
  const auto resample = library.function<decltype(&QVN_ResampleScanlines)>("QVN_ResampleScanlines");
  std::array<uint8_t, 16> src = {}, dst = {};
  constexpr uint32_t kNearest = 0, kLinear = 1;
  EXPECT_THROW(resample(dst.data(), src.data(), -1, 4, 1, 1, 1, 1, kLinear), std::bad_alloc);
  EXPECT_THROW(resample(dst.data(), src.data(), -1, 4, 1, 1, 1, 1, kNearest), std::length_error);
}

std::vector<std::string> lines;

/// Every kind of notification does the same work, and with a logger each tells so by the version line.
TEST(Notifications, AreTheSameForProcessesAndThreads) {
  const char* name = std::getenv("QVN_TEST_NOTIFIED_LIBRARY");
  if (name == nullptr) GTEST_SKIP() << "QVN_TEST_NOTIFIED_LIBRARY names no library";
  Library library{fs::path(name)};
  const auto count = library.function<CountLines>("count_lines");
  ASSERT_NE(count, nullptr);
  EXPECT_EQ(count(), 1U) << "process attach";
  library.function<SetLineSink>("set_line_sink")([](const char* line) { lines.emplace_back(line); });
  std::size_t inside = 0;
  std::thread([&] { inside = count(); }).join();
  EXPECT_EQ(inside, 2U) << "thread attach";
  EXPECT_EQ(lines.size(), 2U) << "thread detach";
  library.unload();
  ASSERT_EQ(lines.size(), 3U) << "process detach";
  for (const std::string& line : lines) {
    EXPECT_NE(line.find("quorvane.dll (Prod. version 2.1.2.0, File version 2.1.2.0)"), std::string::npos)
        << line;
  }
}

}  // namespace
