#include "tools/trelvo/ShowValue.h"

#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/Technology.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/UtraCellDn.h>

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <nlohmann/json.hpp>

#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

constexpr double kDegreesPerRadian = 57.29577951308232;

template <class Float>
Token shortest(Float value) {
  if (!std::isfinite(value)) {
    return {std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf", Token::Word};
  }
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, value);
  return {std::string(text, end.ptr), Token::Number};
}

template <class Float, class Bits>
Float fromBits(Bits bits) {
  static_assert(sizeof(Float) == sizeof(Bits));
  Float value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

Token degreesToken(double degrees) {
  char text[64];
  std::snprintf(text, sizeof text, "%.9f", degrees);
  return {text, Token::Number};
}

ShowValue coordinateValue(double degrees, int code) {
  return {degreesToken(degrees), "", {{"code", numberToken(code)}}, ""};
}

struct Date {
  long long year;
  int month;
  int day;
};

// The civil calendar counted in eras of 400 years that begin on the 1st of March, so that the leap
// day is a year's last (H. Hinnant, chrono-Compatible Low-Level Date Algorithms).
Date dateOfDay(long long daysSince1970) {
  const long long days = daysSince1970 + 719468;
  const long long era = days / 146097;
  const int dayOfEra = static_cast<int>(days % 146097);
  const int yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int marchMonth = (5 * dayOfYear + 2) / 153;
  const int month = marchMonth < 10 ? marchMonth + 3 : marchMonth - 9;
  return {era * 400 + yearOfEra + (month <= 2 ? 1 : 0), month,
          dayOfYear - (153 * marchMonth + 2) / 5 + 1};
}

std::string utcText(unsigned int seconds) {
  const Date date = dateOfDay(seconds / 86400);
  const unsigned int rest = seconds % 86400;
  char text[64];
  std::snprintf(text, sizeof text, "%04lld-%02d-%02dT%02u:%02u:%02uZ", date.year, date.month,
                date.day, rest / 3600, rest / 60 % 60, rest % 60);
  return text;
}

std::string hexText(const unsigned char* bytes, std::size_t count, const char* separator) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    char pair[8];
    std::snprintf(pair, sizeof pair, "%s%02x", i == 0 ? "" : separator, bytes[i]);
    text += pair;
  }
  return text;
}

bool isUtf8(const std::string& bytes) {
  try {
    static_cast<void>(nlohmann::json(bytes).dump());
    return true;
  } catch (const nlohmann::json::type_error&) {
    return false;
  }
}

std::string treeText(const Token& token) {
  return token.kind == Token::Text ? quoted(token.text) : token.text;
}

std::string detailText(const ShowValue& value) {
  std::string text = value.note;
  if (text.empty()) {
    for (const auto& [name, token] : value.details) {
      text += (text.empty() ? "" : ", ") + std::string(name) + " " + treeText(token);
    }
  }
  return text;
}

struct TechnologyName {
  schema::Technology bit;
  const char* name;
};

constexpr TechnologyName kTechnologies[] = {
    {schema::TechnologyGnss, "Gnss"},
    {schema::TechnologyCellLac, "CellLac"},
    {schema::TechnologyCellNetwork, "CellNetwork"},
    {schema::TechnologyCellCountry, "CellCountry"},
    {schema::TechnologyCellRnc, "CellRnc"},
    {schema::TechnologyCellENodeB, "CellENodeB"},
};

}  // namespace

Token floatingToken(double value) { return shortest(value); }
Token floatingToken(float value) { return shortest(value); }

std::string quoted(const std::string& text) {
  constexpr bool kEscapeAllButAscii = true;
  return nlohmann::json(text).dump(-1, ' ', kEscapeAllButAscii);
}

std::string jsonText(const Token& token) {
  return token.kind == Token::Number ? token.text : quoted(token.text);
}

std::string shownText(const ShowValue& value) {
  const std::string details = detailText(value);
  return treeText(value.value) + (*value.unit != '\0' ? " " : "") + value.unit +
         (details.empty() ? "" : " (" + details + ")");
}

ShowValue timeValue(unsigned int seconds) {
  const std::string utc = utcText(seconds);
  return {numberToken(seconds), "", {{"utc", {utc, Token::Word}}}, utc};
}

ShowValue latitudeValue(int code) {
  return coordinateValue(schema::Utility::wgs84Latitude(code), code);
}

ShowValue longitudeValue(int code) {
  return coordinateValue(schema::Utility::wgs84Longitude(code), code);
}

ShowValue angleValue(float radians) {
  const double degrees = static_cast<double>(radians) * kDegreesPerRadian;
  Token token = std::isfinite(degrees) ? degreesToken(degrees) : numberToken(degrees);
  return {numberToken(radians), "", {{"degrees", token}}, token.text + " degrees"};
}

ShowValue codeValue(LevelScale scale, int code) {
  const LevelScaleInfo& info = levelScale(scale);
  const LevelRange range = levelRange(scale, code);
  ShowValue shown{numberToken(code), "", {}, levelText(scale, code)};
  if (range.from) {
    shown.details.emplace_back("from", numberToken(*range.from));
  }
  if (range.below) {
    shown.details.emplace_back("below", numberToken(*range.below));
  }
  shown.details.emplace_back("levelUnit", Token{info.unit, Token::Word});
  shown.details.emplace_back("scale", Token{info.name, Token::Word});
  return shown;
}

ShowValue utraCellValue(unsigned int ucid) {
  unsigned short rncId = 0;
  unsigned short cid = 0;
  schema::UtraCellDn::splitUcid(ucid, rncId, cid);
  return {numberToken(ucid), "", {{"rncId", numberToken(rncId)}, {"cid", numberToken(cid)}}, ""};
}

ShowValue eutraCellValue(unsigned int ucid) {
  unsigned int eNodeBId = 0;
  unsigned char lcid = 0;
  schema::EUtraCellDn::splitUcid(ucid, eNodeBId, lcid);
  return {numberToken(ucid),
          "",
          {{"eNodeBId", numberToken(eNodeBId)}, {"lcid", numberToken(lcid)}},
          ""};
}

ShowValue technologyValue(int technology) {
  std::string names;
  for (const TechnologyName& row : kTechnologies) {
    if ((technology & row.bit) != 0) {
      names += (names.empty() ? "" : "+") + std::string(row.name);
    }
  }
  ShowValue shown{numberToken(technology), "", {}, names};
  if (!names.empty()) {
    shown.details.emplace_back("names", Token{names, Token::Word});
  }
  return shown;
}

ShowValue addressValue(const unsigned char* bytes, unsigned int count) {
  return {{hexText(bytes, count, ":"), Token::Word}, "", {}, ""};
}

Token scalarToken(unsigned short tag, std::uint64_t bits) {
  switch (tag) {
    case TagInt8:
      return numberToken(static_cast<std::int8_t>(bits));
    case TagInt16:
      return numberToken(static_cast<std::int16_t>(bits));
    case TagInt32:
      return numberToken(static_cast<std::int32_t>(bits));
    case TagInt64:
      return numberToken(static_cast<std::int64_t>(bits));
    case TagUint8:
    case TagUint16:
    case TagUint32:
    case TagUint64:
      return numberToken(bits);
    case TagFloat:
      return numberToken(fromBits<float>(static_cast<std::uint32_t>(bits)));
    case TagDouble:
      return numberToken(fromBits<double>(bits));
    case TagBoolean:
      return {bits != 0 ? "true" : "false", Token::Number};
    default:
      return {"null", Token::Number};
  }
}

ShowValue textValue(const std::string& bytes) {
  if (isUtf8(bytes)) {
    return {{bytes, Token::Text}, "", {}, ""};
  }
  const auto* raw = reinterpret_cast<const unsigned char*>(bytes.data());
  return {
      {hexText(raw, bytes.size(), ""), Token::Word}, "", {{"encoding", {"hex", Token::Word}}}, ""};
}

}  // namespace trelvo::tool
