#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// The identity of a UTRA (UMTS) cell, for FDD and TDD alike: country, network, cell.
///
/// A flat record of class id 101 with a one-byte mask, at most 0x07; otherwise as GeranCellDn. The
/// cell number is a composite:
///
///   bits 28 to 31   kept when stored, ignored when split
///   bits 16 to 27   RNC identity
///   bits 0 to 15    cell identity within the RNC
///
/// Threads: one at a time.
class TRELVO_EXPORT UtraCellDn : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasMcc = 0x1,
    HasMnc = 0x2,
    HasUcid = 0x4,
  };

  /// No field set.
  UtraCellDn();
  /// All fields set.
  UtraCellDn(unsigned short mcc, unsigned short mnc, unsigned int ucid);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<UtraCellDn> create();
  [[nodiscard]] static gom::SharedPointer<UtraCellDn> create(unsigned short mcc, unsigned short mnc,
                                                             unsigned int ucid);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<UtraCellDn> create(
      const gom::SharedPointer<UtraCellDn>& other);

  void dump() const override;
  [[nodiscard]] UtraCellDn* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const UtraCellDn& other) const;
  bool operator!=(const UtraCellDn& other) const { return !(*this == other); }

  /// Mobile country code (ITU-T E.212), 0 to 999 in use.
  unsigned short mcc() const noexcept { return m_mcc; }
  Status setMcc(unsigned short mcc);

  /// Mobile network code, 0 to 999 in use.
  unsigned short mnc() const noexcept { return m_mnc; }
  Status setMnc(unsigned short mnc);

  /// UTRAN cell identity (3GPP TS 25.331), the composite above.
  unsigned int ucid() const noexcept { return m_ucid; }
  Status setUcid(unsigned int ucid);

  /// The RNC's part of the stored ucid, 0 to 0xFFF, whether its bit is set or not.
  unsigned short rncId() const noexcept;
  /// The cell's part of the stored ucid, whether its bit is set or not.
  unsigned short cid() const noexcept;

  /// Takes a ucid apart.
  static void splitUcid(unsigned int ucid, unsigned short& rncId, unsigned short& cid) noexcept;

  /// Puts a ucid together. Nothing is masked: an `rncId` above 0xFFF reaches the bits from 28 up,
  /// and the next split shortens it silently.
  static unsigned int mergeUcid(unsigned short rncId, unsigned short cid) noexcept;

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_mcc = 0;
  unsigned short m_mnc = 0;
  unsigned int m_ucid = 0;
};

}  // namespace trelvo::schema
