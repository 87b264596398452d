#pragma once

#include "objects/WireReader.h"
#include "objects/WireWriter.h"

namespace trelvo {

class GenericObjectWrapper;

namespace gom {

class CharacterData;
class GenericObject;
class ObjectBase;
class ValueCollection;
class Variant;

/// The wire forms of the self-describing types, for one stream and any depth. Objects of exactly
/// the library's classes are written and read without a virtual call; derived ones go through their
/// own write() and read().
class WireCodec {
 public:
  WireCodec() = delete;

  /// write() of `value` to a stream, with room for the whole made at once.
  template <class T>
  static bool writeTo(const T& value, IStream& stream) {
    WireWriter writer(stream);
    writer.setSizeHint(&value, [](const void* object) -> unsigned long long {
      unsigned long long total = 0;
      return addSize(*static_cast<const T*>(object), total) ? total : 0;
    });
    const bool complete = write(value, writer);
    return writer.finish() && complete;  // what precedes a failure is on the stream too
  }

  /// read() of `value` from a stream.
  template <class T>
  static bool readFrom(T& value, IStream& stream) {
    WireReader reader(stream);
    return read(value, reader);
  }

 private:
  static bool write(const CharacterData& text, WireWriter& writer);
  static bool write(const Variant& variant, WireWriter& writer);
  static bool write(const GenericObject& object, WireWriter& writer);
  static bool write(const ValueCollection& list, WireWriter& writer);
  static bool writeVariant(const Variant& variant, WireWriter& writer);
  static bool writeHandle(const Variant& variant, WireWriter& writer);
  static bool writeRecord(const ObjectBase& record, WireWriter& writer);
  template <class T>
  static bool writeTarget(const T* target, WireWriter& writer);

  static bool addSize(const CharacterData& text, unsigned long long& total) noexcept;
  static bool addSize(const Variant& variant, unsigned long long& total) noexcept;
  static bool addSize(const GenericObject& object, unsigned long long& total) noexcept;
  static bool addSize(const ValueCollection& list, unsigned long long& total) noexcept;
  static bool addSize(const ObjectBase& record, unsigned long long& total) noexcept;
  static bool addVariantSize(const Variant& variant, unsigned long long& total) noexcept;
  static bool addHandleSize(const Variant& variant, unsigned long long& total) noexcept;
  template <class T>
  static bool addTargetSize(const T* target, unsigned long long& total) noexcept;

  static bool read(CharacterData& text, WireReader& reader);
  static bool read(Variant& variant, WireReader& reader);
  static bool read(GenericObject& object, WireReader& reader);
  static bool read(ValueCollection& list, WireReader& reader);
  static bool readVariant(Variant& variant, WireReader& reader);
  static bool readInPieces(Variant& variant, WireReader& reader);
  static bool readHandle(Variant& variant, WireReader& reader);
  static void normalize(Variant& variant) noexcept;
  static bool readScalar(Variant& variant, WireReader& reader);
  static bool readRecord(Variant& variant, WireReader& reader);
  template <class T>
  static bool readTarget(Variant& variant, WireReader& reader);
  static bool readText(CharacterData& text, unsigned int length, WireReader& reader);
};

}  // namespace gom
}  // namespace trelvo
