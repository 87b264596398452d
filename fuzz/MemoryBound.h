#pragma once

#include <cstddef>

namespace trelvo::fuzz {

/// While it lives, this thread may have no more in use, beyond what it had before, than 64 bytes
/// for each byte of the input and a constant; what goes beyond ends the program where it is asked
/// for.
///
/// Counted are the blocks of the global operator new, which MemoryBound.cpp replaces. Where bounds
/// nest, the inner one counts while it lives.
class MemoryBound {
 public:
  static constexpr std::size_t kBytesPerInputByte = 64;
  static constexpr std::size_t kConstant = 8192;

  explicit MemoryBound(std::size_t inputSize, std::size_t constant = kConstant);
  ~MemoryBound();
  MemoryBound(const MemoryBound&) = delete;
  MemoryBound& operator=(const MemoryBound&) = delete;

 private:
  long long m_outerLimit;
};

}  // namespace trelvo::fuzz
