#pragma once

#include <algorithm>
#include <cstring>
#include <utility>

#include <trelvo/IStream.h>

#include "tests/support/Bytes.h"

namespace trelvo::test {

/// A stream over memory that fails when it is told to, and that the library does not know: it is no
/// BufferStream, so every byte takes the way through the virtual functions.
///
/// It gives the bytes that it was made with from the front, and gathers what is written to it; the
/// two do not meet. It gives, and takes, `limit` bytes at the most.
class LimitedStream : public IStream {
 public:
  static constexpr unsigned int kUnlimited = ~0U;

  /// Takes up to `limit` bytes, and has none to give.
  explicit LimitedStream(unsigned int limit = kUnlimited) : m_limit(limit) {}

  /// Gives the first `limit` bytes of `content`.
  explicit LimitedStream(Bytes content, unsigned int limit = kUnlimited)
      : m_content(std::move(content)), m_limit(limit) {}

  /// From now on good() is false; bytes still come and go.
  void turnBad() noexcept { m_good = false; }

  /// What was written.
  const Bytes& taken() const noexcept { return m_taken; }

  bool good() const override { return m_good; }

  bool seekFromStart(unsigned int position) override {
    m_position = position;
    return position <= available();
  }
  bool seekFromEnd(unsigned int distance) override { return seekFromStart(available() - distance); }
  unsigned int offset() const override { return m_position; }
  bool eof() const override { return m_position >= available(); }
  bool getSize(unsigned int& size) override {
    size = available();
    return true;
  }
  bool canRead() const override { return true; }
  bool canSeek() const override { return true; }
  bool canWrite() const override { return true; }

  unsigned int read(unsigned char* target, unsigned int count) override {
    const unsigned int given = eof() ? 0 : std::min(count, available() - m_position);
    if (given != 0) {
      std::memcpy(target, m_content.data() + m_position, given);
      m_position += given;
    }
    return given;
  }

  unsigned int write(const unsigned char* source, unsigned int count) override {
    const auto room = m_limit - static_cast<unsigned int>(m_taken.size());
    const unsigned int kept = std::min(count, room);
    m_taken.insert(m_taken.end(), source, source + kept);
    return kept;
  }

  bool flush() override { return true; }

 private:
  unsigned int available() const {
    return std::min(m_limit, static_cast<unsigned int>(m_content.size()));
  }

  Bytes m_content;
  Bytes m_taken;
  unsigned int m_limit;
  unsigned int m_position = 0;
  bool m_good = true;
};

}  // namespace trelvo::test
