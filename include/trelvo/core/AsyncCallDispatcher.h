#pragma once

#include <trelvo/Export.h>
#include <trelvo/core/IAsyncCallDispatcher.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// Where a thread gets its dispatcher, and chooses which kind that is.
///
/// A thread has a main-loop type, none at first. It is chosen once: by setMainLoopType(), by
/// MainLoop::create(), or by the first openDispatcher() without a type, which chooses GLib.
///
/// Threads: everything here speaks of the calling thread.
class TRELVO_EXPORT AsyncCallDispatcher {
 public:
  /// The kinds of main loops. 1 and 2 are reserved: a thread set to them gets nothing.
  enum MainLoopType : int {
    MainLoopTypeNone = 0,     ///< None chosen yet; as an argument: the thread's own, else GLib.
    MainLoopTypeLinPoll = 3,  ///< LinPollAsyncCallDispatcher and LinPollMainLoop.
    MainLoopTypeLinGlib = 4,  ///< LinGlibAsyncCallDispatcher and LinGlibMainLoop.
  };

  AsyncCallDispatcher() = delete;

  /// The thread's type.
  static MainLoopType currentMainLoopType() noexcept;

  /// Sets the thread's type without any check.
  static void setCurrentMainLoopType(MainLoopType type) noexcept;

  /// Chooses the thread's type; MainLoopTypeNone takes the choice back.
  /// Throws StatusWrongState, with nothing changed, when the thread has one, even the same.
  static void setMainLoopType(MainLoopType type);

  /// The thread's dispatcher, made when there is none yet.
  /// @param type MainLoopTypeNone, or the type that the thread has: this function chooses none but
  ///             GLib, for a thread without a type that asks for none.
  /// @return an empty handle when `type` is another one than the thread's, when that is none of the
  ///         two kinds, and when the dispatcher cannot be made.
  [[nodiscard]] static gom::SharedPointer<IAsyncCallDispatcher> openDispatcher(MainLoopType type);

  /// The thread's dispatcher of that kind, whatever its type; empty when it cannot be made.
  [[nodiscard]] static gom::SharedPointer<IAsyncCallDispatcher> openLinPollAsyncDispatcher();
  [[nodiscard]] static gom::SharedPointer<IAsyncCallDispatcher> openLinGlibAsyncDispatcher();
};

}  // namespace trelvo::core
