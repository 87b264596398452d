#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo seal` and `trelvo unseal`, which turn any file into a sealed one and back.
/// `context` must outlive `app`; the commands leave their exit status there.
///
/// A sealed file is an encrypted block file with the key of a named store. New ones are for their
/// owner only. The output appears under its name only when it is whole.
void addSealCommands(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
