#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo net`, which sets context.exitStatus when it runs.
void addNetCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
