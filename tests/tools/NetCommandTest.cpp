// `trelvo net`, and `trelvo fetch --allow`, beside a mock NetworkManager and without any bus.

#include <gmock/gmock.h>

#include <trelvo/network/IConnectionManager.h>

#include "tests/network/MockServices.h"
#include "tests/tools/FetchFixture.h"
#include "tests/tools/ToolProcess.h"

namespace trelvo::tool {
namespace {

using test::MockModemManager;
using test::MockNetworkManager;
using testing::MatchesRegex;

constexpr const char* kTime = "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}Z ";

std::string timed(const std::string& event) { return kTime + event; }

TEST(NetWithoutBus, SaysWhatIsMissing) {
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent", 1);
  const std::vector<std::vector<std::string>> lines = {
      {"net"}, {"net", "--json"}, {"net", "--watch"}, {"net", "--watch", "--json"}};
  for (const std::vector<std::string>& line : lines) {
    const Outcome outcome = runTool(line);
    EXPECT_EQ(outcome.status, kExitFailed) << ::testing::PrintToString(line);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err,
              "trelvo: connectivity service: cannot be asked; is there a system bus, and may you "
              "use it?\n");
  }
}

TEST(NetWithoutBus, WrongUsageGives2) {
  EXPECT_EQ(runTool({"net", "more"}).status, kExitUsage);
  EXPECT_EQ(runTool({"net", "--no-such-option"}).status, kExitUsage);
}

TEST(NetWithoutBus, HelpHasAnExample) {
  const Outcome outcome = runTool({"net", "--help"});
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_NE(outcome.out.find("  trelvo net --watch"), std::string::npos);
}

class NetCommand : public FetchTest {
 protected:
  test::PrivateBus bus;  // behind the fixture's own address of a bus
};

TEST_F(NetCommand, ShowsThatThereIsNoConnectionWithoutNetworkManager) {
  const Outcome outcome = runTool({"net"});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  EXPECT_EQ(outcome.out, "disconnected: no connection\n");
  EXPECT_EQ(runTool({"net", "--json"}).out,
            "[{\"name\":\"disconnected\",\"type\":\"none\",\"bearer\":\"none\",\"connected\":false,"
            "\"roaming\":true,\"id\":0}]\n");
}

TEST_F(NetCommand, ShowsTheConnection) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  service.setState(70);
  service.goWlan();
  EXPECT_EQ(runTool({"net"}).out, "wifi: wlan, connected\n");
  EXPECT_EQ(runTool({"net", "--json"}).out,
            "[{\"name\":\"wifi\",\"type\":\"wlan\",\"bearer\":\"wlan\",\"connected\":true,"
            "\"roaming\":false,\"id\":1}]\n");
  service.goCellular();
  EXPECT_EQ(runTool({"net"}).out, "cellular: cellular, connected\n");
  modems.set3gppRegistration(5);
  EXPECT_EQ(runTool({"net"}).out, "cellular: cellular, connected, roaming\n");
}

TEST_F(NetCommand, WatchShowsEachEventUntilAnInterrupt) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  service.setState(70);
  ToolProcess program({"net", "--watch"});
  EXPECT_THAT(program.line(), MatchesRegex(timed("present disconnected: no connection")));
  service.goWlan();
  EXPECT_THAT(program.line(), MatchesRegex(timed("established wifi: wlan, connected")));
  service.goCellular();
  EXPECT_THAT(program.line(), MatchesRegex(timed("disconnected wifi: wlan, connected")));
  EXPECT_THAT(program.line(), MatchesRegex(timed("established cellular: cellular, connected")));
  modems.set3gppRegistration(5);
  EXPECT_THAT(program.line(),
              MatchesRegex(timed("changed cellular: cellular, connected, roaming")));
  program.signal(SIGINT);
  const Outcome outcome = program.finish();
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "");
}

TEST_F(NetCommand, WatchGivesOneJsonObjectALine) {
  MockNetworkManager service(bus);
  service.setState(70);
  ToolProcess program({"net", "--watch", "--json"});
  const std::string time = R"(\{"time":\{"value":[0-9]+,"utc":"[-0-9]+T[:0-9]+Z"\},"event":")";
  EXPECT_THAT(program.line(),
              MatchesRegex(time + R"(present","connection":\{"name":"disconnected",.*\}\})"));
  service.goWlan();
  EXPECT_THAT(
      program.line(),
      MatchesRegex(time + R"(established","connection":\{"name":"wifi","type":"wlan",)"
                          R"("bearer":"wlan","connected":true,"roaming":false,"id":1\}\})"));
  program.signal(SIGTERM);
  EXPECT_EQ(program.finish().status, kExitGood);
}

TEST_F(NetCommand, WatchEndsWhenNobodyReadsAnyMore) {
  MockNetworkManager service(bus);
  service.setState(70);
  ToolProcess program({"net", "--watch"});
  program.line();
  program.closeOutput();
  service.goWlan();
  const Outcome outcome = program.finish();
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.err, "");
}

TEST_F(NetCommand, FetchKeepsToAnAllowedConnection) {
  MockNetworkManager service(bus);
  service.setState(70);
  service.goWlan();
  for (const std::string kinds : {"wlan", "wlan,cellular", "cellular,wlan"}) {
    serveInTurn({test::found("content")});
    const Outcome outcome = fetch({"--allow", kinds});
    EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
    EXPECT_EQ(content(), "content");
  }
}

TEST_F(NetCommand, FetchRefusesAConnectionThatIsNotAllowed) {
  MockNetworkManager service(bus);
  service.setState(70);
  service.goWlan();
  serveInTurn({});
  expectFailure(fetch({"--allow", "cellular"}),
                "--allow permits no connection that is there (wifi); see trelvo net");
  EXPECT_EQ(questions.all(), std::vector<std::string>());
}

TEST_F(NetCommand, FetchRefusesACellularConnectionThatRoams) {
  MockNetworkManager service(bus);
  MockModemManager modems(bus);
  modems.set3gppRegistration(5);
  service.setState(70);
  service.goCellular();
  serveInTurn({});
  expectFailure(fetch({"--allow", "cellular"}),
                "--allow permits no connection that is there (cellular); see trelvo net");
}

TEST_F(NetCommand, FetchWithoutAllowAsksForNoConnection) {
  serveInTurn({test::found("content")});
  EXPECT_EQ(fetch().status, kExitGood);
  EXPECT_EQ(runTool({"fetch", url(), "-o", output, "--allow", "wlan"}).err,
            "trelvo: " + url() +
                ": --allow permits no connection that is there (disconnected); see trelvo net\n");
}

TEST_F(NetCommand, FetchSeesThatTheConnectionChangesMeanwhile) {
  MockNetworkManager service(bus);
  service.setState(70);
  service.goWlan();
  const std::unique_ptr<network::IConnectionManager> manager(network::IConnectionManager::open());
  ASSERT_NE(manager, nullptr);
  serve([&](const test::Peer& peer) {
    peer.request();
    peer.send("HTTP/1.1 200 OK\r\nContent-Length: 7\r\nConnection: close\r\n\r\ncon");
    service.goCellular();
    // The library has heard of it when its memory of the active connection says so.
    for (unsigned int type = 0; type != ConnectionInfo::TypeCellular;) {
      network::ConnectionInfoContainer connections;
      manager->getConnections(connections);
      type = connections.empty() ? 0 : connections.front().type;
      std::this_thread::yield();
    }
    peer.send("tent");
  });
  expectFailure(fetch({"--allow", "wlan"}),
                "another connection was used than --allow permits; fetch it again");
}

}  // namespace
}  // namespace trelvo::tool
