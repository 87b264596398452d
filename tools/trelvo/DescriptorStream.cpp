#include "tools/trelvo/DescriptorStream.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

namespace trelvo::tool {
namespace {

constexpr std::size_t kBlockSize = 65536;

// Repeats an interrupted call, and waits where a descriptor was left in non-blocking mode.
template <class Call>
ssize_t repeated(int descriptor, short event, Call call) {
  for (;;) {
    const ssize_t moved = call();
    if (moved >= 0 || (errno != EINTR && errno != EAGAIN)) {
      return moved;
    }
    if (errno == EAGAIN) {
      pollfd waiting = {descriptor, event, 0};
      ::poll(&waiting, 1, -1);
    }
  }
}

ssize_t readOnce(int descriptor, unsigned char* target, std::size_t count) {
  return repeated(descriptor, POLLIN, [=] { return ::read(descriptor, target, count); });
}

ssize_t writeOnce(int descriptor, const unsigned char* source, std::size_t count) {
  return repeated(descriptor, POLLOUT, [=] { return ::write(descriptor, source, count); });
}

}  // namespace

DescriptorStream::DescriptorStream(UniqueFd descriptor) : DescriptorStream(descriptor.get()) {
  m_owned = std::move(descriptor);
}

DescriptorStream::DescriptorStream(int descriptor) : m_descriptor(descriptor) {
  const int flags = ::fcntl(descriptor, F_GETFL);
  if (flags < 0) {
    fail(errno);
    return;
  }
  const int access = flags & O_ACCMODE;
  m_canRead = access == O_RDONLY || access == O_RDWR;
  m_canWrite = access == O_WRONLY || access == O_RDWR;
  const off_t position = ::lseek(descriptor, 0, SEEK_CUR);
  m_canSeek = position >= 0;
  m_position = m_canSeek ? static_cast<std::uint64_t>(position) : 0;
}

DescriptorStream::~DescriptorStream() { writeOut(); }

bool DescriptorStream::good() const { return m_error == 0; }

bool DescriptorStream::seekFromStart(unsigned int position) { return seekTo(position); }

bool DescriptorStream::seekFromEnd(unsigned int distance) {
  if (!writeOut()) {
    return false;
  }
  const std::optional<std::uint64_t> bytes = size();
  return bytes && distance <= *bytes && seekTo(*bytes - distance);
}

bool DescriptorStream::seekTo(std::uint64_t position) {
  constexpr auto kLargest = static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
  if (!m_canSeek || position > kLargest || !writeOut() ||
      ::lseek(m_descriptor, static_cast<off_t>(position), SEEK_SET) < 0) {
    return false;
  }
  dropReadAhead();
  m_position = position;
  return true;
}

unsigned int DescriptorStream::offset() const {
  constexpr std::uint64_t kLargest = std::numeric_limits<unsigned int>::max();
  return static_cast<unsigned int>(std::min(m_position, kLargest));
}

bool DescriptorStream::eof() const {
  return !prepareReading() || (m_taken == m_ahead.size() && !fill());
}

bool DescriptorStream::getSize(unsigned int& size) {
  writeOut();
  const std::optional<std::uint64_t> bytes = this->size();
  if (!bytes || *bytes > std::numeric_limits<unsigned int>::max()) {
    return false;
  }
  size = static_cast<unsigned int>(*bytes);
  return true;
}

std::optional<std::uint64_t> DescriptorStream::size() const {
  struct stat status = {};
  if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(status.st_size);
}

unsigned int DescriptorStream::read(unsigned char* target, unsigned int count) {
  if (!prepareReading()) {
    return 0;
  }
  unsigned int got = 0;
  while (got < count && (m_taken < m_ahead.size() || fill())) {
    got += readBuffered(target + got, count - got);
  }
  return got;
}

unsigned int DescriptorStream::readSome(unsigned char* target, unsigned int count) {
  const bool any = prepareReading() && (m_taken < m_ahead.size() || fill());
  return any ? readBuffered(target, count) : 0;
}

unsigned int DescriptorStream::readBuffered(unsigned char* target, unsigned int count) {
  const std::size_t taken = std::min<std::size_t>(count, m_ahead.size() - m_taken);
  std::memcpy(target, m_ahead.data() + m_taken, taken);
  m_taken += taken;
  m_position += taken;
  return static_cast<unsigned int>(taken);
}

bool DescriptorStream::fill() const {
  if (m_ended || m_error != 0) {
    return false;
  }
  m_ahead.resize(kBlockSize);
  m_taken = 0;
  const ssize_t got = readOnce(m_descriptor, m_ahead.data(), kBlockSize);
  if (got < 0) {
    fail(errno);
  }
  m_ahead.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
  m_ended = got == 0;
  if (m_listener) {
    m_listener(m_position + m_ahead.size());
  }
  return !m_ahead.empty();
}

unsigned int DescriptorStream::write(const unsigned char* source, unsigned int count) {
  if (!prepareWriting()) {
    return 0;
  }
  unsigned int taken = 0;
  while (taken < count) {
    const std::size_t room = kBlockSize - m_pending.size();
    const auto part = static_cast<unsigned int>(std::min<std::size_t>(room, count - taken));
    m_pending.insert(m_pending.end(), source + taken, source + taken + part);
    m_position += part;
    taken += part;
    if (m_pending.size() == kBlockSize && !writeOut()) {
      break;
    }
  }
  return m_error == 0 ? taken : 0;
}

bool DescriptorStream::flush() {
  writeOut();
  return good();
}

bool DescriptorStream::writeOut() {
  std::size_t put = 0;
  while (put < m_pending.size() && m_error == 0) {
    const ssize_t part = writeOnce(m_descriptor, m_pending.data() + put, m_pending.size() - put);
    if (part < 0) {
      fail(errno);
    } else {
      put += static_cast<std::size_t>(part);
    }
  }
  if (put > 0 && m_listener) {
    m_listener(m_position - m_pending.size() + put);
  }
  m_position -= m_pending.size() - put;
  m_pending.clear();
  return good();
}

// The descriptor has one position of its own, so bytes of the other direction are settled first. A
// socket has none: there both directions run side by side.
bool DescriptorStream::prepareReading() const {
  if (!m_canRead) {
    return false;
  }
  return m_pending.empty() || const_cast<DescriptorStream*>(this)->writeOut();
}

bool DescriptorStream::prepareWriting() {
  if (!m_canWrite || m_error != 0) {
    return false;
  }
  m_ended = false;
  return !m_canSeek || m_taken == m_ahead.size() || seekTo(m_position);
}

void DescriptorStream::dropReadAhead() {
  m_ahead.clear();
  m_taken = 0;
  m_ended = false;
}

void DescriptorStream::fail(int error) const {
  if (m_error == 0) {
    m_error = error;
  }
}

}  // namespace trelvo::tool
