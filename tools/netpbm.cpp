// The two binary netpbm forms: header with comments, one white space, then the samples, first byte most
// significant.
#include "netpbm.h"

#include "failure.h"

namespace qvn::tool {
namespace {

bool is_space(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

class Header {
 public:
  explicit Header(InputStream& input) : input_(input) {}

  std::uint64_t number() {
    skip_space();
    constexpr std::uint64_t kEnough = 10'000'000'000;
    std::uint64_t value = 0;
    std::size_t digits = 0;
    for (; last_ >= '0' && last_ <= '9' && value < kEnough; ++digits) {
      value = value * 10 + (static_cast<std::uint64_t>(last_) - '0');
      advance();
    }
    if (digits == 0 || last_ < 0) {
      throw Failure(input_.name() + ": expected a netpbm header of width, height and highest value, found " +
                    (last_ < 0 ? "the end of the file" : "something else"));
    }
    return value;
  }

  /// One white space ends the header.
  void end() const {
    if (!is_space(last_)) {
      throw Failure(input_.name() +
                    ": expected a white space behind the netpbm header, found something else");
    }
  }

  std::uint64_t length() const { return length_; }

 private:
  void advance() {
    last_ = input_.next();
    if (++length_ > kLongest) {
      throw Failure(input_.name() + ": expected a netpbm header of at most " + std::to_string(kLongest) +
                    " bytes, found more");
    }
  }

  void skip_space() {
    bool comment = false;
    while (last_ >= 0 && (comment || is_space(last_) || last_ == '#')) {
      comment = last_ != '\n' && (comment || last_ == '#');
      advance();
    }
  }

  static constexpr std::uint64_t kLongest = 65536;

  InputStream& input_;
  int last_ = ' ';
  std::uint64_t length_ = 2;  // with the letter and digit before the numbers
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

NetpbmFile read_netpbm(InputStream& input) {
  const std::string& name = input.name();
  if (!looks_like_netpbm(input.peek(3))) {
    throw Failure(name + ": expected a binary PGM or PPM file (P5 or P6), found something else");
  }
  input.next();
  NetpbmFile file;
  Picture& picture = file.picture;
  picture.channels = input.next() == '5' ? 1 : 3;
  Header header(input);
  const std::uint64_t width = header.number();
  const std::uint64_t height = header.number();
  const std::uint64_t highest = header.number();
  if (highest < 1 || highest > 65535) {
    throw Failure(name + ": expected a highest value of 1 to 65535, found " + std::to_string(highest));
  }
  header.end();

  picture.size = checked_size(name, width, height);
  picture.depth = highest < 256 ? 8 : 16;
  const std::size_t expected = picture.line_bytes() * picture.size.height;
  picture.bytes = input.read(expected);
  if (picture.bytes.size() != expected) {
    throw Failure(name + " is too short: expected " + std::to_string(expected) + " bytes of samples for " +
                  to_text(picture.size) + ", found " + std::to_string(picture.bytes.size()));
  }
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
