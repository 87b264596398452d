#pragma once

#include <trelvo/Export.h>

namespace trelvo {

class IStream;

/// Something that has a wire form.
class TRELVO_EXPORT ISerializable {
 public:
  virtual ~ISerializable();

  /// Writes the wire form at the stream's position.
  /// @return true when all of it went out and the stream is still good().
  [[nodiscard]] virtual bool write(IStream& stream) const = 0;

  /// Reads the wire form from the stream's position. The bytes may come from anywhere: whatever
  /// they are, the result is an object or a clean failure.
  /// @return true when all of it was there and well-formed, and the stream is still good().
  [[nodiscard]] virtual bool read(IStream& stream) = 0;

 protected:
  ISerializable() = default;
  ISerializable(const ISerializable&) = default;
  ISerializable& operator=(const ISerializable&) = default;
};

}  // namespace trelvo
