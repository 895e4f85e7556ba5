// What goes wrong with a user's command: one sentence that says what was expected and what was found.
//
// Every part of the tool throws Failure and cleans up on the way out; main() prints the sentence on standard
// error and ends with exit status 2.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qvn::tool {

class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// "a", "a or b", "a, b or c".
inline std::string one_of(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0) {
      text += i + 1 == names.size() ? " or " : ", ";
    }
    text += names[i];
  }
  return text;
}

/// Adds to a list of parts with something between them.
inline void append_part(std::string& list, std::string_view between, std::string_view part) {
  if (!list.empty()) {
    list += between;
  }
  list += part;
}

inline std::string quoted(const std::string& name) { return "'" + name + "'"; }

}  // namespace qvn::tool
