#include <trelvo/schema/Utility.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/ExportWriter.h"
#include "tools/trelvo/RadioLevels.h"

namespace trelvo::tool {
namespace {

using Json = nlohmann::ordered_json;
using Features = std::vector<Feature>;

constexpr long long kMillisecondsPerSecond = 1000;
constexpr double kMostCellId = 0xFFFFFFF;  // 28 bits

/// The fields of one feature; remembers which of them were carried over.
class Carrier {
 public:
  explicit Carrier(const Feature& feature) : m_feature(feature) {
    take("offset");
    take("timeStamp");
    take("measurementId");
  }

  const Feature& feature() const { return m_feature; }

  void take(std::string_view name) { m_taken.push_back(name); }

  std::optional<double> number(std::string_view name) {
    take(name);
    return m_feature.number(name);
  }

  /// Puts a whole number from 0 to `most` into `json` as `member`.
  void putInteger(Json& json, const char* member, std::string_view name, double most) {
    const auto value = name.empty() ? std::nullopt : m_feature.number(name);
    if (value && *value >= 0.0 && *value <= most) {
      json[member] = static_cast<long long>(*value);
      take(name);
    }
  }

  /// Counts what was not taken, "GnssMeasurement.majorAxis".
  void countRest(ExportLosses& losses) const {
    for (const FeatureField& field : m_feature.fields) {
      const bool isTaken = std::find(m_taken.begin(), m_taken.end(), field.name) != m_taken.end();
      if (!isTaken && !field.isDerived) {
        losses.add(m_feature.kind + "." + field.name, m_feature.container);
      }
    }
  }

 private:
  const Feature& m_feature;
  std::vector<std::string_view> m_taken;
};

// What differs between the radio networks: which fields are which members of a tower. An empty
// name: there is none.
struct Radio {
  std::string_view cellKind;
  std::string_view neighbourKind;
  const char* type;
  LevelScale scale;
  std::string_view level;
  std::string_view cellId;
  double mostCellId;
  std::string_view area;
  std::string_view neighbourArea;
  std::string_view channel;
  std::string_view scramblingCode;
  std::string_view timingAdvance;
};

constexpr Radio kRadios[] = {
    {"GeranCellMeasurement", "GeranNwMeasurement", "gsm", LevelScale::GeranRxLev, "rxLevel", "cid",
     0xFFFF, "lac", "lac", "arfcn", "", "timingAdvance"},
    {"UtraFddCellMeasurement", "UtraFddNwMeasurement", "wcdma", LevelScale::UtraFddRscp, "rscp",
     "ucid", kMostCellId, "lac", "", "uarfcnDl", "pcpich", ""},
    {"EUtraCellMeasurement", "EUtraNwMeasurement", "lte", LevelScale::EUtraRsrp, "rsrp", "ucid",
     kMostCellId, "tac", "tac", "earfcn", "pci", "timingAdvance"},
};
constexpr double kMostShort = 0xFFFF;

/// One container as an item of a report.
class GeosubmitItem {
 public:
  GeosubmitItem(const Features& features, ExportLosses& losses)
      : m_features(features), m_losses(losses) {}

  /// Empty when nothing of the container could be carried over.
  Json build() {
    m_time = latestTime();
    Json position = firstPosition();
    Json towers = Json::array();
    for (const Radio& radio : kRadios) {
      addTowers(radio, towers);
    }
    Json points = accessPoints();
    countOthers();
    Json item;
    const bool isAny = !position.empty() || !towers.empty() || !points.empty();
    if (isAny && m_time) item["timestamp"] = *m_time * kMillisecondsPerSecond;
    if (!position.empty()) item["position"] = std::move(position);
    if (!towers.empty()) item["cellTowers"] = std::move(towers);
    if (!points.empty()) item["wifiAccessPoints"] = std::move(points);
    return item;
  }

 private:
  static bool isCell(const Feature& feature) {
    return std::any_of(std::begin(kRadios), std::end(kRadios),
                       [&](const Radio& radio) { return radio.cellKind == feature.kind; });
  }

  static bool isNeighbour(const Feature& feature) {
    return std::any_of(std::begin(kRadios), std::end(kRadios),
                       [&](const Radio& radio) { return radio.neighbourKind == feature.kind; });
  }

  static bool isKnown(const Feature& feature) {
    return feature.kind == "GnssMeasurement" || feature.kind == "WlanMeasurement" ||
           isCell(feature);
  }

  std::optional<long long> latestTime() const {
    std::optional<long long> latest;
    for (const Feature& feature : m_features) {
      if (isKnown(feature) && feature.timeStamp.value_or(0) > 0) {
        latest = std::max<long long>(latest.value_or(0), *feature.timeStamp);
      }
    }
    return latest;
  }

  void lose(const Feature& feature, const std::string& what) {
    m_losses.add(what, feature.container);
  }

  // How long ahead of the report it was measured.
  void putAge(Json& json, const Feature& feature) {
    if (!m_time) {
      return;
    }
    if (feature.timeStamp.value_or(0) == 0) {
      return lose(feature, feature.kind + " without a time stamp, given that of its report");
    }
    const long long seconds = *m_time - *feature.timeStamp;
    if (seconds > 0) {
      json["age"] = seconds * kMillisecondsPerSecond;
    }
  }

  Json firstPosition() {
    Json first = Json::object();
    for (const Feature& feature : m_features) {
      if (feature.kind != "GnssMeasurement") {
        continue;
      }
      if (!first.empty()) {
        lose(feature, "further GnssMeasurement of a container");
      } else if (!feature.find("latitudeCode") || !feature.find("longitudeCode")) {
        lose(feature, "GnssMeasurement without a position");
      } else {
        first = positionOf(feature);
      }
    }
    return first;
  }

  // By the codes, as degrees in text are rounded.
  Json positionOf(const Feature& feature) {
    Carrier carrier(feature);
    Json json;
    json["latitude"] = schema::Utility::wgs84Latitude(code(carrier, "latitudeCode"));
    json["longitude"] = schema::Utility::wgs84Longitude(code(carrier, "longitudeCode"));
    carrier.take("latitude");
    carrier.take("longitude");
    putAge(json, feature);
    if (feature.number("horizontalCepUncertainty").value_or(0.0) > 0.0) {
      json["accuracy"] = *carrier.number("horizontalCepUncertainty");
    }
    if (feature.number("speed").value_or(-1.0) >= 0.0) {
      json["speed"] = *carrier.number("speed");
    }
    if (const auto course = feature.number("course");
        course && *course >= -180.0 && *course < 180.0) {
      carrier.take("course");
      json["heading"] = headingOf(*course);
    }
    carrier.countRest(m_losses);
    return json;
  }

  static int code(Carrier& carrier, std::string_view name) {
    return static_cast<int>(carrier.number(name).value_or(0.0));
  }

  // From 0 to 360, unless the way back would round.
  static double headingOf(double course) {
    const double turned = course < 0.0 ? course + 360.0 : course;
    return course < 0.0 && turned - 360.0 != course ? course : turned;
  }

  // An import hangs all neighbours of a radio network from its first serving tower, or makes a cell
  // for them.
  void addTowers(const Radio& radio, Json& towers) {
    const Feature* host = nullptr;
    for (const Feature& feature : m_features) {
      if (feature.kind == radio.cellKind && addServing(radio, feature, towers) && !host) {
        host = &feature;
      }
    }
    for (const Feature& feature : m_features) {
      if (feature.kind == radio.neighbourKind) {
        const Feature* parent = parentOf(feature);
        host = host != nullptr ? host : parent;
        addNeighbour(radio, feature, host == parent ? parent : nullptr, towers);
      }
    }
  }

  // Elements are numbered in their order, from 0 or 1.
  const Feature* parentOf(const Feature& feature) const {
    const std::size_t index = feature.parent - m_features.front().element;
    const bool isThere = feature.parent != 0 && isCell(m_features[index]);
    return isThere ? &m_features[index] : nullptr;
  }

  bool addServing(const Radio& radio, const Feature& feature, Json& towers) {
    Carrier carrier(feature);
    Json members = Json::object();
    putNetwork(carrier, members);
    carrier.putInteger(members, "locationAreaCode", radio.area, kMostShort);
    putRadio(radio, carrier, members);
    carrier.putInteger(members, "timingAdvance", radio.timingAdvance, kMostShort);
    carrier.countRest(m_losses);
    return put(radio, 1, feature, feature, std::move(members), towers);
  }

  void addNeighbour(const Radio& radio, const Feature& feature, const Feature* parent,
                    Json& towers) {
    if (parent == nullptr) {
      return lose(feature, feature.kind + " of a further cell");
    }
    Carrier network(*parent);
    Carrier carrier(feature);
    Json members = Json::object();
    carrier.putInteger(members, "locationAreaCode", radio.neighbourArea, kMostShort);
    putRadio(radio, carrier, members);
    carrier.countRest(m_losses);
    if (members.empty()) {
      return lose(feature, feature.kind + " with nothing of a tower's");
    }
    putNetwork(network, members);
    put(radio, 0, feature, *parent, std::move(members), towers);
  }

  static void putNetwork(Carrier& carrier, Json& members) {
    carrier.putInteger(members, "mobileCountryCode", "mcc", kMostShort);
    carrier.putInteger(members, "mobileNetworkCode", "mnc", kMostShort);
  }

  static void putRadio(const Radio& radio, Carrier& carrier, Json& members) {
    carrier.putInteger(members, "cellId", radio.cellId, radio.mostCellId);
    carrier.putInteger(members, "arfcn", radio.channel, kMostShort);
    carrier.putInteger(members, "primaryScramblingCode", radio.scramblingCode, kMostShort);
    const auto code = carrier.feature().number(radio.level);
    const auto level = code ? levelValue(radio.scale, static_cast<int>(*code)) : std::nullopt;
    if (level) {
      members["signalStrength"] = *level;
      carrier.take(radio.level);
    }
  }

  bool put(const Radio& radio, int serving, const Feature& feature, const Feature& timed,
           Json members, Json& towers) {
    if (members.empty()) {
      return false;
    }
    Json tower = {{"radioType", radio.type}, {"serving", serving}};
    tower.update(members);
    if (&feature == &timed || timed.timeStamp) {
      putAge(tower, timed);
    }
    towers.push_back(std::move(tower));
    return true;
  }

  Json accessPoints() {
    constexpr std::size_t kAddressLength = 17;  // of six bytes
    Json points = Json::array();
    for (const Feature& feature : m_features) {
      if (feature.kind != "WlanMeasurement") {
        continue;
      }
      const Token* address = feature.find("bssid");
      if (address == nullptr || address->text.size() != kAddressLength) {
        lose(feature, "WlanMeasurement without an address of 6 bytes");
      } else {
        points.push_back(accessPoint(feature, address->text));
      }
    }
    return points;
  }

  Json accessPoint(const Feature& feature, const std::string& address) {
    Carrier carrier(feature);
    carrier.take("bssid");
    Json json = {{"macAddress", address}};
    if (const auto level = carrier.number("rxLevel")) {
      json["signalStrength"] = static_cast<int>(*level);
    }
    putAge(json, feature);
    carrier.countRest(m_losses);
    return json;
  }

  void countOthers() {
    for (const Feature& feature : m_features) {
      if (feature.kind == "MeasurementContainer" && m_features.size() > 1) {
        Carrier(feature).countRest(m_losses);
      } else if (!isKnown(feature) && !isNeighbour(feature)) {
        lose(feature, feature.kind);
      }
    }
  }

  const Features& m_features;
  ExportLosses& m_losses;
  std::optional<long long> m_time;
};

class GeosubmitWriter : public ExportWriter {
 public:
  explicit GeosubmitWriter(const ExportTarget& target) : m_target(target) {}

  void begin() override { m_target.out << "{\"items\":["; }

  void feature(const Feature& feature) override {
    if (!m_container.empty() && m_container.front().container != feature.container) {
      writeItem();
    }
    m_container.push_back(feature);
  }

  void end() override {
    writeItem();
    m_target.out << "\n]}\n";
  }

 private:
  void writeItem() {
    if (m_container.empty()) {
      return;
    }
    const Json item = GeosubmitItem(m_container, m_target.losses).build();
    if (!item.empty()) {
      m_target.out << (m_items++ == 0 ? "\n" : ",\n") << item.dump();
      checkNumber(m_container.front());
    }
    m_container.clear();
  }

  // An import numbers what it makes.
  void checkNumber(const Feature& feature) {
    const auto number = feature.number("measurementId");
    if (number && *number != static_cast<double>(m_items)) {
      m_target.losses.add("measurementId other than the item's number", feature.container);
    }
  }

  ExportTarget m_target;
  Features m_container;
  unsigned long long m_items = 0;
};

}  // namespace

std::unique_ptr<ExportWriter> makeGeosubmitWriter(const ExportTarget& target) {
  return std::make_unique<GeosubmitWriter>(target);
}

}  // namespace trelvo::tool
