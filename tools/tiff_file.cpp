// The TIFF encoder over a file in memory. No exception passes through libtiff, which takes a short count for
// a failure; its own words for one are kept for the thread that asked.
#include "tiff_file.h"

#include <tiffio.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <memory>
#include <utility>

#include "failure.h"

namespace qvn::tool {
namespace {

struct Memory {
  std::vector<std::uint8_t> bytes;
  std::size_t at = 0;
};

Memory& memory_of(thandle_t handle) { return *static_cast<Memory*>(handle); }

thread_local std::array<char, 256> trouble;

void on_error(const char* /*module*/, const char* format, va_list arguments) {
  static_cast<void>(std::vsnprintf(trouble.data(), trouble.size(), format, arguments));
}

tmsize_t read(thandle_t handle, void* data, tmsize_t count) {
  Memory& memory = memory_of(handle);
  const std::size_t there = std::min(static_cast<std::size_t>(count),
                                     memory.bytes.size() - std::min(memory.at, memory.bytes.size()));
  std::copy_n(memory.bytes.data() + memory.at, there, static_cast<std::uint8_t*>(data));
  memory.at += there;
  return static_cast<tmsize_t>(there);
}

tmsize_t write(thandle_t handle, void* data, tmsize_t count) {
  Memory& memory = memory_of(handle);
  const std::size_t end = memory.at + static_cast<std::size_t>(count);
  try {
    memory.bytes.resize(std::max(memory.bytes.size(), end));
  } catch (const std::exception&) {
    return 0;
  }
  std::copy_n(static_cast<const std::uint8_t*>(data), count, memory.bytes.data() + memory.at);
  memory.at = end;
  return count;
}

toff_t seek(thandle_t handle, toff_t offset, int whence) {
  Memory& memory = memory_of(handle);
  const std::size_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? memory.at : memory.bytes.size();
  memory.at = from + static_cast<std::size_t>(offset);
  return memory.at;
}

int close(thandle_t /*handle*/) { return 0; }
toff_t size(thandle_t handle) { return memory_of(handle).bytes.size(); }

/// libtiff takes words in the machine's order; pictures hold them big-endian.
void to_host_words(std::vector<std::uint8_t>& line) {
  if constexpr (std::endian::native == std::endian::little) {
    for (std::size_t i = 0; i + 2 <= line.size(); i += 2) {
      std::swap(line[i], line[i + 1]);
    }
  }
}

bool write_picture(TIFF* tiff, const Picture& picture) {
  bool good = true;
  const auto set = [&](std::uint32_t tag, auto value) { good = good && TIFFSetField(tiff, tag, value) == 1; };
  set(TIFFTAG_IMAGEWIDTH, picture.size.width);
  set(TIFFTAG_IMAGELENGTH, picture.size.height);
  set(TIFFTAG_BITSPERSAMPLE, picture.depth);
  set(TIFFTAG_SAMPLESPERPIXEL, picture.channels);
  set(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  set(TIFFTAG_PHOTOMETRIC, picture.channels == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  if (picture.channels == 4) {
    const std::uint16_t opacity = EXTRASAMPLE_UNASSALPHA;
    good = good && TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &opacity) == 1;
  }
  set(TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  std::vector<std::uint8_t> line;
  for (std::uint32_t y = 0; good && y < picture.size.height; ++y) {
    const std::uint8_t* const start = picture.bytes.data() + y * picture.line_bytes();
    line.assign(start, start + picture.line_bytes());
    if (picture.depth == 16) {
      to_host_words(line);
    }
    good = TIFFWriteScanline(tiff, line.data(), y, 0) == 1;
  }
  return good && TIFFFlush(tiff) == 1;
}

}  // namespace

std::vector<std::uint8_t> encode_tiff(const Picture& picture) {
  TIFFSetErrorHandler(on_error);
  TIFFSetWarningHandler(nullptr);
  trouble[0] = '\0';
  Memory memory;
  const auto closer = [](TIFF* tiff) { TIFFClose(tiff); };
  std::unique_ptr<TIFF, decltype(closer)> tiff(
      TIFFClientOpen("picture", "w", &memory, read, write, seek, close, size, nullptr, nullptr), closer);
  const bool written = tiff != nullptr && write_picture(tiff.get(), picture);
  tiff.reset();
  if (!written) {
    throw Failure("cannot encode the TIFF: " +
                  std::string(trouble[0] == '\0' ? "not enough memory" : trouble.data()));
  }
  return std::move(memory.bytes);
}

}  // namespace qvn::tool
