/// QVN_FlipVertical and QVN_InterlacedToProgressive where the offset of a line passes 2^32 and wraps.
///
/// Such frames have gigabytes. Here they are three lines of memory that repeat over a wide range of
/// addresses; all around the range is inaccessible, so that an offset that does not wrap ends the program.
#include <gtest/gtest.h>
#include <quorvane/quorvane.h>

// Other processors are mostly emulated where tests run, and gigabytes take them minutes.
#if defined(__linux__) && defined(__x86_64__)

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstddef>

namespace {

#if defined(__SANITIZE_THREAD__)
constexpr bool kThreadSanitizer = true;
#elif defined(__has_feature)
constexpr bool kThreadSanitizer = __has_feature(thread_sanitizer);
#else
constexpr bool kThreadSanitizer = false;
#endif

/// A closed range of addresses; part of it, on each side of data(), shows the same three lines over and over.
/// Not usable where the system refuses that many mappings.
class RepeatingMemory {
 public:
  /// At least so many lines before and behind data().
  RepeatingMemory(std::size_t line_bytes, std::size_t lines_before, std::size_t lines_behind)
      : line_bytes_(line_bytes) {
    const std::size_t period = 3 * line_bytes;
    const std::size_t periods_before = (lines_before + 2) / 3;
    const std::size_t periods = periods_before + (lines_behind + 2) / 3;
    size_ = kClosed + periods * period + kClosed;
    void* const range = mmap(nullptr, size_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (range == MAP_FAILED) return;
    range_ = static_cast<std::uint8_t*>(range);
    const int file = memfd_create("lines", 0);
    usable_ = file >= 0 && ftruncate(file, static_cast<off_t>(period)) == 0;
    std::uint8_t* place = range_ + kClosed;
    data_ = place + periods_before * period;
    for (std::size_t k = 0; usable_ && k < periods; ++k, place += period) {
      usable_ = mmap(place, period, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED | MAP_POPULATE, file, 0) ==
                place;
    }
    if (file >= 0) close(file);
    for (std::size_t i = 0; usable_ && i < period; ++i) {
      data_[i] = static_cast<std::uint8_t>(i / line_bytes * 16 + i % 13);
    }
  }
  RepeatingMemory(const RepeatingMemory&) = delete;
  RepeatingMemory& operator=(const RepeatingMemory&) = delete;
  ~RepeatingMemory() {
    if (range_ != nullptr) munmap(range_, size_);
  }

  bool usable() const { return usable_; }
  std::uint8_t* data() { return data_; }

  /// Some bytes of a line.
  std::array<int, 3> line(std::size_t number) const {
    const std::uint8_t* const bytes = data_ + number * line_bytes_;
    return {bytes[0], bytes[line_bytes_ / 2], bytes[line_bytes_ - 1]};
  }

 private:
  /// More than the offset that would not have wrapped.
  static constexpr std::size_t kClosed = std::size_t{5} << 30;

  std::size_t line_bytes_;
  std::size_t size_ = 0;
  std::uint8_t* range_ = nullptr;
  std::uint8_t* data_ = nullptr;
  bool usable_ = false;
};

/// 65541 lines of 2^16 bytes: the last one lies at 2^32 + 4 * 2^16, so that the walk begins with lines 0 and
/// 4, and goes on with 1 and 3, 2 and 2, 3 and 1, 4 and 0, 5 and -1 ... 32769 and -32765. In memory that
/// repeats every three lines these are 0 and 1, 1 and 0, 2 and 2, again and again; the 32770 exchanges end
/// with 0 and 1.
TEST(FlipVertical, OffsetOfTheLastLineWraps) {
  if (kThreadSanitizer) GTEST_SKIP() << "the sanitizer keeps a multiple of all addresses written";
  constexpr std::uint32_t kLine = 1 << 16;
  RepeatingMemory frame(kLine, 32765, 32770);
  if (!frame.usable()) GTEST_SKIP() << "no memory that repeats";
  const std::array before = {frame.line(0), frame.line(1), frame.line(2)};
  ASSERT_EQ(QVN_OK, QVN_FlipVertical(frame.data(), kLine, 65541));
  EXPECT_EQ(before[1], frame.line(0));
  EXPECT_EQ(before[0], frame.line(1));
  EXPECT_EQ(before[2], frame.line(2));
}

/// 65546 lines of 2^17 samples: the second field lies at 2^16 * 65546 = 2^32 + 5 * 2^17. The last lines of
/// the output are those that stay: 65543 is line 32771 of the source, 65544 line 5 + 32772, 65545 line 32772;
/// that is 2, 0 and 1 from 2, 2 and 0 in memory that repeats every three lines.
TEST(InterlacedToProgressive, OffsetOfTheSecondFieldWraps) {
  if (kThreadSanitizer) GTEST_SKIP() << "the sanitizer keeps a multiple of all addresses written";
  constexpr std::uint32_t kLine = 1 << 17;
  RepeatingMemory src(kLine, 0, 32778);
  RepeatingMemory dst(kLine, 0, 65546);
  if (!src.usable() || !dst.usable()) GTEST_SKIP() << "no memory that repeats";
  const std::array before = {src.line(0), src.line(1), src.line(2)};
  ASSERT_EQ(QVN_OK, QVN_InterlacedToProgressive(dst.data(), src.data(), kLine, 65546));
  EXPECT_EQ(before[2], dst.line(0));
  EXPECT_EQ(before[0], dst.line(1));
  EXPECT_EQ(before[2], dst.line(2));
  EXPECT_EQ(before, (std::array{src.line(0), src.line(1), src.line(2)}));
}

}  // namespace

#endif
