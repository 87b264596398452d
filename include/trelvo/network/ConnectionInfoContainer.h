#pragma once

#include <list>

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>
#include <trelvo/IConnectionInfoList.h>

namespace trelvo::network {

/// A list of connections, walked as the std::list that it is.
class TRELVO_EXPORT ConnectionInfoContainer : public IConnectionInfoList,
                                              public std::list<ConnectionInfo> {
 public:
  ConnectionInfoContainer() = default;
  ConnectionInfoContainer(const ConnectionInfoContainer&) = default;
  ConnectionInfoContainer& operator=(const ConnectionInfoContainer&) = default;
  ~ConnectionInfoContainer() override;

  /// Appends a copy of `info`.
  void add(const ConnectionInfo& info) override;
};

}  // namespace trelvo::network
