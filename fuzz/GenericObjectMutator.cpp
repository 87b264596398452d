// What libFuzzer calls for a new input: half of the changes know the wire form, half do not.

#include <algorithm>
#include <cstdint>

#include "fuzz/WireMutator.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
  trelvo::fuzz::Bytes bytes(data, data + size);
  const bool mutated = seed % 2 == 0 && trelvo::fuzz::WireMutator(bytes, seed / 2).mutate();
  if (!mutated || bytes.empty() || bytes.size() > maxSize) {
    return LLVMFuzzerMutate(data, size, maxSize);
  }
  std::copy(bytes.begin(), bytes.end(), data);
  return bytes.size();
}
