#pragma once

#include <trelvo/Export.h>
#include <trelvo/ILog.h>
#include <trelvo/Secret.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

/// A log that only the holder of an RSA private key can read, kept in a `.slog` file.
///
/// Each log gets a fresh AES key, which stands at the head of the file encrypted to a public RSA
/// key and nowhere else; the text is compressed and encrypted behind it. The form is described in
/// docs/encrypted-files.md. It hides what is logged; it does not prove who wrote it.
///
/// Whatever was flushed survives the death of the process: the file then decrypts to a text that
/// begins with all of it.
///
/// Threads: one at a time.
class TRELVO_EXPORT ICryptoLog : public gom::ReferenceCountable, public ILog {
 public:
  ~ICryptoLog() override;

  ICryptoLog(const ICryptoLog&) = delete;
  ICryptoLog& operator=(const ICryptoLog&) = delete;

  /// Starts a log in the file `logPath`, which is made with mode 0600, less the umask, or emptied,
  /// for the holder of the private key to the PEM public key in the file `publicKeyPath`.
  /// @return a plain pointer with reference count 0, for the caller to adopt into a
  ///         gom::SharedPointer; null on any failure. Without a usable key no file is made.
  [[nodiscard]] static ICryptoLog* create(const char* logPath, const char* publicKeyPath);

  /// Starts the log that goes with the logging engine's default file: its name with ".log" replaced
  /// by ".slog", and the key "publog.pem" among the preinstalled files. Hand it to
  /// Debug::setInternalLog(), which makes the logging instance its owner: then it must not be
  /// adopted by a handle.
  /// @return as create(); null also when there is no logging instance, or no ".log" in the name.
  [[nodiscard]] static ICryptoLog* createDebugInternalLog();

  /// Writes the text of the log `inputPath` to the file `outputPath`, which is made or emptied,
  /// with the PEM private key in the file `privateKeyPath`. `passphrase` may be empty. The output
  /// is an ordinary file: the umask says who may read it. The input is opened for writing too,
  /// though nothing is written to it.
  ///
  /// A log whose writer died ends early and is no failure: all that reached the file comes out.
  /// @return StatusOk; StatusFileError when a file cannot be opened, read or written, or is too
  ///         short for its head; StatusKeyFailure when the key file is no usable private key or not
  ///         the right one, and no output file is made; StatusFailed when the text is damaged, with
  ///         all that stands ahead of the damage in the output; StatusInternal when cryptography or
  ///         decompression cannot start; StatusOutOfMemory.
  [[nodiscard]] static Status decrypt(const char* inputPath, const char* outputPath,
                                      const char* privateKeyPath,
                                      const gom::SharedPointer<Secret>& passphrase);

 protected:
  ICryptoLog() = default;
};

}  // namespace trelvo
