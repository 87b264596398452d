#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/CellularObjectDn.h>

namespace trelvo::schema {

/// A named area of cells, and the area it covers on the ground.
///
/// A flat record of class id 115 that lives in memory only: write() and read() throw
/// StatusInternal. Equal are records with the same bits and equal parts. Copies share the parts,
/// clone() copies them.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT CellularObject : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasDn = 0x1,
    HasCoverage = 0x2,
  };

  /// Nothing set.
  CellularObject();
  /// An area of this name; with an empty handle nothing is set.
  explicit CellularObject(const gom::SharedPointer<CellularObjectDn>& dn);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CellularObject> create();
  [[nodiscard]] static gom::SharedPointer<CellularObject> create(
      const gom::SharedPointer<CellularObjectDn>& dn);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<CellularObject> create(
      const gom::SharedPointer<CellularObject>& other);

  void dump() const override;
  [[nodiscard]] CellularObject* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the parts that `mask` names.
  void unset(unsigned int mask) override;

  bool operator==(const CellularObject& other) const;
  bool operator!=(const CellularObject& other) const { return !(*this == other); }

  /// The name; empty when its bit is clear. The setter gives StatusWrongState for an empty handle,
  /// and changes nothing.
  gom::SharedPointer<CellularObjectDn> dn() const;
  Status setDn(const gom::SharedPointer<CellularObjectDn>& dn);

  /// The area covered; empty when its bit is clear. The setter gives StatusWrongState for an empty
  /// handle, and changes nothing.
  gom::SharedPointer<Area> coverage() const;
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  struct Fields;

  gom::SharedPointer<CellularObjectDn> m_dn;
  gom::SharedPointer<Area> m_coverage;
};

}  // namespace trelvo::schema
