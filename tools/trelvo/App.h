#pragma once

#include <CLI/CLI.hpp>
#include <memory>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// The program's command line with all its commands, which run in `context`.
std::unique_ptr<CLI::App> makeApp(CommandContext& context);

/// Runs the program on a command line. Messages go to `context.err`, each as "trelvo: FILE: what is
/// wrong"; a failure of `context.out` ends a command without a message and is its owner's to tell.
/// @return the exit status: kExitGood, kExitFailed or kExitUsage. Nothing throws.
int runTrelvo(int argc, const char* const* argv, CommandContext& context);

}  // namespace trelvo::tool
