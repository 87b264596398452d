#include "tools/trelvo/HeardAccessPoint.h"

#include <trelvo/schema/WlanMeasurement.h>

#include "tools/trelvo/ImportTarget.h"
#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

std::optional<MacAddress> macAddress(std::string_view text) {
  const char separator = text.size() == 17 ? text[2] : '\0';
  const size_t width = separator == ':' || separator == '-' ? 3 : 2;
  MacAddress bytes{};
  if (text.size() != 5 * width + 2) {
    return std::nullopt;
  }
  for (size_t i = 0; i < bytes.size(); ++i) {
    const int high = hexDigit(text[i * width]);
    const int low = hexDigit(text[i * width + 1]);
    if (high < 0 || low < 0 || (width == 3 && i > 0 && text[i * width - 1] != separator)) {
      return std::nullopt;
    }
    bytes[i] = static_cast<unsigned char>(high * 16 + low);
  }
  return bytes;
}

void addAccessPoint(const HeardAccessPoint& accessPoint, schema::MeasurementContainer& container) {
  const auto dn = made(schema::WlanDn::create());
  dn->setBssid(accessPoint.address.data(), static_cast<unsigned int>(accessPoint.address.size()));
  const auto measurement = made(schema::WlanMeasurement::create());
  if (accessPoint.timeStamp) {
    expectStored(measurement->setTimeStamp(*accessPoint.timeStamp));
  }
  expectStored(measurement->setDn(dn));
  const auto heard = made(schema::WlanApMeasurement::create());
  if (accessPoint.level) heard->setRxLevel(*accessPoint.level);
  if (accessPoint.rssi) heard->setRssi(*accessPoint.rssi);
  if (!heard->isEmpty()) expectStored(measurement->setWlanApMeasurement(heard));
  expectStored(container.addWlanMeasurement(measurement->wrappedObject()));
}

}  // namespace trelvo::tool
