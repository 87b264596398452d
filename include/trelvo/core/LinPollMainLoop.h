#pragma once

#include <trelvo/Export.h>
#include <trelvo/core/MainLoopCommon.h>

namespace trelvo::core {

/// The main loop over a poll dispatcher.
class TRELVO_EXPORT LinPollMainLoop : public MainLoopCommon {
 public:
  LinPollMainLoop() = default;
  ~LinPollMainLoop() override;

  /// A new loop over the dispatcher, which the caller deletes; null when memory runs out.
  [[nodiscard]] static LinPollMainLoop* create(
      const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher);
};

}  // namespace trelvo::core
