#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gio/gio.h>

#include "network/ubuntu/GioHandles.h"

namespace trelvo::test {

/// A program that runs until this goes, and no longer than the test.
class ChildProcess {
 public:
  explicit ChildProcess(const std::vector<std::string>& arguments);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Waits until it prints a line, and gives that.
  std::string readLine();
  void signal(int number);

 private:
  GSubprocess* m_process;
};

/// A message bus of the test's own, which is the system bus of this process while it lives.
class PrivateBus {
 public:
  PrivateBus();
  ~PrivateBus();
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  /// The bus comes, also a second time at the same address, and goes with all connections.
  void start();
  void stop();

  /// Waits until `service` has an owner, or has none.
  void waitForService(const char* service, bool owned);
  /// Calls a method of a mock, and waits until it is done.
  void call(const char* service, const std::string& path, const char* interface, const char* method,
            GVariant* arguments);

 private:
  std::string m_directory;
  std::unique_ptr<ChildProcess> m_daemon;
  network::GioPointer<GDBusConnection> m_connection;
};

}  // namespace trelvo::test
