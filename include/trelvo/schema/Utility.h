#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>

namespace trelvo {
class Midpoint;
class ShapeMatrix;
}  // namespace trelvo

namespace trelvo::gom {
class GenericObject;
template <class T>
class SharedPointer;
class ValueCollection;
class Variant;
}  // namespace trelvo::gom

namespace trelvo::schema {

class CellularObjectDn;

/// Geodesy, map tiles, comparison of uncertainty ellipses and walks over measurements as
/// free-standing functions; there are no objects of this class.
///
/// Coordinates are doubles in degrees, latitude before longitude, positive to the north and to the
/// east. Arguments are not range-checked unless a function says so. Every argument has a defined
/// result, infinities and NaN too: arithmetic carries a NaN through, comparisons with it are false,
/// and where a number becomes an integer it is truncated, stops at the ends of the type, and a NaN
/// becomes 0.
///
/// Failures: a function with output references returns false. Nothing throws, allocates or keeps
/// state.
/// Threads: any number at a time; where handles are passed, one at a time for the objects behind.
/// Rounding: error bounds are the largest seen in sweeps of random arguments against 113-bit
/// arithmetic, on amd64 with glibc. Other C libraries differ in the last bits of sin, cos and acos.
class TRELVO_EXPORT Utility {
 public:
  Utility() = delete;

  // -- Fixed-point coordinates and angles ---------------------------------------------------------
  // A code is a signed 32-bit number whose whole range spans the coordinate's: 2^31 stands for 90
  // degrees of latitude or 180 degrees of longitude. One step is 4.2e-8 and 8.4e-8 degrees, on the
  // ground at most 4.7 mm and 9.3 mm.

  /// The code of a latitude in degrees: floor(degrees / 90 * 2^31).
  ///
  /// Always rounds to the south, so a round trip through wgs84Latitude() can lose up to one step.
  /// 90.0 and all above give 0x7FFFFFFF, -90.0 and all below 0x80000000, a NaN 0.
  static int latitude(double degrees) noexcept;

  /// The code of a longitude in degrees: floor(degrees / 180 * 2^31).
  ///
  /// Always rounds to the west, so a round trip through wgs84Longitude() can lose up to one step.
  /// 180.0 and all above give 0x7FFFFFFF, -180.0 and all below 0x80000000, a NaN 0.
  static int longitude(double degrees) noexcept;

  /// Degrees of a latitude code, in [-90, 90). Exact.
  static double wgs84Latitude(int code) noexcept;

  /// Degrees of a longitude code, in [-180, 180). Exact.
  static double wgs84Longitude(int code) noexcept;

  /// Degrees of an angle between 0 and pi radians, off by at most 2 ulp.
  ///
  /// Does not wrap: below 0 and for a NaN the result is 0.0; above the single-precision pi it is
  /// 180.00000500895632, which is that pi in degrees and lies above 180.
  static double toDegrees(float radians) noexcept;

  /// Radians of an angle between 0 and 180 degrees, off by at most 2 ulp.
  ///
  /// Does not wrap: below 0 and for a NaN the result is 0.0, above 180 it is pi.
  static double toRadians(double degrees) noexcept;

  // -- Local scale on the ellipsoid ---------------------------------------------------------------
  // Semi-major axis 6378137.0 m, first eccentricity squared 0.006694380004260814. The eccentricity
  // lies 1.4e-11 above that of WGS84, and so may the factors along the meridian. These factors and
  // distance(), which uses a sphere, disagree by up to 0.6 %.

  /// How many degrees one metre spans at `latitude`, eastward along the parallel and northward
  /// along the meridian: the reciprocals of the parallel's radius and of the meridional radius of
  /// curvature.
  ///
  /// @return false with both outputs 0.0 at 90.0 and -90.0 exactly, else true. A hair off a pole
  ///         the eastward factor is huge and has few correct digits; past a pole it is negative.
  /// Rounding: latDegreesPerMeter within 3 ulp; lonDegreesPerMeter within a relative
  /// 2.3e-16 * (4 + 2 / cos latitude): 12 ulp up to 80 degrees, 152 up to 89.
  /// Source: J. P. Snyder, Map Projections: A Working Manual, 1987, equations 4-18 to 4-21.
  static bool meterInDegrees(double latitude, double& lonDegreesPerMeter,
                             double& latDegreesPerMeter) noexcept;

  /// How many metres one degree spans at `latitude`, eastward and northward: the reciprocals of
  /// what meterInDegrees() gives.
  ///
  /// Rounding: latMetersPerDegree within 5 ulp; lonMetersPerDegree as meterInDegrees().
  /// @return false with both outputs 0.0 at 90.0 and -90.0 exactly, else true.
  static bool degreeInMeters(double latitude, double& lonMetersPerDegree,
                             double& latMetersPerDegree) noexcept;

  // -- Across the date line -----------------------------------------------------------------------

  /// Brings `longitude` to the side of the date line where `reference` is, so that both can be
  /// subtracted and averaged. The result may leave [-180, 180]: (-179, 179) gives 181.
  ///
  /// Turns by one full circle at most. A difference of exactly 180 either way changes nothing.
  static double compLonRollOver(double longitude, double reference) noexcept;

  /// Brings a longitude in [-540, 540) back to [-180, 180): undoes compLonRollOver(). 180.0 becomes
  /// -180.0, and -180.0 stays. Turns by one full circle at most.
  static double deCompLonRollOver(double longitude) noexcept;

  // -- Distance and direction on the sphere -------------------------------------------------------

  /// `value` clamped to [-1, 1], so that rounding cannot push a cosine out of the domain of acos.
  /// A NaN stays a NaN.
  static double normalizedSinOrCosValue(double value) noexcept;

  /// Cosine of the angle at the earth's centre between two points, in [-1, 1]. Within 1.1e-15 for
  /// longitudes in [-180, 180].
  ///
  /// Source: spherical law of cosines; Snyder (1987), equation 5-3.
  static double cosAlpha(double lat1, double lon1, double lat2, double lon2) noexcept;

  /// Great-circle distance in metres on a sphere of radius 6371010.0 m (spherical law of cosines).
  ///
  /// Two points in the same numbers are exactly 0.0 apart, and 9.5 cm is the smallest distance
  /// above 0: the cosine's rounding weighs the more the closer the points are to each other or to
  /// each other's antipode. Against the WGS84 geodesic: within 0.57 %.
  ///
  /// Rounding: at most 0.13 m below 0.1 m, from there 0.018 m divided by the metres to the second
  /// point or to its antipode, whichever is less, and 10 nm at best: 1.8 cm at 1 m, 0.18 mm at
  /// 100 m, 2 um at 10 km.
  /// Source: as cosAlpha(); radius from C. F. Yoder, Global Earth Physics, 1995.
  /// @return always true.
  static bool distance(double lat1, double lon1, double lat2, double lon2, double& metres) noexcept;

  /// Initial bearing of the great circle from the first point to the second: degrees clockwise from
  /// north, in [0, 360).
  ///
  /// East and west are told apart by the longitude difference cut to whole degrees: one between 180
  /// and 181 counts as 180, and the bearing comes out mirrored at the meridian (270 for 90). Bring
  /// longitudes together by compLonRollOver() where that matters.
  ///
  /// Rounding, up to latitude 85: 12 degrees divided by the metres to the second point or to its
  /// antipode, whichever is less, and 2e-6 at best: 0.12 degrees at 100 m, 0.0012 at 10 km. It is
  /// largest along the meridians.
  /// Source: I. Todhunter, Spherical Trigonometry, 1886, chapter IV.
  /// @return true, also for two points in the same numbers, where the bearing is 0.0. False, with
  ///         `degrees` untouched, where there is no direction to give: from a pole or within 7 cm
  ///         of one, to the antipode, and between points whose cosAlpha() rounds to 1 or -1 (some
  ///         of those closer than 0.2 m to each other or to each other's antipode).
  static bool bearing(double lat1, double lon1, double lat2, double lon2, double& degrees) noexcept;

  // -- WLAN RM tiles ------------------------------------------------------------------------------
  // At level L the globe is a grid of 2^L by 2^L tiles, each 180 / 2^L degrees high and 360 / 2^L
  // degrees wide. Valid levels are 6 to 23. A tile's identifier:
  //
  //   bits            content
  //   above 2L        zero
  //   2L              1, the marker: the highest set bit tells the level
  //   2L-1 down to L  latitude index, counted from the south pole, 0 to 2^L - 1
  //   L-1 down to 0   longitude index, counted eastward from 180 degrees west, 0 to 2^L - 1

  /// Identifier of the tile at `level` that holds the position.
  ///
  /// Nothing is checked. Keep latitude in [-90, 90) and longitude in [-180, 180): 90.0 falls on the
  /// marker bit, so that the north pole's row aliases the south pole's, and 180.0 falls into the
  /// lowest latitude bit; what lies below a range counts as its start. A level outside 6 to 23
  /// gives an identifier that wlanRmTileLevel() rejects.
  static unsigned long long wlanRmTileId(double latitude, double longitude,
                                         unsigned int level) noexcept;

  /// Level of a tile, 6 to 23, or 0 when `id` is no identifier of a tile.
  static unsigned int wlanRmTileLevel(unsigned long long id) noexcept;

  /// Level and south-west corner of a tile; the corner is exact.
  ///
  /// @return false when `id` is no identifier of a tile: `level` is then 0, and the coordinates are
  ///         untouched.
  static bool parseWlanRmTileId(unsigned long long id, double& latitude, double& longitude,
                                unsigned int& level) noexcept;

  /// Height and width of a tile in degrees, exact.
  ///
  /// @return false, with both outputs untouched, when `id` is no identifier of a tile.
  static bool wlanRmTileSizeInDegrees(unsigned long long id, double& latitudeSize,
                                      double& longitudeSize) noexcept;

  /// Identifier of the tile at the coarser `level` that holds the tile `id`; at the tile's own
  /// level it is `id`.
  ///
  /// `level` is not checked: above the tile's own level the result is the bare marker of `level`
  /// (0 from level 32 up), and below 6 an identifier that wlanRmTileLevel() rejects.
  /// @return 0 when `id` is no identifier of a tile.
  static unsigned long long wlanRmTileParentId(unsigned long long id, unsigned int level) noexcept;

  /// Whether a position lies in a box, given by its south-west corner and its size in degrees. The
  /// south and west edges belong to the box, the north and east edges do not.
  ///
  /// Knows nothing of the date line: a box that crosses it must be split by the caller. Corner and
  /// size of a tile, as given by parseWlanRmTileId() and wlanRmTileSizeInDegrees(), fit.
  static bool isPositionInsideArea(double originLatitude, double originLongitude,
                                   double latitudeSize, double longitudeSize, double latitude,
                                   double longitude) noexcept;

  // -- Comparing uncertainty ellipses
  // -------------------------------------------------------------- An ellipse is a centre and a
  // covariance in squared degrees (ShapeMatrix). Distances are plain numbers, counted in standard
  // deviations. They mean something for positive definite covariances; others are not refused but
  // for the absolute threshold of Symmetric2by2Matrix::invmat(). Standard deviations of 2 m and
  // less on both axes fall under it and count as singular.

  /// Squared Mahalanobis distance of two points under `shape`: d^T shape^-1 d, where d is the first
  /// point minus the second, over the date line where that is the shorter way.
  ///
  /// 0.0 for a singular `shape`, whatever the points. Negative where `shape` is not positive
  /// definite.
  /// Source: P. C. Mahalanobis, On the generalised distance in statistics, 1936.
  static double squaredDistance(double lat1, double lon1, double lat2, double lon2,
                                const ShapeMatrix& shape) noexcept;

  /// Squared Mahalanobis distance of two ellipses: of their centres under the sum of their
  /// covariances. The ellipses agree as well as two normal distributions would where it is below
  /// 5.99 (95 % of a chi-squared distribution of two degrees).
  ///
  /// Takes longitudes as they are: bring centres on either side of the date line together by
  /// compLonRollOver() first, or the difference is one of nearly 360 degrees. 0.0 for a singular
  /// sum.
  /// Source: as squaredDistance().
  static double mDistance(const Midpoint& p1, const ShapeMatrix& s1, const Midpoint& p2,
                          const ShapeMatrix& s2) noexcept;

  /// Bhattacharyya distance of two normal distributions, with S = (s1 + s2) / 2:
  /// d^T S^-1 d / 8 + ln(det S / sqrt(det s1 det s2)) / 2. 0.0 of an ellipse to itself, and larger
  /// the less the two overlap.
  ///
  /// Takes longitudes as they are, as mDistance(). Nothing is guarded: a determinant of 0 of `s1`
  /// or `s2` gives infinity, determinants of different signs NaN, and an S that cannot be inverted
  /// leaves the logarithm alone.
  ///
  /// Rounding: for a correlation r a few times 1e-16 (1 + r^2) / (1 - r^2), relative in the first
  /// part and absolute in the logarithm.
  /// Source: A. Bhattacharyya, On a measure of divergence between two statistical populations,
  /// 1943.
  static double bDistance(const Midpoint& p1, const ShapeMatrix& s1, const Midpoint& p2,
                          const ShapeMatrix& s2) noexcept;

  /// Whether the boxes around two ellipses overlap: the boxes along the meridians and parallels
  /// that reach one standard deviation from the centre each way. Boxes that only touch do not.
  ///
  /// This is a quick and generous test: slanting ellipses apart from each other can have boxes that
  /// overlap. Works across the date line.
  /// @return false also where `s1` or `s2` cannot be inverted, even with equal centres, and for a
  ///         NaN.
  static bool intersect(const Midpoint& p1, const ShapeMatrix& s1, const Midpoint& p2,
                        const ShapeMatrix& s2) noexcept;

  // -- Walks over measurements and injections -----------------------------------------------------

  /// What names an area of cells, as a value of Technology: TechnologyCellCountry for one layer,
  /// TechnologyCellNetwork for two; for three TechnologyCellLac, TechnologyCellRnc or
  /// TechnologyCellENodeB, by what the third layer is. 0 for anything else.
  static int cellularObjectTechonology(const CellularObjectDn& cell) noexcept;

  /// Raises `timeStamp` to the latest time stamp (property 205, unsigned 32-bit) among the generic
  /// objects in the list property `key` of `object`. `timeStamp` is never lowered, so start at 0.
  ///
  /// Elements that hold no generic object, and objects without a time stamp, are passed over.
  /// @return StatusOk when at least one element has a time stamp, else StatusNotFound with
  ///         `timeStamp` untouched: also for an empty handle, and without that property or with an
  ///         empty list there.
  static Status getRecentTimeStamp(const gom::SharedPointer<gom::GenericObject>& object,
                                   unsigned short key, unsigned int& timeStamp) noexcept;

  /// The latest time stamp of all cells, areas, access points and fixes in the object of an
  /// Injection; 0 when there is none, and for an empty handle.
  static unsigned int injectionTimeStamp(
      const gom::SharedPointer<gom::GenericObject>& injection) noexcept;

  /// Whether `a` comes before `b` when values that hold WlanMeasurement objects are sorted by what
  /// was heard, the strongest last. A strict weak ordering, in this order:
  ///
  ///   no WLAN measurement, or null
  ///   a WLAN measurement without a WlanApMeasurement
  ///   one whose WlanApMeasurement has no RX level
  ///   by RX level, the weakest first
  static bool sortWlans(gom::Variant* a, gom::Variant* b) noexcept;

  /// Cuts a list of WLAN measurements down to the `limit` strongest, by sortWlans(), and leaves
  /// them in that order. Which of equally strong ones stay is left open.
  ///
  /// A list of `limit` elements or fewer is not touched, not even sorted. What is cut is deleted.
  /// @return true, also for an empty handle.
  static bool trimWlanCollection(unsigned int limit,
                                 gom::SharedPointer<gom::ValueCollection> collection) noexcept;
};

}  // namespace trelvo::schema
