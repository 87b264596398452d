#pragma once

namespace soak {

/// What the process takes, in KiB.
struct Memory {
  long resident = 0;  ///< Pages in memory.
  long inUse = 0;     ///< Blocks of the heap that were not given back.
};

/// Now, with free pages of the heap handed back to the system first.
Memory memoryNow();

/// Whether memory is judged here: a sanitizer keeps freed blocks, and looks for leaks itself.
bool memoryIsJudged();

}  // namespace soak
