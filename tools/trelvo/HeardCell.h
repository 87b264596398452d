#pragma once

#include <trelvo/schema/MeasurementContainer.h>

#include <optional>
#include <vector>

#include "tools/trelvo/ImportReport.h"

namespace trelvo::tool {

/// The radio networks that importers tell apart.
enum class CellRadio { Gsm, Wcdma, Lte };

/// The greatest values of a cell's whole numbers; the least are 0.
struct CellLimits {
  long long cellId;
  long long code;
  long long channel;
  long long timingAdvance;
};

/// The limits of one radio network: what is in use, and of the channel and the timing advance what
/// the record's field holds.
const CellLimits& cellLimits(CellRadio radio);

constexpr long long kMostNetworkCode = 999;  ///< MCC and MNC, three digits
constexpr long long kMostAreaCode = 65535;   ///< LAC and TAC

/// Whether a radio can have heard this level: from -200 dBm up, below 0.
constexpr bool isHeardLevel(double dbm) { return dbm >= -200.0 && dbm < 0.0; }

/// Whether this can be an RSRQ or an Ec/No: from -100 to 20 dB.
constexpr bool isHeardQuality(double db) { return db >= -100.0 && db <= 20.0; }

/// One cell as an input gives it, with values that fit the fields of its radio network.
struct HeardCell {
  /// `name` is what messages call the list it comes from, "cellTowers" for instance.
  HeardCell(const ImportNotes& place, const char* listName, CellRadio network)
      : notes(place), name(listName), radio(network) {}

  ImportNotes notes;
  const char* name;
  CellRadio radio;
  std::optional<bool> serving;
  std::optional<unsigned int> timeStamp;  ///< Unix seconds
  std::optional<long long> mcc;
  std::optional<long long> mnc;
  std::optional<long long> area;           ///< LAC; of LTE the TAC
  std::optional<long long> cellId;         ///< CID; of WCDMA and LTE the composite of 28 bits
  std::optional<long long> code;           ///< BSIC, primary scrambling code, PCI
  std::optional<long long> channel;        ///< ARFCN, UARFCN, EARFCN of the downlink
  std::optional<long long> timingAdvance;  ///< GSM and LTE, in their own units
  std::optional<long long> pathLoss;       ///< dB, WCDMA
  std::optional<double> level;             ///< dBm: received level, RSCP, RSRP
  std::optional<double> quality;           ///< dB: Ec/No of WCDMA, RSRQ of LTE
};

/// Puts the cells of one moment into `container`. Levels become the reporting codes of their radio
/// network, see RadioLevels.h.
///
/// Cells marked as serving make a cell measurement each. When none is marked, the first cell not
/// marked otherwise counts as serving. The others are neighbours, of the first serving cell of
/// their own radio network; where that has none, a cell measurement without an identity carries
/// them. A cell that tells nothing is counted as kEmptyTower.
void addHeardCells(const std::vector<HeardCell>& cells, schema::MeasurementContainer& container);

constexpr const char* kEmptyTower = "cell tower without identity and level";

}  // namespace trelvo::tool
