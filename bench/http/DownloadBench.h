#pragma once

// Downloads, workload g: 256 MiB from an nginx on the loopback interface into a file, plain, with
// CRC-32, with AES-128 in CBC mode, and with both.
//
// A peer states itself as a class:
//
//   static constexpr Served kServed;                       the form that it downloads
//   void download(const Source&, const std::string& path); makes the file, whatever it takes
//
// What counts is the processor time of the downloading side, in the kernel too and that of a
// program it starts, not the server's, and not the wait for the server. Removing the file is off
// the clock, making its pages is not. Benchmarks are called http/WORKLOAD/PEER. Only ratios within
// one run mean anything.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "bench/TemporaryFiles.h"
#include "bench/http/Server.h"

namespace bench {

/// What this process and the children that it waited for have used so far, in seconds.
double processorTime();

/// Whether the file is the body, not enciphered.
bool holdsBody(const std::string& path);

template <class Peer>
void downloadBench(benchmark::State& state) {
  const Source source = sourceOf(Peer::kServed);
  const std::string path = temporaryFile("downloaded");
  bodyChecksum();
  for (auto _ : state) {
    std::remove(path.c_str());
    const double before = processorTime();
    Peer().download(source, path);
    state.SetIterationTime(processorTime() - before);
  }
  if (!holdsBody(path)) {
    state.SkipWithError("what came is not what was served");
  }
  std::remove(path.c_str());
}

/// Adds a peer to a workload.
template <class Peer>
bool registerDownload(const std::string& workload, const std::string& name) {
  benchmark::RegisterBenchmark(("http/" + workload + '/' + name).c_str(), downloadBench<Peer>)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
  return true;
}

}  // namespace bench
