#pragma once

#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>

#include <cstdint>

#include "tools/trelvo/CaptureStream.h"
#include "tools/trelvo/ContainerInput.h"

namespace trelvo::tool {

/// One object of a file, decoded.
struct ContainerItem {
  std::uint64_t offset = 0;                                    ///< of its first byte in the file
  gom::SharedPointer<gom::GenericObject> object;               ///< never empty
  gom::SharedPointer<schema::MeasurementContainer> container;  ///< empty for another kind
  gom::SharedPointer<schema::Injection> injection;             ///< empty for another kind
};

/// Reads a file of containers, one object in memory at a time:
///
///   ContainerReader reader(file, store, context);
///   for (ContainerItem item; reader.next(item);) {
///     if (item.container) ...
///   }
///
/// Failures: damage throws Failure with the byte and the reason that `trelvo show` gives, after the
/// objects ahead of it have been handed out: "drive.trelvo: stops at byte 42: the input ends inside
/// an object key". Memory that ran out throws std::bad_alloc. Threads: one at a time.
class ContainerReader {
 public:
  /// Opens `file`: see ContainerInput.
  ContainerReader(const std::string& file, const StoreOptions& store,
                  const CommandContext& context);

  /// Reads the next object into `item`. @return false at the end of the file, `item` unchanged.
  /// Throws Failure.
  bool next(ContainerItem& item);

  /// Where next() goes on, in bytes from the start of the file.
  std::uint64_t position() const { return m_capture.position(); }

  ContainerInput& input() { return m_input; }

 private:
  gom::SharedPointer<gom::GenericObject> readObject();
  [[noreturn]] void failAt(std::uint64_t offset);

  ContainerInput m_input;
  CaptureStream m_capture;
};

}  // namespace trelvo::tool
