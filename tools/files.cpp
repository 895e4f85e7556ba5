// Reading and writing of whole files, with the sentence for each thing that can go wrong.
#include "files.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <random>
#include <system_error>

#include "failure.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace qvn::tool {
namespace {

namespace fs = std::filesystem;

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closer>;

std::string reason(int code) { return std::generic_category().message(code); }

void make_binary(std::FILE* stream) {
#ifdef _WIN32
  _setmode(_fileno(stream), _O_BINARY);
#else
  static_cast<void>(stream);
#endif
}

void read_stream(std::FILE* stream, const std::string& name, std::uint64_t limit, Input& input) {
  std::array<std::uint8_t, 65536> block{};
  for (;;) {
    const std::size_t count = std::fread(block.data(), 1, block.size(), stream);
    if (count == 0) {
      break;
    }
    const std::size_t kept =
        static_cast<std::size_t>(std::min<std::uint64_t>(count, limit - input.bytes.size()));
    input.bytes.insert(input.bytes.end(), block.data(), block.data() + kept);
    if (kept < count) {
      input.cut = true;
      break;
    }
  }
  if (std::ferror(stream) != 0) {
    throw Failure("cannot read " + name + ": " + reason(errno));
  }
}

/// False, with errno set, as soon as a byte does not reach the file.
bool write_stream(std::FILE* stream, const std::vector<std::uint8_t>& bytes) {
  return std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() && std::fflush(stream) == 0;
}

Failure cannot_write(const std::string& path, int code) {
  return Failure("cannot write " + quoted(path) + ": " + reason(code));
}

/// A device or a named pipe has no place beside it to write to, and must not be replaced by a file.
void write_in_place(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  File file(std::fopen(path.c_str(), "wb"));
  if (!file || !write_stream(file.get(), bytes)) {
    throw cannot_write(path, errno);
  }
}

/// Removes what it names, unless told that it is wanted.
class Unfinished {
 public:
  explicit Unfinished(fs::path path) : path_(std::move(path)) {}
  Unfinished(const Unfinished&) = delete;
  Unfinished& operator=(const Unfinished&) = delete;
  ~Unfinished() {
    if (!kept_) {
      std::error_code ignored;
      fs::remove(path_, ignored);
    }
  }
  void keep() { kept_ = true; }

 private:
  fs::path path_;
  bool kept_ = false;
};

void write_beside(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  std::error_code code;
  // A link stays a link: the file that it points to is the one to replace.
  const fs::path place = fs::is_symlink(path, code) ? fs::weakly_canonical(path, code) : fs::path(path);
  const fs::file_status old = fs::status(place, code);

  std::string name(".");
  name += place.filename().string() + "." + std::to_string(std::random_device{}()) + ".part";
  const fs::path beside = fs::path(place).replace_filename(name);
  File file(std::fopen(beside.string().c_str(), "wbx"));
  if (!file) {
    throw cannot_write(path, errno);
  }
  Unfinished unfinished(beside);
  if (!write_stream(file.get(), bytes)) {
    throw cannot_write(path, errno);
  }
  if (std::fclose(file.release()) != 0) {
    throw cannot_write(path, errno);
  }
  if (fs::exists(old)) {
    fs::permissions(beside, old.permissions(), code);
  }
  fs::rename(beside, place, code);
  if (code) {
    throw cannot_write(path, code.value());
  }
  unfinished.keep();
}

}  // namespace

std::string input_name(const std::string& path) { return path == "-" ? "standard input" : quoted(path); }

std::string suffix_of(const std::string& path) {
  std::string suffix = fs::path(path).extension().string();
  if (!suffix.empty()) {
    suffix.erase(0, 1);
  }
  std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return suffix;
}

Input read_input(const std::string& path, std::uint64_t limit) {
  Input input;
  if (path == "-") {
    make_binary(stdin);
    read_stream(stdin, input_name(path), limit, input);
    input.length = input.bytes.size();
    return input;
  }
  std::error_code code;
  const fs::file_status status = fs::status(path, code);
  if (fs::is_directory(status)) {
    throw Failure("cannot read " + quoted(path) + ": expected a file, found a directory");
  }
  File file(std::fopen(path.c_str(), "rb"));
  if (!file) {
    throw Failure("cannot read " + quoted(path) + ": " + reason(errno));
  }
  read_stream(file.get(), input_name(path), limit, input);
  input.length = input.bytes.size();
  if (fs::is_regular_file(status)) {
    const std::uintmax_t length = fs::file_size(path, code);
    input.length = code ? input.length : length;
  }
  return input;
}

void write_output(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  if (path == "-") {
    make_binary(stdout);
    if (!write_stream(stdout, bytes)) {
      throw Failure("cannot write standard output: " + reason(errno));
    }
    return;
  }
  if (path.empty()) {
    throw Failure("cannot write the output: expected a file name, found an empty one");
  }
  std::error_code code;
  const fs::file_status status = fs::status(path, code);
  if (fs::is_directory(status)) {
    throw Failure("cannot write " + quoted(path) + ": expected a file, found a directory");
  }
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    write_in_place(path, bytes);
  } else {
    write_beside(path, bytes);
  }
}

}  // namespace qvn::tool
