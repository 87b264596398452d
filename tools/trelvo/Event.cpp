#include "tools/trelvo/Event.h"

#include <sys/eventfd.h>

#include <cerrno>
#include <system_error>

namespace trelvo::tool {

Event::Event() : m_descriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (!m_descriptor) {
    throw std::system_error(errno, std::generic_category());
  }
}

// A full counter is as good as a new one: it is readable.
void Event::set() const { ::eventfd_write(m_descriptor.get(), 1); }

}  // namespace trelvo::tool
