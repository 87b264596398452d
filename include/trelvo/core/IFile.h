#pragma once

#include <trelvo/Export.h>
#include <trelvo/IStream.h>
#include <trelvo/gom/ReferenceCountable.h>

namespace trelvo::core {

/// An open file: a stream that is held by handle and closed with its last one.
///
/// Directory::openFile() and Directory::createFile() make it. An application may derive its own,
/// for whatever takes a file: an encrypted file or log stands over any IFile.
/// Threads: one at a time.
class TRELVO_EXPORT IFile : public gom::ReferenceCountable, public IStream {
 public:
  ~IFile() override;

  IFile(const IFile&) = delete;
  IFile& operator=(const IFile&) = delete;

 protected:
  IFile() = default;
};

}  // namespace trelvo::core
