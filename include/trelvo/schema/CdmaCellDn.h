#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// The identity of a CDMA (cdma2000) cell: system, network, base station.
///
/// A flat record of class id 122 with a one-byte mask, at most 0x07; otherwise as GeranCellDn.
///
/// Threads: one at a time.
class TRELVO_EXPORT CdmaCellDn : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasSid = 0x1,
    HasNid = 0x2,
    HasBsid = 0x4,
  };

  /// No field set.
  CdmaCellDn();
  /// All fields set.
  CdmaCellDn(unsigned short sid, unsigned short nid, unsigned short bsid);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<CdmaCellDn> create();
  [[nodiscard]] static gom::SharedPointer<CdmaCellDn> create(unsigned short sid, unsigned short nid,
                                                             unsigned short bsid);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<CdmaCellDn> create(
      const gom::SharedPointer<CdmaCellDn>& other);

  void dump() const override;
  [[nodiscard]] CdmaCellDn* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const CdmaCellDn& other) const;
  bool operator!=(const CdmaCellDn& other) const { return !(*this == other); }

  /// System identification (3GPP2 C.S0005), 0 to 32767 in use.
  unsigned short sid() const noexcept { return m_sid; }
  Status setSid(unsigned short sid);

  /// Network identification within the system.
  unsigned short nid() const noexcept { return m_nid; }
  Status setNid(unsigned short nid);

  /// Base station identification within the network.
  unsigned short bsid() const noexcept { return m_bsid; }
  Status setBsid(unsigned short bsid);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_sid = 0;
  unsigned short m_nid = 0;
  unsigned short m_bsid = 0;
};

}  // namespace trelvo::schema
