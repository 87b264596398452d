#include "tools/trelvo/FeatureCollector.h"

#include <algorithm>
#include <iterator>

namespace trelvo::tool {
namespace {

/// A part of an object that leaves no trace in the names of its fields, when it is of the class
/// that belongs there.
struct FlatPart {
  std::string_view name;
  std::string_view classEnd;
};

constexpr FlatPart kFlatParts[] = {
    {"coverage", "Area"},
    {"coverage", "Coverage"},
    {"dn", "Dn"},
    {"frequencyInfo", "FrequencyInfo"},
    {"gnssMeasurementData", "GnssMeasurementData"},
    {"measurementData", "GnssMeasurementData"},
    {"neighborCellMeasurement", "NwMeasurement"},
    {"nwMeasurement", "NwMeasurement"},
    {"servingCellMeasurement", "ServingCellMeasurement"},
    {"wlanApMeasurement", "WlanApMeasurement"},
};

constexpr std::string_view kIdentity[] = {"lac", "cid", "ucid"};
constexpr std::string_view kFrequency[] = {"bsic",   "arfcn",     "uarfcnDl", "pcpich",
                                           "uarfcn", "cellParam", "earfcn",   "pci"};

// The same for every value of a field.
constexpr std::string_view kConstantDetails[] = {"levelUnit", "scale"};

bool endsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

bool isFlatPart(std::string_view name, std::string_view className) {
  return std::any_of(std::begin(kFlatParts), std::end(kFlatParts), [&](const FlatPart& part) {
    return part.name == name && endsWith(className, part.classEnd);
  });
}

template <std::size_t N>
bool isOneOf(const std::string_view (&names)[N], std::string_view name) {
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

std::string glued(std::string first, std::string_view second) {
  const std::size_t seam = first.size();
  first += second;
  if (first[seam] >= 'a' && first[seam] <= 'z') {
    first[seam] = static_cast<char>(first[seam] - 'a' + 'A');
  }
  return first;
}

bool isOfContainer(const FeatureField& field) {
  return field.name == "offset" || field.name == "measurementId";
}

}  // namespace

void FeatureCollector::beginObject(std::string_view name, std::string_view className) {
  if (m_levels.empty()) {
    beginRoot(className);
  } else if (m_levels.back().isList) {
    beginElement(className);
  } else {
    beginPart(name, className);
  }
}

void FeatureCollector::endObject() {
  m_levels.pop_back();
  if (m_levels.empty()) {
    endRoot();
  }
}

void FeatureCollector::beginList(std::string_view name, unsigned int) {
  Level level;
  level.feature = m_levels.back().feature;
  level.prefix = fieldName(name);
  level.isList = true;
  m_levels.push_back(std::move(level));
}

void FeatureCollector::endList() { m_levels.pop_back(); }

void FeatureCollector::value(std::string_view name, const ShowValue& value) {
  const std::string full = fieldName(name);
  add(full, value.value, false);
  for (const auto& [detail, token] : value.details) {
    if (!isOneOf(kConstantDetails, detail)) {
      add(glued(full, detail), token, true);
    }
  }
}

void FeatureCollector::beginRoot(std::string_view className) {
  m_features.clear();
  ++m_containers;
  m_features.emplace_back();
  m_features.back().kind = className;
  m_features.back().container = m_containers;
  m_levels.emplace_back();
}

void FeatureCollector::endRoot() {
  std::vector<FeatureField> shared;
  std::vector<FeatureField>& own = m_features.front().fields;
  std::copy_if(own.begin(), own.end(), std::back_inserter(shared), isOfContainer);
  for (auto feature = m_features.begin() + 1; feature != m_features.end(); ++feature) {
    feature->fields.insert(feature->fields.begin(), shared.begin(), shared.end());
  }
  if (m_features.size() > 1 && own.size() == shared.size()) {
    m_features.erase(m_features.begin());
  }
  for (Feature& feature : m_features) {
    locate(feature);
  }
}

void FeatureCollector::beginElement(std::string_view className) {
  Feature feature;
  feature.kind = className;
  feature.container = m_containers;
  feature.element = static_cast<unsigned int>(m_features.size());
  feature.parent = m_features[m_levels.back().feature].element;
  m_features.push_back(std::move(feature));
  Level level;
  level.feature = m_features.size() - 1;
  m_levels.push_back(std::move(level));
}

void FeatureCollector::beginPart(std::string_view name, std::string_view className) {
  const Level& outer = m_levels.back();
  Level level;
  level.feature = outer.feature;
  level.isFlat = isFlatPart(name, className);
  level.prefix = level.isFlat ? outer.prefix : fieldName(name) + ".";
  level.repeatsIdentity = outer.repeatsIdentity || name == "nwMeasurement";
  level.repeatsFrequency = outer.repeatsFrequency || name == "neighborCellMeasurement";
  m_levels.push_back(std::move(level));
}

std::string FeatureCollector::fieldName(std::string_view name) {
  Level& level = m_levels.back();
  if (level.isList) {
    return level.prefix + "[" + std::to_string(level.next++) + "]";
  }
  const bool repeats = (level.repeatsIdentity && isOneOf(kIdentity, name)) ||
                       (level.repeatsFrequency && isOneOf(kFrequency, name));
  return level.prefix + (repeats ? glued("nwMeasurement", name) : std::string(name));
}

// Only where parts left their names out can two fields meet under one, and then only in objects
// that nobody means.
void FeatureCollector::add(const std::string& name, const Token& token, bool isDerived) {
  Feature& feature = m_features[m_levels.back().feature];
  const bool isTaken = m_levels.back().isFlat && feature.find(name) != nullptr;
  feature.fields.push_back({isTaken ? name + "#2" : name, token, isDerived});
}

}  // namespace trelvo::tool
