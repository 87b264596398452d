#pragma once

#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/GnssMeasurement.h>

#include <optional>

#include "tools/trelvo/ImportReport.h"

namespace trelvo::tool {

/// One position as an input gives it, before it is held against the schema's ranges.
struct ImportFix {
  std::optional<double> latitude;             ///< degrees
  std::optional<double> longitude;            ///< degrees
  std::optional<double> altitude;             ///< metres above the WGS84 ellipsoid
  std::optional<double> altitudeUncertainty;  ///< metres
  std::optional<double> radius;               ///< of the circle of error, metres
  std::optional<double> majorAxis;            ///< semi-axis of the error ellipse, metres
  std::optional<double> minorAxis;            ///< semi-axis of the error ellipse, metres
  std::optional<double> orientation;          ///< of the major axis, degrees clockwise from north
  std::optional<double> speed;                ///< metres a second
  std::optional<double> course;               ///< degrees clockwise from north
  std::optional<unsigned int> timeStamp;      ///< Unix seconds
};

/// Makes the measurement of a fix.
///
/// Angles are wrapped into their range: longitude and course into [-180, 180), the orientation,
/// which names a line and no direction, into [0, 180). The compact form keeps the axes in whole
/// metres; they are rounded, and an axis below one metre is stored as 1 and counted. Any other
/// value outside its field's range is left out and counted. Without a time stamp the measurement
/// has none.
///
/// @return an empty handle, counted, when latitude or longitude are missing or out of range.
/// Throws std::bad_alloc.
gom::SharedPointer<schema::GnssMeasurement> makeGnssMeasurement(const ImportFix& fix,
                                                                const ImportNotes& notes);

/// What makeGnssMeasurement() counts.
constexpr const char* kNoPosition = "fix without a usable latitude and longitude";
constexpr const char* kSmallAxis = "error axis below 1 m, stored as 1 m";
constexpr const char* kBadAltitude = "altitude out of range, left out";
constexpr const char* kBadAltitudeUncertainty = "altitude uncertainty out of range, left out";
constexpr const char* kBadRadius = "accuracy out of range, left out";
constexpr const char* kBadAxis = "error axis out of range, left out";
constexpr const char* kBadOrientation = "orientation of the error ellipse out of range, left out";
constexpr const char* kBadSpeed = "speed out of range, left out";
constexpr const char* kBadCourse = "course out of range, left out";
constexpr const char* kSeaLevel = "altitude above sea level without geoid separation, left out";
constexpr const char* kBadTime = "time stamp that 32 bits of Unix seconds cannot hold, left out";

/// `unixSeconds` as a time stamp; nothing for 0 and for what 32 bits do not hold.
std::optional<unsigned int> timeStampOf(long long unixSeconds);

}  // namespace trelvo::tool
