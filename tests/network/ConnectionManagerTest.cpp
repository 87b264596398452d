#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <trelvo/network/ConnectionManagerGeneric.h>
#include <trelvo/network/ConnectionManagerProxy.h>

#include "ScriptedAdaptation.h"
#include "ScriptedPlatform.h"

namespace trelvo::network {
namespace {

using test::cellular;
using test::CountingObserver;
using test::idsOf;
using test::ScriptedAdaptation;
using test::wlan;
using testing::ElementsAre;
using testing::IsEmpty;

using Manager = std::unique_ptr<IConnectionManager>;

Manager create(ScriptedAdaptation& adaptation) {
  return Manager(IConnectionManager::create(&adaptation));
}

ConnectionInfoContainer connectionsOf(IConnectionManager& manager) {
  ConnectionInfoContainer connections;
  EXPECT_EQ(manager.getConnections(connections), StatusOk);
  return connections;
}

TEST(IConnectionManager, DefaultBodiesKnowNoFlag) {
  struct Bare : IConnectionManager {
    Status getConnections(ConnectionInfoContainer&) override { return StatusOk; }
    Status startMonitorUsedConnection() override { return StatusOk; }
    void stopMonitorUsedConnection(ConnectionInfoContainer&) override {}
    void setObserver(IConnectionManagerObserver*) override {}
    Status openConnection(const ConnectionInfo&) override { return StatusOk; }
    Status closeConnection(const ConnectionInfo&) override { return StatusOk; }
    Status getProxy(const std::string&, ProxyInfo&) override { return StatusOk; }
  } bare;
  EXPECT_EQ(bare.setNetworkingEnabled(false), StatusNotSupported);
  EXPECT_TRUE(bare.networkingEnabled());
}

TEST(IConnectionManager, CreateSubscribesAndPrimesTheCache) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const Manager manager = create(adaptation);
  ASSERT_NE(manager, nullptr);
  EXPECT_THAT(adaptation.calls(), ElementsAre("subscribe", "getDataConnection"));
  EXPECT_NE(dynamic_cast<ConnectionManagerProxy*>(manager.get()), nullptr);
}

TEST(IConnectionManager, ManagersShareOneViewAndAfterTheLastANewOneComes) {
  ScriptedAdaptation adaptation;
  Manager first = create(adaptation);
  Manager second = create(adaptation);
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_EQ(adaptation.count("subscribe"), 1U);
  EXPECT_EQ(gConnectionManagerGenericStatic.m_refCount, 2);
  first.reset();
  EXPECT_EQ(adaptation.count("unsubscribe"), 0U);
  second.reset();
  EXPECT_EQ(adaptation.count("unsubscribe"), 1U);
  EXPECT_EQ(gConnectionManagerGenericStatic.m_value, nullptr);

  const Manager third = create(adaptation);
  EXPECT_NE(third, nullptr);
  EXPECT_EQ(adaptation.count("subscribe"), 2U);
}

TEST(IConnectionManager, CreateIgnoresTheAdaptationOnceThereIsAView) {
  ScriptedAdaptation used;
  ScriptedAdaptation ignored;
  const Manager first = create(used);
  const Manager second = create(ignored);
  EXPECT_NE(second, nullptr);
  EXPECT_THAT(ignored.calls(), IsEmpty());
}

TEST(IConnectionManager, RefusedSubscriptionGivesNullAndLeavesTheAdaptation) {
  ScriptedAdaptation adaptation;
  adaptation.subscribeAnswer = StatusFailed;
  EXPECT_EQ(create(adaptation), nullptr);
  EXPECT_THAT(adaptation.calls(), ElementsAre("subscribe", "unsubscribe"));
  EXPECT_EQ(gConnectionManagerGenericStatic.m_value, nullptr);
  EXPECT_EQ(gConnectionManagerGenericStatic.m_refCount, 0);
}

TEST(IConnectionManager, FailedFirstAnswerGivesNullAndLeavesTheAdaptation) {
  ScriptedAdaptation adaptation;
  adaptation.connectionsAnswer = StatusFailed;
  EXPECT_EQ(create(adaptation), nullptr);
  EXPECT_THAT(adaptation.calls(),
              ElementsAre("subscribe", "getDataConnection", "getConnections", "unsubscribe"));
  EXPECT_EQ(adaptation.observers(), 0U);
}

TEST(IConnectionManager, AfterAFailureTheNextCreateSucceeds) {
  ScriptedAdaptation failing;
  failing.subscribeAnswer = StatusFailed;
  EXPECT_EQ(create(failing), nullptr);
  ScriptedAdaptation working;
  EXPECT_NE(create(working), nullptr);
}

TEST(IConnectionManager, OpenMakesThePlatformsAdaptation) {
  auto& platform = test::ScriptedPlatform::fresh();
  platform.manager->set(70, 1);
  Manager manager(IConnectionManager::open());
  ASSERT_NE(manager, nullptr);
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(1));
  manager.reset();
  EXPECT_EQ(platform.asked, 1);
  EXPECT_EQ(platform.manager.use_count(), 1);
}

TEST(IConnectionManager, OpenGivesNullWithoutAPlatform) {
  test::ScriptedPlatform::fresh().whenAsked = [] { throw std::runtime_error("no bus"); };
  EXPECT_EQ(Manager(IConnectionManager::open()), nullptr);
  EXPECT_EQ(gConnectionManagerGenericStatic.m_value, nullptr);
}

TEST(ConnectionManagerGeneric, FailedInitializationIsRetriedWhileAManagerLives) {
  ScriptedAdaptation failing;
  failing.subscribeAnswer = StatusFailed;
  ScriptedAdaptation working;
  ConnectionManagerGeneric generic;
  EXPECT_FALSE(generic.isInitialized());
  EXPECT_FALSE(generic.initialize(&failing));
  EXPECT_FALSE(generic.isInitialized());
  EXPECT_THAT(failing.calls(), ElementsAre("subscribe", "unsubscribe"));
  EXPECT_TRUE(generic.initialize(&working));
  EXPECT_TRUE(generic.isInitialized());
  EXPECT_TRUE(generic.initialize(&failing));  // does nothing any more
  EXPECT_EQ(failing.count("subscribe"), 1U);
}

TEST(ConnectionManagerGeneric, WhatAFailedAdaptationReportedIsForgotten) {
  ScriptedAdaptation failing;
  failing.dataConnectionAnswer = failing.connectionsAnswer = StatusFailed;
  failing.whenAskedForDataConnection = [&] { failing.dataConnection = wlan(); };
  ScriptedAdaptation working;
  ConnectionManagerGeneric generic;
  EXPECT_FALSE(generic.initialize(&failing));
  working.dataConnection = cellular();
  EXPECT_TRUE(generic.initialize(&working));
  EXPECT_THAT(idsOf(connectionsOf(generic)), ElementsAre(2));
}

TEST(ConnectionManagerGeneric, RefusesEverythingBeforeItIsInitialized) {
  ConnectionManagerGeneric generic;
  ConnectionInfoContainer connections;
  ProxyInfo proxy;
  EXPECT_EQ(generic.getConnections(connections), StatusWrongState);
  EXPECT_EQ(generic.startMonitorUsedConnection(), StatusWrongState);
  EXPECT_EQ(generic.openConnection(wlan()), StatusWrongState);
  EXPECT_EQ(generic.closeConnection(wlan()), StatusWrongState);
  EXPECT_EQ(generic.getProxy("http://a", proxy), StatusWrongState);
  EXPECT_THAT(connections, IsEmpty());
}

TEST(ConnectionManagerGeneric, HasNoExtensionAndNoObserverOfItsOwn) {
  ConnectionManagerGeneric generic;
  EXPECT_EQ(generic.extension(0), nullptr);
  EXPECT_EQ(generic.extension(1), nullptr);
  CountingObserver observer;
  generic.setObserver(&observer);
  generic.handleConnectionEstablished(wlan());
  EXPECT_EQ(observer.listChanges, 0);
}

TEST(ConnectionManager, CachedConnectionAnswersWithoutThePlatform) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const Manager manager = create(adaptation);
  adaptation.forgetCalls();
  ConnectionInfoContainer connections;
  connections.add(cellular());
  EXPECT_EQ(manager->getConnections(connections), StatusOk);
  EXPECT_THAT(idsOf(connections), ElementsAre(2, 1));  // appended
  EXPECT_THAT(adaptation.calls(), IsEmpty());
}

TEST(ConnectionManager, WithoutAnActiveConnectionThePlatformsListAnswers) {
  ScriptedAdaptation adaptation;
  adaptation.connections = {wlan(), cellular()};
  const Manager manager = create(adaptation);
  adaptation.forgetCalls();
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(1, 2));
  EXPECT_THAT(adaptation.calls(), ElementsAre("getDataConnection", "getConnections"));
}

TEST(ConnectionManager, NoDataConnectionIsAskedForOnceAndNeverAgain) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnectionAnswer = StatusNotSupported;
  adaptation.connections = {cellular()};
  const Manager manager = create(adaptation);
  EXPECT_THAT(adaptation.calls(), ElementsAre("subscribe", "getDataConnection", "getConnections"));
  adaptation.forgetCalls();
  adaptation.dataConnectionAnswer = StatusOk;
  adaptation.dataConnection = wlan();
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(2));
  EXPECT_THAT(adaptation.calls(), ElementsAre("getConnections"));
}

TEST(ConnectionManager, FailedDataConnectionFallsToTheListButIsAskedAgain) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnectionAnswer = StatusFailed;
  const Manager manager = create(adaptation);
  adaptation.dataConnectionAnswer = StatusOk;
  adaptation.dataConnection = wlan();
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(1));
}

TEST(ConnectionManager, ThePlatformsFailureComesBack) {
  ScriptedAdaptation adaptation;
  const Manager manager = create(adaptation);
  adaptation.connectionsAnswer = StatusFileError;
  ConnectionInfoContainer connections;
  EXPECT_EQ(manager->getConnections(connections), StatusFileError);
}

TEST(ConnectionManager, EstablishedConnectionBecomesTheActiveOne) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const Manager manager = create(adaptation);
  adaptation.establish(cellular(true));
  const ConnectionInfoContainer connections = connectionsOf(*manager);
  ASSERT_THAT(idsOf(connections), ElementsAre(2));
  EXPECT_TRUE(connections.front().roaming);
  EXPECT_STREQ(connections.front().name, "cellular");
}

TEST(ConnectionManager, ChangeOfTheActiveConnectionTakesItsPlace) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = cellular();
  const Manager manager = create(adaptation);
  adaptation.change(cellular(true));
  EXPECT_TRUE(connectionsOf(*manager).front().roaming);
}

TEST(ConnectionManager, ChangeOfAnotherConnectionLeavesTheActiveOne) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const Manager manager = create(adaptation);
  adaptation.change(cellular(true));
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(1));
}

TEST(ConnectionManager, EndOfTheActiveConnectionIsForgottenAndThePlatformAskedAgain) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const Manager manager = create(adaptation);
  adaptation.forgetCalls();
  adaptation.dataConnection = cellular();
  adaptation.disconnect(wlan());
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(2));
  EXPECT_THAT(adaptation.calls(), ElementsAre("getDataConnection"));
}

TEST(ConnectionManager, EndOfAnotherConnectionLeavesTheActiveOne) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const Manager manager = create(adaptation);
  adaptation.disconnect(cellular());
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(1));
}

TEST(ConnectionManager, AnswerOlderThanAReportIsNotKept) {
  ScriptedAdaptation adaptation;
  const Manager manager = create(adaptation);
  // The platform answers WLAN, but its end is reported before the answer is there.
  adaptation.dataConnection = wlan();
  adaptation.whenAskedForDataConnection = [&] { adaptation.disconnect(wlan()); };
  EXPECT_THAT(connectionsOf(*manager), IsEmpty());
  adaptation.whenAskedForDataConnection = [&] { adaptation.establish(cellular()); };
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(2));
  adaptation.whenAskedForDataConnection = [] {};
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(2));
}

TEST(ConnectionManager, EveryReportTellsTheObserver) {
  ScriptedAdaptation adaptation;
  CountingObserver observer;
  const Manager manager = create(adaptation);
  manager->setObserver(&observer);
  EXPECT_EQ(observer.listChanges, 0);
  adaptation.establish(wlan());
  EXPECT_EQ(observer.listChanges, 1);
  adaptation.change(cellular());
  EXPECT_EQ(observer.listChanges, 2);
  adaptation.disconnect(cellular());
  EXPECT_EQ(observer.listChanges, 3);
}

TEST(ConnectionManager, ANewObserverTakesThePlaceOfTheOld) {
  ScriptedAdaptation adaptation;
  CountingObserver first;
  CountingObserver second;
  const Manager manager = create(adaptation);
  manager->setObserver(&first);
  manager->setObserver(&second);
  adaptation.establish(wlan());
  manager->setObserver(nullptr);
  adaptation.disconnect(wlan());
  EXPECT_EQ(first.listChanges, 0);
  EXPECT_EQ(second.listChanges, 1);
}

TEST(ConnectionManager, ADeletedManagerTakesItsObserverAlong) {
  ScriptedAdaptation adaptation;
  CountingObserver observer;
  const Manager staying = create(adaptation);
  Manager leaving = create(adaptation);
  leaving->setObserver(&observer);
  leaving.reset();
  adaptation.establish(wlan());
  EXPECT_EQ(observer.listChanges, 0);
}

TEST(ConnectionManager, ObserversOfAllManagersHearInOrder) {
  ScriptedAdaptation adaptation;
  CountingObserver first;
  CountingObserver second;
  std::vector<int> order;
  first.whenListChanged = [&] { order.push_back(1); };
  second.whenListChanged = [&] { order.push_back(2); };
  const Manager one = create(adaptation);
  const Manager two = create(adaptation);
  two->setObserver(&second);
  one->setObserver(&first);
  adaptation.establish(wlan());
  EXPECT_THAT(order, ElementsAre(2, 1));
}

TEST(ConnectionManagerGeneric, AnObserverAddedTwiceIsCalledTwiceAndRemovedAtOnce) {
  CountingObserver observer;
  ConnectionManagerGeneric generic;
  generic.addObserver(&observer);
  generic.addObserver(&observer);
  generic.handleConnectionEstablished(wlan());
  EXPECT_EQ(observer.listChanges, 2);
  generic.removeObserver(&observer);
  generic.handleConnectionEstablished(wlan());
  EXPECT_EQ(observer.listChanges, 2);
}

TEST(ConnectionManagerGeneric, NullObserversAreIgnored) {
  ConnectionManagerGeneric generic;
  generic.addObserver(nullptr);
  generic.removeObserver(nullptr);
  generic.handleConnectionEstablished(wlan());
}

TEST(ConnectionManagerGeneric, AnObserverThatLeavesInItsCallMakesTheWalkSkipTheNext) {
  ConnectionManagerGeneric generic;
  CountingObserver leaving;
  CountingObserver skipped;
  CountingObserver last;
  leaving.whenListChanged = [&] { generic.removeObserver(&leaving); };
  generic.addObserver(&leaving);
  generic.addObserver(&skipped);
  generic.addObserver(&last);
  generic.handleConnectionEstablished(wlan());
  EXPECT_EQ(leaving.listChanges, 1);
  EXPECT_EQ(skipped.listChanges, 0);
  EXPECT_EQ(last.listChanges, 1);
  generic.handleConnectionEstablished(wlan());
  EXPECT_EQ(leaving.listChanges, 1);
  EXPECT_EQ(skipped.listChanges, 1);
}

TEST(ConnectionManagerGeneric, ObserversAddedInACallAreCalledInTheSameWalk) {
  ConnectionManagerGeneric generic;
  CountingObserver first;
  std::vector<CountingObserver> others(100);
  first.whenListChanged = [&] {
    for (CountingObserver& other : others) generic.addObserver(&other);
    first.whenListChanged = [] {};
  };
  generic.addObserver(&first);
  generic.handleConnectionEstablished(wlan());
  for (const CountingObserver& other : others) EXPECT_EQ(other.listChanges, 1);
}

TEST(ConnectionManager, AnObserverMayAskItsManagerInsideACall) {
  ScriptedAdaptation adaptation;
  CountingObserver observer;
  const Manager manager = create(adaptation);
  std::vector<unsigned long long> seen;
  observer.whenListChanged = [&] {
    seen = idsOf(connectionsOf(*manager));
    manager->setNetworkingEnabled(false);
  };
  manager->setObserver(&observer);
  adaptation.establish(cellular());
  EXPECT_THAT(seen, ElementsAre(2));
  EXPECT_THAT(observer.flags, ElementsAre(false));
}

TEST(ConnectionManager, FlagIsSharedAndOnlyItsChangeIsTold) {
  ScriptedAdaptation adaptation;
  CountingObserver observer;
  const Manager one = create(adaptation);
  const Manager two = create(adaptation);
  two->setObserver(&observer);
  EXPECT_TRUE(one->networkingEnabled());
  EXPECT_EQ(one->setNetworkingEnabled(true), StatusOk);
  EXPECT_THAT(observer.flags, IsEmpty());
  EXPECT_EQ(one->setNetworkingEnabled(false), StatusOk);
  EXPECT_FALSE(two->networkingEnabled());
  EXPECT_EQ(two->setNetworkingEnabled(false), StatusOk);
  EXPECT_EQ(two->setNetworkingEnabled(true), StatusOk);
  EXPECT_THAT(observer.flags, ElementsAre(false, true));
}

TEST(ConnectionManager, FlagRefusesNothing) {
  ScriptedAdaptation adaptation;
  adaptation.dataConnection = wlan();
  const Manager manager = create(adaptation);
  manager->setNetworkingEnabled(false);
  EXPECT_THAT(idsOf(connectionsOf(*manager)), ElementsAre(1));
}

TEST(ConnectionManager, OpensClosesAndFindsProxiesByTheAdaptation) {
  ScriptedAdaptation adaptation;
  const Manager manager = create(adaptation);
  adaptation.forgetCalls();
  ProxyInfo proxy;
  EXPECT_EQ(manager->openConnection(wlan()), StatusNoConnection);
  EXPECT_EQ(manager->closeConnection(cellular()), StatusWrongState);
  EXPECT_EQ(manager->getProxy("http://host/path", proxy), StatusOk);
  EXPECT_STREQ(proxy.host, "proxy.example");
  EXPECT_THAT(adaptation.calls(), ElementsAre("openConnection wifi", "closeConnection cellular",
                                              "getProxy http://host/path"));
}

}  // namespace
}  // namespace trelvo::network
