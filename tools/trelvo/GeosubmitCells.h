#pragma once

#include <trelvo/schema/MeasurementContainer.h>

#include <optional>
#include <vector>

#include "tools/trelvo/GeosubmitFields.h"

namespace trelvo::tool {

/// The radio networks of a tower that the schema and the reports both know.
enum class TowerRadio { Gsm, Wcdma, Lte };

/// One element of "cellTowers", before it is held against the fields of its radio network.
struct GeosubmitTower {
  explicit GeosubmitTower(const ImportNotes& place) : notes(place) {}

  ImportNotes notes;
  TowerRadio radio = TowerRadio::Gsm;
  std::optional<bool> serving;
  std::optional<unsigned int> timeStamp;  ///< Unix seconds
  std::optional<long long> mcc;
  std::optional<long long> mnc;
  std::optional<long long> lac;
  std::optional<long long> cellId;
  std::optional<long long> scramblingCode;  ///< of LTE the physical cell identity
  std::optional<long long> channel;         ///< "arfcn"
  std::optional<long long> timingAdvance;
  std::optional<double> level;  ///< dBm
};

/// Reads one tower. The level is that of "signalStrength"; where that is missing, "asu" gives it,
/// as phones count: GSM 2 * asu - 113 dBm (0 to 31), WCDMA asu - 116 dBm (-5 to 91), LTE asu - 140
/// dBm (0 to 97). A level from 0 dBm up or below -200 dBm is none.
/// @return nothing, counted, when the radio type is missing or unknown.
std::optional<GeosubmitTower> readTower(GeosubmitFields& fields);

/// Puts the towers of one report into `container`.
///
/// Towers marked as serving make a cell measurement each. When none is marked, the first tower not
/// marked otherwise counts as serving. The others are neighbours, of the first serving tower of
/// their own radio network; where that has none, a cell measurement without an identity carries
/// them.
void addTowers(const std::vector<GeosubmitTower>& towers, schema::MeasurementContainer& container);

constexpr const char* kEmptyTower = "cell tower without identity and level";
constexpr const char* kNoRadioType = "cell tower without a radioType";

}  // namespace trelvo::tool
