#pragma once

#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Coverage.h>
#include <trelvo/schema/PositionEstimate.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "tools/trelvo/GeoExtent.h"

namespace trelvo::tool {

/// An uncertainty or a coverage on the ground.
struct MapEllipse {
  double majorAxis = 0.0;  ///< semi-axis at `angle`, metres; 0 for none
  double minorAxis = 0.0;  ///< semi-axis across it, metres
  double angle = 0.0;      ///< degrees clockwise from north

  bool exists() const { return majorAxis > 0.0 && minorAxis > 0.0; }
  bool isCircle() const { return majorAxis == minorAxis; }
  double longerAxis() const { return majorAxis > minorAxis ? majorAxis : minorAxis; }
};

/// One position of a track.
struct MapFix {
  double latitude;   ///< degrees
  double longitude;  ///< degrees
  MapEllipse error;
  unsigned int timeStamp = 0;  ///< Unix seconds, 0 for none
  bool startsTrack = false;    ///< no line leads here
};

enum class SiteKind { Wlan, Geran, UtraFdd, UtraTdd, EUtra, Cdma, CellArea };
constexpr std::size_t kSiteKinds = 7;

/// What the legend calls a kind: "E-UTRA cell".
const char* siteKindName(SiteKind kind);

/// An access point, a cell or an area of cells, and what it covers.
struct MapSite {
  SiteKind kind;
  double latitude;   ///< degrees, of the coverage's centre
  double longitude;  ///< degrees
  MapEllipse coverage;
  std::string label;  ///< its identity, empty when it has none
};

/// What a map shows, gathered from containers in memory that does not grow with their number.
///
/// Positions are those of GnssMeasurement and GnssInjection objects and PositionEstimate records;
/// sites those of the injections. Beyond kMostFixes positions those are dropped that lie nearest to
/// the one before, as a picture could not tell them apart; so are sites beyond kMostSites.
///
/// A track breaks where time runs backwards, rests for more than kTrackGap, or where nothing
/// could be that fast.
class MapData {
 public:
  static constexpr std::size_t kMostFixes = 32768;
  static constexpr std::size_t kMostSites = 16384;
  static constexpr unsigned int kTrackGap = 600;  ///< seconds

  /// Takes what `object` and the objects in it have to show.
  void add(const gom::SharedPointer<gom::GenericObject>& object);

  /// Behind the last object: puts the last position at the end, should it have been dropped.
  void finish();

  const std::vector<MapFix>& fixes() const { return m_fixes; }
  const std::vector<MapSite>& sites() const { return m_sites; }

  /// Counts of what was added, whether kept or not.
  unsigned long long fixCount() const { return m_fixCount; }
  /// Positions with a circle, or those with an ellipse for their error.
  unsigned long long errorCount(bool circles) const {
    return circles ? m_circleCount : m_ellipseCount;
  }
  unsigned long long siteCount(SiteKind kind) const {
    return m_siteCounts[static_cast<std::size_t>(kind)];
  }
  /// Cells and access points that name no place.
  unsigned long long placelessCount() const { return m_placelessCount; }

  /// The earliest and the latest time stamp of a position, 0 when none has one.
  unsigned int earliest() const { return m_earliest; }
  unsigned int latest() const { return m_latest; }

  /// The box of the positions alone, and of positions and sites.
  const GeoExtent& fixExtent() const { return m_fixExtent; }
  const GeoExtent& extent() const { return m_extent; }

 private:
  void addObject(const gom::SharedPointer<gom::GenericObject>& object);
  void addEstimates(gom::GenericObject& object);
  void addCoverage(const schema::Coverage& coverage, unsigned int timeStamp);
  void addEstimate(const schema::PositionEstimate& estimate);
  void addFix(MapFix fix);
  void addSite(MapSite site);
  template <class Injection>
  void addCell(SiteKind kind, const gom::SharedPointer<gom::GenericObject>& object);
  template <class Injection>
  void addSiteOf(SiteKind kind, const Injection& injection, std::string label);
  void thinFixes();
  void thinSites();
  double pixelInDegrees() const;

  std::vector<MapFix> m_fixes;
  std::vector<MapSite> m_sites;
  MapFix m_last = {};
  unsigned long long m_fixCount = 0;
  unsigned long long m_circleCount = 0;
  unsigned long long m_ellipseCount = 0;
  std::array<unsigned long long, kSiteKinds> m_siteCounts = {};
  unsigned long long m_placelessCount = 0;
  unsigned int m_earliest = 0;
  unsigned int m_latest = 0;
  GeoExtent m_fixExtent;
  GeoExtent m_extent;
};

}  // namespace trelvo::tool
