#pragma once

#include <string>

#include "tools/trelvo/FileStream.h"
#include "tools/trelvo/ImportCounts.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::tool {

/// Writes containers one after the other in the wire format.
class ContainerWriter : public ImportTarget {
 public:
  /// Writes to `stream`, which must outlive the writer. `name` is what messages call it.
  ContainerWriter(FileStream& stream, std::string name);

  /// Hands on what is buffered. Throws Failure or ReaderGone.
  void finish();

  const ImportCounts& counts() const { return m_counts; }
  std::uint64_t bytes() const { return m_stream.position(); }

 private:
  void take(const schema::MeasurementContainer& container) override;
  void take(const schema::Injection& injection) override;
  template <class Container>
  void writeOut(const Container& container);

  FileStream& m_stream;
  std::string m_name;
  ImportCounts m_counts;
};

/// Reads a file of containers back while an import runs a second time, and compares each container
/// with the one that the import makes again: as objects, and as the bytes of their wire form.
class ContainerVerifier : public ImportTarget {
 public:
  /// Reads `stream`, which must outlive the verifier; messages call it `name`. Throws
  /// Failure.
  ContainerVerifier(FileStream& stream, std::string name);

  /// Throws Failure when the file holds more than was compared.
  void finish();

 private:
  void take(const schema::MeasurementContainer& container) override {
    compare(container.wrappedObject());
  }
  void take(const schema::Injection& injection) override { compare(injection.wrappedObject()); }
  void compare(const gom::SharedPointer<gom::GenericObject>& expected);
  [[noreturn]] void fail(const std::string& reason) const;

  FileStream& m_stream;
  std::string m_name;
};

}  // namespace trelvo::tool
