#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>

#include "tools/trelvo/App.h"
#include "tools/trelvo/DescriptorBuffer.h"

namespace {

using trelvo::tool::CommandContext;
using trelvo::tool::DescriptorBuffer;
using trelvo::tool::kExitFailed;
using trelvo::tool::kExitGood;

// A reader that has seen enough and closes the pipe is no failure.
int outputStatus(int error) {
  if (error == 0 || error == EPIPE) {
    return kExitGood;
  }
  std::cerr << "trelvo: standard output: " << std::strerror(error) << std::endl;
  return kExitFailed;
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  DescriptorBuffer buffer(STDOUT_FILENO);
  std::ostream out(&buffer);
  CommandContext context{out, std::cerr};
  context.outputIsTerminal = ::isatty(STDOUT_FILENO) == 1;
  context.errorIsTerminal = ::isatty(STDERR_FILENO) == 1;
  const int status = trelvo::tool::runTrelvo(argc, argv, context);
  out.flush();
  const int written = outputStatus(buffer.error());
  return status != kExitGood ? status : written;
}
