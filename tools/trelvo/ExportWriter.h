#pragma once

#include <memory>
#include <ostream>

#include "tools/trelvo/ExportLosses.h"
#include "tools/trelvo/Feature.h"

namespace trelvo::tool {

/// Writes features in one format, each at once.
class ExportWriter {
 public:
  virtual ~ExportWriter() = default;

  /// What stands ahead of the first feature.
  virtual void begin() = 0;
  virtual void feature(const Feature& feature) = 0;
  /// What stands behind the last feature.
  virtual void end() = 0;
};

/// Where a writer writes to, and where it counts what the format has no place for. Both must
/// outlive it.
struct ExportTarget {
  std::ostream& out;
  ExportLosses& losses;
};

/// Whether features are drawn with their uncertainty or as bare points.
enum class ExportShape { Outline, Point };

/// A feature collection of RFC 7946, a feature a line: an ellipse or circle of uncertainty as a
/// polygon of 64 points, a position without one as a point, no position as the geometry null; all
/// fields as properties. Of a polygon the property `polygon` names the fields that it shows.
std::unique_ptr<ExportWriter> makeGeoJsonWriter(const ExportTarget& target, ExportShape shape);

/// One flat JSON object a line, for each feature.
std::unique_ptr<ExportWriter> makeNdjsonWriter(const ExportTarget& target);

/// CSV of RFC 4180 with a header row that is always the same, a row a feature. Fields without a
/// column stand in the last one, `other`, as a JSON object.
std::unique_ptr<ExportWriter> makeCsvWriter(const ExportTarget& target);

/// GPX 1.1: fixes as the points of one track, other positions as waypoints. Fields stand in `desc`.
/// Heights are above the ellipsoid, which `ele` is not, and there is no dilution of precision to be
/// had: neither is written.
std::unique_ptr<ExportWriter> makeGpxWriter(const ExportTarget& target);

/// KML 2.2: a placemark with a point for each position, with its time and all fields as extended
/// data. Heights do not go into the coordinates, which count from sea level.
std::unique_ptr<ExportWriter> makeKmlWriter(const ExportTarget& target);

/// The geosubmit JSON of version 2, an item a measurement container: the way back of an import.
std::unique_ptr<ExportWriter> makeGeosubmitWriter(const ExportTarget& target);

}  // namespace trelvo::tool
