// Reading and writing of whole files, with the sentence for each thing that can go wrong.
#include "files.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <deque>
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

/// A file that is whole, beside the place that it is for. Unless it is moved there it goes with the object.
class Staged {
 public:
  Staged(std::string path, const std::vector<std::uint8_t>& bytes);
  Staged(const Staged&) = delete;
  Staged& operator=(const Staged&) = delete;
  ~Staged() {
    std::error_code ignored;
    fs::remove(beside_, ignored);
    fs::remove(old_, ignored);
  }

  void move_in();
  /// The same in two steps, so that take_back() finds the old file.
  void move_in_keeping_old();
  void take_back();

 private:
  fs::path name_beside(const char* suffix) const {
    const std::string name = std::string(".").append(place_.filename().string()) + "." +
                             std::to_string(std::random_device{}()) + suffix;
    return fs::path(place_).replace_filename(name);
  }

  std::string path_;
  fs::path place_;
  fs::path beside_;
  fs::path old_;
};

Staged::Staged(std::string path, const std::vector<std::uint8_t>& bytes) : path_(std::move(path)) {
  std::error_code code;
  // A link stays a link: the file that it points to is the one to replace.
  place_ = path_;
  for (int links = 0; fs::is_symlink(place_, code); ++links) {
    constexpr int kMostLinks = 40;
    if (links == kMostLinks) {
      throw cannot_write(path_, ELOOP);
    }
    const fs::path target = fs::read_symlink(place_, code);
    place_ = target.is_absolute() ? target : place_.parent_path() / target;
  }
  const fs::path beside = name_beside(".part");
  File file(std::fopen(beside.string().c_str(), "wbx"));
  if (!file) {
    throw cannot_write(path_, errno);
  }
  int trouble = write_stream(file.get(), bytes) ? 0 : errno;
  if (std::fclose(file.release()) != 0 && trouble == 0) {
    trouble = errno;
  }
  if (trouble != 0) {
    // The destructor does not run for an object that was never whole.
    fs::remove(beside, code);
    throw cannot_write(path_, trouble);
  }
  beside_ = beside;
  const fs::file_status old = fs::status(place_, code);
  if (fs::exists(old)) {
    fs::permissions(beside_, old.permissions(), code);
  }
}

void Staged::move_in() {
  std::error_code code;
  fs::rename(beside_, place_, code);
  if (code) {
    throw cannot_write(path_, code.value());
  }
  beside_.clear();
}

void Staged::move_in_keeping_old() {
  std::error_code code;
  if (fs::exists(place_, code)) {
    const fs::path old = name_beside(".old");
    fs::rename(place_, old, code);
    if (code) {
      throw cannot_write(path_, code.value());
    }
    old_ = old;
  }
  try {
    move_in();
  } catch (...) {
    if (!old_.empty()) {
      take_back();
    }
    throw;
  }
}

void Staged::take_back() {
  std::error_code ignored;
  if (old_.empty()) {
    fs::remove(place_, ignored);
  } else {
    fs::rename(old_, place_, ignored);
    old_.clear();
  }
}

void check_name(const std::string& path) {
  if (path.empty()) {
    throw Failure("cannot write the output: expected a file name, found an empty one");
  }
  std::error_code code;
  if (fs::is_directory(path, code)) {
    throw Failure("cannot write " + quoted(path) + ": expected a file, found a directory");
  }
}

bool is_device(const std::string& path) {
  std::error_code code;
  const fs::file_status status = fs::status(path, code);
  return fs::exists(status) && !fs::is_regular_file(status);
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
  // How long a file says that it is serves the message alone: what was read is what there is.
  if (input.cut && fs::is_regular_file(status)) {
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
  check_name(path);
  if (is_device(path)) {
    write_in_place(path, bytes);
  } else {
    Staged(path, bytes).move_in();
  }
}

void write_outputs(const std::vector<OutputFile>& files) {
  std::deque<Staged> staged;
  for (const OutputFile& file : files) {
    check_name(file.path);
    if (is_device(file.path)) {
      throw Failure("cannot write " + quoted(file.path) + ": expected a file, found a device or a pipe");
    }
    staged.emplace_back(file.path, file.bytes);
  }
  std::size_t moved = 0;
  try {
    for (; moved < staged.size(); ++moved) {
      staged[moved].move_in_keeping_old();
    }
  } catch (...) {
    while (moved-- > 0) {
      staged[moved].take_back();
    }
    throw;
  }
}

}  // namespace qvn::tool
