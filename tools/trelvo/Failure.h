#pragma once

#include <functional>
#include <stdexcept>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

/// A command that cannot go on; what() is the message for the user.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Nobody reads the output any more; no failure of the command.
struct ReaderGone : std::runtime_error {
  ReaderGone() : std::runtime_error("the reader of the output has gone") {}
};

/// Runs `work`, and prints the message of a Failure that it throws.
/// @return the exit status.
int reporting(CommandContext& context, const std::function<void()>& work);

}  // namespace trelvo::tool
