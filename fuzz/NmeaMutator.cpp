// What libFuzzer calls for a new receiver log: a change of its own, after which most of the
// sentences get the checksum without which they would not be read.

#include <cstddef>
#include <cstdint>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

void correctChecksums(std::uint8_t* data, std::size_t size) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  unsigned int sum = 0;
  for (std::size_t i = 0; i + 2 < size; ++i) {
    if (data[i] == '*') {
      data[i + 1] = static_cast<std::uint8_t>(kDigits[sum / 16]);
      data[i + 2] = static_cast<std::uint8_t>(kDigits[sum % 16]);
    }
    sum = data[i] == '$' ? 0 : sum ^ data[i];
  }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed) {
  const std::size_t changed = LLVMFuzzerMutate(data, size, maxSize);
  if (seed % 8 != 0) {
    correctChecksums(data, changed);
  }
  return changed;
}
