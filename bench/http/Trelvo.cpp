// This library's download.

#include <cstdlib>
#include <memory>

#include <trelvo/ProxyInfo.h>
#include <trelvo/network/ConnectionInfoContainer.h>
#include <trelvo/network/IConnectionManager.h>
#include <trelvo/network/IHTTPRequest.h>

#include "bench/Must.h"
#include "bench/http/DownloadBench.h"
#include "bench/sealed/Counter.h"

namespace bench {

namespace {

using trelvo::ConnectionInfo;
using trelvo::Status;
using trelvo::network::ConnectionInfoContainer;
using trelvo::network::IHTTPRequest;

/// A connection manager that knows of no connections and no proxy.
class NoManager : public trelvo::network::IConnectionManager {
 public:
  Status getConnections(ConnectionInfoContainer&) override { return trelvo::StatusOk; }
  Status startMonitorUsedConnection() override { return trelvo::StatusOk; }
  void stopMonitorUsedConnection(ConnectionInfoContainer&) override {}
  void setObserver(trelvo::network::IConnectionManagerObserver*) override {}
  Status openConnection(const ConnectionInfo&) override { return trelvo::StatusNotSupported; }
  Status closeConnection(const ConnectionInfo&) override { return trelvo::StatusNotSupported; }
  Status getProxy(const std::string&, trelvo::ProxyInfo&) override {
    return trelvo::StatusNotSupported;
  }
};

template <bool kSummed, Served kForm>
class TrelvoDownload {
 public:
  static constexpr Served kServed = kForm;

  static void download(const Source& source, const std::string& path) {
    NoManager manager;
    const std::unique_ptr<IHTTPRequest> request(IHTTPRequest::create(source.server, &manager));
    must(request != nullptr, "IHTTPRequest::create");
    if (kForm == Served::Enciphered) {
      must(request->setDataDecryption(IHTTPRequest::CipherAes, kKey.data(), kKey.size(), kIv.data(),
                                      kIv.size()) == trelvo::StatusOk,
           "setDataDecryption");
    }
    if (kSummed) {
      request->setDataChecksum(bodyChecksum(), 0, kBodySize);
    }
    unsigned long long bytes = 0;
    must(request->download(source.path, path, bytes) == trelvo::StatusOk, "download");
  }
};

const std::string kName = "lib:trelvo";

const bool kRegistered =
    registerDownload<TrelvoDownload<false, Served::Plain>>("plain", kName) &&
    registerDownload<TrelvoDownload<true, Served::Plain>>("crc", kName) &&
    registerDownload<TrelvoDownload<false, Served::Enciphered>>("cbc", kName) &&
    registerDownload<TrelvoDownload<true, Served::Enciphered>>("both", kName);

}  // namespace

}  // namespace bench
