#include "core/DispatchFrame.h"

namespace trelvo::core {

namespace {

thread_local DispatchFrame* gInnermost = nullptr;

}  // namespace

DispatchFrame::DispatchFrame(IAsyncCallDispatcher& dispatcher) noexcept
    : m_dispatcher(dispatcher), m_outer(gInnermost) {
  gInnermost = this;
}

// Giving the reference up may hand it to an outer frame of the same dispatcher.
DispatchFrame::~DispatchFrame() {
  gInnermost = m_outer;
  if (m_adopted) {
    m_dispatcher.decrement();
  }
}

bool DispatchFrame::adopt(const IAsyncCallDispatcher& dispatcher) noexcept {
  DispatchFrame* frame = gInnermost;
  while (frame != nullptr && &frame->m_dispatcher != &dispatcher) {
    frame = frame->m_outer;
  }
  if (frame == nullptr) {
    return false;
  }
  frame->m_adopted = true;
  return true;
}

}  // namespace trelvo::core
