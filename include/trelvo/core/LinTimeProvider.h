#pragma once

#include <trelvo/Export.h>
#include <trelvo/core/ITimeProvider.h>

namespace trelvo::core {

/// The default provider: the system's clocks, and GPS time as far as somebody has told it.
///
/// It knows no GPS epoch and no leap seconds. One pair of a GPS time and the moment it was told
/// relates the two clocks.
class TRELVO_EXPORT LinTimeProvider : public ITimeProvider {
 public:
  /// Not calibrated.
  LinTimeProvider() noexcept = default;
  ~LinTimeProvider() override;

  /// What `time` gives.
  time_t utcTime() override;

  /// What the last calibration was told, plus the milliseconds of timeSinceBoot() since then.
  /// @return 0 while not calibrated; a calibration with 0 or less counts as none.
  long long gpsTime() override;

  /// CLOCK_MONOTONIC in milliseconds, as a signed number of 32 bits: after 2^31 ms, a little under
  /// 25 days, it jumps to -2^31 and climbs again. Take differences in 32 bits.
  /// @return 0 too when the clock cannot be read.
  long long timeSinceBoot() override;

  /// Replaces the calibration.
  void calibrateGpsTime(long long gpsMs) override;

  /// Without effect: on a real clock timers run by themselves.
  void registerTimer(ITimer* timer) override;
  void unregisterTimer(ITimer* timer) override;

 private:
  long long m_gpsCalibration = 0;
  unsigned long long m_bootAtCalibration = 0;
};

}  // namespace trelvo::core
