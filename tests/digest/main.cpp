/// Prints the sheet, or compares it with a kept one: digest_sheet [FILE]
///
/// Left out, because they differ between systems by design: the system's texts of QVN_GetErrorInfo, the
/// values of the capability flags (their form is in), what depends on the C library's power function (objects
/// of kinds 4 and 5), and QVN_Raw12ToBGR_CC with an object of kind 9, which reads words as bytes in the order
/// of memory.
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "digest/sheet.h"

namespace {

std::vector<std::string> printed_sheet() {
  digest::Sheet sheet;
  digest::add_queries(sheet);
  digest::add_runs(sheet);
  digest::add_planes(sheet);
  digest::add_mosaics(sheet);
  digest::add_corrected(sheet);
  digest::add_cygm(sheet);
  digest::add_utility(sheet);
  std::vector<std::string> lines;
  for (const auto& [name, value] : sheet.lines()) {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016" PRIx64, value);
    lines.push_back(name + ": " + digits);
  }
  return lines;
}

std::vector<std::string> read_lines(const char* path) {
  std::ifstream file(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> lines = printed_sheet();
  if (argc < 2) {
    for (const std::string& line : lines) std::printf("%s\n", line.c_str());
    return 0;
  }
  const std::vector<std::string> kept = read_lines(argv[1]);
  if (kept == lines) {
    std::printf("%zu lines, all as kept\n", lines.size());
    return 0;
  }
  for (const std::string& line : lines) {
    if (std::find(kept.begin(), kept.end(), line) == kept.end()) std::printf("not kept: %s\n", line.c_str());
  }
  for (const std::string& line : kept) {
    if (std::find(lines.begin(), lines.end(), line) == lines.end()) {
      std::printf("not found: %s\n", line.c_str());
    }
  }
  return 1;
}
