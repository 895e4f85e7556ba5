// A recipe: everything that makes a picture of a frame, in one word that needs no quotes in a shell.
//
//     from=raw8:size=640x480:pattern=rggb:method=2x2:to=bgr:black=16:wb=1.5,1,1.25
//
// Keys are the names of options; in values every byte but letters, digits and . , _ / + - is %XX.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qvn::tool {

struct Ingredient {
  std::string_view key;
  std::string* text = nullptr;  // or
  bool* flag = nullptr;
};

/// What is told, in the ingredients' order.
std::string write_recipe(const std::vector<Ingredient>& ingredients);
/// Sets what is not told yet. Throws Failure for what is no recipe.
void read_recipe(const std::string& recipe, const std::vector<Ingredient>& ingredients);

}  // namespace qvn::tool
