#pragma once

#include <cstddef>
#include <string>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// How the terminal, if there is one, draws bars.
struct BarStyle {
  std::size_t columns = 80;  ///< width of a line
  bool unicode = false;      ///< blocks in eighths of a column instead of "#"
};

/// The style for standard output: on a terminal its width and, where the locale (LC_ALL, LC_CTYPE,
/// LANG) says UTF-8, blocks; elsewhere 80 columns and "#".
BarStyle barStyleFor(const CommandContext& context);

/// A bar for `count`, `columns` long when that is `most`. Whatever is not 0 can be seen.
std::string bar(unsigned long long count, unsigned long long most, std::size_t columns,
                bool unicode);

}  // namespace trelvo::tool
