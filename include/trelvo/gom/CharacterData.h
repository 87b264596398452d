#pragma once

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::gom {

class WireCodec;

/// A string value: counted bytes of no particular encoding, zero bytes allowed.
///
/// On the wire it is the length in 4 bytes and then the bytes, with no terminator. There are two
/// empty strings, and they are not equal: create("", 0) has a text of length 0, while one read from
/// the wire with length 0 has no text at all. Both write the same 4 bytes.
///
/// Threads: one at a time.
class TRELVO_EXPORT CharacterData : public ReferenceCountable, public ISerializable {
 public:
  /// No text, length 0.
  CharacterData() noexcept = default;
  ~CharacterData() override;

  CharacterData(const CharacterData&) = delete;
  CharacterData& operator=(const CharacterData&) = delete;

  /// Copies `length` bytes of `text`. @return an empty handle when memory runs out.
  [[nodiscard]] static SharedPointer<CharacterData> create(const char* text, unsigned int length);

  /// Reads the wire form. @return an empty handle on failure.
  [[nodiscard]] static SharedPointer<CharacterData> create(IStream& stream);

  /// A copy; the copy of one without a text has a text of length 0. Empty when memory runs out.
  [[nodiscard]] SharedPointer<CharacterData> clone() const;

  [[nodiscard]] bool write(IStream& stream) const override;

  /// Replaces the text. A length that the stream does not hold gives false with length 0, and takes
  /// no more memory than a small multiple of the bytes that were there.
  [[nodiscard]] bool read(IStream& stream) override;

  /// The bytes with a NUL behind them, or null. They belong to this object.
  const char* data() const noexcept { return m_text; }
  /// The bytes, without the NUL.
  unsigned int length() const noexcept { return m_length; }

  /// Whether length and bytes are equal; no text equals only no text.
  bool operator==(const CharacterData& other) const noexcept;
  bool operator!=(const CharacterData& other) const noexcept { return !(*this == other); }

 private:
  friend class WireCodec;

  char* m_text = nullptr;  // made by array new, owned
  unsigned int m_length = 0;
};

}  // namespace trelvo::gom
