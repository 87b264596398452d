#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include <trelvo/Export.h>

namespace trelvo::gom {

/// One counted reference to a `T`, which derives from ReferenceCountable: exactly one pointer.
///
/// Dereferencing gives the plain pointer and tests nothing: test the handle first.
/// Threads: handles to one object belong to one thread at a time.
template <class T>
class TRELVO_EXPORT ObjectHandle {
  template <class U>
  using IfConvertible = std::enable_if_t<std::is_convertible_v<U*, T*>>;

 public:
  /// An empty handle.
  ObjectHandle() noexcept = default;
  ObjectHandle(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)

  /// Adopts `target` and increments its count; null makes an empty handle.
  ObjectHandle(T* target) noexcept : m_target(target) {  // NOLINT(google-explicit-constructor)
    pin(target);
  }

  /// A handle of a derived class converts; both then share the object.
  template <class U, class = IfConvertible<U>>
  ObjectHandle(const ObjectHandle<U>& other) noexcept  // NOLINT(google-explicit-constructor)
      : ObjectHandle(static_cast<T*>(other.get())) {}

  ObjectHandle(const ObjectHandle& other) noexcept : m_target(other.m_target) { pin(m_target); }
  ObjectHandle(ObjectHandle&& other) noexcept : m_target(std::exchange(other.m_target, nullptr)) {}

  ~ObjectHandle() { swapIn(nullptr); }

  /// Releases the old target, then takes `other`'s. Assigning a handle to itself does nothing.
  /// `other` may live inside the old target: the new one is kept alive meanwhile.
  ObjectHandle& operator=(const ObjectHandle& other) {
    if (this != &other) {
      replace(other.m_target);
    }
    return *this;
  }

  /// Takes over `other`'s reference and leaves it empty.
  ObjectHandle& operator=(ObjectHandle&& other) noexcept {
    if (this != &other) {
      swapIn(std::exchange(other.m_target, nullptr));
    }
    return *this;
  }

  /// The target, or null.
  T* get() const noexcept { return m_target; }
  T* operator->() const noexcept { return m_target; }
  T& operator*() const noexcept { return *m_target; }
  /// Whether there is a target.
  explicit operator bool() const noexcept { return m_target != nullptr; }

 protected:
  /// Increments `next` first, then releases the old target, so `next` may be the old one.
  void replace(T* next) {
    pin(next);
    swapIn(next);
  }

 private:
  static void pin(T* target) noexcept {
    if (target != nullptr) {
      target->increment();
    }
  }

  // The old target goes last: this handle may live inside it and be gone with it.
  void swapIn(T* next) {
    if (T* const old = std::exchange(m_target, next)) {
      old->decrement();
    }
  }

  T* m_target = nullptr;
};

/// Handles are equal when they hold the same object, whatever the object's content.
template <class T, class U>
bool operator==(const ObjectHandle<T>& a, const ObjectHandle<U>& b) noexcept {
  return a.get() == b.get();
}
template <class T, class U>
bool operator!=(const ObjectHandle<T>& a, const ObjectHandle<U>& b) noexcept {
  return a.get() != b.get();
}
template <class T>
bool operator==(const ObjectHandle<T>& handle, std::nullptr_t) noexcept {
  return handle.get() == nullptr;
}
template <class T>
bool operator==(std::nullptr_t, const ObjectHandle<T>& handle) noexcept {
  return handle.get() == nullptr;
}
template <class T>
bool operator!=(const ObjectHandle<T>& handle, std::nullptr_t) noexcept {
  return handle.get() != nullptr;
}
template <class T>
bool operator!=(std::nullptr_t, const ObjectHandle<T>& handle) noexcept {
  return handle.get() != nullptr;
}

}  // namespace trelvo::gom
