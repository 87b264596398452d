#include <trelvo/IAlarmObserver.h>

namespace trelvo {

IAlarmObserver::~IAlarmObserver() = default;

}  // namespace trelvo
