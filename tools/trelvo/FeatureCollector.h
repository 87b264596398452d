#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/trelvo/Feature.h"
#include "tools/trelvo/ShowWriter.h"

namespace trelvo::tool {

/// Turns objects, as ShowObjects hands them on, into features.
///
/// Each object in a list is a feature. The outermost object is one too, element 0, when it has no
/// others or holds more than `offset` and `measurementId`, which all its features get.
///
/// What a feature holds is flattened into its fields. The known parts in between (dn, coverage,
/// frequencyInfo...) leave no trace in the names; others do: "property 999.mcc". Where a network
/// measurement tells once more what its cell's own fields tell, its fields are called
/// `nwMeasurementCid` and so on. What a value decodes to becomes fields: `timeStampUtc` beside
/// `timeStamp`, `rxLevelFrom` beside `rxLevel`.
///
/// Memory: the features of one outermost object. Threads: one at a time.
class FeatureCollector : public ShowWriter {
 public:
  void beginObject(std::string_view name, std::string_view className) override;
  void endObject() override;
  void beginList(std::string_view name, unsigned int count) override;
  void endList() override;
  void value(std::string_view name, const ShowValue& value) override;

  /// The features of the outermost object that ended last, in the order in which they begin.
  const std::vector<Feature>& features() const { return m_features; }

 private:
  struct Level {
    std::size_t feature = 0;  // whose fields the values here are
    std::string prefix;       // of their names
    bool isFlat = false;      // a known part, left out of the names
    bool isList = false;
    bool repeatsIdentity = false;   // a network measurement of a serving cell
    bool repeatsFrequency = false;  // one of a neighbour
    unsigned int next = 0;
  };

  void beginRoot(std::string_view className);
  void endRoot();
  void beginElement(std::string_view className);
  void beginPart(std::string_view name, std::string_view className);
  std::string fieldName(std::string_view name);
  void add(const std::string& name, const Token& token, bool isDerived);

  std::vector<Feature> m_features;
  std::vector<Level> m_levels;
  std::uint64_t m_containers = 0;
};

}  // namespace trelvo::tool
