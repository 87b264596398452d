#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/CdmaFrequencyInfo.h>

namespace trelvo::schema {

/// A CDMA cell as heard on the air. As CdmaFrequencyInfo has no field, it carries no value at all.
///
/// A flat record of class id 127 with a one-byte mask, at most 0x01; otherwise as
/// GeranNwMeasurement.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT CdmaNwMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x1,
  };

  /// No field set.
  CdmaNwMeasurement();
  /// A cell of this frequency info; with an empty handle nothing is set.
  explicit CdmaNwMeasurement(const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CdmaNwMeasurement> create();
  [[nodiscard]] static gom::SharedPointer<CdmaNwMeasurement> create(
      const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<CdmaNwMeasurement> create(
      const gom::SharedPointer<CdmaNwMeasurement>& other);

  void dump() const override;
  [[nodiscard]] CdmaNwMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the frequency info when `mask` names it.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const CdmaNwMeasurement& other) const;
  bool operator!=(const CdmaNwMeasurement& other) const { return !(*this == other); }

  /// How the cell is told apart on the air; empty when its bit is clear. The setter gives
  /// StatusWrongState for an empty handle, and changes nothing.
  gom::SharedPointer<CdmaFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<CdmaFrequencyInfo>& frequencyInfo);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  gom::SharedPointer<CdmaFrequencyInfo> m_frequencyInfo;
};

}  // namespace trelvo::schema
