#include <trelvo/NetworkAdaptationUbuntu.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <core/connection.h>
#include <gtest/gtest.h>

#include <trelvo/IConnectionObserver.h>
#include <trelvo/network/ConnectionInfoContainer.h>

#include "MainContextThread.h"
#include "ScriptedPlatform.h"

namespace trelvo {
namespace {

using test::MainContextThread;
using test::ScriptedPlatform;
using test::ServiceThread;

/// Goes through the kinds of connections.
void step(unsigned int i) {
  constexpr int kStates[] = {70, 70, 60, 70};
  constexpr unsigned int kCharacteristics[] = {1, 2, 6, 0, 5};
  ScriptedPlatform::instance().manager->set(kStates[i % 4], kCharacteristics[i % 5]);
}

/// Counts its calls, as they come on any thread; told in turn, never two at once.
class SerialObserver : public IConnectionObserver {
 public:
  std::function<void()> whenCalled = [] {};
  std::atomic<int> calls{0};
  std::atomic<int> inside{0};
  std::atomic<bool> overlapped{false};

  IPositioningExtension* extension(unsigned int) override { return nullptr; }
  void handleConnectionEstablished(const ConnectionInfo&) override { called(); }
  void handleConnectionDisconnected(const ConnectionInfo&) override { called(); }
  void handleConnectionChanged(const ConnectionInfo&) override { called(); }

 private:
  void called() {
    if (++inside > 1) overlapped = true;
    ++calls;
    const auto call = whenCalled;  // a copy: it may set another
    call();
    --inside;
  }
};

class NetworkAdaptationUbuntuThreads : public testing::Test {
 protected:
  NetworkAdaptationUbuntuThreads() { ScriptedPlatform::fresh(); }
};

TEST_F(NetworkAdaptationUbuntuThreads, SubscribingAndLeavingWhileNewsComeNeverStandsStill) {
  NetworkAdaptationUbuntu adaptation;
  const MainContextThread context;
  const ServiceThread service(step);
  std::vector<std::thread> clients;
  std::vector<SerialObserver> observers(3);
  for (SerialObserver& observer : observers) {
    clients.emplace_back([&] {
      for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(adaptation.subscribe(observer), StatusOk);
        ConnectionInfo info;
        adaptation.getDataConnection(info);
        network::ConnectionInfoContainer connections;
        adaptation.getConnections(connections);
        EXPECT_EQ(adaptation.unsubscribe(observer), StatusOk);
      }
    });
  }
  for (std::thread& client : clients) client.join();
  for (SerialObserver& observer : observers) EXPECT_FALSE(observer.overlapped);
}

// The signal's lock is held while the slot wants that of the observers.
TEST_F(NetworkAdaptationUbuntuThreads, ASlotOfTheApplicationsMayTellObserversWhileOthersComeAndGo) {
  NetworkAdaptationUbuntu adaptation;
  const ::core::ScopedConnection slot(
      ScriptedPlatform::instance().manager->characteristics().changed().connect(
          [&](auto) { NetworkAdaptationUbuntu::connectionStateUpdated(&adaptation); }));
  const MainContextThread context;
  const ServiceThread service(step);
  SerialObserver observer;
  for (int i = 0; i < 1000; ++i) {
    EXPECT_EQ(adaptation.subscribe(observer), StatusOk);
    EXPECT_EQ(adaptation.unsubscribe(observer), StatusOk);
  }
}

TEST_F(NetworkAdaptationUbuntuThreads, ASlotOfTheApplicationsMayTellObserversWhileTheFirstComes) {
  ScriptedPlatform& platform = ScriptedPlatform::instance();
  NetworkAdaptationUbuntu adaptation;
  std::promise<void> inSlot;
  std::promise<void> inSubscribe;
  const ::core::ScopedConnection slot(
      platform.manager->characteristics().changed().connect([&](auto) {
        inSlot.set_value();
        inSubscribe.get_future().wait();
        NetworkAdaptationUbuntu::connectionStateUpdated(&adaptation);
      }));
  platform.whenAsked = [&] {
    inSubscribe.set_value();
    inSlot.get_future().wait();
  };
  std::thread news([&] { platform.manager->set(70, 1); });
  SerialObserver observer;
  EXPECT_EQ(adaptation.subscribe(observer), StatusOk);
  news.join();
  adaptation.unsubscribe(observer);
}

TEST_F(NetworkAdaptationUbuntuThreads, AfterThePlatformWasLeftItsValuesAreGoneForGood) {
  NetworkAdaptationUbuntu adaptation;
  const MainContextThread context;
  const ServiceThread service(step);
  SerialObserver observer;
  for (int i = 0; i < 500; ++i) {
    adaptation.subscribe(observer);
    adaptation.unsubscribe(observer);
    ConnectionInfo info;
    adaptation.getDataConnection(info);
    EXPECT_FALSE(info.connected);
  }
}

TEST_F(NetworkAdaptationUbuntuThreads, OfThreadsThatReachThePlatformAtOnceOneLinkStays) {
  ScriptedPlatform& platform = ScriptedPlatform::instance();
  platform.manager->set(70, 1);
  std::atomic<int> waiting{0};
  std::promise<void> go;
  const std::shared_future<void> gone = go.get_future().share();
  platform.whenAsked = [&] {
    if (++waiting == 3) go.set_value();
    gone.wait();
  };
  NetworkAdaptationUbuntu adaptation;
  std::vector<SerialObserver> observers(3);
  std::vector<std::thread> clients;
  for (SerialObserver& observer : observers) {
    clients.emplace_back([&] { EXPECT_EQ(adaptation.subscribe(observer), StatusOk); });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(platform.manager.use_count(), 2);
  ConnectionInfo info;
  platform.manager->set(70, 2);
  adaptation.getDataConnection(info);
  EXPECT_STREQ(info.name, "cellular");
  for (SerialObserver& observer : observers) adaptation.unsubscribe(observer);
  EXPECT_EQ(platform.manager.use_count(), 1);
}

TEST_F(NetworkAdaptationUbuntuThreads, AnObserverMayLeaveInsideItsCallWhileNewsCome) {
  NetworkAdaptationUbuntu adaptation;
  const MainContextThread context;
  SerialObserver observer;
  // It is alone, so its leaving is leaving the platform, whose thread brings news meanwhile.
  observer.whenCalled = [&] { adaptation.unsubscribe(observer); };
  const ServiceThread service(step);
  for (int i = 0; i < 1000; ++i) adaptation.subscribe(observer);
  adaptation.unsubscribe(observer);
  EXPECT_GT(observer.calls, 0);
}

TEST_F(NetworkAdaptationUbuntuThreads, NoCallComesAfterLeaving) {
  NetworkAdaptationUbuntu adaptation;
  const MainContextThread context;
  const ServiceThread service(step);
  for (int i = 0; i < 500; ++i) {
    SerialObserver observer;  // gone with the round: the sanitizers see a late call
    adaptation.subscribe(observer);
    adaptation.unsubscribe(observer);
    EXPECT_EQ(observer.inside, 0);
  }
}

TEST_F(NetworkAdaptationUbuntuThreads, AnObjectThatGoesWhileItsUpdateRunsWaitsForIt) {
  const MainContextThread context;
  const ServiceThread service(step);
  for (int i = 0; i < 300; ++i) {
    SerialObserver observer;
    auto adaptation = std::make_unique<NetworkAdaptationUbuntu>();
    adaptation->subscribe(observer);
    adaptation->unsubscribe(observer);
    adaptation.reset();
  }
}

TEST_F(NetworkAdaptationUbuntuThreads, AnObserverThatTakesItsTimeHoldsUpNeitherServiceNorClients) {
  NetworkAdaptationUbuntu adaptation;
  ScriptedPlatform::instance().manager->set(70, 1);
  SerialObserver observer;
  adaptation.subscribe(observer);
  std::promise<void> entered;
  std::promise<void> leave;
  observer.whenCalled = [&] {
    observer.whenCalled = [] {};
    entered.set_value();
    leave.get_future().wait();
  };
  const MainContextThread context;
  ScriptedPlatform::instance().manager->set(70, 2);
  entered.get_future().wait();
  // The call is under way. Were the service or a client to wait for it, the test would not end.
  ScriptedPlatform::instance().manager->set(70, 6);
  ConnectionInfo info;
  adaptation.getDataConnection(info);
  EXPECT_TRUE(info.roaming);
  leave.set_value();
  adaptation.unsubscribe(observer);
}

}  // namespace
}  // namespace trelvo
