#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/CdmaCellMeasurement.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>
#include <trelvo/schema/UtraTddCellMeasurement.h>
#include <trelvo/schema/WlanMeasurement.h>

namespace trelvo::schema {

/// All that was measured at one moment: for each of seven kinds of radio a list of measurements,
/// and the number of the measurement set.
///
///   auto container = MeasurementContainer::create();
///   auto access = WlanMeasurement::create(WlanDn::create(0x0011223344556677), timeStamp);
///   container->addWlanMeasurement(access->wrappedObject());
///   BufferStream stream;
///   container->write(stream);
///   ...
///   auto back = MeasurementContainer::create(gom::GenericObject::create(stream));
///   back->wlanMeasurement(0)->dn()->bssid();
///
/// A composite of object key 1; its wire form is that of its generic object. Each list is a
/// property, whose elements are the generic objects of the members, of the object key given here:
///
/// | bit  | property                     | key | members                   | their key |
/// |------|------------------------------|-----|---------------------------|-----------|
/// | 0x01 | geranMeasurementCollection   | 300 | GeranCellMeasurement      | 2         |
/// | 0x02 | utraFddMeasurementCollection | 301 | UtraFddCellMeasurement    | 3         |
/// | 0x40 | utraTddMeasurementCollection | 302 | UtraTddCellMeasurement    | 4         |
/// | 0x04 | eutraMeasurementCollection   | 310 | EUtraCellMeasurement      | 14        |
/// | 0x08 | cdmaMeasurementCollection    | 312 | CdmaCellMeasurement       | 17        |
/// | 0x10 | wlanMeasurementCollection    | 314 | WlanMeasurement           | 20        |
/// | 0x20 | gnssMeasurementCollection    | 315 | GnssMeasurement           | 21        |
/// | 0x80 | measurementId, unsigned 32   | 317 |                           |           |
///
/// The bits are not in the order of the keys, and Injection numbers its own otherwise.
///
/// Adding: an add...() takes the wrappedObject() of the member and appends it, without a limit and
/// without a look for duplicates; the first one makes the list. It gives StatusOk; StatusWrongState
/// for an empty handle, a member of another kind, and where a property of another type stands at
/// the key; StatusOutOfMemory. A failure changes nothing.
///
/// Lists: a ...Collection() gives the stored list, empty when the property is absent or of another
/// type. A set...Collection() replaces the whole list without looking into it; an empty handle
/// gives StatusWrongState.
///
/// Items: a ...Measurement(index), counted from 0 in the order of adding, gives a new wrapper of
/// the stored member on each call; an empty handle when there is no such member or it is of another
/// kind, as a list from elsewhere may have it.
///
/// Ownership: members and lists are shared, not copied: a change made through either side is seen
/// by both. Where there is no generic object, setters throw StatusFailed, and add...() give
/// StatusWrongState; getters never throw.
/// Threads: one at a time, together with all that is reachable from it.
class TRELVO_EXPORT MeasurementContainer : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasGeranMeasurementCollection = 0x01,
    HasUtraFddMeasurementCollection = 0x02,
    HasEUtraMeasurementCollection = 0x04,
    HasCdmaMeasurementCollection = 0x08,
    HasWlanMeasurementCollection = 0x10,
    HasGnssMeasurementCollection = 0x20,
    HasUtraTddMeasurementCollection = 0x40,
    HasMeasurementId = 0x80,
  };

  /// Without an object until it is assigned.
  MeasurementContainer() = default;
  /// Copies and assignments share the other's object.
  MeasurementContainer(const MeasurementContainer& other) = default;
  MeasurementContainer& operator=(const MeasurementContainer& other) = default;

  /// Without properties; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<MeasurementContainer> create();
  /// Shares `object`; an empty handle when that is empty or not of key 1.
  [[nodiscard]] static gom::SharedPointer<MeasurementContainer> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  /// Dumps the wrapped object, which has no effect.
  void dump() const override;
  /// Whether every property that `mask` names exists. True for a mask of 0, false for one with a
  /// bit outside 0xFF.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties that `mask` names, a list with all its members; other bits are ignored.
  void unset(unsigned int mask) override;

  /// Appends to the GERAN measurements: the generic object of a GeranCellMeasurement.
  Status addGeranMeasurement(const gom::SharedPointer<gom::GenericObject>& object);
  /// The GERAN measurements.
  gom::SharedPointer<gom::ValueCollection> geranMeasurementCollection() const;
  Status setGeranMeasurementCollection(const gom::SharedPointer<gom::ValueCollection>& collection);
  /// One of them.
  gom::SharedPointer<GeranCellMeasurement> geranMeasurement(unsigned int index) const;

  /// Appends to the UTRA FDD measurements: the generic object of a UtraFddCellMeasurement.
  Status addUtraFddMeasurement(const gom::SharedPointer<gom::GenericObject>& object);
  /// The UTRA FDD measurements.
  gom::SharedPointer<gom::ValueCollection> utraFddMeasurementCollection() const;
  Status setUtraFddMeasurementCollection(
      const gom::SharedPointer<gom::ValueCollection>& collection);
  /// One of them.
  gom::SharedPointer<UtraFddCellMeasurement> utraFddMeasurement(unsigned int index) const;

  /// Appends to the UTRA TDD measurements: the generic object of a UtraTddCellMeasurement.
  Status addUtraTddMeasurement(const gom::SharedPointer<gom::GenericObject>& object);
  /// The UTRA TDD measurements.
  gom::SharedPointer<gom::ValueCollection> utraTddMeasurementCollection() const;
  Status setUtraTddMeasurementCollection(
      const gom::SharedPointer<gom::ValueCollection>& collection);
  /// One of them.
  gom::SharedPointer<UtraTddCellMeasurement> utraTddMeasurement(unsigned int index) const;

  /// Appends to the E-UTRA measurements: the generic object of a EUtraCellMeasurement.
  Status addEUtraMeasurement(const gom::SharedPointer<gom::GenericObject>& object);
  /// The E-UTRA measurements. The getter's "eutra" is spelled otherwise than the setter's "EUtra".
  gom::SharedPointer<gom::ValueCollection> eutraMeasurementCollection() const;
  Status setEUtraMeasurementCollection(const gom::SharedPointer<gom::ValueCollection>& collection);
  /// One of them.
  gom::SharedPointer<EUtraCellMeasurement> eutraMeasurement(unsigned int index) const;

  /// Appends to the CDMA measurements: the generic object of a CdmaCellMeasurement.
  Status addCdmaMeasurement(const gom::SharedPointer<gom::GenericObject>& object);
  /// The CDMA measurements.
  gom::SharedPointer<gom::ValueCollection> cdmaMeasurementCollection() const;
  Status setCdmaMeasurementCollection(const gom::SharedPointer<gom::ValueCollection>& collection);
  /// One of them.
  gom::SharedPointer<CdmaCellMeasurement> cdmaMeasurement(unsigned int index) const;

  /// Appends to the WLAN measurements: the generic object of a WlanMeasurement.
  Status addWlanMeasurement(const gom::SharedPointer<gom::GenericObject>& object);
  /// The WLAN measurements.
  gom::SharedPointer<gom::ValueCollection> wlanMeasurementCollection() const;
  Status setWlanMeasurementCollection(const gom::SharedPointer<gom::ValueCollection>& collection);
  /// One of them.
  gom::SharedPointer<WlanMeasurement> wlanMeasurement(unsigned int index) const;

  /// Appends to the GNSS measurements: the generic object of a GnssMeasurement.
  Status addGnssMeasurement(const gom::SharedPointer<gom::GenericObject>& object);
  /// The GNSS measurements.
  gom::SharedPointer<gom::ValueCollection> gnssMeasurementCollection() const;
  Status setGnssMeasurementCollection(const gom::SharedPointer<gom::ValueCollection>& collection);
  /// One of them.
  gom::SharedPointer<GnssMeasurement> gnssMeasurement(unsigned int index) const;

  /// The number of this measurement set, which PositionEstimate carries too; any value, 0 when
  /// absent.
  unsigned int measurementId() const;
  Status setMeasurementId(unsigned int measurementId);

  /// What the typed functions above do, for any list property.
  Status addMeasurement(const gom::SharedPointer<gom::GenericObject>& object,
                        unsigned short objectKey, unsigned short propertyKey);
  gom::SharedPointer<gom::ValueCollection> measurementCollection(unsigned short propertyKey) const;
  Status setMeasurementCollection(const gom::SharedPointer<gom::ValueCollection>& collection,
                                  unsigned short propertyKey);

  /// The generic object of element `index` of any list, counted from 0. Empty for an empty handle,
  /// an index from the element count up, and an element that is null or holds something else.
  static gom::SharedPointer<gom::GenericObject> collectionItem(
      gom::SharedPointer<gom::ValueCollection> collection, unsigned int index);

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
