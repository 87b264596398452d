#pragma once

#include <trelvo/schema/MeasurementContainer.h>

#include <array>
#include <optional>
#include <string_view>

namespace trelvo::tool {

/// The six bytes of an address.
using MacAddress = std::array<unsigned char, 6>;

/// The bytes of "01:23:45:67:89:ab", with colons, hyphens or nothing between the pairs; empty when
/// it is anything else.
std::optional<MacAddress> macAddress(std::string_view text);

/// One WLAN access point as an input gives it.
struct HeardAccessPoint {
  MacAddress address = {};
  std::optional<signed char> level;       ///< dBm
  std::optional<unsigned char> rssi;      ///< on the receiver's own scale
  std::optional<unsigned int> timeStamp;  ///< Unix seconds
};

/// What importers count when macAddress() gives nothing.
constexpr const char* kBadAddress = "access point without a usable address";

/// Adds a WLAN measurement, with the address in 6 bytes, to `container`.
void addAccessPoint(const HeardAccessPoint& accessPoint, schema::MeasurementContainer& container);

}  // namespace trelvo::tool
