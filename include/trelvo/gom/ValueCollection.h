#pragma once

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/gom/Collection.h>
#include <trelvo/gom/Variant.h>

namespace trelvo::gom {

/// A list of variants with a wire form: the value of a list property.
///
/// On the wire: the element count in 4 bytes, then each element in the form of a Variant, its key
/// included.
///
/// Ownership: the list deletes its variants. add() takes over the variant on success only.
/// A null element is allowed in memory, has no wire form and no clone, and equals only a null.
/// Threads: one at a time.
class TRELVO_EXPORT ValueCollection : public Collection<Variant*>, public ISerializable {
 public:
  ValueCollection();
  ~ValueCollection() override;

  ValueCollection(const ValueCollection&) = delete;
  ValueCollection& operator=(const ValueCollection&) = delete;

  /// A new, empty list; an empty handle when memory runs out.
  [[nodiscard]] static SharedPointer<ValueCollection> create();

  /// Do not use this on a list with elements; clone() is what copies. Of an empty source it makes a
  /// new, empty list. Of any other it gives an empty handle, deletes the source's first variant and
  /// leaves null in its place.
  [[nodiscard]] static SharedPointer<ValueCollection> create(const ValueCollection& source);

  /// A new list of deep copies; an empty handle when one of them cannot be made.
  [[nodiscard]] SharedPointer<ValueCollection> clone() const;

  /// False for a list with a null element, behind the elements before it.
  [[nodiscard]] bool write(IStream& stream) const override;

  /// Appends what the stream holds. Elements read before a failure stay. Throws as Variant::read.
  [[nodiscard]] bool read(IStream& stream) override;

  /// Dumps each element, which has no effect.
  void dump() const;

  /// Equal counts, and equal elements in order, keys included.
  bool operator==(const ValueCollection& other) const;
  bool operator!=(const ValueCollection& other) const { return !(*this == other); }

 private:
  friend class WireCodec;
};

}  // namespace trelvo::gom
