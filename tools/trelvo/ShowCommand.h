#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo show`, which prints containers and other generic objects. `context` must outlive
/// `app`; the command leaves its exit status there.
void addShowCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
