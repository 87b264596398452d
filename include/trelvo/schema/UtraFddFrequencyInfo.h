#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// How a UTRA FDD cell is told apart on the air.
///
/// A flat record of class id 103 with a one-byte mask, at most 0x03; otherwise as
/// GeranFrequencyInfo.
///
/// Threads: one at a time.
class TRELVO_EXPORT UtraFddFrequencyInfo : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasUarfcnDl = 0x1,
    HasPcpich = 0x2,
  };

  /// No field set.
  UtraFddFrequencyInfo();
  /// All fields set.
  UtraFddFrequencyInfo(unsigned short uarfcnDl, unsigned short pcpich);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraFddFrequencyInfo> create();
  [[nodiscard]] static gom::SharedPointer<UtraFddFrequencyInfo> create(unsigned short uarfcnDl,
                                                                       unsigned short pcpich);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<UtraFddFrequencyInfo> create(
      const gom::SharedPointer<UtraFddFrequencyInfo>& other);

  void dump() const override;
  [[nodiscard]] UtraFddFrequencyInfo* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const UtraFddFrequencyInfo& other) const;
  bool operator!=(const UtraFddFrequencyInfo& other) const { return !(*this == other); }

  /// Channel number of the downlink, UARFCN (3GPP TS 25.101), 0 to 16383 in use.
  unsigned short uarfcnDl() const noexcept { return m_uarfcnDl; }
  Status setUarfcnDl(unsigned short uarfcnDl);

  /// Primary scrambling code of the primary common pilot channel (3GPP TS 25.213), 0 to 511 in use.
  unsigned short pcpich() const noexcept { return m_pcpich; }
  Status setPcpich(unsigned short pcpich);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_uarfcnDl = 0;
  unsigned short m_pcpich = 0;
};

}  // namespace trelvo::schema
