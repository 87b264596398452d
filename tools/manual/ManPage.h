#pragma once

#include <map>
#include <ostream>
#include <string>

#include "tools/trelvo/CommandTree.h"

namespace trelvo::manual {

/// What a page says beyond help, in roff, by the name of the page: it takes the place of the
/// paragraphs of help.
using Sections = std::map<std::string, std::string>;

/// The file of a command's page without its folder: "trelvo-log.1".
std::string pageName(const tool::CommandText& command);

/// The page of the program: what its commands are for, what holds for all of them.
void writeProgramPage(std::ostream& out, const tool::CommandText& program,
                      const Sections& sections);

/// The page of one command with the commands below it.
void writeCommandPage(std::ostream& out, const tool::CommandText& command,
                      const Sections& sections);

}  // namespace trelvo::manual
