#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/CellMeasurement.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>

namespace trelvo::schema {

/// One measured moment of a GERAN serving cell, over a generic object of key 2. See
/// CellMeasurement.
///
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT GeranCellMeasurement : public CellMeasurement {
 public:
  /// A new, empty measurement; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranCellMeasurement> create();
  /// A measurement over `object`, which it shares; an empty handle unless `object` has the key 2.
  [[nodiscard]] static gom::SharedPointer<GeranCellMeasurement> create(
      const gom::SharedPointer<gom::GenericObject>& object);
  /// A new measurement with time stamp and identity; an empty handle when memory runs out, and for
  /// an empty `dn`.
  [[nodiscard]] static gom::SharedPointer<GeranCellMeasurement> create(
      const gom::SharedPointer<GeranCellDn>& dn, unsigned int timeStamp);

  /// The serving cell; empty when absent or of another class.
  gom::SharedPointer<GeranCellDn> dn() const;
  /// @return StatusOk; StatusWrongState for an empty handle; StatusOutOfMemory.
  Status setDn(const gom::SharedPointer<GeranCellDn>& dn);

  /// What was measured of the serving cell; empty when absent or of another class.
  gom::SharedPointer<GeranServingCellMeasurement> servingCellMeasurement() const;
  /// @return as setDn().
  Status setServingCellMeasurement(
      const gom::SharedPointer<GeranServingCellMeasurement>& measurement);

  using CellMeasurement::addNwMeasurement;
  /// Appends a neighbour, sharing it.
  /// @return StatusOk; StatusWrongState for an empty handle; StatusOutOfMemory with nothing
  ///         changed.
  Status addNwMeasurement(const gom::SharedPointer<GeranNwMeasurement>& neighbor);

 private:
  friend struct WrapperFactory;
};

}  // namespace trelvo::schema
