// The cipher by itself over 64 KiB in blocks of 512 bytes, beside one call of OpenSSL for all of
// them: sealed/cipher/PEER.

#include <benchmark/benchmark.h>
#include <trelvo/CryptoFileLin.h>
#include <trelvo/core/Directory.h>

#include <algorithm>

#include "bench/TemporaryFiles.h"
#include "bench/sealed/Counter.h"
#include "bench/sealed/FileBench.h"

namespace bench {

namespace {

constexpr std::size_t kSize = 64 << 10;
constexpr std::size_t kBlocks = kSize / kBlockSize;

class OneCall {
 public:
  void pass(const unsigned char* from, unsigned char* to) { m_context.apply(0, from, to, kSize); }

 private:
  KeptContext m_context;
};

template <class Context>
class BlockByBlock {
 public:
  void pass(const unsigned char* from, unsigned char* to) {
    for (std::size_t block = 0; block < kBlocks; ++block) {
      m_context.apply(block, from + block * kBlockSize, to + block * kBlockSize, kBlockSize);
    }
  }

 private:
  Context m_context;
};

/// Fills the block buffer, which encryptBlock() takes its bytes from.
class OpenBlocks : public trelvo::CryptoFileLin {
 public:
  explicit OpenBlocks(const unsigned char* block)
      : CryptoFileLin(trelvo::core::Directory::createFile(temporaryFile("cipher"), 0), kKey.data(),
                      kIv.data()) {
    std::copy_n(block, kBlockSize, m_buffer);
    m_validBytes = kBlockSize;
  }
};

/// The library's blocks, in an order in which each follows the one before, or none does.
template <bool kFollowing>
class TrelvoBlocks {
 public:
  void pass(const unsigned char*, unsigned char* to) {
    for (std::size_t i = 0; i < kBlocks; ++i) {
      const std::size_t block = kFollowing ? i : kBlocks - 1 - i;
      unsigned int size = 0;
      must(m_file.encryptBlock(static_cast<unsigned int>(block), to + block * kBlockSize, size) ==
               trelvo::StatusOk,
           "encryptBlock");
    }
  }

 private:
  OpenBlocks m_file{content().data()};
};

template <class Cipher>
void cipherBench(benchmark::State& state) {
  Bytes from(kSize);  // the same block again and again: the library's lie in its one buffer
  for (std::size_t at = 0; at < kSize; at += kBlockSize) {
    std::copy_n(content().data(), kBlockSize, from.data() + at);
  }
  Bytes to(kSize), expected(kSize);
  OneCall().pass(from.data(), expected.data());
  Cipher cipher;
  for (auto _ : state) {
    cipher.pass(from.data(), to.data());
    benchmark::ClobberMemory();
  }
  if (to != expected) {
    state.SkipWithError("these are other bytes");
  }
}

BENCHMARK(cipherBench<OneCall>)->Name("sealed/cipher/one_call");
BENCHMARK(cipherBench<BlockByBlock<RunningContext>>)->Name("sealed/cipher/running_context");
BENCHMARK(cipherBench<BlockByBlock<KeptContext>>)->Name("sealed/cipher/kept_context");
BENCHMARK(cipherBench<BlockByBlock<FreshContext>>)->Name("sealed/cipher/fresh_context");
BENCHMARK(cipherBench<TrelvoBlocks<true>>)->Name("sealed/cipher/lib:trelvo_run");
BENCHMARK(cipherBench<TrelvoBlocks<false>>)->Name("sealed/cipher/lib:trelvo_single");

}  // namespace

}  // namespace bench
