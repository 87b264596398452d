// Downloads a file through the library, and says when the server's copy was last changed.
//
//   download SERVER PATH FILE       e.g. download 127.0.0.1:8000 /tiles/512.bin tile.bin
//
// Control-C ends the transfer in an orderly way; what came so far stays in FILE.

#include <csignal>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>

#include <trelvo/trelvo.h>

using trelvo::ConnectionInfo;
using trelvo::ProxyInfo;
using trelvo::Status;
using trelvo::network::ConnectionInfoContainer;
using trelvo::network::IConnectionManager;
using trelvo::network::IConnectionManagerObserver;
using trelvo::network::IHTTPRequest;

namespace {

/// A desktop machine: one connection that is always there, and no proxy. On a phone,
/// IConnectionManager::open() tells WLAN from cellular and sees to it that a request for one does
/// not run over the other.
class AlwaysConnected : public IConnectionManager {
 public:
  Status getConnections(ConnectionInfoContainer& connections) override {
    ConnectionInfo info;
    info.type = ConnectionInfo::TypeWlan;
    connections.add(info);
    return trelvo::StatusOk;
  }
  Status startMonitorUsedConnection() override { return trelvo::StatusOk; }
  void stopMonitorUsedConnection(ConnectionInfoContainer&) override {}
  void setObserver(IConnectionManagerObserver*) override {}
  Status openConnection(const ConnectionInfo&) override { return trelvo::StatusNotSupported; }
  Status closeConnection(const ConnectionInfo&) override { return trelvo::StatusNotSupported; }
  Status getProxy(const std::string&, ProxyInfo&) override { return trelvo::StatusNotSupported; }
};

// Any thread may cancel, and a signal handler too.
IHTTPRequest* gRequest = nullptr;

void cancel(int) { gRequest->cancel(); }

const char* explain(Status status) {
  switch (status) {
    case trelvo::StatusNotFound:
      return "the server has no such file";
    case trelvo::StatusChecksumMismatch:
      return "the file arrived incomplete";
    case trelvo::StatusCancelled:
      return "cancelled";
    default:
      return "the transfer failed, or the local file cannot be written";
  }
}

/// What a server that names no time leaves.
constexpr unsigned int kUnknown = 0xFFFFFFFF;

void printTime(unsigned int changed) {
  const auto seconds = static_cast<std::time_t>(changed);
  std::cout << "last changed " << std::put_time(std::gmtime(&seconds), "%Y-%m-%d %H:%M:%S UTC\n");
}

int download(IHTTPRequest& request, const std::string& path, const std::string& file) {
  unsigned int changed = kUnknown;
  unsigned long long bytes = 0;
  Status status = request.getRemoteFileModificationTime(path, changed);
  if (status == trelvo::StatusOk) {
    status = request.download(path, file, bytes);
  }
  if (status != trelvo::StatusOk) {
    std::cerr << explain(status) << '\n';
    return 1;
  }
  if (changed != kUnknown) {
    printTime(changed);
  }
  std::cout << bytes << " bytes\n";
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: download SERVER PATH FILE\n";
    return 2;
  }
  AlwaysConnected manager;
  const std::unique_ptr<IHTTPRequest> request(IHTTPRequest::create(argv[1], &manager));
  if (!request) {
    std::cerr << "libcurl does not start\n";
    return 1;
  }
  gRequest = request.get();
  std::signal(SIGINT, cancel);
  const int result = download(*request, argv[2], argv[3]);
  std::signal(SIGINT, SIG_DFL);
  gRequest = nullptr;
  return result;
}
