#pragma once

#include <string>

#include "tools/trelvo/CommandContext.h"

namespace trelvo::tool {

struct LogWriteOptions {
  std::string key;
  std::string log;
  unsigned int flushEvery = 10;  ///< lines; 0 stands for the end only
};

/// Writes standard input to an encrypted log, as it comes. Throws Failure; what was flushed ahead
/// of it stays.
void writeLog(const LogWriteOptions& options, CommandContext& context);

}  // namespace trelvo::tool
