// Bytes from and to files and pipes; the name "-" stands for standard input or standard output.
//
// A file is written beside its place under a name of its own and renamed when it is whole, so that neither a
// failure nor a signal leaves half a file or a changed old one; of several files that belong together it
// leaves all old or all new. All failures are thrown as Failure.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qvn::tool {

class InputStream {
 public:
  explicit InputStream(const std::string& path);
  /// Bytes that are there already.
  InputStream(std::string name, std::vector<std::uint8_t> bytes);

  /// "standard input", or the file's name in quotes.
  const std::string& name() const { return name_; }
  /// What a regular file says that it holds. It may hold another number.
  std::optional<std::uint64_t> length() const { return length_; }
  /// Bytes read so far.
  std::uint64_t consumed() const { return consumed_; }

  /// The next byte, or -1 at the end.
  int next();
  bool at_end() { return !fill(); }
  /// The next bytes, up to `count` of them, which stay to be read.
  std::vector<std::uint8_t> peek(std::size_t count);
  /// As many bytes as there are up to `count`. Memory grows with what is there, not with what is asked for.
  std::vector<std::uint8_t> read(std::uint64_t count);
  /// Passes over as many bytes as there are up to `count`, and says how many.
  std::uint64_t skip(std::uint64_t count);

 private:
  /// Whether there is a byte at at_, after reading more if need be.
  bool fill() { return at_ < block_.size() || load(); }
  bool load();

  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  std::string name_;
  std::optional<std::uint64_t> length_;
  std::unique_ptr<std::FILE, Closer> file_;
  std::FILE* stream_ = nullptr;
  std::vector<std::uint8_t> block_;
  std::size_t at_ = 0;
  std::uint64_t consumed_ = 0;
};

/// One file, or standard output, a device or a pipe, written piece by piece. A file is there when finish()
/// has returned, and not before.
class OutputStream {
 public:
  explicit OutputStream(std::string path);
  OutputStream(const OutputStream&) = delete;
  OutputStream& operator=(const OutputStream&) = delete;
  ~OutputStream();

  void write(const std::vector<std::uint8_t>& bytes);
  void finish();

 private:
  struct Sink;
  std::unique_ptr<Sink> sink_;
};

void write_output(const std::string& path, const std::vector<std::uint8_t>& bytes);

struct OutputFile {
  std::string path;
  std::vector<std::uint8_t> bytes;
};

/// All of them or none. Files alone, if there are several: "-", devices and pipes are refused.
void write_outputs(const std::vector<OutputFile>& files);

/// The part behind the last dot of the last component, in lower case; empty if there is none.
std::string suffix_of(const std::string& path);

}  // namespace qvn::tool
