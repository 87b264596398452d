#include "core/PrivateFile.h"

#include <fcntl.h>

#include "core/StreamFile.h"
#include "core/linux/FileDescriptor.h"

namespace trelvo::core {

gom::SharedPointer<IFile> createPrivateFile(const std::string& path, unsigned int bufferSize) {
  constexpr int kOwnerOnly = 0600;
  FileDescriptor descriptor(
      ::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, kOwnerOnly));
  if (!descriptor.valid()) {
    return {};
  }
  Stream stream(::fdopen(descriptor.get(), "wb+"));
  if (stream != nullptr) {
    static_cast<void>(descriptor.release());  // it is the stream's now
  }
  return fileOver(std::move(stream), bufferSize, false);
}

}  // namespace trelvo::core
