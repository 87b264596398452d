#include <trelvo/core/LinAsyncCallDispatcher.h>

#include <sys/socket.h>
#include <unistd.h>

#include <new>

#include "core/linux/Descriptor.h"

namespace trelvo::core {

namespace {

static_assert(sizeof(unsigned int) == 4, "one message is one number of four bytes");

// Closes what is there: neither 0, which stands for none, nor -1.
void closeDescriptor(int fd) {
  if (fd > 0) {
    close(fd);
  }
}

}  // namespace

LinAsyncCallDispatcher::~LinAsyncCallDispatcher() {
  closeDescriptor(m_readFd);
  closeDescriptor(m_writeFd);
}

bool LinAsyncCallDispatcher::baseInit() {
  int fds[2] = {-1, -1};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, fds) != 0) {
    return false;
  }
  const int readFd = awayFromZero(fds[0]);
  const int writeFd = awayFromZero(fds[1]);
  if (readFd < 0 || writeFd < 0) {
    closeDescriptor(readFd);
    closeDescriptor(writeFd);
    return false;
  }
  m_readFd = readFd;
  m_writeFd = writeFd;
  return true;
}

bool LinAsyncCallDispatcher::doScheduleDelegate(unsigned int id) {
  return m_writeFd != 0 &&
         send(m_writeFd, &id, sizeof(id), MSG_DONTWAIT | MSG_EOR) == ssize_t{sizeof(id)};
}

bool LinAsyncCallDispatcher::attachPollSink(const pollfd& descriptor, IPollSink* sink) {
  if (sink == nullptr || descriptor.fd == 0 || !rememberSink(descriptor.fd, sink)) {
    return false;
  }
  bool attached = false;
  try {
    attached = doAttachPollSink(descriptor);
  } catch (...) {
    attached = false;
  }
  if (!attached) {
    forgetSink(descriptor.fd);
  }
  return attached;
}

void LinAsyncCallDispatcher::detachPollSink(const pollfd& descriptor) {
  doDetachPollSink(descriptor);
  forgetSink(descriptor.fd);
}

void LinAsyncCallDispatcher::handlePollEvent(const pollfd& /*ready*/) { invokeApc(); }

int LinAsyncCallDispatcher::invokeApc() {
  unsigned int id = 0;
  ssize_t got = 0;
  while ((got = recv(m_readFd, &id, sizeof(id), MSG_DONTWAIT)) == ssize_t{sizeof(id)}) {
    invokeDelegate(id);
  }
  return static_cast<int>(got);
}

bool LinAsyncCallDispatcher::invokeCallback(const pollfd& ready) {
  IPollSink* const sink = sinkOf(ready.fd);
  if (sink == nullptr) {
    return false;
  }
  try {
    sink->handlePollEvent(ready);
    return true;
  } catch (...) {
    return false;
  }
}

// @return false when the descriptor has one, and when memory runs out.
bool LinAsyncCallDispatcher::rememberSink(int fd, IPollSink* sink) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  try {
    if (!m_pollSinks.try_emplace(fd, sink).second) {
      return false;
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  if (fd == m_readFd) {
    m_readSink = sink;
  }
  return true;
}

void LinAsyncCallDispatcher::forgetSink(int fd) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  m_pollSinks.erase(fd);
  if (fd == m_readFd) {
    m_readSink = nullptr;
  }
}

IPollSink* LinAsyncCallDispatcher::sinkOf(int fd) {
  const std::lock_guard<std::mutex> lock(m_pollMutex);
  if (fd == m_readFd) {
    return m_readSink;
  }
  const auto found = m_pollSinks.find(fd);
  return found == m_pollSinks.end() ? nullptr : found->second;
}

}  // namespace trelvo::core
