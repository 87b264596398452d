#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// The identity of a WLAN access point: its BSSID (IEEE 802.11) in 6 bytes, the MAC-48 address, or
/// in 8, the EUI-64 form of it.
///
/// A flat record of class id 128 with a one-byte mask, at most 0x01. On the wire the BSSID is a
/// length byte and that many bytes, most significant first.
///
/// Equal are two records without a BSSID, and two with the same length and bytes. An address set in
/// 6 bytes and the same one set in its 64-bit form differ, although bssid() reads the same for
/// both.
///
/// Threads: one at a time.
class TRELVO_EXPORT WlanDn : public gom::ObjectBase {
 public:
  enum : unsigned int { HasBssid = 0x1 };

  /// No BSSID.
  WlanDn();
  /// As setBssid(unsigned long long).
  explicit WlanDn(unsigned long long bssid);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<WlanDn> create();
  [[nodiscard]] static gom::SharedPointer<WlanDn> create(unsigned long long bssid);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<WlanDn> create(const gom::SharedPointer<WlanDn>& other);

  /// As dumpShort().
  void dump() const override;
  /// Forms the text of the BSSID, "00:11:22:33:44:55", and drops it: there is nowhere to print it.
  void dumpShort() const;
  [[nodiscard]] WlanDn* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears bits. A mask of exactly 1 empties the BSSID too; any other mask keeps its bytes.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  /// A length other than 6 and 8 gives false.
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const WlanDn& other) const;
  bool operator!=(const WlanDn& other) const { return !(*this == other); }

  /// The BSSID as a number, first byte topmost; 0 while unset. Six bytes are filled up in the
  /// middle with two of 0xFF: 00:11:22:33:44:55 reads as 0x001122FFFF334455.
  unsigned long long bssid() const noexcept;

  /// The stored bytes, first byte most significant, and their number; null and 0 while unset. They
  /// belong to this record and change with it.
  const unsigned char* getBssid(unsigned int& length) const noexcept;

  /// Stores all 8 bytes of `bssid`.
  /// @return StatusOk.
  Status setBssid(unsigned long long bssid);

  /// Stores a copy of `length` bytes.
  /// @return StatusOk; StatusInvalidParameter for a length other than 6 and 8, or null `bytes`.
  Status setBssid(const unsigned char* bytes, unsigned int length);

 private:
  template <class Record>
  friend struct gom::RecordAccess;

  static constexpr unsigned int kMacLength = 6;
  static constexpr unsigned int kLongLength = 8;
  static constexpr bool isLength(unsigned int length) {
    return length == kMacLength || length == kLongLength;
  }

  unsigned char m_bssid[kLongLength] = {};
  unsigned int m_bssidLength = 0;
};

}  // namespace trelvo::schema
