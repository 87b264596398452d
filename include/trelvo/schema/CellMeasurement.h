#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>

namespace trelvo::schema {

/// One measured moment of one serving cell: who it is, when it was, what was measured of it, and
/// the neighbours heard. Base of the cell measurements of the five radio technologies, which have
/// their own types of these; applications make those, and give wrappedObject() of them to a
/// MeasurementContainer.
///
///   auto measurement = GeranCellMeasurement::create(GeranCellDn::create(244, 91, 1, 2), now);
///   measurement->setServingCellMeasurement(serving);
///   measurement->addNwMeasurement(neighbor);
///   container->addGeranMeasurement(measurement->wrappedObject());
///
/// The data are properties of the wrapped generic object. A bit of valueExists() and unset() stands
/// for the existence of the property:
///
///   bit    key   property
///   0x01   200   dn, a record
///   0x02   205   timeStamp, unsigned 32
///   0x04   202   servingCellMeasurement, a record
///   0x08   303   nwMeasurementCollection, a list of records
///   0x10   207   unreliableStateTimeStamp, unsigned 32; UTRA FDD and UTRA TDD only
///
///   object key   class                    neighbours
///   2            GeranCellMeasurement     GeranNwMeasurement
///   3            UtraFddCellMeasurement   UtraFddNwMeasurement
///   4            UtraTddCellMeasurement   UtraTddNwMeasurement
///   14           EUtraCellMeasurement     EUtraNwMeasurement
///   17           CdmaCellMeasurement      CdmaNwMeasurement
///
/// Getters never throw: what is absent or of another type reads as 0 or an empty handle. Setters
/// share the records that they are given, and throw StatusFailed where there is no wrapped object;
/// one made by a create() always has one. A property that stands in the object with another type
/// is not overwritten: its setter gives StatusWrongState.
///
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT CellMeasurement : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasDn = 0x01,
    HasTimeStamp = 0x02,
    HasServingCellMeasurement = 0x04,
    HasNwMeasurementCollection = 0x08,
    HasUnreliableStateTimeStamp = 0x10,
  };

  /// Without an object until it is assigned.
  CellMeasurement() = default;
  /// Shares the other's object.
  CellMeasurement(const CellMeasurement& other) = default;
  /// Lets go of the object and shares the other's.
  CellMeasurement& operator=(const CellMeasurement& other) = default;

  /// Whether all properties that `mask` names exist; false for a mask of 0 and for a bit outside
  /// 0x0F.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties that `mask` names; other bits are ignored.
  void unset(unsigned int mask) override;

  /// When the measurement was made; 0 when absent. Unit and epoch are the writer's; nothing here
  /// does more than look for the latest. The command line program takes Unix seconds.
  unsigned int timeStamp() const;
  /// @return StatusOk, or StatusOutOfMemory.
  Status setTimeStamp(unsigned int timeStamp);

  /// The neighbours heard; empty when absent. Elements are records under the key 0.
  gom::SharedPointer<gom::ValueCollection> nwMeasurementCollection() const;
  /// Replaces the whole list, without a look into it.
  /// @return StatusOk; StatusWrongState for an empty handle; StatusOutOfMemory.
  Status setNwMeasurementCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends a neighbour, sharing it; the list is made on first use. The technologies' classes
  /// offer this with their own type.
  /// @param classId the class id that `member` must have.
  /// @return StatusOk; StatusWrongState for an empty handle or another class id;
  ///         StatusOutOfMemory with nothing changed.
  Status addNwMeasurement(const gom::SharedPointer<gom::ObjectBase>& member,
                          unsigned short classId);
};

}  // namespace trelvo::schema
