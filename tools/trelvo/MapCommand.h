#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo map FILE -o OUT.svg`: a picture of the positions, cells and access points of a file
/// of containers.
void addMapCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
