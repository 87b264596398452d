#pragma once

#include <new>
#include <utility>
#include <vector>

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ReferenceCountable.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::gom {

/// A list in insertion order. Nothing sorts it: a caller who wants an order sorts `items`.
///
/// Walking: take first(), then `p = nextImpl(p)` until null. Each step searches from the front, so
/// a walk is quadratic; where that matters, walk `items` itself. The list holds no position, so a
/// constant list can be walked too.
///
/// Threads: one at a time.
template <class T>
class TRELVO_EXPORT Collection : public ReferenceCountable {
 public:
  Collection() = default;
  ~Collection() override = default;

  /// A new, empty list; an empty handle when memory runs out.
  [[nodiscard]] static SharedPointer<Collection> create() {
    return SharedPointer<Collection>(new (std::nothrow) Collection);
  }

  /// Appends a copy: of a handle, a further reference; of a plain pointer, the pointer.
  /// @return StatusOk, or StatusOutOfMemory with the list unchanged, whatever was thrown.
  Status add(const T& item) {
    try {
      items.push_back(item);
      return StatusOk;
    } catch (...) {
      return StatusOutOfMemory;
    }
  }

  /// Appends by moving; otherwise the same.
  Status add(T&& item) {
    try {
      items.push_back(std::move(item));
      return StatusOk;
    } catch (...) {
      return StatusOutOfMemory;
    }
  }

  /// The number of elements.
  unsigned int count() const noexcept { return static_cast<unsigned int>(items.size()); }

  /// The first element, or null. add() may move the elements.
  const T* first() const noexcept { return items.empty() ? nullptr : items.data(); }

  /// The element behind `current`; null behind the last one, for null, and for a pointer that is
  /// not of an element of this list.
  const T* nextImpl(const T* current) const noexcept {
    for (auto item = items.begin(); item != items.end(); ++item) {
      if (&*item == current) {
        return item + 1 == items.end() ? nullptr : &*(item + 1);
      }
    }
    return nullptr;
  }

  std::vector<T> items;  ///< The elements.
};

}  // namespace trelvo::gom
