// The PNG encoder. libpng reports trouble by a long jump, so the function that sets the jump owns nothing:
// what has a destructor lives in its caller, and no exception passes through the library.
#include "png_file.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <exception>

#include "failure.h"

namespace qvn::tool {
namespace {

struct Sink {
  std::vector<std::uint8_t> bytes;
  std::string trouble;
};

void on_write(png_structp png, png_bytep data, png_size_t count) {
  bool stored = true;
  try {
    Sink& sink = *static_cast<Sink*>(png_get_io_ptr(png));
    sink.bytes.insert(sink.bytes.end(), data, data + count);
  } catch (const std::exception&) {
    stored = false;
  }
  if (!stored) {
    png_error(png, "not enough memory");
  }
}

void on_flush(png_structp /*png*/) {}

void on_error(png_structp png, png_const_charp text) {
  static_cast<Sink*>(png_get_error_ptr(png))->trouble = text;
  png_longjmp(png, 1);
}

void on_warning(png_structp /*png*/, png_const_charp /*text*/) {}

int colour_type(std::uint32_t channels) {
  return channels == 1 ? PNG_COLOR_TYPE_GRAY : channels == 3 ? PNG_COLOR_TYPE_RGB : PNG_COLOR_TYPE_RGB_ALPHA;
}

bool write_all(png_structp png, png_infop info, const Picture& picture) {
  if (setjmp(png_jmpbuf(png)) != 0) {
    return false;
  }
  png_set_IHDR(png, info, picture.size.width, picture.size.height, static_cast<int>(picture.depth),
               colour_type(picture.channels), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  png_write_info(png, info);
  for (std::uint32_t y = 0; y < picture.size.height; ++y) {
    png_write_row(png, picture.bytes.data() + y * picture.line_bytes());
  }
  png_write_end(png, info);
  return true;
}

}  // namespace

std::vector<std::uint8_t> encode_png(const Picture& picture) {
  Sink sink;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &sink, on_error, on_warning);
  png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
  bool written = false;
  if (info != nullptr) {
    png_set_write_fn(png, &sink, on_write, on_flush);
    // A frame may be one long line; the library's own limit is a million pixels a side.
    png_set_user_limits(png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    written = write_all(png, info, picture);
  }
  png_destroy_write_struct(&png, &info);
  if (!written) {
    throw Failure("cannot encode the PNG: " + (sink.trouble.empty() ? "not enough memory" : sink.trouble));
  }
  return std::move(sink.bytes);
}

}  // namespace qvn::tool
