#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>

namespace trelvo::schema {

/// A UTRA TDD cell as heard on the air.
///
/// A flat record of class id 135 with a one-byte mask, at most 0x1F; otherwise as
/// GeranNwMeasurement. On the wire the order is not that of the bits: frequencyInfo, ucid,
/// utraCarrierRssi, rscp, pathloss.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT UtraTddNwMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x01,
    HasUtraCarrierRssi = 0x02,
    HasUcid = 0x04,
    HasRscp = 0x08,
    HasPathloss = 0x10,
  };

  /// No field set.
  UtraTddNwMeasurement();
  /// A cell of this frequency info; with an empty handle nothing is set.
  explicit UtraTddNwMeasurement(const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraTddNwMeasurement> create();
  [[nodiscard]] static gom::SharedPointer<UtraTddNwMeasurement> create(
      const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<UtraTddNwMeasurement> create(
      const gom::SharedPointer<UtraTddNwMeasurement>& other);

  void dump() const override;
  [[nodiscard]] UtraTddNwMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the frequency info when `mask` names it. Numbers stay.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const UtraTddNwMeasurement& other) const;
  bool operator!=(const UtraTddNwMeasurement& other) const { return !(*this == other); }

  /// How the cell is told apart on the air; empty when its bit is clear. The setter gives
  /// StatusWrongState for an empty handle, and changes nothing.
  gom::SharedPointer<UtraTddFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<UtraTddFrequencyInfo>& frequencyInfo);

  /// UTRAN cell identity, the composite that UtraCellDn takes apart.
  unsigned int ucid() const noexcept { return m_ucid; }
  Status setUcid(unsigned int ucid);

  /// Received power of the whole carrier, UTRA carrier RSSI (3GPP TS 25.123): 0 to 76 in steps of 1
  /// dB from below -100 dBm.
  unsigned char utraCarrierRssi() const noexcept { return m_utraCarrierRssi; }
  Status setUtraCarrierRssi(unsigned char utraCarrierRssi);

  /// Received signal code power, P-CCPCH RSCP (3GPP TS 25.123): 0 to 91 in steps of 1 dB from below
  /// -115 dBm.
  signed char rscp() const noexcept { return m_rscp; }
  Status setRscp(signed char rscp);

  /// Path loss in dB (3GPP TS 25.331), 46 to 173 in use.
  unsigned char pathloss() const noexcept { return m_pathloss; }
  Status setPathloss(unsigned char pathloss);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  gom::SharedPointer<UtraTddFrequencyInfo> m_frequencyInfo;
  unsigned int m_ucid = 0;
  unsigned char m_utraCarrierRssi = 0;
  signed char m_rscp = 0;
  unsigned char m_pathloss = 0;
};

}  // namespace trelvo::schema
