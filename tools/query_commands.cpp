// The subcommands that ask the library: formats, status and bits; and the list of all subcommands.
#include <quorvane/quorvane.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <memory>

#include "about.h"
#include "commands.h"
#include "conversions.h"
#include "failure.h"
#include "files.h"

namespace qvn::tool {
namespace {

/// Decimal, or hexadecimal behind 0x.
std::uint32_t parse_code(const std::string& text) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  std::uint32_t code = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data() + (hexadecimal ? 2 : 0), end, code, hexadecimal ? 16 : 10);
  if (parsed.ec != std::errc{} || parsed.ptr != end) {
    throw Failure("expected a code of 32 bits such as 5 or 0x88000002, found " + quoted(text));
  }
  return code;
}

void print(const std::string& text) { write_output("-", {text.begin(), text.end()}); }

using Codes = std::vector<std::string>;

std::string texts_of(const Codes& codes) {
  std::string text;
  for (const std::string& code : codes) {
    const std::uint32_t status = parse_code(code);
    std::array<char, 16> name{};
    static_cast<void>(std::snprintf(name.data(), name.size(), "0x%08X", status));
    text += std::string(name.data()) + "  " + status_text(status) + "\n";
  }
  return text;
}

std::string bits_of(const Codes& codes) {
  std::string text;
  for (const std::string& code : codes) {
    const std::uint32_t format = parse_code(code);
    std::uint32_t bits = 0;
    if (const std::uint32_t status = QVN_GetBitsPerPixel(format, &bits); status != QVN_OK) {
      throw Failure("QVN_GetBitsPerPixel refused the code " + std::to_string(format) + ": " +
                    status_text(status));
    }
    text += std::to_string(format) + "  " + std::to_string(bits) + "\n";
  }
  return text;
}

Command code_command(const std::string& name, const std::string& about, const std::string& what,
                     std::string (*answer)(const Codes&)) {
  const auto codes = std::make_shared<Codes>();
  return {name,
          about,
          {{.name = "CODES",
            .about = what + ", decimal or hexadecimal behind 0x",
            .texts = codes.get(),
            .required = true}},
          [codes, answer] { print(answer(*codes)); }};
}

}  // namespace

Command formats_command() {
  return {"formats", "List what can be read, by which methods, and what can be written", {}, [] {
            print(list_formats());
          }};
}

Command status_command() {
  return code_command("status", "Say what status codes mean", "Status codes", texts_of);
}

Command bits_command() {
  return code_command("bits", "Say how many bits a pixel takes by format codes of the library",
                      "Format codes (ColorCodingId)", bits_of);
}

CommandLine all_commands() {
  CommandLine line;
  line.commands = {chart_command(), convert_command(), sheet_command()};
  for (Command& command : rearrange_commands()) {
    line.commands.push_back(std::move(command));
  }
  line.commands.push_back(formats_command());
  line.commands.push_back(status_command());
  line.commands.push_back(bits_command());
  line.commands.push_back(completion_command());
  line.groups = correction_groups();
  return line;
}

}  // namespace qvn::tool
