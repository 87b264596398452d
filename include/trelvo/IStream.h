#pragma once

#include <trelvo/Export.h>

namespace trelvo {

/// A stream of bytes: memory, a file, an encrypted file.
///
/// The typed helpers are all there is of wire primitives. Every multi-byte value travels with its
/// least significant byte first, on every processor; floating point as the IEEE 754 image. Signed
/// values travel through the unsigned helper of their width, a bool as one byte.
///
/// Threads: one at a time.
class TRELVO_EXPORT IStream {
 public:
  virtual ~IStream();

  /// Whether the stream is usable.
  virtual bool good() const = 0;

  /// Moves to `position`, in bytes from the start. @return true when it was set.
  virtual bool seekFromStart(unsigned int position) = 0;

  /// Moves to `distance` bytes before the end. @return true when it was set.
  virtual bool seekFromEnd(unsigned int distance) = 0;

  /// The current position in bytes from the start.
  virtual unsigned int offset() const = 0;

  /// Whether there are no more bytes to read.
  virtual bool eof() const = 0;

  /// Gives the total size in bytes. @return true when `size` was set.
  virtual bool getSize(unsigned int& size) = 0;

  /// What the stream can do. No caller has to ask: reading and writing tell by themselves.
  virtual bool canRead() const = 0;
  virtual bool canSeek() const = 0;
  virtual bool canWrite() const = 0;

  /// Reads up to `count` bytes into `target`. @return the bytes read: fewer than `count` at the
  /// end.
  virtual unsigned int read(unsigned char* target, unsigned int count) = 0;

  /// Writes `count` bytes. @return the bytes written: fewer than `count` on failure.
  virtual unsigned int write(const unsigned char* source, unsigned int count) = 0;

  /// Hands buffered bytes on. @return true on success.
  virtual bool flush() = 0;

  /// Reads one value. @return true when its full width arrived. After a short read the bytes that
  /// did arrive stand in the target, the others are as they were.
  [[nodiscard]] bool readUint8(unsigned char& value);
  [[nodiscard]] bool readUint16(unsigned short& value);
  [[nodiscard]] bool readUint32(unsigned int& value);
  [[nodiscard]] bool readUint64(unsigned long long& value);
  [[nodiscard]] bool readFloat(float& value);
  [[nodiscard]] bool readDouble(double& value);

  /// Writes one value. @return true when its full width went out.
  [[nodiscard]] bool writeUint8(unsigned char value);
  [[nodiscard]] bool writeUint16(unsigned short value);
  [[nodiscard]] bool writeUint32(unsigned int value);
  [[nodiscard]] bool writeUint64(unsigned long long value);
  [[nodiscard]] bool writeFloat(float value);
  [[nodiscard]] bool writeDouble(double value);

 protected:
  IStream() = default;
  IStream(const IStream&) = default;
  IStream& operator=(const IStream&) = default;
};

}  // namespace trelvo
