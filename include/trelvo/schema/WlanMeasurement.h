#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

namespace trelvo::schema {

/// A WLAN access point that was heard at one moment: what a MeasurementContainer holds of WLAN.
///
/// A composite of object key 20; its wire form is that of its generic object.
///
/// | bit | property                               | key |
/// |-----|----------------------------------------|-----|
/// | 0x1 | dn, a WlanDn                           | 200 |
/// | 0x2 | timeStamp, unsigned 32                 | 205 |
/// | 0x4 | elapsedRealtimeTimeStamp, signed 64    | 206 |
/// | 0x8 | wlanApMeasurement, a WlanApMeasurement | 129 |
///
/// WlanInjection numbers its bits otherwise.
///
/// Setters share what they are given; getters hand out what is stored and never throw. Where there
/// is no generic object, setters throw StatusFailed; setWlanApMeasurement() returns it.
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT WlanMeasurement : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasDn = 0x1,
    HasTimeStamp = 0x2,
    HasElapsedRealtimeTimeStamp = 0x4,
    HasWlanApMeasurement = 0x8,
  };

  /// Without an object until it is assigned.
  WlanMeasurement() = default;
  /// Copies and assignments share the other's object.
  WlanMeasurement(const WlanMeasurement& other) = default;
  WlanMeasurement& operator=(const WlanMeasurement& other) = default;

  /// Without properties; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<WlanMeasurement> create();
  /// Shares `object`; an empty handle when that is empty or not of key 20.
  [[nodiscard]] static gom::SharedPointer<WlanMeasurement> create(
      const gom::SharedPointer<gom::GenericObject>& object);
  /// With these properties; an empty handle for an empty `dn` and when memory runs out.
  [[nodiscard]] static gom::SharedPointer<WlanMeasurement> create(
      const gom::SharedPointer<WlanDn>& dn, unsigned int timeStamp);

  /// Whether every property that `mask` names exists. False for a mask of 0 and for one with a bit
  /// outside 0xF.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties that `mask` names; other bits are ignored.
  void unset(unsigned int mask) override;

  /// The access point; empty when absent or of another class.
  gom::SharedPointer<WlanDn> dn() const;
  /// An empty handle gives StatusWrongState.
  Status setDn(const gom::SharedPointer<WlanDn>& dn);

  /// When it was heard, any value; 0 when absent. Epoch and unit are the application's.
  unsigned int timeStamp() const;
  Status setTimeStamp(unsigned int timeStamp);

  /// When it was heard by the clock that counts from the device's start, any value; 0 when absent.
  /// The unit is the application's.
  long long elapsedRealtimeTimeStamp() const;
  Status setElapsedRealtimeTimeStamp(long long elapsedRealtimeTimeStamp);

  /// What was heard; empty when absent or of another class.
  gom::SharedPointer<WlanApMeasurement> wlanApMeasurement() const;
  /// An empty handle gives StatusWrongState; without a generic object, StatusFailed.
  Status setWlanApMeasurement(const gom::SharedPointer<WlanApMeasurement>& wlanApMeasurement);

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
