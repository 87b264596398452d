#include "tools/manual/ManPage.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "tools/manual/Roff.h"
#include "tools/trelvo/RadioLevels.h"

namespace trelvo::manual {
namespace {

using tool::CommandText;
using tool::ExampleText;
using tool::OptionText;

std::string hyphened(std::string name) {
  std::replace(name.begin(), name.end(), ' ', '-');
  return name;
}

std::string capitals(std::string name) {
  for (char& letter : name) {
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  }
  return name;
}

// A phrase that can follow "trelvo-x \-": no capital at its beginning.
std::string asPhrase(std::string purpose) {
  const bool isWord = purpose.size() > 1 && std::islower(static_cast<unsigned char>(purpose[1]));
  if (isWord) {
    purpose[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(purpose[0])));
  }
  while (!purpose.empty() && purpose.back() == '.') {
    purpose.pop_back();
  }
  return purpose;
}

void writeHead(std::ostream& out, const CommandText& command) {
  const std::string name = hyphened(command.name);
  out << "'\\\" t\n.TH " << escaped(capitals(name)) << " 1 \"\" \"trelvocore\" \"User Commands\"\n"
      << ".SH NAME\n"
      << escaped(name) << " \\- " << escaped(asPhrase(command.purpose)) << "\n";
}

bool isHelp(const OptionText& option) { return option.names.back() == "--help"; }

std::string joinedNames(const OptionText& option) {
  std::string text;
  for (const std::string& name : option.names) {
    text += (text.empty() ? "" : ", ") + bold(name);
  }
  return option.argument.empty() ? text : text + " " + italic(option.argument);
}

std::string inSynopsis(const OptionText& option) {
  const std::string text =
      bold(option.names.front()) + (option.argument.empty() ? "" : " " + italic(option.argument));
  return option.required ? text : "[" + text + "]";
}

std::string operandInSynopsis(const OptionText& operand) {
  const std::string text = italic(operand.names.front()) + (operand.repeated ? "..." : "");
  return operand.required ? text : "[" + text + "]";
}

void writeSynopsis(std::ostream& out, const CommandText& command) {
  if (!command.commands.empty()) {
    for (const CommandText& below : command.commands) {
      writeSynopsis(out, below);
    }
    return;
  }
  out << ".P\n" << bold(command.name);
  for (const OptionText& option : command.options) {
    if (!isHelp(option)) {
      out << "\n" << inSynopsis(option);
    }
  }
  for (const OptionText& operand : command.operands) {
    out << "\n" << operandInSynopsis(operand);
  }
  out << "\n";
}

void writeParagraphs(std::ostream& out, const CommandText& command, const Sections& sections) {
  const auto section = sections.find(hyphened(command.name));
  if (section != sections.end()) {
    out << section->second;
    return;
  }
  for (const std::string& paragraph : command.paragraphs) {
    out << ".P\n" << escaped(paragraph);
  }
}

void writeOptions(std::ostream& out, const CommandText& command) {
  for (const OptionText& operand : command.operands) {
    out << ".TP\n" << operandInSynopsis(operand) << "\n" << escaped(operand.purpose) << ".\n";
  }
  for (const OptionText& option : command.options) {
    out << ".TP\n" << joinedNames(option) << "\n" << escaped(option.purpose) << ".\n";
  }
}

void writeBelow(std::ostream& out, const CommandText& command, const Sections& sections) {
  for (const CommandText& below : command.commands) {
    out << ".SS " << escaped(below.name) << "\n" << escaped(below.purpose) << ".\n";
    writeParagraphs(out, below, sections);
    writeOptions(out, below);
  }
}

void gatherExamples(const CommandText& command, std::vector<ExampleText>& examples) {
  for (const ExampleText& example : command.examples) {
    const bool isKnown = std::any_of(
        examples.begin(), examples.end(),
        [&example](const ExampleText& known) { return known.command == example.command; });
    if (!isKnown) {
      examples.push_back(example);
    }
  }
  for (const CommandText& below : command.commands) {
    gatherExamples(below, examples);
  }
}

void writeExamples(std::ostream& out, const CommandText& command) {
  std::vector<ExampleText> examples;
  gatherExamples(command, examples);
  if (examples.empty()) {
    return;
  }
  out << ".SH EXAMPLES\n.nf\n";
  for (const ExampleText& example : examples) {
    out << escaped(example.command)
        << (example.remark.empty() ? "" : "\t# " + escaped(example.remark)) << "\n";
  }
  out << ".fi\n";
}

void writeCommands(std::ostream& out, const CommandText& program) {
  out << ".SH COMMANDS\n";
  for (const CommandText& command : program.commands) {
    out << ".TP\n.BR " << escaped(hyphened(command.name)) << " (1)\n"
        << escaped(command.purpose) << ".\n";
  }
}

std::string number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

// "TS 45.008" below a heading that says TS.
std::string withoutSeries(const std::string& document) {
  return document.substr(document.find(' ') + 1);
}

// One row a scale, from the table that the program itself codes by.
void writeLevels(std::ostream& out) {
  out << ".TS\ntab(|);\nlb1 lb1 lb1 rb1 rb1 rb1 rb1 lb\nl1 l1 l1 n1 n1 n1 n1 l.\n"
         "Quantity|Field|3GPP TS|First|below|Last|from|Step\n";
  for (const tool::LevelScaleInfo& scale : tool::levelScales()) {
    out << escaped(scale.name) << "|" << escaped(scale.field) << "|"
        << escaped(withoutSeries(scale.document)) << "|" << escaped(number(scale.lowestCode)) << "|"
        << escaped(number(scale.lowest)) << "|" << escaped(number(scale.highestCode)) << "|"
        << escaped(number(scale.highest)) << "|" << escaped(number(scale.step) + " " + scale.unit)
        << "\n";
  }
  out << ".TE\n";
}

}  // namespace

std::string pageName(const CommandText& command) { return hyphened(command.name) + ".1"; }

void writeProgramPage(std::ostream& out, const CommandText& program, const Sections& sections) {
  writeHead(out, program);
  out << ".SH SYNOPSIS\n"
      << bold(program.name) << " " << italic("COMMAND") << " [" << italic("OPTION") << "...] ["
      << italic("FILE") << "...]\n.br\n"
      << bold(program.name) << " " << bold("--help") << " | " << bold("--version")
      << "\n.SH DESCRIPTION\n";
  writeParagraphs(out, program, sections);
  writeCommands(out, program);
  out << sections.at("reporting-codes");
  writeLevels(out);
  out << sections.at("common");
}

void writeCommandPage(std::ostream& out, const CommandText& command, const Sections& sections) {
  writeHead(out, command);
  out << ".SH SYNOPSIS\n.nh\n.na\n";
  writeSynopsis(out, command);
  out << ".ad\n.hy\n.SH DESCRIPTION\n";
  writeParagraphs(out, command, sections);
  if (command.commands.empty()) {
    out << ".SH OPTIONS\n";
    writeOptions(out, command);
  } else {
    out << ".SH COMMANDS\n";
    writeBelow(out, command, sections);
  }
  writeExamples(out, command);
  out << ".SH SEE ALSO\n.BR trelvo (1)\n";
}

}  // namespace trelvo::manual
