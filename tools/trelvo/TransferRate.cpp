#include "tools/trelvo/TransferRate.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace trelvo::tool {
namespace {

constexpr std::chrono::seconds kWindow(5);
constexpr double kLongestSeconds = 359999;  // 99:59:59

std::string rateText(double bytesPerSecond) {
  char text[32];
  if (bytesPerSecond < 1e6) {
    std::snprintf(text, sizeof text, "%.0f kB/s", bytesPerSecond / 1e3);
  } else {
    std::snprintf(text, sizeof text, "%.1f MB/s", bytesPerSecond / 1e6);
  }
  return text;
}

std::string clockText(double seconds) {
  const int whole = static_cast<int>(std::ceil(std::min(seconds, kLongestSeconds)));
  char text[32];
  if (whole < 3600) {
    std::snprintf(text, sizeof text, "%d:%02d", whole / 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
  }
  return text;
}

}  // namespace

void TransferRate::add(Time now, std::uint64_t bytes) {
  m_samples.push_back({now, bytes});
  while (m_samples.size() > 2 && now - m_samples.front().time > kWindow) {
    m_samples.pop_front();
  }
}

double TransferRate::bytesPerSecond() const {
  if (m_samples.size() < 2 || m_samples.back().bytes <= m_samples.front().bytes) {
    return 0;
  }
  const std::chrono::duration<double> passed = m_samples.back().time - m_samples.front().time;
  const auto came = static_cast<double>(m_samples.back().bytes - m_samples.front().bytes);
  return passed.count() > 0 ? came / passed.count() : 0;
}

std::string TransferRate::text(std::optional<std::uint64_t> total) const {
  return rateText(bytesPerSecond()) + (total ? "  " + remainingText(*total) : "");
}

std::string TransferRate::remainingText(std::uint64_t total) const {
  const std::uint64_t come = m_samples.empty() ? 0 : m_samples.back().bytes;
  const double rate = bytesPerSecond();
  if (come < total && rate == 0) {
    return "stalled";
  }
  const double rest = come < total ? static_cast<double>(total - come) : 0;
  return clockText(rest == 0 ? 0 : rest / rate) + " left";
}

}  // namespace trelvo::tool
