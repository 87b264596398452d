#pragma once

#include <cstdint>
#include <cstring>

namespace trelvo::test {

/// Where an operation stands in its class's table of virtual functions. The two destructors of a
/// class that has nothing ahead of them are 0 and 1. As the C++ ABI of Linux has it, on every
/// processor: the first word of the pointer is the place in the table, in some with the lowest bit
/// as a mark.
template <class Operation>
std::uintptr_t slot(Operation operation) {
  std::uintptr_t first = 0;
  std::memcpy(&first, &operation, sizeof first);
  return first / sizeof(void*);
}

}  // namespace trelvo::test
