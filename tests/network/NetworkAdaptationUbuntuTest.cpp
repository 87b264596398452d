#include <trelvo/NetworkAdaptationUbuntu.h>

#include <memory>
#include <ostream>
#include <stdexcept>
#include <thread>

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <trelvo/NetworkAdaptation.h>
#include <trelvo/network/ConnectionInfoContainer.h>

#include "RecordingObserver.h"
#include "ScriptedPlatform.h"

namespace trelvo {
namespace {

using network::ConnectionInfoContainer;
using test::RecordingObserver;
using test::ScriptedPlatform;
using testing::ElementsAre;
using testing::IsEmpty;

/// Runs what is queued in the default main context, here.
void runQueued() {
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
  }
}

class NetworkAdaptationUbuntuTest : public testing::Test {
 protected:
  void set(int state, unsigned int characteristics) {
    platform.manager->set(state, characteristics);
  }
  /// Sets, runs what that queues, and gives what the observer hears.
  std::vector<std::string> reportsOf(int state, unsigned int characteristics) {
    set(state, characteristics);
    runQueued();
    return observer.take();
  }
  ConnectionInfo dataConnection() {
    ConnectionInfo info;
    EXPECT_EQ(adaptation->getDataConnection(info), StatusOk);
    return info;
  }
  /// Subscribes with these values, and forgets what the observer then hears.
  void subscribeAt(int state, unsigned int characteristics) {
    set(state, characteristics);
    ASSERT_EQ(adaptation->subscribe(observer), StatusOk);
    observer.take();
  }

  ScriptedPlatform& platform = ScriptedPlatform::fresh();
  std::unique_ptr<NetworkAdaptationUbuntu> adaptation = std::make_unique<NetworkAdaptationUbuntu>();
  RecordingObserver observer;
};

TEST_F(NetworkAdaptationUbuntuTest, IsWhatNetworkAdaptationMakes) {
  const std::unique_ptr<INetworkAdaptation> made(NetworkAdaptation::create());
  EXPECT_NE(dynamic_cast<NetworkAdaptationUbuntu*>(made.get()), nullptr);
}

TEST_F(NetworkAdaptationUbuntuTest, OffersWhatThePlatformDoes) {
  ConnectionInfo info;
  ProxyInfo proxy;
  unsigned long long bytes = 7;
  EXPECT_EQ(adaptation->getBytesTransferred(info, bytes), StatusNotSupported);
  EXPECT_EQ(bytes, 7U);
  EXPECT_EQ(adaptation->getProxy("http://host", proxy), StatusNotSupported);
  EXPECT_STREQ(proxy.host, "");
  EXPECT_EQ(adaptation->openConnection(info), StatusOk);
  EXPECT_EQ(adaptation->closeConnection(info), StatusOk);
  EXPECT_TRUE(adaptation->isNetworkingEnabled());
}

TEST_F(NetworkAdaptationUbuntuTest, DoesNotReachThePlatformBeforeTheFirstObserver) {
  set(70, 1);
  EXPECT_STREQ(dataConnection().name, "disconnected");
  EXPECT_EQ(platform.asked, 0);
}

struct Mapping {
  int state;
  unsigned int characteristics;
  unsigned int type;  // bearer and id too
  bool connected;
  bool roaming;
  const char* name;
};

void PrintTo(const Mapping& row, std::ostream* out) {
  *out << "State" << row.state << "Bits" << row.characteristics;
}

class NetworkAdaptationUbuntuMapping : public NetworkAdaptationUbuntuTest,
                                       public testing::WithParamInterface<Mapping> {};

TEST_P(NetworkAdaptationUbuntuMapping, FillsInTheRecord) {
  const Mapping& row = GetParam();
  subscribeAt(row.state, row.characteristics);
  ConnectionInfo info;
  info.size = 5;
  info.type = info.bearer = 77;
  info.id = 77;
  info.connected = !row.connected;
  info.roaming = !row.roaming;
  EXPECT_EQ(adaptation->getDataConnection(info), StatusOk);
  EXPECT_EQ(info.size, 5U);  // not its business
  EXPECT_EQ(info.type, row.type);
  EXPECT_EQ(info.bearer, row.type);
  EXPECT_EQ(info.id, row.type);
  EXPECT_EQ(info.connected, row.connected);
  EXPECT_EQ(info.roaming, row.roaming);
  EXPECT_STREQ(info.name, row.name);
}

INSTANTIATE_TEST_SUITE_P(Rows, NetworkAdaptationUbuntuMapping,
                         testing::Values(Mapping{70, 1, 1, true, false, "wifi"},
                                         Mapping{70, 3, 1, true, false, "wifi"},
                                         Mapping{70, 5, 1, true, false, "wifi"},
                                         Mapping{70, 7, 1, true, false, "wifi"},
                                         Mapping{70, 2, 2, true, false, "cellular"},
                                         Mapping{70, 6, 2, true, true, "cellular"},
                                         Mapping{70, 0, 0, false, true, "disconnected"},
                                         Mapping{70, 4, 0, false, true, "disconnected"},
                                         Mapping{70, 8, 0, false, true, "disconnected"},
                                         Mapping{0, 1, 0, false, true, "disconnected"},
                                         Mapping{60, 1, 0, false, true, "disconnected"},
                                         Mapping{60, 6, 0, false, true, "disconnected"},
                                         Mapping{71, 2, 0, false, true, "disconnected"},
                                         Mapping{-70, 2, 0, false, true, "disconnected"}));

std::vector<std::string> namesOf(const ConnectionInfoContainer& connections) {
  std::vector<std::string> names;
  for (const ConnectionInfo& info : connections) names.emplace_back(info.name);
  return names;
}

TEST_F(NetworkAdaptationUbuntuTest, ListHoldsTheActiveConnection) {
  subscribeAt(70, 2);
  ConnectionInfoContainer connections;
  EXPECT_EQ(adaptation->getConnections(connections), StatusOk);
  EXPECT_THAT(namesOf(connections), ElementsAre("cellular"));
  EXPECT_TRUE(connections.front().connected);
}

TEST_F(NetworkAdaptationUbuntuTest, ListHoldsOneRecordOfTypeNoneWhenDisconnected) {
  subscribeAt(20, 0);
  ConnectionInfoContainer connections;
  EXPECT_EQ(adaptation->getConnections(connections), StatusOk);
  EXPECT_THAT(namesOf(connections), ElementsAre("disconnected"));
  EXPECT_EQ(connections.front().type, 0U);
}

TEST_F(NetworkAdaptationUbuntuTest, ListHoldsAnIdleCellularConnectionBehindWlan) {
  subscribeAt(70, 5);
  ConnectionInfoContainer connections;
  EXPECT_EQ(adaptation->getConnections(connections), StatusOk);
  ASSERT_THAT(namesOf(connections), ElementsAre("wifi", "cellular"));
  const ConnectionInfo& idle = connections.back();
  EXPECT_EQ(idle.size, 160U);
  EXPECT_EQ(idle.type, 2U);
  EXPECT_FALSE(idle.connected);
  EXPECT_TRUE(idle.roaming);
  EXPECT_EQ(idle.bearer, 2U);
  EXPECT_EQ(idle.id, 2U);
}

TEST_F(NetworkAdaptationUbuntuTest, ListHoldsNoIdleCellularConnectionWhenItsBitIsSet) {
  subscribeAt(70, 7);
  ConnectionInfoContainer connections;
  adaptation->getConnections(connections);
  EXPECT_THAT(namesOf(connections), ElementsAre("wifi"));
}

TEST_F(NetworkAdaptationUbuntuTest, ListUsesTheVirtualAnswerAndItsFailure) {
  struct Failing : NetworkAdaptationUbuntu {
    Status getDataConnection(ConnectionInfo&) override { return StatusFailed; }
  } failing;
  set(70, 4);
  failing.subscribe(observer);
  ConnectionInfoContainer connections;
  EXPECT_EQ(failing.getConnections(connections), StatusFailed);
  EXPECT_THAT(namesOf(connections), ElementsAre("cellular"));
  failing.unsubscribe(observer);
}

TEST_F(NetworkAdaptationUbuntuTest, TheFirstSubscriptionTellsOfTheConnectionOnTheSameThread) {
  set(70, 1);
  std::thread::id caller;
  observer.whenCalled = [&] { caller = std::this_thread::get_id(); };
  EXPECT_EQ(adaptation->subscribe(observer), StatusOk);
  EXPECT_THAT(observer.take(), ElementsAre("established wifi"));
  EXPECT_EQ(caller, std::this_thread::get_id());
  EXPECT_EQ(platform.asked, 1);
}

TEST_F(NetworkAdaptationUbuntuTest, TheFirstSubscriptionWithoutAConnectionTellsTheResetRecord) {
  adaptation->subscribe(observer);
  EXPECT_THAT(observer.take(), ElementsAre("disconnected  roaming"));
  EXPECT_EQ(observer.last.size, 160U);
  EXPECT_EQ(observer.last.type, 0U);
  EXPECT_EQ(observer.last.id, 0U);
}

TEST_F(NetworkAdaptationUbuntuTest, ASecondSubscriptionWithNothingChangedTellsNothing) {
  subscribeAt(70, 1);
  RecordingObserver second;
  EXPECT_EQ(adaptation->subscribe(second), StatusOk);
  EXPECT_THAT(second.take(), IsEmpty());
  EXPECT_THAT(observer.take(), IsEmpty());
  EXPECT_EQ(platform.asked, 1);
  adaptation->unsubscribe(second);
}

TEST_F(NetworkAdaptationUbuntuTest, ASecondSubscriptionBringsQueuedNewsToAll) {
  subscribeAt(70, 1);
  set(70, 2);
  RecordingObserver second;
  adaptation->subscribe(second);
  EXPECT_THAT(observer.take(), ElementsAre("disconnected wifi", "established cellular"));
  EXPECT_THAT(second.take(), ElementsAre("disconnected wifi", "established cellular"));
  runQueued();
  EXPECT_THAT(observer.take(), IsEmpty());
  adaptation->unsubscribe(second);
}

TEST_F(NetworkAdaptationUbuntuTest, SubscribingTwiceCountsOnce) {
  subscribeAt(70, 1);
  adaptation->subscribe(observer);
  EXPECT_THAT(reportsOf(70, 2), ElementsAre("disconnected wifi", "established cellular"));
  adaptation->unsubscribe(observer);
  EXPECT_EQ(platform.manager.use_count(), 1);
}

TEST_F(NetworkAdaptationUbuntuTest, FromWlanToCellularTellsTheEndThenTheBeginning) {
  subscribeAt(70, 1);
  EXPECT_THAT(reportsOf(70, 2), ElementsAre("disconnected wifi", "established cellular"));
}

TEST_F(NetworkAdaptationUbuntuTest, RoamingOnAnActiveCellularConnectionIsAChange) {
  subscribeAt(70, 2);
  EXPECT_THAT(reportsOf(70, 6), ElementsAre("changed cellular roaming"));
  EXPECT_THAT(reportsOf(70, 2), ElementsAre("changed cellular"));
}

TEST_F(NetworkAdaptationUbuntuTest, RoamingBesideAnActiveWlanTellsNothing) {
  subscribeAt(70, 1);
  EXPECT_THAT(reportsOf(70, 5), IsEmpty());
}

TEST_F(NetworkAdaptationUbuntuTest, TheEndTellsTheLastConnection) {
  subscribeAt(70, 1);
  EXPECT_THAT(reportsOf(20, 0), ElementsAre("disconnected wifi"));
}

TEST_F(NetworkAdaptationUbuntuTest, AConnectionAfterNoneIsEstablished) {
  subscribeAt(20, 0);
  EXPECT_THAT(reportsOf(70, 6), ElementsAre("established cellular roaming"));
}

TEST_F(NetworkAdaptationUbuntuTest, AChangeOfTheStateAloneWaitsForTheCharacteristics) {
  subscribeAt(70, 1);
  EXPECT_THAT(reportsOf(60, 1), IsEmpty());
  EXPECT_FALSE(dataConnection().connected);  // who asks knows at once
  EXPECT_THAT(reportsOf(60, 5), ElementsAre("disconnected wifi"));
}

TEST_F(NetworkAdaptationUbuntuTest, NewsWaitInTheMainContextAndOnlyTheLastIsTold) {
  subscribeAt(70, 1);
  set(70, 2);
  set(70, 6);
  set(70, 2);
  EXPECT_THAT(observer.take(), IsEmpty());
  EXPECT_NE(g_main_context_pending(nullptr), FALSE);
  runQueued();
  EXPECT_THAT(observer.take(), ElementsAre("disconnected wifi", "established cellular"));
}

TEST_F(NetworkAdaptationUbuntuTest, NewsThatComeWhileOthersAreToldAreToldNext) {
  subscribeAt(70, 1);
  observer.whenCalled = [&] {
    observer.whenCalled = [] {};
    set(20, 0);
  };
  EXPECT_THAT(reportsOf(70, 6), ElementsAre("disconnected wifi", "established cellular roaming",
                                            "disconnected cellular roaming"));
}

TEST_F(NetworkAdaptationUbuntuTest, ARecordThatGrowsOldBeforeItIsToldIsNotTold) {
  struct Slow : NetworkAdaptationUbuntu {
    std::function<void()> meanwhile = [] {};
    Status getDataConnection(ConnectionInfo& info) override {
      const Status status = NetworkAdaptationUbuntu::getDataConnection(info);
      std::exchange(meanwhile, [] {})();
      return status;
    }
  } slow;
  set(70, 1);
  slow.meanwhile = [&] { set(70, 2); };
  slow.subscribe(observer);
  EXPECT_THAT(observer.take(), ElementsAre("established cellular"));
  slow.unsubscribe(observer);
}

TEST_F(NetworkAdaptationUbuntuTest, TellsInTheOrderOfTheAddresses) {
  set(70, 1);
  std::vector<RecordingObserver> observers(5);
  std::vector<const RecordingObserver*> order;
  for (auto each = observers.rbegin(); each != observers.rend(); ++each) {
    adaptation->subscribe(*each);
    each->whenCalled = [&order, each] { order.push_back(&*each); };
  }
  set(20, 0);
  runQueued();
  ASSERT_EQ(order.size(), 5U);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(order[i], &observers[i]);
}

TEST_F(NetworkAdaptationUbuntuTest, AnObserverMayLeaveInsideItsCall) {
  set(70, 1);
  std::vector<RecordingObserver> observers(3);
  for (RecordingObserver& each : observers) {
    adaptation->subscribe(each);
    each.take();
    each.whenCalled = [&] { adaptation->unsubscribe(each); };
  }
  set(20, 0);
  runQueued();
  for (RecordingObserver& each : observers) {
    EXPECT_THAT(each.take(), ElementsAre("disconnected wifi"));
  }
  EXPECT_EQ(platform.manager.use_count(), 1);
}

TEST_F(NetworkAdaptationUbuntuTest, AnObserverMayAskInsideItsCall) {
  std::string name;
  observer.whenCalled = [&] { name = dataConnection().name; };
  set(70, 1);
  adaptation->subscribe(observer);
  EXPECT_EQ(name, "wifi");
}

TEST_F(NetworkAdaptationUbuntuTest, WhatAnObserverThrowsStopsAtTheMainContext) {
  subscribeAt(70, 1);
  observer.whenCalled = [] { throw std::runtime_error("observer"); };
  EXPECT_THAT(reportsOf(20, 0), ElementsAre("disconnected wifi"));
  observer.whenCalled = [] {};
  // The lock was given back, and the news counts as not told yet.
  std::thread([&] { adaptation->unsubscribe(observer); }).join();
}

TEST_F(NetworkAdaptationUbuntuTest, LeavesThePlatformWithTheLastObserver) {
  RecordingObserver second;
  subscribeAt(70, 1);
  adaptation->subscribe(second);
  adaptation->unsubscribe(observer);
  EXPECT_EQ(platform.manager.use_count(), 2);
  EXPECT_EQ(adaptation->unsubscribe(second), StatusOk);
  EXPECT_EQ(platform.manager.use_count(), 1);
  EXPECT_FALSE(dataConnection().connected);
  set(70, 2);
  EXPECT_EQ(g_main_context_pending(nullptr), FALSE);
  EXPECT_FALSE(dataConnection().connected);
}

TEST_F(NetworkAdaptationUbuntuTest, AStrangerThatLeavesChangesNothing) {
  RecordingObserver stranger;
  subscribeAt(70, 1);
  EXPECT_EQ(adaptation->unsubscribe(stranger), StatusOk);
  EXPECT_THAT(reportsOf(70, 2), ElementsAre("disconnected wifi", "established cellular"));
}

TEST_F(NetworkAdaptationUbuntuTest, ALaterSubscriberHearsOnlyOfADifference) {
  subscribeAt(70, 1);
  adaptation->unsubscribe(observer);
  RecordingObserver later;
  adaptation->subscribe(later);
  EXPECT_THAT(later.take(), IsEmpty());
  adaptation->unsubscribe(later);
  set(70, 2);
  adaptation->subscribe(later);
  EXPECT_THAT(later.take(), ElementsAre("disconnected wifi", "established cellular"));
  EXPECT_EQ(platform.asked, 3);
}

TEST_F(NetworkAdaptationUbuntuTest, APlatformThatThrowsRefusesTheSubscription) {
  platform.whenAsked = [] { throw std::runtime_error("no bus"); };
  EXPECT_EQ(adaptation->subscribe(observer), StatusFailed);
  platform.whenAsked = [] { throw std::bad_alloc(); };
  EXPECT_EQ(adaptation->subscribe(observer), StatusFailed);
  EXPECT_THAT(observer.take(), IsEmpty());
  // Another thread gets the lock, and a platform that has come up is reached.
  platform.whenAsked = [] {};
  set(70, 1);
  std::thread([&] { EXPECT_EQ(adaptation->subscribe(observer), StatusOk); }).join();
  EXPECT_THAT(observer.take(), ElementsAre("established wifi"));
}

/// Answers once, and then no more.
class Mute : public test::ScriptedManager {
 public:
  const ::core::Property<test::State>& state() const override {
    if (m_asked++ != 0) throw std::runtime_error("no answer");
    return ScriptedManager::state();
  }

 private:
  mutable int m_asked = 0;
};

TEST_F(NetworkAdaptationUbuntuTest, APlatformThatDoesNotAnswerRefusesTheSubscriptionAndIsLeft) {
  const auto mute = std::make_shared<Mute>();
  platform.manager = mute;
  EXPECT_EQ(adaptation->subscribe(observer), StatusFailed);
  EXPECT_THAT(observer.take(), IsEmpty());
  EXPECT_EQ(mute.use_count(), 2) << "the platform's and this one";
  platform.manager = std::make_shared<test::ScriptedManager>();
  set(70, 1);
  EXPECT_EQ(adaptation->subscribe(observer), StatusOk);
  EXPECT_THAT(observer.take(), ElementsAre("established wifi"));
}

TEST_F(NetworkAdaptationUbuntuTest, APlatformWithoutAManagerRefusesTheSubscription) {
  platform.manager.reset();
  EXPECT_EQ(adaptation->subscribe(observer), StatusFailed);
}

TEST_F(NetworkAdaptationUbuntuTest, AnUpdateStillQueuedGoesWithTheObject) {
  subscribeAt(70, 1);
  set(70, 2);
  EXPECT_NE(g_main_context_pending(nullptr), FALSE);
  adaptation.reset();
  EXPECT_EQ(g_main_context_pending(nullptr), FALSE);
  set(70, 1);
  EXPECT_EQ(g_main_context_pending(nullptr), FALSE);
  EXPECT_EQ(platform.manager.use_count(), 1);
}

TEST_F(NetworkAdaptationUbuntuTest, StateUpdatedCanBeCalledAndEndsItsSource) {
  subscribeAt(70, 1);
  set(20, 0);
  EXPECT_EQ(NetworkAdaptationUbuntu::connectionStateUpdated(adaptation.get()), 0);
  EXPECT_THAT(observer.take(), ElementsAre("disconnected wifi"));
}

}  // namespace
}  // namespace trelvo
