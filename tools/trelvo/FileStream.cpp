#include "tools/trelvo/FileStream.h"

#include <cerrno>
#include <cstring>
#include <vector>

#include "tools/trelvo/Failure.h"

namespace trelvo::tool {

void throwWriteFailure(const FileStream& stream, const std::string& name) {
  const int error = stream.error();
  if (error == EPIPE) {
    throw ReaderGone();
  }
  throw Failure(name + ": " + (error != 0 ? std::strerror(error) : "cannot be written"));
}

void checkRead(const FileStream& stream, const std::string& name) {
  if (stream.error() != 0) {
    throw Failure(name + ": " + std::strerror(stream.error()));
  }
}

void copyAll(FileStream& from, const std::string& fromName, FileStream& to,
             const std::string& toName) {
  constexpr unsigned int kBlockSize = 65536;
  std::vector<unsigned char> block(kBlockSize);
  while (const unsigned int got = from.read(block.data(), kBlockSize)) {
    if (to.write(block.data(), got) != got) {
      throwWriteFailure(to, toName);
    }
  }
  checkRead(from, fromName);
  if (!to.flush()) {
    throwWriteFailure(to, toName);
  }
}

}  // namespace trelvo::tool
