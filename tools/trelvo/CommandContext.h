#pragma once

#include <ostream>

namespace trelvo::tool {

// What the program tells its caller.
constexpr int kExitGood = 0;    ///< everything was done
constexpr int kExitFailed = 1;  ///< input could not be read, was damaged, or output not written
constexpr int kExitUsage = 2;   ///< the command line makes no sense

/// The world a command runs in. Tests give it streams and descriptors of their own.
struct CommandContext {
  std::ostream& out;         ///< text for standard output
  std::ostream& err;         ///< messages, each as "trelvo: FILE: what is wrong"
  int inputDescriptor = 0;   ///< what "-" means as an input file
  int outputDescriptor = 1;  ///< what "-" means as an output file; flush `out` before use
  bool outputIsTerminal = false;
  bool errorIsTerminal = false;  ///< progress bars are shown only then
  int exitStatus = kExitGood;    ///< set by the command that ran
};

}  // namespace trelvo::tool
