#include "core/linux/ThreadDispatchers.h"

#include <map>
#include <mutex>
#include <thread>

#include "objects/StartUp.h"

namespace trelvo::core {

[[gnu::init_priority(kStartUpDispatcherKeys)]] DispatcherSlot gLinPollAsyncCallDispatcher(
    nullptr, "AsyncCallDispatcher::gLinPollAsyncCallDispatcher");
[[gnu::init_priority(kStartUpDispatcherKeys)]] DispatcherSlot gLinGlibAsyncCallDispatcher(
    nullptr, "AsyncCallDispatcher::gLinGlibAsyncCallDispatcher");

namespace {

struct Living {
  std::mutex mutex;
  std::map<const AsyncCallDispatcherCommon*, std::thread::id> owners;
};

// Never destroyed: a dispatcher may die after all static objects have.
Living& living() {
  alignas(Living) static unsigned char room[sizeof(Living)];
  static auto* const everyOne = new (room) Living;
  return *everyOne;
}

bool admit(const AsyncCallDispatcherCommon* dispatcher) {
  const std::lock_guard<std::mutex> lock(living().mutex);
  try {
    living().owners.insert_or_assign(dispatcher, std::this_thread::get_id());
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

void dismiss(const AsyncCallDispatcherCommon* dispatcher) noexcept {
  const std::lock_guard<std::mutex> lock(living().mutex);
  living().owners.erase(dispatcher);
}

}  // namespace

bool enterSlot(DispatcherSlot& slot, AsyncCallDispatcherCommon* dispatcher) {
  if (!admit(dispatcher)) {
    return false;
  }
  if (!slot.set(dispatcher)) {
    dismiss(dispatcher);
    return false;
  }
  return true;
}

void leaveSlot(DispatcherSlot& slot, AsyncCallDispatcherCommon* dispatcher) noexcept {
  dismiss(dispatcher);
  slot.set(nullptr);
}

AsyncCallDispatcherCommon* livingIn(const DispatcherSlot& slot) noexcept {
  AsyncCallDispatcherCommon* const dispatcher = slot.get();
  const std::lock_guard<std::mutex> lock(living().mutex);
  const auto found = living().owners.find(dispatcher);
  const bool own = found != living().owners.end() && found->second == std::this_thread::get_id();
  return own ? dispatcher : nullptr;
}

}  // namespace trelvo::core
