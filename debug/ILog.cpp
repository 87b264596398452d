#include <trelvo/ILog.h>

namespace trelvo {

ILog::~ILog() = default;

}  // namespace trelvo
