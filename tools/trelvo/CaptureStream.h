#pragma once

#include <trelvo/IStream.h>

#include <cstdint>
#include <vector>

namespace trelvo::tool {

/// Reads from another stream, counts, and keeps a copy of the bytes it passed on: that tells how
/// far an object reaches whose length only its class knows.
///
/// Reads forward only; writes nothing. Threads: one at a time.
class CaptureStream : public IStream {
 public:
  /// Reads `source`, which must outlive this stream; its next byte counts as byte `position`.
  CaptureStream(IStream& source, std::uint64_t position) : m_source(source), m_position(position) {}

  bool good() const override { return m_source.good(); }
  bool seekFromStart(unsigned int) override { return false; }
  bool seekFromEnd(unsigned int) override { return false; }
  unsigned int offset() const override { return m_source.offset(); }
  bool eof() const override { return m_source.eof(); }
  bool getSize(unsigned int& size) override { return m_source.getSize(size); }
  bool canRead() const override { return m_source.canRead(); }
  bool canSeek() const override { return false; }
  bool canWrite() const override { return false; }
  unsigned int read(unsigned char* target, unsigned int count) override;
  unsigned int write(const unsigned char*, unsigned int) override { return 0; }
  bool flush() override { return true; }

  /// Forgets the captured bytes; capturing starts anew at the next byte.
  void restart() { m_bytes.clear(); }

  /// The bytes passed on since restart().
  const std::vector<unsigned char>& bytes() const { return m_bytes; }

  /// Where the next byte stands.
  std::uint64_t position() const { return m_position; }

  /// Whether a read got fewer bytes than it asked for.
  bool ranShort() const { return m_ranShort; }

 private:
  IStream& m_source;
  std::uint64_t m_position;
  std::vector<unsigned char> m_bytes;
  bool m_ranShort = false;
};

}  // namespace trelvo::tool
