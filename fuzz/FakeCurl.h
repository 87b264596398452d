#pragma once

#include <string>
#include <vector>

#include "fuzz/Target.h"

namespace trelvo::fuzz {

/// What the next transfers give. FakeCurl.cpp stands before libcurl: a handle keeps its callbacks,
/// and a transfer hands them what stands here, as libcurl does, without a server or a connection.
struct Transfer {
  /// One call of a callback.
  struct Piece {
    enum Kind { Header, Body, Progress };
    Kind kind = Header;
    Bytes bytes;
  };

  long code = 0;     ///< The answer's status.
  long time = 0;     ///< When the remote file was changed.
  bool ends = true;  ///< Whether it ends where it should, or early.
  std::vector<Piece> pieces;
};

Transfer& nextTransfer();

}  // namespace trelvo::fuzz
