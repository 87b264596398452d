#include "tools/trelvo/LogWrite.h"

#include <trelvo/Buffer.h>
#include <trelvo/ICryptoLog.h>
#include <trelvo/ICryptography.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/Failure.h"
#include "tools/trelvo/InputFile.h"
#include "tools/trelvo/Progress.h"

namespace trelvo::tool {

namespace {

using Log = gom::SharedPointer<ICryptoLog>;

std::string reasonOr(const char* otherwise) {
  return errno != 0 ? std::strerror(errno) : otherwise;
}

// The log itself would not tell whether it is the key that is wrong.
void checkKey(const std::string& path) {
  if (!openForReading(path.c_str())) {
    throw Failure(path + ": " + std::strerror(errno));
  }
  constexpr unsigned int kKeyAndIv = 32;
  Buffer sample;
  Buffer encrypted;
  sample.fill(0, kKeyAndIv);
  const gom::SharedPointer<ICryptography> cryptography = ICryptography::open();
  if (!cryptography || cryptography->encryptRsaPublic(sample, path.c_str(), encrypted,
                                                      crypto::PaddingOaep) != StatusOk) {
    throw Failure(path +
                  ": holds no usable public RSA key; make one by openssl rsa -in PRIV.pem "
                  "-pubout");
  }
}

Log createLog(const LogWriteOptions& options) {
  errno = 0;
  Log log(ICryptoLog::create(options.log.c_str(), options.key.c_str()));
  if (!log) {
    throw Failure(options.log + ": " + reasonOr("cannot be made"));
  }
  return log;
}

/// Carries bytes into the log, and flushes every so many lines.
class LogLines {
 public:
  LogLines(Log log, const LogWriteOptions& options) : m_log(std::move(log)), m_options(options) {}

  /// `text` is `size` bytes long, and one more may be written behind them.
  void put(char* text, std::size_t size) {
    const auto* const nul = static_cast<const char*>(std::memchr(text, '\0', size));
    putLines(text, nul != nullptr ? static_cast<std::size_t>(nul - text) : size);
    if (nul != nullptr) {
      flush();
      throw Failure("standard input: has a NUL byte in line " + std::to_string(m_total + 1) +
                    "; a log holds text only");
    }
  }

  void flush() {
    errno = 0;
    if (!m_log->flush()) {
      throw Failure(m_options.log + ": " + reasonOr("cannot be written"));
    }
    m_lines = 0;
  }

 private:
  void putLines(char* text, std::size_t size) {
    while (size > 0) {
      const std::size_t part = untilFlush(text, size);
      putPart(text, part);
      text += part;
      size -= part;
      if (m_options.flushEvery != 0 && m_lines == m_options.flushEvery) {
        flush();
      }
    }
  }

  /// How many of `size` bytes come ahead of the next flush; counts their lines.
  std::size_t untilFlush(const char* text, std::size_t size) {
    std::size_t part = 0;
    while (part < size && (m_options.flushEvery == 0 || m_lines < m_options.flushEvery)) {
      const void* const end = std::memchr(text + part, '\n', size - part);
      if (end == nullptr) {
        return size;
      }
      part = static_cast<std::size_t>(static_cast<const char*>(end) - text) + 1;
      ++m_lines;
      ++m_total;
    }
    return part;
  }

  void putPart(char* text, std::size_t size) {
    const char behind = text[size];
    text[size] = '\0';
    m_log->puts(text);
    text[size] = behind;
  }

  Log m_log;
  const LogWriteOptions& m_options;
  unsigned long long m_lines = 0;  // since the last flush
  unsigned long long m_total = 0;
};

}  // namespace

void writeLog(const LogWriteOptions& options, CommandContext& context) {
  constexpr unsigned int kBlockSize = 65536;
  checkKey(options.key);
  DescriptorStream input(context.inputDescriptor);
  checkRead(input, inputName(kStandard));
  LogLines lines(createLog(options), options);
  Progress progress(context.err, context.errorIsTerminal, input.size());
  input.onBlock([&progress](std::uint64_t bytes) { progress.update(bytes); });
  std::vector<char> block(kBlockSize + 1);
  while (const unsigned int got =
             input.readSome(reinterpret_cast<unsigned char*>(block.data()), kBlockSize)) {
    lines.put(block.data(), got);
  }
  lines.flush();
  checkRead(input, inputName(kStandard));
}

}  // namespace trelvo::tool
