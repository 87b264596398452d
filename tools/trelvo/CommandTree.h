#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace trelvo::tool {

/// An option, or an operand: what stands on a command line without a name.
struct OptionText {
  std::vector<std::string> names;    ///< "-o", "--output"; of an operand just its name
  std::string argument;              ///< what follows an option, "FILE"; empty for a flag
  std::vector<std::string> choices;  ///< all that `argument` can be, empty where that is open
  std::string purpose;
  bool required = false;
  bool repeated = false;
};

struct ExampleText {
  std::string command;  ///< a line of a shell
  std::string remark;   ///< may be empty
};

/// A command, or the program itself, with what is below it.
struct CommandText {
  std::string name;  ///< all words of it: "trelvo log write"
  std::string purpose;
  std::vector<std::string> paragraphs;  ///< lines as help shows them, broken
  std::vector<ExampleText> examples;
  std::vector<OptionText> operands;
  std::vector<OptionText> options;
  std::vector<CommandText> commands;
};

/// What a command line offers: help, man pages and completion all say the same.
CommandText describe(const CLI::App& app);

OptionText describe(const CLI::Option& option);

/// Shows help in the form of the man pages: each option with what follows it, whether it must be
/// there, and which others it needs or forbids.
class HelpFormatter : public CLI::Formatter {
 public:
  std::string make_option_opts(const CLI::Option* option) const override;
  std::string make_option_desc(const CLI::Option* option) const override;
};

}  // namespace trelvo::tool
