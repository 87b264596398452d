#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>

namespace trelvo::schema {

/// An E-UTRA cell as heard on the air.
///
/// A flat record of class id 119 with a one-byte mask, at most 0x1F; otherwise as
/// GeranNwMeasurement. On the wire the order is not that of the bits: frequencyInfo, ucid, tac,
/// rsrp, rsrq.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT EUtraNwMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x01,
    HasTac = 0x02,
    HasRsrp = 0x04,
    HasRsrq = 0x08,
    HasUcid = 0x10,
  };

  /// No field set.
  EUtraNwMeasurement();
  /// A cell of this frequency info; with an empty handle nothing is set.
  explicit EUtraNwMeasurement(const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<EUtraNwMeasurement> create();
  [[nodiscard]] static gom::SharedPointer<EUtraNwMeasurement> create(
      const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<EUtraNwMeasurement> create(
      const gom::SharedPointer<EUtraNwMeasurement>& other);

  void dump() const override;
  [[nodiscard]] EUtraNwMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the frequency info when `mask` names it. Numbers stay.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const EUtraNwMeasurement& other) const;
  bool operator!=(const EUtraNwMeasurement& other) const { return !(*this == other); }

  /// How the cell is told apart on the air; empty when its bit is clear. The setter gives
  /// StatusWrongState for an empty handle, and changes nothing.
  gom::SharedPointer<EUtraFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<EUtraFrequencyInfo>& frequencyInfo);

  /// E-UTRAN cell identity, the composite that EUtraCellDn takes apart.
  unsigned int ucid() const noexcept { return m_ucid; }
  Status setUcid(unsigned int ucid);

  /// Tracking area code (3GPP TS 23.003).
  unsigned short tac() const noexcept { return m_tac; }
  Status setTac(unsigned short tac);

  /// Reference signal received power, RSRP (3GPP TS 36.133): 0 to 97 in steps of 1 dB from below
  /// -140 dBm.
  unsigned char rsrp() const noexcept { return m_rsrp; }
  Status setRsrp(unsigned char rsrp);

  /// Reference signal received quality, RSRQ (3GPP TS 36.133): 0 to 34 in steps of 0.5 dB from
  /// below -19.5 dB.
  unsigned char rsrq() const noexcept { return m_rsrq; }
  Status setRsrq(unsigned char rsrq);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  gom::SharedPointer<EUtraFrequencyInfo> m_frequencyInfo;
  unsigned int m_ucid = 0;
  unsigned short m_tac = 0;
  unsigned char m_rsrp = 0;
  unsigned char m_rsrq = 0;
};

}  // namespace trelvo::schema
