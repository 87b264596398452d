#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>

namespace trelvo::schema {

/// What is measured of a UTRA FDD serving cell: what only the serving cell has, and a nested
/// measurement with what it shares with its neighbours.
///
/// A flat record of class id 111 with a one-byte mask, at most 0x87; otherwise as
/// GeranServingCellMeasurement. On the wire stand nwMeasurement, lac, each when its bit is set.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT UtraFddServingCellMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasLac = 0x01,
    HasFrequencyInfo = 0x02,  ///< answered by the nested measurement
    HasUarfcnUl = 0x04,       ///< answered by the nested measurement
    HasNwMeasurement = 0x80,
  };

  /// No field set.
  UtraFddServingCellMeasurement();

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraFddServingCellMeasurement> create();
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<UtraFddServingCellMeasurement> create(
      const gom::SharedPointer<UtraFddServingCellMeasurement>& other);

  void dump() const override;
  [[nodiscard]] UtraFddServingCellMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Whether all bits of `mask` are set, here or in the nested measurement. False for a mask of 0.
  bool valueExists(unsigned int mask) const override;
  /// Clears the bits, here and in the nested measurement; then lets go of the nested measurement
  /// when `mask` names it. Numbers stay.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const UtraFddServingCellMeasurement& other) const;
  bool operator!=(const UtraFddServingCellMeasurement& other) const { return !(*this == other); }

  /// Location area code.
  unsigned short lac() const noexcept { return m_lac; }
  Status setLac(unsigned short lac);

  /// The nested measurement; empty when its bit is clear. The setter gives StatusWrongState for an
  /// empty handle, and changes nothing.
  gom::SharedPointer<UtraFddNwMeasurement> nwMeasurement() const;
  Status setNwMeasurement(const gom::SharedPointer<UtraFddNwMeasurement>& nwMeasurement);

  /// The uplink's channel number, kept in the nested measurement; 0 when there is none. See
  /// UtraFddNwMeasurement::uarfcnUl().
  /// The setter gives StatusWrongState when there is no memory for a nested measurement.
  unsigned short uarfcnUl() const;
  Status setUarfcnUl(unsigned short uarfcnUl);

  /// How the cell is told apart on the air, kept in the nested measurement; empty when there is
  /// none or its bit there is clear. The setter gives StatusWrongState for an empty handle, but has
  /// then made a nested measurement where there was none.
  gom::SharedPointer<UtraFddFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_lac = 0;
  gom::SharedPointer<UtraFddNwMeasurement> m_nwMeasurement;
};

}  // namespace trelvo::schema
