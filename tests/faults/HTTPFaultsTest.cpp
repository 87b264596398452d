// Downloads while the network and the disk refuse.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <trelvo/core/Directory.h>

#include <memory>
#include <optional>
#include <string>

#include "tests/network/HTTPSupport.h"
#include "tests/support/SystemFaults.h"

namespace trelvo::test {
namespace {

using network::IHTTPRequest;

/// Serves one body to everybody.
class HTTPFaults : public ::testing::TestWithParam<bool> {
 protected:
  HTTPFaults() { forgetProxies(); }

  static bool encrypted() { return GetParam(); }

  /// Downloads the body into a new file. @return nothing where no request could be made.
  std::optional<Status> download() {
    std::optional<SystemCallsSucceed> preparing(std::in_place);
    core::Directory::rmFile(local);
    bytes = kUntouched;
    preparing.reset();
    const std::unique_ptr<IHTTPRequest> request(IHTTPRequest::create(server.address(), &manager));
    if (request == nullptr) {
      return std::nullopt;
    }
    if (encrypted()) {
      static const unsigned char name[] = "sltdb";
      EXPECT_EQ(request->setDataEncryption(IHTTPRequest::CipherAes, name, sizeof name, nullptr, 0),
                StatusOk);
    }
    return request->download("/file", local, bytes);
  }

  std::string content() const {
    return core::Directory::pathExists(local) ? contentOfFile(local) : "";
  }

 public:
  static constexpr unsigned long long kUntouched = 0xAAAAAAAAAAAAAAAAULL;

  const std::string body = pattern(20000);
  TemporaryDirectory directory;
  const std::string local = directory.path("local");
  unsigned long long bytes = kUntouched;
  ScriptedManager manager;
  ScriptedServer server{[this](const Peer& peer) {
    if (!peer.request().empty()) {
      peer.send(found(body));
    }
  }};
  std::string stored;  ///< The file of a download that goes well.
};

bool diskHasFailed(const SystemRun& run) {
  return run.kinds.count("write") + run.kinds.count("fflush") + run.kinds.count("lseek") +
             run.kinds.count("read") !=
         0;
}

TEST_P(HTTPFaults, ADownloadIsWholeOrSaysThatItIsNot) {
  ASSERT_EQ(download(), StatusOk);
  stored = content();
  ASSERT_EQ(stored.size(), body.size());
  const FailedCalls failed = everySystemCallFails([this] {
    const std::optional<Status> status = download();
    const SystemCallsSucceed checking;
    const SystemRun run = systemRun();
    EXPECT_TRUE(run.failed || status == StatusOk);
    EXPECT_LE(content().size(), body.size());
    if (!status) {
      return;
    }
    EXPECT_TRUE(status == StatusOk || status == StatusFailed || status == StatusChecksumMismatch)
        << *status;
    EXPECT_EQ(bytes == kUntouched, status == StatusFailed);
    // A failure to write is not seen: that is what the checksum is for.
    if (!diskHasFailed(run)) {
      EXPECT_TRUE(status != StatusOk || content() == stored);
      EXPECT_TRUE(stored.compare(0, content().size(), content()) == 0) << "a part of it";
    }
  });
  for (const char* const call :
       {"fopen", "write", "fflush", "socket", "connect", "poll", "send", "recv"}) {
    EXPECT_GT(failed.count(call), 0U) << call;
  }
}

TEST_P(HTTPFaults, ShortCountsGoUnseen) {
  ASSERT_EQ(download(), StatusOk);
  stored = content();
  const FailedCalls shorter = everySystemCallComesUpShort([this] {
    EXPECT_EQ(download(), StatusOk);
    const SystemCallsSucceed checking;
    EXPECT_EQ(bytes, body.size());
    EXPECT_TRUE(content() == stored);
  });
  for (const char* const call : {"write", "send", "recv"}) {
    EXPECT_GT(shorter.count(call), 0U) << call;
  }
}

std::string nameOf(const ::testing::TestParamInfo<bool>& info) {
  return info.param ? "AnEncryptedFile" : "APlainFile";
}

INSTANTIATE_TEST_SUITE_P(Into, HTTPFaults, ::testing::Bool(), nameOf);

}  // namespace
}  // namespace trelvo::test
