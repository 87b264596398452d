#include "tools/trelvo/GeosubmitCells.h"

#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>

#include <algorithm>
#include <limits>
#include <string>

#include "tools/trelvo/ImportTarget.h"
#include "tools/trelvo/ImportText.h"
#include "tools/trelvo/RadioLevels.h"

namespace trelvo::tool {

namespace {

constexpr long long kMostCellId = 0xFFFFFFF;  // 28 bits, WCDMA and LTE
constexpr double kLowestLevel = -200.0;

struct RadioName {
  const char* name;
  TowerRadio radio;
};

constexpr RadioName kRadioNames[] = {
    {"gsm", TowerRadio::Gsm},
    {"wcdma", TowerRadio::Wcdma},
    {"umts", TowerRadio::Wcdma},  // the same in older reports
    {"lte", TowerRadio::Lte},
};

// How phones turn a level into "asu", by radio network in the order of TowerRadio.
struct AsuScale {
  long long least;
  long long most;
  double step;
  double zero;  // dBm of asu 0
};

constexpr AsuScale kAsuScales[] = {
    {0, 31, 2.0, -113.0}, {-5, 91, 1.0, -116.0}, {0, 97, 1.0, -140.0}};

std::optional<TowerRadio> readRadio(GeosubmitFields& fields) {
  const auto type = fields.text("radioType");
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

std::optional<double> levelOfAsu(GeosubmitFields& fields, TowerRadio radio) {
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

std::optional<double> readLevel(GeosubmitFields& fields, TowerRadio radio) {
  const auto level = fields.number("signalStrength");
  if (!level) {
    return levelOfAsu(fields, radio);
  }
  fields.member("asu");
  if (*level < kLowestLevel || *level >= 0.0) {
    fields.refuse("signalStrength", kDoesNotFit);
    return std::nullopt;
  }
  return level;
}

template <typename Integer>
long long most() {
  return std::numeric_limits<Integer>::max();
}

void readIdentity(GeosubmitFields& fields, GeosubmitTower& tower) {
  tower.mcc = fields.integer("mobileCountryCode", 0, most<unsigned short>());
  tower.mnc = fields.integer("mobileNetworkCode", 0, most<unsigned short>());
  tower.lac = fields.integer("locationAreaCode", 0, most<unsigned short>());
  tower.cellId = fields.integer(
      "cellId", 0, tower.radio == TowerRadio::Gsm ? most<unsigned short>() : kMostCellId);
}

// Fields that only some networks have a place for.
void readRadioFields(GeosubmitFields& fields, GeosubmitTower& tower) {
  tower.channel = fields.integer("arfcn", 0, most<unsigned short>());
  if (tower.radio != TowerRadio::Gsm) {
    tower.scramblingCode = fields.integer("primaryScramblingCode", 0, most<unsigned short>());
  }
  if (tower.radio != TowerRadio::Wcdma) {
    const bool narrow = tower.radio == TowerRadio::Gsm;
    tower.timingAdvance =
        fields.integer("timingAdvance", 0, narrow ? most<unsigned char>() : most<unsigned short>());
  }
}

int code(LevelScale scale, double dbm) { return levelCode(scale, dbm).value_or(0); }

// What differs between the radio networks: the classes, and where the fields of a tower go.
struct Gsm {
  using Cell = schema::GeranCellMeasurement;
  using Serving = schema::GeranServingCellMeasurement;
  using Nw = schema::GeranNwMeasurement;
  using Dn = schema::GeranCellDn;
  static constexpr TowerRadio kRadio = TowerRadio::Gsm;
  static constexpr auto kAdd = &schema::MeasurementContainer::addGeranMeasurement;

  static void setDn(Dn& dn, const GeosubmitTower& tower) {
    if (tower.lac) dn.setLac(static_cast<unsigned short>(*tower.lac));
    if (tower.cellId) dn.setCid(static_cast<unsigned short>(*tower.cellId));
  }
  static void setNeighbourIdentity(Nw& nw, const GeosubmitTower& tower) {
    if (tower.lac) nw.setLac(static_cast<unsigned short>(*tower.lac));
    if (tower.cellId) nw.setCid(static_cast<unsigned short>(*tower.cellId));
  }
  static void setRadio(Nw& nw, const GeosubmitTower& tower) {
    if (tower.channel) {
      const auto info = made(schema::GeranFrequencyInfo::create());
      info->setArfcn(static_cast<unsigned short>(*tower.channel));
      nw.setFrequencyInfo(info);
    }
    if (tower.level) {
      nw.setRxLevel(static_cast<unsigned char>(code(LevelScale::GeranRxLev, *tower.level)));
    }
  }
  static void setServing(Serving& serving, const GeosubmitTower& tower) {
    if (tower.timingAdvance) {
      serving.setTimingAdvance(static_cast<unsigned char>(*tower.timingAdvance));
    }
  }
};

struct Wcdma {
  using Cell = schema::UtraFddCellMeasurement;
  using Serving = schema::UtraFddServingCellMeasurement;
  using Nw = schema::UtraFddNwMeasurement;
  using Dn = schema::UtraCellDn;
  static constexpr TowerRadio kRadio = TowerRadio::Wcdma;
  static constexpr auto kAdd = &schema::MeasurementContainer::addUtraFddMeasurement;

  static void setDn(Dn& dn, const GeosubmitTower& tower) {
    if (tower.cellId) dn.setUcid(static_cast<unsigned int>(*tower.cellId));
  }
  static void setNeighbourIdentity(Nw& nw, const GeosubmitTower& tower) {
    if (tower.cellId) nw.setUcid(static_cast<unsigned int>(*tower.cellId));
    if (tower.lac) tower.notes.report.notStored("cellTowers.locationAreaCode of a WCDMA neighbour");
  }
  static void setRadio(Nw& nw, const GeosubmitTower& tower) {
    const auto info = made(schema::UtraFddFrequencyInfo::create());
    if (tower.channel) info->setUarfcnDl(static_cast<unsigned short>(*tower.channel));
    if (tower.scramblingCode) info->setPcpich(static_cast<unsigned short>(*tower.scramblingCode));
    if (!info->isEmpty()) nw.setFrequencyInfo(info);
    if (tower.level) {
      nw.setRscp(static_cast<signed char>(code(LevelScale::UtraFddRscp, *tower.level)));
    }
  }
  static void setServing(Serving& serving, const GeosubmitTower& tower) {
    if (tower.lac) serving.setLac(static_cast<unsigned short>(*tower.lac));
  }
};

struct Lte {
  using Cell = schema::EUtraCellMeasurement;
  using Serving = schema::EUtraServingCellMeasurement;
  using Nw = schema::EUtraNwMeasurement;
  using Dn = schema::EUtraCellDn;
  static constexpr TowerRadio kRadio = TowerRadio::Lte;
  static constexpr auto kAdd = &schema::MeasurementContainer::addEUtraMeasurement;

  static void setDn(Dn& dn, const GeosubmitTower& tower) {
    if (tower.cellId) dn.setUcid(static_cast<unsigned int>(*tower.cellId));
  }
  static void setNeighbourIdentity(Nw& nw, const GeosubmitTower& tower) {
    if (tower.cellId) nw.setUcid(static_cast<unsigned int>(*tower.cellId));
  }
  static void setRadio(Nw& nw, const GeosubmitTower& tower) {
    const auto info = made(schema::EUtraFrequencyInfo::create());
    if (tower.channel) info->setEarfcn(static_cast<unsigned short>(*tower.channel));
    if (tower.scramblingCode) info->setPci(static_cast<unsigned short>(*tower.scramblingCode));
    if (!info->isEmpty()) nw.setFrequencyInfo(info);
    if (tower.lac) nw.setTac(static_cast<unsigned short>(*tower.lac));
    if (tower.level) {
      nw.setRsrp(static_cast<unsigned char>(code(LevelScale::EUtraRsrp, *tower.level)));
    }
  }
  static void setServing(Serving& serving, const GeosubmitTower& tower) {
    if (tower.timingAdvance) {
      serving.setTimingAdvance(static_cast<unsigned short>(*tower.timingAdvance));
    }
  }
};

// The cell measurements of one radio network in one report.
template <class Radio>
class CellGroup {
 public:
  using Cell = typename Radio::Cell;

  void addServing(const GeosubmitTower& tower) {
    const auto dn = dnOf(tower);
    const auto serving = servingOf(tower);
    if (dn->isEmpty() && serving->isEmpty()) {
      tower.notes.count(kEmptyTower);
      return;
    }
    const auto cell = newCell(tower);
    if (!dn->isEmpty()) expectStored(cell->setDn(dn));
    if (!serving->isEmpty()) expectStored(cell->setServingCellMeasurement(serving));
  }

  void addNeighbour(const GeosubmitTower& tower) {
    const auto nw = made(Radio::Nw::create());
    Radio::setNeighbourIdentity(*nw, tower);
    Radio::setRadio(*nw, tower);
    if (nw->isEmpty()) {
      tower.notes.count(kEmptyTower);
      return;
    }
    const auto cell = m_cells.empty() ? newCell(tower) : m_cells.front();
    nameLost(tower, *cell);
    expectStored(cell->addNwMeasurement(nw));
  }

  void store(schema::MeasurementContainer& container) const {
    for (const auto& cell : m_cells) {
      expectStored((container.*Radio::kAdd)(cell->wrappedObject()));
    }
  }

 private:
  gom::SharedPointer<Cell> newCell(const GeosubmitTower& tower) {
    m_cells.push_back(made(Cell::create()));
    if (tower.timeStamp) {
      expectStored(m_cells.back()->setTimeStamp(*tower.timeStamp));
    }
    return m_cells.back();
  }

  static gom::SharedPointer<typename Radio::Dn> dnOf(const GeosubmitTower& tower) {
    auto dn = made(Radio::Dn::create());
    if (tower.mcc) dn->setMcc(static_cast<unsigned short>(*tower.mcc));
    if (tower.mnc) dn->setMnc(static_cast<unsigned short>(*tower.mnc));
    Radio::setDn(*dn, tower);
    return dn;
  }

  static gom::SharedPointer<typename Radio::Serving> servingOf(const GeosubmitTower& tower) {
    auto serving = made(Radio::Serving::create());
    const auto nw = made(Radio::Nw::create());
    Radio::setRadio(*nw, tower);
    if (!nw->isEmpty()) serving->setNwMeasurement(nw);
    Radio::setServing(*serving, tower);
    return serving;
  }

  // A neighbour's record has no network code and no time: they are those of its serving cell.
  static void nameLost(const GeosubmitTower& tower, const Cell& cell) {
    const auto dn = cell.dn();
    if ((tower.mcc && (!dn || dn->mcc() != *tower.mcc)) ||
        (tower.mnc && (!dn || dn->mnc() != *tower.mnc))) {
      tower.notes.report.notStored("cellTowers network codes of a neighbour in another network");
    }
    if (tower.timeStamp && *tower.timeStamp != cell.timeStamp()) {
      tower.notes.report.notStored("cellTowers.age of a neighbour");
    }
    if (tower.timingAdvance) {
      tower.notes.report.notStored("cellTowers.timingAdvance of a neighbour");
    }
  }

  std::vector<gom::SharedPointer<Cell>> m_cells;
};

using Towers = std::vector<GeosubmitTower>;

std::vector<bool> servingFlags(const Towers& towers) {
  std::vector<bool> flags;
  for (const GeosubmitTower& tower : towers) {
    flags.push_back(tower.serving.value_or(false));
  }
  if (std::find(flags.begin(), flags.end(), true) == flags.end()) {
    const auto first = std::find_if(towers.begin(), towers.end(),
                                    [](const GeosubmitTower& tower) { return !tower.serving; });
    if (first != towers.end()) {
      flags[static_cast<size_t>(first - towers.begin())] = true;
    }
  }
  return flags;
}

template <class Radio>
void addGroup(const Towers& towers, const std::vector<bool>& serving,
              schema::MeasurementContainer& container) {
  CellGroup<Radio> group;
  for (const bool wanted : {true, false}) {
    for (size_t i = 0; i < towers.size(); ++i) {
      if (towers[i].radio == Radio::kRadio && serving[i] == wanted) {
        wanted ? group.addServing(towers[i]) : group.addNeighbour(towers[i]);
      }
    }
  }
  group.store(container);
}

}  // namespace

std::optional<GeosubmitTower> readTower(GeosubmitFields& fields) {
  const auto radio = readRadio(fields);
  if (!radio) {
    return std::nullopt;
  }
  GeosubmitTower tower(fields.notes());
  tower.radio = *radio;
  if (const auto serving = fields.integer("serving", 0, 1)) {
    tower.serving = *serving == 1;
  }
  readIdentity(fields, tower);
  readRadioFields(fields, tower);
  tower.level = readLevel(fields, *radio);
  return tower;
}

void addTowers(const Towers& towers, schema::MeasurementContainer& container) {
  const std::vector<bool> serving = servingFlags(towers);
  addGroup<Gsm>(towers, serving, container);
  addGroup<Wcdma>(towers, serving, container);
  addGroup<Lte>(towers, serving, container);
}

}  // namespace trelvo::tool
