#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

namespace trelvo::schema {

/// A statement about a WLAN access point, with the area it covers: what an Injection holds of WLAN.
///
/// A composite of object key 22; its wire form is that of its generic object.
///
/// | bit | property                               | key |
/// |-----|----------------------------------------|-----|
/// | 0x1 | dn, a WlanDn                           | 200 |
/// | 0x2 | timeStamp, unsigned 32                 | 205 |
/// | 0x4 | wlanApMeasurement, a WlanApMeasurement | 129 |
/// | 0x8 | coverage, an Area                      | 204 |
///
/// WlanMeasurement numbers its bits otherwise.
///
/// Setters share what they are given; getters hand out what is stored and never throw. Where there
/// is no generic object, setters throw StatusFailed.
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT WlanInjection : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasDn = 0x1,
    HasTimeStamp = 0x2,
    HasWlanApMeasurement = 0x4,
    HasCoverage = 0x8,
  };

  /// Without an object until it is assigned.
  WlanInjection() = default;
  /// Copies and assignments share the other's object.
  WlanInjection(const WlanInjection& other) = default;
  WlanInjection& operator=(const WlanInjection& other) = default;

  /// Without properties; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<WlanInjection> create();
  /// Shares `object`; an empty handle when that is empty or not of key 22.
  [[nodiscard]] static gom::SharedPointer<WlanInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);
  /// With these properties; an empty handle for an empty `dn` or `coverage` and when memory runs
  /// out.
  [[nodiscard]] static gom::SharedPointer<WlanInjection> create(
      const gom::SharedPointer<WlanDn>& dn, unsigned int timeStamp,
      const gom::SharedPointer<Area>& coverage);

  /// Dumps the wrapped object, which has no effect.
  void dump() const override;
  /// Whether every property that `mask` names exists. True for a mask of 0, false for one with a
  /// bit outside 0xF.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties that `mask` names; other bits are ignored.
  void unset(unsigned int mask) override;

  /// The access point; empty when absent or of another class.
  gom::SharedPointer<WlanDn> dn() const;
  /// An empty handle gives StatusWrongState.
  Status setDn(const gom::SharedPointer<WlanDn>& dn);

  /// When it was seen, any value; 0 when absent. Epoch and unit are the application's.
  unsigned int timeStamp() const;
  Status setTimeStamp(unsigned int timeStamp);

  /// What was heard; empty when absent or of another class.
  gom::SharedPointer<WlanApMeasurement> wlanApMeasurement() const;
  /// An empty handle gives StatusWrongState.
  Status setWlanApMeasurement(const gom::SharedPointer<WlanApMeasurement>& wlanApMeasurement);

  /// The area that the access point covers; empty when absent or of another class.
  gom::SharedPointer<Area> coverage() const;
  /// An empty handle gives StatusWrongState.
  Status setCoverage(const gom::SharedPointer<Area>& coverage);

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
