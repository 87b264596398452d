#include "tools/trelvo/SignalledRemoval.h"

#include <unistd.h>

#include <atomic>
#include <cstddef>
#include <iterator>

namespace trelvo::tool {
namespace {

std::atomic<const char*> gPath = nullptr;
static_assert(std::atomic<const char*>::is_always_lock_free);  // a handler reads it

// The signal is raised again under its default action, and delivered when this function returns.
extern "C" void removeAndEnd(int number) {
  if (const char* const path = gPath.load()) {
    ::unlink(path);
  }
  std::raise(number);
}

}  // namespace

SignalledRemoval::SignalledRemoval(const char* path) : m_outer(gPath.exchange(path)) {
  struct sigaction action {};
  action.sa_handler = removeAndEnd;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    ::sigaction(kSignals[i], nullptr, &m_before[i]);
    if (m_before[i].sa_handler == SIG_DFL) {
      ::sigaction(kSignals[i], &action, nullptr);
    }
  }
}

SignalledRemoval::~SignalledRemoval() {
  for (std::size_t i = 0; i < std::size(kSignals); ++i) {
    ::sigaction(kSignals[i], &m_before[i], nullptr);
  }
  gPath = m_outer;
}

}  // namespace trelvo::tool
