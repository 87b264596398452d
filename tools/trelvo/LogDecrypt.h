#pragma once

#include <string>

#include "tools/trelvo/CommandContext.h"
#include "tools/trelvo/Passphrase.h"

namespace trelvo::tool {

struct LogDecryptOptions {
  std::string key;
  PassphraseOptions passphrase;
  std::string log;
  std::string output;
};

/// Writes the text of an encrypted log to a file, which appears when it is whole, or to standard
/// output. Throws Failure, for a damaged log with the text ahead of the damage in place, or
/// ReaderGone.
void decryptLog(const LogDecryptOptions& options, CommandContext& context);

}  // namespace trelvo::tool
