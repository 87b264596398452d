#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo export`: what files in the wire format hold in formats of geographic information
/// systems, tables and crowd-sourced reports.
void addExportCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
