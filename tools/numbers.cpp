// Parsing of whole numbers.
#include "numbers.h"

#include <charconv>

#include "failure.h"

namespace qvn::tool {

std::int64_t parse_whole(const std::string& option, const std::string& text, std::int64_t least,
                         std::int64_t most) {
  std::int64_t value = 0;
  const char* const end = text.data() + text.size();
  const auto parsed = std::from_chars(text.data(), end, value);
  if (parsed.ec != std::errc{} || parsed.ptr != end || value < least || value > most) {
    throw Failure(option + ": expected a whole number from " + std::to_string(least) + " to " +
                  std::to_string(most) + ", found " + quoted(text));
  }
  return value;
}

}  // namespace qvn::tool
