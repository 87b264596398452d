#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include <trelvo/Export.h>
#include <trelvo/gom/ObjectHandle.h>

namespace trelvo::gom {

/// The handle that every factory returns and every interface takes: an intrusive smart pointer of
/// the size of one plain pointer, with no control block and no weak form.
///
/// A plain pointer converts to a handle, which adopts it: `clone()` of a flat record returns such a
/// pointer with count 0. A handle of a derived class converts to one of its base.
///
/// Ownership: the object dies with its last handle.
/// Threads: one at a time, together with everything that hangs from the object.
template <class T>
class TRELVO_EXPORT SharedPointer : public ObjectHandle<T> {
  template <class U>
  using IfConvertible = std::enable_if_t<std::is_convertible_v<U*, T*>>;

 public:
  /// An empty handle.
  SharedPointer() noexcept = default;
  SharedPointer(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
  /// Adopts `target`, which may be null.
  SharedPointer(T* target) noexcept  // NOLINT(google-explicit-constructor)
      : ObjectHandle<T>(target) {}
  /// A handle of a derived class converts; both then share the object.
  template <class U, class = IfConvertible<U>>
  SharedPointer(const ObjectHandle<U>& other) noexcept  // NOLINT(google-explicit-constructor)
      : ObjectHandle<T>(other.get()) {}

  /// Lets go of the target, if there is one.
  void clear() { this->replace(nullptr); }

  /// Takes `target`, which may be null or the one already held, and releases the old one.
  void reset(T* target) { this->replace(target); }
};

}  // namespace trelvo::gom
