#pragma once

#include <trelvo/core/IFile.h>

#include "tools/trelvo/DescriptorStream.h"

namespace trelvo::tool {

/// A DescriptorStream as the file that the library's encrypted file stands over.
///
/// Threads: one at a time.
class DescriptorFile : public core::IFile {
 public:
  /// Forwards to `stream`, which must outlive this object.
  explicit DescriptorFile(DescriptorStream& stream) : m_stream(stream) {}

  bool good() const override { return m_stream.good(); }
  bool seekFromStart(unsigned int position) override { return m_stream.seekFromStart(position); }
  bool seekFromEnd(unsigned int distance) override { return m_stream.seekFromEnd(distance); }
  unsigned int offset() const override { return m_stream.offset(); }
  bool eof() const override { return m_stream.eof(); }
  bool getSize(unsigned int& size) override { return m_stream.getSize(size); }
  bool canRead() const override { return m_stream.canRead(); }
  bool canSeek() const override { return m_stream.canSeek(); }
  bool canWrite() const override { return m_stream.canWrite(); }
  unsigned int read(unsigned char* target, unsigned int count) override {
    return m_stream.read(target, count);
  }
  unsigned int write(const unsigned char* source, unsigned int count) override {
    return m_stream.write(source, count);
  }
  bool flush() override { return m_stream.flush(); }

 private:
  DescriptorStream& m_stream;
};

}  // namespace trelvo::tool
