#include "tools/trelvo/CommandTree.h"

#include <set>
#include <sstream>

namespace trelvo::tool {
namespace {

constexpr const char* kExamplesBegin = "Examples:";
constexpr const char* kRemarkBegins = "   ";  // parts a remark from its command

std::string joined(const std::set<CLI::Option*>& options) {
  std::string text;
  for (const CLI::Option* option : options) {
    text += (text.empty() ? "" : ", ") + option->get_name();
  }
  return text;
}

// Behind the purpose stand the default and which others the option goes with.
std::string purposeOf(const CLI::Option& option) {
  std::string text = option.get_description();
  if (!option.get_default_str().empty()) {
    text += "; default " + option.get_default_str();
  }
  if (!option.get_needs().empty()) {
    text += "; needs " + joined(option.get_needs());
  }
  if (!option.get_excludes().empty()) {
    text += "; not with " + joined(option.get_excludes());
  }
  return text;
}

// "ENUM:value in {auto->0,nmea->2} OR {0,2}" names the choices auto and nmea.
std::vector<std::string> choicesOf(const std::string& type) {
  std::vector<std::string> choices;
  const std::size_t begin = type.find('{');
  const std::size_t end = type.find('}');
  if (begin == std::string::npos || end == std::string::npos) {
    return choices;
  }
  std::istringstream list(type.substr(begin + 1, end - begin - 1));
  for (std::string choice; std::getline(list, choice, ',');) {
    choices.push_back(choice.substr(0, choice.find("->")));
  }
  return choices;
}

std::string argumentOf(const CLI::Option& option) {
  if (!option.get_option_text().empty()) {
    return option.get_option_text();
  }
  const std::string type = option.get_type_name();
  return option.get_items_expected_max() == 0 ? "" : type.substr(0, type.find(':'));
}

std::vector<std::string> namesOf(const CLI::Option& option) {
  if (option.get_positional()) {
    return {option.get_single_name()};
  }
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames()) {
    names.push_back("-" + name);
  }
  for (const std::string& name : option.get_lnames()) {
    names.push_back("--" + name);
  }
  return names;
}

ExampleText exampleOf(const std::string& line) {
  const std::size_t begin = line.find_first_not_of(' ');
  const std::size_t end = line.find(kRemarkBegins, begin);
  if (end == std::string::npos) {
    return {line.substr(begin), ""};
  }
  return {line.substr(begin, end - begin), line.substr(line.find_first_not_of(' ', end))};
}

// Takes a footer apart: paragraphs, then examples.
void addFooter(const std::string& footer, CommandText& command) {
  std::istringstream lines(footer);
  bool inExamples = false;
  std::string paragraph;
  for (std::string line; std::getline(lines, line);) {
    if (inExamples && !line.empty()) {
      command.examples.push_back(exampleOf(line));
    } else if (line == kExamplesBegin) {
      inExamples = true;
    } else if (!line.empty()) {
      paragraph += line + "\n";
    } else if (!paragraph.empty()) {
      command.paragraphs.push_back(std::exchange(paragraph, ""));
    }
  }
  if (!paragraph.empty()) {
    command.paragraphs.push_back(paragraph);
  }
}

CommandText describeBelow(const CLI::App& app, const std::string& prefix) {
  CommandText command;
  command.name = prefix + app.get_name();
  command.purpose = app.get_description();
  addFooter(app.get_footer(), command);
  for (const CLI::Option* option : app.get_options()) {
    (option->get_positional() ? command.operands : command.options).push_back(describe(*option));
  }
  for (const CLI::App* below : app.get_subcommands([](const CLI::App*) { return true; })) {
    command.commands.push_back(describeBelow(*below, command.name + " "));
  }
  return command;
}

}  // namespace

CommandText describe(const CLI::App& app) { return describeBelow(app, ""); }

OptionText describe(const CLI::Option& option) {
  OptionText text;
  text.names = namesOf(option);
  text.argument = argumentOf(option);
  text.choices = choicesOf(option.get_type_name());
  text.purpose = purposeOf(option);
  text.required = option.get_required();
  text.repeated = option.get_positional() && option.get_items_expected_max() > 1;
  return text;
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
  const OptionText text = describe(*option);
  if (option->get_positional()) {
    return text.repeated ? " ..." : "";
  }
  return (text.argument.empty() ? "" : " " + text.argument) + (text.required ? " (required)" : "");
}

std::string HelpFormatter::make_option_desc(const CLI::Option* option) const {
  return describe(*option).purpose;
}

}  // namespace trelvo::tool
