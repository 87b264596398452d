#include <trelvo/core/AsyncCallDispatcher.h>

#include <trelvo/Status.h>
#include <trelvo/core/LinGlibAsyncCallDispatcher.h>
#include <trelvo/core/LinPollAsyncCallDispatcher.h>

namespace trelvo::core {

namespace {

thread_local AsyncCallDispatcher::MainLoopType gMainLoopType =
    AsyncCallDispatcher::MainLoopTypeNone;

}  // namespace

AsyncCallDispatcher::MainLoopType AsyncCallDispatcher::currentMainLoopType() noexcept {
  return gMainLoopType;
}

void AsyncCallDispatcher::setCurrentMainLoopType(MainLoopType type) noexcept {
  gMainLoopType = type;
}

void AsyncCallDispatcher::setMainLoopType(MainLoopType type) {
  if (type != MainLoopTypeNone && currentMainLoopType() != MainLoopTypeNone) {
    throw StatusWrongState;
  }
  setCurrentMainLoopType(type);
}

gom::SharedPointer<IAsyncCallDispatcher> AsyncCallDispatcher::openDispatcher(MainLoopType type) {
  if (type != MainLoopTypeNone && type != currentMainLoopType()) {
    return {};
  }
  if (currentMainLoopType() == MainLoopTypeNone) {
    setMainLoopType(MainLoopTypeLinGlib);
  }
  switch (currentMainLoopType()) {
    case MainLoopTypeLinPoll:
      return openLinPollAsyncDispatcher();
    case MainLoopTypeLinGlib:
      return openLinGlibAsyncDispatcher();
    default:
      return {};
  }
}

gom::SharedPointer<IAsyncCallDispatcher> AsyncCallDispatcher::openLinPollAsyncDispatcher() {
  return LinPollAsyncCallDispatcher::create();
}

gom::SharedPointer<IAsyncCallDispatcher> AsyncCallDispatcher::openLinGlibAsyncDispatcher() {
  return LinGlibAsyncCallDispatcher::create();
}

}  // namespace trelvo::core
