// OpenSSL and the system's calls with nothing between: the least there is to do, and the same
// without any cipher.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include "bench/sealed/Counter.h"
#include "bench/sealed/FileBench.h"

namespace bench {

namespace {

class Descriptor {
 public:
  Descriptor(const std::string& path, int flags) : m_number(open(path.c_str(), flags, 0600)) {
    must(m_number >= 0, "open");
  }
  ~Descriptor() { close(m_number); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  operator int() const { return m_number; }

 private:
  int m_number;
};

void writeAll(int file, const unsigned char* bytes, std::size_t size) {
  must(write(file, bytes, size) == static_cast<ssize_t>(size), "write");
}

class PlainSystem {
 public:
  static constexpr Stored kStored = Stored::Plain;

  PlainSystem(const std::string& path, std::size_t callSize) : m_path(path), m_callSize(callSize) {}

  void write(const Bytes& plain) {
    const Descriptor file(m_path, O_RDWR | O_CREAT | O_TRUNC);
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      writeAll(file, plain.data() + at, m_callSize);
    }
  }
  void read(Bytes& plain) {
    const Descriptor file(m_path, O_RDONLY);
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      must(::read(file, plain.data() + at, m_callSize) == static_cast<ssize_t>(m_callSize), "read");
    }
  }
  void rewrite(const Places& places, const unsigned char* patch) {
    const Descriptor file(m_path, O_RDWR);
    for (const std::size_t place : places) {
      must(pwrite(file, patch, kPatchSize, static_cast<off_t>(place)) == kPatchSize, "pwrite");
    }
  }

 private:
  std::string m_path;
  std::size_t m_callSize;
};

class EncipheredSystem {
 public:
  static constexpr Stored kStored = Stored::Enciphered;

  EncipheredSystem(const std::string& path, std::size_t callSize)
      : m_path(path), m_callSize(callSize) {}

  void write(const Bytes& plain) {
    const Descriptor file(m_path, O_RDWR | O_CREAT | O_TRUNC);
    RunningContext cipher;
    Bytes stored(m_callSize);
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      cipher.apply(at / kBlockSize, plain.data() + at, stored.data(), m_callSize);
      writeAll(file, stored.data(), m_callSize);
    }
  }
  void read(Bytes& plain) {
    const Descriptor file(m_path, O_RDONLY);
    RunningContext cipher;
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      unsigned char* const piece = plain.data() + at;
      must(::read(file, piece, m_callSize) == static_cast<ssize_t>(m_callSize), "read");
      cipher.apply(at / kBlockSize, piece, piece, m_callSize);
    }
  }
  /// Enciphers from the cipher block's start, and writes just the bytes.
  void rewrite(const Places& places, const unsigned char* patch) {
    const Descriptor file(m_path, O_RDWR);
    KeptContext cipher;
    unsigned char bytes[16 + kPatchSize] = {};
    for (const std::size_t place : places) {
      const std::size_t ahead = place % 16;
      std::copy_n(patch, kPatchSize, bytes + ahead);
      cipher.applyAt(place / 16, bytes, bytes, ahead + kPatchSize);
      must(pwrite(file, bytes + ahead, kPatchSize, static_cast<off_t>(place)) == kPatchSize,
           "pwrite");
    }
  }

 private:
  std::string m_path;
  std::size_t m_callSize;
};

const bool kRegistered = registerFilePeer<EncipheredSystem, AllOfFile>("AES+system") &&
                         registerFilePeer<PlainSystem, AllOfFile>("plain");

}  // namespace

}  // namespace bench
