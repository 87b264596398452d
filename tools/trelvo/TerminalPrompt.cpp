#include "tools/trelvo/TerminalPrompt.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <iterator>

#include "tools/trelvo/Failure.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

namespace {

constexpr int kSignals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

volatile std::sig_atomic_t gCaught = 0;

extern "C" void noteSignal(int number) { gCaught = number; }

/// While it lives, signals that would end the program wait for wait(); then the one that came is
/// delivered.
class HeldSignals {
 public:
  HeldSignals() {
    gCaught = 0;
    sigset_t held;
    sigemptyset(&held);
    for (const int number : kSignals) {
      sigaddset(&held, number);
    }
    ::pthread_sigmask(SIG_BLOCK, &held, &m_mask);
    struct sigaction action {};
    action.sa_handler = noteSignal;
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
      ::sigaction(kSignals[i], &action, &m_before[i]);
    }
  }
  ~HeldSignals() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
      ::sigaction(kSignals[i], &m_before[i], nullptr);
    }
    ::pthread_sigmask(SIG_SETMASK, &m_mask, nullptr);
    if (gCaught != 0) {
      std::raise(gCaught);
    }
  }
  HeldSignals(const HeldSignals&) = delete;
  HeldSignals& operator=(const HeldSignals&) = delete;

  /// Waits for a line on `terminal`. @return false, errno telling why, when a signal came first.
  bool wait(int terminal) const {
    pollfd waiting = {terminal, POLLIN, 0};
    return ::ppoll(&waiting, 1, nullptr, &m_mask) == 1;
  }

 private:
  sigset_t m_mask = {};
  struct sigaction m_before[std::size(kSignals)] = {};
};

/// While it lives, a terminal does not show what is typed.
class HiddenInput {
 public:
  explicit HiddenInput(int terminal) : m_terminal(terminal) {
    m_changed = ::tcgetattr(terminal, &m_before) == 0;
    termios hidden = m_before;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    m_changed = m_changed && ::tcsetattr(terminal, TCSAFLUSH, &hidden) == 0;
  }
  ~HiddenInput() {
    if (m_changed) {
      ::tcsetattr(m_terminal, TCSAFLUSH, &m_before);
    }
  }
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

  bool works() const { return m_changed; }

 private:
  int m_terminal;
  bool m_changed = false;
  termios m_before = {};
};

bool print(int terminal, const std::string& text) {
  return ::write(terminal, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

}  // namespace

bool promptSecret(const std::string& prompt, SecretLine& line) {
  const UniqueFd terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
  if (!terminal) {
    return false;
  }
  int error = 0;
  {
    const HeldSignals signals;
    const HiddenInput hidden(terminal.get());
    const bool done = hidden.works() && print(terminal.get(), prompt) &&
                      signals.wait(terminal.get()) && line.read(terminal.get());
    error = done ? 0 : errno;
    print(terminal.get(), "\n");
  }
  if (error != 0) {
    throw Failure(std::string("terminal: ") + std::strerror(error));
  }
  return true;
}

}  // namespace trelvo::tool
