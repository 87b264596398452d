#include "tools/trelvo/MmcliCells.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "tools/trelvo/ImportText.h"
#include "tools/trelvo/RadioLevels.h"

namespace trelvo::tool {

namespace {

constexpr const char* kName = "cell-info";
constexpr const char* kRefused = " that cannot be read, left out";

struct TypeName {
  std::string_view name;
  CellRadio radio;
};

constexpr TypeName kTypes[] = {
    {"gsm", CellRadio::Gsm}, {"umts", CellRadio::Wcdma}, {"lte", CellRadio::Lte}};

// Where the whole numbers of a network go.
struct NumberRow {
  CellRadio radio;
  std::string_view name;
  std::optional<long long> HeardCell::*field;
  int base;
  int most;
};

constexpr long long kMostPathLoss = 173;

constexpr NumberRow kNumbers[] = {
    {CellRadio::Gsm, "lac", &HeardCell::area, 16, kMostAreaCode},
    {CellRadio::Gsm, "ci", &HeardCell::cellId, 16, 65535},
    {CellRadio::Gsm, "base station id", &HeardCell::code, 16, 63},
    {CellRadio::Gsm, "arfcn", &HeardCell::channel, 10, 65535},
    {CellRadio::Gsm, "timing advance", &HeardCell::timingAdvance, 10, 255},
    {CellRadio::Wcdma, "lac", &HeardCell::area, 16, kMostAreaCode},
    {CellRadio::Wcdma, "ci", &HeardCell::cellId, 16, 0xFFFFFFF},
    {CellRadio::Wcdma, "psc", &HeardCell::code, 10, 511},
    {CellRadio::Wcdma, "uarfcn", &HeardCell::channel, 10, 65535},
    {CellRadio::Wcdma, "path loss", &HeardCell::pathLoss, 10, kMostPathLoss},
    {CellRadio::Lte, "tac", &HeardCell::area, 16, kMostAreaCode},
    {CellRadio::Lte, "ci", &HeardCell::cellId, 16, 0xFFFFFFF},
    {CellRadio::Lte, "physical ci", &HeardCell::code, 16, 503},
    {CellRadio::Lte, "earfcn", &HeardCell::channel, 10, 65535},
};

// Where the measured values of a network go, in dBm or dB.
struct MeasuredRow {
  CellRadio radio;
  std::string_view name;
  std::optional<double> HeardCell::*field;
  bool (*fits)(double);
};

constexpr MeasuredRow kMeasured[] = {
    {CellRadio::Wcdma, "rscp", &HeardCell::level, isHeardLevel},
    {CellRadio::Wcdma, "ecio", &HeardCell::quality, isHeardQuality},
    {CellRadio::Lte, "rsrp", &HeardCell::level, isHeardLevel},
    {CellRadio::Lte, "rsrq", &HeardCell::quality, isHeardQuality},
};

template <class Row, size_t N>
const Row* rowFor(const Row (&rows)[N], CellRadio radio, std::string_view name) {
  const auto* const found = std::find_if(std::begin(rows), std::end(rows), [&](const Row& row) {
    return row.radio == radio && row.name == name;
  });
  return found == std::end(rows) ? nullptr : found;
}

// "NAME: VALUE, NAME: VALUE" from front to back.
bool nextPair(std::string_view& text, std::string_view& name, std::string_view& value) {
  constexpr std::string_view kBetween = ", ";
  if (text.empty()) {
    return false;
  }
  const size_t end = text.find(kBetween);
  const std::string_view pair = text.substr(0, end);
  text = end == std::string_view::npos ? std::string_view() : text.substr(end + kBetween.size());
  const size_t colon = std::min(pair.find(':'), pair.size());
  name = trimmed(pair.substr(0, colon));
  value = trimmed(pair.substr(std::min(colon + 1, pair.size())));
  return true;
}

std::string_view valueOf(std::string_view wanted, std::string_view text) {
  for (std::string_view name, value; nextPair(text, name, value);) {
    if (name == wanted) {
      return value;
    }
  }
  return {};
}

void refuse(const ImportNotes& notes, std::string_view name) {
  notes.count(std::string(kName) + "." + printable(name) + kRefused);
}

bool setNetwork(HeardCell& cell, std::string_view value) {
  constexpr size_t kCountryDigits = 3;
  if (value.size() < kCountryDigits + 2 || value.size() > kCountryDigits + 3) {
    return false;
  }
  cell.mcc = wholeNumber(value.substr(0, kCountryDigits), 10, kMostNetworkCode);
  cell.mnc = wholeNumber(value.substr(kCountryDigits), 10, kMostNetworkCode);
  return cell.mcc && cell.mnc;
}

// The code of TS 45.008, as the level at which its step begins.
bool setRxLevel(HeardCell& cell, std::string_view value) {
  const auto code = wholeNumber(value, 10, levelScale(LevelScale::GeranRxLev).highestCode);
  cell.level = code ? levelValue(LevelScale::GeranRxLev, static_cast<int>(*code)) : std::nullopt;
  return cell.level.has_value();
}

bool setNumber(HeardCell& cell, const NumberRow& row, std::string_view value) {
  cell.*row.field = wholeNumber(value, row.base, row.most);
  return (cell.*row.field).has_value();
}

bool setMeasured(HeardCell& cell, const MeasuredRow& row, std::string_view value) {
  const auto number = decimal(value);
  cell.*row.field = number && row.fits(*number) ? number : std::nullopt;
  return (cell.*row.field).has_value();
}

// Whether the value could be read; a name without a place counts as read.
bool setField(HeardCell& cell, std::string_view name, std::string_view value) {
  if (name == "cell type") {
    return true;
  }
  if (name == "serving") {
    cell.serving = value == "yes";
    return value == "yes" || value == "no";
  }
  if (name == "operator id") {
    return setNetwork(cell, value);
  }
  if (name == "rx level" && cell.radio == CellRadio::Gsm) {
    return setRxLevel(cell, value);
  }
  if (const NumberRow* row = rowFor(kNumbers, cell.radio, name)) {
    return setNumber(cell, *row, value);
  }
  if (const MeasuredRow* row = rowFor(kMeasured, cell.radio, name)) {
    return setMeasured(cell, *row, value);
  }
  cell.notes.report.notStored(std::string(kName) + "." + printable(name));
  return true;
}

// A text of a location in `base`; "--" stands for unknown.
std::optional<long long> locationNumber(JsonFields& fields, const char* key, int base,
                                        long long most) {
  const auto text = fields.text(key);
  if (!text || *text == "--") {
    return std::nullopt;
  }
  const auto value = wholeNumber(*text, base, most);
  if (!value) {
    fields.refuse(key, kDoesNotFit);
  }
  return value;
}

}  // namespace

std::optional<HeardCell> readMmcliCell(std::string_view text, const ImportNotes& notes) {
  const std::string_view typeName = valueOf("cell type", text);
  const auto* const type = std::find_if(std::begin(kTypes), std::end(kTypes),
                                        [&](const TypeName& row) { return row.name == typeName; });
  if (type == std::end(kTypes)) {
    notes.count("unknown radio type '" + printable(typeName, 20) + "'");
    return std::nullopt;
  }
  HeardCell cell(notes, kName, type->radio);
  for (std::string_view name, value; nextPair(text, name, value);) {
    if (!setField(cell, name, value)) {
      refuse(notes, name);
    }
  }
  return cell;
}

std::optional<HeardCell> readMmcliServingCell(JsonFields& location) {
  constexpr long long kMostShort = 65535;
  constexpr long long kMostCellId = 0xFFFFFFF;
  constexpr long long kNoLac = 0xFFFE;  // what modems give where there is a tracking area
  const auto mcc = locationNumber(location, "mcc", 10, kMostNetworkCode);
  const auto mnc = locationNumber(location, "mnc", 10, kMostNetworkCode);
  const auto lac = locationNumber(location, "lac", 16, kMostAreaCode);
  const auto tac = locationNumber(location, "tac", 16, kMostAreaCode);
  const auto cellId = locationNumber(location, "cid", 16, kMostCellId);
  const bool isLte = tac && *tac > 0;
  if (!cellId || (!isLte && !lac)) {
    return std::nullopt;
  }
  const CellRadio other = *cellId > kMostShort ? CellRadio::Wcdma : CellRadio::Gsm;
  HeardCell cell(location.notes(), "location.3gpp", isLte ? CellRadio::Lte : other);
  cell.serving = true;
  cell.mcc = mcc;
  cell.mnc = mnc;
  cell.area = isLte ? tac : lac;
  cell.cellId = cellId;
  if (isLte && lac && *lac != 0 && *lac != kNoLac) {
    location.notes().report.notStored("modem.location.3gpp.lac beside a tracking area");
  }
  return cell;
}

}  // namespace trelvo::tool
