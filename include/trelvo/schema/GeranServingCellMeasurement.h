#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNwMeasurement.h>

namespace trelvo::schema {

/// What is measured of a GERAN serving cell: what only the serving cell has, and a nested
/// measurement with what it shares with its neighbours.
///
/// A flat record of class id 109 with a one-byte mask, at most 0x1F. On the wire stand
/// nwMeasurement, frequency, timingAdvance, each when its bit is set; the nested measurement is its
/// whole own form.
///
/// Some of the nested measurement's fields can be reached from here. Their bits are never set in
/// this record's own mask: valueExists() asks the nested measurement for them, and unset() clears
/// them there, whoever else shares it. Setting such a field makes the nested measurement when there
/// is none. A mask that is read from a stream may hold such bits; no field belongs to them.
///
/// Setters of numbers accept every value; getters of numbers give the stored one, 0 at first,
/// whether its bit is set or not. Equality compares the bits, the nested measurements and the
/// numbers under set bits. Copies share the nested measurement, clone() copies it.
///
/// The other radio technologies have the like, with the same rules.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT GeranServingCellMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasRxLevel = 0x01,  ///< answered by the nested measurement
    HasTimingAdvance = 0x02,
    HasFrequencyInfo = 0x04,  ///< answered by the nested measurement
    HasFrequency = 0x08,
    HasNwMeasurement = 0x10,
  };

  /// No field set.
  GeranServingCellMeasurement();

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranServingCellMeasurement> create();
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<GeranServingCellMeasurement> create(
      const gom::SharedPointer<GeranServingCellMeasurement>& other);

  void dump() const override;
  [[nodiscard]] GeranServingCellMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Whether all bits of `mask` are set, here or in the nested measurement. False for a mask of 0.
  bool valueExists(unsigned int mask) const override;
  /// Clears the bits, here and in the nested measurement; then lets go of the nested measurement
  /// when `mask` names it. Numbers stay.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const GeranServingCellMeasurement& other) const;
  bool operator!=(const GeranServingCellMeasurement& other) const { return !(*this == other); }

  /// Timing advance (3GPP TS 45.010), 0 to 63 in use: bit periods of 48/13 us there and back, about
  /// 550 m of distance each.
  unsigned char timingAdvance() const noexcept { return m_timingAdvance; }
  Status setTimingAdvance(unsigned char timingAdvance);

  /// A byte that is carried as it is.
  unsigned char frequency() const noexcept { return m_frequency; }
  Status setFrequency(unsigned char frequency);

  /// The nested measurement; empty when its bit is clear. The setter gives StatusWrongState for an
  /// empty handle, and changes nothing.
  gom::SharedPointer<GeranNwMeasurement> nwMeasurement() const;
  Status setNwMeasurement(const gom::SharedPointer<GeranNwMeasurement>& nwMeasurement);

  /// The level of the cell, kept in the nested measurement; 0 when there is none. See
  /// GeranNwMeasurement::rxLevel().
  /// The setter gives StatusWrongState when there is no memory for a nested measurement.
  unsigned char rxLevel() const;
  Status setRxLevel(unsigned char rxLevel);

  /// How the cell is told apart on the air, kept in the nested measurement; empty when there is
  /// none or its bit there is clear. The setter gives StatusWrongState for an empty handle, but has
  /// then made a nested measurement where there was none.
  gom::SharedPointer<GeranFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned char m_timingAdvance = 0;
  unsigned char m_frequency = 0;
  gom::SharedPointer<GeranNwMeasurement> m_nwMeasurement;
};

}  // namespace trelvo::schema
