#include "tools/trelvo/SvgPath.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace trelvo::tool {
namespace {

constexpr double kFurthest = 1e6;  // pixels; nobody sees the difference

long tenthsOf(double pixels) {
  return std::lround(std::clamp(pixels, -kFurthest, kFurthest) * 10.0);
}

std::string tenthsText(long tenths) {
  const long size = std::labs(tenths);
  std::string text = (tenths < 0 ? "-" : "") + std::to_string(size / 10);
  return size % 10 == 0 ? text : text + "." + std::to_string(size % 10);
}

// A minus sign parts two numbers as well as a space does.
void append(std::string& data, long tenths) {
  const bool isParted = tenths < 0 || data.back() > '9';
  data += (isParted ? "" : " ") + tenthsText(tenths);
}

/// Whether XML allows the character of the three bytes of a UTF-8 sequence.
bool isAllowed(unsigned int first, unsigned int second, unsigned int third) {
  const unsigned int code = (first & 0xFU) << 12 | (second & 0x3FU) << 6 | (third & 0x3FU);
  return code >= 0x800 && (code < 0xD800 || code > 0xDFFF) && code < 0xFFFE;
}

/// The length of the UTF-8 sequence of a character that XML allows at the front of `text`, else 0.
std::size_t characterLength(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const auto follows = [&](std::size_t i) { return (byte(i) & 0xC0U) == 0x80U; };
  const unsigned int first = byte(0);
  if (first < 0x80) {
    return first >= 0x20 && first != 0x7F ? 1 : 0;
  }
  if (first >= 0xC2 && first < 0xE0) {
    return follows(1) && (first > 0xC2 || byte(1) >= 0xA0) ? 2 : 0;
  }
  if ((first & 0xF0U) == 0xE0U) {
    return follows(1) && follows(2) && isAllowed(first, byte(1), byte(2)) ? 3 : 0;
  }
  const unsigned int start = first << 8 | byte(1);
  const bool isInRange = start >= 0xF090 && start <= 0xF48F;
  return isInRange && follows(1) && follows(2) && follows(3) ? 4 : 0;
}

const char* entityOf(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    default:
      return nullptr;
  }
}

}  // namespace

std::string svgNumber(double pixels) { return tenthsText(tenthsOf(pixels)); }

std::string svgText(std::string_view text) {
  std::string escaped;
  while (!text.empty()) {
    const std::size_t length = characterLength(text);
    const char* const entity = entityOf(text.front());
    if (length == 0) {
      escaped += '?';
    } else if (entity != nullptr) {
      escaped += entity;
    } else {
      escaped += text.substr(0, length);
    }
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return escaped;
}

void SvgPath::moveTo(const MapPoint& point) {
  step('m', point);
  m_startX = m_x;
  m_startY = m_y;
}

void SvgPath::lineTo(const MapPoint& point) { step('l', point); }

void SvgPath::close() {
  m_data += 'z';
  m_x = m_startX;
  m_y = m_startY;
}

void SvgPath::step(char command, const MapPoint& point) {
  const long x = tenthsOf(point.x);
  const long y = tenthsOf(point.y);
  // The first step of a path counts from the origin, as an absolute one does.
  m_data += m_data.empty() ? 'M' : command;
  append(m_data, x - m_x);
  append(m_data, y - m_y);
  m_x = x;
  m_y = y;
}

void SvgPath::dot(const MapPoint& point) {
  moveTo(point);
  m_data += "h0";
}

void SvgPath::ellipse(const PixelEllipse& ellipse) {
  constexpr double kDegreesPerRadian = 57.29577951308232;
  const double turn = ellipse.angle / kDegreesPerRadian;
  const double x = ellipse.major * std::sin(turn);
  const double y = -ellipse.major * std::cos(turn);
  moveTo({ellipse.centre.x + x, ellipse.centre.y + y});
  const std::string arc = "a" + svgNumber(ellipse.minor) + " " + svgNumber(ellipse.major) + " " +
                          svgNumber(ellipse.angle) + " 0 1";
  const long across = tenthsOf(-2 * x);
  const long down = tenthsOf(-2 * y);
  for (const int way : {1, -1}) {
    m_data += arc;
    append(m_data, way * across);
    append(m_data, way * down);
  }
}

}  // namespace trelvo::tool
