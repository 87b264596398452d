#pragma once

// What the bytes of a download go through on their way into the file, each stage by the library
// that a caller would take for it.

#include <libdeflate.h>
#include <zlib.h>

#include <boost/crc.hpp>
#include <cstddef>
#include <vector>

#include "bench/Must.h"
#include "bench/http/Server.h"
#include "bench/sealed/Counter.h"

namespace bench {

struct Piece {
  const unsigned char* bytes = nullptr;
  std::size_t size = 0;
};

// -- ciphers: the form they take, and what comes out of a piece and at the end
// ---------------------

struct NoCipher {
  static constexpr Served kServed = Served::Plain;

  static Piece pass(Piece piece) { return piece; }
  static Piece finish() { return {}; }
};

/// One context from start to end, into memory that stays.
class OpenSslCbc {
 public:
  static constexpr Served kServed = Served::Enciphered;

  OpenSslCbc() : m_context(EVP_CIPHER_CTX_new()) {
    must(EVP_DecryptInit_ex(m_context.get(), EVP_aes_128_cbc(), nullptr, kKey.data(), kIv.data()) ==
             1,
         "EVP_DecryptInit_ex");
  }
  Piece pass(Piece piece) {
    if (m_plain.size() < piece.size + kKey.size()) {
      m_plain.resize(piece.size + kKey.size());
    }
    int size = 0;
    must(EVP_DecryptUpdate(m_context.get(), m_plain.data(), &size, piece.bytes,
                           static_cast<int>(piece.size)) == 1,
         "EVP_DecryptUpdate");
    return {m_plain.data(), static_cast<std::size_t>(size)};
  }
  Piece finish() {
    int size = 0;
    must(EVP_DecryptFinal_ex(m_context.get(), m_plain.data(), &size) == 1, "EVP_DecryptFinal_ex");
    return {m_plain.data(), static_cast<std::size_t>(size)};
  }

 private:
  Context m_context;
  std::vector<unsigned char> m_plain;
};

// -- checksums
// -------------------------------------------------------------------------------------

struct NoSum {
  static void add(Piece) {}
  static bool matches() { return true; }
};

class ZlibSum {
 public:
  void add(Piece piece) { m_sum = crc32_z(m_sum, piece.bytes, piece.size); }
  bool matches() const { return m_sum == bodyChecksum(); }

 private:
  uLong m_sum = 0;
};

class BoostSum {
 public:
  void add(Piece piece) { m_sum.process_bytes(piece.bytes, piece.size); }
  bool matches() const { return m_sum.checksum() == bodyChecksum(); }

 private:
  boost::crc_32_type m_sum;
};

/// By carry-less multiplication, where the processor has it.
class LibdeflateSum {
 public:
  void add(Piece piece) { m_sum = libdeflate_crc32(m_sum, piece.bytes, piece.size); }
  bool matches() const { return m_sum == bodyChecksum(); }

 private:
  unsigned int m_sum = 0;
};

}  // namespace bench
