#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <trelvo/network/HTTPRequest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/network/HTTPSupport.h"

namespace trelvo::test {
namespace {

using network::IHTTPRequest;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

static_assert(std::has_virtual_destructor_v<IHTTPRequest>);
static_assert(!std::is_copy_constructible_v<network::HTTPRequest>);
static_assert(sizeof(IHTTPRequest::CipherType) == 4);

class HTTPRequest : public HTTPTest {};

TEST_F(HTTPRequest, IsNotMadeWithoutAConnectionManager) {
  EXPECT_EQ(IHTTPRequest::create("127.0.0.1", nullptr), nullptr);
}

TEST_F(HTTPRequest, LeavesTheConnectionManagerToTheCaller) {
  struct Mortal : ScriptedManager {
    explicit Mortal(bool& flag) : dead(flag) {}
    ~Mortal() override { dead = true; }
    bool& dead;
  };
  bool dead = false;
  Mortal mortal(dead);
  std::unique_ptr<IHTTPRequest>(IHTTPRequest::create("127.0.0.1", &mortal)).reset();
  EXPECT_FALSE(dead);
}

TEST_F(HTTPRequest, PutsSchemeServerAndPathTogetherAsTheyAre) {
  connect("host:81");
  EXPECT_EQ(request->createHttpUri("/a/b?c"), "http://host:81/a/b?c");
  EXPECT_EQ(request->createHttpUri("b"), "http://host:81b");
  EXPECT_EQ(request->createHttpUri(""), "http://host:81");
}

TEST_F(HTTPRequest, AsksForAProxyOnce) {
  serveInTurn({found(""), found("")});
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
  EXPECT_EQ(request->isAvailable("/b"), StatusOk);
  EXPECT_THAT(manager.proxyUris, ElementsAre("http://" + server->address()));
  EXPECT_EQ(manager.asked.size, 140U);
  EXPECT_EQ(manager.asked.port, 8080U);
  EXPECT_STREQ(manager.asked.host, "");
}

TEST_F(HTTPRequest, GoesThroughTheProxy) {
  ScriptedServer relay(inTurn({found("")}, questions));
  std::strcpy(manager.proxy.host, "127.0.0.1");
  manager.proxy.port = relay.port();
  manager.proxyStatus = StatusOk;
  connect("host.invalid");
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
  EXPECT_THAT(questions.all(), ElementsAre("HEAD http://host.invalid/a"));
}

TEST_F(HTTPRequest, IgnoresAProxyThatComesWithAFailure) {
  std::strcpy(manager.proxy.host, "host.invalid");
  manager.proxyStatus = StatusFailed;
  serveInTurn({found("")});
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
}

TEST_F(HTTPRequest, ReadsAProxyNameWithoutAnEndOnlyToTheEndOfItsField) {
  std::memset(manager.proxy.host, 'a', sizeof manager.proxy.host);
  manager.proxyStatus = StatusOk;
  connect("host.invalid");
  EXPECT_EQ(request->isAvailable("/a"), StatusFailed) << "there is no such proxy";
}

TEST_F(HTTPRequest, KnowsTheCodeOfTheLastAnswer) {
  serveInTurn({answer("404 Not Found", "", "")});
  int code = -1;
  EXPECT_EQ(request->getStatusCode(code), StatusOk);
  EXPECT_EQ(code, 0) << "before the first answer";
  EXPECT_EQ(request->isAvailable("/a"), StatusNotFound);
  EXPECT_EQ(request->getStatusCode(code), StatusOk);
  EXPECT_EQ(code, 404);
}

TEST_F(HTTPRequest, TellsACancelFromAFailure) {
  connect("127.0.0.1");
  EXPECT_FALSE(request->isCancelled());
  EXPECT_EQ(request->lastErrorToStatus(), StatusFailed);
  EXPECT_EQ(request->disableKeepAlive(), StatusOk);
  request->cancel();
  EXPECT_TRUE(request->isCancelled());
  EXPECT_EQ(request->lastErrorToStatus(), StatusCancelled);
  EXPECT_EQ(request->disableKeepAlive(), StatusCancelled);
  int code = -1;
  EXPECT_EQ(request->getStatusCode(code), StatusCancelled);
  EXPECT_EQ(code, -1);
}

TEST_F(HTTPRequest, SaysWhetherTheAddressWasTaken) {
  connect("127.0.0.1");
  EXPECT_FALSE(request->commonContextSetup("/a"));
  EXPECT_TRUE(request->commonContextSetup(std::string(9000000, 'a'))) << "libcurl takes 8 MB";
}

// isAvailable() and getRemoteFileModificationTime()

TEST_F(HTTPRequest, FindsAFileWithHeadAlone) {
  serveInTurn({found("content")});
  EXPECT_EQ(request->isAvailable("/a?b=c"), StatusOk);
  EXPECT_THAT(questions.all(), ElementsAre("HEAD /a?b=c"));
}

TEST_F(HTTPRequest, Believes404WithoutAskingAgain) {
  serveInTurn({answer("404 Not Found", "", "")});
  EXPECT_EQ(request->isAvailable("/a"), StatusNotFound);
  EXPECT_THAT(questions.all(), ElementsAre("HEAD /a"));
}

TEST_F(HTTPRequest, AsksAServerThatRefusesHeadWithGet) {
  serveInTurn(
      {answer("405 Method Not Allowed", "Content-Length: 0\r\n", ""), found(pattern(300000))});
  EXPECT_EQ(request->isAvailable("/a"), StatusOk) << "and the body is thrown away";
  EXPECT_THAT(questions.all(), ElementsAre("HEAD /a", "GET /a"));
}

TEST_F(HTTPRequest, ThrowsTheBodyAwayWhateverTheDecryptionAndChecksum) {
  const unsigned char key[16] = {};
  serveInTurn({answer("405 Method Not Allowed", "", ""), found("not enciphered")});
  EXPECT_EQ(request->setDataDecryption(IHTTPRequest::CipherAes, key, 16, key, 16), StatusOk);
  EXPECT_EQ(request->setDataChecksum(1, 0, 100), StatusOk);
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
}

TEST_F(HTTPRequest, TakesAllAnswersToGetButOneForNotFound) {
  for (const char* const status : {"404 Not Found", "301 Moved", "500 Error", "204 No Content"}) {
    serveInTurn({answer("501 Not Implemented", "", ""),
                 answer(status, "Location: /b\r\nContent-Length: 0\r\n", "")});
    EXPECT_EQ(request->isAvailable("/a"), StatusNotFound) << status;
    EXPECT_EQ(server->connections(), 2U) << status << ": no redirect is followed";
  }
}

TEST_F(HTTPRequest, FailsWhereNobodyListens) {
  unsigned int port = 0;
  {
    const Descriptor gone(listenOnLoopback(1));
    port = portOf(gone.get());
  }
  connect("127.0.0.1:" + std::to_string(port));
  unsigned int time = 7;
  EXPECT_EQ(request->isAvailable("/a"), StatusFailed);
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusFailed);
  EXPECT_EQ(time, 7U);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPRequest, FailsWhereTheAnswerBreaksOff) {
  const std::vector<std::string> stages = {"",
                                           "HTT",
                                           "HTTP/1.1 200 OK",
                                           "HTTP/1.1 200 OK\r\n",
                                           "HTTP/1.1 200 OK\r\nContent-Length: 3",
                                           "no HTTP at all\r\n\r\n",
                                           std::string("\0\xff\x80\r\n\r\n", 7)};
  for (const std::string& stage : stages) {
    serveInTurn({stage, stage});
    EXPECT_EQ(request->isAvailable("/a"), StatusFailed) << stage;
  }
}

TEST_F(HTTPRequest, FailsWhereTheConnectionIsReset) {
  serve([](const Peer& peer) {
    peer.request();
    peer.resetOnClose();
  });
  EXPECT_EQ(request->isAvailable("/a"), StatusFailed);
}

TEST_F(HTTPRequest, FailsWhenHeadersNeverEnd) {
  serve([](const Peer& peer) {
    peer.request();
    peer.send("HTTP/1.1 200 OK\r\n");
    while (peer.send("X-Header: " + std::string(990, 'x') + "\r\n")) {
    }
  });
  EXPECT_EQ(request->isAvailable("/a"), StatusFailed);
}

TEST_F(HTTPRequest, FailsWhenOneHeaderNeverEnds) {
  serve([](const Peer& peer) {
    peer.request();
    peer.send("HTTP/1.1 200 OK\r\nX-Header: ");
    while (peer.send(std::string(1000, 'x'))) {
    }
  });
  EXPECT_EQ(request->isAvailable("/a"), StatusFailed);
}

TEST_F(HTTPRequest, AFoldedLineAtTheHeadOfAnAnswerMeansTheSameEachTime) {
  const std::string folded = "HTTP/1.1 200 OK\r\n folded: " + std::string(200, 'x') +
                             "\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";
  serveInTurn({folded});
  const Status first = request->isAvailable("/a");
  serveInTurn({found(""), folded, folded, found("")});
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
  EXPECT_EQ(request->isAvailable("/b"), first);
  EXPECT_EQ(download(), first);
  EXPECT_EQ(request->isAvailable("/d"), StatusOk);
}

TEST_F(HTTPRequest, KeepsTheConnectionOpenForTheNextRequest) {
  serve([](const Peer& peer) {
    for (std::string head = peer.request(); !head.empty(); head = peer.request()) {
      const bool wantsBody = head.rfind("GET ", 0) == 0;
      peer.send("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\n");
      peer.send(wantsBody ? "body" : "");
    }
  });
  unsigned int time = 0;
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(server->connections(), 1U);
}

TEST_F(HTTPRequest, RefusesPathsThatWouldForgeARequest) {
  serveInTurn({found("")});
  EXPECT_EQ(request->isAvailable("/a\r\nX-Forged: 1"), StatusFailed);
  EXPECT_EQ(request->isAvailable("/a b"), StatusFailed);
  EXPECT_EQ(request->isAvailable(std::string(9000000, 'a')), StatusFailed);
  EXPECT_EQ(server->connections(), 0U);
}

constexpr char kChanged[] = "Last-Modified: Sun, 06 Nov 1994 08:49:37 GMT\r\n";

TEST_F(HTTPRequest, GivesTheTimeOfAFileInSecondsSince1970) {
  serveInTurn({answer("200 OK", kChanged, "")});
  unsigned int time = 7;
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusOk);
  EXPECT_EQ(time, 784111777U);
  EXPECT_THAT(questions.all(), ElementsAre("HEAD /a"));
}

TEST_F(HTTPRequest, GivesAllOnesWhenTheServerNamesNoTime) {
  serveInTurn({answer("200 OK", "", ""), answer("200 OK", "Last-Modified: yesterday\r\n", "")});
  for (int i = 0; i < 2; ++i) {
    unsigned int time = 7;
    EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusOk);
    EXPECT_EQ(time, 0xFFFFFFFFU);
  }
}

TEST_F(HTTPRequest, GivesAllOnesWhenTheTimeHadToBeAskedWithGet) {
  serveInTurn({answer("405 Method Not Allowed", kChanged, ""), answer("200 OK", kChanged, "body")});
  unsigned int time = 7;
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusOk);
  EXPECT_EQ(time, 0xFFFFFFFFU);
  EXPECT_THAT(questions.all(), ElementsAre("HEAD /a", "GET /a"));
}

TEST_F(HTTPRequest, GivesTimeZeroForAMissingFile) {
  serveInTurn({answer("404 Not Found", kChanged, ""), answer("500 Error", kChanged, ""),
               answer("403 Forbidden", kChanged, "")});
  for (const char* const path : {"/a", "/b"}) {
    unsigned int time = 7;
    EXPECT_EQ(request->getRemoteFileModificationTime(path, time), StatusNotFound);
    EXPECT_EQ(time, 0U);
  }
  EXPECT_THAT(questions.all(), ElementsAre("HEAD /a", "HEAD /b", "GET /b"));
}

TEST_F(HTTPRequest, AsksForBodiesAgainAfterAHead) {
  serveInTurn({found("abc"), answer("200 OK", kChanged, ""), found("abc")});
  unsigned int time = 0;
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(contentOfFile(local), "abc");
  EXPECT_THAT(questions.all(), ElementsAre("HEAD /a", "HEAD /a", "GET /file"));
}

// Which connections a request may use

class HTTPConnections : public HTTPTest {
 protected:
  /// What isAvailable() says to a file that is there.
  Status available(int mask) {
    serveInTurn({found("")});
    request->setAllowedConnectionType(mask);
    manager.calls.clear();
    return request->isAvailable("/a");
  }
};

TEST_F(HTTPConnections, MaskZeroAsksNobody) {
  manager.present.clear();
  EXPECT_EQ(available(0), StatusOk);
  EXPECT_EQ(download(), StatusFailed) << "the server has nothing more to say";
  EXPECT_THAT(manager.calls, IsEmpty());
}

TEST_F(HTTPConnections, AnAllowedOneIsMonitored) {
  EXPECT_EQ(available(1), StatusOk);
  EXPECT_THAT(manager.calls, ElementsAre("get", "start", "stop"));
}

TEST_F(HTTPConnections, AManagerThatRunsOutOfMemoryFailsTheRequestThatWasAnswered) {
  manager.onStop = [] { throw std::bad_alloc(); };
  EXPECT_EQ(available(1), StatusOutOfMemory);
  manager.onStop = nullptr;
  EXPECT_THAT(manager.calls, ElementsAre("get", "start", "stop"));
}

TEST_F(HTTPConnections, CellularIsNotWlan) {
  manager.present = {connection(2)};
  EXPECT_EQ(available(1), StatusNoConnection);
  EXPECT_THAT(manager.calls, ElementsAre("get"));
  EXPECT_EQ(download(), StatusNoConnection);
  EXPECT_THAT(manager.calls, ElementsAre("get", "get", "stop"));
  EXPECT_EQ(bytes, kUntouched);
  EXPECT_EQ(server->connections(), 0U) << "nothing went over the network";
}

TEST_F(HTTPConnections, CellularThatRoamsIsRefused) {
  manager.present = {connection(2, true)};
  EXPECT_EQ(available(2), StatusNoConnection);
  EXPECT_EQ(available(3), StatusNoConnection);
  EXPECT_EQ(server->connections(), 0U);
  manager.present = {connection(2, false)};
  EXPECT_EQ(available(2), StatusOk);
}

TEST_F(HTTPConnections, RoamingMattersToPureCellularOnly) {
  manager.present = {connection(3, true)};
  EXPECT_EQ(available(2), StatusOk);
  manager.present = {connection(1, true)};
  EXPECT_EQ(available(1), StatusOk);
}

TEST_F(HTTPConnections, OneAllowedAmongOthersWillDo) {
  manager.present = {connection(0), connection(2, true), connection(1)};
  EXPECT_EQ(available(3), StatusOk);
  manager.present.clear();
  EXPECT_EQ(available(3), StatusNoConnection);
}

TEST_F(HTTPConnections, MaskMayHaveAllBits) { EXPECT_EQ(available(-1), StatusOk); }

TEST_F(HTTPConnections, WhatTheManagerSaysIsPassedOn) {
  manager.getStatus = StatusWrongState;
  EXPECT_EQ(available(1), StatusWrongState);
  EXPECT_THAT(manager.calls, ElementsAre("get"));
  manager.getStatus = StatusOk;
  manager.startStatus = StatusNotSupported;
  EXPECT_EQ(available(1), StatusNotSupported);
  EXPECT_THAT(manager.calls, ElementsAre("get", "start"));
  EXPECT_EQ(server->connections(), 0U);
}

TEST_F(HTTPConnections, AllUsedOnesMustBeAllowed) {
  manager.used = {connection(1), connection(1)};
  EXPECT_EQ(available(1), StatusOk);
  manager.used = {connection(1), connection(2)};
  EXPECT_EQ(available(1), StatusNoConnection);
  EXPECT_EQ(available(3), StatusOk);
  manager.used = {connection(2, true)};
  EXPECT_EQ(available(3), StatusNoConnection);
  manager.used = {ConnectionInfo()};
  EXPECT_EQ(available(3), StatusNoConnection) << "the manager could not tell";
}

TEST_F(HTTPConnections, AForbiddenOneOutweighsWhateverElseHappened) {
  manager.used = {connection(2)};
  serveInTurn({answer("404 Not Found", "", ""), "", "", found("body")});
  request->setAllowedConnectionType(1);
  unsigned int time = 7;
  EXPECT_EQ(request->isAvailable("/a"), StatusNoConnection);
  EXPECT_EQ(request->getRemoteFileModificationTime("/a", time), StatusNoConnection);
  EXPECT_EQ(time, 7U);
  EXPECT_EQ(download(), StatusNoConnection);
  EXPECT_EQ(bytes, kUntouched);
  EXPECT_EQ(download(), StatusNoConnection);
  EXPECT_EQ(bytes, 4U);
  EXPECT_EQ(contentOfFile(local), "body");
}

TEST_F(HTTPConnections, EachRequestToTheServerIsMonitored) {
  serveInTurn({answer("405 Method Not Allowed", "", ""), found("")});
  request->setAllowedConnectionType(1);
  EXPECT_EQ(request->isAvailable("/a"), StatusOk);
  EXPECT_THAT(manager.calls, ElementsAre("get", "start", "stop", "get", "start", "stop"));
}

TEST_F(HTTPConnections, ACancelledRequestTellsTheManagerNothing) {
  manager.onStart = [this] { request->cancel(); };
  EXPECT_EQ(available(1), StatusCancelled);
  EXPECT_THAT(manager.calls, ElementsAre("get", "start"));
  EXPECT_EQ(server->connections(), 0U);
}

}  // namespace
}  // namespace trelvo::test
