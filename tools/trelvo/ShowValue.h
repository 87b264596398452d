#pragma once

#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tools/trelvo/RadioLevels.h"

namespace trelvo::tool {

/// One number, word or text, formatted once for all kinds of output.
struct Token {
  enum Kind {
    Number,  ///< stands bare everywhere; also true, false and null
    Word,    ///< bare in the tree, quoted in JSON
    Text,    ///< foreign text: quoted and escaped everywhere
  };
  std::string text;
  Kind kind = Number;
};

/// The shortest digits that read back as the same number. JSON has no infinities and no NaN: those
/// become the words inf, -inf and nan.
Token floatingToken(double value);
Token floatingToken(float value);

/// Any number but a bool.
template <class Number>
Token numberToken(Number value) {
  if constexpr (std::is_floating_point_v<Number>) {
    return floatingToken(value);
  } else {
    return {std::to_string(value), Token::Number};
  }
}

/// As text in JSON's notation: quoted, everything but printable ASCII escaped.
std::string quoted(const std::string& text);

/// As a JSON value: numbers bare, all else quoted.
std::string jsonText(const Token& token);

/// What is shown for one field: the value, its unit, and what it decodes to.
struct ShowValue {
  Token value;
  const char* unit = "";
  std::vector<std::pair<const char*, Token>> details;
  std::string note;  ///< the details in words; empty: the details as they stand
};

/// The value in words: "1234567890 s (2009-02-13T23:31:30Z)".
std::string shownText(const ShowValue& value);

// The decoders below leave the unit to the tables of fields.

/// Unix seconds with their date and time in UTC.
ShowValue timeValue(unsigned int seconds);

/// A fixed-point latitude or longitude: degrees, and the code itself.
ShowValue latitudeValue(int code);
ShowValue longitudeValue(int code);

/// Radians with the same in degrees.
ShowValue angleValue(float radians);

/// A reporting code with the levels it stands for.
ShowValue codeValue(LevelScale scale, int code);

/// UTRA: RNC identity and cell identity of a combined cell identity.
ShowValue utraCellValue(unsigned int ucid);

/// E-UTRA: eNodeB identity and local cell identity of a combined cell identity.
ShowValue eutraCellValue(unsigned int ucid);

/// The bits of a technology word by name.
ShowValue technologyValue(int technology);

/// Bytes as "00:11:22:33:44:55".
ShowValue addressValue(const unsigned char* bytes, unsigned int count);

/// The value of a scalar on the wire, by its tag, without any decoding.
Token scalarToken(unsigned short tag, std::uint64_t bits);

/// A text, or in hexadecimal when the bytes are not valid UTF-8.
ShowValue textValue(const std::string& bytes);

}  // namespace trelvo::tool
