#include "tools/trelvo/CellTowerImporter.h"

#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaServingCellInjection.h>
#include <trelvo/schema/EUtraServingCellInjection.h>
#include <trelvo/schema/GeranServingCellInjection.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/UtraFddServingCellInjection.h>

#include <cmath>
#include <limits>
#include <string>

#include "tools/trelvo/CellTowerFields.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportText.h"
#include "tools/trelvo/RadioLevels.h"

namespace trelvo::tool {

namespace {

using Column = CellTowerColumn;

constexpr long long kMostShort = std::numeric_limits<unsigned short>::max();
constexpr long long kMostCode = 999;          // MCC and MNC, three digits
constexpr long long kMostCellId = 0xFFFFFFF;  // 28 bits, UMTS and LTE
constexpr double kLowestLevel = -200.0;

unsigned short narrow(long long value) { return static_cast<unsigned short>(value); }

std::optional<double> readLevel(const CellTowerFields& fields) {
  const auto level = fields.number(Column::AverageSignal, kLowestLevel, 0.0);
  return level && *level < 0.0 ? level : std::nullopt;
}

std::optional<int> readLevelCode(const CellTowerFields& fields, LevelScale scale) {
  const auto level = readLevel(fields);
  return level ? levelCode(scale, *level) : std::nullopt;
}

// 0 is a code as well, but exports write it for towers of which none was ever heard.
std::optional<long long> readUnit(const CellTowerFields& fields, long long most) {
  const auto unit = fields.code(Column::Unit, 0, most);
  return unit && *unit > 0 ? unit : std::nullopt;
}

// "mcc" and "net", complete or not at all.
template <class Dn>
bool setNetwork(Dn& dn, const CellTowerFields& fields) {
  const auto mcc = fields.code(Column::Mcc, 0, kMostCode);
  const auto mnc = fields.code(Column::Net, 0, kMostCode);
  return mcc && mnc && dn.setMcc(narrow(*mcc)) == StatusOk && dn.setMnc(narrow(*mnc)) == StatusOk;
}

template <class Dn>
bool setLongIdentity(Dn& dn, const CellTowerFields& fields) {
  const auto cell = fields.code(Column::Cell, 0, kMostCellId);
  return setNetwork(dn, fields) && cell && dn.setUcid(static_cast<unsigned int>(*cell)) == StatusOk;
}

// What differs between the radio networks: the classes, and where the columns of a row go.
struct Gsm {
  using Injection = schema::GeranServingCellInjection;
  using Dn = schema::GeranCellDn;
  using Serving = schema::GeranServingCellMeasurement;
  static constexpr const char* kName = "GSM";
  static constexpr auto kAdd = &schema::Injection::addGeranInjection;

  static bool setIdentity(Dn& dn, const CellTowerFields& fields) {
    const auto lac = fields.code(Column::Area, 0, kMostShort);
    const auto cid = fields.code(Column::Cell, 0, kMostShort);
    return setNetwork(dn, fields) && lac && cid && dn.setLac(narrow(*lac)) == StatusOk &&
           dn.setCid(narrow(*cid)) == StatusOk;
  }
  static void setMeasured(Serving& serving, const CellTowerFields& fields) {
    if (fields.text(Column::Unit) != "0" && fields.text(Column::Unit) != "-1") {
      fields.notStored(Column::Unit, kName);
    }
    if (const auto code = readLevelCode(fields, LevelScale::GeranRxLev)) {
      const auto nw = made(schema::GeranNwMeasurement::create());
      nw->setRxLevel(static_cast<unsigned char>(*code));
      serving.setNwMeasurement(nw);
    }
  }
};

struct Umts {
  using Injection = schema::UtraFddServingCellInjection;
  using Dn = schema::UtraCellDn;
  using Serving = schema::UtraFddServingCellMeasurement;
  static constexpr const char* kName = "UMTS";
  static constexpr auto kAdd = &schema::Injection::addUtraFddInjection;
  static constexpr long long kMostScramblingCode = 511;

  static bool setIdentity(Dn& dn, const CellTowerFields& fields) {
    return setLongIdentity(dn, fields);
  }
  static void setMeasured(Serving& serving, const CellTowerFields& fields) {
    const auto nw = made(schema::UtraFddNwMeasurement::create());
    if (const auto unit = readUnit(fields, kMostScramblingCode)) {
      const auto info = made(schema::UtraFddFrequencyInfo::create());
      info->setPcpich(narrow(*unit));
      nw->setFrequencyInfo(info);
    }
    if (const auto code = readLevelCode(fields, LevelScale::UtraFddRscp)) {
      nw->setRscp(static_cast<signed char>(*code));
    }
    if (!nw->isEmpty()) serving.setNwMeasurement(nw);
    if (const auto lac = fields.code(Column::Area, 0, kMostShort)) serving.setLac(narrow(*lac));
  }
};

struct Lte {
  using Injection = schema::EUtraServingCellInjection;
  using Dn = schema::EUtraCellDn;
  using Serving = schema::EUtraServingCellMeasurement;
  static constexpr const char* kName = "LTE";
  static constexpr auto kAdd = &schema::Injection::addEUtraInjection;
  static constexpr long long kMostPhysicalIdentity = 503;

  static bool setIdentity(Dn& dn, const CellTowerFields& fields) {
    return setLongIdentity(dn, fields);
  }
  static void setMeasured(Serving& serving, const CellTowerFields& fields) {
    const auto nw = made(schema::EUtraNwMeasurement::create());
    if (const auto unit = readUnit(fields, kMostPhysicalIdentity)) {
      const auto info = made(schema::EUtraFrequencyInfo::create());
      info->setPci(narrow(*unit));
      nw->setFrequencyInfo(info);
    }
    if (const auto tac = fields.code(Column::Area, 0, kMostShort)) nw->setTac(narrow(*tac));
    if (const auto code = readLevelCode(fields, LevelScale::EUtraRsrp)) {
      nw->setRsrp(static_cast<unsigned char>(*code));
    }
    if (!nw->isEmpty()) serving.setNwMeasurement(nw);
  }
};

struct Cdma {
  using Injection = schema::CdmaServingCellInjection;
  using Dn = schema::CdmaCellDn;
  using Serving = schema::CdmaServingCellMeasurement;
  static constexpr const char* kName = "CDMA";
  static constexpr auto kAdd = &schema::Injection::addCdmaInjection;
  static constexpr long long kMostSystem = 32767;

  static bool setIdentity(Dn& dn, const CellTowerFields& fields) {
    const auto sid = fields.code(Column::Net, 0, kMostSystem);
    const auto nid = fields.code(Column::Area, 0, kMostShort);
    const auto bsid = fields.code(Column::Cell, 0, kMostShort);
    return sid && nid && bsid && dn.setSid(narrow(*sid)) == StatusOk &&
           dn.setNid(narrow(*nid)) == StatusOk && dn.setBsid(narrow(*bsid)) == StatusOk;
  }
  static void setMeasured(Serving&, const CellTowerFields& fields) {
    fields.notStored(Column::Mcc, kName);
    if (readUnit(fields, kMostShort)) fields.notStored(Column::Unit, kName);
    if (readLevel(fields)) fields.notStored(Column::AverageSignal, kName);
  }
};

// Both axes of the circle.
std::optional<unsigned int> readRange(const CellTowerFields& fields) {
  const auto range = fields.number(Column::Range, 0.0, std::numeric_limits<unsigned int>::max());
  if (range && *range < 1.0) {
    fields.notes().count(CellTowerImporter::kSmallRange);
    return 1u;
  }
  return range ? std::optional<unsigned int>(static_cast<unsigned int>(std::round(*range)))
               : std::nullopt;
}

gom::SharedPointer<schema::Area> readCoverage(const CellTowerFields& fields) {
  const auto latitude = fields.number(Column::Latitude, -90.0, 90.0);
  const auto longitude = fields.number(Column::Longitude, -180.0, 180.0);
  const auto range = readRange(fields);
  if (!latitude || !longitude) {
    fields.notes().count(CellTowerImporter::kNoPosition);
    return nullptr;
  }
  const int latitudeCode = schema::Utility::latitude(*latitude);
  const int longitudeCode =
      schema::Utility::longitude(schema::Utility::deCompLonRollOver(*longitude));
  if (range) {
    return made(schema::Area::create(latitudeCode, longitudeCode, *range, *range, 0.0f));
  }
  auto position = made(schema::Area::create());
  position->setLatitude(latitudeCode);
  position->setLongitude(longitudeCode);
  return position;
}

std::optional<unsigned int> readTime(const CellTowerFields& fields) {
  constexpr long long kMost = std::numeric_limits<long long>::max();
  const auto updated = fields.integer(Column::Updated, 0, kMost);
  if (!updated || *updated == 0) {
    return std::nullopt;
  }
  const auto stamp = timeStampOf(*updated);
  if (!stamp) {
    fields.notes().count(kBadTime);
  }
  return stamp;
}

template <class Radio>
bool addTower(const CellTowerFields& fields, schema::Injection& injection) {
  const auto dn = made(Radio::Dn::create());
  if (!Radio::setIdentity(*dn, fields)) {
    fields.notes().count(CellTowerImporter::kNoIdentity);
    return false;
  }
  const auto tower = made(Radio::Injection::create());
  expectStored(tower->setDn(dn));
  if (const auto stamp = readTime(fields)) expectStored(tower->setTimeStamp(*stamp));
  const auto serving = made(Radio::Serving::create());
  Radio::setMeasured(*serving, fields);
  if (!serving->isEmpty()) expectStored(tower->setServingCellMeasurement(serving));
  if (const auto coverage = readCoverage(fields)) expectStored(tower->setCoverage(coverage));
  expectStored((injection.*Radio::kAdd)(tower->wrappedObject()));
  return true;
}

struct RadioRow {
  const char* name;
  bool (*add)(const CellTowerFields&, schema::Injection&);
};

constexpr RadioRow kRadios[] = {{Gsm::kName, addTower<Gsm>},
                                {Umts::kName, addTower<Umts>},
                                {Lte::kName, addTower<Lte>},
                                {Cdma::kName, addTower<Cdma>}};

bool addTowerOfAnyRadio(const CellTowerFields& fields, schema::Injection& injection) {
  const std::string_view radio = fields.text(Column::Radio);
  for (const RadioRow& row : kRadios) {
    if (radio == row.name) {
      return row.add(fields, injection);
    }
  }
  fields.notes().count("unknown radio type '" + printable(radio, 20) + "'");
  return false;
}

}  // namespace

bool CellTowerImporter::run() {
  const unsigned long long before = m_target.count();
  CellTowerReader reader(m_source, m_report);
  CellTowerRow row;
  bool anyRow = false;
  while (reader.next(row)) {
    anyRow = true;
    add(row);
  }
  flush();
  return m_target.count() > before || (reader.hasHeader() && !anyRow);
}

void CellTowerImporter::add(const CellTowerRow& row) {
  const CellTowerFields fields(row, {m_report, {m_source.name(), row.line()}});
  if (!m_batch) {
    m_batch = made(schema::Injection::create());
  }
  if (!addTowerOfAnyRadio(fields, *m_batch)) {
    return;
  }
  for (const Column column : {Column::Samples, Column::Changeable, Column::Created}) {
    fields.notStored(column);
  }
  if (++m_batched == kBatch) {
    flush();
  }
}

void CellTowerImporter::flush() {
  if (m_batched > 0) {
    m_target.put(*m_batch);
  }
  m_batch = nullptr;
  m_batched = 0;
}

}  // namespace trelvo::tool
