#pragma once

#include <cstddef>
#include <new>

#include <trelvo/Export.h>

namespace trelvo::gom {

/// Base of everything that a SharedPointer may hold: it carries the reference count.
///
/// A fresh object has count 0 until the first handle adopts it; the handle that takes the count
/// back to 0 destroys it. Copying an object never copies its count.
///
/// Threads: the count is a plain integer. An object belongs to one thread at a time.
class TRELVO_EXPORT ReferenceCountable {
 public:
  ReferenceCountable() noexcept = default;
  /// The copy starts with count 0.
  ReferenceCountable(const ReferenceCountable& /*other*/) noexcept {}
  /// Leaves the count as it is.
  ReferenceCountable& operator=(const ReferenceCountable& /*other*/) noexcept { return *this; }
  virtual ~ReferenceCountable();

  /// Adds 1 to the count. Called by handles.
  void increment() noexcept { ++m_referenceCount; }

  /// Subtracts 1 and destroys the object when that gives 0. Called by handles; a count that was
  /// already 0 is not tested for.
  void decrement() {
    if (--m_referenceCount == 0) {
      delete this;
    }
  }

  /// The number of handles that hold this object.
  int referenceCount() const noexcept { return m_referenceCount; }

  /// Objects come from the heap, small ones through a list of freed blocks a thread where the
  /// library was built with one. Failures are those of the global operators.
  static void* operator new(std::size_t size);
  static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept;
  static void* operator new(std::size_t /*size*/, void* place) noexcept { return place; }
  static void* operator new(std::size_t size, std::align_val_t alignment);
  static void* operator new(std::size_t size, std::align_val_t alignment,
                            const std::nothrow_t& tag) noexcept;
  static void operator delete(void* block, std::size_t size) noexcept;
  static void operator delete(void* block, const std::nothrow_t& tag) noexcept;
  static void operator delete(void* /*block*/, void* /*place*/) noexcept {}
  static void operator delete(void* block, std::size_t size, std::align_val_t alignment) noexcept;
  static void operator delete(void* block, std::align_val_t alignment) noexcept;
  static void operator delete(void* block, std::align_val_t alignment,
                              const std::nothrow_t& tag) noexcept;

 private:
  int m_referenceCount = 0;
};

}  // namespace trelvo::gom
