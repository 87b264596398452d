#include <trelvo/core/SystemInfo.h>

#include <algorithm>
#include <cstdlib>

namespace trelvo::core {

namespace {

// The length of an equipment identity with its check digit, and of a subscriber identity.
constexpr std::size_t kIdentityLength = 15;
// The type allocation code: what of an equipment identity does not tell one device from another.
constexpr std::size_t kTypeLength = 8;

bool readVariable(const char* name, std::string& value) {
  const char* const text = std::getenv(name);
  if (text == nullptr) {
    return false;
  }
  value = text;
  return !value.empty();
}

void padWithZeros(std::string& identity) {
  identity.resize(std::max(identity.size(), kIdentityLength), '0');
}

std::string withoutSemicolons(bool (*get)(std::string&)) {
  std::string value;
  static_cast<void>(get(value));
  std::replace(value.begin(), value.end(), ';', '_');
  return value;
}

}  // namespace

bool SystemInfo::getPlatformId(std::string& id) {
  id = "ubuntu";
  return true;
}

bool SystemInfo::getModelId(std::string& model) {
  return readVariable("ORVE_DEVICE_TERMINAL_MODEL", model);
}

bool SystemInfo::getManufacturer(std::string& manufacturer) {
  return readVariable("ORVE_DEVICE_MANUFACTURER", manufacturer);
}

bool SystemInfo::getFirmware(std::string& firmware) {
  return readVariable("ORVE_DEVICE_FIRMWARE_VERSION", firmware);
}

bool SystemInfo::getHomeMcc(std::string& mcc) { return readVariable("ORVE_SIM_MCC", mcc); }

bool SystemInfo::getHomeMnc(std::string& mnc) { return readVariable("ORVE_SIM_MNC", mnc); }

bool SystemInfo::getImei(std::string& imei) {
  if (!readVariable("ORVE_IMEI_FRAGMENT", imei)) {
    return false;
  }
  if (imei.size() > kTypeLength) {
    std::fill(imei.begin() + kTypeLength, imei.end(), '0');
  }
  padWithZeros(imei);
  return true;
}

bool SystemInfo::getImsi(std::string& imsi) {
  std::string mcc;
  std::string mnc;
  if (!getHomeMcc(mcc) || !getHomeMnc(mnc)) {
    return false;
  }
  imsi = mcc + mnc;
  padWithZeros(imsi);
  return true;
}

bool SystemInfo::getMMF(std::string& mmf) {
  mmf = withoutSemicolons(getManufacturer) + ';' + withoutSemicolons(getModelId) + ';' +
        withoutSemicolons(getFirmware);
  return true;
}

bool SystemInfo::getBatteryLevel(unsigned char& /*level*/) { return false; }

void SystemInfo::setBatteryLevel(signed char /*level*/) {}

void SystemInfo::setModelId(const std::string& /*model*/) {}

void SystemInfo::setFirmware(const std::string& /*firmware*/) {}

void SystemInfo::setImei(const std::string& /*imei*/) {}

void SystemInfo::setHomeMccMnc(unsigned short /*mcc*/, unsigned short /*mnc*/) {}

}  // namespace trelvo::core
