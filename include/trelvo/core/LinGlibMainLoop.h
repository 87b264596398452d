#pragma once

#include <glib.h>

#include <trelvo/Export.h>
#include <trelvo/core/MainLoopCommon.h>

namespace trelvo::core {

/// The main loop over a GLib dispatcher. The inherited start() turns the default main context
/// itself; the one without arguments leaves that to a GMainLoop.
class TRELVO_EXPORT LinGlibMainLoop : public MainLoopCommon {
 public:
  LinGlibMainLoop() = default;
  ~LinGlibMainLoop() override;

  /// A new loop over the dispatcher, which the caller deletes; null when memory runs out.
  [[nodiscard]] static LinGlibMainLoop* create(
      const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher);

  /// Takes a reference to the dispatcher and makes the GMainLoop. @return false when that fails.
  bool initialize(const gom::SharedPointer<IAsyncCallDispatcher>& dispatcher);

  using MainLoopCommon::start;

  /// Ends the loop, whichever start() runs it.
  void stop() override;

  /// Runs the GMainLoop until stop(), without looking whether the loop is running already. Posted
  /// calls run in it, as the dispatcher lives in the same context.
  /// @return StatusOk, or StatusWrongState, at once, before initialize() was called.
  virtual Status start();

 private:
  GMainLoop* m_loop = nullptr;
};

}  // namespace trelvo::core
