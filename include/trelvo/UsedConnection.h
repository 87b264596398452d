#pragma once

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>

namespace trelvo {

/// A connection that was there while use was monitored, with its byte counter at that time.
struct TRELVO_EXPORT UsedConnection {
  ConnectionInfo info;           ///< The connection as it was first seen.
  unsigned long long bytes = 0;  ///< Bytes it had carried by then; 0 where nobody counts them.
};

}  // namespace trelvo
