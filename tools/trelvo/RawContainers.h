#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tools/trelvo/CaptureStream.h"
#include "tools/trelvo/ContainerInput.h"

namespace trelvo::tool {

/// One object of a file as its bytes.
struct RawContainer {
  std::uint64_t number = 0;  ///< which one of the file, from 1
  std::uint64_t offset = 0;  ///< of its first byte in the file
  std::vector<unsigned char> bytes;
  std::optional<unsigned int> timeStamp;  ///< the latest in it, Unix seconds
};

/// Reads the objects of a file as their bytes, checked, one at a time.
///
/// Failures: damage throws Failure with the byte and the reason that `trelvo show` gives, after the
/// objects ahead of it have been handed out. Threads: one at a time.
class RawContainers {
 public:
  /// Reads `input`, which must outlive this object.
  explicit RawContainers(ContainerInput& input)
      : m_input(input), m_capture(input.stream(), input.stream().position()) {}

  /// Reads the next object into `container`. @return false at the end of the file, `container`
  /// unchanged. Throws Failure.
  bool next(RawContainer& container);

 private:
  ContainerInput& m_input;
  CaptureStream m_capture;
  std::uint64_t m_count = 0;
};

}  // namespace trelvo::tool
