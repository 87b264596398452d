#include "tools/trelvo/ImportTime.h"

#include <ctime>

#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

constexpr long long kMicrosecondsPerSecond = 1000000;
constexpr long long kSecondsPerDay = 86400;

// "HH:MM:SSZ" as seconds from midnight.
std::optional<long long> secondOfDay(const std::string& text) {
  if (text.size() != 9 || text[2] != ':' || text[5] != ':' || text[8] != 'Z') {
    return std::nullopt;
  }
  const auto time = nmeaTimeOfDay(text.substr(0, 2) + text.substr(3, 2) + text.substr(6, 2));
  return time ? std::optional<long long>(*time / kMicrosecondsPerSecond) : std::nullopt;
}

}  // namespace

std::optional<NmeaDate> dayOf(const std::string& text) {
  const bool shaped = text.size() == 10 && text[4] == '-' && text[7] == '-';
  return shaped ? nmeaDate(text.substr(8), text.substr(5, 2), text.substr(0, 4)) : std::nullopt;
}

std::optional<unsigned int> momentOf(const std::string& text) {
  constexpr size_t kDayLength = 10;
  if (text == "now") {
    return timeStampOf(std::time(nullptr));
  }
  if (const auto seconds = wholeNumber(text, 10, 0xFFFFFFFFLL)) {
    return timeStampOf(*seconds);
  }
  const auto day = dayOf(text.substr(0, kDayLength));
  if (!day || text.size() <= kDayLength || text[kDayLength] != 'T') {
    return std::nullopt;
  }
  const auto second = secondOfDay(text.substr(kDayLength + 1));
  return second ? timeStampOf(daysFromEpoch(*day) * kSecondsPerDay + *second) : std::nullopt;
}

}  // namespace trelvo::tool
