#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "tests/network/HTTPSupport.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/Bytes.h"

namespace trelvo::test {
namespace {

using network::IHTTPRequest;

/// A server that gives one answer to everything, and holds no memory while a request runs.
class Parrot {
 public:
  explicit Parrot(std::string text) : m_text(std::move(text)) {}
  std::string address() const { return m_server.address(); }

 private:
  std::string m_text;
  ScriptedServer m_server{[this](const Peer& peer) {
    peer.request();
    peer.send(m_text);
  }};
};

/// What a run needs, made while there is memory.
struct Prepared {
  Prepared() { manager.calls.reserve(100); }

  void connect(const std::string& address) {
    request.reset(IHTTPRequest::create(address, &manager));
    request->setAllowedConnectionType(1);
  }

  ScriptedManager manager;
  std::unique_ptr<IHTTPRequest> request;
};

class HTTPMemory : public ::testing::Test {
 protected:
  HTTPMemory() { forgetProxies(); }

  static std::unique_ptr<Prepared> prepare(const std::string& address) {
    const AllocationsSucceed guard;
    auto result = std::make_unique<Prepared>();
    result->connect(address);
    return result;
  }

 public:
  const std::string path = "/" + std::string(100, 'a');
  TemporaryDirectory directory;
  const std::string local = directory.path("a name that is too long for a short string");
};

TEST_F(HTTPMemory, RunsOutInTheFactory) {
  bool made = false;
  everyAllocationFails([&] {
    std::unique_ptr<ScriptedManager> manager;
    {
      const AllocationsSucceed guard;
      manager = std::make_unique<ScriptedManager>();
    }
    const std::unique_ptr<IHTTPRequest> request(IHTTPRequest::create(path, manager.get()));
    made = request != nullptr;
  });
  EXPECT_TRUE(made);
}

TEST_F(HTTPMemory, RunsOutInADownload) {
  const Bytes key = test::bytes("2b7e151628aed2a6abf7158809cf4f3c");
  const Bytes iv = test::bytes("000102030405060708090a0b0c0d0e0f");
  const Bytes cipher = test::bytes(
      "7649abac8119b246cee98e9b12e9197d 5086cb9b507219ee95db113a917678b2"
      "73bed6b8e3c1743b7116e69e22229516 3ff1caa1681fac09120eca307586e1a7"
      "8cb82807230e1321d3fae00d18cc2012");
  const Parrot server(found(std::string(cipher.begin(), cipher.end())));
  Status set = StatusFailed;
  Status status = StatusFailed;
  unsigned long long bytes = 0;
  everyAllocationFails([&] {
    const std::unique_ptr<Prepared> prepared = prepare(server.address());
    IHTTPRequest& request = *prepared->request;
    set = request.setDataDecryption(IHTTPRequest::CipherAes, key.data(), 16, iv.data(), 16);
    EXPECT_TRUE(set == StatusOk || set == StatusOutOfMemory || set == StatusFailed) << set;
    request.setDataChecksum(1, 0, 64);
    status = request.download(path, local, bytes);
    EXPECT_NE(status, StatusOk) << "the checksum is another one";
  });
  EXPECT_EQ(set, StatusOk);
  EXPECT_EQ(status, StatusChecksumMismatch);
  EXPECT_EQ(bytes, 80U);
}

TEST_F(HTTPMemory, RunsOutInADownloadIntoAnEncryptedFile) {
  const std::string body = pattern(3000);
  const Parrot server(found(body));
  Status status = StatusFailed;
  everyAllocationFails([&] {
    {
      const AllocationsSucceed preparing;
      std::filesystem::remove(local);
    }
    const std::unique_ptr<Prepared> prepared = prepare(server.address());
    IHTTPRequest& request = *prepared->request;
    static const unsigned char name[] = "sltdb";
    const Status set =
        request.setDataEncryption(IHTTPRequest::CipherAes, name, sizeof name, nullptr, 0);
    EXPECT_TRUE(set == StatusOk || set == StatusOutOfMemory || set == StatusFailed) << set;
    unsigned long long bytes = 0;
    status = request.download(path, local, bytes);
    EXPECT_TRUE(status == StatusOk || status == StatusOutOfMemory || status == StatusFailed ||
                (status == StatusWrongState && set == StatusFailed))
        << status;
    const AllocationsSucceed checking;
    EXPECT_EQ(bytes, status == StatusOk ? body.size() : 0U);
    EXPECT_EQ(contentOfFile(local).size(), status == StatusOk ? body.size() : 0U);
  });
  EXPECT_EQ(status, StatusOk);
}

TEST_F(HTTPMemory, RunsOutInAQuestion) {
  const Parrot server(answer("200 OK", "", ""));
  Status available = StatusFailed;
  Status known = StatusFailed;
  everyAllocationFails([&] {
    const std::unique_ptr<Prepared> prepared = prepare(server.address());
    available = prepared->request->isAvailable(path);
    EXPECT_TRUE(available == StatusOk || available == StatusOutOfMemory) << available;
    unsigned int time = 7;
    known = prepared->request->getRemoteFileModificationTime(path, time);
    EXPECT_TRUE(known == StatusOk || known == StatusOutOfMemory) << known;
  });
  EXPECT_EQ(available, StatusOk);
  EXPECT_EQ(known, StatusOk);
}

}  // namespace
}  // namespace trelvo::test
