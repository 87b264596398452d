#pragma once

// The encrypted file, workload d, the same for every peer: 64 MiB in calls of 4 KiB and of 64 KiB,
// and 20,000 rewrites of 100 bytes at random places.
//
// A peer states itself as a class:
//
//   Peer(const std::string& path, std::size_t callSize);
//   void write(const Bytes&);           makes the file, in calls of that size
//   void read(Bytes&);                  fills all of it, in calls of that size
//   void rewrite(const Places&, const unsigned char* patch);
//   static constexpr Stored kStored;    what then lies in the file
//
// Each of the three opens the file and closes it, and brings everything to the system. Removing a
// file is off the clock, making its pages is not. Benchmarks are called
// sealed/OPERATION/CALLSIZE/PEER. Only ratios within one run mean anything.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

using Bytes = std::vector<unsigned char>;
using Places = std::vector<std::size_t>;

constexpr std::size_t kFileSize = 64 << 20;
constexpr std::size_t kSmallCall = 4 << 10;
constexpr std::size_t kLargeCall = 64 << 10;
constexpr std::size_t kPatchSize = 100;

/// What lies in a peer's file: the bytes themselves, the bytes enciphered in one go, or a form of
/// its own.
enum class Stored { Plain, Enciphered, Own };

enum FileOperations : unsigned int { WriteFile = 1, ReadFile = 2, RewriteFile = 4, AllOfFile = 7 };

/// The content of the file, noise to every compressor.
const Bytes& content();
/// The content, with the rewrites done.
const Bytes& rewrittenContent();
/// Where the rewrites go; each lies within 4 KiB, since SQLite's blobs are that long.
const Places& places();
/// What each rewrite puts there.
const unsigned char* patch();

/// Whether the file holds `plain` in the form that is stated.
bool holds(const std::string& path, const Bytes& plain, Stored form);
void removeFile(const std::string& path);

/// Whether `peer`'s file, and what it reads from that, are `plain`.
template <class Peer>
bool proves(Peer& peer, const std::string& path, const Bytes& plain) {
  Bytes got(plain.size());
  peer.read(got);
  return got == plain && holds(path, plain, Peer::kStored);
}

/// Times `operation` on a peer whose file has been written; one that does not give back what was
/// put in is reported as an error instead of a time.
template <class Peer, class Operation>
void measureFile(benchmark::State& state, const std::string& path, std::size_t callSize, bool anew,
                 const Bytes& expected, Operation operation) {
  removeFile(path);
  Peer peer(path, callSize);
  peer.write(content());
  for (auto _ : state) {
    if (anew) {
      state.PauseTiming();
      removeFile(path);
      state.ResumeTiming();
    }
    operation(peer);
  }
  if (!proves(peer, path, expected)) {
    state.SkipWithError("what was read is not what was written");
  }
  removeFile(path);
}

std::string pathOf(const std::string& peer);

/// Adds a peer to the operations.
template <class Peer, unsigned int operations>
bool registerFilePeer(const std::string& name) {
  const std::string path = pathOf(name);
  const auto add = [&](const std::string& operation, auto run) {
    benchmark::RegisterBenchmark(("sealed/" + operation + '/' + name).c_str(), run)
        ->Unit(benchmark::kMillisecond);
  };
  for (const std::size_t size : {kSmallCall, kLargeCall}) {
    const std::string suffix = size == kSmallCall ? "/4k" : "/64k";
    if constexpr ((operations & WriteFile) != 0) {
      add("write" + suffix, [=](benchmark::State& state) {
        measureFile<Peer>(state, path, size, true, content(),
                          [](Peer& peer) { peer.write(content()); });
      });
    }
    if constexpr ((operations & ReadFile) != 0) {
      add("read" + suffix, [=](benchmark::State& state) {
        Bytes target(kFileSize);
        measureFile<Peer>(state, path, size, false, content(),
                          [&](Peer& peer) { peer.read(target); });
      });
    }
  }
  if constexpr ((operations & RewriteFile) != 0) {
    add("rewrite", [=](benchmark::State& state) {
      measureFile<Peer>(state, path, kSmallCall, false, rewrittenContent(),
                        [](Peer& peer) { peer.rewrite(places(), patch()); });
    });
  }
  return true;
}

}  // namespace bench
