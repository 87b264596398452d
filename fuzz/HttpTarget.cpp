// The callbacks of HTTP requests, as libcurl calls them. The first bytes say what is asked for and
// how it is answered, the others what the answer is made of.

#include <trelvo/network/ConnectionInfoContainer.h>
#include <trelvo/network/HTTPRequest.h>
#include <trelvo/network/IConnectionManager.h>

#include "fuzz/FakeCurl.h"
#include "fuzz/Input.h"
#include "fuzz/MemoryBound.h"
#include "fuzz/ScratchFile.h"

namespace trelvo::fuzz {

namespace {

using network::HTTPRequest;

constexpr std::size_t kWorkspace = 1 << 17;

/// A connection manager that has nothing to say.
class Manager : public network::IConnectionManager {
 public:
  Status getConnections(network::ConnectionInfoContainer&) override { return StatusOk; }
  Status startMonitorUsedConnection() override { return StatusOk; }
  void stopMonitorUsedConnection(network::ConnectionInfoContainer&) override {}
  void setObserver(network::IConnectionManagerObserver*) override {}
  Status openConnection(const ConnectionInfo&) override { return StatusNotSupported; }
  Status closeConnection(const ConnectionInfo&) override { return StatusNotSupported; }
  Status getProxy(const std::string&, ProxyInfo&) override { return StatusNotSupported; }
};

long codeFor(unsigned int byte) {
  constexpr long kCodes[] = {200, 200, 200, 404, 206, 301, 500, 0};
  return kCodes[byte % 8];
}

Transfer::Piece pieceFrom(Input& input) {
  const unsigned int byte = input.byte();
  switch (byte % 4) {
    case 0: {
      Bytes line = input.bytes(byte / 4);
      line.insert(line.end(), {'\r', '\n'});
      return {Transfer::Piece::Header, std::move(line)};
    }
    case 1: {
      constexpr char kName[] = "Content-Length:";
      Bytes line(kName, kName + sizeof kName - 1);
      const Bytes value = input.bytes(byte / 4);
      line.insert(line.end(), value.begin(), value.end());
      return {Transfer::Piece::Header, std::move(line)};
    }
    case 2:
      return {Transfer::Piece::Body, input.bytes(byte / 4 + 1)};
    default:
      return {byte > 192 ? Transfer::Piece::Progress : Transfer::Piece::Body,
              input.bytes(std::size_t{byte} * 16)};
  }
}

/// All of the body, one block behind the other.
Bytes bodyOf(const Transfer& transfer) {
  Bytes body;
  for (const Transfer::Piece& piece : transfer.pieces) {
    if (piece.kind == Transfer::Piece::Body) {
      body.insert(body.end(), piece.bytes.begin(), piece.bytes.end());
    }
  }
  return body;
}

/// What the first byte asks for.
struct Wishes {
  explicit Wishes(Input& input)
      : byte(input.byte()), crc(input.word()), start(input.byte()), end(input.word()) {}
  bool deciphers() const { return byte % 2 != 0; }
  bool checks() const { return (byte & 2U) != 0; }
  bool cancels() const { return (byte & 0x1CU) == 0x1CU; }

  unsigned int byte;
  unsigned int crc;
  unsigned int start;
  unsigned int end;
};

void setUp(HTTPRequest& request, const Wishes& wishes) {
  const Bytes key(16, 0x11);
  if (wishes.deciphers()) {
    require(request.setDataDecryption(network::IHTTPRequest::CipherAes, key.data(), 16, key.data(),
                                      16) == StatusOk,
            "a cipher can be set");
  }
  if (wishes.checks()) {
    request.setDataChecksum(wishes.crc, wishes.start, wishes.end);
  }
}

/// What can be told beforehand of a plain download.
void checkDownload(Status status, unsigned long long bytes, const Bytes& content) {
  const Transfer& transfer = nextTransfer();
  const Bytes body = bodyOf(transfer);
  require(content == body, "the file has the body");
  if (status == StatusOk) {
    require(transfer.code == 200 && bytes == body.size(), "all of the body was received");
  }
}

void download(HTTPRequest& request, const Wishes& wishes, std::size_t size) {
  static ScratchFile file;
  unsigned long long bytes = 0;
  const MemoryBound bound(size, kWorkspace);
  const Status status = request.download("/file", file.path(), bytes);
  require(!wishes.cancels() || status == StatusCancelled || wishes.deciphers(),
          "a cancelled request says so");
  if (!wishes.deciphers() && !wishes.cancels()) {
    checkDownload(status, bytes, file.content());
  }
}

}  // namespace

void run(const Bytes& bytes) {
  Input input(bytes);
  const Wishes wishes(input);
  const unsigned int kind = input.byte();
  Transfer& transfer = nextTransfer();
  transfer = {codeFor(kind), static_cast<long>(input.word()), kind < 200, {}};
  while (!input.atEnd()) {
    transfer.pieces.push_back(pieceFrom(input));
  }
  Manager manager;
  HTTPRequest request("server", &manager);
  require(request.initialize(), "a request can be initialised");
  setUp(request, wishes);
  if (wishes.cancels()) {
    request.cancel();
  }
  unsigned int time = 0;
  switch (wishes.byte >> 5U) {
    case 0:
      require(request.isAvailable("/file") != StatusOk || transfer.code == 200, "200 is available");
      break;
    case 1:
      require(
          request.getRemoteFileModificationTime("/file", time) != StatusOk || transfer.code == 200,
          "200 has a time");
      break;
    default:
      download(request, wishes, bytes.size());
  }
}

}  // namespace trelvo::fuzz
