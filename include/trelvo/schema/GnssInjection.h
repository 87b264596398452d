#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/PositionEstimate.h>

namespace trelvo::schema {

/// A satellite fix and its time as a statement: what an Injection holds of GNSS.
///
/// A composite of object key 13; its wire form is that of its generic object.
///
/// | bit | property                                   | key |
/// |-----|--------------------------------------------|-----|
/// | 0x2 | timeStamp, unsigned 32, permanent          | 205 |
/// | 0x4 | gnssMeasurementData, a GnssMeasurementData | 130 |
///
/// The time stamp counts as permanent, unlike that of GnssMeasurement: its bit is always there,
/// also when no time was ever set, and unset() does not remove it.
///
/// Setters share what they are given; getters hand out what is stored and never throw. Where there
/// is no generic object, setTimeStamp() throws StatusFailed, setGnssMeasurementData() returns it.
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT GnssInjection : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasTimeStamp = 0x2,
    HasGnssMeasurementData = 0x4,
  };

  /// Without an object until it is assigned.
  GnssInjection() = default;
  /// Copies and assignments share the other's object.
  GnssInjection(const GnssInjection& other) = default;
  GnssInjection& operator=(const GnssInjection& other) = default;

  /// Without properties; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssInjection> create();
  /// Shares `object`; an empty handle when that is empty or not of key 13.
  [[nodiscard]] static gom::SharedPointer<GnssInjection> create(
      const gom::SharedPointer<gom::GenericObject>& object);
  /// With these properties; an empty handle for empty `data` and when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssInjection> create(
      unsigned int timeStamp, const gom::SharedPointer<GnssMeasurementData>& data);
  /// With the measurement's properties; its data are shared. An empty handle for an empty one, for
  /// one without time stamp or data, and when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssInjection> create(
      const gom::SharedPointer<GnssMeasurement>& measurement);
  /// As GnssMeasurement::create(estimate), made a statement.
  [[nodiscard]] static gom::SharedPointer<GnssInjection> create(const PositionEstimate& estimate);

  /// Dumps the wrapped object, which has no effect.
  void dump() const override;
  /// False for a bit outside 0x6; otherwise whether there are data, if `mask` asks for them. True
  /// for a mask of 0 and for the time stamp alone.
  bool valueExists(unsigned int mask) const override;
  /// Removes the data if `mask` names them; other bits are ignored.
  void unset(unsigned int mask) override;

  /// The time of the fix, any value; 0 when absent. Epoch and unit are the application's.
  unsigned int timeStamp() const;
  Status setTimeStamp(unsigned int timeStamp);

  /// The fix; empty when absent or of another class.
  gom::SharedPointer<GnssMeasurementData> gnssMeasurementData() const;
  /// An empty handle gives StatusWrongState; without a generic object, StatusFailed.
  Status setGnssMeasurementData(const gom::SharedPointer<GnssMeasurementData>& data);

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
