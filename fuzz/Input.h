#pragma once

#include <algorithm>

#include "fuzz/Target.h"

namespace trelvo::fuzz {

/// Takes an input apart from front to back. Behind its end there are zeros, and empty texts.
class Input {
 public:
  /// `bytes` must outlive the object.
  explicit Input(const Bytes& bytes) : m_bytes(bytes) {}

  bool atEnd() const { return m_place == m_bytes.size(); }

  unsigned int byte() { return atEnd() ? 0U : m_bytes[m_place++]; }

  /// Two bytes, the lower one first.
  unsigned int word() {
    const unsigned int low = byte();
    return low | byte() << 8U;
  }

  /// Up to `count` bytes.
  Bytes bytes(std::size_t count) {
    const auto first = m_bytes.begin() + static_cast<std::ptrdiff_t>(m_place);
    m_place += std::min(count, m_bytes.size() - m_place);
    return {first, m_bytes.begin() + static_cast<std::ptrdiff_t>(m_place)};
  }

  Bytes rest() { return bytes(m_bytes.size()); }

 private:
  const Bytes& m_bytes;
  std::size_t m_place = 0;
};

}  // namespace trelvo::fuzz
