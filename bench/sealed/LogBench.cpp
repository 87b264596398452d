// The encrypted log, workload e: 100,000 lines of 120 characters, a flush after each 10. Beside it
// deflate alone, which it cannot do without, gzwrite, which compresses too, the plain text for
// information, and the floor: what the block file's behaviour adds to deflate over a C stream.
// Benchmarks are called log/PEER.

#include <benchmark/benchmark.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <trelvo/ICryptoLog.h>
#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/TemporaryFiles.h"
#include "bench/sealed/Counter.h"

namespace bench {

namespace {

constexpr std::size_t kLines = 100000;
constexpr std::size_t kLineSize = 120;
constexpr std::size_t kLinesAFlush = 10;

/// A line as a positioning engine logs them, with its line end the 120th character.
std::string lineOf(unsigned int number, std::mt19937& engine) {
  const auto any = [&engine](unsigned int limit) {
    return static_cast<unsigned int>(engine() % limit);
  };
  const unsigned int accessPoints = any(40), area = any(2000), cell = any(1 << 28);
  const double latitude = 60.0 + any(1000000) * 1e-6, longitude = 24.0 + any(1000000) * 1e-6;
  char text[2 * kLineSize];
  std::snprintf(text, sizeof text,
                "2026-03-14 09:%02u:%02u.%03u scan: %u access points, cell 244-5-%u-%u, "
                "fix %.6f %.6f +-%u m, request %u",
                number / 60000 % 60, number / 1000 % 60, number % 1000, accessPoints, area, cell,
                latitude, longitude, any(200), number);
  std::string line(text);
  line.resize(kLineSize - 1, '.');
  return line + '\n';
}

const std::vector<std::string>& lines() {
  static const std::vector<std::string> kAll = [] {
    std::mt19937 engine(3);
    std::vector<std::string> all;
    for (unsigned int i = 0; i < kLines; ++i) {
      all.push_back(lineOf(i, engine));
    }
    return all;
  }();
  return kAll;
}

/// Hands all lines to `put` and calls `flush` after each ten.
template <class Put, class Flush>
void writeLines(Put put, Flush flush) {
  std::size_t count = 0;
  for (const std::string& line : lines()) {
    put(line);
    if (++count % kLinesAFlush == 0) {
      flush();
    }
  }
}

std::string contentOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string wholeText() {
  std::string text;
  for (const std::string& line : lines()) {
    text += line;
  }
  return text;
}

// -- this library ---------------------------------------------------------------------------------

struct CloseStream {
  void operator()(FILE* stream) const { std::fclose(stream); }
};
using Stream = std::unique_ptr<FILE, CloseStream>;

struct FreeKey {
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};

/// Makes the key pair that the log is for, `log.public` and `log.private`.
bool makeKeys() {
  const std::unique_ptr<EVP_PKEY, FreeKey> key(EVP_RSA_gen(2048));
  const Stream publicFile(std::fopen(temporaryFile("log.public").c_str(), "wb"));
  const Stream privateFile(std::fopen(temporaryFile("log.private").c_str(), "wb"));
  return key && publicFile && privateFile && PEM_write_PUBKEY(publicFile.get(), key.get()) == 1 &&
         PEM_write_PrivateKey(privateFile.get(), key.get(), nullptr, nullptr, 0, nullptr,
                              nullptr) == 1;
}

struct TrelvoLog {
  static void write(const std::string& path) {
    static const bool kKeys = makeKeys();
    must(kKeys, "making the keys");
    const trelvo::gom::SharedPointer<trelvo::ICryptoLog> log(
        trelvo::ICryptoLog::create(path.c_str(), temporaryFile("log.public").c_str()));
    writeLines([&](const std::string& line) { log->puts(line.c_str()); },
               [&] { must(log->flush(), "flush"); });
  }
  static bool proves(const std::string& path) {
    const std::string text = temporaryFile("log.text");
    return trelvo::ICryptoLog::decrypt(path.c_str(), text.c_str(),
                                       temporaryFile("log.private").c_str(),
                                       {}) == trelvo::StatusOk &&
           contentOf(text) == wholeText();
  }
};

// -- others ---------------------------------------------------------------------------------------

class Deflater {
 public:
  Deflater() { must(deflateInit(&m_stream, Z_DEFAULT_COMPRESSION) == Z_OK, "deflateInit"); }
  ~Deflater() { deflateEnd(&m_stream); }
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  /// Hands what comes out to `sink`, as bytes and their count.
  template <class Sink>
  void pump(const std::string& line, int mode, Sink sink) {
    m_stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(line.data()));
    m_stream.avail_in = static_cast<uInt>(line.size());
    unsigned char output[16384];
    do {
      m_stream.next_out = output;
      m_stream.avail_out = sizeof output;
      const int result = deflate(&m_stream, mode);
      must(result == Z_OK || result == Z_STREAM_END || result == Z_BUF_ERROR, "deflate");
      sink(output, sizeof output - m_stream.avail_out);
    } while (m_stream.avail_out == 0);
  }

 private:
  z_stream m_stream = {};
};

template <class Sink, class Flush>
void deflateLines(Sink sink, Flush flush) {
  Deflater deflater;
  writeLines([&](const std::string& line) { deflater.pump(line, Z_NO_FLUSH, sink); },
             [&] {
               deflater.pump({}, Z_SYNC_FLUSH, sink);
               flush();
             });
  deflater.pump({}, Z_FINISH, sink);
}

struct DeflateAlone {
  static void write(const std::string&) {
    deflateLines([](const unsigned char* bytes, std::size_t) { benchmark::DoNotOptimize(bytes); },
                 [] {});
  }
  static bool proves(const std::string&) { return true; }
};

/// Blocks at the end of a file: each is written when it is full, and the one being filled at every
/// flush, which goes back to its start.
class AppendedBlocks {
 public:
  explicit AppendedBlocks(FILE* stream) : m_stream(stream) {}

  void write(const unsigned char* from, std::size_t count) {
    while (count != 0) {
      if (m_used == kBlockSize) {
        store();
        ++m_index;
        m_used = 0;
      }
      const std::size_t chunk = std::min(count, kBlockSize - m_used);
      std::copy_n(from, chunk, m_block + m_used);
      m_used += chunk;
      from += chunk;
      count -= chunk;
    }
  }
  void flush() {
    store();
    must(std::fflush(m_stream) == 0 &&
             fseeko(m_stream, static_cast<off_t>(m_index * kBlockSize), SEEK_SET) == 0,
         "fseeko");
  }

 private:
  void store() {
    unsigned char stored[kBlockSize];
    m_cipher.apply(m_index, m_block, stored, m_used);
    must(std::fwrite(stored, 1, m_used, m_stream) == m_used, "fwrite");
  }

  FILE* m_stream;
  RunningContext m_cipher;
  unsigned char m_block[kBlockSize];
  std::size_t m_used = 0;
  std::size_t m_index = 0;
};

struct DeflateIntoBlocks {
  static void write(const std::string& path) {
    const Stream file(std::fopen(path.c_str(), "w+b"));
    must(file != nullptr, "fopen");
    AppendedBlocks blocks(file.get());
    deflateLines([&](const unsigned char* bytes, std::size_t count) { blocks.write(bytes, count); },
                 [&] { blocks.flush(); });
    blocks.flush();
  }
  static bool proves(const std::string& path) {
    const std::string stored = contentOf(path);
    std::vector<unsigned char> compressed(stored.begin(), stored.end());
    KeptContext().apply(0, compressed.data(), compressed.data(), compressed.size());
    std::string text(kLines * kLineSize, ' ');
    uLongf size = text.size();
    return uncompress(reinterpret_cast<Bytef*>(text.data()), &size, compressed.data(),
                      compressed.size()) == Z_OK &&
           text == wholeText();
  }
};

struct GzipFile {
  static void write(const std::string& path) {
    const gzFile file = gzopen(path.c_str(), "wb");
    must(file != nullptr, "gzopen");
    writeLines(
        [&](const std::string& line) {
          must(gzwrite(file, line.data(), static_cast<unsigned int>(line.size())) != 0, "gzwrite");
        },
        [&] { must(gzflush(file, Z_SYNC_FLUSH) == Z_OK, "gzflush"); });
    must(gzclose(file) == Z_OK, "gzclose");
  }
  static bool proves(const std::string& path) {
    const gzFile file = gzopen(path.c_str(), "rb");
    std::string line(kLineSize, ' ');
    bool same = file != nullptr;
    for (const std::string& expected : lines()) {
      same = same && gzread(file, line.data(), kLineSize) == kLineSize && line == expected;
    }
    return gzclose(file) == Z_OK && same;
  }
};

struct PlainText {
  static void write(const std::string& path) {
    const Stream file(std::fopen(path.c_str(), "wb"));
    must(file != nullptr, "fopen");
    writeLines(
        [&](const std::string& line) { must(std::fputs(line.c_str(), file.get()) >= 0, "fputs"); },
        [&] { must(std::fflush(file.get()) == 0, "fflush"); });
  }
  static bool proves(const std::string& path) { return contentOf(path) == wholeText(); }
};

template <class Peer>
void logBench(benchmark::State& state) {
  lines();
  const std::string path = temporaryFile("log");
  for (auto _ : state) {
    Peer::write(path);
  }
  if (!Peer::proves(path)) {
    state.SkipWithError("what was read is not what was written");
  }
}

BENCHMARK(logBench<TrelvoLog>)->Name("log/lib:trelvo")->Unit(benchmark::kMillisecond);
BENCHMARK(logBench<DeflateIntoBlocks>)
    ->Name("log/floor:deflate+stdio_blocks")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(logBench<DeflateAlone>)->Name("log/deflate")->Unit(benchmark::kMillisecond);
BENCHMARK(logBench<GzipFile>)->Name("log/gzwrite")->Unit(benchmark::kMillisecond);
BENCHMARK(logBench<PlainText>)->Name("log/plain_text")->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace bench
