#pragma once

#include <trelvo/Export.h>
#include <trelvo/IStream.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

class ICryptographyUtility;

/// A stream over a file whose bytes are stored encrypted with AES-128 in counter mode. The caller
/// reads, writes and seeks plain bytes; the file is exactly as long as they are.
///
/// The stored form is described in docs/encrypted-files.md. It has no checksum: a wrong key, or a
/// changed byte, reads as other bytes and not as an error.
///
/// What surprises, all of it by design:
/// - The bytes move through one block of 512. `offset()` is the caller's place only after a seek
///   and before the next transfer, and while writing; during reading it is the end of the block
///   that was loaded last. `eof()` likewise speaks of the file below.
/// - Going from reading to writing, or back, wants a seek in between. Without one, writing goes on
///   at the end of the block that was read last, and reading past the block being written drops
///   its changes.
/// - `flush()` writes the block being written, and keeps it as changed: the next flush, seek or
///   full block writes it again, with the same bytes.
/// - `getSize()` counts the whole file, with what stands ahead of the encrypted bytes.
///
/// Encrypting two files, or two versions of one, with the same key and the same first twelve bytes
/// of the IV gives away the XOR of their contents: every file wants a key of its own.
///
/// Ownership: the file is shared; while this object lives nobody else should move or change it.
/// When the object dies it flushes, wipes key and plain bytes, and lets go of the file.
/// Threads: one at a time.
class TRELVO_EXPORT ICryptoFile : public gom::ReferenceCountable, public IStream {
 public:
  ~ICryptoFile() override;

  ICryptoFile(const ICryptoFile&) = delete;
  ICryptoFile& operator=(const ICryptoFile&) = delete;

  /// Stands over `file` from its present position on: that place is offset 0, and what lies ahead
  /// of it is never touched. Key and IV are copied from `utility`, which may then go.
  /// @return a plain pointer with reference count 0, for the caller to adopt into a
  ///         gom::SharedPointer; null when the handle is empty, the file cannot tell where it
  ///         stands (a pipe), the utility has no key or memory runs out.
  [[nodiscard]] static ICryptoFile* open(gom::SharedPointer<core::IFile> file,
                                         ICryptographyUtility& utility);

  /// The same with 16 bytes at `key` and 16 at `iv`, which are copied. Only the first twelve bytes
  /// of the IV count. Null for a null pointer, too.
  [[nodiscard]] static ICryptoFile* open(gom::SharedPointer<core::IFile> file, unsigned char* key,
                                         unsigned char* iv);

 protected:
  ICryptoFile() = default;
};

}  // namespace trelvo
