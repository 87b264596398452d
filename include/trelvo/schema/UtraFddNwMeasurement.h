#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>

namespace trelvo::schema {

/// A UTRA FDD cell as heard on the air.
///
/// A flat record of class id 112 with a one-byte mask, at most 0x7F; otherwise as
/// GeranNwMeasurement. On the wire the order is not that of the bits: frequencyInfo, ucid,
/// uarfcnUl, utraCarrierRssi, ecNo, rscp, pathloss.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT UtraFddNwMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x01,
    HasUarfcnUl = 0x02,
    HasUtraCarrierRssi = 0x04,
    HasUcid = 0x08,
    HasEcNo = 0x10,
    HasRscp = 0x20,
    HasPathloss = 0x40,
  };

  /// No field set.
  UtraFddNwMeasurement();
  /// A cell of this frequency info; with an empty handle nothing is set.
  explicit UtraFddNwMeasurement(const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraFddNwMeasurement> create();
  [[nodiscard]] static gom::SharedPointer<UtraFddNwMeasurement> create(
      const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<UtraFddNwMeasurement> create(
      const gom::SharedPointer<UtraFddNwMeasurement>& other);

  void dump() const override;
  [[nodiscard]] UtraFddNwMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the frequency info when `mask` names it. Numbers stay.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const UtraFddNwMeasurement& other) const;
  bool operator!=(const UtraFddNwMeasurement& other) const { return !(*this == other); }

  /// How the cell is told apart on the air; empty when its bit is clear. The setter gives
  /// StatusWrongState for an empty handle, and changes nothing.
  gom::SharedPointer<UtraFddFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<UtraFddFrequencyInfo>& frequencyInfo);

  /// UTRAN cell identity, the composite that UtraCellDn takes apart.
  unsigned int ucid() const noexcept { return m_ucid; }
  Status setUcid(unsigned int ucid);

  /// Channel number of the uplink, UARFCN (3GPP TS 25.101), 0 to 16383 in use.
  unsigned short uarfcnUl() const noexcept { return m_uarfcnUl; }
  Status setUarfcnUl(unsigned short uarfcnUl);

  /// Received power of the whole carrier, UTRA carrier RSSI (3GPP TS 25.133): 0 to 76 in steps of 1
  /// dB from below -100 dBm.
  unsigned char utraCarrierRssi() const noexcept { return m_utraCarrierRssi; }
  Status setUtraCarrierRssi(unsigned char utraCarrierRssi);

  /// Energy a chip over noise, CPICH Ec/No (3GPP TS 25.133): 0 to 49 in steps of 0.5 dB from below
  /// -24 dB.
  unsigned char ecNo() const noexcept { return m_ecNo; }
  Status setEcNo(unsigned char ecNo);

  /// Received signal code power, CPICH RSCP (3GPP TS 25.133): -5 to 91 in steps of 1 dB from below
  /// -120 dBm.
  signed char rscp() const noexcept { return m_rscp; }
  Status setRscp(signed char rscp);

  /// Path loss in dB (3GPP TS 25.331), 46 to 173 in use.
  unsigned char pathloss() const noexcept { return m_pathloss; }
  Status setPathloss(unsigned char pathloss);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  gom::SharedPointer<UtraFddFrequencyInfo> m_frequencyInfo;
  unsigned int m_ucid = 0;
  unsigned short m_uarfcnUl = 0;
  unsigned char m_utraCarrierRssi = 0;
  unsigned char m_ecNo = 0;
  signed char m_rscp = 0;
  unsigned char m_pathloss = 0;
};

}  // namespace trelvo::schema
