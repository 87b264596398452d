#include "tools/trelvo/MapData.h"

#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaServingCellInjection.h>
#include <trelvo/schema/CellularObjectInjection.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/GnssInjection.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/UtraFddServingCellInjection.h>
#include <trelvo/schema/UtraTddServingCellInjection.h>
#include <trelvo/schema/WlanInjection.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <unordered_set>
#include <utility>

#include "tools/trelvo/ObjectMembers.h"

namespace trelvo::tool {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using schema::Coverage;
using schema::PositionEstimate;
using schema::Utility;

constexpr double kDegreesPerRadian = 57.29577951308232;
constexpr double kFastest = 1000.0;      // metres a second
constexpr double kPicturePixels = 4096;  // finer than any picture

// Positions of the axes that are no numbers would make an ellipse of nothing.
MapEllipse ellipseOf(double majorAxis, double minorAxis, double angle) {
  const bool isSound = std::isfinite(majorAxis) && std::isfinite(minorAxis) && std::isfinite(angle);
  return isSound ? MapEllipse{majorAxis, minorAxis, std::fmod(angle, 360.0)} : MapEllipse{};
}

MapEllipse circleOf(double radius) { return ellipseOf(radius, radius, 0.0); }

MapEllipse errorOf(const Coverage& coverage) {
  if (coverage.valueExists(Coverage::HasMajorAxis | Coverage::HasMinorAxis)) {
    const double angle = coverage.valueExists(Coverage::HasAngle)
                             ? static_cast<double>(coverage.angle()) * kDegreesPerRadian
                             : 0.0;
    return ellipseOf(coverage.majorAxis(), coverage.minorAxis(), angle);
  }
  return coverage.valueExists(Coverage::HasHorizontalCepUncertainty)
             ? circleOf(static_cast<double>(coverage.horizontalCepUncertainty()))
             : MapEllipse();
}

MapEllipse errorOf(const PositionEstimate& estimate) {
  if (estimate.valueExists(PositionEstimate::HasMajorAxis | PositionEstimate::HasMinorAxis)) {
    const bool hasAngle = estimate.valueExists(PositionEstimate::HasAngle);
    return ellipseOf(estimate.majorAxis(), estimate.minorAxis(), hasAngle ? estimate.angle() : 0.0);
  }
  return estimate.valueExists(PositionEstimate::HasHorizontalCepUncertainty)
             ? circleOf(estimate.horizontalCepUncertainty())
             : MapEllipse();
}

bool hasPlace(const Coverage& coverage) {
  return coverage.valueExists(Coverage::HasLatitude | Coverage::HasLongitude);
}

double metresBetween(const MapFix& a, const MapFix& b) {
  double metres = 0.0;
  Utility::distance(a.latitude, a.longitude, b.latitude, b.longitude, metres);
  return metres;
}

bool isConnected(const MapFix& from, const MapFix& to) {
  if (from.timeStamp == 0 || to.timeStamp == 0) {
    return true;
  }
  if (to.timeStamp < from.timeStamp || to.timeStamp - from.timeStamp > MapData::kTrackGap) {
    return false;
  }
  const double seconds = std::max(1U, to.timeStamp - from.timeStamp);
  return metresBetween(from, to) <= kFastest * seconds;
}

std::string text(unsigned int a, unsigned int b, unsigned int c) {
  return std::to_string(a) + "-" + std::to_string(b) + "-" + std::to_string(c);
}

std::string labelOf(const schema::GeranCellDn& dn) {
  return text(dn.mcc(), dn.mnc(), dn.lac()) + "-" + std::to_string(dn.cid());
}

std::string labelOf(const schema::UtraCellDn& dn) {
  return text(dn.mcc(), dn.mnc(), dn.rncId()) + "/" + std::to_string(dn.cid());
}

std::string labelOf(const schema::EUtraCellDn& dn) {
  return text(dn.mcc(), dn.mnc(), dn.eNodeBId()) + "/" + std::to_string(dn.lcid());
}

std::string labelOf(const schema::CdmaCellDn& dn) { return text(dn.sid(), dn.nid(), dn.bsid()); }

std::string labelOf(const schema::WlanDn& dn) {
  unsigned int length = 0;
  const unsigned char* bytes = dn.getBssid(length);
  std::string label;
  for (unsigned int i = 0; i < length; ++i) {
    constexpr char kDigits[] = "0123456789abcdef";
    label += i == 0 ? "" : ":";
    label += {kDigits[bytes[i] >> 4], kDigits[bytes[i] & 15]};
  }
  return label;
}

template <class Dn>
std::string labelOf(const SharedPointer<Dn>& dn) {
  return dn ? labelOf(*dn) : std::string();
}

/// Keeps one of each group of `items` whose keys are equal, the first.
template <class Item, class Key>
void keepFirst(std::vector<Item>& items, Key key) {
  std::unordered_set<std::uint64_t> seen;
  items.erase(std::remove_if(items.begin(), items.end(),
                             [&](const Item& item) { return !seen.insert(key(item)).second; }),
              items.end());
}

}  // namespace

const char* siteKindName(SiteKind kind) {
  constexpr const char* kNames[kSiteKinds] = {"WLAN access point", "GERAN cell",  "UTRA FDD cell",
                                              "UTRA TDD cell",     "E-UTRA cell", "CDMA cell",
                                              "area of cells"};
  return kNames[static_cast<std::size_t>(kind)];
}

void MapData::add(const SharedPointer<GenericObject>& object) {
  forEachObject(object, [this](const SharedPointer<GenericObject>& part) { addObject(part); });
}

void MapData::addObject(const SharedPointer<GenericObject>& object) {
  if (const auto fix = schema::GnssMeasurement::create(object)) {
    const auto data = fix->measurementData();
    return data ? addCoverage(data->coverage(), fix->timeStamp()) : void();
  }
  if (const auto fix = schema::GnssInjection::create(object)) {
    const auto data = fix->gnssMeasurementData();
    return data ? addCoverage(data->coverage(), fix->timeStamp()) : void();
  }
  if (const auto area = schema::CellularObjectInjection::create(object)) {
    return addSiteOf(SiteKind::CellArea, *area, "");
  }
  addCell<schema::WlanInjection>(SiteKind::Wlan, object);
  addCell<schema::GeranServingCellInjection>(SiteKind::Geran, object);
  addCell<schema::UtraFddServingCellInjection>(SiteKind::UtraFdd, object);
  addCell<schema::UtraTddServingCellInjection>(SiteKind::UtraTdd, object);
  addCell<schema::EUtraServingCellInjection>(SiteKind::EUtra, object);
  addCell<schema::CdmaServingCellInjection>(SiteKind::Cdma, object);
  addEstimates(*object);
}

template <class Injection>
void MapData::addCell(SiteKind kind, const SharedPointer<GenericObject>& object) {
  if (const auto injection = Injection::create(object)) {
    addSiteOf(kind, *injection, labelOf(injection->dn()));
  }
}

template <class Injection>
void MapData::addSiteOf(SiteKind kind, const Injection& injection, std::string label) {
  const auto area = injection.coverage();
  if (!area || !hasPlace(area->coverage())) {
    ++m_placelessCount;
    return;
  }
  addSite({kind, Utility::wgs84Latitude(area->latitude()),
           Utility::wgs84Longitude(area->longitude()), errorOf(area->coverage()),
           std::move(label)});
}

// An engine's results have no container of their own: they may be anywhere.
void MapData::addEstimates(GenericObject& object) {
  unsigned short key = 0;
  for (bool any = object.getFirstKey(key); any; any = object.getNextKey(key)) {
    SharedPointer<gom::ObjectBase> record;
    if (object.getObjectProperty(key, record) == StatusOk) {
      const auto* estimate = dynamic_cast<const PositionEstimate*>(record.get());
      if (estimate != nullptr && !estimate->isNoPos()) {
        addEstimate(*estimate);
      }
    }
  }
}

void MapData::addCoverage(const Coverage& coverage, unsigned int timeStamp) {
  if (hasPlace(coverage)) {
    addFix({Utility::wgs84Latitude(coverage.latitude()),
            Utility::wgs84Longitude(coverage.longitude()), errorOf(coverage), timeStamp});
  }
}

void MapData::addEstimate(const PositionEstimate& estimate) {
  if (isPlace(estimate.latitude(), estimate.longitude())) {
    addFix({estimate.latitude(), estimate.longitude(), errorOf(estimate), estimate.timeStamp()});
  }
}

void MapData::addFix(MapFix fix) {
  fix.startsTrack = m_fixCount == 0 || !isConnected(m_last, fix);
  m_fixExtent.add(fix.latitude, fix.longitude);
  m_extent.add(fix.latitude, fix.longitude);
  if (fix.timeStamp != 0) {
    m_earliest = m_earliest == 0 ? fix.timeStamp : std::min(m_earliest, fix.timeStamp);
    m_latest = std::max(m_latest, fix.timeStamp);
  }
  ++m_fixCount;
  m_circleCount += fix.error.exists() && fix.error.isCircle() ? 1 : 0;
  m_ellipseCount += fix.error.exists() && !fix.error.isCircle() ? 1 : 0;
  m_last = fix;
  m_fixes.push_back(fix);
  if (m_fixes.size() > kMostFixes) {
    thinFixes();
  }
}

void MapData::addSite(MapSite site) {
  m_extent.add(site.latitude, site.longitude);
  ++m_siteCounts[static_cast<std::size_t>(site.kind)];
  m_sites.push_back(std::move(site));
  if (m_sites.size() > kMostSites) {
    thinSites();
  }
}

double MapData::pixelInDegrees() const {
  const GeoBox box = m_extent.box();
  return std::max({box.north - box.south, box.east - box.west, 1e-7}) / kPicturePixels;
}

// Ever coarser, until half of the room is free.
void MapData::thinFixes() {
  for (double least = pixelInDegrees(); m_fixes.size() > kMostFixes / 2; least *= 2) {
    const bool isHopeless = least > 360.0;  // nothing but starts of tracks
    const MapFix* kept = nullptr;
    std::size_t index = 0;
    const auto isDropped = [&](const MapFix& fix) {
      const bool isNear = kept != nullptr && std::abs(fix.latitude - kept->latitude) < least &&
                          std::abs(fix.longitude - kept->longitude) < least;
      const bool drop = isHopeless ? index % 2 != 0 : isNear && !fix.startsTrack;
      ++index;
      kept = drop ? kept : &fix;
      return drop;
    };
    std::vector<MapFix> left;
    std::remove_copy_if(m_fixes.begin(), m_fixes.end(), std::back_inserter(left), isDropped);
    m_fixes = std::move(left);
  }
}

void MapData::thinSites() {
  const GeoBox box = m_extent.box();
  for (double cell = pixelInDegrees(); m_sites.size() > kMostSites / 2; cell *= 2) {
    keepFirst(m_sites, [&box, cell](const MapSite& site) {
      const auto row = static_cast<std::uint64_t>((site.latitude - box.south) / cell);
      const auto column =
          static_cast<std::uint64_t>((box.eastward(site.longitude) - box.west) / cell);
      return (row << 24 | column << 4) + static_cast<std::uint64_t>(site.kind);
    });
  }
}

void MapData::finish() {
  const bool isDropped = !m_fixes.empty() && (m_fixes.back().latitude != m_last.latitude ||
                                              m_fixes.back().longitude != m_last.longitude);
  if (isDropped) {
    m_fixes.push_back(m_last);
  }
}

}  // namespace trelvo::tool
