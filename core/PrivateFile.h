#pragma once

#include <string>

#include <trelvo/core/IFile.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::core {

/// What Directory::createFile() does, for secrets: a file that is made has mode 0600, less the
/// umask, from its first moment. One that is there is emptied and keeps its mode.
[[nodiscard]] gom::SharedPointer<IFile> createPrivateFile(const std::string& path,
                                                          unsigned int bufferSize);

}  // namespace trelvo::core
