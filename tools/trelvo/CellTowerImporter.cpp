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

#include "tools/trelvo/CellRadios.h"
#include "tools/trelvo/CellTowerFields.h"
#include "tools/trelvo/ImportFix.h"
#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {

namespace {

using Column = CellTowerColumn;

constexpr long long kMostShort = std::numeric_limits<unsigned short>::max();
constexpr double kLowestLevel = -200.0;

std::optional<double> readLevel(const CellTowerFields& fields) {
  const auto level = fields.number(Column::AverageSignal, kLowestLevel, 0.0);
  return level && *level < 0.0 ? level : std::nullopt;
}

// 0 is a code as well, but exports write it for towers of which none was ever heard.
std::optional<long long> readUnit(const CellTowerFields& fields, long long most) {
  const auto unit = fields.code(Column::Unit, 0, most);
  return unit && *unit > 0 ? unit : std::nullopt;
}

// "mcc", "net" and "cell", complete or not at all.
bool readNames(const CellTowerFields& fields, HeardCell& tower) {
  tower.mcc = fields.code(Column::Mcc, 0, kMostNetworkCode);
  tower.mnc = fields.code(Column::Net, 0, kMostNetworkCode);
  tower.cellId = fields.code(Column::Cell, 0, cellLimits(tower.radio).cellId);
  return tower.mcc && tower.mnc && tower.cellId;
}

// What differs between the radio networks: the classes, and what the columns of a row mean.
struct Gsm : GsmRadio {
  using Injection = schema::GeranServingCellInjection;
  static constexpr const char* kName = "GSM";
  static constexpr auto kAddInjection = &schema::Injection::addGeranInjection;

  static bool readIdentity(const CellTowerFields& fields, HeardCell& tower) {
    tower.area = fields.code(Column::Area, 0, kMostAreaCode);
    return readNames(fields, tower) && tower.area;
  }
  static void readHeard(const CellTowerFields& fields, HeardCell& tower) {
    if (fields.text(Column::Unit) != "0" && fields.text(Column::Unit) != "-1") {
      fields.notStored(Column::Unit, kName);
    }
    tower.level = readLevel(fields);
  }
};

// UMTS and LTE: the area belongs to the measurement, and the unit is a code.
template <class Radio>
struct LongIdentity : Radio {
  static bool readIdentity(const CellTowerFields& fields, HeardCell& tower) {
    return readNames(fields, tower);
  }
  static void readHeard(const CellTowerFields& fields, HeardCell& tower) {
    tower.code = readUnit(fields, cellLimits(tower.radio).code);
    tower.area = fields.code(Column::Area, 0, kMostAreaCode);
    tower.level = readLevel(fields);
  }
};

struct Umts : LongIdentity<WcdmaRadio> {
  using Injection = schema::UtraFddServingCellInjection;
  static constexpr const char* kName = "UMTS";
  static constexpr auto kAddInjection = &schema::Injection::addUtraFddInjection;
};

struct Lte : LongIdentity<LteRadio> {
  using Injection = schema::EUtraServingCellInjection;
  static constexpr const char* kName = "LTE";
  static constexpr auto kAddInjection = &schema::Injection::addEUtraInjection;
};

constexpr const char* kCdma = "CDMA";

gom::SharedPointer<schema::CdmaCellDn> readCdmaIdentity(const CellTowerFields& fields) {
  constexpr long long kMostSystem = 32767;
  const auto sid = fields.code(Column::Net, 0, kMostSystem);
  const auto nid = fields.code(Column::Area, 0, kMostShort);
  const auto bsid = fields.code(Column::Cell, 0, kMostShort);
  if (!sid || !nid || !bsid) {
    return nullptr;
  }
  auto dn = made(schema::CdmaCellDn::create());
  dn->setSid(static_cast<unsigned short>(*sid));
  dn->setNid(static_cast<unsigned short>(*nid));
  dn->setBsid(static_cast<unsigned short>(*bsid));
  return dn;
}

void nameCdmaColumns(const CellTowerFields& fields) {
  fields.notStored(Column::Mcc, kCdma);
  if (readUnit(fields, kMostShort)) fields.notStored(Column::Unit, kCdma);
  if (readLevel(fields)) fields.notStored(Column::AverageSignal, kCdma);
}

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

bool refuse(const CellTowerFields& fields) {
  fields.notes().count(CellTowerImporter::kNoIdentity);
  return false;
}

template <class Radio>
bool addTower(const CellTowerFields& fields, schema::Injection& injection) {
  HeardCell heard(fields.notes(), "cell tower", Radio::kRadio);
  if (!Radio::readIdentity(fields, heard)) {
    return refuse(fields);
  }
  const auto tower = made(Radio::Injection::create());
  expectStored(tower->setDn(dnOf<Radio>(heard)));
  if (const auto stamp = readTime(fields)) expectStored(tower->setTimeStamp(*stamp));
  Radio::readHeard(fields, heard);
  const auto serving = servingOf<Radio>(heard);
  if (!serving->isEmpty()) expectStored(tower->setServingCellMeasurement(serving));
  if (const auto coverage = readCoverage(fields)) expectStored(tower->setCoverage(coverage));
  expectStored((injection.*Radio::kAddInjection)(tower->wrappedObject()));
  return true;
}

bool addCdmaTower(const CellTowerFields& fields, schema::Injection& injection) {
  const auto dn = readCdmaIdentity(fields);
  if (!dn) {
    return refuse(fields);
  }
  const auto tower = made(schema::CdmaServingCellInjection::create());
  expectStored(tower->setDn(dn));
  if (const auto stamp = readTime(fields)) expectStored(tower->setTimeStamp(*stamp));
  nameCdmaColumns(fields);
  if (const auto coverage = readCoverage(fields)) expectStored(tower->setCoverage(coverage));
  expectStored(injection.addCdmaInjection(tower->wrappedObject()));
  return true;
}

struct RadioRow {
  const char* name;
  bool (*add)(const CellTowerFields&, schema::Injection&);
};

constexpr RadioRow kRadios[] = {{Gsm::kName, addTower<Gsm>},
                                {Umts::kName, addTower<Umts>},
                                {Lte::kName, addTower<Lte>},
                                {kCdma, addCdmaTower}};

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
