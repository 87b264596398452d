#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/CellMeasurement.h>
#include <trelvo/schema/UtraCellDn.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>

namespace trelvo::schema {

/// One measured moment of a UTRA TDD serving cell, over a generic object of key 4. It has the
/// property of bit 0x10 besides those common to all. See CellMeasurement.
///
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT UtraTddCellMeasurement : public CellMeasurement {
 public:
  /// A new, empty measurement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraTddCellMeasurement> create();
  /// A measurement over `object`, which it shares; an empty handle unless `object` has the key 4.
  [[nodiscard]] static gom::SharedPointer<UtraTddCellMeasurement> create(
      const gom::SharedPointer<gom::GenericObject>& object);
  /// A new measurement with time stamp and identity; an empty handle when memory runs out, and for
  /// an empty `dn`.
  [[nodiscard]] static gom::SharedPointer<UtraTddCellMeasurement> create(
      const gom::SharedPointer<UtraCellDn>& dn, unsigned int timeStamp);

  /// Whether all properties that `mask` names exist; false for a mask of 0 and for a bit outside
  /// 0x1F.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties that `mask` names.
  void unset(unsigned int mask) override;

  /// The serving cell; empty when absent or of another class.
  gom::SharedPointer<UtraCellDn> dn() const;
  /// @return StatusOk; StatusWrongState for an empty handle; StatusOutOfMemory.
  Status setDn(const gom::SharedPointer<UtraCellDn>& dn);

  /// What was measured of the serving cell; empty when absent or of another class.
  gom::SharedPointer<UtraTddServingCellMeasurement> servingCellMeasurement() const;
  /// @return as setDn().
  Status setServingCellMeasurement(
      const gom::SharedPointer<UtraTddServingCellMeasurement>& measurement);

  /// When the unreliable state began, on the clock of timeStamp(); 0 when absent.
  unsigned int unreliableStateTimeStamp() const;
  /// @return StatusOk, or StatusOutOfMemory.
  Status setUnreliableStateTimeStamp(unsigned int timeStamp);

  using CellMeasurement::addNwMeasurement;
  /// Appends a neighbour, sharing it.
  /// @return StatusOk; StatusWrongState for an empty handle; StatusOutOfMemory with nothing
  ///         changed.
  Status addNwMeasurement(const gom::SharedPointer<UtraTddNwMeasurement>& neighbor);

 private:
  friend struct WrapperFactory;
};

}  // namespace trelvo::schema
