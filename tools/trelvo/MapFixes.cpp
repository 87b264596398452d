#include <algorithm>
#include <cstdio>
#include <iterator>
#include <numeric>
#include <utility>

#include "tools/trelvo/MapSheet.h"
#include "tools/trelvo/ShowValue.h"

namespace trelvo::tool {
namespace {

constexpr std::size_t kMostCorners = 4000;
constexpr std::size_t kMostDots = 1500;
constexpr std::size_t kMostNamedDots = 250;  // each tells its time and place
constexpr std::size_t kMostEllipses = 240;
constexpr double kDotSpacing = 8.0;  // of dots that stand for many
constexpr double kEllipseSpacing = 3.5;
constexpr double kSmallestEllipse = 3.0;  // pixels; less hides behind the dot
constexpr double kLargestEllipse = 1e5;

using Fixes = std::vector<MapFix>;

std::string ellipseNote(std::size_t drawn, std::size_t visible, unsigned long long all,
                        bool circles) {
  const std::string name = circles ? " error circle" : " error ellipse";
  const std::string plural = all == 1 ? "" : "s";
  const std::string how =
      circles ? ": radius of the circular error (CEP)" : ": semi-axes, one standard deviation";
  return visible == 0
             ? countText(all) + name + plural + ": none of a size that can be seen at this scale"
             : drawnText(drawn, all) + name + plural + how;
}

/// The shapes of those circles or ellipses that are large enough to be seen.
std::vector<PixelEllipse> visibleErrors(const MapSheet& sheet, const Fixes& errors) {
  std::vector<PixelEllipse> shapes;
  for (const MapFix& fix : errors) {
    const PixelEllipse shape = sheet.projection.shape(fix.latitude, fix.longitude, fix.error);
    const double longer = std::max(shape.major, shape.minor);
    if (longer >= kSmallestEllipse && longer <= kLargestEllipse) {
      shapes.push_back(shape);
    }
  }
  return shapes;
}

/// All shapes when they are few, else one in a place.
std::vector<PixelEllipse> chosenErrors(const std::vector<PixelEllipse>& shapes) {
  if (shapes.size() <= kMostEllipses) {
    return shapes;
  }
  std::vector<MapPoint> centres;
  centres.reserve(shapes.size());
  for (const PixelEllipse& shape : shapes) {
    centres.push_back(shape.centre);
  }
  std::vector<PixelEllipse> chosen;
  for (const std::size_t i : spreadOut(centres, kEllipseSpacing, kMostEllipses)) {
    chosen.push_back(shapes[i]);
  }
  return chosen;
}

/// Draws the circles or the ellipses, one area with their outlines: many of them on one another
/// stay as light as one.
void drawErrors(MapSheet& sheet, const MapData& data, bool circles) {
  Fixes errors;
  std::copy_if(
      data.fixes().begin(), data.fixes().end(), std::back_inserter(errors),
      [&](const MapFix& fix) { return fix.error.exists() && fix.error.isCircle() == circles; });
  if (errors.empty()) {
    return;
  }
  const std::vector<PixelEllipse> visible = visibleErrors(sheet, errors);
  const std::vector<PixelEllipse> chosen = chosenErrors(visible);
  SvgPath path;
  for (const PixelEllipse& shape : chosen) {
    path.ellipse(shape);
  }
  if (!path.isEmpty()) {
    sheet.layers << "<path id=\"" << (circles ? "circles" : "ellipses") << "\" class=\"err\" d=\""
                 << path.data() << "\"/>\n";
  }
  sheet.legend.push_back(
      {circles ? "<circle class=\"err\" r=\"7\"/>"
               : "<ellipse class=\"err\" rx=\"11\" ry=\"5\" "
                 "transform=\"rotate(-20)\"/>",
       ellipseNote(chosen.size(), visible.size(), data.errorCount(circles), circles)});
}

void drawTrack(MapSheet& sheet, const Fixes& fixes) {
  std::vector<TrackPoint> track;
  for (const MapFix& fix : fixes) {
    track.push_back({sheet.projection.place(fix.latitude, fix.longitude), fix.startsTrack});
  }
  SvgPath path;
  std::size_t pieces = 0;
  for (const TrackPoint& point : simplified(std::move(track), kMostCorners)) {
    point.isStart ? path.moveTo(point.place) : path.lineTo(point.place);
    pieces += point.isStart ? 1 : 0;
  }
  if (pieces > 0) {
    sheet.layers << "<path id=\"track\" class=\"track\" d=\"" << path.data() << "\"/>\n";
    sheet.legend.push_back({"<path class=\"track\" d=\"M-12 3Q-4-7 0 0T12-3\"/>",
                            "track, in the order of the file" +
                                (pieces > 1 ? "; " + countText(pieces) + " pieces" : "")});
  }
}

bool isOneTrack(const Fixes& fixes) {
  return fixes.size() > 1 && std::none_of(fixes.begin() + 1, fixes.end(),
                                          [](const MapFix& fix) { return fix.startsTrack; });
}

std::string fixTitle(const MapFix& fix) {
  char text[160];
  std::snprintf(text, sizeof text, "%.6f, %.6f", fix.latitude, fix.longitude);
  std::string title = fix.timeStamp != 0 ? timeValue(fix.timeStamp).note + " at " + text : text;
  if (fix.error.exists() && fix.error.isCircle()) {
    title += ", \u00B1 " + numberToken(fix.error.majorAxis).text + " m";
  } else if (fix.error.exists()) {
    std::snprintf(text, sizeof text, ", %g m \u00D7 %g m at %.0f\u00B0", fix.error.majorAxis,
                  fix.error.minorAxis, fix.error.angle);
    title += text;
  }
  return title;
}

void drawDots(MapSheet& sheet, const Fixes& fixes, unsigned long long count) {
  std::vector<MapPoint> places;
  for (const MapFix& fix : fixes) {
    places.push_back(sheet.projection.place(fix.latitude, fix.longitude));
  }
  std::vector<std::size_t> chosen(fixes.size());
  std::iota(chosen.begin(), chosen.end(), std::size_t{0});
  if (fixes.size() > kMostNamedDots) {
    chosen = spreadOut(places, kDotSpacing, kMostDots);
  }
  SvgPath dots;
  for (const std::size_t i : chosen) {
    if (chosen.size() <= kMostNamedDots) {
      sheet.layers << "<circle class=\"fix\" cx=\"" << svgNumber(places[i].x) << "\" cy=\""
                   << svgNumber(places[i].y) << "\" r=\"2\"><title>" << fixTitle(fixes[i])
                   << "</title></circle>\n";
    } else {
      dots.dot(places[i]);
    }
  }
  if (!dots.isEmpty()) {
    sheet.layers << "<path id=\"fixes\" class=\"dots\" d=\"" << dots.data() << "\"/>\n";
  }
  sheet.legend.push_back(
      {"<circle class=\"fix\" r=\"2.4\"/>",
       drawnText(chosen.size(), count) + (count == 1 ? " position" : " positions")});
}

void drawEnd(MapSheet& sheet, const MapFix& fix, const char* name) {
  constexpr double kHeight = 13.0;
  constexpr double kWidth = 32.0;
  const MapPoint place = sheet.projection.place(fix.latitude, fix.longitude);
  sheet.labels.occupy({place.x - 5, place.y - 5, 10, 10});
  sheet.layers << "<circle class=\"" << name << "\" cx=\"" << svgNumber(place.x) << "\" cy=\""
               << svgNumber(place.y) << "\" r=\"5\"/>\n";
  MapRect room = {};
  if (sheet.labels.place(place, kWidth, kHeight, room)) {
    sheet.layers << "<text class=\"b\" x=\"" << svgNumber(room.left) << "\" y=\""
                 << svgNumber(room.bottom() - 3) << "\">" << name << "</text>\n";
  }
}

}  // namespace

void drawFixes(MapSheet& sheet, const MapData& data) {
  const Fixes& fixes = data.fixes();
  if (fixes.empty()) {
    return;
  }
  drawErrors(sheet, data, true);
  drawErrors(sheet, data, false);
  drawTrack(sheet, fixes);
  drawDots(sheet, fixes, data.fixCount());
  if (isOneTrack(fixes)) {
    drawEnd(sheet, fixes.front(), "start");
    drawEnd(sheet, fixes.back(), "end");
  }
}

}  // namespace trelvo::tool
