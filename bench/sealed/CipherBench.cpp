// The cipher by itself over 64 KiB, in blocks of 512 bytes, beside one call of OpenSSL for all of
// them: sealed/cipher/PEER. The library's is taken out of its sources, below the block file.

#include <benchmark/benchmark.h>

#include "bench/sealed/Counter.h"
#include "bench/sealed/FileBench.h"
#include "crypto/CounterCipher.h"

namespace bench {

namespace {

constexpr std::size_t kSize = 64 << 10;
constexpr std::size_t kBlocks = kSize / kBlockSize;

class LibraryContext {
 public:
  void apply(std::size_t block, const unsigned char* from, unsigned char* to, std::size_t size) {
    must(m_cipher.apply(kKey.data(), counterAt(block * (kBlockSize / 16)).data(), from, to,
                        static_cast<unsigned int>(size)) == trelvo::StatusOk,
         "CounterCipher::apply");
  }

 private:
  trelvo::crypto::CounterCipher m_cipher;
};

template <class Context>
class OneCall {
 public:
  void pass(const unsigned char* from, unsigned char* to) { m_context.apply(0, from, to, kSize); }

 private:
  Context m_context;
};

/// Blocks of which each follows the one before, or none does.
template <class Context, bool kFollowing>
class BlockByBlock {
 public:
  void pass(const unsigned char* from, unsigned char* to) {
    for (std::size_t i = 0; i < kBlocks; ++i) {
      const std::size_t block = kFollowing ? i : kBlocks - 1 - i;
      m_context.apply(block, from + block * kBlockSize, to + block * kBlockSize, kBlockSize);
    }
  }

 private:
  Context m_context;
};

template <class Cipher>
void cipherBench(benchmark::State& state) {
  Bytes to(kSize), expected(kSize);
  OneCall<KeptContext>().pass(content().data(), expected.data());
  Cipher cipher;
  for (auto _ : state) {
    cipher.pass(content().data(), to.data());
    benchmark::ClobberMemory();
  }
  if (to != expected) {
    state.SkipWithError("these are other bytes");
  }
}

BENCHMARK(cipherBench<OneCall<KeptContext>>)->Name("sealed/cipher/one_call");
BENCHMARK(cipherBench<BlockByBlock<RunningContext, true>>)->Name("sealed/cipher/running_context");
BENCHMARK(cipherBench<BlockByBlock<KeptContext, false>>)->Name("sealed/cipher/kept_context");
BENCHMARK(cipherBench<BlockByBlock<FreshContext, false>>)->Name("sealed/cipher/fresh_context");
BENCHMARK(cipherBench<OneCall<LibraryContext>>)->Name("sealed/cipher/lib:trelvo_run");
BENCHMARK(cipherBench<BlockByBlock<LibraryContext, true>>)
    ->Name("sealed/cipher/lib:trelvo_following");
BENCHMARK(cipherBench<BlockByBlock<LibraryContext, false>>)
    ->Name("sealed/cipher/lib:trelvo_single");

}  // namespace

}  // namespace bench
