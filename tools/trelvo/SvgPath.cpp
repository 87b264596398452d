#include "tools/trelvo/SvgPath.h"

#include <algorithm>
#include <cmath>
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

}  // namespace

std::string svgNumber(double pixels) { return tenthsText(tenthsOf(pixels)); }

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
