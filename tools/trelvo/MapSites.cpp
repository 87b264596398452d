#include <algorithm>
#include <array>

#include "tools/trelvo/MapSheet.h"
#include "tools/trelvo/XmlText.h"

namespace trelvo::tool {
namespace {

constexpr std::size_t kMostMarkers = 400;   // of a kind
constexpr std::size_t kMostCoverages = 60;  // of a kind
constexpr std::size_t kMostLabels = 30;
constexpr double kMarkerSpacing = 7.0;
constexpr double kSmallestCoverage = 7.0;  // pixels; less hides behind the marker
constexpr double kLargestCoverage = 1e5;
constexpr double kLetter = 5.6;
constexpr double kLabelHeight = 11.0;

/// How a kind looks: apart by form as well as by colour.
struct SiteStyle {
  SiteKind kind;
  const char* name;    ///< of its class in the style sheet
  const char* marker;  ///< path around the origin
};

constexpr std::array<SiteStyle, kSiteKinds> kStyles = {{
    {SiteKind::CellArea, "k0", "m-5 0h10m-5-5v10"},
    {SiteKind::Geran, "k1", "m0-5 5 9h-10z"},
    {SiteKind::UtraFdd, "k2", "m0 5 5-9h-10z"},
    {SiteKind::UtraTdd, "k3", "m-5 0 9-5v10z"},
    {SiteKind::EUtra, "k4", "m-4-4h8v8h-8z"},
    {SiteKind::Cdma, "k5", "m-2.5-4.5h5l2.5 4.5-2.5 4.5h-5l-2.5-4.5z"},
    {SiteKind::Wlan, "k6", "m0-5.5 4.5 5.5-4.5 5.5-4.5-5.5z"},
}};

struct Placed {
  const MapSite* site;
  MapPoint place;
};

std::vector<Placed> placedSites(const MapSheet& sheet, const MapData& data, SiteKind kind) {
  std::vector<Placed> all;
  std::vector<MapPoint> places;
  for (const MapSite& site : data.sites()) {
    if (site.kind == kind) {
      places.push_back(sheet.projection.place(site.latitude, site.longitude));
      all.push_back({&site, places.back()});
    }
  }
  std::vector<Placed> chosen;
  for (const std::size_t i : spreadOut(places, kMarkerSpacing, kMostMarkers)) {
    chosen.push_back(all[i]);
  }
  return chosen;
}

std::vector<PixelEllipse> visibleCoverages(const MapSheet& sheet,
                                           const std::vector<Placed>& sites) {
  std::vector<PixelEllipse> shapes;
  for (const Placed& placed : sites) {
    const MapSite& site = *placed.site;
    const PixelEllipse shape = sheet.projection.shape(site.latitude, site.longitude, site.coverage);
    const double longer = std::max(shape.major, shape.minor);
    if (site.coverage.exists() && longer >= kSmallestCoverage && longer <= kLargestCoverage) {
      shapes.push_back(shape);
    }
  }
  return shapes;
}

/// @return how many were drawn.
std::size_t drawCoverages(MapSheet& sheet, const SiteStyle& style,
                          const std::vector<Placed>& sites) {
  const std::vector<PixelEllipse> shapes = visibleCoverages(sheet, sites);
  const std::size_t stride = strideFor(shapes.size(), kMostCoverages);
  SvgPath path;
  std::size_t drawn = 0;
  for (std::size_t i = 0; i < shapes.size(); i += stride) {
    path.ellipse(shapes[i]);
    ++drawn;
  }
  if (!path.isEmpty()) {
    sheet.layers << "<path class=\"cov " << style.name << "\" d=\"" << path.data() << "\"/>\n";
  }
  return drawn;
}

void drawMarkers(MapSheet& sheet, const SiteStyle& style, const std::vector<Placed>& sites) {
  sheet.layers << "<g class=\"site " << style.name << "\">\n";
  for (const Placed& placed : sites) {
    constexpr double kHalf = 5.0;
    sheet.labels.occupy({placed.place.x - kHalf, placed.place.y - kHalf, 2 * kHalf, 2 * kHalf});
    const bool isNamed = !placed.site->label.empty();
    sheet.layers << "<path d=\"M" << svgNumber(placed.place.x) << " " << svgNumber(placed.place.y)
                 << style.marker << "\"" << (isNamed ? "><title>" : "/>")
                 << (isNamed ? xmlText(placed.site->label) + "</title></path>" : std::string())
                 << "\n";
  }
  sheet.layers << "</g>\n";
}

void drawLabels(MapSheet& sheet, const std::vector<Placed>& sites) {
  std::size_t drawn = 0;
  for (const Placed& placed : sites) {
    const std::string& label = placed.site->label;
    MapRect room = {};
    if (drawn < kMostLabels && !label.empty() &&
        sheet.labels.place(placed.place, static_cast<double>(label.size()) * kLetter, kLabelHeight,
                           room)) {
      sheet.layers << "<text class=\"l\" x=\"" << svgNumber(room.left) << "\" y=\""
                   << svgNumber(room.bottom() - 2) << "\">" << xmlText(label) << "</text>\n";
      ++drawn;
    }
  }
}

void addLegend(MapSheet& sheet, const MapData& data, const SiteStyle& style, std::size_t markers,
               std::size_t coverages) {
  const unsigned long long all = data.siteCount(style.kind);
  std::string text = drawnText(markers, all) + " " + siteKindName(style.kind) +
                     (all == 1 || style.kind == SiteKind::CellArea ? "" : "s");
  if (coverages > 0) {
    text += ", " + drawnText(coverages, all) + " with coverage";
  }
  sheet.legend.push_back(
      {std::string("<path class=\"site ") + style.name + "\" d=\"M0 0" + style.marker + "\"/>",
       text});
}

}  // namespace

void drawSites(MapSheet& sheet, const MapData& data) {
  std::array<std::vector<Placed>, kSiteKinds> placed;
  std::array<std::size_t, kSiteKinds> coverages = {};
  for (std::size_t i = 0; i < kSiteKinds; ++i) {
    placed[i] = placedSites(sheet, data, kStyles[i].kind);
    coverages[i] = drawCoverages(sheet, kStyles[i], placed[i]);
  }
  for (std::size_t i = 0; i < kSiteKinds; ++i) {
    if (!placed[i].empty()) {
      drawMarkers(sheet, kStyles[i], placed[i]);
      addLegend(sheet, data, kStyles[i], placed[i].size(), coverages[i]);
    }
  }
  for (const std::vector<Placed>& sites : placed) {
    drawLabels(sheet, sites);
  }
}

}  // namespace trelvo::tool
