#include "tools/trelvo/TransferWatch.h"

#include <poll.h>

#include <utility>

namespace trelvo::tool {
namespace {

constexpr int kTickMs = 100;
constexpr int kForever = -1;

}  // namespace

TransferWatch::TransferWatch(const Interrupt& interrupt, Cancel cancel, Tick tick)
    : m_interrupt(interrupt),
      m_cancel(std::move(cancel)),
      m_tick(std::move(tick)),
      m_thread(&TransferWatch::run, this) {}

TransferWatch::~TransferWatch() {
  m_over.set();
  m_thread.join();
}

void TransferWatch::run() {
  pollfd waited[] = {{m_over.descriptor(), POLLIN, 0}, {m_interrupt.descriptor(), POLLIN, 0}};
  while (waited[0].revents == 0) {
    const int woken = ::poll(waited, 2, m_tick ? kTickMs : kForever);
    if (woken > 0 && waited[1].revents != 0) {
      m_cancel();
      waited[1].fd = -1;
    } else if (woken == 0) {
      m_tick({m_over.descriptor(), m_interrupt.descriptor()});
    }
  }
}

}  // namespace trelvo::tool
