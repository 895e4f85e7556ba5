// The subcommand `completion`: scripts for shells, made of the subcommands' own table.
#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "commands.h"
#include "failure.h"
#include "files.h"

namespace qvn::tool {
namespace {

std::string words_of(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    append_part(text, " ", word);
  }
  return text;
}

/// "-o,--output" gives both.
std::vector<std::string> names_of(const Option& option) {
  const std::size_t comma = option.name.find(',');
  if (comma == std::string::npos) {
    return {option.name};
  }
  return {option.name.substr(0, comma), option.name.substr(comma + 1)};
}

/// A function with a case for every subcommand and for every option that has words of its own.
std::string bash_script(const std::vector<Command>& commands) {
  std::vector<std::string> names;
  std::string options;
  std::string values;
  for (const Command& command : commands) {
    names.push_back(command.name);
    std::vector<std::string> told;
    for (const Option& option : command.options) {
      if (option.name.front() != '-') {
        continue;
      }
      std::string pattern;
      for (const std::string& name : names_of(option)) {
        told.push_back(name);
        pattern += (pattern.empty() ? command.name + " " : "|" + command.name + " ") + name;
      }
      for (std::size_t at = pattern.find(' '); at != std::string::npos; at = pattern.find(' ', at + 2)) {
        pattern.replace(at, 1, "\\ ");
      }
      if (!option.words.empty()) {
        values += "    " + pattern + ") words='" + words_of(option.words) + "' ;;\n";
      } else if (option.flag == nullptr) {
        values += "    " + pattern + ") words= files=yes ;;\n";
      }
    }
    told.emplace_back("--help");
    options += "      " + command.name + ") words='" + words_of(told) + "' ;;\n";
  }
  return "# Completion for qvn. For this shell: source <(qvn completion bash)\n"
         "_qvn() {\n"
         "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} words=none files=\n"
         "  if ((COMP_CWORD == 1)); then\n"
         "    COMPREPLY=($(compgen -W '" +
         words_of(names) +
         " --help --version' -- \"$word\"))\n"
         "    return\n"
         "  fi\n"
         "  case ${COMP_WORDS[1]}\\ $before in\n" +
         values +
         "    *) words=none ;;\n"
         "  esac\n"
         "  if [[ $words == none && $word == -* ]]; then\n"
         "    case ${COMP_WORDS[1]} in\n" +
         options +
         "    esac\n"
         "  elif [[ $words == none ]]; then\n"
         "    words= files=yes\n"
         "  fi\n"
         "  COMPREPLY=($(compgen -W \"$words\" -- \"$word\"))\n"
         "  [[ $files ]] && COMPREPLY+=($(compgen -f -- \"$word\"))\n"
         "  return 0\n"
         "}\n"
         "complete -o filenames -F _qvn qvn\n";
}

/// What an option does, as far as a list of options has room for it: to the first pause.
std::string brief(const Option& option) {
  std::size_t end = std::string::npos;
  for (const char* const pause : {". ", "; ", " [", " ("}) {
    end = std::min(end, option.about.find(pause));
  }
  return option.about.substr(0, end);
}

/// With a backslash before each of some characters.
std::string escaped(const std::string& text, std::string_view special) {
  std::string result;
  for (const char character : text) {
    if (special.find(character) != std::string_view::npos) {
      result += '\\';
    }
    result += character;
  }
  return result;
}

/// As one word of zsh, which knows no escapes between single quotes.
std::string zsh_word(const std::string& text) {
  std::string inner;
  for (const char character : text) {
    inner += character == '\'' ? "'\\''" : std::string(1, character);
  }
  return quoted(inner);
}

/// The options of a subcommand with what they do, in the words of zsh's _arguments.
std::string zsh_options(const Command& command) {
  std::string offers;
  for (const Option& option : command.options) {
    if (option.name.front() != '-') {
      continue;
    }
    const std::vector<std::string> names = names_of(option);
    const std::string all = words_of(names);
    const std::string others = names.size() > 1 ? "(" + all + ")" : "";
    const std::string value = option.flag != nullptr ? ""
                              : option.words.empty() ? ":value:_files"
                                                     : ":value:(" + words_of(option.words) + ")";
    for (const std::string& name : names) {
      std::string offer = others + name;
      offer += option.flag != nullptr ? "" : name.starts_with("--") ? "=" : "+";
      offer += "[";
      offer += escaped(brief(option), "[]\\");
      offer += "]" + value;
      offers += " \\\n        " + zsh_word(offer);
    }
  }
  return offers;
}

/// Sourced, or as the file _qvn in a folder of zsh's functions.
std::string zsh_script(const std::vector<Command>& commands) {
  std::string names;
  std::string cases;
  for (const Command& command : commands) {
    names += "\n      " + zsh_word(command.name + ":" + escaped(command.about, ":\\"));
    cases += "    " + command.name + ")\n      _arguments '(- *)--help[Print the help]'" +
             zsh_options(command) + " \\\n        '*:file:_files' ;;\n";
  }
  return "#compdef qvn\n"
         "# Completion for qvn. For this shell: source <(qvn completion zsh)\n"
         "_qvn() {\n"
         "  local -a commands\n"
         "  if ((CURRENT == 2)); then\n"
         "    commands=(" +
         names +
         ")\n"
         "    _describe -t commands command commands\n"
         "    _arguments '--help[Print the help]' '--version[Print the version]'\n"
         "    return\n"
         "  fi\n"
         "  local command=$words[2]\n"
         "  shift words\n"
         "  ((CURRENT--))\n"
         "  case $command in\n" +
         cases +
         "  esac\n"
         "}\n"
         "if [[ $funcstack[1] == _qvn ]]; then _qvn \"$@\"; else compdef _qvn qvn; fi\n";
}

std::string fish_word(const std::string& text) { return quoted(escaped(text, "'\\")); }

std::string fish_script(const std::vector<Command>& commands) {
  std::string script =
      "# Completion for qvn. For this shell: qvn completion fish | source\n"
      "complete -c qvn -n __fish_use_subcommand -f -l help -d 'Print the help'\n"
      "complete -c qvn -n __fish_use_subcommand -f -l version -d 'Print the version'\n";
  for (const Command& command : commands) {
    script += "complete -c qvn -n __fish_use_subcommand -f -a " + command.name + " -d " +
              fish_word(command.about) + "\n";
    const std::string start = "complete -c qvn -n '__fish_seen_subcommand_from " + command.name + "'";
    for (const Option& option : command.options) {
      if (option.name.front() != '-') {
        continue;
      }
      script += start;
      for (const std::string& name : names_of(option)) {
        script += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
      }
      if (!option.words.empty()) {
        script += " -x -a " + fish_word(words_of(option.words));
      } else if (option.flag == nullptr) {
        script += " -r -F";
      }
      script += " -d " + fish_word(brief(option)) + "\n";
    }
    script += start + " -l help -d 'Print the help'\n";
  }
  return script;
}

}  // namespace

Command completion_command() {
  using Script = std::string (*)(const std::vector<Command>&);
  static const std::vector<std::pair<std::string, Script>> scripts = {
      {"bash", bash_script}, {"zsh", zsh_script}, {"fish", fish_script}};
  std::vector<std::string> shells;
  shells.reserve(scripts.size());
  for (const auto& [shell, script] : scripts) {
    shells.push_back(shell);
  }
  const auto told = std::make_shared<std::string>();
  return {"completion",
          "Print a completion script for a shell",
          {{.name = "SHELL", .about = one_of(shells), .text = told.get(), .required = true}},
          [told, shells] {
            const auto found = std::find_if(scripts.begin(), scripts.end(),
                                            [&](const auto& script) { return script.first == *told; });
            if (found == scripts.end()) {
              throw Failure("expected " + one_of(shells) + ", found " + quoted(*told));
            }
            const std::string script = found->second(all_commands().commands);
            write_output("-", {script.begin(), script.end()});
          }};
}

}  // namespace qvn::tool
