#pragma once

#include <string>

#include <trelvo/Export.h>

namespace trelvo::core {

/// Who this device is, as told by whoever starts the process, in environment variables:
///
/// | Variable | Read by |
/// |---|---|
/// | `ORVE_DEVICE_TERMINAL_MODEL` | getModelId(), getMMF() |
/// | `ORVE_DEVICE_MANUFACTURER` | getManufacturer(), getMMF() |
/// | `ORVE_DEVICE_FIRMWARE_VERSION` | getFirmware(), getMMF() |
/// | `ORVE_IMEI_FRAGMENT` | getImei() |
/// | `ORVE_SIM_MCC` | getHomeMcc(), getImsi() |
/// | `ORVE_SIM_MNC` | getHomeMnc(), getImsi() |
///
/// A getter returns true when it has a value that is not empty. Where its variable is not set it
/// leaves the string as it was: preset it where false needs a defined value.
/// std::bad_alloc passes through. Threads: any, as long as nobody changes the environment.
class TRELVO_EXPORT SystemInfo {
 public:
  /// Objects have no content; all operations are static.
  SystemInfo() = default;

  /// Gives "ubuntu"; always true.
  static bool getPlatformId(std::string& id);

  /// Gives the variable's value, unchanged. @return false for an empty value, which the string then
  /// has, and for none.
  static bool getModelId(std::string& model);
  static bool getManufacturer(std::string& manufacturer);
  static bool getFirmware(std::string& firmware);

  /// The same for the SIM's home network: mobile country code and mobile network code.
  static bool getHomeMcc(std::string& mcc);
  static bool getHomeMnc(std::string& mnc);

  /// Gives the equipment identity with only its first 8 characters kept, which name the type of
  /// device; zeros stand for the others, up to 15 characters. A longer value keeps its length.
  static bool getImei(std::string& imei);

  /// Gives a subscriber identity that names the home network only: MCC, MNC, and zeros up to 15
  /// characters. @return false, with the string as it was, when either code is missing or empty.
  static bool getImsi(std::string& imsi);

  /// Gives "manufacturer;model;firmware", always true. What is not known is empty, and a ";" inside
  /// of the three becomes "_".
  static bool getMMF(std::string& mmf);

  /// The platform has no level to offer: always false, with `level` as it was.
  static bool getBatteryLevel(unsigned char& level);

  /// Have no effect on this platform, where the values come from the environment alone.
  static void setBatteryLevel(signed char level);
  static void setModelId(const std::string& model);
  static void setFirmware(const std::string& firmware);
  static void setImei(const std::string& imei);
  static void setHomeMccMnc(unsigned short mcc, unsigned short mnc);
};

}  // namespace trelvo::core
