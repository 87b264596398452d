#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/gom/ValueCollection.h>

namespace trelvo::schema {

/// All that is injected rather than measured: for each of eight kinds a list of statements, which
/// pair a cell, an access point or a satellite fix with its time and, as far as known, its area,
/// its measurement and its source; and the number of the measurement set.
///
///   auto injection = Injection::create();
///   auto access = WlanInjection::create(WlanDn::create(0x0011223344556677), timeStamp, area);
///   injection->addWlanInjection(access->wrappedObject());
///
/// A composite of object key 5; its wire form is that of its generic object. Each list is a
/// property, whose elements are the generic objects of the members, of the object key given here:
///
/// | bit   | property                          | key | members                     | their key |
/// |-------|-----------------------------------|-----|-----------------------------|-----------|
/// | 0x001 | geranInjectionCollection          | 304 | GeranServingCellInjection   | 6         |
/// | 0x002 | utraFddInjectionCollection        | 305 | UtraFddServingCellInjection | 7         |
/// | 0x040 | utraTddInjectionCollection        | 306 | UtraTddServingCellInjection | 8         |
/// | 0x010 | eutraInjectionCollection          | 311 | EUtraServingCellInjection   | 15        |
/// | 0x020 | cdmaInjectionCollection           | 313 | CdmaServingCellInjection    | 18        |
/// | 0x004 | cellularObjectInjectionCollection | 308 | CellularObjectInjection     | 12        |
/// | 0x080 | wlanInjectionCollection           | 316 | WlanInjection               | 22        |
/// | 0x008 | gnssInjectionCollection           | 309 | GnssInjection               | 13        |
/// | 0x100 | measurementId, unsigned 32        | 317 |                             |           |
///
/// The bits are not in the order of the keys, and MeasurementContainer numbers its own otherwise.
///
/// Adding: an add...() takes the wrappedObject() of the member and appends it, without a limit and
/// without a look for duplicates; the first one makes the list. It gives StatusOk; StatusWrongState
/// for an empty handle, a member of another kind, and where a property of another type stands at
/// the key; StatusOutOfMemory. A failure changes nothing.
///
/// Lists: a ...Collection() gives the stored list, empty when the property is absent or of another
/// type. A set...Collection() replaces the whole list without looking into it; an empty handle
/// gives StatusWrongState. Single members are taken from the list
/// (MeasurementContainer::collectionItem()).
///
/// Ownership: members and lists are shared, not copied: a change made through either side is seen
/// by both. Where there is no generic object, setters throw StatusFailed, and add...() give
/// StatusWrongState; getters never throw.
/// Threads: one at a time, together with all that is reachable from it.
class TRELVO_EXPORT Injection : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasGeranInjectionCollection = 0x001,
    HasUtraFddInjectionCollection = 0x002,
    HasCellularObjectInjectionCollection = 0x004,
    HasGnssInjectionCollection = 0x008,
    HasEUtraInjectionCollection = 0x010,
    HasCdmaInjectionCollection = 0x020,
    HasUtraTddInjectionCollection = 0x040,
    HasWlanInjectionCollection = 0x080,
    HasMeasurementId = 0x100,
  };

  /// Without an object until it is assigned.
  Injection() = default;
  /// Copies and assignments share the other's object.
  Injection(const Injection& other) = default;
  Injection& operator=(const Injection& other) = default;

  /// Without properties; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<Injection> create();
  /// Shares `object`; an empty handle when that is empty or not of key 5.
  [[nodiscard]] static gom::SharedPointer<Injection> create(
      const gom::SharedPointer<gom::GenericObject>& object);

  /// Dumps the wrapped object, which has no effect.
  void dump() const override;
  /// Whether every property that `mask` names exists. True for a mask of 0, false for one with a
  /// bit outside 0x1FF.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties that `mask` names, a list with all its members; other bits are ignored.
  void unset(unsigned int mask) override;

  /// Appends to the GERAN statements: the generic object of a GeranServingCellInjection.
  Status addGeranInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The GERAN statements.
  gom::SharedPointer<gom::ValueCollection> geranInjectionCollection() const;
  Status setGeranInjectionCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends to the UTRA FDD statements: the generic object of a UtraFddServingCellInjection.
  Status addUtraFddInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The UTRA FDD statements.
  gom::SharedPointer<gom::ValueCollection> utraFddInjectionCollection() const;
  Status setUtraFddInjectionCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends to the UTRA TDD statements: the generic object of a UtraTddServingCellInjection.
  Status addUtraTddInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The UTRA TDD statements.
  gom::SharedPointer<gom::ValueCollection> utraTddInjectionCollection() const;
  Status setUtraTddInjectionCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends to the E-UTRA statements: the generic object of a EUtraServingCellInjection.
  Status addEUtraInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The E-UTRA statements. The getter's "eutra" is spelled otherwise than the setter's "EUtra".
  gom::SharedPointer<gom::ValueCollection> eutraInjectionCollection() const;
  Status setEUtraInjectionCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends to the CDMA statements: the generic object of a CdmaServingCellInjection.
  Status addCdmaInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The CDMA statements.
  gom::SharedPointer<gom::ValueCollection> cdmaInjectionCollection() const;
  Status setCdmaInjectionCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends to the statements about cellular areas: the generic object of a
  /// CellularObjectInjection.
  Status addCellularObjectInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The statements about cellular areas. With one that names its area write() throws
  /// StatusInternal: such a name has no wire form.
  gom::SharedPointer<gom::ValueCollection> cellularObjectInjectionCollection() const;
  Status setCellularObjectInjectionCollection(
      const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends to the WLAN statements: the generic object of a WlanInjection.
  Status addWlanInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The WLAN statements.
  gom::SharedPointer<gom::ValueCollection> wlanInjectionCollection() const;
  Status setWlanInjectionCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// Appends to the GNSS statements: the generic object of a GnssInjection.
  Status addGnssInjection(const gom::SharedPointer<gom::GenericObject>& object);
  /// The GNSS statements.
  gom::SharedPointer<gom::ValueCollection> gnssInjectionCollection() const;
  Status setGnssInjectionCollection(const gom::SharedPointer<gom::ValueCollection>& collection);

  /// The number of the measurement set, as in MeasurementContainer; any value, 0 when absent.
  unsigned int measurementId() const;
  Status setMeasurementId(unsigned int measurementId);

  /// What the typed functions above do, for any list property.
  Status addInjection(const gom::SharedPointer<gom::GenericObject>& object,
                      unsigned short objectKey, unsigned short propertyKey);
  gom::SharedPointer<gom::ValueCollection> injectionCollection(unsigned short propertyKey) const;

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
