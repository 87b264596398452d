#pragma once

// The workloads a, b, c, i and j, the same for every peer.
//
//   a  one GERAN measurement, serving cell and 6 neighbours
//   b  a container: 1 E-UTRA cell with 6 neighbours, 20 access points, 1 fix
//   c  a container with 1,000 access points
//   i  encode and decode of containers with 10 to 100,000 access points
//   j  an injection: 20 GERAN cells with 6 neighbours each, all with their coverage; for this
//      library, its floor and protobuf
//
// A peer states itself as a codec, a class template over the sample:
//
//   explicit Codec(const Sample&);  keeps a built object and its written form
//   std::size_t encode();           builds the object anew and writes it; gives the bytes written
//   std::size_t write();            writes the kept object
//   void decode();                  reads the kept written form into a new object
//   std::uint64_t decodeAndRead();  the same, then every field into a Digest
//
// Benchmarks are called wire/WORKLOAD/OPERATION/PEER. Only ratios within one run mean anything.

#include <benchmark/benchmark.h>

#include <string>

#include "bench/Samples.h"

namespace bench {

enum Operations : unsigned int {
  Encode = 1,
  Write = 2,
  Decode = 4,
  DecodeRead = 8,
  Linearity = 16,  ///< Takes part in workload i.
  All = 31
};

template <class Sample>
std::uint64_t digestOf(const Sample& sample) {
  Digest digest;
  visit(sample, digest);
  return digest.sum();
}

/// Runs `operation` on a fresh codec for every iteration. A peer that does not give back what was
/// put in is reported as an error instead of a time.
template <class Codec, class Sample, class Operation>
void measure(benchmark::State& state, const Sample& sample, Operation operation) {
  Codec codec(sample);
  if (codec.decodeAndRead() != digestOf(sample)) {
    state.SkipWithError("what was read is not what was written");
    return;
  }
  for (auto _ : state) {
    operation(codec);
  }
  state.counters["bytes"] = static_cast<double>(codec.write());
}

template <class Codec, class MakeSample>
void registerWorkload(const std::string& workload, const std::string& peer, unsigned int operations,
                      MakeSample makeSample) {
  const auto add = [&](unsigned int bit, const char* name, auto operation) {
    if ((operations & bit) != 0) {
      benchmark::RegisterBenchmark(
          ("wire/" + workload + "/" + name + "/" + peer).c_str(),
          [=](benchmark::State& state) { measure<Codec>(state, makeSample(), operation); });
    }
  };
  add(Encode, "encode", [](Codec& codec) { benchmark::DoNotOptimize(codec.encode()); });
  add(Write, "write_prebuilt", [](Codec& codec) { benchmark::DoNotOptimize(codec.write()); });
  add(Decode, "decode", [](Codec& codec) { codec.decode(); });
  add(DecodeRead, "decode_read",
      [](Codec& codec) { benchmark::DoNotOptimize(codec.decodeAndRead()); });
}

/// Adds a peer to workload j.
template <template <class> class Codec>
bool registerInjections(const std::string& peer, unsigned int operations = All) {
  registerWorkload<Codec<InjectionSample>>("j", peer, operations, injectionSample);
  return true;
}

/// Adds a peer to workloads a, b, c and i.
template <template <class> class Codec>
bool registerPeer(const std::string& peer, unsigned int operations = All) {
  registerWorkload<Codec<GeranSample>>("a", peer, operations, geranSample);
  registerWorkload<Codec<ContainerSample>>("b", peer, operations, mixedSample);
  registerWorkload<Codec<ContainerSample>>("c", peer, operations, [] { return wlanSample(1000); });
  if ((operations & Linearity) == 0) {
    return true;
  }
  for (const std::size_t count : {10U, 100U, 1000U, 10000U, 100000U}) {
    benchmark::RegisterBenchmark(("wire/i/" + std::to_string(count) + "/" + peer).c_str(),
                                 [=](benchmark::State& state) {
                                   measure<Codec<ContainerSample>>(
                                       state, wlanSample(count), [](Codec<ContainerSample>& codec) {
                                         benchmark::DoNotOptimize(codec.encode());
                                         codec.decode();
                                       });
                                 });
  }
  return true;
}

}  // namespace bench
