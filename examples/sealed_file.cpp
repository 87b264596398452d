// Keeps observations in a file that only this device can read, and shows what another one sees.
//
//   ICryptographyUtility    the key of a named store, made from a seed and the device's identity
//   ICryptoFile             a stream over a file whose bytes are stored encrypted
//
//   sealed_file DIRECTORY       leaves the seed and observations.sealed there

#include <cstdio>
#include <cstdlib>
#include <string>

#include <trelvo/trelvo.h>

namespace gom = trelvo::gom;
namespace schema = trelvo::schema;

using trelvo::ICryptoFile;
using trelvo::ICryptographyUtility;
using trelvo::core::Directory;

namespace {

// On a product the environment has it; here the program plays two devices.
gom::SharedPointer<ICryptographyUtility> keyOf(const char* device) {
  setenv("ORVE_UNIQUE_DEVICE_ID", device, 1);
  trelvo::Status status = trelvo::StatusOk;
  bool generated = false;
  gom::SharedPointer<ICryptographyUtility> key(
      ICryptographyUtility::open("observations", status, generated));
  if (key) std::printf("%s %s\n", device, generated ? "makes a key" : "has a key");
  return key;
}

bool store(const std::string& path, ICryptographyUtility& key) {
  const auto fix = schema::PositionEstimate::create(52.5163, 13.3777, 12.5, 1700000000);
  const auto container = schema::MeasurementContainer::create();
  if (!fix || !container) return false;
  const auto measurement = schema::GnssMeasurement::create(*fix);
  if (!measurement) return false;
  container->addGnssMeasurement(measurement->wrappedObject());

  const gom::SharedPointer<ICryptoFile> sealed(
      ICryptoFile::open(Directory::createFile(path, 0), key));
  // What a full disk refuses shows at the flush at the latest.
  return sealed && container->write(*sealed) && sealed->flush();
}

// The encrypted form has no checksum: with another key other bytes come out, and the object's own
// form tells that they are none.
void show(const std::string& path, ICryptographyUtility& key) {
  const gom::SharedPointer<ICryptoFile> sealed(
      ICryptoFile::open(Directory::openFile(path, 0, true), key));
  gom::SharedPointer<schema::MeasurementContainer> container;
  try {
    if (sealed)
      container = schema::MeasurementContainer::create(gom::GenericObject::create(*sealed));
  } catch (trelvo::Status) {  // a class id that no class has
  }
  if (!container) {
    std::puts("  no observations in it");
    return;
  }
  const auto position = container->gnssMeasurement(0)->toPosition();
  if (position) std::printf("  fix at %.4f, %.4f\n", position->latitude(), position->longitude());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "Usage: sealed_file DIRECTORY\n");
    return 2;
  }
  Directory::setDefaultStoragePath(argv[1], false);  // where the library keeps the seed
  const std::string path = Directory::concat(argv[1], "observations.sealed");

  const auto key = keyOf("a device");
  if (!key || !store(path, *key)) return 1;
  show(path, *key);
  const auto same = keyOf("a device");
  if (!same) return 1;
  show(path, *same);
  const auto other = keyOf("another device");
  if (!other) return 1;
  show(path, *other);
}
