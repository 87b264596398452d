#pragma once

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/Status.h>
#include <trelvo/gom/IValuable.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::gom {

class GenericObject;
template <class Record>
struct RecordAccess;

/// Base of the flat records: plain fields, a presence mask that says which of them are set, and a
/// wire form of the record's own.
///
/// The wire form is one version byte of 1, the presence mask (one, two or four bytes, by class),
/// and the set fields in the class's wire order, which need not be the order of the bits. An unset
/// field takes no bytes. A class without a wire form keeps this class's write() and read(), which
/// throw.
///
/// Setters of a record give StatusOk, StatusInvalidParameter for a value out of range, or
/// StatusWrongState for an empty handle; a setter that fails changes nothing. Getters give the
/// stored field whether its bit is set or not, unless their comment says otherwise.
///
/// A record may carry an extension, a bag of further properties. It lives in memory only: no class
/// writes it to a stream.
///
/// Ownership: records are made by their class's create(), which gives a handle, and die with the
/// last handle. Copying and assigning share nested objects and the extension; clone() and
/// cloneFrom() copy them.
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT ObjectBase : public ReferenceCountable, public IValuable, public ISerializable {
 public:
  /// @param key the class id, which stands on the wire ahead of the record inside a Variant.
  explicit ObjectBase(unsigned short key);

  /// Copies class id and mask, and shares the extension.
  ObjectBase(const ObjectBase& other);
  ~ObjectBase() override;

  /// Has no effect.
  virtual void dump() const;

  /// An independent copy of this record and all that hangs from it.
  /// @return a new object with count 0, which the caller's handle adopts; null when a nested object
  ///         could not be cloned. Throws std::bad_alloc.
  [[nodiscard]] virtual ObjectBase* clone() const = 0;

  /// Whether `other` is of this record's class and equal to it. False for null.
  virtual bool compare(const ObjectBase* other) const = 0;

  /// Whether all bits of `mask` are set. False for a mask of 0.
  bool valueExists(unsigned int mask) const override;

  /// Whether no bit is set and the extension, if there is one, has no property.
  bool isEmpty() const override;

  /// Clears the bits of `mask`. Stored fields stay as they are, unless the class says otherwise.
  void unset(unsigned int mask) override;

  /// Throws StatusInternal in a class without a wire form.
  [[nodiscard]] bool write(IStream& stream) const override;

  /// Throws StatusInternal in a class without a wire form. In the others a version other than 1 or
  /// a mask that the class refuses gives false; a failed read leaves the mask and the fields read
  /// so far.
  [[nodiscard]] bool read(IStream& stream) override;

  /// Takes over class id, mask and extension; the extension is shared. Assigning an object to
  /// itself does nothing.
  ObjectBase& operator=(const ObjectBase& other);

  /// As operator=, but an extension is replaced by one of its own with the same property values
  /// (nested objects stay shared).
  /// @return StatusOk, or StatusOutOfMemory.
  Status copy(const ObjectBase& other);

  /// Takes over class id and mask, and a deep copy of the extension.
  /// @return StatusOk, or StatusOutOfMemory with the mask cleared, no extension and the class id
  ///         as it was.
  Status cloneFrom(const ObjectBase& other);

  /// Whether class ids, masks and extensions are equal.
  bool operator==(const ObjectBase& other) const;
  bool operator!=(const ObjectBase& other) const { return !(*this == other); }

  /// The class id. It never changes in an object's life but by assignment.
  unsigned short key() const noexcept { return m_key; }
  /// The presence mask.
  unsigned int values() const noexcept { return m_values; }

  /// Whether there is an extension.
  bool isExtended() const noexcept { return static_cast<bool>(m_extension); }
  /// The extension, or null. The record keeps it.
  GenericObject* extensionReference() const noexcept { return m_extension.get(); }
  /// The extension, made on first use with the class id as its key; null when memory runs out. The
  /// record keeps it.
  GenericObject* extension();
  /// Drops the extension, if there is one.
  void deleteExtension();

 protected:
  /// Sets bits of the mask.
  void valueSet(unsigned int mask) noexcept { m_values |= mask; }
  /// Clears bits of the mask.
  void valueUnset(unsigned int mask) noexcept { m_values &= ~mask; }

  /// What a setter does once its value is accepted: stores it, sets its bit, gives StatusOk.
  template <class T>
  Status setField(unsigned int bit, T& field, const T& value) {
    field = value;
    valueSet(bit);
    return StatusOk;
  }

  /// The same for a nested object; an empty handle gives StatusWrongState and changes nothing.
  template <class T>
  Status setField(unsigned int bit, SharedPointer<T>& field, const SharedPointer<T>& value) {
    if (!value) {
      return StatusWrongState;
    }
    field = value;
    valueSet(bit);
    return StatusOk;
  }

  /// What a getter of a nested object gives: the handle, or an empty one when its bit is clear.
  template <class T>
  SharedPointer<T> fieldIfSet(unsigned int bit, const SharedPointer<T>& field) const {
    return (m_values & bit) != 0 ? field : SharedPointer<T>();
  }

  /// Writes the low 8 bits of the mask as one byte; `allBits` is not looked at.
  [[nodiscard]] bool writeValueMask8(IStream& stream, unsigned int allBits) const;

  /// Reads a one-byte mask. The test is a comparison of numbers, not of bits: with a limit of 5 the
  /// byte 3 passes.
  /// @return false with the mask as it was when the byte is missing or above `limit`.
  [[nodiscard]] bool readValueMask8(IStream& stream, unsigned int limit);

 private:
  template <class Record>
  friend struct RecordAccess;

  unsigned short m_key;
  SharedPointer<GenericObject> m_extension;
  unsigned int m_values = 0;
};

}  // namespace trelvo::gom
