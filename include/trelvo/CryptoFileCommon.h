#pragma once

#include <trelvo/Export.h>
#include <trelvo/ICryptoFile.h>
#include <trelvo/Status.h>
#include <trelvo/core/IFile.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

class CryptoFileLin;

/// The block logic of the encrypted file, without the cipher: a derived class encrypts and decrypts
/// one block.
///
/// Block `n` covers the bytes 512 * n to 512 * n + 511, counted from where the file stood when the
/// object was made; the last one may be shorter. Every block goes through encryptBlock() and
/// decryptBlock(). Only CryptoFileLin itself, over core::File itself, takes runs of whole blocks in
/// one go; files, results and fields end as if it had not.
///
/// While `m_mode` is 2 the file stands at the start of the block in `m_buffer`. While it is 0 and a
/// block has been loaded, the file stands behind that block.
///
/// Threads: one at a time.
class TRELVO_EXPORT CryptoFileCommon : public ICryptoFile {
 public:
  /// The plain and the stored size of a block, in bytes.
  static constexpr unsigned int kBlockSize = 512;

  /// Wipes key, IV and plain bytes. The file is not flushed: this class can no longer encrypt.
  ~CryptoFileCommon() override;

  /// Whether the file below is usable.
  bool good() const override;
  /// Leaves the block being written, if there is one, and stands at `position`, which may lie
  /// behind the end. Bytes that a later write leaves out read as noise.
  /// @return false when the block could not be written or the file could not be moved.
  bool seekFromStart(unsigned int position) override;
  /// The same for `distance` bytes before the end. A place inside a block left by a seek with no
  /// transfer after it counts as part of the size, so that a second seek goes that much further
  /// and possibly past the end; seekFromStart(0) ahead of it avoids that.
  /// @return false also when `distance` is larger than the size.
  bool seekFromEnd(unsigned int distance) override;
  /// After a seek and while writing: the place of the next byte. During reading: the end of the
  /// block loaded last.
  unsigned int offset() const override;
  /// Whether the file below has met its end, while plain bytes may still wait in the block.
  bool eof() const override;
  /// False from a write until the next seek; reading works all the same.
  bool canRead() const override;
  bool canSeek() const override;
  bool canWrite() const override;
  /// Flushes, then gives the size of the whole file, with what stands ahead of the encrypted bytes.
  /// A failed flush does not hinder it.
  bool getSize(unsigned int& size) override;
  /// Reads up to `count` plain bytes. @return the bytes read: fewer at the end and on failure,
  /// which are not told apart.
  unsigned int read(unsigned char* target, unsigned int count) override;
  /// Takes `count` plain bytes; the other bytes of the blocks they touch stay as they are. The last
  /// block waits for a flush, a seek, more bytes or the object's end.
  /// @return the bytes taken: fewer on failure, and then a seek has to come before more. A count of
  ///         0 loads the block all the same.
  unsigned int write(const unsigned char* source, unsigned int count) override;
  /// Writes the block being written, when it has changed, and flushes the file. The block still
  /// counts as changed, and writing goes on in it.
  /// @return true when all of that succeeded.
  bool flush() override;

  /// Encrypts the `m_validBytes` bytes of `m_buffer`, which are block `blockIndex`, into `output`,
  /// which has room for 512.
  /// @return StatusOk, with `outputSize` set. Anything else ends the operation.
  virtual Status encryptBlock(unsigned int blockIndex, unsigned char* output,
                              unsigned int& outputSize) = 0;

  /// Decrypts `inputSize` bytes, 1 to 512, which are block `blockIndex`, into `m_buffer`.
  /// @return StatusOk, with `m_validBytes` set. Anything else ends the operation.
  virtual Status decryptBlock(unsigned int blockIndex, const unsigned char* input,
                              unsigned int inputSize) = 0;

 protected:
  /// The values of `m_mode`. 1 is respected where it is found, and never set.
  enum Mode : unsigned int {
    ModeIdle = 0,
    ModeReading = 1,
    ModeWriting = 2,
  };

  /// Stands over `file`, which must not be empty, from its present position on, with copies of 16
  /// bytes at `key` and 16 at `iv`.
  CryptoFileCommon(const gom::SharedPointer<core::IFile>& file, const unsigned char* key,
                   const unsigned char* iv);

  /// The file's position, counted from m_baseOffset.
  unsigned int myOffset() const;
  /// The file's position for a place counted from m_baseOffset.
  unsigned int trueOffset(unsigned int logical) const;

  /// Empties the block and forgets its changes.
  void resetBuffer();
  /// Loads the block at the file's position, and leaves the file behind it. Nothing to read makes
  /// an empty block and StatusOk. @return StatusFileError when the file cannot tell where it
  /// stands.
  Status readBlock();
  /// The same, with the position put to where a seek wanted it; `seekBack` leaves the file at the
  /// block's start. At the end of the file the block is empty and the wanted position stays
  /// pending. @return StatusFileError when the file could not be moved or cannot tell where it
  /// stands, and with `seekBack` when it is no longer good() and gave less than a block.
  Status loadBlock(bool seekBack);
  /// Writes the block at the file's position, and leaves the file behind it.
  /// @return StatusFileError when the file took less than all, or cannot tell where it stands.
  Status writeBlock();
  /// Writes the block when it has changed, empties it and goes idle.
  Status preSeek();

  gom::SharedPointer<core::IFile> m_file;   ///< What the enciphered bytes lie in.
  unsigned int m_baseOffset;                ///< Where the file stood when this object was made.
  unsigned int m_mode = ModeIdle;           ///< One of Mode.
  unsigned int m_pendingOffset = 0;         ///< Where in its block the next load puts m_position.
  unsigned char m_buffer[kBlockSize] = {};  ///< The plain bytes of the current block.
  unsigned int m_validBytes = 0;            ///< How many of them hold data.
  unsigned int m_position = 0;              ///< The next byte in m_buffer.
  bool m_dirty = false;                     ///< Whether m_buffer has changes that the file lacks.
  unsigned char m_key[16] = {};             ///< Wiped when the object dies, like m_iv.
  unsigned char m_iv[16] = {};  ///< The last four bytes are the counter of the block seen last.

 private:
  friend class ICryptoFile;

  bool isPlace(unsigned int offset) const noexcept;
  bool failedInBlock() const;
  bool lacksBytes() const;
  bool returnToBlock();
  CryptoFileLin* forRuns() noexcept;
  bool canReach(unsigned int place);
  unsigned int takeFromBuffer(unsigned char* target, unsigned int count);
  bool loadMore(unsigned char* target, unsigned int count, unsigned int& delivered);
  bool readRun(unsigned char* target, unsigned int count, unsigned int& delivered);
  void keepLastBlock(const unsigned char* piece, unsigned int got, bool complete);
  unsigned int putIntoBuffer(const unsigned char* source, unsigned int count);
  bool nextBlock(const unsigned char* source, unsigned int count, unsigned int& taken);
  bool writeRun(const unsigned char* source, unsigned int count, unsigned int& taken);
  bool writePiece(CryptoFileLin& self, unsigned int blockIndex, const unsigned char* source,
                  unsigned int size, unsigned int& taken);
  void noteEnd(unsigned int place);
  void noteWritten(unsigned int place, unsigned int size);

  bool m_endKnown = false;  ///< Whether m_end counts: never beyond a seek.
  unsigned int m_end = 0;   ///< Then the file's position behind its last byte.
  /// Where the block in m_buffer belongs, when a failure has left the file elsewhere; else all
  /// ones.
  unsigned int m_strayedFrom = ~0U;
};

}  // namespace trelvo
