// Reading in blocks and writing of whole files, with the sentence for each thing that can go wrong.
#include "files.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <deque>
#include <filesystem>
#include <random>
#include <system_error>
#include <utility>

#include "failure.h"
#include "process.h"

namespace qvn::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = 65536;

std::string reason(int code) { return std::generic_category().message(code); }

Failure cannot_write(const std::string& path, int code) {
  return Failure("cannot write " + (path == "-" ? "standard output" : quoted(path)) + ": " + reason(code));
}

/// A link stays a link: the file that it points to is the one to replace.
fs::path place_of(const std::string& path) {
  std::error_code code;
  fs::path place = path;
  for (int links = 0; fs::is_symlink(place, code); ++links) {
    constexpr int kMostLinks = 40;
    if (links == kMostLinks) {
      throw cannot_write(path, ELOOP);
    }
    const fs::path target = fs::read_symlink(place, code);
    place = target.is_absolute() ? target : place.parent_path() / target;
  }
  return place;
}

/// Short, and none of the place's own name, which may be as long as names can be.
std::string name_beside(const fs::path& place, const char* suffix) {
  return fs::path(place).replace_filename(".qvn-" + std::to_string(std::random_device{}()) + suffix).string();
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

/// A file beside the place that it is for. Unless it is moved there it goes with the object.
class Staged {
 public:
  explicit Staged(std::string path);
  Staged(const Staged&) = delete;
  Staged& operator=(const Staged&) = delete;
  ~Staged() { close(); }

  void write(const std::vector<std::uint8_t>& bytes);
  /// The file is whole: it gets the rights of the one that it replaces.
  void complete();
  void move_in();

  // The same in two steps, so that the old file can come back. All of them while an Undisturbed lives.
  void move_in_keeping_old();
  void take_back();

 private:
  int close() { return stream_ == nullptr ? 0 : std::fclose(std::exchange(stream_, nullptr)); }
  void rename_in();

  std::string path_;
  fs::path place_;
  Unfinished beside_;
  Unfinished old_;
  std::FILE* stream_ = nullptr;
};

Staged::Staged(std::string path)
    : path_(std::move(path)),
      place_(place_of(path_)),
      beside_(name_beside(place_, ".part")),
      old_(name_beside(place_, ".old")) {
  int trouble = 0;
  {
    const Undisturbed undisturbed;
    stream_ = std::fopen(beside_.path().c_str(), "wbx");
    if (stream_ != nullptr) {
      beside_.made();
    } else {
      trouble = errno;
    }
  }
  if (trouble != 0) {
    throw cannot_write(path_, trouble);
  }
}

void Staged::write(const std::vector<std::uint8_t>& bytes) {
  if (std::fwrite(bytes.data(), 1, bytes.size(), stream_) != bytes.size()) {
    throw cannot_write(path_, errno);
  }
}

void Staged::complete() {
  if (close() != 0) {
    throw cannot_write(path_, errno);
  }
  std::error_code ignored;
  const fs::file_status old = fs::status(place_, ignored);
  if (fs::exists(old)) {
    fs::permissions(beside_.path(), old.permissions(), ignored);
  }
}

void Staged::rename_in() {
  std::error_code code;
  fs::rename(beside_.path(), place_, code);
  if (code) {
    throw cannot_write(path_, code.value());
  }
  beside_.gone();
}

void Staged::move_in() {
  const Undisturbed undisturbed;
  rename_in();
}

void Staged::move_in_keeping_old() {
  std::error_code code;
  if (fs::exists(place_, code)) {
    fs::rename(place_, old_.path(), code);
    if (code) {
      throw cannot_write(path_, code.value());
    }
    old_.made();
  }
  try {
    rename_in();
  } catch (...) {
    if (old_.there()) {
      take_back();
    }
    throw;
  }
}

void Staged::take_back() {
  std::error_code ignored;
  if (old_.there()) {
    fs::rename(old_.path(), place_, ignored);
    old_.gone();
  } else {
    fs::remove(place_, ignored);
  }
}

}  // namespace

InputStream::InputStream(const std::string& path) : name_(path == "-" ? "standard input" : quoted(path)) {
  if (path == "-") {
    stream_ = stdin;
    return;
  }
  std::error_code code;
  const fs::file_status status = fs::status(path, code);
  if (fs::is_directory(status)) {
    throw Failure("cannot read " + name_ + ": expected a file, found a directory");
  }
  file_.reset(std::fopen(path.c_str(), "rb"));
  if (!file_) {
    throw Failure("cannot read " + name_ + ": " + reason(errno));
  }
  stream_ = file_.get();
  if (fs::is_regular_file(status)) {
    const std::uintmax_t length = fs::file_size(path, code);
    if (!code) {
      length_ = length;
    }
  }
}

InputStream::InputStream(std::string name, std::vector<std::uint8_t> bytes)
    : name_(std::move(name)), block_(std::move(bytes)) {}

bool InputStream::load() {
  if (stream_ == nullptr) {
    return false;
  }
  // What is there, and not a whole block, which a pipe may not give before it has its answer.
  block_.resize(kBlock);
  ssize_t count = 0;
  do {
    count = ::read(::fileno(stream_), block_.data(), kBlock);
  } while (count < 0 && errno == EINTR);
  const int trouble = errno;
  block_.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
  at_ = 0;
  if (count < 0) {
    throw Failure("cannot read " + name_ + ": " + reason(trouble));
  }
  return count > 0;
}

int InputStream::next() {
  if (!fill()) {
    return -1;
  }
  ++consumed_;
  return block_[at_++];
}

std::vector<std::uint8_t> InputStream::peek(std::size_t count) {
  static_cast<void>(fill());
  // Only the first bytes of all are asked for, and a block has more of them.
  const std::size_t there = std::min(count, block_.size() - at_);
  return {block_.data() + at_, block_.data() + at_ + there};
}

std::uint64_t InputStream::skip(std::uint64_t count) {
  std::uint64_t passed = 0;
  while (passed < count && fill()) {
    const std::uint64_t taken = std::min<std::uint64_t>(count - passed, block_.size() - at_);
    at_ += static_cast<std::size_t>(taken);
    passed += taken;
  }
  consumed_ += passed;
  return passed;
}

std::vector<std::uint8_t> InputStream::read(std::uint64_t count) {
  std::vector<std::uint8_t> bytes;
  // A length that the file itself confirms may be reserved at once.
  if (length_ && *length_ >= count) {
    bytes.reserve(count);
  }
  while (bytes.size() < count && fill()) {
    const std::size_t taken =
        static_cast<std::size_t>(std::min<std::uint64_t>(count - bytes.size(), block_.size() - at_));
    bytes.insert(bytes.end(), block_.data() + at_, block_.data() + at_ + taken);
    at_ += taken;
    consumed_ += taken;
  }
  return bytes;
}

/// Either a stream that is written in place or a file that is staged: a device or a named pipe has no place
/// beside it to write to, and must not be replaced by a file.
struct OutputStream::Sink {
  std::string path;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> device{nullptr, std::fclose};
  std::unique_ptr<Staged> staged;

  void check(bool done) const {
    if (!done) {
      throw cannot_write(path, errno);
    }
  }
};

OutputStream::OutputStream(std::string path) : sink_(std::make_unique<Sink>()) {
  sink_->path = std::move(path);
  if (sink_->path == "-") {
    return;
  }
  check_name(sink_->path);
  if (is_device(sink_->path)) {
    sink_->device.reset(std::fopen(sink_->path.c_str(), "wb"));
    sink_->check(sink_->device != nullptr);
  } else {
    sink_->staged = std::make_unique<Staged>(sink_->path);
  }
}

OutputStream::~OutputStream() = default;

void OutputStream::write(const std::vector<std::uint8_t>& bytes) {
  if (sink_->staged) {
    sink_->staged->write(bytes);
    return;
  }
  // What reads the other end of a pipe waits for whole frames.
  std::FILE* const stream = sink_->device ? sink_->device.get() : stdout;
  sink_->check(std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size() &&
               std::fflush(stream) == 0);
}

void OutputStream::finish() {
  if (sink_->staged) {
    sink_->staged->complete();
    sink_->staged->move_in();
  } else if (sink_->device) {
    sink_->check(std::fclose(sink_->device.release()) == 0);
  }
}

std::string suffix_of(const std::string& path) {
  std::string suffix = fs::path(path).extension().string();
  if (!suffix.empty()) {
    suffix.erase(0, 1);
  }
  std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return suffix;
}

void write_output(const std::string& path, const std::vector<std::uint8_t>& bytes) {
  OutputStream output(path);
  output.write(bytes);
  output.finish();
}

void write_outputs(const std::vector<OutputFile>& files) {
  if (files.size() == 1) {
    write_output(files.front().path, files.front().bytes);
    return;
  }
  std::deque<Staged> staged;
  for (const OutputFile& file : files) {
    check_name(file.path);
    if (is_device(file.path)) {
      throw Failure("cannot write " + quoted(file.path) + ": expected a file, found a device or a pipe");
    }
    staged.emplace_back(file.path);
    staged.back().write(file.bytes);
    staged.back().complete();
  }
  const Undisturbed undisturbed;
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
