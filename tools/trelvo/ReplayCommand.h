#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo replay`: containers on standard output in the rhythm of their time stamps.
void addReplayCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
