#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <trelvo/IConnectionObserver.h>

namespace trelvo::test {

/// Writes down what an adaptation reports: "established wifi", with " roaming" where that is set.
class RecordingObserver : public IConnectionObserver {
 public:
  std::function<void()> whenCalled = [] {};

  IPositioningExtension* extension(unsigned int) override { return nullptr; }
  void handleConnectionEstablished(const ConnectionInfo& info) override {
    note("established ", info);
  }
  void handleConnectionDisconnected(const ConnectionInfo& info) override {
    note("disconnected ", info);
  }
  void handleConnectionChanged(const ConnectionInfo& info) override { note("changed ", info); }

  /// What was reported since the last time.
  std::vector<std::string> take() { return std::exchange(m_reports, {}); }
  /// The last record reported.
  ConnectionInfo last;

 private:
  void note(const char* event, const ConnectionInfo& info) {
    last = info;
    m_reports.push_back(event + std::string(info.name) + (info.roaming ? " roaming" : ""));
    const auto call = whenCalled;  // a copy: it may set another
    call();
  }

  std::vector<std::string> m_reports;
};

}  // namespace trelvo::test
