#pragma once

#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>

#include <trelvo/network/Connectivity.h>

#include "network/ubuntu/GioHandles.h"
#include "network/ubuntu/NetworkManagerState.h"
#include "network/ubuntu/SharedProperty.h"

namespace trelvo::network {

/// The connectivity service over NetworkManager's D-Bus interface on the system bus.
///
/// It has a connection to the bus and a thread of its own, on which it reads, hears of changes and
/// calls the slots of its properties. A NetworkManager that is not there, or goes, reads as state
/// Unknown without characteristics, and is followed when it comes. So is a bus that goes.
class NetworkManagerConnectivity : public com::ubuntu::location::connectivity::Manager {
  using State = com::ubuntu::location::connectivity::State;
  using Characteristics = com::ubuntu::location::connectivity::Characteristics;

 public:
  /// Waits until the first values are there, for at most kPatience. A NetworkManager that needs
  /// longer is not connected until it has answered.
  /// Throws what is derived from std::runtime_error when there is no bus, or none that answers.
  NetworkManagerConnectivity();
  /// Ends the thread. Not inside a slot.
  ~NetworkManagerConnectivity() override;
  NetworkManagerConnectivity(const NetworkManagerConnectivity&) = delete;
  NetworkManagerConnectivity& operator=(const NetworkManagerConnectivity&) = delete;

  const ::core::Property<State>& state() const override { return m_state; }
  const ::core::Property<Characteristics>& characteristics() const override {
    return m_characteristics;
  }

  static constexpr std::chrono::milliseconds kPatience{1500};

 private:
  void waitForFirstValues();
  void stop();

  // On the thread.
  void run();
  bool connect();
  void serve();
  void refresh(PropertyReader& reader);
  void publish(const NetworkManagerState& now);
  void settle(const std::string& failure);
  void pause();
  void askAgainLater();

  SharedProperty<State> m_state;
  SharedProperty<Characteristics> m_characteristics;
  GioPointer<GMainContext> m_context;
  GioPointer<GCancellable> m_cancellable;
  std::atomic<bool> m_stopped{false};
  std::atomic<bool> m_connected{false};
  std::promise<std::string> m_settling;  // empty, or why there are no values
  std::future<std::string> m_settled{m_settling.get_future()};

  // The thread's own.
  GioPointer<GDBusConnection> m_bus;
  bool m_isSettled = false;
  bool m_stale = true;  // something has changed since the values were read

  std::thread m_thread;  // last: it uses all the others
};

}  // namespace trelvo::network
