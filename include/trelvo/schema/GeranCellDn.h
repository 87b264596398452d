#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// The identity of a GERAN (GSM) cell: country, network, location area, cell.
///
/// A flat record of class id 100 with a one-byte mask, at most 0x0F. Setters accept every value,
/// set the bit and give StatusOk; getters give the stored number, 0 at first, whether its bit is
/// set or not. Equal are records with the same bits and, under each set bit, the same number.
///
/// The identities of the other radio technologies keep to the same rules.
///
/// Threads: one at a time.
class TRELVO_EXPORT GeranCellDn : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasMcc = 0x1,
    HasMnc = 0x2,
    HasLac = 0x4,
    HasCid = 0x8,
  };

  /// No field set.
  GeranCellDn();
  /// All fields set.
  GeranCellDn(unsigned short mcc, unsigned short mnc, unsigned short lac, unsigned short cid);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranCellDn> create();
  [[nodiscard]] static gom::SharedPointer<GeranCellDn> create(unsigned short mcc,
                                                              unsigned short mnc,
                                                              unsigned short lac,
                                                              unsigned short cid);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<GeranCellDn> create(
      const gom::SharedPointer<GeranCellDn>& other);

  void dump() const override;
  [[nodiscard]] GeranCellDn* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const GeranCellDn& other) const;
  bool operator!=(const GeranCellDn& other) const { return !(*this == other); }

  /// Mobile country code (ITU-T E.212), 0 to 999 in use.
  unsigned short mcc() const noexcept { return m_mcc; }
  Status setMcc(unsigned short mcc);

  /// Mobile network code, 0 to 999 in use.
  unsigned short mnc() const noexcept { return m_mnc; }
  Status setMnc(unsigned short mnc);

  /// Location area code.
  unsigned short lac() const noexcept { return m_lac; }
  Status setLac(unsigned short lac);

  /// Cell identity within the location area.
  unsigned short cid() const noexcept { return m_cid; }
  Status setCid(unsigned short cid);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_mcc = 0;
  unsigned short m_mnc = 0;
  unsigned short m_lac = 0;
  unsigned short m_cid = 0;
};

}  // namespace trelvo::schema
