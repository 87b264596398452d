#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/CdmaFrequencyInfo.h>
#include <trelvo/schema/CdmaNwMeasurement.h>

namespace trelvo::schema {

/// What is measured of a CDMA serving cell: nothing but the nested measurement with what it shares
/// with its neighbours.
///
/// A flat record of class id 126 with a one-byte mask, at most 0x03; otherwise as
/// GeranServingCellMeasurement. On the wire stands nwMeasurement alone.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT CdmaServingCellMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x01,  ///< answered by the nested measurement
    HasNwMeasurement = 0x02,
  };

  /// No field set.
  CdmaServingCellMeasurement();

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CdmaServingCellMeasurement> create();
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<CdmaServingCellMeasurement> create(
      const gom::SharedPointer<CdmaServingCellMeasurement>& other);

  void dump() const override;
  [[nodiscard]] CdmaServingCellMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Whether all bits of `mask` are set, here or in the nested measurement. False for a mask of 0.
  bool valueExists(unsigned int mask) const override;
  /// Clears the bits, here and in the nested measurement; then lets go of the nested measurement
  /// when `mask` names it.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const CdmaServingCellMeasurement& other) const;
  bool operator!=(const CdmaServingCellMeasurement& other) const { return !(*this == other); }

  /// The nested measurement; empty when its bit is clear. The setter gives StatusWrongState for an
  /// empty handle, and changes nothing.
  gom::SharedPointer<CdmaNwMeasurement> nwMeasurement() const;
  Status setNwMeasurement(const gom::SharedPointer<CdmaNwMeasurement>& nwMeasurement);

  /// How the cell is told apart on the air, kept in the nested measurement; empty when there is
  /// none or its bit there is clear. The setter gives StatusWrongState for an empty handle, but has
  /// then made a nested measurement where there was none.
  gom::SharedPointer<CdmaFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  gom::SharedPointer<CdmaNwMeasurement> m_nwMeasurement;
};

}  // namespace trelvo::schema
