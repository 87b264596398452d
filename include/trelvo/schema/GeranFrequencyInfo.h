#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// How a GERAN (GSM) cell is told apart on the air: all that is known of a neighbour whose full
/// identity is not.
///
/// A flat record of class id 102 with a one-byte mask, at most 0x03. Setters accept every value,
/// set the bit and give StatusOk; getters give the stored number, 0 at first, whether its bit is
/// set or not. Equal are records with the same bits and, under each set bit, the same number.
///
/// The other radio technologies have the like, with the same rules.
///
/// Threads: one at a time.
class TRELVO_EXPORT GeranFrequencyInfo : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasBsic = 0x1,
    HasArfcn = 0x2,
  };

  /// No field set.
  GeranFrequencyInfo();
  /// All fields set.
  GeranFrequencyInfo(unsigned char bsic, unsigned short arfcn);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranFrequencyInfo> create();
  [[nodiscard]] static gom::SharedPointer<GeranFrequencyInfo> create(unsigned char bsic,
                                                                     unsigned short arfcn);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<GeranFrequencyInfo> create(
      const gom::SharedPointer<GeranFrequencyInfo>& other);

  void dump() const override;
  [[nodiscard]] GeranFrequencyInfo* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const GeranFrequencyInfo& other) const;
  bool operator!=(const GeranFrequencyInfo& other) const { return !(*this == other); }

  /// Base station identity code (3GPP TS 23.003), 0 to 63 in use.
  unsigned char bsic() const noexcept { return m_bsic; }
  Status setBsic(unsigned char bsic);

  /// Absolute radio frequency channel number (3GPP TS 45.005), 0 to 1023 in use.
  unsigned short arfcn() const noexcept { return m_arfcn; }
  Status setArfcn(unsigned short arfcn);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned char m_bsic = 0;
  unsigned short m_arfcn = 0;
};

}  // namespace trelvo::schema
