#include <trelvo/Buffer.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace trelvo {

namespace {

constexpr unsigned int kGrowthStep = 512;
constexpr unsigned int kLargestNeed = 0xFFFFFDFF;  // the highest whose rounding fits 32 bits

}  // namespace

Buffer::Buffer(unsigned int capacity) { makeRoom(capacity); }

Buffer::Buffer(unsigned char* block, unsigned int size) : m_storage(block, size), m_used(size) {
  attachBase();
}

// The view is no copy of the other's: it is attached to the block that came over.
// NOLINTNEXTLINE(bugprone-copy-constructor-init,readability-redundant-member-init)
Buffer::Buffer(Buffer& other) : ReadOnlyBuffer() { *this = other; }

Buffer::Buffer(auto_array_proxy<unsigned char> proxy) { *this = proxy; }

Buffer::Buffer(auto_array<unsigned char>& array) : m_storage(std::move(array)) { attachBase(); }

// NOLINTNEXTLINE(misc-unconventional-assign-operator): transfers
Buffer& Buffer::operator=(Buffer& other) {
  if (this == &other) {
    return *this;
  }
  const unsigned int capacity = other.m_storage.size();
  const unsigned int used = other.m_used;
  const unsigned int readPosition = other.m_readPosition;
  const unsigned int writePosition = other.m_writePosition;
  m_storage = auto_array<unsigned char>(other.release(), capacity);
  m_used = used;
  attachBase();
  m_readPosition = readPosition;
  m_writePosition = writePosition;
  return *this;
}

Buffer& Buffer::operator=(auto_array_proxy<unsigned char> proxy) {
  m_storage = proxy;
  m_used = proxy.size;
  attachBase();
  m_writePosition = m_used;
  return *this;
}

Buffer::operator auto_array_proxy<unsigned char>() noexcept {
  auto_array_proxy<unsigned char> proxy = m_storage;
  proxy.size = m_used;
  return proxy;
}

void Buffer::makeRoom(unsigned int needed) {
  const unsigned int capacity = m_storage.size();
  if (capacity >= needed) {
    return;
  }
  if (needed > kLargestNeed) {
    throw std::bad_alloc();
  }
  const unsigned int grown = (needed & ~(kGrowthStep - 1)) + kGrowthStep;
  auto_array<unsigned char> block(new unsigned char[grown], grown);
  if (capacity != 0) {
    std::memcpy(block.get(), m_storage.get(),
                capacity);  // data() may have been written to directly
  }
  m_storage = std::move(block);
}

unsigned char* Buffer::release() noexcept {
  attach(nullptr, 0);
  m_writePosition = 0;
  m_used = 0;
  const auto_array_proxy<unsigned char> block = m_storage;
  return block.pointer;
}

void Buffer::reset() noexcept {
  m_storage.reset();
  m_writePosition = 0;
  m_used = 0;
  attachBase();
}

unsigned char* Buffer::roomForWriting(unsigned int count) {
  if (count > ~m_writePosition) {
    throw std::bad_alloc();
  }
  makeRoom(m_writePosition + count);
  return m_storage.get() + m_writePosition;
}

void Buffer::wrote(unsigned int count) noexcept {
  m_writePosition += count;
  m_used = std::max(m_used, m_writePosition);
  attachBase();
}

void Buffer::append(const unsigned char* bytes, unsigned int count) {
  unsigned char* const room = roomForWriting(count);
  if (count != 0) {
    std::memcpy(room, bytes, count);
  }
  wrote(count);
}

void Buffer::fill(unsigned char byte, unsigned int count) {
  unsigned char* const room = roomForWriting(count);
  if (count != 0) {
    std::memset(room, byte, count);
  }
  wrote(count);
}

Status Buffer::setWritePosition(unsigned int position) noexcept {
  if (position >= m_used) {
    return StatusInvalidParameter;
  }
  m_writePosition = position;
  return StatusOk;
}

}  // namespace trelvo
