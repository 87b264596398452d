#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>

namespace trelvo::schema {

/// An entry in a UTRA FDD cell's list of neighbours: how it is told apart on the air, and the area
/// it covers.
///
/// A flat record of class id 108 that lives in memory only; otherwise as GeranNeighborCell, without
/// lac and cid.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT UtraFddNeighborCell : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x1,
    HasCoverage = 0x2,
  };

  /// Nothing set.
  UtraFddNeighborCell();
  /// A neighbour of this frequency info; with an empty handle nothing is set.
  explicit UtraFddNeighborCell(const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraFddNeighborCell> create();
  [[nodiscard]] static gom::SharedPointer<UtraFddNeighborCell> create(
      const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<UtraFddNeighborCell> create(
      const gom::SharedPointer<UtraFddNeighborCell>& other);

  void dump() const override;
  [[nodiscard]] UtraFddNeighborCell* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the parts that `mask` names.
  void unset(unsigned int mask) override;

  bool operator==(const UtraFddNeighborCell& other) const;
  bool operator!=(const UtraFddNeighborCell& other) const { return !(*this == other); }

  /// How the neighbour is told apart on the air; empty when its bit is clear. The setter gives
  /// StatusWrongState for an empty handle, and changes nothing.
  gom::SharedPointer<UtraFddFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);

  /// The area covered; empty when its bit is clear. The setter gives StatusWrongState for an empty
  /// handle, and changes nothing.
  gom::SharedPointer<Area> coverage() const;
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  struct Fields;

  gom::SharedPointer<UtraFddFrequencyInfo> m_frequencyInfo;
  gom::SharedPointer<Area> m_coverage;
};

}  // namespace trelvo::schema
