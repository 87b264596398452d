#include "objects/WireReader.h"

#include <algorithm>
#include <typeinfo>

namespace trelvo {

namespace {

thread_local unsigned int nestingOfThread = 0;

constexpr unsigned int kFirstBlindBytes = 4096;

ReadOnlyBuffer* viewOf(IStream& stream) {
  return typeid(stream) == typeid(BufferStream) ? &static_cast<BufferStream&>(stream).buffer()
                                                : nullptr;
}

}  // namespace

WireReader::WireReader(IStream& stream)
    : m_stream(stream), m_view(viewOf(stream)), m_depth(nestingOfThread) {
  aim();
}

void WireReader::aim() noexcept {
  if (m_view != nullptr && m_view->data() != nullptr) {
    m_next = m_view->data() + m_view->readPosition();
    m_end = m_view->data() + m_view->size();
  }
}

void WireReader::sync() noexcept {
  if (m_next != nullptr) {
    m_view->m_readPosition = static_cast<unsigned int>(m_next - m_view->data());
  }
}

WireReader::Suspension::Suspension(WireReader& reader) noexcept
    : m_reader(reader), m_outerDepth(nestingOfThread) {
  m_reader.sync();
  nestingOfThread = m_reader.m_depth;
}

WireReader::Suspension::~Suspension() {
  nestingOfThread = m_outerDepth;
  m_reader.aim();
}

bool WireReader::getImage(void* image, unsigned int size) {
  auto* const target = static_cast<unsigned char*>(image);
  swapWireOrder(target, size);
  const unsigned int arrived = bytes(target, size);
  swapWireOrder(target, size);
  return arrived == size;
}

unsigned int WireReader::bytes(unsigned char* target, unsigned int count) {
  if (m_view == nullptr) {
    return m_stream.read(target, count);
  }
  const unsigned int taken = plausible(count);
  if (taken != 0) {
    std::memcpy(target, m_next, taken);
    m_next += taken;
  }
  return taken;
}

unsigned int WireReader::plausible(unsigned int wanted) const noexcept {
  if (m_view == nullptr) {
    return std::min(wanted, kFirstBlindBytes);
  }
  const auto left = static_cast<unsigned long>(m_end - m_next);
  return left < wanted ? static_cast<unsigned int>(left) : wanted;
}

}  // namespace trelvo
