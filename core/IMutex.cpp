#include <trelvo/core/IMutex.h>

#include <memory>
#include <new>

#include <trelvo/core/LinMutex.h>

namespace trelvo::core {

IMutex* IMutex::create(const std::string& name, bool reserved, bool unnamed) {
  if (!name.empty() || !unnamed) {
    return nullptr;
  }
  std::unique_ptr<LinMutex> mutex(new (std::nothrow) LinMutex);
  return mutex && mutex->create(reserved) ? mutex.release() : nullptr;
}

IMutex* IMutex::open(const std::string& /*name*/, bool /*reserved*/) { return nullptr; }

}  // namespace trelvo::core
