#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo diff`: which containers and fields of two files differ.
void addDiffCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
