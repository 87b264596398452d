#include "tools/trelvo/NmeaFields.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

constexpr long long kMicrosecondsPerSecond = 1000000;

bool allDigits(std::string_view text) {
  return !text.empty() &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// Exactly `width` digits.
std::optional<int> digits(std::string_view text, size_t width) {
  if (text.size() != width || !allDigits(text)) {
    return std::nullopt;
  }
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// What stands behind the decimal point of the seconds.
std::optional<long long> microseconds(std::string_view fraction) {
  if (fraction.empty()) {
    return 0;
  }
  if (fraction[0] != '.' || (fraction.size() > 1 && !allDigits(fraction.substr(1)))) {
    return std::nullopt;
  }
  long long value = 0;
  for (size_t i = 1; i <= 6; ++i) {
    value = value * 10 + (i < fraction.size() ? fraction[i] - '0' : 0);
  }
  return value;
}

int daysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : kDays[month - 1];
}

std::optional<NmeaDate> checkedDate(int year, int month, int day) {
  const bool exists = month >= 1 && month <= 12 && day >= 1 && day <= daysInMonth(year, month);
  return exists ? std::optional<NmeaDate>(NmeaDate{year, month, day}) : std::nullopt;
}

}  // namespace

std::optional<double> nmeaNumber(std::string_view field) {
  if (!field.empty() && field[0] == '+') {
    field.remove_prefix(1);
    if (!field.empty() && field[0] == '-') {
      return std::nullopt;
    }
  }
  return decimal(field);
}

std::optional<long long> nmeaTimeOfDay(std::string_view field) {
  if (field.size() < 6) {
    return std::nullopt;
  }
  const auto hour = digits(field.substr(0, 2), 2);
  const auto minute = digits(field.substr(2, 2), 2);
  const auto second = digits(field.substr(4, 2), 2);
  const auto fraction = microseconds(field.substr(6));
  if (!hour || !minute || !second || !fraction || *hour > 23 || *minute > 59 || *second > 60) {
    return std::nullopt;
  }
  return (*hour * 3600 + *minute * 60 + *second) * kMicrosecondsPerSecond + *fraction;
}

std::optional<NmeaDate> nmeaDate(std::string_view field) {
  const auto value = digits(field, 6);
  if (!value) {
    return std::nullopt;
  }
  const int year = *value % 100;
  return checkedDate(year < 80 ? 2000 + year : 1900 + year, *value / 100 % 100, *value / 10000);
}

std::optional<NmeaDate> nmeaDate(std::string_view day, std::string_view month,
                                 std::string_view year) {
  const auto d = digits(day, 2);
  const auto m = digits(month, 2);
  const auto y = digits(year, 4);
  return d && m && y ? checkedDate(*y, *m, *d) : std::nullopt;
}

std::optional<double> nmeaAngle(std::string_view field, std::string_view hemisphere, char positive,
                                char negative) {
  const auto value = nmeaNumber(field);
  const bool named =
      hemisphere.size() == 1 && (hemisphere[0] == positive || hemisphere[0] == negative);
  if (!value || *value < 0 || !named) {
    return std::nullopt;
  }
  const double degrees = std::floor(*value / 100);
  const double minutes = *value - degrees * 100;
  if (minutes >= 60) {
    return std::nullopt;
  }
  const double angle = degrees + minutes / 60;
  return hemisphere[0] == negative ? -angle : angle;
}

// Counts in years that start in March, so that the leap day is the last one; after Howard Hinnant,
// "chrono-Compatible Low-Level Date Algorithms".
long long daysFromEpoch(const NmeaDate& date) {
  const long long year = date.month > 2 ? date.year : date.year - 1;
  const long long era = (year >= 0 ? year : year - 399) / 400;
  const long long yearOfEra = year - era * 400;
  const long long monthFromMarch = (date.month + 9) % 12;
  const long long dayOfYear = (153 * monthFromMarch + 2) / 5 + date.day - 1;
  const long long dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

}  // namespace trelvo::tool
