// The subcommand `completion`: scripts for shells, made of the subcommands' own table.
#include <memory>

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

/// zsh runs the function of the other shell.
std::string zsh_script(const std::vector<Command>& commands) {
  return "# Completion for qvn. For this shell: source <(qvn completion zsh)\n"
         "autoload -U +X bashcompinit && bashcompinit\n" +
         bash_script(commands);
}

}  // namespace

Command completion_command() {
  const auto shell = std::make_shared<std::string>();
  return {"completion",
          "Print a completion script for a shell",
          {{.name = "SHELL", .about = "bash or zsh", .text = shell.get(), .required = true}},
          [shell] {
            if (*shell != "bash" && *shell != "zsh") {
              throw Failure("expected bash or zsh, found " + quoted(*shell));
            }
            const std::vector<Command> commands = all_commands().commands;
            const std::string script = *shell == "bash" ? bash_script(commands) : zsh_script(commands);
            write_output("-", {script.begin(), script.end()});
          }};
}

}  // namespace qvn::tool
