#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// How a UTRA TDD cell is told apart on the air.
///
/// A flat record of class id 131 with a one-byte mask, at most 0x03; otherwise as
/// GeranFrequencyInfo.
///
/// Threads: one at a time.
class TRELVO_EXPORT UtraTddFrequencyInfo : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasUarfcn = 0x1,
    HasCellParam = 0x2,
  };

  /// No field set.
  UtraTddFrequencyInfo();
  /// All fields set.
  UtraTddFrequencyInfo(unsigned short uarfcn, unsigned char cellParam);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraTddFrequencyInfo> create();
  [[nodiscard]] static gom::SharedPointer<UtraTddFrequencyInfo> create(unsigned short uarfcn,
                                                                       unsigned char cellParam);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<UtraTddFrequencyInfo> create(
      const gom::SharedPointer<UtraTddFrequencyInfo>& other);

  void dump() const override;
  [[nodiscard]] UtraTddFrequencyInfo* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const UtraTddFrequencyInfo& other) const;
  bool operator!=(const UtraTddFrequencyInfo& other) const { return !(*this == other); }

  /// Channel number, UARFCN (3GPP TS 25.102), 0 to 16383 in use.
  unsigned short uarfcn() const noexcept { return m_uarfcn; }
  Status setUarfcn(unsigned short uarfcn);

  /// Cell parameter identity (3GPP TS 25.223), 0 to 127 in use.
  unsigned char cellParam() const noexcept { return m_cellParam; }
  Status setCellParam(unsigned char cellParam);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_uarfcn = 0;
  unsigned char m_cellParam = 0;
};

}  // namespace trelvo::schema
