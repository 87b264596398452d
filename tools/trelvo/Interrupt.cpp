#include "tools/trelvo/Interrupt.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace trelvo::tool {
namespace {

bool isIgnored(int number) {
  struct sigaction action = {};
  return ::sigaction(number, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t endingSignals() {
  sigset_t set = {};
  sigemptyset(&set);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    if (!isIgnored(number)) {
      sigaddset(&set, number);
    }
  }
  return set;
}

}  // namespace

Interrupt::Interrupt() {
  const sigset_t signals = endingSignals();
  m_descriptor = UniqueFd(::signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
  if (!m_descriptor) {
    throw std::system_error(errno, std::generic_category());
  }
  ::pthread_sigmask(SIG_BLOCK, &signals, &m_before);
}

Interrupt::~Interrupt() {
  signalfd_siginfo taken = {};
  while (::read(m_descriptor.get(), &taken, sizeof taken) > 0) {
  }
  ::pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

}  // namespace trelvo::tool
