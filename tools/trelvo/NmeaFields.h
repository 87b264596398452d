#pragma once

#include <optional>
#include <string_view>

namespace trelvo::tool {

/// A day as a receiver tells it.
struct NmeaDate {
  int year;   ///< four digits
  int month;  ///< 1 to 12
  int day;    ///< 1 to 31
};

/// The readings of single NMEA fields. All give nothing for an empty or malformed field.

/// A decimal number such as "-31.442" or "+7": finite, nothing before or behind it.
std::optional<double> nmeaNumber(std::string_view field);

/// A time of day "hhmmss" or "hhmmss.sss", in microseconds from midnight. A leap second, 60, is
/// taken, and further digits are dropped.
std::optional<long long> nmeaTimeOfDay(std::string_view field);

/// A date "ddmmyy". The years 80 to 99 are of the last century. No rolled-over week number is
/// repaired: the date is what the receiver says.
std::optional<NmeaDate> nmeaDate(std::string_view field);

/// The same in three fields, the year in four digits.
std::optional<NmeaDate> nmeaDate(std::string_view day, std::string_view month,
                                 std::string_view year);

/// An angle "ddmm.mmmm" or "dddmm.mmmm" in degrees, negative when `hemisphere` is `negative`.
/// Nothing unless `hemisphere` is one of the two letters and the minutes are below 60. The degrees
/// are not held against a range.
std::optional<double> nmeaAngle(std::string_view field, std::string_view hemisphere, char positive,
                                char negative);

/// Days from 1970-01-01 to `date` in the Gregorian calendar.
long long daysFromEpoch(const NmeaDate& date);

}  // namespace trelvo::tool
