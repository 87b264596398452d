#pragma once

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>

namespace trelvo {

/// Where an INetworkAdaptation puts the connections that it was asked for.
class TRELVO_EXPORT IConnectionInfoList {
 public:
  virtual ~IConnectionInfoList();

  /// Appends a copy of `info`.
  virtual void add(const ConnectionInfo& info) = 0;

 protected:
  IConnectionInfoList() = default;
  IConnectionInfoList(const IConnectionInfoList&) = default;
  IConnectionInfoList& operator=(const IConnectionInfoList&) = default;
};

}  // namespace trelvo
