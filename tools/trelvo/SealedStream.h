#pragma once

#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/gom/SharedPointer.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/FileStream.h"

namespace trelvo::tool {

/// The largest plain text of a sealed file: there the cipher's counter would start again.
constexpr std::uint64_t kLargestSealed = 0xFFFFFFFF;

/// The plain bytes of a sealed file: written or read once, from front to back.
///
/// What was written is in the file after flush(), which comes once, behind the last byte. Reading
/// may start again by seekFromStart(). A file that is larger than kLargestSealed fails with EFBIG.
/// Threads: one at a time.
class SealedStream : public FileStream {
 public:
  /// Stands over `file`, which must outlive the stream and which `name` is for messages, with the
  /// key of `store`. Throws Failure when the file cannot be sought.
  SealedStream(DescriptorStream& file, const std::string& name, ICryptographyUtility& store);

  bool good() const override { return error() == 0; }
  bool seekFromStart(unsigned int position) override;
  bool seekFromEnd(unsigned int) override { return false; }
  unsigned int offset() const override { return static_cast<unsigned int>(m_position); }

  /// Looks ahead: true when there is no further byte, also after a failure.
  bool eof() const override { return m_taken == m_ahead.size() && !fill(); }
  bool getSize(unsigned int& size) override { return m_file.getSize(size); }
  bool canRead() const override { return m_file.canRead(); }
  bool canSeek() const override { return m_file.canRead(); }
  bool canWrite() const override { return m_file.canWrite(); }
  unsigned int read(unsigned char* target, unsigned int count) override;
  unsigned int write(const unsigned char* source, unsigned int count) override;
  bool flush() override { return m_crypto->flush() && good(); }

  std::uint64_t position() const override { return m_position; }
  std::optional<std::uint64_t> size() const override { return m_file.size(); }
  int error() const override { return m_error != 0 ? m_error : m_file.error(); }
  void onBlock(std::function<void(std::uint64_t)> listener) override {
    m_file.onBlock(std::move(listener));
  }

 private:
  bool fill() const;

  DescriptorStream& m_file;
  gom::SharedPointer<ICryptoFile> m_crypto;
  std::uint64_t m_position = 0;
  mutable std::vector<unsigned char> m_ahead;  // read, not yet taken
  mutable std::size_t m_taken = 0;             // bytes of m_ahead already taken
  int m_error = 0;
};

}  // namespace trelvo::tool
