#pragma once

#include <optional>
#include <string>

#include "tools/trelvo/DescriptorStream.h"
#include "tools/trelvo/ImportCounts.h"
#include "tools/trelvo/ImportTarget.h"
#include "tools/trelvo/UniqueFd.h"

namespace trelvo::tool {

/// The name under which an output file grows. Unless commit() gives it its final name, it is
/// removed.
///
/// The temporary file lies beside the final one. What is there and is no regular file (a device, a
/// pipe) is written in place. A symbolic link stays, and the file behind it is replaced.
class ImportFile {
 public:
  /// Creates the temporary file. Throws ImportError.
  explicit ImportFile(const std::string& path);
  ImportFile(const ImportFile&) = delete;
  ImportFile& operator=(const ImportFile&) = delete;
  ~ImportFile();

  /// The open descriptor; it stays the file's.
  int descriptor() const { return m_descriptor.get(); }

  /// Where the bytes are until commit().
  const std::string& currentPath() const { return m_current; }

  /// Waits until the bytes are on the disk and gives the file its final name. Throws ImportError.
  void commit();

 private:
  std::string m_final;
  std::string m_current;
  UniqueFd m_descriptor;
};

/// Writes containers one after the other in the wire format.
class ContainerWriter : public ImportTarget {
 public:
  /// Writes to `descriptor`, which stays its owner's. `name` is what messages call it.
  ContainerWriter(int descriptor, std::string name);

  /// Hands on what is buffered. Throws ImportError or ReaderGone.
  void finish();

  const ImportCounts& counts() const { return m_counts; }
  std::uint64_t bytes() const { return m_stream.position(); }

 private:
  void take(const schema::MeasurementContainer& container) override;
  void take(const schema::Injection& injection) override;
  template <class Container>
  void writeOut(const Container& container);
  [[noreturn]] void fail() const;

  DescriptorStream m_stream;
  std::string m_name;
  ImportCounts m_counts;
};

/// Reads a file of containers back while an import runs a second time, and compares each container
/// with the one that the import makes again: as objects, and as the bytes of their wire form.
class ContainerVerifier : public ImportTarget {
 public:
  /// Reads the file at `path`; messages call it `name`. Throws ImportError.
  ContainerVerifier(const std::string& path, std::string name);

  /// Throws ImportError when the file holds more than was compared.
  void finish();

 private:
  void take(const schema::MeasurementContainer& container) override {
    compare(container.wrappedObject());
  }
  void take(const schema::Injection& injection) override { compare(injection.wrappedObject()); }
  void compare(const gom::SharedPointer<gom::GenericObject>& expected);
  [[noreturn]] void fail(const std::string& reason) const;

  DescriptorStream m_stream;
  std::string m_name;
};

}  // namespace trelvo::tool
