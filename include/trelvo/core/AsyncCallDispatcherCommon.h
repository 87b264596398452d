#pragma once

#include <atomic>
#include <map>
#include <vector>

#include <trelvo/Export.h>
#include <trelvo/Lockable.h>
#include <trelvo/core/IAsyncCallDispatcher.h>
#include <trelvo/core/IAsyncCallReceiver.h>

namespace trelvo::core {

/// The half of a dispatcher that knows posted calls, and nothing of how its thread is woken.
///
/// A posted call gets a number and waits in a locked map. Only the number travels through the
/// wake-up channel of the derived class, whose order is the order of execution; a call that was
/// removed meanwhile is not found under its number. Besides the waiting calls, the map holds one
/// empty slot under the number that the next call will get.
///
/// The map's lock is never held while a call runs: calls may post and remove freely.
class TRELVO_EXPORT AsyncCallDispatcherCommon : public IAsyncCallDispatcher,
                                                public IAsyncCallReceiver {
 public:
  /// A call that waits: either a function or a receiver, and what it is given. Empty when both are
  /// null.
  struct Delegate {
    IAsyncCallReceiver* receiver = nullptr;  ///< The target object, or null.
    void (*function)(void*) = nullptr;       ///< The target function, or null.
    void* data = nullptr;                    ///< What it is given, unchanged.
  };

  ~AsyncCallDispatcherCommon() override;
  AsyncCallDispatcherCommon(const AsyncCallDispatcherCommon&) = delete;
  AsyncCallDispatcherCommon& operator=(const AsyncCallDispatcherCommon&) = delete;

  bool queueAsyncCall(void (*function)(void*), void* data) override;
  bool queueAsyncCall(IAsyncCallReceiver* receiver, void* data) override;
  void removeAllAsyncCall(void (*function)(void*)) override;
  void removeAllAsyncCall(IAsyncCallReceiver* receiver) override;
  void interruptSleep() override;

  /// Sends the number of a call through the wake-up channel, from any thread and with the map's
  /// lock held. Must not wait. @return whether it went; a call whose number did not go never runs.
  virtual bool doScheduleDelegate(unsigned int id) = 0;

  /// Does nothing: the dispatcher is the receiver of its own wake-ups.
  void handleAsyncCall(void* data) override;

 protected:
  /// The first call gets number 1. Throws std::bad_alloc, or StatusOutOfMemory without a lock.
  AsyncCallDispatcherCommon();
  /// The first call gets number `first + 1`.
  explicit AsyncCallDispatcherCommon(unsigned int first);

  /// addDelegate(), with an exception turned into false.
  bool doQueueAsyncCall(const Delegate& delegate);

  /// Stores the call under the next number and schedules that. Whether it could be scheduled is not
  /// looked at. Throws std::bad_alloc, with nothing posted. @return false when the lock failed.
  bool addDelegate(const Delegate& delegate);

  /// Removes all calls of that function and receiver, whatever their data.
  void removeDelegate(const Delegate& delegate);

  /// Removes the call of that number, if there is one.
  void removeDelegate(unsigned int id);

  /// Copies the call of that number. @return false when there is none, or the lock failed.
  bool findDelegate(unsigned int id, Delegate& delegate);

  /// Takes the call of that number out of the map and runs it, if it is still there. What it throws
  /// is dropped.
  void invokeDelegate(unsigned int id);

 private:
  using Delegates = std::map<unsigned int, Delegate>;

  void init();
  Delegates::node_type nextSlot();
  bool takeDelegate(unsigned int id, Delegate& delegate);
  bool copyDelegate(unsigned int id, Delegate& delegate, bool andRemove);
  Delegates::iterator recycle(Delegates::iterator position);

  unsigned int m_nextId;                       // under the lock of m_delegates
  Lockable<Delegates> m_delegates;             // the calls that wait, and the empty slot
  std::vector<Delegates::node_type> m_spares;  // under the same lock: nodes for the next calls
  // How far spinning for that lock is worth while, for those who post and for who runs the calls.
  std::atomic<int> m_postingSpins;
  std::atomic<int> m_runningSpins;
};

}  // namespace trelvo::core
