#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo stats FILE`: what a file of containers holds, counted.
void addStatsCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
