#include "objects/WireWriter.h"

#include <cstring>
#include <typeinfo>

namespace trelvo {

namespace {

Buffer* bufferOf(IStream& stream) {
  return typeid(stream) == typeid(BufferStream) ? &static_cast<BufferStream&>(stream).buffer()
                                                : nullptr;
}

}  // namespace

WireWriter::WireWriter(IStream& stream) : m_stream(stream), m_buffer(bufferOf(stream)) {
  if (m_buffer != nullptr) {
    m_origin = m_buffer->writePosition();
    aimAtBlock();
  } else {
    aimAtScratch();
  }
}

WireWriter::~WireWriter() {
  if (m_buffer != nullptr && m_start != m_scratch) {
    commitBlock();
  }
}

void WireWriter::aimAtBlock() noexcept {
  unsigned char* const block = m_buffer->data();
  m_start = block + m_buffer->writePosition();
  m_next = m_start;
  m_end = block + m_buffer->m_storage.size();
}

void WireWriter::aimAtScratch() noexcept {
  m_start = m_scratch;
  m_next = m_scratch;
  m_end = m_scratch + kMaxRoom;
}

void WireWriter::commitBlock() noexcept {
  if (m_next != m_start) {
    m_buffer->wrote(static_cast<unsigned int>(m_next - m_start));
    m_start = m_next;
  }
}

bool WireWriter::release() {
  if (m_buffer == nullptr) {
    return flushToStream();
  }
  if (m_start == m_scratch) {
    const auto pending = static_cast<unsigned int>(m_next - m_start);
    m_next = m_start;
    m_buffer->append(m_scratch, pending);
  } else {
    commitBlock();
  }
  return true;
}

bool WireWriter::resume() noexcept {
  if (m_buffer != nullptr) {
    aimAtBlock();
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

void WireWriter::growByHint() {
  if (m_hint == nullptr) {
    return;
  }
  const unsigned long long total = m_hint(m_hintObject);
  m_hint = nullptr;
  if (total != 0 && m_origin + total < 0xFFFFFE00ULL) {
    m_buffer->makeRoom(static_cast<unsigned int>(m_origin + total));
  }
}

void WireWriter::findRoom(unsigned int count) {
  release();
  if (m_buffer != nullptr) {
    growByHint();
    aimAtBlock();
    if (static_cast<unsigned long>(m_end - m_next) >= count) {
      return;
    }
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
