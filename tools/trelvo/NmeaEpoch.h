#pragma once

#include <optional>

#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/NmeaFields.h"
#include "tools/trelvo/NmeaReader.h"

namespace trelvo::tool {

/// What the sentences of one time of day say together. Where several talkers say the same thing the
/// first one counts.
struct NmeaEpoch {
  /// A latitude and a longitude in degrees.
  struct Position {
    double latitude;
    double longitude;
  };

  /// What one sentence says about height.
  struct Height {
    std::optional<double> altitude;    ///< metres above mean sea level
    std::optional<double> separation;  ///< geoid above ellipsoid in metres
  };

  std::optional<long long> timeOfDay;  ///< microseconds from midnight
  unsigned long long line = 0;         ///< of the first sentence
  unsigned int seen = 0;               ///< one bit for each kind of sentence in it

  /// A GGA with a quality above 0, a GNS in which a constellation has a mode of a fix (A, D, E, F,
  /// M, P, R or S), or an RMC with status A.
  bool hasFix = false;
  bool isSimulated = false;  ///< a GGA with quality 8, or a GNS with a mode S
  int fixMode = 0;           ///< of GSA: 1 none, 2 two-dimensional, 3 three-dimensional; 0 unknown

  std::optional<Position> ggaPosition;
  std::optional<Position> gnsPosition;
  std::optional<Position> rmcPosition;
  std::optional<Height> ggaHeight;            ///< of the first GGA with an altitude
  std::optional<Height> gnsHeight;            ///< of the first GNS with an altitude
  std::optional<double> rmcSpeed;             ///< metres a second
  std::optional<double> rmcCourse;            ///< degrees
  std::optional<double> vtgSpeed;             ///< metres a second
  std::optional<double> vtgCourse;            ///< degrees
  std::optional<double> majorAxis;            ///< metres, GST
  std::optional<double> minorAxis;            ///< metres, GST
  std::optional<double> orientation;          ///< degrees from north, GST
  std::optional<double> altitudeUncertainty;  ///< metres, GST

  std::optional<NmeaDate> rmcDate;  ///< of an RMC with status A
  std::optional<NmeaDate> zdaDate;
  std::optional<NmeaDate> voidRmcDate;  ///< of an RMC with status V

  /// The date to believe: that of a valid RMC, else of a ZDA, else of a void RMC.
  std::optional<NmeaDate> date() const;
};

/// One kind of sentence that belongs to an epoch.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order that the table reads best
struct NmeaSentenceKind {
  const char* type;  ///< "GGA"
  size_t timeField;  ///< index of the time of day, 0 when the sentence has none
  bool isFix;        ///< its absence of a time starts an epoch without one
  /// Puts what the sentence says into the epoch; null for kinds whose time alone is of use.
  void (*read)(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes);
  unsigned int bit;  ///< for NmeaEpoch::seen
};

/// The kind of a sentence, null for kinds that are not read.
const NmeaSentenceKind* nmeaSentenceKind(std::string_view type);

/// The fix of an epoch, without its time stamp. The position is that of GGA, else of GNS, else of
/// RMC. Height is that above the ellipsoid, altitude and separation of one sentence together: those
/// of GGA, else of GNS. It stays away, counted, where neither gives a geoid separation.
ImportFix fixOf(const NmeaEpoch& epoch, const ImportNotes& notes);

constexpr const char* kBadNmeaField = "sentence with a field that cannot be read, field left out";
constexpr const char* kNoSeparation = "altitude without geoid separation, left out";
constexpr const char* kHeldAltitude = "altitude of a 2D fix, held by the receiver, stored as given";
constexpr const char* kSimulated =
    "fix made by a simulator (GGA quality 8, GNS mode S), stored as given";

}  // namespace trelvo::tool
