#include "tools/trelvo/GeosubmitCells.h"

#include <limits>
#include <string>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

struct RadioName {
  const char* name;
  CellRadio radio;
};

constexpr RadioName kRadioNames[] = {
    {"gsm", CellRadio::Gsm},
    {"wcdma", CellRadio::Wcdma},
    {"umts", CellRadio::Wcdma},  // the same in older reports
    {"lte", CellRadio::Lte},
};

// How phones turn a level into "asu", by radio network in the order of CellRadio.
struct AsuScale {
  long long least;
  long long most;
  double step;
  double zero;  // dBm of asu 0
};

constexpr AsuScale kAsuScales[] = {
    {0, 31, 2.0, -113.0}, {-5, 91, 1.0, -116.0}, {0, 97, 1.0, -140.0}};

std::optional<CellRadio> readRadio(JsonFields& fields, const std::optional<std::string>& standard) {
  const auto own = fields.text("radioType");
  const auto& type = own ? own : standard;
  if (!type) {
    fields.notes().count(kNoRadioType);
    return std::nullopt;
  }
  for (const RadioName& row : kRadioNames) {
    if (*type == row.name) {
      return row.radio;
    }
  }
  fields.notes().count("unknown radio type '" + printable(*type, 20) + "'");
  return std::nullopt;
}

std::optional<double> levelOfAsu(JsonFields& fields, CellRadio radio) {
  constexpr long long kUnknown = 99;
  const AsuScale& scale = kAsuScales[static_cast<size_t>(radio)];
  const auto asu = fields.integer("asu", scale.least, kUnknown);
  if (!asu || *asu == kUnknown) {
    return std::nullopt;
  }
  if (*asu > scale.most) {
    fields.refuse("asu", kDoesNotFit);
    return std::nullopt;
  }
  return scale.zero + scale.step * static_cast<double>(*asu);
}

std::optional<double> readLevel(JsonFields& fields, CellRadio radio) {
  const auto level = fields.number("signalStrength");
  if (!level) {
    return levelOfAsu(fields, radio);
  }
  fields.member("asu");
  if (!isHeardLevel(*level)) {
    fields.refuse("signalStrength", kDoesNotFit);
    return std::nullopt;
  }
  return level;
}

constexpr long long kMostShort = std::numeric_limits<unsigned short>::max();

void readIdentity(JsonFields& fields, HeardCell& tower) {
  tower.mcc = fields.integer("mobileCountryCode", 0, kMostShort);
  tower.mnc = fields.integer("mobileNetworkCode", 0, kMostShort);
  tower.area = fields.integer("locationAreaCode", 0, kMostAreaCode);
  tower.cellId = fields.integer("cellId", 0, cellLimits(tower.radio).cellId);
}

// Fields that only some networks have a place for.
void readRadioFields(JsonFields& fields, HeardCell& tower) {
  const CellLimits& limits = cellLimits(tower.radio);
  tower.channel = fields.integer("arfcn", 0, limits.channel);
  if (tower.radio != CellRadio::Gsm) {
    const auto code = fields.integer("primaryScramblingCode", 0, limits.code);
    tower.code = code ? code : fields.integer("psc", 0, limits.code);
  }
  if (tower.radio != CellRadio::Wcdma) {
    tower.timingAdvance = fields.integer("timingAdvance", 0, limits.timingAdvance);
  }
}

}  // namespace

std::optional<HeardCell> readTower(JsonFields& fields, const std::optional<std::string>& standard) {
  const auto radio = readRadio(fields, standard);
  if (!radio) {
    return std::nullopt;
  }
  HeardCell tower(fields.notes(), "cellTowers", *radio);
  if (const auto serving = fields.integer("serving", 0, 1)) {
    tower.serving = *serving == 1;
  }
  readIdentity(fields, tower);
  readRadioFields(fields, tower);
  tower.level = readLevel(fields, *radio);
  return tower;
}

}  // namespace trelvo::tool
