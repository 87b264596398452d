#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/schema/GeranFrequencyInfo.h>

namespace trelvo::schema {

/// A GERAN cell as heard on the air: a neighbour in a cell measurement, or what the serving cell
/// has in common with one.
///
/// A flat record of class id 110 with a one-byte mask, at most 0x0F. On the wire the frequency info
/// comes first, as its whole own form.
///
/// Setters of numbers accept every value, set the bit and give StatusOk. Values are kept as
/// delivered, and nothing is scaled: units and ranges below are those of the radio standards.
/// Getters of numbers give the stored one, 0 at first, whether its bit is set or not.
///
/// Equal are records with the same bits, equal frequency info and, under each set bit, the same
/// number. Copies share the frequency info, clone() copies it.
///
/// The other radio technologies have the like, with the same rules.
///
/// Threads: one at a time, together with all that hangs from the record.
class TRELVO_EXPORT GeranNwMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasFrequencyInfo = 0x1,
    HasLac = 0x2,
    HasCid = 0x4,
    HasRxLevel = 0x8,
  };

  /// No field set.
  GeranNwMeasurement();
  /// A cell of this frequency info; with an empty handle nothing is set.
  explicit GeranNwMeasurement(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<GeranNwMeasurement> create();
  [[nodiscard]] static gom::SharedPointer<GeranNwMeasurement> create(
      const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<GeranNwMeasurement> create(
      const gom::SharedPointer<GeranNwMeasurement>& other);

  void dump() const override;
  [[nodiscard]] GeranNwMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  /// Clears the bits, and lets go of the frequency info when `mask` names it. Numbers stay.
  void unset(unsigned int mask) override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const GeranNwMeasurement& other) const;
  bool operator!=(const GeranNwMeasurement& other) const { return !(*this == other); }

  /// How the cell is told apart on the air; empty when its bit is clear. The setter gives
  /// StatusWrongState for an empty handle, and changes nothing.
  gom::SharedPointer<GeranFrequencyInfo> frequencyInfo() const;
  Status setFrequencyInfo(const gom::SharedPointer<GeranFrequencyInfo>& frequencyInfo);

  /// Location area code.
  unsigned short lac() const noexcept { return m_lac; }
  Status setLac(unsigned short lac);

  /// Cell identity within the location area.
  unsigned short cid() const noexcept { return m_cid; }
  Status setCid(unsigned short cid);

  /// Received level, RXLEV (3GPP TS 45.008): 0 to 63 in steps of 1 dB from below -110 dBm.
  unsigned char rxLevel() const noexcept { return m_rxLevel; }
  Status setRxLevel(unsigned char rxLevel);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  gom::SharedPointer<GeranFrequencyInfo> m_frequencyInfo;
  unsigned short m_lac = 0;
  unsigned short m_cid = 0;
  unsigned char m_rxLevel = 0;
};

}  // namespace trelvo::schema
