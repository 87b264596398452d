#include <trelvo/DecryptorLin.h>

namespace trelvo {

Status DecryptorLin::start(const crypto::CryptoParams& params) {
  return startAs(DirectionDecrypt, params);
}

Status DecryptorLin::add_chunk(const ReadOnlyBuffer& input, Buffer& output) {
  return passThrough(input, output);
}

Status DecryptorLin::finish(Buffer& output) { return passLast(output); }

}  // namespace trelvo
