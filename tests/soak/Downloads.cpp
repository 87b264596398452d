#include "tests/soak/Downloads.h"

#include <array>
#include <memory>
#include <mutex>
#include <string_view>

#include <boost/crc.hpp>

#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptography.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>
#include <trelvo/network/ConnectionInfoContainer.h>
#include <trelvo/network/IConnectionManager.h>
#include <trelvo/network/IHTTPRequest.h>

#include "tests/network/ScriptedServer.h"
#include "tests/soak/OneWorkerCrew.h"

namespace soak {

namespace {

using trelvo::ConnectionInfo;
using trelvo::Status;
using trelvo::StatusOk;
using trelvo::core::Directory;
using trelvo::network::ConnectionInfoContainer;
using trelvo::network::IHTTPRequest;
using trelvo::test::Peer;
using trelvo::test::ScriptedServer;

constexpr std::array<unsigned int, 4> kSizes = {1, 4096, 70000, 1U << 20U};
constexpr unsigned int kModified = 1700000000;
const std::string kStore = "lssdb";  // its key is built in, so it needs no device

unsigned char* data(std::string& text) { return reinterpret_cast<unsigned char*>(text.data()); }

unsigned int checksumOf(const std::string& text) {
  boost::crc_32_type crc;
  crc.process_bytes(text.data(), text.size());
  return crc.checksum();
}

/// Knows of one WLAN connection, and of no proxy.
class Manager : public trelvo::network::IConnectionManager {
 public:
  Status getConnections(ConnectionInfoContainer& connections) override {
    connections.add(wlan());
    return StatusOk;
  }
  Status startMonitorUsedConnection() override { return StatusOk; }
  void stopMonitorUsedConnection(ConnectionInfoContainer& connections) override {
    connections.add(wlan());
  }
  void setObserver(trelvo::network::IConnectionManagerObserver* /*observer*/) override {}
  Status openConnection(const ConnectionInfo& /*info*/) override { return StatusOk; }
  Status closeConnection(const ConnectionInfo& /*info*/) override { return StatusOk; }
  Status getProxy(const std::string& /*uri*/, trelvo::ProxyInfo& /*proxy*/) override {
    return trelvo::StatusNotSupported;
  }

 private:
  static ConnectionInfo wlan() {
    ConnectionInfo info;
    info.type = ConnectionInfo::TypeWlan;
    return info;
  }
};

/// What the server has.
struct Body {
  std::string plain;
  std::string enciphered;
};

class DownloadsWorker : public Worker {
 public:
  DownloadsWorker(const std::string& directory, unsigned int seed)
      : m_random(seed),
        m_local(Directory::concat(directory, "download" + std::to_string(seed))),
        m_key(m_random.bytes(16)),
        m_iv(m_random.bytes(16)),
        m_bodies(makeBodies()),
        m_server([this](const Peer& peer) { serve(peer); }) {}

 protected:
  void round() override {
    m_which = m_random.below(kSizes.size());
    renewRequest();
    m_request->setAllowedConnectionType(ConnectionInfo::TypeWlan);
    ask();
    downloadPlain();
    downloadEnciphered();
    downloadIntoSealedFile();
    renewRequest();
    cancel();
    check(Directory::rmFile(m_local), "a downloaded file is removed");
  }

 private:
  // -- the server's side, on its thread -----------------------------------------------------------

  void serve(const Peer& peer) {
    for (std::string request = peer.request(); !request.empty(); request = peer.request()) {
      const std::string head = "HEAD ";
      const bool whole = request.compare(0, head.size(), head) != 0;
      if (!answer(peer, request.substr(request.find('/')), whole)) {
        return;
      }
    }
  }

  bool answer(const Peer& peer, std::string_view path, bool whole) {
    const bool enciphered = path.rfind("/enciphered ", 0) == 0;
    if (path.rfind("/missing ", 0) == 0) {
      return peer.send("HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\n\r\n");
    }
    if (path.rfind("/cancelled ", 0) == 0) {
      return peer.send(headOf(kSizes.back())) && cancelMidway(peer);
    }
    const Body& body = m_bodies[m_which];
    const std::string& bytes = enciphered ? body.enciphered : body.plain;
    return peer.send(headOf(bytes.size())) && (!whole || peer.send(bytes));
  }

  bool cancelMidway(const Peer& peer) {
    const std::string_view bytes = m_bodies.back().plain;
    peer.send(bytes.substr(0, bytes.size() / 2));
    {
      const std::lock_guard<std::mutex> guard(m_mutex);
      m_request->cancel();
    }
    return peer.send(bytes.substr(bytes.size() / 2));
  }

  static std::string headOf(std::size_t size) {
    return "HTTP/1.1 200 OK\r\nLast-Modified: Tue, 14 Nov 2023 22:13:20 GMT\r\nContent-Length: " +
           std::to_string(size) + "\r\n\r\n";
  }

  // -- the client's side --------------------------------------------------------------------------

  // The old one's connection closes ahead of the new one's: the server takes one at a time.
  void renewRequest() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_request.reset();
    m_request.reset(IHTTPRequest::create(m_server.address(), &m_manager));
    check(m_request != nullptr, "a request is made");
  }

  const std::string& plain() const { return m_bodies[m_which].plain; }

  void ask() {
    unsigned int time = 0;
    check(m_request->isAvailable("/plain") == StatusOk, "a file is available");
    check(m_request->isAvailable("/missing") == trelvo::StatusNotFound, "a missing file is not");
    check(m_request->getRemoteFileModificationTime("/plain", time) == StatusOk && time == kModified,
          "a file tells when it was changed");
  }

  void expectDownload(const char* path, Status expected) {
    unsigned long long bytes = 0;
    check(m_request->download(path, m_local, bytes) == expected, "a download ends as it should");
    ++gFigures.downloads;
    gFigures.downloadBytes += bytes;
  }

  void downloadPlain() {
    const unsigned int crc = checksumOf(plain());
    const auto size = static_cast<unsigned int>(plain().size());
    m_request->setDataChecksum(crc, 0, size);
    expectDownload("/plain", StatusOk);
    check(contentOf(m_local) == plain(), "a download has all bytes");
    m_request->setDataChecksum(crc + 1 == 0 ? 1 : crc + 1, 0, size);
    expectDownload("/plain", trelvo::StatusChecksumMismatch);
    m_request->setDataChecksum(crc, 0, size);
  }

  void downloadEnciphered() {
    check(m_request->setDataDecryption(IHTTPRequest::CipherAes, data(m_key), 16, data(m_iv), 16) ==
              StatusOk,
          "deciphering is set");
    expectDownload("/enciphered", StatusOk);
    check(contentOf(m_local) == plain(), "an enciphered download has all bytes");
  }

  void downloadIntoSealedFile() {
    const auto* const name = reinterpret_cast<const unsigned char*>(kStore.c_str());
    const auto size = static_cast<unsigned int>(kStore.size()) + 1;
    check(m_request->setDataEncryption(IHTTPRequest::CipherAes, name, size, nullptr, 0) == StatusOk,
          "sealing is set");
    expectDownload("/enciphered", StatusOk);
    expectSealed();
  }

  void expectSealed() {
    Status status = StatusOk;
    bool generated = false;
    const trelvo::gom::SharedPointer<trelvo::ICryptographyUtility> utility(
        trelvo::ICryptographyUtility::open(kStore.c_str(), status, generated));
    check(static_cast<bool>(utility), "a store opens");
    const trelvo::gom::SharedPointer<trelvo::ICryptoFile> file(
        trelvo::ICryptoFile::open(Directory::openFile(m_local, 0, true), *utility));
    std::string text(plain().size() + 1, '\0');
    const auto room = static_cast<unsigned int>(text.size());
    check(file && file->read(data(text), room) == room - 1, "a sealed download has its length");
    text.pop_back();
    check(text == plain(), "a sealed download has all bytes");
  }

  void cancel() {
    unsigned long long bytes = 0;
    check(m_request->download("/cancelled", m_local, bytes) == trelvo::StatusCancelled &&
              m_request->isCancelled(),
          "a download is cancelled");
    ++gFigures.downloadsCancelled;
  }

  std::array<Body, kSizes.size()> makeBodies() {
    const trelvo::gom::SharedPointer<trelvo::ICryptography> cryptography(
        trelvo::ICryptography::open());
    check(static_cast<bool>(cryptography), "cryptography opens");
    std::array<Body, kSizes.size()> bodies;
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
      bodies[i].plain = m_random.bytes(kSizes[i]);
      bodies[i].enciphered = enciphered(*cryptography, bodies[i].plain);
    }
    return bodies;
  }

  std::string enciphered(trelvo::ICryptography& cryptography, std::string& plain) {
    unsigned char* result = nullptr;
    unsigned long size = 0;
    check(cryptography.encryptAes(data(plain), plain.size(), data(m_key), 16, data(m_iv), 16,
                                  result, size) == StatusOk,
          "a body is enciphered");
    std::string text(reinterpret_cast<const char*>(result), size);
    cryptography.freeMemory(result);
    return text;
  }

  Random m_random;
  std::string m_local;
  std::string m_key;
  std::string m_iv;
  std::array<Body, kSizes.size()> m_bodies;
  Manager m_manager;
  std::atomic<std::size_t> m_which{0};
  std::mutex m_mutex;  // while m_request changes here or is cancelled there
  std::unique_ptr<IHTTPRequest> m_request;
  ScriptedServer m_server;  // its thread uses what stands above
};

}  // namespace

std::unique_ptr<Crew> makeDownloadsCrew(const std::string& directory, unsigned int seed) {
  return crewOf<DownloadsWorker>(directory, seed);
}

}  // namespace soak
