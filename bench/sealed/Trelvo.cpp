// This library's encrypted file, as it is, and as a derived class, which goes block by block.

#include <trelvo/CryptoFileLin.h>
#include <trelvo/ICryptoFile.h>
#include <trelvo/core/Directory.h>

#include "bench/sealed/Counter.h"
#include "bench/sealed/FileBench.h"

namespace bench {

namespace {

using trelvo::CryptoFileLin;
using trelvo::ICryptoFile;
using trelvo::core::Directory;
using File = trelvo::gom::SharedPointer<trelvo::core::IFile>;

/// Another class, so that the library's takes no runs for it.
class Derived : public CryptoFileLin {
 public:
  using CryptoFileLin::CryptoFileLin;
};

template <class Class>
class TrelvoFile {
 public:
  static constexpr Stored kStored = Stored::Enciphered;

  TrelvoFile(const std::string& path, std::size_t callSize)
      : m_path(path), m_callSize(static_cast<unsigned int>(callSize)) {}

  void write(const Bytes& plain) {
    const Handle file(new Class(Directory::createFile(m_path, 0), kKey.data(), kIv.data()));
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      must(file->write(plain.data() + at, m_callSize) == m_callSize, "write");
    }
    must(file->flush(), "flush");
  }

  void read(Bytes& plain) {
    const Handle file(new Class(Directory::openFile(m_path, 0, true), kKey.data(), kIv.data()));
    for (std::size_t at = 0; at < plain.size(); at += m_callSize) {
      must(file->read(plain.data() + at, m_callSize) == m_callSize, "read");
    }
  }

  void rewrite(const Places& places, const unsigned char* patch) {
    const Handle file(new Class(Directory::openFile(m_path, 0, false), kKey.data(), kIv.data()));
    for (const std::size_t place : places) {
      must(file->seekFromStart(static_cast<unsigned int>(place)) &&
               file->write(patch, kPatchSize) == kPatchSize,
           "rewrite");
    }
    must(file->flush(), "flush");
  }

 private:
  using Handle = trelvo::gom::SharedPointer<ICryptoFile>;

  std::string m_path;
  unsigned int m_callSize;
};

const bool kRegistered = registerFilePeer<TrelvoFile<CryptoFileLin>, AllOfFile>("lib:trelvo") &&
                         registerFilePeer<TrelvoFile<Derived>, AllOfFile>("lib:trelvo_derived");

}  // namespace

}  // namespace bench
