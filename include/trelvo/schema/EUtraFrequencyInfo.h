#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// How an E-UTRA (LTE) cell is told apart on the air.
///
/// A flat record of class id 120 with a one-byte mask, at most 0x03; otherwise as
/// GeranFrequencyInfo.
///
/// Threads: one at a time.
class TRELVO_EXPORT EUtraFrequencyInfo : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasEarfcn = 0x1,
    HasPci = 0x2,
  };

  /// No field set.
  EUtraFrequencyInfo();
  /// All fields set.
  EUtraFrequencyInfo(unsigned short earfcn, unsigned short pci);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<EUtraFrequencyInfo> create();
  [[nodiscard]] static gom::SharedPointer<EUtraFrequencyInfo> create(unsigned short earfcn,
                                                                     unsigned short pci);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<EUtraFrequencyInfo> create(
      const gom::SharedPointer<EUtraFrequencyInfo>& other);

  void dump() const override;
  [[nodiscard]] EUtraFrequencyInfo* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const EUtraFrequencyInfo& other) const;
  bool operator!=(const EUtraFrequencyInfo& other) const { return !(*this == other); }

  /// Channel number of the downlink, EARFCN (3GPP TS 36.101), 0 to 65535.
  unsigned short earfcn() const noexcept { return m_earfcn; }
  Status setEarfcn(unsigned short earfcn);

  /// Physical cell identity (3GPP TS 36.211), 0 to 503 in use.
  unsigned short pci() const noexcept { return m_pci; }
  Status setPci(unsigned short pci);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_earfcn = 0;
  unsigned short m_pci = 0;
};

}  // namespace trelvo::schema
