#pragma once

#include <functional>

namespace trelvo::test {

// A test program that compiles AllocationFailure.cpp gets its own global operator new and delete,
// all forms, which count and can be told to fail. Below them is malloc, so sanitizers and valgrind
// see every block; as all forms come from here, memory from one form of new meets its own delete.
// What the sanitizers give up in such a program is to tell new from new[] and malloc: other test
// programs, which leave the operators alone, keep that check.
//
// Each run gets a thread of its own: where the library keeps freed blocks for a thread, it starts
// with none and has given all back when the run is over.

/// What a run asked the operators for.
struct Allocations {
  unsigned long long calls = 0;  ///< Calls of operator new.
  unsigned long long bytes = 0;  ///< Bytes asked for by them in all, freed or not.
  long long leaked = 0;          ///< Blocks that are left when the run is over.
};

/// Calls `run` and counts. An exception that leaves `run` fails the test.
Allocations allocationsOf(const std::function<void()>& run);

/// Calls `run` again and again: with its first allocation failing, then with its second, and so on,
/// until it gets through without reaching the one that fails. It does so twice, with that one
/// allocation failing, and with all from that one on. No run may leave a block behind or let an
/// exception out; `run` itself checks that the outcome is the promised one.
///
/// `run` starts from nothing and keeps nothing: what it makes dies in it.
/// @return how many allocations a run has that gets through.
unsigned long long everyAllocationFails(const std::function<void()>& run);

/// While it lives, allocations of this thread neither fail nor count as a step, for what a run has
/// to prepare or to check.
class AllocationsSucceed {
 public:
  AllocationsSucceed() noexcept;
  ~AllocationsSucceed();
  AllocationsSucceed(const AllocationsSucceed&) = delete;
  AllocationsSucceed& operator=(const AllocationsSucceed&) = delete;

 private:
  bool m_outer;
};

}  // namespace trelvo::test
