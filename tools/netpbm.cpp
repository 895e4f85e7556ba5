// The two binary netpbm forms: header with comments, one white space, then the samples, first byte most
// significant.
#include "netpbm.h"

#include "failure.h"

namespace qvn::tool {
namespace {

bool is_space(std::uint8_t c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

class Header {
 public:
  Header(const std::vector<std::uint8_t>& bytes, const std::string& name) : bytes_(bytes), name_(name) {}

  std::uint64_t number() {
    skip_space();
    const std::size_t start = at_;
    std::uint64_t value = 0;
    while (at_ < bytes_.size() && bytes_[at_] >= '0' && bytes_[at_] <= '9' && at_ - start < 10) {
      value = value * 10 + (bytes_[at_++] - std::uint64_t{'0'});
    }
    if (at_ == start || at_ == bytes_.size()) {
      throw Failure(name_ + ": expected a netpbm header of width, height and highest value, found " +
                    (at_ == bytes_.size() ? "the end of the file" : "something else"));
    }
    return value;
  }

  /// One white space ends the header.
  std::size_t end() const {
    if (!is_space(bytes_[at_])) {
      throw Failure(name_ + ": expected a white space behind the netpbm header, found something else");
    }
    return at_ + 1;
  }

 private:
  void skip_space() {
    while (at_ < bytes_.size() && (is_space(bytes_[at_]) || bytes_[at_] == '#')) {
      if (bytes_[at_] == '#') {
        while (at_ < bytes_.size() && bytes_[at_] != '\n') {
          ++at_;
        }
      } else {
        ++at_;
      }
    }
  }

  const std::vector<std::uint8_t>& bytes_;
  const std::string& name_;
  std::size_t at_ = 2;
};

/// From 0..highest to the full range of the picture's depth, to the nearest.
void spread(Picture& picture, std::uint64_t highest, const std::string& name) {
  const std::size_t step = picture.depth / 8;
  const std::uint64_t top = step == 1 ? 0xFF : 0xFFFF;
  for (std::size_t i = 0; i < picture.bytes.size(); i += step) {
    std::uint64_t value = picture.bytes[i];
    if (step == 2) {
      value = value << 8 | picture.bytes[i + 1];
    }
    if (value > highest) {
      throw Failure(name + ": expected samples of at most " + std::to_string(highest) + ", found " +
                    std::to_string(value));
    }
    value = (value * top + highest / 2) / highest;
    if (step == 2) {
      picture.bytes[i] = static_cast<std::uint8_t>(value >> 8);
      picture.bytes[i + 1] = static_cast<std::uint8_t>(value & 0xFF);
    } else {
      picture.bytes[i] = static_cast<std::uint8_t>(value);
    }
  }
}

}  // namespace

bool looks_like_netpbm(const std::vector<std::uint8_t>& bytes) {
  return bytes.size() >= 3 && bytes[0] == 'P' && (bytes[1] == '5' || bytes[1] == '6') &&
         (is_space(bytes[2]) || bytes[2] == '#');
}

NetpbmFile decode_netpbm(const std::vector<std::uint8_t>& bytes, const std::string& name) {
  if (!looks_like_netpbm(bytes)) {
    throw Failure(name + ": expected a binary PGM or PPM file (P5 or P6), found something else");
  }
  Header header(bytes, name);
  const std::uint64_t width = header.number();
  const std::uint64_t height = header.number();
  const std::uint64_t highest = header.number();
  if (highest < 1 || highest > 65535) {
    throw Failure(name + ": expected a highest value of 1 to 65535, found " + std::to_string(highest));
  }
  const std::size_t start = header.end();

  NetpbmFile file;
  Picture& picture = file.picture;
  picture.size = checked_size(name, width, height);
  picture.channels = bytes[1] == '5' ? 1 : 3;
  picture.depth = highest < 256 ? 8 : 16;
  const std::size_t expected = picture.line_bytes() * picture.size.height;
  if (bytes.size() - start != expected) {
    throw Failure(name + " is too " + (bytes.size() - start < expected ? "short" : "long") + ": expected " +
                  std::to_string(expected) + " bytes of samples for " + to_text(picture.size) + ", found " +
                  std::to_string(bytes.size() - start));
  }
  picture.bytes.assign(bytes.begin() + static_cast<std::ptrdiff_t>(start), bytes.end());
  file.spread = highest != 0xFF && highest != 0xFFFF;
  if (file.spread) {
    spread(picture, highest, name);
  }
  return file;
}

std::vector<std::uint8_t> encode_netpbm(const Picture& picture) {
  const std::string header = std::string(picture.channels == 1 ? "P5" : "P6") + "\n" +
                             std::to_string(picture.size.width) + " " + std::to_string(picture.size.height) +
                             "\n" + (picture.depth == 8 ? "255" : "65535") + "\n";
  std::vector<std::uint8_t> bytes(header.begin(), header.end());
  bytes.insert(bytes.end(), picture.bytes.begin(), picture.bytes.end());
  return bytes;
}

}  // namespace qvn::tool
