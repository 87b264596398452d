#pragma once

#include <cstddef>
#include <new>

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/Status.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::gom {

class CharacterData;
class GenericObject;
class ObjectBase;
class ValueCollection;
class WireCodec;

/// A typed value with a key: a scalar, a string, a generic object, a flat record or a list.
///
/// A variant keeps its first type for life. A setter succeeds on a blank variant and on one of its
/// own type; on any other it gives StatusWrongState and changes nothing. A getter succeeds on its
/// own type only and otherwise gives StatusWrongState and leaves its argument. Nothing converts,
/// not even between widths of one sign. The setters for handles also refuse an empty handle.
/// Handles are shared, never copied, by setters, getters, copying and assigning; clone() and
/// cloneFrom() copy.
///
/// On the wire: tag and key in 2 bytes each, the tag first, then the payload.
///
/// Threads: one at a time.
class TRELVO_EXPORT Variant : public ISerializable {
 public:
  /// The type tags, as they stand on the wire.
  enum Type : unsigned short {
    TypeNone = 0,  ///< No value yet. No payload.
    TypeInt8 = 1,
    TypeUint8 = 2,
    TypeInt16 = 3,
    TypeUint16 = 4,
    TypeInt32 = 5,
    TypeUint32 = 6,
    TypeInt64 = 7,
    TypeUint64 = 8,
    TypeFloat = 9,
    TypeDouble = 10,
    TypeBoolean = 11,        ///< One byte; any but 0 reads as true.
    TypeString = 12,         ///< A CharacterData.
    TypeGenericObject = 13,  ///< A GenericObject.
    TypeObject = 14,         ///< Class id in 2 bytes, then the flat record.
    TypeCollection = 15      ///< A ValueCollection.
  };

  /// Blank, key 0.
  Variant() noexcept = default;
  /// Blank, with a key.
  explicit Variant(unsigned short key) noexcept : m_key(key) {}
  /// Key and value of `other`; a handle is shared.
  Variant(const Variant& other) noexcept;
  /// The value of `other` under another key.
  Variant(unsigned short key, const Variant& other) noexcept;
  /// Takes the value over and leaves `other` blank.
  Variant(Variant&& other) noexcept;
  ~Variant() override;

  /// Drops the old value; then key, type and value of `other`. A handle is shared.
  Variant& operator=(const Variant& other);
  /// Drops the old value and takes over `other`'s, which becomes blank.
  Variant& operator=(Variant&& other) noexcept;

  /// A new blank variant, or null when memory runs out. The caller deletes it.
  [[nodiscard]] static Variant* create() noexcept;

  /// A deep copy, or null when memory runs out. The caller deletes it.
  [[nodiscard]] Variant* clone() const;

  /// Takes over key and type, and a deep copy of the value. Meant for a blank variant; a handle
  /// that this one held is released.
  /// @return StatusOk, or StatusOutOfMemory when the value could not be cloned: this variant then
  ///         has an empty handle. Throws std::bad_alloc where a flat record's clone() does.
  Status cloneFrom(const Variant& other);

  [[nodiscard]] bool write(IStream& stream) const override;

  /// Meant for a blank variant; an earlier value is dropped. A tag above 15 reads as tag and key
  /// alone and is no error. Objects and lists nested more than 512 deep give false.
  /// Throws StatusInternal for a flat record of a class id outside 100 to 135, or of a class
  /// without a wire form.
  [[nodiscard]] bool read(IStream& stream) override;

  /// Equal keys and types, and values: strings, objects and lists by their own equality, scalars by
  /// all 8 value bytes, so that 0.0 and -0.0 differ and a NaN equals the same NaN.
  bool operator==(const Variant& other) const;
  bool operator!=(const Variant& other) const { return !(*this == other); }

  /// The key, which names a property of an object and is 0 for an element of a list.
  unsigned short key() const noexcept { return m_key; }
  /// The type tag; one read from a stream may be above 15.
  unsigned short dataType() const noexcept { return m_type; }
  /// Has no effect.
  void dump() const;

  /// As for ReferenceCountable.
  static void* operator new(std::size_t size);
  static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept;
  static void* operator new(std::size_t /*size*/, void* place) noexcept { return place; }
  static void operator delete(void* block, std::size_t size) noexcept;
  static void operator delete(void* block, const std::nothrow_t& tag) noexcept;
  static void operator delete(void* /*block*/, void* /*place*/) noexcept {}

  /// Stores a value of that type; see above for when it fails. Handles are shared.
  Status setInt8Value(signed char value);
  Status setUint8Value(unsigned char value);
  Status setInt16Value(short value);
  Status setUint16Value(unsigned short value);
  Status setInt32Value(int value);
  Status setUint32Value(unsigned int value);
  Status setInt64Value(long long value);
  Status setUint64Value(unsigned long long value);
  Status setFloatValue(float value);
  Status setDoubleValue(double value);
  Status setBooleanValue(bool value);
  Status setStringValue(const SharedPointer<CharacterData>& value);
  Status setGenericObjectValue(const SharedPointer<GenericObject>& value);
  Status setObjectValue(const SharedPointer<ObjectBase>& value);
  Status setCollectionValue(const SharedPointer<ValueCollection>& value);

  /// Gives the value, when this variant has that type. Handles are shared.
  Status getInt8Value(signed char& value) const;
  Status getUint8Value(unsigned char& value) const;
  Status getInt16Value(short& value) const;
  Status getUint16Value(unsigned short& value) const;
  Status getInt32Value(int& value) const;
  Status getUint32Value(unsigned int& value) const;
  Status getInt64Value(long long& value) const;
  Status getUint64Value(unsigned long long& value) const;
  Status getFloatValue(float& value) const;
  Status getDoubleValue(double& value) const;
  Status getBooleanValue(bool& value) const;
  Status getStringValue(SharedPointer<CharacterData>& value) const;
  Status getGenericObjectValue(SharedPointer<GenericObject>& value) const;
  Status getObjectValue(SharedPointer<ObjectBase>& value) const;
  Status getCollectionValue(SharedPointer<ValueCollection>& value) const;

 private:
  friend class GenericObject;
  friend class WireCodec;

  bool holdsHandle() const noexcept { return m_type >= TypeString && m_type <= TypeCollection; }
  template <class T>
  T load() const noexcept;
  template <class T>
  void store(T value) noexcept;
  template <class T>
  T* target() const noexcept;
  template <class T>
  Status setScalar(Type type, T value) noexcept;
  template <class T>
  Status getScalar(Type type, T& value) const noexcept;
  template <class T>
  Status setHandle(Type type, const SharedPointer<T>& value);
  template <class T>
  Status getHandle(Type type, SharedPointer<T>& value) const;
  template <class T>
  void adopt(Type type, T* value) noexcept;
  template <class T>
  bool adoptClone(SharedPointer<T> clone) noexcept;
  template <class T>
  bool sameTarget(const Variant& other) const;
  void pinTarget() const noexcept;
  void dropTarget() noexcept;

  unsigned short m_key = 0;
  unsigned short m_type = TypeNone;
  unsigned long long m_value = 0;  // the scalar's bytes from its start, or one pointer
};

}  // namespace trelvo::gom
