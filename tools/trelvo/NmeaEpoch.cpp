#include "tools/trelvo/NmeaEpoch.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string>

namespace trelvo::tool {

namespace {

constexpr double kMetresPerSecondInKnot = 1852.0 / 3600.0;
constexpr double kKilometresPerHourInMetrePerSecond = 3.6;

template <typename T>
void setFirst(std::optional<T>& target, const std::optional<T>& value) {
  if (!target) {
    target = value;
  }
}

// The fields of one sentence; one that is there and makes no sense is counted and reads as absent.
class Fields {
 public:
  Fields(const NmeaSentence& sentence, const ImportNotes& notes)
      : m_sentence(sentence), m_notes(notes) {}

  std::string_view text(size_t index) const { return m_sentence.field(index); }

  std::optional<double> number(size_t index) const {
    return checked(nmeaNumber(text(index)), !text(index).empty());
  }

  std::optional<double> number(size_t index, double factor) const {
    const auto value = number(index);
    return value ? std::optional<double>(*value * factor) : value;
  }

  // Latitude in the two fields from `index` on, longitude in the next two.
  std::optional<NmeaEpoch::Position> position(size_t index) const {
    const auto latitude = nmeaAngle(text(index), text(index + 1), 'N', 'S');
    const auto longitude = nmeaAngle(text(index + 2), text(index + 3), 'E', 'W');
    if (!checked(latitude, true) || !checked(longitude, true)) {
      return std::nullopt;
    }
    return NmeaEpoch::Position{*latitude, *longitude};
  }

  // Altitude and separation; nothing without the altitude.
  std::optional<NmeaEpoch::Height> height(size_t altitude, size_t separation) const {
    const NmeaEpoch::Height height{number(altitude), number(separation)};
    return height.altitude ? std::optional<NmeaEpoch::Height>(height) : std::nullopt;
  }

  template <typename T>
  std::optional<T> checked(const std::optional<T>& value, bool present) const {
    if (present && !value) {
      m_notes.count(kBadNmeaField);
    }
    return value;
  }

  void nameIfPresent(size_t index, const char* name) const {
    if (!text(index).empty()) {
      m_notes.report.notStored(name);
    }
  }

 private:
  const NmeaSentence& m_sentence;
  const ImportNotes& m_notes;
};

void readGga(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes) {
  const Fields fields(sentence, notes);
  const auto quality = fields.number(6);
  if (!quality || *quality <= 0) {
    return;
  }
  epoch.hasFix = true;
  epoch.isSimulated = epoch.isSimulated || *quality == 8;
  setFirst(epoch.ggaPosition, fields.position(2));
  setFirst(epoch.ggaHeight, fields.height(9, 11));
  fields.nameIfPresent(7, "GGA number of satellites");
  fields.nameIfPresent(8, "GGA HDOP");
  fields.nameIfPresent(13, "GGA age and station of corrections");
}

// One letter a constellation. Several talkers of one moment leave position and modes to the first.
void readGns(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes) {
  const Fields fields(sentence, notes);
  const std::string_view modes = fields.text(6);
  if (modes.find_first_of("ADEFMPRS") == std::string_view::npos) {
    return;
  }
  epoch.hasFix = true;
  epoch.isSimulated = epoch.isSimulated || modes.find('S') != std::string_view::npos;
  setFirst(epoch.gnsPosition, fields.position(2));
  setFirst(epoch.gnsHeight, fields.height(9, 10));
  fields.nameIfPresent(7, "GNS number of satellites");
  fields.nameIfPresent(8, "GNS HDOP");
  fields.nameIfPresent(11, "GNS age and station of corrections");
}

void readRmc(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes) {
  const Fields fields(sentence, notes);
  const auto date = fields.checked(nmeaDate(fields.text(9)), !fields.text(9).empty());
  if (fields.text(2) != "A") {
    setFirst(epoch.voidRmcDate, date);
    return;
  }
  epoch.hasFix = true;
  setFirst(epoch.rmcDate, date);
  setFirst(epoch.rmcPosition, fields.position(3));
  setFirst(epoch.rmcSpeed, fields.number(7, kMetresPerSecondInKnot));
  setFirst(epoch.rmcCourse, fields.number(8));
  fields.nameIfPresent(10, "RMC magnetic variation");
}

void readVtg(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes) {
  const Fields fields(sentence, notes);
  if (fields.text(9) == "N" || fields.text(2) != "T") {
    return;
  }
  setFirst(epoch.vtgCourse, fields.number(1));
  setFirst(epoch.vtgSpeed, fields.number(5, kMetresPerSecondInKnot));
  setFirst(epoch.vtgSpeed, fields.number(7, 1 / kKilometresPerHourInMetrePerSecond));
}

void readGst(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes) {
  const Fields fields(sentence, notes);
  setFirst(epoch.majorAxis, fields.number(3));
  setFirst(epoch.minorAxis, fields.number(4));
  setFirst(epoch.orientation, fields.number(5));
  setFirst(epoch.altitudeUncertainty, fields.number(8));
  fields.nameIfPresent(2, "GST residuals");
  fields.nameIfPresent(6, "GST deviations of latitude and longitude");
}

void readGsa(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes) {
  const Fields fields(sentence, notes);
  const auto mode = fields.number(2);
  epoch.fixMode = std::max(epoch.fixMode, mode == 3.0 ? 3 : mode == 2.0 ? 2 : 0);
  fields.nameIfPresent(3, "GSA satellites and DOP");
}

void readZda(const NmeaSentence& sentence, NmeaEpoch& epoch, const ImportNotes& notes) {
  const Fields fields(sentence, notes);
  const auto date = nmeaDate(fields.text(2), fields.text(3), fields.text(4));
  setFirst(epoch.zdaDate, fields.checked(date, !fields.text(2).empty()));
}

constexpr NmeaSentenceKind kKinds[] = {
    // type, index of the time, tells a fix, reader, bit
    {"GGA", 1, true, readGga, 0x01},   {"RMC", 1, true, readRmc, 0x02},
    {"VTG", 0, false, readVtg, 0x04},  {"GST", 1, false, readGst, 0x08},
    {"GSA", 0, false, readGsa, 0x10},  {"ZDA", 1, false, readZda, 0x20},
    {"GLL", 5, false, nullptr, 0x40},  {"GNS", 1, true, readGns, 0x80},
    {"GBS", 1, false, nullptr, 0x100}, {"GRS", 1, false, nullptr, 0x200},
};

std::optional<NmeaEpoch::Height> heightOf(const NmeaEpoch& epoch) {
  const bool gnsOnly = epoch.gnsHeight && epoch.gnsHeight->separation &&
                       !(epoch.ggaHeight && epoch.ggaHeight->separation);
  return gnsOnly || !epoch.ggaHeight ? epoch.gnsHeight : epoch.ggaHeight;
}

std::optional<double> ellipsoidHeight(const NmeaEpoch& epoch, const ImportNotes& notes) {
  const auto height = heightOf(epoch);
  if (!height) {
    return std::nullopt;
  }
  if (!height->separation) {
    notes.count(kNoSeparation);
    return std::nullopt;
  }
  if (epoch.fixMode == 2) {
    notes.count(kHeldAltitude);
  }
  return *height->altitude + *height->separation;
}

std::optional<NmeaEpoch::Position> positionOf(const NmeaEpoch& epoch) {
  // GGA and GNS first: several receivers round the same position further in RMC.
  return epoch.ggaPosition   ? epoch.ggaPosition
         : epoch.gnsPosition ? epoch.gnsPosition
                             : epoch.rmcPosition;
}

}  // namespace

std::optional<NmeaDate> NmeaEpoch::date() const {
  return rmcDate ? rmcDate : zdaDate ? zdaDate : voidRmcDate;
}

const NmeaSentenceKind* nmeaSentenceKind(std::string_view type) {
  const auto* const found =
      std::find_if(std::begin(kKinds), std::end(kKinds),
                   [&](const NmeaSentenceKind& kind) { return type == kind.type; });
  return found == std::end(kKinds) ? nullptr : found;
}

ImportFix fixOf(const NmeaEpoch& epoch, const ImportNotes& notes) {
  ImportFix fix;
  if (const auto position = positionOf(epoch)) {
    fix.latitude = position->latitude;
    fix.longitude = position->longitude;
  }
  fix.altitude = ellipsoidHeight(epoch, notes);
  fix.altitudeUncertainty = epoch.altitudeUncertainty;
  fix.majorAxis = epoch.majorAxis;
  fix.minorAxis = epoch.minorAxis;
  fix.orientation = epoch.orientation;
  fix.speed = epoch.rmcSpeed ? epoch.rmcSpeed : epoch.vtgSpeed;
  fix.course = epoch.rmcCourse ? epoch.rmcCourse : epoch.vtgCourse;
  if (epoch.isSimulated) {
    notes.count(kSimulated);
  }
  return fix;
}

}  // namespace trelvo::tool
