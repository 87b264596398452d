#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/GeranFrequencyInfo.h>

namespace trelvo::schema {

/// An entry in a GERAN cell's list of neighbours: how it is told apart on the air, and the area it
/// covers.
///
/// A flat record of class id 106 that lives in memory only: write() and read() throw
/// StatusInternal, and so does a list with an element in it.
///
/// Copies share frequency info and coverage, clone() copies them. Equality looks at frequency info,
/// coverage and the bits, but not at the numbers of lac and cid: two neighbours that differ only in
/// cid are equal.
///
/// The neighbours of the other radio technologies keep to the same rules, and have no lac and cid.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT GeranNeighborCell : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x1,
    HasCoverage = 0x2,
    HasLac = 0x4,
    HasCid = 0x8,
  };

  /// Nothing set.
  GeranNeighborCell();
  /// A neighbour of this frequency info; with an empty handle nothing is set.
  explicit GeranNeighborCell(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranNeighborCell> create();
  [[nodiscard]] static gom::SharedPointer<GeranNeighborCell> create(
      const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<GeranNeighborCell> create(
      const gom::SharedPointer<GeranNeighborCell>& other);

  void dump() const override;
  [[nodiscard]] GeranNeighborCell* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the parts that `mask` names. Numbers stay.
  void unset(unsigned int mask) override;

  /// As the class comment says: lac and cid are not compared.
  bool operator==(const GeranNeighborCell& other) const;
  bool operator!=(const GeranNeighborCell& other) const { return !(*this == other); }

  /// How the neighbour is told apart on the air; empty when its bit is clear. The setter gives
  /// StatusWrongState for an empty handle, and changes nothing.
  gom::SharedPointer<GeranFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);

  /// The area covered; empty when its bit is clear. The setter gives StatusWrongState for an empty
  /// handle, and changes nothing.
  gom::SharedPointer<Area> coverage() const;
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

  /// Location area code; the stored number, 0 at first, whether its bit is set or not.
  unsigned short lac() const noexcept { return m_lac; }
  Status setLac(unsigned short lac);

  /// Cell identity within the location area; likewise.
  unsigned short cid() const noexcept { return m_cid; }
  Status setCid(unsigned short cid);

 private:
  struct Fields;

  gom::SharedPointer<GeranFrequencyInfo> m_frequencyInfo;
  gom::SharedPointer<Area> m_coverage;
  unsigned short m_lac = 0;
  unsigned short m_cid = 0;
};

}  // namespace trelvo::schema
