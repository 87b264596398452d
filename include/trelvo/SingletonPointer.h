#pragma once

#include <trelvo/Export.h>
#include <trelvo/Lockable.h>

namespace trelvo {

/// One object for the process, made for its first user and destroyed when the last has released it.
///
/// Each successful acquireRef() is matched by one releaseRef(). After the last a new acquireRef()
/// makes a new object.
///
/// Ownership: it owns the object through its count. Destroying the pointer itself, as happens when
/// the process ends, leaves an object still in use alone.
/// Threads: any number.
template <class T>
class TRELVO_EXPORT SingletonPointer : public Lockable<T*> {
 public:
  /// Counts one more user of the object, which is made by `new T` if there is none.
  /// @return the object, or null, with nothing counted, when it could not be made (whatever its
  ///         constructor threw) or the lock not be taken.
  [[nodiscard]] T* acquireRef() {
    if (!this->lock()) {
      return nullptr;
    }
    T* const object = current() == nullptr ? make() : current();
    if (object != nullptr) {
      ++m_refCount;
    }
    this->unlock();
    return object;
  }

  /// Counts one user less, and destroys the object, under the lock, when that was the last. Without
  /// an object it does nothing.
  void releaseRef() {
    if (current() == nullptr || !this->lock()) {
      return;
    }
    if (current() != nullptr && --m_refCount < 1) {
      delete current();
      setCurrent(nullptr);
    }
    this->unlock();
  }

  /// The number of users. Touch it only while holding the lock.
  int m_refCount = 0;

 private:
  // releaseRef() looks at the pointer before it has the lock, so this class goes through these two.
  T* current() const noexcept { return __atomic_load_n(&this->m_value, __ATOMIC_RELAXED); }
  void setCurrent(T* object) noexcept {
    __atomic_store_n(&this->m_value, object, __ATOMIC_RELAXED);
  }

  T* make() noexcept {
    try {
      setCurrent(new T);
    } catch (...) {
      return nullptr;
    }
    return current();
  }
};

}  // namespace trelvo
