#pragma once

#include <trelvo/ConnectionInfo.h>
#include <trelvo/Export.h>
#include <trelvo/IAdaptationExtension.h>
#include <trelvo/ProxyInfo.h>
#include <trelvo/Status.h>

namespace trelvo {

class IConnectionInfoList;
class IConnectionObserver;

/// What the connection manager asks of a platform. NetworkAdaptationUbuntu is the library's own; an
/// application may hand another to network::IConnectionManager::create().
///
/// An adaptation tells the used connections in one of two ways. Either it knows the active
/// connection (getDataConnection()) and reports its changes, or it answers StatusNotSupported there
/// and counts bytes for each connection (getBytesTransferred()).
///
/// Threads: calls come from every thread that uses the connection manager, several at once.
class TRELVO_EXPORT INetworkAdaptation : public IAdaptationExtension {
 public:
  ~INetworkAdaptation() override;

  /// Fills in the active connection; `type` 0 when there is none.
  /// @return StatusOk, or StatusNotSupported when the platform cannot tell, ever.
  virtual Status getDataConnection(ConnectionInfo& info) = 0;

  /// Adds every connection known to `list`.
  virtual Status getConnections(IConnectionInfoList& list) = 0;

  /// Gives the bytes that `info` has carried so far, both ways. Leaving `bytes` alone means that
  /// there is no number, and the connection then counts as used.
  virtual Status getBytesTransferred(const ConnectionInfo& info, unsigned long long& bytes) = 0;

  /// Fills in the proxy for the address `uri`.
  /// @return StatusOk, anything else when there is no proxy to use.
  virtual Status getProxy(const char* uri, ProxyInfo& proxy) = 0;

  /// Asks the platform to bring `info` up, or tells it that nobody needs it any more.
  virtual Status openConnection(const ConnectionInfo& info) = 0;
  virtual Status closeConnection(const ConnectionInfo& info) = 0;

  /// Begins to report to `observer`, which is not owned. The first reports may come before this
  /// returns, on the calling thread.
  virtual Status subscribe(IConnectionObserver& observer) = 0;

  /// Ends reporting to `observer`: once this has returned no call is under way on another thread
  /// and none will come. An observer that was never subscribed does no harm.
  virtual Status unsubscribe(IConnectionObserver& observer) = 0;

 protected:
  INetworkAdaptation() = default;
  INetworkAdaptation(const INetworkAdaptation&) = default;
  INetworkAdaptation& operator=(const INetworkAdaptation&) = default;
};

}  // namespace trelvo
