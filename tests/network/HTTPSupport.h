#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <trelvo/ConnectionInfo.h>
#include <trelvo/ProxyInfo.h>
#include <trelvo/network/ConnectionInfoContainer.h>
#include <trelvo/network/HTTPRequest.h>
#include <trelvo/network/IConnectionManager.h>

#include "tests/network/ScriptedServer.h"

namespace trelvo::test {

inline ConnectionInfo connection(unsigned int type, bool roaming = false) {
  ConnectionInfo info;
  info.type = type;
  info.roaming = roaming;
  return info;
}

/// A connection manager that says what a test tells it to, and notes the calls.
class ScriptedManager : public network::IConnectionManager {
 public:
  Status getConnections(network::ConnectionInfoContainer& connections) override {
    calls.emplace_back("get");
    for (const ConnectionInfo& info : present) {
      connections.add(info);
    }
    return getStatus;
  }
  Status startMonitorUsedConnection() override {
    calls.emplace_back("start");
    if (onStart) {
      onStart();
    }
    return startStatus;
  }
  void stopMonitorUsedConnection(network::ConnectionInfoContainer& connections) override {
    calls.emplace_back("stop");
    if (onStop) {
      onStop();
    }
    for (const ConnectionInfo& info : used) {
      connections.add(info);
    }
  }
  void setObserver(network::IConnectionManagerObserver*) override { calls.emplace_back("observe"); }
  Status openConnection(const ConnectionInfo&) override { return StatusNotSupported; }
  Status closeConnection(const ConnectionInfo&) override { return StatusNotSupported; }
  Status getProxy(const std::string& uri, ProxyInfo& info) override {
    proxyUris.push_back(uri);
    asked = info;
    info = proxy;
    return proxyStatus;
  }

  std::vector<std::string> calls;
  std::vector<ConnectionInfo> present = {connection(ConnectionInfo::TypeWlan)};
  std::vector<ConnectionInfo> used;
  Status getStatus = StatusOk;
  Status startStatus = StatusOk;
  std::function<void()> onStart;  ///< Runs inside of a request, before its transfer.
  std::function<void()> onStop;   ///< The same, behind it.
  std::vector<std::string> proxyUris;
  ProxyInfo asked;  ///< The record as getProxy() got it.
  ProxyInfo proxy;
  Status proxyStatus = StatusNotSupported;
};

/// An empty directory, removed with everything in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "trelvo-http-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::filesystem::filesystem_error("mkdtemp", std::error_code());
    }
    m_path = pattern;
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::string path(const std::string& name) const { return (m_path / name).string(); }

 private:
  std::filesystem::path m_path;
};

inline std::string contentOfFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::string& path, const std::string& content) {
  std::ofstream(path, std::ios::binary) << content;
}

/// The proxies of the machine that a test runs on are none of its business.
inline void forgetProxies() {
  for (const char* const name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
    unsetenv(name);
  }
}

/// Bytes that look alike nowhere.
inline std::string pattern(std::size_t size) {
  std::string result(size, '\0');
  unsigned int state = 1;
  for (char& c : result) {
    state = state * 1664525 + 1013904223;
    c = static_cast<char>(state >> 24);
  }
  return result;
}

/// A request to a server that follows a script.
class HTTPTest : public ::testing::Test {
 protected:
  HTTPTest() { forgetProxies(); }

  /// Starts the server and makes the request.
  void serve(ScriptedServer::Script script) {
    request.reset();
    server = std::make_unique<ScriptedServer>(std::move(script));
    connect(server->address());
  }

  /// Serves one answer after the other, and notes in `questions` what was asked.
  void serveInTurn(std::vector<std::string> answers) {
    serve(inTurn(std::move(answers), questions));
  }

  void connect(const std::string& address) {
    request = std::make_unique<network::HTTPRequest>(address, &manager);
    ASSERT_TRUE(request->initialize());
  }

  Status download() { return request->download("/file", local, bytes); }

 public:
  static constexpr unsigned long long kUntouched = 0xAAAAAAAAAAAAAAAAULL;

  TemporaryDirectory directory;
  std::string local = directory.path("local");
  unsigned long long bytes = kUntouched;
  ScriptedManager manager;
  Questions questions;
  std::unique_ptr<ScriptedServer> server;  // its script uses what stands above
  std::unique_ptr<network::HTTPRequest> request;
};

/// An answer whose body ends where the connection does.
inline std::string unmeasured(std::string_view body) { return answer("200 OK", "", body); }

/// What tests of downloads add: blocks that come as the test cuts them.
class DownloadTest : public HTTPTest {
 protected:
  /// Hands `blocks` to the next download one by one, in front of what the server sends.
  void feed(std::vector<std::string> blocks) {
    beforeTransfer([this, blocks = std::move(blocks)] {
      for (std::string block : blocks) {
        EXPECT_EQ(network::HTTPRequest::receiveBody(block.data(), 1, block.size(), request.get()),
                  block.size());
      }
    });
  }

  /// Runs `action` inside of each download.
  void beforeTransfer(std::function<void()> action) {
    request->setAllowedConnectionType(1);
    manager.onStart = std::move(action);
  }

  std::string content() const { return contentOfFile(local); }
};

}  // namespace trelvo::test
