#pragma once

#include <streambuf>

#include "tools/trelvo/DescriptorStream.h"

namespace trelvo::tool {

/// The buffer of a std::ostream over a file descriptor that, unlike std::cout's, can tell why
/// writing failed.
class DescriptorBuffer : public std::streambuf {
 public:
  /// Writes to `descriptor`, which stays its owner's.
  explicit DescriptorBuffer(int descriptor) : m_stream(descriptor) {}

  /// The errno of the first write that failed, 0 when none has. Flush the std::ostream first.
  int error() const { return m_stream.error(); }

  /// What the bytes go to, for messages.
  const FileStream& stream() const { return m_stream; }

 private:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize count) override;
  int sync() override { return m_stream.flush() ? 0 : -1; }

  DescriptorStream m_stream;
};

}  // namespace trelvo::tool
