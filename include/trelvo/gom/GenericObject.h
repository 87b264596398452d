#pragma once

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/Status.h>
#include <trelvo/gom/Collection.h>
#include <trelvo/gom/InternalVariant.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::gom {

/// A bag of properties: an object key and an ordered list of typed values with 16-bit keys.
///
/// It carries its own type tags, so it can be read and written by code that knows nothing of its
/// schema. Properties stay in the order in which they were first set; lookup goes through the list
/// from the front. The setters let a key occur once; a stream may hold it twice, and lookup then
/// finds the first.
///
/// On the wire: object key in 2 bytes, property count in 4, each property in the form of a Variant.
/// Key 0 is no usable object key: a reader stops behind it, without the count.
///
/// Typed getters give StatusNotFound for an absent key and StatusWrongState for a value of another
/// type, and then leave their argument. Typed setters replace a value of the same type, give
/// StatusWrongState for one of another type and for an empty handle, and StatusOutOfMemory; a
/// setter that fails changes nothing. Handles are shared both ways.
///
/// Ownership: made by create(), dies with the last handle. Threads: one at a time; the position of
/// getFirstKey() and getNextKey() makes two loops over one object impossible even on one thread.
class TRELVO_EXPORT GenericObject : public ReferenceCountable, public ISerializable {
 public:
  /// Key 0, without a list; for create() and read().
  GenericObject() noexcept = default;
  /// Without a list; for create() and read(). It counts as empty, and the first setter makes a
  /// list.
  explicit GenericObject(unsigned short key) noexcept : m_key(key) {}
  ~GenericObject() override;

  GenericObject(const GenericObject&) = delete;
  GenericObject& operator=(const GenericObject&) = delete;

  /// A new object without properties; an empty handle when memory runs out.
  [[nodiscard]] static SharedPointer<GenericObject> create(unsigned short key);

  /// Reads an object. @return an empty handle on failure. A stream that starts with key 0 gives an
  /// object of key 0 without properties. Throws as Variant::read.
  [[nodiscard]] static SharedPointer<GenericObject> create(IStream& stream);

  /// A new object with the same key and values; strings, objects and lists are shared with `other`.
  /// An empty handle when memory runs out, and for an empty handle.
  [[nodiscard]] static SharedPointer<GenericObject> create(const GenericObject& other);
  [[nodiscard]] static SharedPointer<GenericObject> create(
      const SharedPointer<GenericObject>& other);

  /// A new object with deep copies of everything; an empty handle when one cannot be made. Throws
  /// std::bad_alloc where a flat record's clone() does.
  [[nodiscard]] SharedPointer<GenericObject> clone() const;

  /// Throws StatusInternal when a property holds a flat record without a wire form.
  [[nodiscard]] bool write(IStream& stream) const override;

  /// Replaces key and properties by the stream's, all or nothing: after a failure, and after a key
  /// of 0, the object is as it was. Nesting beyond 512 levels gives false. Throws as Variant::read.
  [[nodiscard]] bool read(IStream& stream) override;

  /// The object's own key, which says what kind of object it is; 0 is none.
  unsigned short key() const noexcept { return m_key; }
  /// The number of properties.
  unsigned int propertyCount() const noexcept;
  bool propertyExists(unsigned short key) const noexcept;

  /// The first property with that key, or null. It belongs to this object; setting and removing
  /// properties may move it.
  InternalVariant* findProperty(unsigned short key) noexcept;
  const InternalVariant* findProperty(unsigned short key) const noexcept;

  /// Puts the walk on the first property and gives its key. @return false when there is none.
  bool getFirstKey(unsigned short& key) noexcept;
  /// Moves the walk on and gives the key there. @return false at the end, and before getFirstKey().
  bool getNextKey(unsigned short& key) noexcept;

  /// Dumps each property, which has no effect.
  void dump() const;

  /// Takes a property out; the others keep their order. @return false when the key is absent.
  bool removeProperty(unsigned short key);

  /// The value of a property of that type; see above for when it fails. Handles are shared.
  Status getInt8Property(unsigned short key, signed char& value) const;
  Status getUint8Property(unsigned short key, unsigned char& value) const;
  Status getInt16Property(unsigned short key, short& value) const;
  Status getUint16Property(unsigned short key, unsigned short& value) const;
  Status getInt32Property(unsigned short key, int& value) const;
  Status getUint32Property(unsigned short key, unsigned int& value) const;
  Status getInt64Property(unsigned short key, long long& value) const;
  Status getUint64Property(unsigned short key, unsigned long long& value) const;
  Status getFloatProperty(unsigned short key, float& value) const;
  Status getDoubleProperty(unsigned short key, double& value) const;
  Status getBooleanProperty(unsigned short key, bool& value) const;
  Status getStringProperty(unsigned short key, SharedPointer<CharacterData>& value) const;
  Status getGenericObjectProperty(unsigned short key, SharedPointer<GenericObject>& value) const;
  Status getObjectProperty(unsigned short key, SharedPointer<ObjectBase>& value) const;
  Status getCollectionProperty(unsigned short key, SharedPointer<ValueCollection>& value) const;

  /// Assigns the property to `value`, its key included. @return StatusOk or StatusNotFound.
  Status getProperty(unsigned short key, Variant& value) const;

  /// Sets a property of that type; see above for when it fails. Handles are shared.
  Status setInt8Property(unsigned short key, signed char value);
  Status setUint8Property(unsigned short key, unsigned char value);
  Status setInt16Property(unsigned short key, short value);
  Status setUint16Property(unsigned short key, unsigned short value);
  Status setInt32Property(unsigned short key, int value);
  Status setUint32Property(unsigned short key, unsigned int value);
  Status setInt64Property(unsigned short key, long long value);
  Status setUint64Property(unsigned short key, unsigned long long value);
  Status setFloatProperty(unsigned short key, float value);
  Status setDoubleProperty(unsigned short key, double value);
  Status setBooleanProperty(unsigned short key, bool value);
  Status setStringProperty(unsigned short key, const SharedPointer<CharacterData>& value);
  Status setGenericObjectProperty(unsigned short key, const SharedPointer<GenericObject>& value);
  Status setObjectProperty(unsigned short key, const SharedPointer<ObjectBase>& value);
  Status setCollectionProperty(unsigned short key, const SharedPointer<ValueCollection>& value);

  /// Sets a copy of `value` under `key`, whatever key it has itself. A new property takes any type,
  /// also none.
  /// @return StatusOk; StatusWrongState for a property of another type; StatusOutOfMemory.
  Status setProperty(unsigned short key, const Variant& value);

  /// Equal keys, and equal properties in the same order.
  bool operator==(const GenericObject& other) const;
  bool operator!=(const GenericObject& other) const { return !(*this == other); }

 private:
  friend class WireCodec;
  using Properties = Collection<InternalVariant>;

  InternalVariant* find(unsigned short key) const noexcept;
  InternalVariant* appendProperty(unsigned short key);
  InternalVariant* findOrAppendProperty(unsigned short key);
  template <auto getter, class T>
  Status get(unsigned short key, T& value) const;
  template <auto setter, class T>
  Status set(unsigned short key, const T& value);
  template <auto setter, class T>
  Status setHandle(unsigned short key, const SharedPointer<T>& value);

  unsigned short m_key = 0;
  SharedPointer<Collection<InternalVariant>> m_properties;
  InternalVariant* m_cursor = nullptr;
};

}  // namespace trelvo::gom
