#include <trelvo/core/IThread.h>

#include <trelvo/core/LinThread.h>

#include "objects/MakeObject.h"

namespace trelvo::core {

gom::SharedPointer<IThread> IThread::create(IThreadObserver* observer, bool suspended) {
  const auto thread = gom::makeObject<LinThread>();
  return thread && thread->create(observer, suspended) ? thread : gom::SharedPointer<IThread>();
}

}  // namespace trelvo::core
