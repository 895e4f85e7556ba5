// Bytes from and to files and pipes; the name "-" stands for standard input or standard output.
//
// A file is written beside its place under a name of its own and renamed when it is whole, so that a failure
// leaves neither half a file nor a changed old one; of several files that belong together it leaves all old
// or all new. All failures are thrown as Failure.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qvn::tool {

struct Input {
  std::vector<std::uint8_t> bytes;
  std::uint64_t length = 0;  // what the file holds; for a pipe no more than was read
  bool cut = false;          // there is more than `bytes`
};

/// Reads at most `limit` bytes.
Input read_input(const std::string& path, std::uint64_t limit);
void write_output(const std::string& path, const std::vector<std::uint8_t>& bytes);

struct OutputFile {
  std::string path;
  std::vector<std::uint8_t> bytes;
};

/// All of them or none. Files alone: "-", devices and pipes are refused.
void write_outputs(const std::vector<OutputFile>& files);

/// "standard input", or the name in quotes.
std::string input_name(const std::string& path);
/// The part behind the last dot of the last component, in lower case; empty if there is none.
std::string suffix_of(const std::string& path);

}  // namespace qvn::tool
