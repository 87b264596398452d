#pragma once

#include <string>

#include <trelvo/Export.h>
#include <trelvo/core/ILockable.h>
#include <trelvo/gom/ReferenceCountable.h>

namespace trelvo::core {

/// A recursive mutex: the thread that holds it may lock it again, and unlocks it as many times.
///
/// Most code wants Lockable, a value together with its mutex, instead.
///
/// Threads: the mutex itself is for any number of them. The reference count is a plain integer, as
/// everywhere: make and drop handles on one thread at a time.
class TRELVO_EXPORT IMutex : public gom::ReferenceCountable, public ILockable {
 public:
  ~IMutex() override;

  /// A new mutex with count 0, which the caller adopts (`gom::SharedPointer<core::IMutex>`).
  ///
  /// @param name     must be empty: mutexes with a name, shared between processes, do not exist.
  /// @param reserved has no effect.
  /// @param unnamed  must be true.
  /// @return null when an argument is refused, and when memory or the system fails. Never throws.
  [[nodiscard]] static IMutex* create(const std::string& name, bool reserved, bool unnamed);

  /// Opens a mutex by its name. There are none with a name: the result is always null.
  [[nodiscard]] static IMutex* open(const std::string& name, bool reserved);
};

}  // namespace trelvo::core
