#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo fetch`, which sets context.exitStatus when it runs.
void addFetchCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
