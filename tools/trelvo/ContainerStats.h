#pragma once

#include <cstdint>
#include <map>

#include "tools/trelvo/GeoExtent.h"
#include "tools/trelvo/LevelHistogram.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {

/// Counts what a file of containers holds while it is parsed, in memory of fixed size.
class ContainerStats : public WireHandler {
 public:
  void beginObject(const WireItem& item, unsigned short objectKey, unsigned int count) override;
  void endObject() override { --m_depth; }
  void beginCollection(const WireItem&, unsigned int) override {}
  void endCollection() override {}
  void scalar(const WireItem& item, std::uint64_t bits) override;
  void string(const WireItem&, const std::string&) override {}
  void record(const WireItem& item, const gom::ObjectBase& record) override;

  /// The outermost objects.
  unsigned long long roots() const { return m_roots; }

  /// All generic objects by object key, and all flat records by class id.
  const std::map<unsigned short, unsigned long long>& objects() const { return m_objects; }
  const std::map<unsigned short, unsigned long long>& records() const { return m_records; }

  /// The earliest and the latest time stamp, 0 when there is none. A time of 0 counts as none.
  unsigned int earliest() const { return m_earliest; }
  unsigned int latest() const { return m_latest; }

  /// Positions of fixes and estimates, and centres of coverages.
  unsigned long long positions() const { return m_positions; }
  unsigned long long coverages() const { return m_coverages; }
  const GeoExtent& extent() const { return m_extent; }

  const LevelHistograms& levels() const { return m_levels; }

 private:
  void addTime(unsigned int time);
  bool addPlace(double latitude, double longitude);

  unsigned int m_depth = 0;
  unsigned long long m_roots = 0;
  std::map<unsigned short, unsigned long long> m_objects;
  std::map<unsigned short, unsigned long long> m_records;
  unsigned int m_earliest = 0;
  unsigned int m_latest = 0;
  unsigned long long m_positions = 0;
  unsigned long long m_coverages = 0;
  GeoExtent m_extent;
  LevelHistograms m_levels;
};

}  // namespace trelvo::tool
