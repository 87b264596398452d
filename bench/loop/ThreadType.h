#pragma once

#include <trelvo/core/AsyncCallDispatcher.h>

namespace bench {

/// Gives the calling thread a main-loop type, and so its timers a dispatcher, for a scope.
class ThreadType {
 public:
  explicit ThreadType(trelvo::core::AsyncCallDispatcher::MainLoopType type) {
    trelvo::core::AsyncCallDispatcher::setMainLoopType(type);
  }
  ~ThreadType() {
    trelvo::core::AsyncCallDispatcher::setMainLoopType(
        trelvo::core::AsyncCallDispatcher::MainLoopTypeNone);
  }
  ThreadType(const ThreadType&) = delete;
  ThreadType& operator=(const ThreadType&) = delete;
};

}  // namespace bench
