#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo import`, which turns real observations into a file of measurement containers, and
/// lists of cell towers into injections.
/// `context` must outlive `app`; the command leaves its exit status there.
///
/// The output appears under its name only when it is whole. What could not be stored is reported on
/// `context.err` and is no failure, unless nothing at all could be read.
void addImportCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
