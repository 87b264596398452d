#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

#include "crypto/Wiped.h"

namespace trelvo {

/// A file with a secret in it, open for reading; what the stream buffers of it is wiped.
class SecretFile {
 public:
  explicit SecretFile(const char* path) noexcept : m_stream(std::fopen(path, "rbe")) {
    if (m_stream != nullptr) {
      std::setvbuf(m_stream.get(), reinterpret_cast<char*>(m_buffer.data()), _IOFBF,
                   m_buffer.size());
    }
  }

  /// Null when the file could not be opened.
  std::FILE* stream() const noexcept { return m_stream.get(); }

 private:
  struct Close {
    void operator()(std::FILE* stream) const noexcept { std::fclose(stream); }
  };

  static constexpr std::size_t kBufferSize = 4096;

  WipedArray<kBufferSize> m_buffer;  // goes after the stream that uses it
  std::unique_ptr<std::FILE, Close> m_stream;
};

}  // namespace trelvo
