#include <chrono>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <trelvo/network/Connectivity.h>
#include <trelvo/network/IConnectionManager.h>
#include <trelvo/network/IConnectionManagerObserver.h>

#include "MockServices.h"

namespace trelvo {
namespace {

using com::ubuntu::location::connectivity::Characteristics;
using com::ubuntu::location::connectivity::platform_default_manager;
using com::ubuntu::location::connectivity::State;
using test::MockModemManager;
using test::MockNetworkManager;
using test::PrivateBus;

constexpr unsigned int kWlan = 1;
constexpr unsigned int kCellular = 2;
constexpr unsigned int kRoaming = 6;

/// The library's own manager, and what it says now.
class Followed {
 public:
  Followed() : m_manager(platform_default_manager()) {
    m_connections.push_back(m_manager->state().changed().connect([this](State) { news(); }));
    m_connections.push_back(
        m_manager->characteristics().changed().connect([this](Characteristics) { news(); }));
  }
  ~Followed() {
    for (::core::Connection& connection : m_connections) connection.disconnect();
  }
  Followed(const Followed&) = delete;
  Followed& operator=(const Followed&) = delete;

  int state() const { return static_cast<int>(m_manager->state().get()); }
  unsigned int characteristics() const {
    return static_cast<unsigned int>(m_manager->characteristics().get());
  }
  /// Waits for word of these values; false after a long time.
  bool becomes(int wantedState, unsigned int wanted) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_news.wait_for(lock, std::chrono::seconds(60),
                           [&] { return state() == wantedState && characteristics() == wanted; });
  }

 private:
  void news() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_news.notify_all();
  }

  std::mutex m_mutex;
  std::condition_variable m_news;
  std::shared_ptr<com::ubuntu::location::connectivity::Manager> m_manager;
  std::vector<::core::Connection> m_connections;
};

class NetworkManager : public testing::Test {
 protected:
  PrivateBus bus;
};

TEST_F(NetworkManager, FirstValuesAreThereAtOnce) {
  MockNetworkManager service(bus);
  service.goWlan();
  service.setState(70);
  const Followed followed;
  EXPECT_EQ(followed.state(), 70);
  EXPECT_EQ(followed.characteristics(), kWlan);
}

TEST_F(NetworkManager, StatesPassAsTheyAre) {
  MockNetworkManager service(bus);
  Followed followed;
  for (const int state : {20, 30, 40, 50, 60, 70, 10, 71, 0}) {
    service.setState(static_cast<unsigned int>(state));
    EXPECT_TRUE(followed.becomes(state, 0));
  }
}

TEST_F(NetworkManager, KindFollowsThePrimaryConnection) {
  MockNetworkManager service(bus);
  service.setState(70);
  Followed followed;
  EXPECT_TRUE(followed.becomes(70, 0));
  service.goWlan();
  EXPECT_TRUE(followed.becomes(70, kWlan));
  service.goCellular();
  EXPECT_TRUE(followed.becomes(70, kCellular));
  service.goWlan();
  EXPECT_TRUE(followed.becomes(70, kWlan));
  service.setPrimary("eth0", "802-3-ethernet");
  EXPECT_TRUE(followed.becomes(70, 0));
  service.goCellular();
  EXPECT_TRUE(followed.becomes(70, kCellular));
  service.setPrimary("", "");
  EXPECT_TRUE(followed.becomes(70, 0));
}

TEST_F(NetworkManager, DeviceTellsTheKindWhereTheTypeDoesNot) {
  MockNetworkManager service(bus);
  service.addConnection("wifi_by_device", "other", 2, "");
  service.addConnection("modem_by_device", "other", 8, "");
  service.addConnection("cdma_by_type", "cdma", 14, "");
  Followed followed;
  service.setPrimary("wifi_by_device", "other");
  EXPECT_TRUE(followed.becomes(followed.state(), kWlan));
  service.setPrimary("modem_by_device", "other");
  EXPECT_TRUE(followed.becomes(followed.state(), kCellular));
  service.setPrimary("cdma_by_type", "");
  EXPECT_TRUE(followed.becomes(followed.state(), kCellular));
}

TEST_F(NetworkManager, ChangesOfTheConnectionAndItsDeviceAreFollowed) {
  MockNetworkManager service(bus);
  service.setPrimary("eth0", "802-3-ethernet");
  service.setState(70);
  Followed followed;
  EXPECT_TRUE(followed.becomes(70, 0));
  service.update(MockNetworkManager::connectionPath("eth0"), MockNetworkManager::kConnection,
                 "{'Devices': <[objectpath '" + MockNetworkManager::devicePath("wlan0") + "']>}");
  EXPECT_TRUE(followed.becomes(70, kWlan));
  service.update(MockNetworkManager::devicePath("wlan0"), MockNetworkManager::kDevice,
                 "{'DeviceType': <uint32 8>}");
  EXPECT_TRUE(followed.becomes(70, kCellular));
}

TEST_F(NetworkManager, RoamingIsTheModemsRegistration) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  service.goCellular();
  service.setState(70);
  Followed followed;
  EXPECT_TRUE(followed.becomes(70, kCellular));
  for (const unsigned int abroad : {5U, 7U, 10U}) {
    modems.set3gppRegistration(abroad);
    EXPECT_TRUE(followed.becomes(70, kRoaming)) << abroad;
    modems.set3gppRegistration(1);
    EXPECT_TRUE(followed.becomes(70, kCellular)) << abroad;
  }
}

TEST_F(NetworkManager, OtherRegistrationsAreNotRoaming) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  service.goCellular();
  service.setState(70);
  for (const unsigned int state : {0U, 2U, 3U, 4U, 6U, 8U, 9U, 11U}) {
    modems.set3gppRegistration(state);
    EXPECT_EQ(Followed().characteristics(), kCellular) << state;
  }
}

TEST_F(NetworkManager, RoamingOfACdmaModem) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  modems.addProperties(
      MockNetworkManager::kModemPath, MockModemManager::kCdma,
      "{'Cdma1xRegistrationState': <uint32 2>, 'EvdoRegistrationState': <uint32 2>}");
  service.setPrimary("wwan0", "cdma");
  service.setState(70);
  Followed followed;
  EXPECT_EQ(followed.characteristics(), kCellular);
  modems.update(MockNetworkManager::kModemPath, MockModemManager::kCdma,
                "{'EvdoRegistrationState': <uint32 3>}");
  EXPECT_TRUE(followed.becomes(70, kRoaming));
  modems.update(MockNetworkManager::kModemPath, MockModemManager::kCdma,
                "{'Cdma1xRegistrationState': <uint32 3>, 'EvdoRegistrationState': <uint32 1>}");
  EXPECT_TRUE(followed.becomes(70, kRoaming));
  modems.update(MockNetworkManager::kModemPath, MockModemManager::kCdma,
                "{'Cdma1xRegistrationState': <uint32 1>}");
  EXPECT_TRUE(followed.becomes(70, kCellular));
}

TEST_F(NetworkManager, ARoamingModemDoesNotTouchWlan) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  modems.set3gppRegistration(5);
  service.goWlan();
  service.setState(70);
  EXPECT_EQ(Followed().characteristics(), kWlan);
}

TEST_F(NetworkManager, ModemManagerIsFollowedWhenItComesAndGoes) {
  MockNetworkManager service(bus);
  service.goCellular();
  service.setState(70);
  Followed followed;
  EXPECT_TRUE(followed.becomes(70, kCellular));
  for (int round = 0; round < 2; ++round) {
    {
      MockModemManager modems(bus);
      modems.set3gppRegistration(5);
      EXPECT_TRUE(followed.becomes(70, kRoaming));
    }
    EXPECT_TRUE(followed.becomes(70, kCellular));
  }
}

TEST_F(NetworkManager, ABusWithoutTheServiceIsNotConnectedAndTheServiceIsFollowed) {
  Followed followed;
  EXPECT_EQ(followed.state(), 0);
  EXPECT_EQ(followed.characteristics(), 0U);
  for (int round = 0; round < 2; ++round) {
    {
      MockNetworkManager service(bus);
      service.goWlan();
      service.setState(70);
      EXPECT_TRUE(followed.becomes(70, kWlan));
    }
    EXPECT_TRUE(followed.becomes(0, 0));
  }
}

TEST_F(NetworkManager, ABusThatGoesAndComesBackIsFollowed) {
  Followed followed;
  {
    MockNetworkManager service(bus);
    service.goWlan();
    service.setState(70);
    EXPECT_TRUE(followed.becomes(70, kWlan));
    bus.stop();
    EXPECT_TRUE(followed.becomes(0, 0));
  }
  bus.start();
  MockNetworkManager service(bus);
  service.goCellular();
  service.setState(70);
  EXPECT_TRUE(followed.becomes(70, kCellular));
}

TEST_F(NetworkManager, AServiceThatStandsStillHoldsUpNobodyAndIsAskedAgain) {
  MockNetworkManager service(bus);
  service.goWlan();
  service.setState(70);
  service.freeze();
  const auto start = std::chrono::steady_clock::now();
  Followed followed;
  // Far below the 25 seconds of a call on the bus.
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
  EXPECT_EQ(followed.state(), 0);
  service.thaw();
  EXPECT_TRUE(followed.becomes(70, kWlan));
}

TEST_F(NetworkManager, AFrozenServiceDoesNotHoldUpTheEnd) {
  MockNetworkManager service(bus);
  service.freeze();
  const auto start = std::chrono::steady_clock::now();
  { const Followed followed; }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST_F(NetworkManager, AModemManagerThatStandsStillReadsAsNotRoamingAndIsAskedAgain) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  modems.set3gppRegistration(5);
  service.goCellular();
  service.setState(70);
  modems.freeze();
  Followed followed;
  EXPECT_TRUE(followed.becomes(70, kCellular));
  modems.thaw();
  EXPECT_TRUE(followed.becomes(70, kRoaming));
}

TEST_F(NetworkManager, PropertiesOfOtherTypesAndPathsThatLeadNowhereAreNone) {
  MockNetworkManager service(bus);
  service.setState(70);
  service.addConnection("odd_udi", "gsm", 8, "not a path");
  service.addObject(MockNetworkManager::connectionPath("odd"), MockNetworkManager::kConnection,
                    "{'Type': <uint32 5>, 'Devices': <'none'>}");
  Followed followed;
  service.goWlan();
  EXPECT_TRUE(followed.becomes(70, kWlan));
  service.setPrimary("odd", "");
  EXPECT_TRUE(followed.becomes(70, 0));
  service.setPrimary("odd_udi", "");
  EXPECT_TRUE(followed.becomes(70, kCellular));
  service.setPrimary("nowhere", "");
  EXPECT_TRUE(followed.becomes(70, 0));
  service.update("/org/freedesktop/NetworkManager", MockNetworkManager::kName,
                 "{'State': <'seventy'>}");
  EXPECT_TRUE(followed.becomes(0, 0));
}

TEST_F(NetworkManager, WhatASlotThrowsKeepsNobodyFromTheNews) {
  MockNetworkManager service(bus);
  service.goWlan();
  service.setState(20);
  const auto manager = platform_default_manager();
  auto connection =
      manager->state().changed().connect([](State) { throw std::runtime_error("slot"); });
  Followed followed;  // another manager, so that there is something to wait for
  service.setPrimary("", "");
  service.setState(70);
  service.goCellular();
  EXPECT_TRUE(followed.becomes(70, kCellular));
  connection.disconnect();
  Followed later;
  EXPECT_TRUE(later.becomes(70, kCellular));
}

TEST_F(NetworkManager, ManagersCanBeMadeAndDroppedAgainAndAgain) {
  MockNetworkManager service(bus);
  service.goWlan();
  service.setState(70);
  for (int round = 0; round < 20; ++round) {
    const auto manager = platform_default_manager();
    EXPECT_EQ(manager->state().get(), State::Global);
  }
}

/// Counts on the thread that runs the main context: this one.
class Listener : public network::IConnectionManagerObserver {
 public:
  void handleConnectionListChanged() override { ++changes; }
  void handleNetworkingEnabledChanged(bool) override {}
  int changes = 0;
};

std::string activeName(network::IConnectionManager& manager) {
  network::ConnectionInfoContainer connections;
  EXPECT_EQ(manager.getConnections(connections), StatusOk);
  EXPECT_FALSE(connections.empty());
  return connections.empty() ? "" : connections.front().name;
}

TEST_F(NetworkManager, TheConnectionManagerShowsWhatTheServiceSays) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  modems.set3gppRegistration(5);
  service.goWlan();
  service.setState(70);
  const std::unique_ptr<network::IConnectionManager> manager(network::IConnectionManager::open());
  ASSERT_NE(manager, nullptr);
  EXPECT_EQ(activeName(*manager), "wifi");

  Listener listener;
  manager->setObserver(&listener);
  EXPECT_EQ(manager->startMonitorUsedConnection(), StatusOk);
  service.goCellular();
  while (listener.changes < 2) g_main_context_iteration(nullptr, TRUE);
  EXPECT_EQ(activeName(*manager), "cellular");
  network::ConnectionInfoContainer used;
  manager->stopMonitorUsedConnection(used);
  ASSERT_EQ(used.size(), 2U);
  EXPECT_STREQ(used.front().name, "wifi");
  EXPECT_STREQ(used.back().name, "cellular");
  EXPECT_TRUE(used.back().roaming);
}

TEST_F(NetworkManager, TheConnectionManagerOpensOnABusWithoutTheService) {
  const std::unique_ptr<network::IConnectionManager> manager(network::IConnectionManager::open());
  ASSERT_NE(manager, nullptr);
  EXPECT_EQ(activeName(*manager), "disconnected");
}

}  // namespace
}  // namespace trelvo
