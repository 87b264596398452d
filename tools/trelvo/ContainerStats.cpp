#include "tools/trelvo/ContainerStats.h"

#include <trelvo/schema/Area.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <optional>

namespace trelvo::tool {
namespace {

using schema::Coverage;
using schema::PositionEstimate;
using schema::Utility;

constexpr unsigned short kTimeStamp = 205;

bool hasPlace(const Coverage& coverage) {
  return coverage.valueExists(Coverage::HasLatitude | Coverage::HasLongitude);
}

}  // namespace

void ContainerStats::beginObject(const WireItem&, unsigned short objectKey, unsigned int) {
  m_roots += m_depth == 0 ? 1 : 0;
  ++m_depth;
  ++m_objects[objectKey];
}

void ContainerStats::scalar(const WireItem& item, std::uint64_t bits) {
  if (item.key == kTimeStamp && item.tag == TagUint32) {
    addTime(static_cast<unsigned int>(bits));
  }
}

void ContainerStats::record(const WireItem&, const gom::ObjectBase& record) {
  ++m_records[record.key()];
  m_levels.add(record);
  if (const auto* fix = dynamic_cast<const schema::GnssMeasurementData*>(&record)) {
    const Coverage& place = fix->coverage();
    m_positions += hasPlace(place) && addPlace(Utility::wgs84Latitude(place.latitude()),
                                               Utility::wgs84Longitude(place.longitude()))
                       ? 1
                       : 0;
  } else if (const auto* area = dynamic_cast<const schema::Area*>(&record)) {
    m_coverages +=
        hasPlace(area->coverage()) && addPlace(Utility::wgs84Latitude(area->latitude()),
                                               Utility::wgs84Longitude(area->longitude()))
            ? 1
            : 0;
  } else if (const auto* estimate = dynamic_cast<const PositionEstimate*>(&record)) {
    m_positions +=
        !estimate->isNoPos() && addPlace(estimate->latitude(), estimate->longitude()) ? 1 : 0;
    if (estimate->valueExists(PositionEstimate::HasTimeStamp)) {
      addTime(estimate->timeStamp());
    }
  }
}

void ContainerStats::addTime(unsigned int time) {
  if (time != 0) {
    m_earliest = m_earliest == 0 ? time : std::min(m_earliest, time);
    m_latest = std::max(m_latest, time);
  }
}

bool ContainerStats::addPlace(double latitude, double longitude) {
  const bool isSound = isPlace(latitude, longitude);
  if (isSound) {
    m_extent.add(latitude, longitude);
  }
  return isSound;
}

}  // namespace trelvo::tool
