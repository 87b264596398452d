#pragma once

#include <typeinfo>

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/IValuable.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo {

/// A typed face over one gom::GenericObject, and the base of the schema's composite classes.
///
/// The wrapper holds nothing but the handle: several wrappers of one object show one state, and the
/// wire form is the object's. Each composite class has an object key of its own, fixed property
/// keys, and typed accessors.
///
/// A wrapper made by a create() always has an object. A default-made one has none until it is
/// assigned: key() is then 0, write() and read() false, and object() throws.
///
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT GenericObjectWrapper : public gom::ReferenceCountable,
                                           public gom::IValuable,
                                           public ISerializable {
 public:
  GenericObjectWrapper() = default;
  ~GenericObjectWrapper() override;

  /// A deep copy of the wrapped object, as a generic object and not a wrapper; empty when there is
  /// none or memory runs out.
  [[nodiscard]] virtual gom::SharedPointer<gom::GenericObject> clone() const;

  /// Dumps the object, which has no effect.
  virtual void dump() const;

  /// Always false here; classes with properties of their own answer by their bits.
  bool valueExists(unsigned int mask) const override;
  /// Whether there is no object, or one without properties.
  bool isEmpty() const override;
  /// Has no effect here.
  void unset(unsigned int mask) override;

  /// Writes the object. Throws StatusInternal when it holds a flat record without a wire form.
  [[nodiscard]] bool write(IStream& stream) const override;
  /// Reads into the object, whatever object key the stream has. Throws as gom::GenericObject::read.
  [[nodiscard]] bool read(IStream& stream) override;

  /// The object's key, 0 without an object.
  unsigned short key() const noexcept;

  /// The wrapped object, shared; this is what containers take. May be empty.
  gom::SharedPointer<gom::GenericObject> wrappedObject() const noexcept { return m_object; }

  /// The wrapped object. Throws StatusFailed when there is none.
  gom::GenericObject& object();
  const gom::GenericObject& object() const;

  /// A plain wrapper over a new object. Empty when there is no memory for the object; throws
  /// std::bad_alloc when there is none for the wrapper.
  [[nodiscard]] static gom::SharedPointer<GenericObjectWrapper> create(unsigned short key);

  /// A plain wrapper that shares `object`. Throws StatusInternal for an empty handle.
  [[nodiscard]] static gom::SharedPointer<GenericObjectWrapper> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  /// Gives `status` back. All results of property accesses pass through here.
  Status checkError(Status status, const char* action, const char* propertyName) const noexcept;

  /// Sets a property of the type that belongs to `T`: int, unsigned int, long long, or a handle of
  /// gom::ObjectBase, gom::GenericObject or gom::ValueCollection.
  /// @return the object's status. Throws StatusFailed without an object.
  template <class T>
  Status setProperty(unsigned short key, const T& value, const char* name);

  /// Gets a property of the type that belongs to `T`; an absent one gives StatusNotFound and leaves
  /// `value`. Throws StatusFailed without an object.
  template <class T>
  Status getProperty(unsigned short key, T& value, const char* name) const;

  /// The flat record at `key` as a `T`; empty when there is no object, the property is absent or of
  /// another type, or the record is not a `T`. Never throws.
  template <class T>
  gom::SharedPointer<T> getObjectProperty(unsigned short key) const {
    const gom::SharedPointer<gom::ObjectBase> record = recordProperty(key);
    if (!record) {
      return {};
    }
    gom::ObjectBase& base = *record;
    return typeid(base) == typeid(T) ? &static_cast<T&>(base) : dynamic_cast<T*>(&base);
  }

 protected:
  /// Makes a new object. @return false when memory runs out.
  bool construct(unsigned short key);
  /// Shares `object`, which may be empty.
  void construct(const gom::SharedPointer<gom::GenericObject>& object);

  gom::SharedPointer<gom::GenericObject> m_object;  ///< The wrapped object, or empty.

 private:
  gom::SharedPointer<gom::ObjectBase> recordProperty(unsigned short key) const noexcept;
};

}  // namespace trelvo
