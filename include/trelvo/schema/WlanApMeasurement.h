#pragma once

#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/ObjectBase.h>
#include <trelvo/gom/SharedPointer.h>

namespace trelvo::schema {

/// What was heard from a WLAN access point: levels, distance, band, and its own position.
///
/// A flat record of class id 129 with a four-byte mask. Setters accept every value, set the bit and
/// give StatusOk; getters give the stored number whether its bit is set or not, 0 when it was never
/// set. Equal are records with the same bits and, under each set bit, the same number.
///
/// On the wire rssi, although its bit is the highest, stands before distance.
///
/// Threads: one at a time.
class TRELVO_EXPORT WlanApMeasurement : public gom::ObjectBase {
 public:
  enum : unsigned int {
    HasSsid = 0x001,
    HasRxLevel = 0x002,
    HasTxLevel = 0x004,
    HasDistance = 0x008,
    HasDistanceUncertainty = 0x010,
    HasBand = 0x020,
    HasApLatitude = 0x040,
    HasApLongitude = 0x080,
    HasRssi = 0x100,
  };

  /// No field set.
  WlanApMeasurement();

  /// A new record; an empty handle when memory runs out.
  [[nodiscard]] static gom::SharedPointer<WlanApMeasurement> create();
  /// A copy of `*other`; an empty handle for an empty one.
  [[nodiscard]] static gom::SharedPointer<WlanApMeasurement> create(
      const gom::SharedPointer<WlanApMeasurement>& other);

  void dump() const override;
  [[nodiscard]] WlanApMeasurement* clone() const override;
  bool compare(const gom::ObjectBase* other) const override;
  [[nodiscard]] bool write(IStream& stream) const override;
  [[nodiscard]] bool read(IStream& stream) override;

  bool operator==(const WlanApMeasurement& other) const;
  bool operator!=(const WlanApMeasurement& other) const { return !(*this == other); }

  /// A number that stands for the network's name. What it means is the application's.
  unsigned short ssid() const noexcept { return m_ssid; }
  Status setSsid(unsigned short ssid);

  /// The level at which the access point was heard. dBm, -128 to 127.
  signed char rxLevel() const noexcept { return m_rxLevel; }
  Status setRxLevel(signed char rxLevel);

  /// The level at which the access point sends. dBm, -128 to 127.
  signed char txLevel() const noexcept { return m_txLevel; }
  Status setTxLevel(signed char txLevel);

  /// Received signal strength indicator (IEEE 802.11): a number of the receiver's own scale, the
  /// higher the stronger.
  unsigned char rssi() const noexcept { return m_rssi; }
  Status setRssi(unsigned char rssi);

  /// Metres to the access point.
  unsigned char distance() const noexcept { return m_distance; }
  Status setDistance(unsigned char distance);

  /// Metres.
  unsigned char distanceUncertainty() const noexcept { return m_distanceUncertainty; }
  Status setDistanceUncertainty(unsigned char distanceUncertainty);

  /// The radio band. What the numbers mean is the application's.
  unsigned char band() const noexcept { return m_band; }
  Status setBand(unsigned char band);

  /// The access point's own latitude as a fixed-point code; see Utility::latitude().
  int apLatitude() const noexcept { return m_apLatitude; }
  Status setApLatitude(int apLatitude);

  /// The access point's own longitude as a fixed-point code; see Utility::longitude().
  int apLongitude() const noexcept { return m_apLongitude; }
  Status setApLongitude(int apLongitude);

 private:
  template <class Record>
  friend struct gom::RecordAccess;
  struct Fields;

  unsigned short m_ssid = 0;
  signed char m_rxLevel = 0;
  signed char m_txLevel = 0;
  unsigned char m_rssi = 0;
  unsigned char m_distance = 0;
  unsigned char m_distanceUncertainty = 0;
  unsigned char m_band = 0;
  int m_apLatitude = 0;
  int m_apLongitude = 0;
};

}  // namespace trelvo::schema
