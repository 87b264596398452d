#include "tools/manual/Completion.h"

#include <string>
#include <vector>

namespace trelvo::manual {
namespace {

using tool::CommandText;
using tool::OptionText;

constexpr const char* kBegin = R"(# bash completion for trelvo(1)
_trelvo() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command=trelvo word
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$command $word" in
)";

constexpr const char* kArguments = R"(    esac
  done
  COMPREPLY=()
  case "$command $previous" in
)";

constexpr const char* kWords = R"(  esac
  local words= files=
  case $command in
)";

constexpr const char* kEnd = R"(  esac
  if [[ $current == -* || -z $files ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  fi
}
complete -F _trelvo trelvo
)";

template <class Visit>
void visitAll(const CommandText& command, const Visit& visit) {
  visit(command);
  for (const CommandText& below : command.commands) {
    visitAll(below, visit);
  }
}

std::string spaced(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

void writeArgument(std::ostream& out, const CommandText& command, const OptionText& option) {
  if (option.argument.empty()) {
    return;
  }
  std::string patterns;
  for (const std::string& name : option.names) {
    patterns += (patterns.empty() ? "'" : " | '") + command.name + " " + name + "'";
  }
  const std::string how = !option.choices.empty()    ? "-W '" + spaced(option.choices) + "'"
                          : option.argument == "DIR" ? "-d"
                                                     : "-f";
  out << "    " << patterns << ")\n"
      << "      mapfile -t COMPREPLY < <(compgen " << how << " -- \"$current\")\n"
      << "      return ;;\n";
}

void writeWords(std::ostream& out, const CommandText& command) {
  std::vector<std::string> words;
  for (const CommandText& below : command.commands) {
    words.push_back(below.name.substr(command.name.size() + 1));
  }
  for (const OptionText& option : command.options) {
    words.insert(words.end(), option.names.begin(), option.names.end());
  }
  out << "    '" << command.name << "') words='" << spaced(words)
      << "' files=" << (command.operands.empty() ? "" : "1") << " ;;\n";
}

}  // namespace

void writeCompletion(std::ostream& out, const CommandText& program) {
  out << kBegin;
  visitAll(program, [&out](const CommandText& command) {
    for (const CommandText& below : command.commands) {
      out << "      '" << below.name << "') command='" << below.name << "' ;;\n";
    }
  });
  out << kArguments;
  visitAll(program, [&out](const CommandText& command) {
    for (const OptionText& option : command.options) {
      writeArgument(out, command, option);
    }
  });
  out << kWords;
  visitAll(program, [&out](const CommandText& command) { writeWords(out, command); });
  out << kEnd;
}

}  // namespace trelvo::manual
