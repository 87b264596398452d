#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/ObjectCollection.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaNeighborCell.h>

namespace trelvo::schema {

/// A CDMA cell: its identity, the area it covers, and the cells next to it.
///
/// A flat record of class id 124 that lives in memory only; it copies and compares as GeranCell
/// does.
///
/// Threads: one at a time, together with all that hangs from the cell.
class TRELVO_EXPORT CdmaCell : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasDn = 0x1,
    HasCoverage = 0x2,
    HasNeighbors = 0x4,
  };

  /// The list of neighbours, in the order in which they were added.
  using Neighbors = gom::ObjectCollection<CdmaNeighborCell>;

  /// Nothing set.
  CdmaCell();
  /// A cell of this identity; with an empty handle nothing is set.
  explicit CdmaCell(const gom::SharedPointer<CdmaCellDn>& dn);
  /// Shares identity and coverage. The list of neighbours is a new one that shares their objects;
  /// when memory runs out for it, the copy has none and its bit is clear.
  CdmaCell(const CdmaCell& other);
  /// Shares everything, the list of neighbours too.
  CdmaCell& operator=(const CdmaCell& other) = default;

  /// A new cell; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CdmaCell> create();
  [[nodiscard]] static gom::SharedPointer<CdmaCell> create(
      const gom::SharedPointer<CdmaCellDn>& dn);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<CdmaCell> create(
      const gom::SharedPointer<CdmaCell>& other);

  void dump() const override;
  [[nodiscard]] CdmaCell* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the parts that `mask` names.
  void unset(unsigned int mask) override;

  bool operator==(const CdmaCell& other) const;
  bool operator!=(const CdmaCell& other) const { return !(*this == other); }

  /// The identity; empty when its bit is clear. The setter gives StatusWrongState for an empty
  /// handle, and changes nothing.
  gom::SharedPointer<CdmaCellDn> dn() const;
  Status setDn(const gom::SharedPointer<CdmaCellDn>& dn);

  /// The area covered; empty when its bit is clear. The setter gives StatusWrongState for an empty
  /// handle, and changes nothing.
  gom::SharedPointer<Area> coverage() const;
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

  /// The list of neighbours, to be read and added to. It is made, and its bit set, on first use;
  /// null when memory runs out. The cell keeps it.
  Neighbors* neighbors();
  /// The list of neighbours; null when its bit is clear. The cell keeps it.
  Neighbors* currentNeighbors() const;

 private:
  friend struct CellFamily;
  struct Fields;

  gom::SharedPointer<CdmaCellDn> m_dn;
  gom::SharedPointer<Area> m_coverage;
  gom::SharedPointer<Neighbors> m_neighbors;
};

}  // namespace trelvo::schema
