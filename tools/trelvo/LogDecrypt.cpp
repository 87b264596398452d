#include "tools/trelvo/LogDecrypt.h"

#include <fcntl.h>
#include <trelvo/Buffer.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/ICryptography.h>
#include <trelvo/ReadOnlyBuffer.h>
#include <trelvo/Status.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <future>
#include <utility>
#include <vector>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/KeyFile.h"
#include "tools/trelvo/OutputFile.h"
#include "tools/trelvo/Progress.h"

namespace trelvo::tool {

namespace {

using Passphrase = gom::SharedPointer<Secret>;
using Head = std::vector<unsigned char>;

/// The encrypted key at the head of a log. Throws Failure for what cannot be a log.
Head readHead(const std::string& path) {
  constexpr unsigned short kSmallest = 74;   // what OAEP needs for key and IV
  constexpr unsigned short kLargest = 2048;  // a modulus of 16384 bits
  UniqueFd descriptor = openForReading(path.c_str());
  if (!descriptor) {
    throw Failure(path + ": " + std::strerror(errno));
  }
  DescriptorStream file(std::move(descriptor));
  unsigned short size = 0;
  const bool isSized = file.readUint16(size) && size >= kSmallest && size <= kLargest;
  Head head(isSized ? size : 0);
  const bool isWhole = isSized && file.read(head.data(), size) == size;
  checkRead(file, path);
  if (!isWhole || !file.size()) {
    throw Failure(path + ": is no encrypted log; give a file that trelvo log write wrote");
  }
  return head;
}

// The library opens a log for writing, too.
void checkWritable(const std::string& path) {
  if (!UniqueFd(::open(path.c_str(), O_RDWR | O_CLOEXEC))) {
    throw Failure(path + ": " + std::strerror(errno) +
                  "; reading a log needs leave to write, so make a copy");
  }
}

/// Why a log does not open: tries its head once more, step by step.
std::string keyTrouble(const LogDecryptOptions& options, const Head& head,
                       const Passphrase& passphrase, const KeyFile& key) {
  Buffer content;
  const gom::SharedPointer<ICryptography> cryptography = ICryptography::open();
  const Status status =
      cryptography ? cryptography->decryptRsaPrivate(
                         ReadOnlyBuffer(head.data(), static_cast<unsigned int>(head.size())),
                         options.key.c_str(), passphrase, content, crypto::PaddingOaep)
                   : StatusInternal;
  if (content.size() != 0) {
    ::explicit_bzero(content.data(), content.size());
  }
  if (status != StatusFileError) {
    return options.key + ": does not open " + options.log +
           "; give the private key whose public half the log was written with";
  }
  return options.key + (key.isProtected ? ": wrong pass phrase" : ": holds no usable RSA key");
}

[[noreturn]] void throwDecryptFailure(Status status, const std::string& log) {
  if (status == StatusFailed) {
    throw Failure(log + ": is damaged; the text ahead of the damage was written");
  }
  if (status == StatusOutOfMemory) {
    throw std::bad_alloc();
  }
  throw Failure(log + ": cannot be read");
}

struct Pipe {
  UniqueFd reading;
  UniqueFd writing;
};

Pipe makePipe() {
  int ends[2] = {-1, -1};
  if (::pipe2(ends, O_CLOEXEC) != 0) {
    throw Failure(std::string("pipe: ") + std::strerror(errno));
  }
  return {UniqueFd(ends[0]), UniqueFd(ends[1])};
}

/// Decrypts one log through a pipe: the library writes to a path, and here a pipe has one.
class Decryption {
 public:
  Decryption(const LogDecryptOptions& options, CommandContext& context)
      : m_options(options), m_context(context), m_head(readHead(options.log)) {
    checkWritable(options.log);
    m_key = inspectKeyFile(options.key);
    m_passphrase = passphraseFor(options.passphrase, options.key, m_key);
  }

  void toStandardOutput() {
    m_context.out.flush();
    const Status status = decryptTo(m_context.outputDescriptor, "standard output");
    check(status);
  }

  void toFile() {
    OutputFile file(m_options.output);
    const Status status = decryptTo(file.descriptor(), m_options.output);
    if (status == StatusOk || status == StatusFailed) {
      file.commit();
    }
    check(status);
  }

 private:
  Status decryptTo(int descriptor, const std::string& name) {
    Pipe pipe = makePipe();
    std::future<Status> done = std::async(
        std::launch::async, [this, &pipe] { return decryptInto(std::move(pipe.writing)); });
    DescriptorStream text(std::move(pipe.reading));
    copyOrDrain(text, descriptor, name);
    return done.get();
  }

  // Whoever reads the pipe finds its end when this returns.
  Status decryptInto(UniqueFd end) const {
    const std::string path = "/proc/self/fd/" + std::to_string(end.get());
    return ICryptoLog::decrypt(m_options.log.c_str(), path.c_str(), m_options.key.c_str(),
                               m_passphrase);
  }

  // The other thread waits until somebody has read its last byte.
  void copyOrDrain(DescriptorStream& text, int descriptor, const std::string& name) {
    try {
      DescriptorStream output(descriptor);
      Progress progress(m_context.err, m_context.errorIsTerminal && !m_context.outputIsTerminal,
                        std::nullopt);
      text.onBlock([&progress](std::uint64_t bytes) { progress.update(bytes); });
      copyAll(text, m_options.log, output, name);
      text.onBlock(nullptr);
    } catch (...) {
      text.onBlock(nullptr);
      drain(text);
      throw;
    }
  }

  static void drain(DescriptorStream& text) {
    unsigned char ignored[4096];
    while (text.read(ignored, sizeof ignored) != 0) {
    }
  }

  void check(Status status) const {
    if (status == StatusKeyFailure) {
      throw Failure(keyTrouble(m_options, m_head, m_passphrase, m_key));
    }
    if (status != StatusOk) {
      throwDecryptFailure(status, m_options.log);
    }
  }

  const LogDecryptOptions& m_options;
  CommandContext& m_context;
  Head m_head;
  KeyFile m_key;
  Passphrase m_passphrase;
};

}  // namespace

void decryptLog(const LogDecryptOptions& options, CommandContext& context) {
  Decryption decryption(options, context);
  if (options.output == kStandard) {
    decryption.toStandardOutput();
  } else {
    decryption.toFile();
  }
}

}  // namespace trelvo::tool
