#include "objects/WireWriter.h"

#include <cstring>
#include <new>
#include <typeinfo>

namespace trelvo {

namespace {

constexpr unsigned int kGrowthStep = 512;

Buffer* bufferOf(IStream& stream) {
  return typeid(stream) == typeid(BufferStream) ? &static_cast<BufferStream&>(stream).buffer()
                                                : nullptr;
}

}  // namespace

// The scratch is written before it is read. NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init)
WireWriter::WireWriter(IStream& stream) : m_stream(stream), m_buffer(bufferOf(stream)) {
  if (m_buffer != nullptr) {
    m_origin = m_buffer->writePosition();
    aimAtBlock(0);
  } else {
    aimAtScratch();
  }
}

WireWriter::~WireWriter() {
  if (m_buffer != nullptr) {
    try {
      commit();
    } catch (const std::bad_alloc&) {
      // Only while another exception is on its way: the bytes gathered last are lost.
    }
  }
}

// @return whether `count` bytes fit there.
bool WireWriter::aimAtBlock(unsigned int count) noexcept {
  unsigned char* const block = m_buffer->data();
  m_start = block + m_buffer->writePosition();
  m_next = m_start;
  m_end = block + m_buffer->m_storage.size();
  return static_cast<unsigned long>(m_end - m_next) >= count;
}

void WireWriter::aimAtScratch() noexcept {
  m_start = m_scratch;
  m_next = m_scratch;
  m_end = m_scratch + kGathered;
}

// Makes the pending bytes part of the buffer.
void WireWriter::commit() {
  const auto pending = static_cast<unsigned int>(m_next - m_start);
  if (pending == 0) {
    return;
  }
  if (m_start == m_scratch) {
    m_next = m_start;
    m_buffer->append(m_scratch, pending);
  } else {
    m_start = m_next;
    m_buffer->wrote(pending);
  }
}

bool WireWriter::release() {
  if (m_buffer == nullptr) {
    return flushToStream();
  }
  commit();
  return true;
}

bool WireWriter::resume() noexcept {
  if (m_buffer != nullptr) {
    aimAtBlock(0);
  }
  return true;
}

bool WireWriter::flushToStream() {
  const auto pending = static_cast<unsigned int>(m_next - m_start);
  m_next = m_start;
  if (pending != 0 && !m_failed) {
    m_failed = m_stream.write(m_start, pending) != pending;
  }
  return !m_failed && m_stream.good();
}

// A buffer that grows field by field up to a multiple of 512 ends with exactly that; asked for so
// many bytes at once it takes a step more.
void WireWriter::growByHint() {
  if (m_hint == nullptr) {
    return;
  }
  const unsigned long long total = m_hint(m_hintObject);
  m_hint = nullptr;
  if (total != 0 && m_origin + total < 0xFFFFFE00ULL) {
    const auto end = static_cast<unsigned int>(m_origin + total);
    m_buffer->makeRoom(end % kGrowthStep == 0 ? end - 1 : end);
  }
}

void WireWriter::findRoom(unsigned int count) {
  if (m_buffer == nullptr) {
    flushToStream();
  } else if (m_start == m_scratch) {
    growByHint();
    commit();
    if (aimAtBlock(count)) {
      return;
    }
  } else {
    commit();
  }
  aimAtScratch();
}

bool WireWriter::bytes(const unsigned char* source, unsigned int count) {
  if (count <= kMaxRoom) {
    std::memcpy(reserve(count), source, count);
    m_next += count;
    return true;
  }
  return handOver([&](IStream& stream) { return stream.write(source, count) == count; });
}

bool WireWriter::finish() { return release() && m_stream.good(); }

}  // namespace trelvo
