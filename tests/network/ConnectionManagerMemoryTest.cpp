#include <memory>
#include <new>

#include <gtest/gtest.h>

#include <trelvo/IConnectionInfoList.h>
#include <trelvo/INetworkAdaptation.h>
#include <trelvo/network/ConnectionManagerGeneric.h>
#include <trelvo/network/IConnectionManagerObserver.h>

#include "tests/support/AllocationFailure.h"

namespace trelvo::network {
namespace {

/// An adaptation that needs no memory of its own.
class FrugalAdaptation : public INetworkAdaptation {
 public:
  explicit FrugalAdaptation(Status dataConnectionAnswer) : m_answer(dataConnectionAnswer) {}

  Status getDataConnection(ConnectionInfo& info) override {
    info.type = 1;
    return m_answer;
  }
  Status getConnections(IConnectionInfoList& list) override {
    list.add(ConnectionInfo());
    return StatusOk;
  }
  Status getBytesTransferred(const ConnectionInfo&, unsigned long long&) override {
    return StatusNotSupported;
  }
  Status getProxy(const char*, ProxyInfo&) override { return StatusNotSupported; }
  Status openConnection(const ConnectionInfo&) override { return StatusOk; }
  Status closeConnection(const ConnectionInfo&) override { return StatusOk; }
  Status subscribe(IConnectionObserver&) override {
    ++subscriptions;
    return StatusOk;
  }
  Status unsubscribe(IConnectionObserver&) override {
    --subscriptions;
    return StatusOk;
  }

  int subscriptions = 0;

 private:
  Status m_answer;
};

class ConnectionManagerMemory : public testing::TestWithParam<Status> {};

TEST_P(ConnectionManagerMemory, CreateGivesNullAndLeavesTheAdaptationWhenItRunsOut) {
  const unsigned long long steps = test::everyAllocationFails([] {
    FrugalAdaptation adaptation(GetParam());
    {
      const std::unique_ptr<IConnectionManager> manager(IConnectionManager::create(&adaptation));
      const test::AllocationsSucceed checks;
      EXPECT_EQ(adaptation.subscriptions, manager == nullptr ? 0 : 1);
    }
    EXPECT_EQ(gConnectionManagerGenericStatic.m_value, nullptr);
  });
  EXPECT_GE(steps, 3U);
}

TEST_P(ConnectionManagerMemory, AskingAndStartingGiveTheirStatusWhenItRunsOut) {
  test::everyAllocationFails([] {
    FrugalAdaptation adaptation(GetParam());
    ConnectionManagerGeneric* generic = nullptr;
    {
      const test::AllocationsSucceed preparing;
      generic = new ConnectionManagerGeneric;
      generic->initialize(&adaptation);
    }
    {
      ConnectionInfoContainer connections;
      const Status asked = generic->getConnections(connections);
      const Status started = generic->startMonitorUsedConnection();
      const test::AllocationsSucceed checks;
      EXPECT_TRUE(asked == StatusOk || (asked == StatusOutOfMemory && connections.empty()));
      EXPECT_TRUE(started == StatusOk || started == StatusOutOfMemory);
      ConnectionInfoContainer used;
      generic->stopMonitorUsedConnection(used);
      EXPECT_EQ(used.empty(), started != StatusOk);
    }
    delete generic;
  });
}

class CountingObserver : public IConnectionManagerObserver {
 public:
  void handleConnectionListChanged() override { ++changes; }
  void handleNetworkingEnabledChanged(bool) override {}
  int changes = 0;
};

TEST(ConnectionManagerEventsMemory, AConnectionThatFindsNoRoomIsToldOfAndMakesTheUsedOnesUnknown) {
  bool unknown = false;
  test::everyAllocationFails([&unknown] {
    FrugalAdaptation adaptation(StatusOk);
    std::unique_ptr<ConnectionManagerGeneric> generic;
    CountingObserver observer;
    {
      const test::AllocationsSucceed preparing;
      generic = std::make_unique<ConnectionManagerGeneric>();
      generic->initialize(&adaptation);
      generic->addObserver(&observer);
      ASSERT_EQ(generic->startMonitorUsedConnection(), StatusOk);
    }
    ConnectionInfo cellular;
    cellular.type = 2;
    generic->handleConnectionEstablished(cellular);
    EXPECT_EQ(observer.changes, 1);
    const test::AllocationsSucceed checks;
    ConnectionInfoContainer used;
    generic->stopMonitorUsedConnection(used);
    ASSERT_FALSE(used.empty());
    unknown = used.size() == 1;
    EXPECT_EQ(used.back().type, unknown ? 0U : 2U);
  });
  EXPECT_FALSE(unknown) << "the run that gets through";
}

TEST(ConnectionManagerEventsMemory, AnObserverIsSetOrNot) {
  test::everyAllocationFails([] {
    FrugalAdaptation adaptation(StatusOk);
    CountingObserver observer;
    std::unique_ptr<IConnectionManager> manager;
    {
      const test::AllocationsSucceed preparing;
      manager.reset(IConnectionManager::create(&adaptation));
    }
    bool set = true;
    try {
      manager->setObserver(&observer);
    } catch (const std::bad_alloc&) {
      set = false;
    }
    const test::AllocationsSucceed checks;
    gConnectionManagerGenericStatic.m_value->handleConnectionDisconnected(ConnectionInfo());
    EXPECT_EQ(observer.changes, set ? 1 : 0);
  });
}

INSTANTIATE_TEST_SUITE_P(BothWays, ConnectionManagerMemory,
                         testing::Values(StatusOk, StatusNotSupported));

}  // namespace
}  // namespace trelvo::network
