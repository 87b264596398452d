#pragma once

#include <trelvo/Export.h>
#include <trelvo/LockableBase.h>

namespace trelvo {

/// A value with its own recursive lock.
///
///     Lockable<std::vector<int>> numbers;
///     if (numbers.lock()) {
///       numbers.m_value.push_back(1);
///       numbers.unlock();
///     }
///
/// Ownership: it owns the value as such. Where `T` is a pointer, what it points to is not deleted.
/// Failures: the constructor throws StatusOutOfMemory when the mutex cannot be made.
template <class T>
class TRELVO_EXPORT Lockable : public LockableBase {
 public:
  /// Touch it only while holding the lock. A fresh number or pointer is zero.
  T m_value{};
};

}  // namespace trelvo
