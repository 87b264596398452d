#pragma once

#include <zlib.h>

#include <trelvo/Export.h>
#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/ICryptography.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

/// The writing side of the encrypted log: compresses by zlib and writes through an encrypted file.
///
/// ICryptoLog::create() makes it.
/// Threads: one at a time.
class TRELVO_EXPORT CryptoLog : public ICryptoLog {
 public:
  /// A log that compresses into `cryptoFile`, which stands over `file` behind the head; it keeps
  /// all three. See started().
  CryptoLog(const gom::SharedPointer<core::IFile>& file,
            const gom::SharedPointer<ICryptography>& cryptography,
            const gom::SharedPointer<ICryptoFile>& cryptoFile);

  /// Ends the compressed stream, so that the file is complete, and closes it. Failures are not
  /// told.
  ~CryptoLog() override;

  /// Whether compression could start. A log where it could not writes nothing.
  bool started() const noexcept { return m_started; }

  /// Adds `text`, NUL-terminated, to the log; nothing is added to it. Null counts as empty. A
  /// failure is not told.
  void puts(const char* text) override;

  /// Brings everything written so far to the system, in a form that can be decrypted even when
  /// nothing follows. It costs about 5 bytes, and some compression.
  /// @return what the flush of the encrypted file says: false on a disk that is full. It knows
  ///         nothing of bytes that an earlier, passing failure has lost; what had been flushed
  ///         before stays readable.
  bool flush() override;

 private:
  void write(int flushMode);

  gom::SharedPointer<core::IFile> m_file;
  gom::SharedPointer<ICryptography> m_cryptography;
  gom::SharedPointer<ICryptoFile> m_cryptoFile;
  z_stream m_stream;  // zlib keeps its address: it is initialised in place and never copied
  bool m_started;
};

}  // namespace trelvo
