#pragma once

#include <CLI/CLI.hpp>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// Adds `trelvo geo` with its own commands distance, bearing, ellipse and tile, which compute with
/// positions as the library does. `context` must outlive `app`; the command leaves its exit status
/// there.
///
/// Numbers outside their range are wrong usage. A question without an answer, such as the bearing
/// from a pole, gives a message and kExitFailed.
void addGeoCommand(CLI::App& app, CommandContext& context);

}  // namespace trelvo::tool
