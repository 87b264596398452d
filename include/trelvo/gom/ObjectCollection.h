#pragma once

#include <new>

#include <trelvo/Export.h>
#include <trelvo/ISerializable.h>
#include <trelvo/IStream.h>
#include <trelvo/gom/Collection.h>

namespace trelvo::gom {

/// A list of records of one class with a wire form: the count in 4 bytes, then each element's own
/// form, without class ids.
///
/// An element class without a wire form (the neighbour cells are such) makes write() of a list with
/// elements, and read() of a count other than 0, throw StatusInternal; the empty list passes.
///
/// Ownership: one reference an element. Threads: one at a time.
template <class T>
class TRELVO_EXPORT ObjectCollection : public Collection<SharedPointer<T>>, public ISerializable {
 public:
  ObjectCollection() = default;
  ~ObjectCollection() override = default;

  /// A new, empty list; an empty handle when memory runs out.
  [[nodiscard]] static SharedPointer<ObjectCollection> create() {
    return SharedPointer<ObjectCollection>(new (std::nothrow) ObjectCollection);
  }

  /// A new list that shares the elements of `source`; an empty handle when memory runs out.
  [[nodiscard]] static SharedPointer<ObjectCollection> create(const ObjectCollection& source) {
    SharedPointer<ObjectCollection> list = create();
    if (!list) {
      return {};
    }
    for (const SharedPointer<T>& item : source.items) {
      if (list->add(item) != StatusOk) {
        return {};
      }
    }
    return list;
  }

  /// A new list of deep copies; an empty handle when one of them cannot be made. Throws
  /// std::bad_alloc where an element's clone() does.
  [[nodiscard]] SharedPointer<ObjectCollection> clone() const {
    SharedPointer<ObjectCollection> list = create();
    if (!list) {
      return {};
    }
    for (const SharedPointer<T>& item : this->items) {
      SharedPointer<T> copy(item ? static_cast<T*>(item->clone()) : nullptr);
      if (!copy || list->add(copy) != StatusOk) {
        return {};
      }
    }
    return list;
  }

  [[nodiscard]] bool write(IStream& stream) const override {
    if (!stream.writeUint32(this->count())) {
      return false;
    }
    for (const SharedPointer<T>& item : this->items) {
      if (!item || !item->write(stream)) {
        return false;
      }
    }
    return stream.good();
  }

  /// Appends what the stream holds. Elements read before a failure stay.
  [[nodiscard]] bool read(IStream& stream) override {
    unsigned int left = 0;
    if (!stream.readUint32(left)) {
      return false;
    }
    for (; left > 0; --left) {
      SharedPointer<T> item = T::create();
      if (!item || !item->read(stream) || this->add(item) != StatusOk) {
        return false;
      }
    }
    return stream.good();
  }
};

}  // namespace trelvo::gom
