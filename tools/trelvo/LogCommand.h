#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo log write` and `trelvo log decrypt`, which write and read encrypted logs.
/// `context` must outlive `app`; the commands leave their exit status there.
void addLogCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
