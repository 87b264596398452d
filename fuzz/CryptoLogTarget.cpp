// The reader of encrypted logs, and the writer with it. The first byte picks what the others are.

#include <trelvo/CryptoLinux.h>
#include <trelvo/CryptoLog.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/core/Directory.h>
#include <zlib.h>

#include <array>
#include <memory>
#include <string>

#include "fuzz/Input.h"
#include "fuzz/MemoryBound.h"
#include "fuzz/ScratchFile.h"
#include "tests/crypto/BlockFile.h"

namespace trelvo {

namespace {

using fuzz::Bytes;
using fuzz::require;

const std::string kKeys = std::string(TRELVO_TEST_DATA) + "/crypto/golden/";

/// The key and the IV of all logs here.
Bytes keyAndIv() {
  const auto key = test::testKey();
  const auto iv = test::testIv();
  Bytes both(key.begin(), key.end());
  both.insert(both.end(), iv.begin(), iv.end());
  return both;
}

/// The head that goes with them, without the two bytes of its length.
const Bytes& fixedHead() {
  static const Bytes head = [] {
    const Bytes plain = keyAndIv();
    const ReadOnlyBuffer input(plain.data(), static_cast<unsigned int>(plain.size()));
    CryptoLinux cryptography;
    Buffer output;
    const std::string key = kKeys + "public.pem";
    require(cryptography.init() && cryptography.encryptRsaPublic(input, key.c_str(), output,
                                                                 crypto::PaddingOaep) == StatusOk,
            "the head can be enciphered");
    const ReadOnlyBuffer& made = output;
    return Bytes(made.data(), made.data() + made.size());
  }();
  return head;
}

/// Knows by heart what the fixed head deciphers to: that takes RSA out of nearly all logs.
class Cryptography : public CryptoLinux {
 public:
  Status decryptRsaPrivate(const ReadOnlyBuffer& input, const char* keyFile,
                           const gom::SharedPointer<Secret>& passphrase, Buffer& output,
                           crypto::PaddingType padding) override {
    const unsigned char* const given = input.data();
    if (given == nullptr || Bytes(given, given + input.size()) != fixedHead()) {
      return CryptoLinux::decryptRsaPrivate(input, keyFile, passphrase, output, padding);
    }
    const Bytes plain = keyAndIv();
    output.append(plain.data(), static_cast<unsigned int>(plain.size()));
    return StatusOk;
  }
};

}  // namespace

// Stands before the library's where its calls go by the dynamic symbol; a library linked as a whole
// deciphers each head itself.
ICryptography* ICryptography::open() { return new (std::nothrow) Cryptography; }

namespace fuzz {

namespace {

constexpr std::size_t kWorkspace = 1 << 20;

Bytes wholeFile(const Bytes& body) {
  Bytes file = fixedHead();
  const auto size = static_cast<unsigned int>(file.size());
  file.insert(file.begin(),
              {static_cast<unsigned char>(size), static_cast<unsigned char>(size >> 8U)});
  file.insert(file.end(), body.begin(), body.end());
  return file;
}

struct Inflated {
  Bytes text;
  bool damaged = false;
};

/// What zlib makes of `compressed` in one go.
Inflated inflated(Bytes compressed) {
  Inflated result;
  z_stream stream{};
  require(inflateInit(&stream) == Z_OK, "zlib can start");
  stream.next_in = compressed.data();
  stream.avail_in = static_cast<uInt>(compressed.size());
  int outcome = Z_OK;
  while (outcome == Z_OK) {
    std::array<unsigned char, 16384> block = {};
    stream.next_out = block.data();
    stream.avail_out = block.size();
    outcome = inflate(&stream, Z_NO_FLUSH);
    result.text.insert(result.text.end(), block.data(), stream.next_out);
  }
  inflateEnd(&stream);
  result.damaged = outcome != Z_STREAM_END && outcome != Z_BUF_ERROR;
  return result;
}

Status decrypt(const ScratchFile& log, const ScratchFile& text, std::size_t size) {
  static const std::string key = kKeys + "private.pem";
  const MemoryBound bound(size, kWorkspace);
  return ICryptoLog::decrypt(log.path().c_str(), text.path().c_str(), key.c_str(), {});
}

/// The input is what was enciphered: a compressed text, more or less.
void checkBody(const Bytes& compressed, ScratchFile& log, const ScratchFile& text) {
  log.setContent(wholeFile(test::enciphered(compressed)));
  const Status status = decrypt(log, text, compressed.size());
  const Inflated expected = inflated(compressed);
  require(status == (expected.damaged ? StatusFailed : StatusOk),
          "damage is told, and only damage");
  require(text.content() == expected.text, "all ahead of damage comes out");
}

/// The input is a whole file, head included.
void checkFile(const Bytes& file, ScratchFile& log, const ScratchFile& text) {
  log.setContent(file);
  const Status status = decrypt(log, text, file.size());
  require(status != StatusInternal && status != StatusOutOfMemory, "what fails is the file");
}

/// The input says what is logged, and when it is flushed.
void checkWriter(Input& input, ScratchFile& log, const ScratchFile& text) {
  log.setContent(wholeFile({}));
  const auto file = core::Directory::openFile(log.path(), 0, false);
  const auto head = static_cast<unsigned int>(log.content().size());
  require(file && file->seekFromStart(head), "the log can be opened");
  Bytes key = keyAndIv();
  const gom::SharedPointer<ICryptoFile> body = ICryptoFile::open(file, key.data(), key.data() + 16);
  auto writer = std::make_unique<CryptoLog>(file, new Cryptography, body);
  std::string logged;
  while (!input.atEnd()) {
    const unsigned int size = input.byte();
    const Bytes bytes = input.bytes(size);
    const std::string line(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0));
    writer->puts(line.c_str());
    logged += line;
    require(size % 4 != 0 || (writer->flush() && file->flush()), "a log in memory can be flushed");
  }
  writer.reset();
  require(body->flush() && file->flush(), "a log in memory can be flushed");
  require(decrypt(log, text, log.content().size()) == StatusOk, "what was logged can be read");
  require(text.content() == Bytes(logged.begin(), logged.end()), "what was logged comes out");
}

}  // namespace

void run(const Bytes& bytes) {
  static ScratchFile log;
  static ScratchFile text;
  Input input(bytes);
  switch (input.byte() % 4) {
    case 0:
      return checkFile(input.rest(), log, text);
    case 1:
      return checkWriter(input, log, text);
    default:
      return checkBody(input.rest(), log, text);
  }
}

}  // namespace fuzz
}  // namespace trelvo
