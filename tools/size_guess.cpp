// The table of usual sizes. The first that fits a length is the guess: sizes that cameras have before those
// that only sensors have, each by its number of pixels.
#include "size_guess.h"

#include <array>
#include <charconv>
#include <filesystem>

#include "failure.h"

namespace qvn::tool {
namespace {

constexpr std::array<Size, 74> kUsual{{
    // of the camera standard and of screens
    {160, 120},
    {320, 240},
    {640, 480},
    {800, 600},
    {1024, 768},
    {1280, 960},
    {1600, 1200},
    {2048, 1536},
    {4096, 3072},
    {1280, 720},
    {1920, 1080},
    {3840, 2160},
    {4096, 2160},
    {768, 512},
    {720, 480},
    {720, 576},
    {768, 576},
    {640, 400},
    {1280, 800},
    {1280, 1024},
    {1920, 1200},
    {256, 256},
    {512, 512},
    {1024, 1024},
    {2048, 2048},
    {4096, 4096},
    // of sensors, with and without their margins
    {640, 512},
    {656, 492},
    {656, 494},
    {659, 494},
    {728, 544},
    {744, 480},
    {752, 480},
    {776, 580},
    {780, 580},
    {782, 582},
    {808, 608},
    {960, 720},
    {1032, 776},
    {1032, 778},
    {1034, 779},
    {1288, 964},
    {1292, 964},
    {1296, 966},
    {1312, 1082},
    {1360, 1024},
    {1384, 1036},
    {1388, 1038},
    {1392, 1040},
    {1440, 1080},
    {1456, 1088},
    {1624, 1224},
    {1628, 1236},
    {1936, 1216},
    {1936, 1458},
    {2048, 1088},
    {2448, 2048},
    {2448, 2050},
    {2452, 2056},
    {2456, 2058},
    {2464, 2056},
    {2592, 1944},
    {2592, 2048},
    {3072, 2048},
    {3088, 2064},
    {3376, 2704},
    {3840, 2748},
    {4024, 3036},
    {4096, 3000},
    {4112, 3008},
    {5120, 5120},
    {5472, 3648},
    {6464, 4852},
    {6576, 4384},
}};

bool fits(const SourceFormat& format, Size size, std::uint64_t length) {
  return size.pixels() % format.group == 0 &&
         std::uint64_t{size.pixels()} / format.group * format.group_bytes == length;
}

/// Any WIDTHxHEIGHT in a name.
std::optional<Size> size_in_name(const std::string& path, std::uint64_t length, const SourceFormat& format) {
  const std::string name = std::filesystem::path(path).filename().string();
  const char* const end = name.data() + name.size();
  constexpr const char* kDigits = "0123456789";
  for (std::size_t at = name.find_first_of(kDigits); at < name.size(); at = name.find_first_of(kDigits, at)) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    const auto first = std::from_chars(name.data() + at, end, width);
    at = static_cast<std::size_t>(first.ptr - name.data());
    if (first.ec != std::errc{} || first.ptr == end || *first.ptr != 'x') {
      continue;
    }
    const auto second = std::from_chars(first.ptr + 1, end, height);
    const Size size{width, height};
    if (second.ec == std::errc{} && width != 0 && height != 0 && size.pixels() <= kMaxPixels &&
        fits(format, size, length)) {
      return size;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<SizeGuess> guess_size(const std::string& path, std::uint64_t length,
                                    const SourceFormat& format) {
  if (const std::optional<Size> named = size_in_name(path, length, format)) {
    return SizeGuess{*named, "by its name"};
  }
  std::optional<SizeGuess> guess;
  std::string others;
  for (const Size size : kUsual) {
    if (!fits(format, size, length)) {
      continue;
    }
    if (!guess) {
      guess = SizeGuess{size, {}};
    } else {
      others += (others.empty() ? ", which also fits " : ", ") + to_text(size);
    }
  }
  if (guess) {
    guess->reason = "by its length of " + std::to_string(length) + " bytes" + others;
  }
  return guess;
}

std::string what_fits(std::uint64_t length) {
  std::string text;
  for (const SourceFormat& format : source_formats()) {
    for (const Size size : kUsual) {
      if (fits(format, size, length)) {
        append_part(text, ", ", std::string(format.name) + " " + to_text(size));
        break;
      }
    }
  }
  return text;
}

}  // namespace qvn::tool
