#include <trelvo/EncryptorLin.h>

namespace trelvo {

Status EncryptorLin::start(const crypto::CryptoParams& params) {
  return startAs(DirectionEncrypt, params);
}

Status EncryptorLin::add_chunk(const ReadOnlyBuffer& input, Buffer& output) {
  return passThrough(input, output);
}

Status EncryptorLin::finish(Buffer& output) { return passLast(output); }

}  // namespace trelvo
