#include <trelvo/core/LinTimeProvider.h>

#include <cstdint>

namespace trelvo::core {

LinTimeProvider::~LinTimeProvider() = default;

time_t LinTimeProvider::utcTime() { return time(nullptr); }

long long LinTimeProvider::gpsTime() {
  if (m_gpsCalibration < 1) {
    return 0;
  }
  // Unsigned, because the sum may wrap.
  const auto now = static_cast<unsigned long long>(timeSinceBoot());
  const auto calibration = static_cast<unsigned long long>(m_gpsCalibration);
  return static_cast<long long>(now + calibration - m_bootAtCalibration);
}

long long LinTimeProvider::timeSinceBoot() {
  timespec time = {};
  if (clock_gettime(CLOCK_MONOTONIC, &time) != 0) {
    return 0;
  }
  const std::uint32_t ms = 1000 * static_cast<std::uint32_t>(time.tv_sec) +
                           static_cast<std::uint32_t>(time.tv_nsec / 1000000);
  return static_cast<std::int32_t>(ms);
}

void LinTimeProvider::calibrateGpsTime(long long gpsMs) {
  const long long now = timeSinceBoot();
  m_gpsCalibration = gpsMs;
  m_bootAtCalibration = static_cast<unsigned long long>(now);
}

void LinTimeProvider::registerTimer(ITimer* /*timer*/) {}

void LinTimeProvider::unregisterTimer(ITimer* /*timer*/) {}

}  // namespace trelvo::core
