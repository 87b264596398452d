#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/CellMeasurement.h>

namespace trelvo::schema {

/// One measured moment of a CDMA serving cell, over a generic object of key 17. See
/// CellMeasurement.
///
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT CdmaCellMeasurement : public CellMeasurement {
 public:
  /// A new, empty measurement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CdmaCellMeasurement> create();
  /// A measurement over `object`, which it shares; an empty handle unless `object` has the key 17.
  [[nodiscard]] static gom::SharedPointer<CdmaCellMeasurement> create(
      const gom::SharedPointer<gom::GenericObject>& object);
  /// A new measurement with time stamp and identity; an empty handle when memory runs out, and for
  /// an empty `dn`.
  [[nodiscard]] static gom::SharedPointer<CdmaCellMeasurement> create(
      const gom::SharedPointer<CdmaCellDn>& dn, unsigned int timeStamp);

  /// The serving cell; empty when absent or of another class.
  gom::SharedPointer<CdmaCellDn> dn() const;
  /// @return StatusOk; StatusWrongState for an empty handle; StatusOutOfMemory.
  Status setDn(const gom::SharedPointer<CdmaCellDn>& dn);

  /// What was measured of the serving cell; empty when absent or of another class.
  gom::SharedPointer<CdmaServingCellMeasurement> servingCellMeasurement() const;
  /// @return as setDn().
  Status setServingCellMeasurement(
      const gom::SharedPointer<CdmaServingCellMeasurement>& measurement);

  using CellMeasurement::addNwMeasurement;
  /// Appends a neighbour, sharing it.
  /// @return StatusOk; StatusWrongState for an empty handle; StatusOutOfMemory with nothing
  ///         changed.
  Status addNwMeasurement(const gom::SharedPointer<CdmaNwMeasurement>& neighbor);

 private:
  friend struct WrapperFactory;
};

}  // namespace trelvo::schema
