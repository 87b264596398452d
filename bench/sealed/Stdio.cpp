// What the block file's behaviour leaves to do over a C stream.
//
//   floor:stdio_blocks_*      every block by the literal calls: load, seek back, write
//   floor:stdio_batched_runs  without what nobody can observe

#include <algorithm>
#include <cstdio>
#include <memory>

#include "bench/sealed/Counter.h"
#include "bench/sealed/FileBench.h"

namespace bench {

namespace {

struct CloseStream {
  void operator()(FILE* stream) const { must(std::fclose(stream) == 0, "fclose"); }
};
using Stream = std::unique_ptr<FILE, CloseStream>;

Stream openStream(const std::string& path, const char* mode) {
  Stream stream(std::fopen(path.c_str(), mode));
  must(stream != nullptr, "fopen");
  return stream;
}

void seek(FILE* stream, std::size_t place) {
  must(fseeko(stream, static_cast<off_t>(place), SEEK_SET) == 0, "fseeko");
}

std::size_t blockAt(FILE* stream) { return static_cast<std::size_t>(ftello(stream)) / kBlockSize; }

/// One block in memory, loaded before it is changed.
template <class Cipher>
class Blocks {
 public:
  explicit Blocks(FILE* stream) : m_stream(stream) {}

  void seekTo(std::size_t place) {
    storeChanges();
    seek(m_stream, place);
    seek(m_stream, place - place % kBlockSize);
    m_pending = place % kBlockSize;
    m_loaded = false;
  }
  void write(const unsigned char* from, std::size_t count) {
    if (!m_loaded) {
      loadToWrite();
    }
    while (count != 0) {
      if (m_position == kBlockSize) {
        storeChanges();
        loadToWrite();
      }
      const std::size_t chunk = std::min(count, kBlockSize - m_position);
      std::copy_n(from, chunk, m_block + m_position);
      m_position += chunk;
      m_valid = std::max(m_valid, m_position);
      m_dirty = true;
      from += chunk;
      count -= chunk;
    }
  }
  void read(unsigned char* to, std::size_t count) {
    while (count != 0) {
      if (m_position == m_valid) {
        load();
        must(m_valid != 0, "read");
      }
      const std::size_t chunk = std::min(count, m_valid - m_position);
      std::copy_n(m_block + m_position, chunk, to);
      m_position += chunk;
      to += chunk;
      count -= chunk;
    }
  }
  void flush() {
    storeChanges();
    must(std::fflush(m_stream) == 0, "fflush");
  }

 private:
  void load() {
    const std::size_t index = blockAt(m_stream);
    unsigned char stored[kBlockSize];
    m_valid = std::fread(stored, 1, kBlockSize, m_stream);
    if (m_valid != 0) {
      m_cipher.apply(index, stored, m_block, m_valid);
    }
    m_position = m_pending;
    m_pending = 0;
    m_loaded = true;
  }
  void loadToWrite() {
    const std::size_t place = static_cast<std::size_t>(ftello(m_stream));
    load();
    seek(m_stream, place);
  }
  void storeChanges() {
    if (m_dirty) {
      unsigned char stored[kBlockSize];
      m_cipher.apply(blockAt(m_stream), m_block, stored, m_valid);
      must(std::fwrite(stored, 1, m_valid, m_stream) == m_valid, "fwrite");
      m_dirty = false;
    }
  }

  FILE* m_stream;
  Cipher m_cipher;
  unsigned char m_block[kBlockSize];
  std::size_t m_valid = 0;
  std::size_t m_position = 0;
  std::size_t m_pending = 0;
  bool m_dirty = false;
  bool m_loaded = false;
};

/// Whole blocks in calls of one size: only the last one of a call waits in memory.
class Runs {
 public:
  explicit Runs(FILE* stream) : m_stream(stream) {}

  void write(const unsigned char* from, std::size_t count) {
    m_stored.resize(kBlockSize + count);
    const std::size_t ahead = m_waiting ? kBlockSize : 0;
    const std::size_t run = count - kBlockSize;
    if (m_waiting) {
      m_cipher.apply(m_index, m_block, m_stored.data(), kBlockSize);
    }
    m_index += ahead / kBlockSize;
    m_cipher.apply(m_index, from, m_stored.data() + ahead, run);
    m_index += run / kBlockSize;
    must(std::fwrite(m_stored.data(), 1, ahead + run, m_stream) == ahead + run, "fwrite");
    std::copy_n(from + run, kBlockSize, m_block);
    m_waiting = true;
  }
  void read(unsigned char* to, std::size_t count) {
    must(std::fread(to, 1, count, m_stream) == count, "fread");
    m_cipher.apply(m_index, to, to, count);
    m_index += count / kBlockSize;
    std::copy_n(to + count - kBlockSize, kBlockSize, m_block);
  }
  void flush() {
    m_cipher.apply(m_index, m_block, m_stored.data(), kBlockSize);
    must(std::fwrite(m_stored.data(), 1, kBlockSize, m_stream) == kBlockSize &&
             std::fflush(m_stream) == 0,
         "fflush");
  }

 private:
  FILE* m_stream;
  RunningContext m_cipher;
  Bytes m_stored;
  unsigned char m_block[kBlockSize];
  std::size_t m_index = 0;  // of the block in memory when writing, else of the next one
  bool m_waiting = false;
};

template <class Transfer>
class StdioFile {
 public:
  static constexpr Stored kStored = Stored::Enciphered;

  StdioFile(const std::string& path, std::size_t callSize) : m_path(path), m_callSize(callSize) {}

  void write(const Bytes& plain) {
    const Stream stream = openStream(m_path, "w+b");
    Transfer transfer(stream.get());
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      transfer.write(plain.data() + at, m_callSize);
    }
    transfer.flush();
  }
  void read(Bytes& plain) {
    const Stream stream = openStream(m_path, "rb");
    Transfer transfer(stream.get());
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      transfer.read(plain.data() + at, m_callSize);
    }
  }
  void rewrite(const Places& places, const unsigned char* patch) {
    const Stream stream = openStream(m_path, "r+b");
    Transfer transfer(stream.get());
    for (const std::size_t place : places) {
      transfer.seekTo(place);
      transfer.write(patch, kPatchSize);
    }
    transfer.flush();
  }

 private:
  std::string m_path;
  std::size_t m_callSize;
};

template <class Cipher>
bool registerBlocks(const std::string& name) {
  return registerFilePeer<StdioFile<Blocks<Cipher>>, AllOfFile>("floor:stdio_blocks_" + name);
}

const bool kRegistered =
    registerBlocks<RunningContext>("running_context") &&
    registerBlocks<KeptContext>("kept_context") && registerBlocks<FreshContext>("fresh_context") &&
    registerFilePeer<StdioFile<Runs>, WriteFile | ReadFile>("floor:stdio_batched_runs");

}  // namespace

}  // namespace bench
