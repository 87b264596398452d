#pragma once

#include <string>

#include "tools/trelvo/Passphrase.h"

namespace trelvo::tool {

/// Prints `prompt` on the controlling terminal, and reads a line there without showing it.
///
/// A signal that ends the program finds the terminal as it was. Threads: one, with no other.
/// @return false when there is no terminal. Throws Failure when it cannot be read.
bool promptSecret(const std::string& prompt, SecretLine& line);

}  // namespace trelvo::tool
