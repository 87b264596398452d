#pragma once

#include <trelvo/Export.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/PositionEstimate.h>

namespace trelvo::schema {

/// A satellite fix and its time: what a MeasurementContainer holds of GNSS.
///
/// A composite of object key 21; its wire form is that of its generic object.
///
/// | bit | property                               | key |
/// |-----|----------------------------------------|-----|
/// | 0x2 | timeStamp, unsigned 32                 | 205 |
/// | 0x4 | measurementData, a GnssMeasurementData | 130 |
///
/// Setters share what they are given; getters hand out what is stored and never throw. Where there
/// is no generic object, setTimeStamp() throws StatusFailed and setMeasurementData() returns it.
/// Threads: one at a time, together with all wrappers of the same object.
class TRELVO_EXPORT GnssMeasurement : public GenericObjectWrapper {
 public:
  enum : unsigned int {
    HasTimeStamp = 0x2,
    HasMeasurementData = 0x4,
  };

  /// Without an object until it is assigned.
  GnssMeasurement() = default;
  /// Copies and assignments share the other's object.
  GnssMeasurement(const GnssMeasurement& other) = default;
  GnssMeasurement& operator=(const GnssMeasurement& other) = default;

  /// Without properties; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurement> create();
  /// Shares `object`; an empty handle when that is empty or not of key 21.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurement> create(
      const gom::SharedPointer<gom::GenericObject>& object);
  /// With these properties; an empty handle for empty `data` and when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurement> create(
      unsigned int timeStamp, const gom::SharedPointer<GnssMeasurementData>& data);
  /// The estimate's time and, as GnssMeasurementData, its values. An empty handle when it has no
  /// time stamp, when a value is out of range and when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GnssMeasurement> create(const PositionEstimate& estimate);

  /// Whether every property that `mask` names exists. False for a mask of 0 and for one with a bit
  /// outside 0x6.
  bool valueExists(unsigned int mask) const override;
  /// Removes the properties that `mask` names; other bits are ignored.
  void unset(unsigned int mask) override;

  /// GnssMeasurementData::toPosition() with the time stamp, when there is one. An empty handle
  /// without data, when that conversion fails, and for a time stamp of 0.
  [[nodiscard]] gom::SharedPointer<PositionEstimate> toPosition() const;

  /// The time of the fix, any value; 0 when absent. Epoch and unit are the application's.
  unsigned int timeStamp() const;
  Status setTimeStamp(unsigned int timeStamp);

  /// The fix; empty when absent or of another class.
  gom::SharedPointer<GnssMeasurementData> measurementData() const;
  /// An empty handle gives StatusWrongState; without a generic object, StatusFailed.
  Status setMeasurementData(const gom::SharedPointer<GnssMeasurementData>& data);

 private:
  friend struct WrapperFactory;
  struct Properties;
};

}  // namespace trelvo::schema
