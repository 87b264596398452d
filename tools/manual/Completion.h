#pragma once

#include <ostream>

#include "tools/trelvo/CommandTree.h"

namespace trelvo::manual {

/// Writes the program's completion for bash: commands, options, the choices of an option, files.
void writeCompletion(std::ostream& out, const tool::CommandText& program);

}  // namespace trelvo::manual
