#include <limits>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <trelvo/network/IConnectionManager.h>

#include "ScriptedAdaptation.h"

namespace trelvo::network {
namespace {

using test::cellular;
using test::connection;
using test::idsOf;
using test::ScriptedAdaptation;
using test::wlan;
using testing::ElementsAre;
using testing::IsEmpty;

/// A manager over an adaptation that knows the active connection: WLAN at first.
class UsedConnectionsByReports : public testing::Test {
 protected:
  UsedConnectionsByReports() {
    adaptation.dataConnection = wlan();
    manager.reset(IConnectionManager::create(&adaptation));
  }

  std::vector<unsigned long long> stop() {
    ConnectionInfoContainer used;
    manager->stopMonitorUsedConnection(used);
    return idsOf(used);
  }

  ScriptedAdaptation adaptation;
  std::unique_ptr<IConnectionManager> manager;
};

/// A manager over one that counts bytes for each connection.
class UsedConnectionsByCounters : public UsedConnectionsByReports {
 protected:
  UsedConnectionsByCounters() {
    manager.reset();
    adaptation.dataConnectionAnswer = StatusNotSupported;
    adaptation.dataConnection.reset();
    adaptation.connections = {wlan(), cellular()};
    adaptation.bytes = {{1, 100}, {2, 200}};
    manager.reset(IConnectionManager::create(&adaptation));
  }
};

TEST_F(UsedConnectionsByReports, StopWithoutAStartLeavesTheListUntouched) {
  ConnectionInfoContainer used;
  used.add(cellular());
  manager->stopMonitorUsedConnection(used);
  EXPECT_THAT(idsOf(used), ElementsAre(2));
}

TEST_F(UsedConnectionsByReports, TheConnectionOfTheStartIsUsed) {
  EXPECT_EQ(manager->startMonitorUsedConnection(), StatusOk);
  EXPECT_THAT(stop(), ElementsAre(1));
  EXPECT_EQ(adaptation.count("getBytesTransferred"), 0U);
}

TEST_F(UsedConnectionsByReports, ASecondStopAddsNothing) {
  manager->startMonitorUsedConnection();
  stop();
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(UsedConnectionsByReports, EachConnectionThatBecameActiveIsUsedInOrder) {
  manager->startMonitorUsedConnection();
  adaptation.disconnect(wlan());
  adaptation.establish(cellular());
  adaptation.establish(wlan());
  EXPECT_THAT(stop(), ElementsAre(1, 2, 1));
}

TEST_F(UsedConnectionsByReports, AChangeOfTheActiveConnectionCountsAgain) {
  adaptation.establish(cellular(false));
  manager->startMonitorUsedConnection();
  adaptation.change(cellular(true));
  ConnectionInfoContainer used;
  manager->stopMonitorUsedConnection(used);
  ASSERT_THAT(idsOf(used), ElementsAre(2, 2));
  EXPECT_FALSE(used.front().roaming);
  EXPECT_TRUE(used.back().roaming);
}

TEST_F(UsedConnectionsByReports, WhatWasReportedWithoutMonitoringDoesNotCount) {
  adaptation.establish(cellular());
  adaptation.establish(wlan());
  manager->startMonitorUsedConnection();
  EXPECT_THAT(stop(), ElementsAre(1));
  adaptation.establish(cellular());
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(UsedConnectionsByReports, ASecondStartForgetsWhatTheFirstHasCollected) {
  manager->startMonitorUsedConnection();
  adaptation.establish(cellular());
  const std::unique_ptr<IConnectionManager> other(IConnectionManager::create(&adaptation));
  other->startMonitorUsedConnection();
  EXPECT_THAT(stop(), ElementsAre(2));
}

TEST_F(UsedConnectionsByReports, AFailedStartBeginsNothing) {
  adaptation.disconnect(wlan());
  adaptation.dataConnectionAnswer = adaptation.connectionsAnswer = StatusFileError;
  adaptation.dataConnection.reset();
  EXPECT_EQ(manager->startMonitorUsedConnection(), StatusFileError);
  adaptation.establish(cellular());
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(UsedConnectionsByReports, AFailedStartLeavesAnEarlierOneRunning) {
  manager->startMonitorUsedConnection();
  adaptation.disconnect(wlan());
  adaptation.dataConnectionAnswer = adaptation.connectionsAnswer = StatusFileError;
  adaptation.dataConnection.reset();
  EXPECT_EQ(manager->startMonitorUsedConnection(), StatusFileError);
  adaptation.establish(cellular());
  EXPECT_THAT(stop(), ElementsAre(2));
}

TEST_F(UsedConnectionsByReports, AConnectionThatComesWhileTheStartAsksIsNotMissed) {
  adaptation.disconnect(wlan());
  adaptation.dataConnection.reset();
  adaptation.whenAskedForDataConnection = [&] { adaptation.establish(cellular()); };
  EXPECT_EQ(manager->startMonitorUsedConnection(), StatusOk);
  EXPECT_THAT(stop(), testing::Contains(2));
}

TEST_F(UsedConnectionsByReports, OfConsecutiveRecordsOfTheStartWithOneIdTheFirstStays) {
  adaptation.disconnect(wlan());
  adaptation.dataConnection.reset();
  adaptation.connections = {connection(2, 5, "a"), connection(2, 5, "b"), connection(1, 6, "c"),
                            connection(2, 5, "d")};
  EXPECT_EQ(manager->startMonitorUsedConnection(), StatusOk);
  ConnectionInfoContainer used;
  manager->stopMonitorUsedConnection(used);
  ASSERT_THAT(idsOf(used), ElementsAre(5, 6, 5));
  EXPECT_STREQ(used.front().name, "a");
  EXPECT_STREQ(used.back().name, "d");
}

TEST_F(UsedConnectionsByCounters, UnchangedCountersAreNotUsed) {
  EXPECT_EQ(manager->startMonitorUsedConnection(), StatusOk);
  EXPECT_THAT(stop(), IsEmpty());
}

TEST_F(UsedConnectionsByCounters, AChangedCounterIsUsed) {
  manager->startMonitorUsedConnection();
  adaptation.bytes[2] = 201;
  EXPECT_THAT(stop(), ElementsAre(2));
}

TEST_F(UsedConnectionsByCounters, ASmallerCounterIsUsedToo) {
  manager->startMonitorUsedConnection();
  adaptation.bytes[1] = 0;
  EXPECT_THAT(stop(), ElementsAre(1));
}

TEST_F(UsedConnectionsByCounters, AConnectionWithoutANumberIsUsed) {
  adaptation.bytes.erase(1);
  manager->startMonitorUsedConnection();
  EXPECT_THAT(stop(), ElementsAre(1));
}

TEST_F(UsedConnectionsByCounters, ACounterAtItsEndThatWrapsToTheSameIsNotUsed) {
  adaptation.bytes[1] = std::numeric_limits<unsigned long long>::max();
  manager->startMonitorUsedConnection();
  EXPECT_THAT(stop(), IsEmpty());
  manager->startMonitorUsedConnection();
  adaptation.bytes.erase(1);
  EXPECT_THAT(stop(), ElementsAre(1));
}

TEST_F(UsedConnectionsByCounters, AConnectionFirstSeenAtTheStopIsUsedAndStandsLast) {
  manager->startMonitorUsedConnection();
  adaptation.connections = {connection(1, 9, "new"), wlan()};
  adaptation.bytes[2] = 201;
  EXPECT_THAT(stop(), ElementsAre(2, 9));
}

TEST_F(UsedConnectionsByCounters, OnlyTheFirstPresentConnectionOfAnIdIsTakenForTheKnownOne) {
  manager->startMonitorUsedConnection();
  adaptation.connections = {wlan(), wlan(), cellular()};
  EXPECT_THAT(stop(), ElementsAre(1));
}

TEST_F(UsedConnectionsByCounters, FailureAtTheStopGivesOneResetRecord) {
  manager->startMonitorUsedConnection();
  adaptation.connectionsAnswer = StatusFailed;
  ConnectionInfoContainer used;
  manager->stopMonitorUsedConnection(used);
  ASSERT_EQ(used.size(), 1U);
  EXPECT_EQ(used.front().size, 160U);
  EXPECT_EQ(used.front().type, 0U);
  EXPECT_TRUE(used.front().roaming);
  EXPECT_STREQ(used.front().name, "");
}

TEST_F(UsedConnectionsByCounters, ReportsChangeNothing) {
  manager->startMonitorUsedConnection();
  adaptation.establish(connection(2, 7, "other"));
  EXPECT_THAT(stop(), IsEmpty());
  ConnectionInfoContainer connections;
  manager->getConnections(connections);
  EXPECT_THAT(idsOf(connections), ElementsAre(1, 2));
}

}  // namespace
}  // namespace trelvo::network
