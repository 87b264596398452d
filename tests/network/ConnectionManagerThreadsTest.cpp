#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <trelvo/network/ConnectionManagerGeneric.h>

#include "MainContextThread.h"
#include "ScriptedAdaptation.h"
#include "ScriptedPlatform.h"

namespace trelvo::network {
namespace {

using test::cellular;
using test::MainContextThread;
using test::ScriptedAdaptation;
using test::ScriptedPlatform;
using test::ServiceThread;
using test::wlan;

using Manager = std::unique_ptr<IConnectionManager>;

/// Uses its manager inside its calls, as a client may.
class AskingObserver : public IConnectionManagerObserver {
 public:
  explicit AskingObserver(IConnectionManager& manager) : m_manager(manager) {}
  void handleConnectionListChanged() override { ask(); }
  void handleNetworkingEnabledChanged(bool) override { ask(); }

 private:
  void ask() {
    ConnectionInfoContainer connections;
    m_manager.getConnections(connections);
  }
  IConnectionManager& m_manager;
};

/// What a client does in its life.
void useManager(IConnectionManager& manager, unsigned int round) {
  AskingObserver observer(manager);
  manager.setObserver(&observer);
  ConnectionInfoContainer connections;
  EXPECT_EQ(manager.getConnections(connections), StatusOk);
  EXPECT_EQ(manager.startMonitorUsedConnection(), StatusOk);
  EXPECT_EQ(manager.setNetworkingEnabled(round % 2 == 0), StatusOk);
  manager.stopMonitorUsedConnection(connections);
  for (const ConnectionInfo& info : connections) EXPECT_EQ(info.size, 160U);
  manager.networkingEnabled();
  manager.setObserver(nullptr);
}

void runClients(const std::function<Manager()>& open, unsigned int rounds) {
  std::vector<std::thread> clients;
  for (int client = 0; client < 4; ++client) {
    clients.emplace_back([&] {
      for (unsigned int round = 0; round < rounds; ++round) {
        const Manager manager = open();
        ASSERT_NE(manager, nullptr);
        useManager(*manager, round);
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(gConnectionManagerGenericStatic.m_value, nullptr);
}

TEST(ConnectionManagerThreads, ClientsOpenMonitorAndLeaveWhileThePlatformReports) {
  auto& platform = ScriptedPlatform::fresh();
  const MainContextThread context;
  const ServiceThread service([&](unsigned int i) {
    constexpr unsigned int kCharacteristics[] = {1, 2, 6, 0, 5};
    platform.manager->set(i % 7 == 0 ? 60 : 70, kCharacteristics[i % 5]);
  });
  runClients([] { return Manager(IConnectionManager::open()); }, 200);
}

TEST(ConnectionManagerThreads, ClientsOfAnAdaptationThatKnowsTheActiveConnection) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const ServiceThread service([&](unsigned int i) {
    switch (i % 4) {
      case 0:
        return adaptation.establish(wlan());
      case 1:
        return adaptation.disconnect(wlan());
      case 2:
        return adaptation.establish(cellular());
      default:
        return adaptation.change(cellular(true));
    }
  });
  runClients([&] { return Manager(IConnectionManager::create(&adaptation)); }, 200);
}

TEST(ConnectionManagerThreads, ClientsOfAnAdaptationThatCountsBytes) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnectionAnswer = StatusNotSupported;
  adaptation.connections = {wlan(), cellular()};
  adaptation.bytes = {{1, 100}};
  const ServiceThread service([&](unsigned int i) {
    return i % 2 == 0 ? adaptation.establish(wlan()) : adaptation.disconnect(wlan());
  });
  runClients([&] { return Manager(IConnectionManager::create(&adaptation)); }, 200);
}

TEST(ConnectionManagerThreads, ThreadsThatOpenAtOnceInitializeOnce) {
  for (int round = 0; round < 50; ++round) {
    ScriptedAdaptation adaptation;
    std::atomic<int> waiting{4};
    std::vector<Manager> managers(4);
    std::vector<std::thread> threads;
    for (Manager& manager : managers) {
      threads.emplace_back([&] {
        for (--waiting; waiting > 0;) std::this_thread::yield();
        manager.reset(IConnectionManager::create(&adaptation));
      });
    }
    for (std::thread& thread : threads) thread.join();
    for (const Manager& manager : managers) EXPECT_NE(manager, nullptr);
    EXPECT_EQ(adaptation.count("subscribe"), 1U);
    EXPECT_EQ(adaptation.observers(), 1U);
  }
}

TEST(ConnectionManagerThreads, ThreadsThatFailAtOnceLeaveNothingBehind) {
  for (int round = 0; round < 50; ++round) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([] {
        ScriptedAdaptation failing;  // gone with its thread: nobody may look at it later
        failing.connectionsAnswer = StatusFailed;
        EXPECT_EQ(IConnectionManager::create(&failing), nullptr);
        EXPECT_EQ(failing.observers(), 0U);
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(gConnectionManagerGenericStatic.m_value, nullptr);
  }
}

}  // namespace
}  // namespace trelvo::network
