#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/trelvo/ExportText.h"
#include "tools/trelvo/ExportWriter.h"

namespace trelvo::tool {
namespace {

// Fixed, so that the header can be written before anything is read.
constexpr std::string_view kColumns[] = {
    // what it is and where it stands in the file
    "container", "element", "parent", "kind", "offset", "measurementId",
    // when and where
    "timeStamp", "timeStampUtc", "latitude", "longitude", "altitude", "altitudeUncertainty",
    "horizontalCepUncertainty", "majorAxis", "minorAxis", "angle", "angleDegrees", "speed",
    "speedUncertainty", "course", "courseUncertainty",
    // whose
    "mcc", "mnc", "lac", "cid", "ucid", "ucidRncId", "ucidCid", "ucidENodeBId", "ucidLcid", "sid",
    "nid", "bsid", "tac", "bssid",
    // on the air
    "bsic", "arfcn", "uarfcnDl", "uarfcnUl", "pcpich", "uarfcn", "cellParam", "earfcn", "pci",
    // how strong: codes with the levels they stand for
    "rxLevel", "rxLevelFrom", "rxLevelBelow", "utraCarrierRssi", "utraCarrierRssiFrom",
    "utraCarrierRssiBelow", "ecNo", "ecNoFrom", "ecNoBelow", "rscp", "rscpFrom", "rscpBelow",
    "rsrp", "rsrpFrom", "rsrpBelow", "rsrq", "rsrqFrom", "rsrqBelow", "pathloss", "frequency",
    "timingAdvance", "txLevel", "rssi",
    // WLAN
    "ssid", "band", "distance", "distanceUncertainty", "apLatitude", "apLongitude",
    // what the measurement of a cell tells once more
    "nwMeasurementLac", "nwMeasurementCid", "nwMeasurementUcid", "nwMeasurementUcidRncId",
    "nwMeasurementUcidCid", "nwMeasurementUcidENodeBId", "nwMeasurementUcidLcid",
    "nwMeasurementBsic", "nwMeasurementArfcn", "nwMeasurementUarfcnDl", "nwMeasurementPcpich",
    "nwMeasurementUarfcn", "nwMeasurementCellParam", "nwMeasurementEarfcn", "nwMeasurementPci",
    // further marks
    "unreliableStateTimeStamp", "unreliableStateTimeStampUtc", "elapsedRealtimeTimeStamp", "source",
    "latitudeCode", "longitudeCode", "apLatitudeCode", "apLongitudeCode"};
constexpr std::size_t kColumnCount = std::size(kColumns);

class CsvWriter : public ExportWriter {
 public:
  explicit CsvWriter(const ExportTarget& target) : m_target(target) {
    for (std::size_t i = 0; i < kColumnCount; ++i) {
      m_index.emplace(kColumns[i], i);
    }
  }

  void begin() override {
    for (const std::string_view column : kColumns) {
      m_target.out << column << ',';
    }
    m_target.out << "other\r\n";
  }

  void feature(const Feature& feature) override {
    m_row.assign(kColumnCount, {});
    m_other.clear();
    set("container", std::to_string(feature.container));
    set("element", std::to_string(feature.element));
    set("parent", feature.parent != 0 ? std::to_string(feature.parent) : "");
    set("kind", feature.kind);
    for (const FeatureField& field : feature.fields) {
      place(field);
    }
    setPosition(feature);
    writeRow();
  }

  void end() override {}

 private:
  void set(std::string_view column, std::string text) {
    m_row[m_index.at(column)] = std::move(text);
  }

  void place(const FeatureField& field) {
    const auto found = m_index.find(field.name);
    if (found != m_index.end()) {
      m_row[found->second] = field.value.text;
    } else {
      m_other += (m_other.empty() ? "{" : ",") + quoted(field.name) + ":" + jsonText(field.value);
    }
  }

  // That of an access point too; and what is no position on the globe is none.
  void setPosition(const Feature& feature) {
    const bool isThere = feature.position.has_value();
    set("latitude", isThere ? degreesText(feature.position->latitude) : "");
    set("longitude", isThere ? degreesText(feature.position->longitude) : "");
  }

  void writeRow() {
    for (const std::string& text : m_row) {
      m_target.out << csvText(text) << ',';
    }
    m_target.out << csvText(m_other.empty() ? m_other : m_other + "}") << "\r\n";
  }

  ExportTarget m_target;
  std::unordered_map<std::string_view, std::size_t> m_index;
  std::vector<std::string> m_row;
  std::string m_other;
};

}  // namespace

std::unique_ptr<ExportWriter> makeCsvWriter(const ExportTarget& target) {
  return std::make_unique<CsvWriter>(target);
}

}  // namespace trelvo::tool
