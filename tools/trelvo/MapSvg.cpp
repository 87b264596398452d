#include "tools/trelvo/MapSvg.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "tools/trelvo/MapSheet.h"
#include "tools/trelvo/ShowValue.h"
#include "tools/trelvo/XmlText.h"

namespace trelvo::tool {
namespace {

constexpr double kWidth = 960;  // of the picture, pixels
constexpr double kSide = 84;
constexpr double kRight = 22;
constexpr double kHead = 62;
constexpr double kLowest = 380;  // heights of the map
constexpr double kHighest = 680;
constexpr double kPadding = 26;  // between the frame and what is nearest to it
constexpr double kFoot = 40;
constexpr double kRow = 22;
constexpr double kColumn = 428;

// Colours: M. Okabe and K. Ito, Color Universal Design, 2008.
constexpr const char* kStyle =
    "text{font-family:'DejaVu Sans',Verdana,Arial,sans-serif;font-size:12px;fill:#222}"
    ".h{font-size:19px;font-weight:bold}.s{font-size:11px;fill:#555}.b{font-weight:bold}"
    ".t{font-size:10px;fill:#6b5b95}.l{font-size:9.5px}"
    ".l,.b,.t{paint-order:stroke;stroke:#fff;stroke-width:3px;stroke-linejoin:round}"
    ".land{fill:#fcfcfa}.edge{fill:none;stroke:#333}"
    ".grat{fill:none;stroke:#000;stroke-opacity:.08}"
    ".tile{fill:none;stroke:#6b5b95;stroke-opacity:.5;stroke-dasharray:6 3}"
    ".err{fill:#56b4e9;fill-opacity:.25;stroke:#0072b2;stroke-opacity:.45;stroke-width:.7}"
    ".track{fill:none;stroke:#0072b2;stroke-width:1.6;stroke-linejoin:round}"
    ".fix{fill:#003a5d}"
    ".dots{fill:none;stroke:#003a5d;stroke-width:3.4;stroke-linecap:round}"
    ".start{fill:#fff;stroke:#003a5d;stroke-width:2.5}"
    ".end{fill:#003a5d;stroke:#fff;stroke-width:1.5}"
    ".site{stroke:#fff;stroke-width:.8}"
    ".cov{fill-opacity:.1;stroke-opacity:.6;stroke-dasharray:4 3}"
    ".k0{fill:none;stroke:#444;stroke-width:2}.cov.k0{stroke-width:1}"
    ".k1{fill:#e69f00}.cov.k1{stroke:#e69f00}.k2{fill:#d55e00}.cov.k2{stroke:#d55e00}"
    ".k3{fill:#8c564b}.cov.k3{stroke:#8c564b}.k4{fill:#cc79a7}.cov.k4{stroke:#a8457e}"
    ".k5{fill:#444}.cov.k5{stroke:#444}.k6{fill:#009e73}.cov.k6{stroke:#009e73}"
    ".bar{fill:#fff;fill-opacity:.85}.ink{fill:#222}.line{fill:none;stroke:#222;stroke-width:1.5}";

std::string sizeText(double metres) {
  char text[64];
  const bool isLong = metres >= 1000;
  std::snprintf(text, sizeof text, "%.3g %s", isLong ? metres / 1000 : metres, isLong ? "km" : "m");
  return metres >= 1e6 ? countText(static_cast<unsigned long long>(metres / 1000)) + " km" : text;
}

MapRect mapArea(const GeoBox& box) {
  const double width = kWidth - kSide - kRight;
  const double height = (width - 2 * kPadding) * mapAspect(box) + 2 * kPadding;
  return {kSide, kHead, width, std::round(std::clamp(height, kLowest, kHighest))};
}

// The same projection for what the whole area shows, as for the box inside the padding.
MapProjection projectionFor(const GeoBox& box) {
  const MapRect area = mapArea(box);
  const MapRect inner = {area.left + kPadding, area.top + kPadding, area.width - 2 * kPadding,
                         area.height - 2 * kPadding};
  const GeoBox seen = MapProjection(box, inner).box();
  const double perWidth = (seen.east - seen.west) / inner.width * kPadding;
  const double perHeight = (seen.north - seen.south) / inner.height * kPadding;
  return MapProjection(
      {seen.south - perHeight, seen.west - perWidth, seen.north + perHeight, seen.east + perWidth},
      area);
}

std::string counted(unsigned long long count, const char* noun) {
  return countText(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string contents(const MapData& data) {
  unsigned long long sites = 0;
  for (std::size_t i = 0; i < kSiteKinds; ++i) {
    sites += data.siteCount(static_cast<SiteKind>(i));
  }
  if (sites == 0) {
    return counted(data.fixCount(), "position");
  }
  const std::string known = counted(sites, "known site");
  return data.fixCount() == 0 ? known : counted(data.fixCount(), "position") + ", " + known;
}

// What the file holds, in one line.
std::string summary(const MapData& data) {
  const GeoBox box = data.extent().box();
  const GeoBox least = {box.south, box.west, box.north + 1e-12, box.east + 1e-12};
  const MapProjection metres(least, {0, 0, 1, 1});
  const double width =
      (box.east - box.west) * metres.pixelsPerLongitude() / metres.pixelsPerMetre();
  const double height =
      (box.north - box.south) * metres.pixelsPerLatitude() / metres.pixelsPerMetre();
  std::string text = contents(data) + " on " + sizeText(width) + " \u00D7 " + sizeText(height);
  if (data.earliest() != 0) {
    text += ", " + timeValue(data.earliest()).note;
    text += data.latest() == data.earliest() ? "" : " to " + timeValue(data.latest()).note;
  }
  return text;
}

void writeHead(std::ostream& out, double height, const std::string& title,
               const std::string& description) {
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 " << svgNumber(kWidth) << " "
      << svgNumber(height) << "\" width=\"" << svgNumber(kWidth) << "\" height=\""
      << svgNumber(height) << "\" role=\"img\" aria-labelledby=\"title desc\">\n"
      << "<title id=\"title\">" << xmlText(title) << "</title>\n"
      << "<desc id=\"desc\">Map of " << xmlText(description) << "</desc>\n"
      << "<style>" << kStyle << "</style>\n"
      << "<rect width=\"100%\" height=\"100%\" fill=\"#fff\"/>\n"
      << "<text class=\"h\" x=\"" << svgNumber(kSide) << "\" y=\"30\">" << xmlText(title)
      << "</text>\n<text class=\"s\" x=\"" << svgNumber(kSide) << "\" y=\"49\">"
      << xmlText(description) << "</text>\n";
}

std::string rectAttributes(const MapRect& rect) {
  return "x=\"" + svgNumber(rect.left) + "\" y=\"" + svgNumber(rect.top) + "\" width=\"" +
         svgNumber(rect.width) + "\" height=\"" + svgNumber(rect.height) + "\"";
}

void writeMapArea(std::ostream& out, const MapSheet& sheet) {
  const std::string rect = rectAttributes(sheet.projection.area());
  out << "<clipPath id=\"area\"><rect " << rect << "/></clipPath>\n"
      << "<rect class=\"land\" " << rect << "/>\n<g clip-path=\"url(#area)\">\n"
      << sheet.layers.str() << "</g>\n<rect class=\"edge\" " << rect << "/>\n"
      << sheet.margin.str();
}

// Two columns, filled row by row.
void writeLegend(std::ostream& out, const MapSheet& sheet) {
  const double top = sheet.projection.area().bottom() + kFoot;
  double x = kSide;
  double y = top;
  for (const LegendEntry& entry : sheet.legend) {
    out << "<g transform=\"translate(" << svgNumber(x + 14) << " " << svgNumber(y) << ")\">"
        << entry.symbol << "<text x=\"20\" y=\"4\">" << xmlText(entry.text) << "</text></g>\n";
    const bool isLeft = x == kSide;
    x = isLeft ? kSide + kColumn : kSide;
    y += isLeft ? 0 : kRow;
  }
}

double legendHeight(const MapSheet& sheet) {
  return kRow * std::ceil(static_cast<double>(sheet.legend.size()) / 2);
}

void writeFootnote(std::ostream& out, const MapSheet& sheet, double y) {
  char text[256];
  std::snprintf(text, sizeof text,
                "Equirectangular, scale true at %.4f\u00B0. Uncertainties and coverages to scale, "
                "as stored: no confidence is scaled.",
                sheet.projection.box().middleLatitude());
  out << "<text class=\"s\" x=\"" << svgNumber(kSide) << "\" y=\"" << svgNumber(y) << "\">" << text
      << "</text>\n</svg>\n";
}

void drawNorth(MapSheet& sheet) {
  const MapRect& area = sheet.projection.area();
  const MapPoint foot = {area.right() - 26, area.top + 52};
  sheet.labels.occupy({foot.x - 16, area.top, 42, 62});
  sheet.margin << "<g id=\"north\" transform=\"translate(" << svgNumber(foot.x) << " "
               << svgNumber(foot.y)
               << ")\"><path class=\"ink\" d=\"M0-30 8 0 0-6-8 0z\"/><text class=\"b\" "
                  "text-anchor=\"middle\" y=\"-33\">N</text></g>\n";
}

void drawBar(MapSheet& sheet) {
  constexpr double kLongest = 170;
  const MapRect& area = sheet.projection.area();
  const double metres = roundBelow(kLongest / sheet.projection.pixelsPerMetre());
  const double length = metres * sheet.projection.pixelsPerMetre();
  const double left = area.left + 18;
  const double line = area.bottom() - 14;
  const MapRect back = {left - 10, line - 24, length + 20, 32};
  sheet.labels.occupy(back);
  SvgPath bar;
  bar.moveTo({left, line - 5});
  bar.lineTo({left, line});
  bar.lineTo({left + length, line});
  bar.lineTo({left + length, line - 5});
  sheet.margin << "<rect class=\"bar\" " << rectAttributes(back)
               << "/><path id=\"scale\" class=\"line\" d=\"" << bar.data()
               << "\"/><text text-anchor=\"middle\" x=\"" << svgNumber(left + length / 2)
               << "\" y=\"" << svgNumber(line - 8) << "\">" << metresText(metres) << "</text>\n";
}

}  // namespace

std::string countText(unsigned long long count) {
  std::string text = std::to_string(count);
  for (std::size_t end = text.size(); end > 3; end -= 3) {
    text.insert(end - 3, ",");
  }
  return text;
}

std::string drawnText(unsigned long long drawn, unsigned long long all) {
  return drawn == all ? countText(all) : countText(drawn) + " of " + countText(all);
}

std::string metresText(double metres) {
  constexpr double kLongInMetres = 10000;
  char text[64];
  const bool isLong = metres >= kLongInMetres;
  std::snprintf(text, sizeof text, "%g %s", isLong ? metres / 1000 : metres, isLong ? "km" : "m");
  return text;
}

void drawScale(MapSheet& sheet) {
  drawNorth(sheet);
  drawBar(sheet);
}

std::vector<std::string> writeMap(std::ostream& out, const MapData& data,
                                  const MapOptions& options) {
  MapSheet sheet(projectionFor(mapFrame(data)));
  drawScale(sheet);
  drawGraticule(sheet);
  if (options.tileLevel) {
    drawTiles(sheet, *options.tileLevel);
  }
  drawSites(sheet, data);
  drawFixes(sheet, data);
  const double foot = sheet.projection.area().bottom() + kFoot + legendHeight(sheet);
  writeHead(out, foot + 18, options.title, summary(data));
  writeMapArea(out, sheet);
  writeLegend(out, sheet);
  writeFootnote(out, sheet, foot + 4);
  return sheet.remarks;
}

}  // namespace trelvo::tool
