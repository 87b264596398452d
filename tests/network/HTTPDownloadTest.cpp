#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <thread>
#include <vector>

#include "tests/network/HTTPSupport.h"

namespace trelvo::test {
namespace {

using network::IHTTPRequest;
using ::testing::ElementsAre;

class HTTPDownload : public DownloadTest {};

TEST_F(HTTPDownload, WritesTheBodyAndCountsItsBytes) {
  const std::string body = pattern(1000000);
  serveInTurn({found(body)});
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(bytes, 1000000U);
  EXPECT_TRUE(content() == body);
  EXPECT_THAT(questions.all(), ElementsAre("GET /file"));
}

TEST_F(HTTPDownload, OfAnEmptyBodyLeavesAnEmptyFile) {
  serveInTurn({found(""), unmeasured("")});
  for (int i = 0; i < 2; ++i) {
    writeFile(local, "old");
    EXPECT_EQ(download(), StatusOk);
    EXPECT_EQ(bytes, 0U);
    EXPECT_EQ(content(), "");
  }
}

TEST_F(HTTPDownload, TakesABodyOfUnknownLength) {
  serveInTurn({unmeasured("to the end")});
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(bytes, 10U);
  EXPECT_EQ(content(), "to the end");
}

TEST_F(HTTPDownload, JoinsAChunkedBody) {
  serveInTurn({answer("200 OK", "Transfer-Encoding: chunked\r\n",
                      "3\r\nabc\r\nA;x=y\r\n0123456789\r\n0\r\nX-Trailer: 1\r\n\r\n")});
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(bytes, 13U);
  EXPECT_EQ(content(), "abc0123456789");
}

TEST_F(HTTPDownload, FailsWhereAChunkedBodyBreaksOff) {
  serveInTurn({answer("200 OK", "Transfer-Encoding: chunked\r\n", "3\r\nabc\r\nA\r\n0123"),
               answer("200 OK", "Transfer-Encoding: chunked\r\n", "xyz\r\nabc")});
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(content(), "abc0123");
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPDownload, EveryBlockIsInTheFileBeforeTheNextOneCame) {
  serve([this](const Peer& peer) {
    peer.request();
    peer.send("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\n");
    for (const char* const soFar : {"ab", "abcd", "abcdef"}) {
      peer.send(std::string(soFar).substr(std::string(soFar).size() - 2));
      while (content() != soFar) {
        std::this_thread::yield();
      }
    }
  });
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(content(), "abcdef");
}

TEST_F(HTTPDownload, Tells404FromOtherFailures) {
  serveInTurn({answer("404 Not Found", "", "sorry"), answer("500 Error", "", "oops"),
               answer("301 Moved", "Location: /b\r\n", ""), answer("204 No Content", "", ""),
               answer("206 Partial Content", "", "part")});
  EXPECT_EQ(download(), StatusNotFound);
  EXPECT_EQ(content(), "sorry") << "a body is a body";
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPDownload, EmptiesTheFileBeforeAnythingElse) {
  serveInTurn({answer("404 Not Found", "", "")});
  writeFile(local, "old");
  EXPECT_EQ(download(), StatusNotFound);
  EXPECT_EQ(content(), "");

  writeFile(local, "old");
  request->cancel();
  EXPECT_EQ(download(), StatusCancelled);
  EXPECT_EQ(content(), "");
}

TEST_F(HTTPDownload, FailsWithoutTrafficWhenTheFileCannotBeMade) {
  serveInTurn({});
  EXPECT_EQ(request->download("/file", directory.path("missing/local"), bytes), StatusFailed);
  EXPECT_EQ(request->download("/file", directory.path(""), bytes), StatusFailed);
  EXPECT_EQ(server->connections(), 0U);
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPDownload, DoesNotSeeThatTheDiskIsFull) {
  struct stat full {};
  ASSERT_EQ(stat("/dev/full", &full), 0);
  serveInTurn({found(pattern(100000))});
  EXPECT_EQ(request->download("/file", "/dev/full", bytes), StatusOk);
  EXPECT_EQ(bytes, 100000U);
}

TEST_F(HTTPDownload, ThrowsBlocksAwayOnceItIsOver) {
  serveInTurn({found("body")});
  EXPECT_EQ(download(), StatusOk);
  char late[] = "late";
  EXPECT_EQ(network::HTTPRequest::receiveBody(late, 1, 4, request.get()), 4U);
  EXPECT_EQ(content(), "body");
}

TEST_F(HTTPDownload, LetsGoOfTheFileWhereverItFails) {
  serveInTurn({});
  const auto fails = [this](Status status) {
    writeFile(local, "old");
    EXPECT_EQ(download(), status);
    char late[] = "late";
    EXPECT_EQ(network::HTTPRequest::receiveBody(late, 1, 4, request.get()), 4U);
    EXPECT_EQ(content(), "");
  };
  fails(StatusFailed);  // the server says nothing
  request->setDataDecryption(IHTTPRequest::CipherAes, nullptr, 0, nullptr, 0);
  fails(StatusInvalidParameter);  // no key
  request->setDataDecryption(IHTTPRequest::CipherNone, nullptr, 0, nullptr, 0);
  request->setAllowedConnectionType(2);
  fails(StatusNoConnection);
}

TEST_F(HTTPDownload, AnEmptyBlockEndsTheTransfer) {
  serveInTurn({});
  char none = 0;
  EXPECT_EQ(network::HTTPRequest::receiveBody(&none, 1, 0, request.get()), 0U);
  EXPECT_EQ(network::HTTPRequest::receiveBody(&none, 0, 1, request.get()), 0U);
}

// The length

TEST_F(HTTPDownload, AShortBodyIsAMismatchWithTheShortCount) {
  serveInTurn({answer("200 OK", "Content-Length: 100\r\n", "forty")});
  EXPECT_EQ(download(), StatusChecksumMismatch);
  EXPECT_EQ(bytes, 5U);
  EXPECT_EQ(content(), "forty");
}

TEST_F(HTTPDownload, AShortBodyOfAnotherAnswerFails) {
  serveInTurn({answer("404 Not Found", "Content-Length: 100\r\n", "forty"),
               answer("500 Error", "Content-Length: 100\r\n", "forty")});
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPDownload, ALowerCaseHeaderIsNotRecognised) {
  serveInTurn({answer("200 OK", "content-length: 5\r\n", "five!"),
               answer("200 OK", "content-length: 100\r\n", "forty")});
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(bytes, 5U);
  bytes = kUntouched;
  EXPECT_EQ(download(), StatusFailed) << "libcurl alone sees that it is short";
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPDownload, OnlyTheAnnouncedBytesAreTaken) {
  serveInTurn({answer("200 OK", "Content-Length: 3\r\n", "abcdef")});
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(content(), "abc");
}

TEST_F(HTTPDownload, AnAbsurdLengthIsAMismatch) {
  serveInTurn({answer("200 OK", "Content-Length: 9223372036854775807\r\n", "abc"),
               answer("200 OK", "Content-Length: 99999999999999999999\r\n", "abc")});
  EXPECT_EQ(download(), StatusChecksumMismatch);
  EXPECT_EQ(download(), StatusChecksumMismatch);
  EXPECT_EQ(bytes, 3U);
}

TEST_F(HTTPDownload, ALengthThatIsNoneFails) {
  serveInTurn({answer("200 OK", "Content-Length: x\r\n", "abc"),
               answer("200 OK", "Content-Length: -3\r\n", "abc")});
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(download(), StatusFailed);
}

/// The length that a download learns from `lines`, fed to the header callback; -1 for none.
class HTTPHeader : public DownloadTest {
 protected:
  long long learned(const std::vector<std::string>& headers) {
    for (const std::string body : {"", "123", "1234567"}) {
      serveInTurn({unmeasured(body), unmeasured(body + "x")});
      beforeTransfer([&] { feedHeaders(headers); });
      const bool fits = download() == StatusOk;
      const bool longerFits = download() == StatusOk;
      if (fits) {
        return longerFits ? -1 : static_cast<long long>(body.size());
      }
    }
    return kOther;
  }

  static constexpr long long kOther = -2;

 private:
  void feedHeaders(const std::vector<std::string>& headers) {
    for (const std::string& header : headers) {
      // A block of exactly its size, so that a sanitizer sees a read behind it.
      const std::vector<char> exact(header.begin(), header.end());
      EXPECT_EQ(network::HTTPRequest::receiveHeader(const_cast<char*>(exact.data()), 1,
                                                    exact.size(), request.get()),
                exact.size());
    }
  }
};

TEST_F(HTTPHeader, OnlyTheOneSpellingIsRecognised) {
  EXPECT_EQ(learned({"Content-Length: 7\r\n"}), 7);
  EXPECT_EQ(learned({"content-length: 7\r\n"}), -1);
  EXPECT_EQ(learned({"CONTENT-LENGTH: 7\r\n"}), -1);
  EXPECT_EQ(learned({"Content-length: 7\r\n"}), -1);
  EXPECT_EQ(learned({"Content-Length : 7\r\n"}), -1);
  EXPECT_EQ(learned({" Content-Length: 7\r\n"}), -1);
  EXPECT_EQ(learned({"Content-Length"}), -1);
  EXPECT_EQ(learned({"\r\n"}), -1);
  EXPECT_EQ(learned({""}), -1);
}

TEST_F(HTTPHeader, TheNumberIsReadWithinTheHeader) {
  EXPECT_EQ(learned({"Content-Length:7"}), 7);
  EXPECT_EQ(learned({"Content-Length:    7"}), 7);
  EXPECT_EQ(learned({"Content-Length:\t7\r\n"}), 7);
  EXPECT_EQ(learned({"Content-Length: +7\r\n"}), 7);
  EXPECT_EQ(learned({"Content-Length: 0007 apples\r\n"}), 7);
  EXPECT_EQ(learned({"Content-Length:"}), 0);
  EXPECT_EQ(learned({"Content-Length:   "}), 0);
  EXPECT_EQ(learned({"Content-Length: many\r\n"}), 0);
  EXPECT_EQ(learned({"Content-Length: +-7\r\n"}), 0);
  EXPECT_EQ(learned({"Content-Length: + 7\r\n"}), 0);
  EXPECT_EQ(learned({"Content-Length: +"}), 0);
  EXPECT_EQ(learned({"Content-Length: -0"}), 0);
}

TEST_F(HTTPHeader, TheNumberHas64Bits) {
  EXPECT_EQ(learned({"Content-Length: 4294967303\r\n"}), kOther) << "not 7";
  EXPECT_EQ(learned({"Content-Length: 18446744073709551623\r\n"}), kOther) << "not 7";
  EXPECT_EQ(learned({"Content-Length: -99999999999999999999\r\n"}), -1) << "negative all the same";
}

TEST_F(HTTPHeader, ANegativeNumberIsIgnored) {
  EXPECT_EQ(learned({"Content-Length: -7\r\n"}), -1);
  EXPECT_EQ(learned({"Content-Length: -7\r\n", "Content-Length: 3\r\n"}), 3);
}

TEST_F(HTTPHeader, TheFirstOneWins) {
  EXPECT_EQ(learned({"Content-Length: 3\r\n", "Content-Length: 7\r\n"}), 3);
}

// The checksum

TEST_F(HTTPDownload, ComparesTheChecksumOfTheRange) {
  serveInTurn({found("123456789"), found("123456789"), found("123456789ABC"), found("12345678")});
  request->setDataChecksum(0xCBF43926, 0, 9);
  EXPECT_EQ(download(), StatusOk);
  request->setDataChecksum(0xCBF43927, 0, 9);
  EXPECT_EQ(download(), StatusChecksumMismatch);
  EXPECT_EQ(bytes, 9U);
  EXPECT_EQ(content(), "123456789");
  request->setDataChecksum(0xCBF43926, 0, 9);
  EXPECT_EQ(download(), StatusOk) << "what lies behind the range does not count";
  EXPECT_EQ(download(), StatusChecksumMismatch);
}

TEST_F(HTTPDownload, AChecksumOfZeroIsNoCheckWhateverTheRange) {
  serveInTurn({found("123456789"), found("123456789"), found("123456789")});
  request->setDataChecksum(0, 3, 5);
  EXPECT_EQ(download(), StatusOk);
  request->setDataChecksum(1, 0, 5);
  EXPECT_EQ(download(), StatusChecksumMismatch);
  request->setDataChecksum(0, 0, 5);
  EXPECT_EQ(download(), StatusOk);
}

TEST_F(HTTPDownload, AnEmptyRangeNeverMatches) {
  serveInTurn({found("123456789"), found("")});
  request->setDataChecksum(0xCBF43926, 0, 0);
  EXPECT_EQ(download(), StatusChecksumMismatch);
  EXPECT_EQ(download(), StatusChecksumMismatch);
}

TEST_F(HTTPDownload, TheChecksumOutweighsNothingButSuccess) {
  serveInTurn({answer("404 Not Found", "", ""), answer("500 Error", "", "")});
  request->setDataChecksum(1, 0, 9);
  EXPECT_EQ(download(), StatusNotFound);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPDownload, FirstBlocksBelowTheStartAreSkippedWhole) {
  serveInTurn({unmeasured(""), unmeasured("")});
  request->setDataChecksum(0xCBF43926, 16, 1000);
  feed({"below sixteen", "0123456789abcdef123456789"});
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(bytes, 38U);
  feed({"below sixteen", "0123456789abcdef1234", "0123456789abcdef56789"});
  EXPECT_EQ(download(), StatusOk) << "four counted bytes are below 16: the next block loses 16 too";
}

}  // namespace
}  // namespace trelvo::test
