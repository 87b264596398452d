#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <string>

#include <openssl/crypto.h>

#include <trelvo/Buffer.h>

namespace trelvo {

/// Bytes that nobody finds afterwards: overwritten when they go, in a way that no optimiser
/// removes.
template <std::size_t size>
class WipedArray : public std::array<unsigned char, size> {
 public:
  WipedArray() noexcept : std::array<unsigned char, size>() {}
  ~WipedArray() { OPENSSL_cleanse(this->data(), size); }
  WipedArray(const WipedArray&) = delete;
  WipedArray& operator=(const WipedArray&) = delete;
};

/// The same on the heap, with a size known later; false where memory ran out. Not zeroed at first.
class WipedBlock {
 public:
  explicit WipedBlock(std::size_t size) noexcept
      : m_bytes(new (std::nothrow) unsigned char[size]), m_size(size) {}
  ~WipedBlock() {
    if (m_bytes != nullptr) {
      OPENSSL_cleanse(m_bytes.get(), m_size);
    }
  }
  WipedBlock(const WipedBlock&) = delete;
  WipedBlock& operator=(const WipedBlock&) = delete;

  explicit operator bool() const noexcept { return m_bytes != nullptr; }
  unsigned char* data() const noexcept { return m_bytes.get(); }
  std::size_t size() const noexcept { return m_size; }

  /// Hands the block out unwiped, for array delete.
  unsigned char* release() noexcept { return m_bytes.release(); }

 private:
  std::unique_ptr<unsigned char[]> m_bytes;
  std::size_t m_size;
};

/// A Buffer that is wiped when it goes: what stands in its block then, not what it outgrew. Give it
/// its room beforehand.
class WipedBuffer : public Buffer {
 public:
  using Buffer::Buffer;
  ~WipedBuffer() { OPENSSL_cleanse(Buffer::data(), size()); }
  WipedBuffer(const WipedBuffer&) = delete;
  WipedBuffer& operator=(const WipedBuffer&) = delete;
};

/// A text that is wiped when it goes. Give it its room beforehand, as growing leaves a copy behind.
class WipedText : public std::string {
 public:
  using std::string::string;
  ~WipedText() { OPENSSL_cleanse(data(), capacity()); }
  WipedText(const WipedText&) = delete;
  WipedText& operator=(const WipedText&) = delete;
};

}  // namespace trelvo
