#pragma once

#include <trelvo/Status.h>

#include <string>

namespace trelvo::tool {

/// How a request ended, as far as it helps to explain why it failed.
struct FetchEnd {
  Status status = StatusOk;
  int code = 0;               ///< of the server's answer, 0 without one
  bool isDeciphered = false;  ///< the body was to be deciphered
  bool isChecked = false;     ///< a checksum was given
};

/// What is wrong, and what to do, after a request that did not end with StatusOk.
std::string explain(const FetchEnd& end);

}  // namespace trelvo::tool
