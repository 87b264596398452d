// An importer of the command line program: the input is the file, TRELVO_IMPORT_FORMAT the format.

#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>

#include <sstream>

#include "fuzz/MemoryBound.h"
#include "fuzz/WireTarget.h"
#include "tests/support/LimitedStream.h"
#include "tools/trelvo/ImportFormat.h"
#include "tools/trelvo/ImportReport.h"
#include "tools/trelvo/ImportTarget.h"

namespace trelvo::fuzz {

namespace {

constexpr std::size_t kWorkspace = 1 << 18;

/// Writes each container, and has it read.
class CheckingTarget : public tool::ImportTarget {
 private:
  static void check(const GenericObjectWrapper& container) {
    const gom::GenericObject& object = container.object();
    const Bytes bytes = writtenForm(object);
    const auto fresh = gom::GenericObject::create(static_cast<unsigned short>(1));
    checkRoundTrip(object, static_cast<unsigned int>(bytes.size()), *fresh);
    require(object == *fresh, "what is imported reads back equal");
  }

  void take(const schema::MeasurementContainer& container) override { check(container); }
  void take(const schema::Injection& injection) override { check(injection); }
};

}  // namespace

void run(const Bytes& bytes) {
  test::LimitedStream stream(bytes);
  tool::ImportReport report;
  CheckingTarget target;
  {
    const MemoryBound bound(bytes.size(), kWorkspace);
    tool::importStream(stream, "input", tool::ImportFormat::TRELVO_IMPORT_FORMAT, {}, report,
                       target);
  }
  std::ostringstream text;
  report.print(text);
}

}  // namespace trelvo::fuzz
