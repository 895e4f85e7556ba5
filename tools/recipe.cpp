// Writing and reading of recipes.
#include "recipe.h"

#include <algorithm>
#include <charconv>

#include "failure.h"

namespace qvn::tool {
namespace {

constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.,_/+-";
constexpr std::string_view kYes = "yes";

std::string escaped(const std::string& value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (const char letter : value) {
    if (kPlain.find(letter) != std::string_view::npos) {
      text += letter;
    } else {
      const auto byte = static_cast<unsigned char>(letter);
      text += '%';
      text += kDigits[byte >> 4];
      text += kDigits[byte & 15];
    }
  }
  return text;
}

Failure no_recipe(const std::string& recipe, const std::string& why) {
  return Failure("--recipe: expected KEY=VALUE with colons between, as --show-recipe prints it, found " +
                 why + " in " + quoted(recipe));
}

std::string unescaped(std::string_view value, const std::string& recipe) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '%') {
      text += value[i];
      continue;
    }
    unsigned int byte = 0;
    const char* const digits = value.data() + i + 1;
    if (i + 2 >= value.size() || std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) {
      throw no_recipe(recipe, "a % without two digits");
    }
    text += static_cast<char>(byte);
    i += 2;
  }
  return text;
}

}  // namespace

std::string write_recipe(const std::vector<Ingredient>& ingredients) {
  std::string recipe;
  for (const Ingredient& part : ingredients) {
    const std::string value = part.flag == nullptr ? *part.text : std::string(*part.flag ? kYes : "");
    if (!value.empty()) {
      append_part(recipe, ":", std::string(part.key) + "=" + escaped(value));
    }
  }
  return recipe;
}

void read_recipe(const std::string& recipe, const std::vector<Ingredient>& ingredients) {
  std::vector<std::string_view> seen;
  const std::string_view whole = recipe;
  for (std::size_t at = 0; at <= whole.size();) {
    const std::size_t end = std::min(whole.find(':', at), whole.size());
    const std::string_view part = whole.substr(at, end - at);
    at = end + 1;
    const std::size_t equals = part.find('=');
    if (equals == std::string_view::npos || equals + 1 == part.size()) {
      throw no_recipe(recipe, quoted(std::string(part)));
    }
    const std::string_view key = part.substr(0, equals);
    const auto found = std::find_if(ingredients.begin(), ingredients.end(),
                                    [&](const Ingredient& known) { return known.key == key; });
    if (found == ingredients.end() || std::find(seen.begin(), seen.end(), key) != seen.end()) {
      throw no_recipe(
          recipe, (found == ingredients.end() ? "an unknown key " : "a second ") + quoted(std::string(key)));
    }
    seen.push_back(key);
    const std::string value = unescaped(part.substr(equals + 1), recipe);
    if (found->flag != nullptr) {
      if (value != kYes) {
        throw no_recipe(recipe, quoted(std::string(part)));
      }
      *found->flag = true;
    } else if (found->text->empty()) {
      *found->text = value;
    }
  }
}

}  // namespace qvn::tool
