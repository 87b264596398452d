#include "tools/trelvo/FetchFailure.h"

namespace trelvo::tool {
namespace {

constexpr int kFound = 200;
constexpr int kMissing = 404;

std::string explainAnswer(int code) {
  const std::string answer = "the server answers " + std::to_string(code) + "; ";
  if (code == kMissing) {
    return "the server has no such file; check the path";
  }
  if (code >= 300 && code < 400) {
    return answer + "redirects are not followed, ask for the address that it has moved to";
  }
  return answer + (code >= 500 ? "try again later" : "check the address");
}

const char* explainFailed(const FetchEnd& end) {
  if (end.code == 0) {
    return "no answer; check the address and the network";
  }
  return end.isDeciphered
             ? "the body broke off or does not fit the key; check --decrypt-key and --decrypt-iv"
             : "the transfer broke off; fetch it again";
}

const char* explainMismatch(bool isChecked) {
  return isChecked ? "has another checksum or length than expected; check --crc, or fetch it again"
                   : "is shorter than the server said; fetch it again";
}

}  // namespace

std::string explain(const FetchEnd& end) {
  switch (end.status) {
    case StatusCancelled:
      return "cancelled; fetch it again";
    case StatusNoConnection:
      return "another connection was used than --allow permits; fetch it again";
    case StatusOutOfMemory:
      return "out of memory; try again later";
    case StatusChecksumMismatch:
      return explainMismatch(end.isChecked);
    default:
      return end.code == 0 || end.code == kFound ? explainFailed(end) : explainAnswer(end.code);
  }
}

}  // namespace trelvo::tool
