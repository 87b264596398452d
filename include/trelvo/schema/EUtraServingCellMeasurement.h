#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNwMeasurement.h>

namespace trelvo::schema {

/// What is measured of an E-UTRA serving cell: what only the serving cell has, and a nested
/// measurement with what it shares with its neighbours.
///
/// A flat record of class id 118 with a one-byte mask, at most 0x07; otherwise as
/// GeranServingCellMeasurement. On the wire stand nwMeasurement, timingAdvance, each when its bit
/// is set.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT EUtraServingCellMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasNwMeasurement = 0x01,
    HasTimingAdvance = 0x02,
    HasFrequencyInfo = 0x04,  ///< answered by the nested measurement
  };

  /// No field set.
  EUtraServingCellMeasurement();

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<EUtraServingCellMeasurement> create();
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<EUtraServingCellMeasurement> create(
      const gom::SharedPointer<EUtraServingCellMeasurement>& other);

  void dump() const override;
  [[nodiscard]] EUtraServingCellMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Whether all bits of `mask` are set, here or in the nested measurement. False for a mask of 0.
  bool valueExists(unsigned int mask) const override;
  /// Clears the bits, here and in the nested measurement; then lets go of the nested measurement
  /// when `mask` names it. Numbers stay.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const EUtraServingCellMeasurement& other) const;
  bool operator!=(const EUtraServingCellMeasurement& other) const { return !(*this == other); }

  /// The nested measurement; empty when its bit is clear. The setter gives StatusWrongState for an
  /// empty handle, and changes nothing.
  gom::SharedPointer<EUtraNwMeasurement> nwMeasurement() const;
  Status setNwMeasurement(const gom::SharedPointer<EUtraNwMeasurement>& nwMeasurement);

  /// Timing advance (3GPP TS 36.213), 0 to 1282 in use: units of 16 samples of 1/30.72 us there and
  /// back, about 78 m of distance each.
  unsigned short timingAdvance() const noexcept { return m_timingAdvance; }
  Status setTimingAdvance(unsigned short timingAdvance);

  /// How the cell is told apart on the air, kept in the nested measurement; empty when there is
  /// none or its bit there is clear. The setter gives StatusWrongState for an empty handle, but has
  /// then made a nested measurement where there was none.
  gom::SharedPointer<EUtraFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  gom::SharedPointer<EUtraNwMeasurement> m_nwMeasurement;
  unsigned short m_timingAdvance = 0;
};

}  // namespace trelvo::schema
