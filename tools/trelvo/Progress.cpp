#include "tools/trelvo/Progress.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

namespace trelvo::tool {
namespace {

constexpr std::chrono::milliseconds kFirst(500);
constexpr std::chrono::milliseconds kEach(200);
constexpr std::size_t kBarWidth = 24;

std::string megabytes(std::uint64_t bytes) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f MB", static_cast<double>(bytes) / 1e6);
  return text;
}

std::string bar(std::uint64_t bytes, std::uint64_t total) {
  const double share = static_cast<double>(std::min(bytes, total)) / static_cast<double>(total);
  const auto full = static_cast<std::size_t>(share * kBarWidth);
  char percent[16];
  std::snprintf(percent, sizeof percent, "] %3d %%  ", static_cast<int>(share * 100));
  return "[" + std::string(full, '#') + std::string(kBarWidth - full, '.') + percent;
}

}  // namespace

Progress::Progress(std::ostream& terminal, bool shown, std::optional<std::uint64_t> total,
                   Clock clock)
    : m_terminal(terminal),
      m_shown(shown),
      m_total(total),
      m_clock(std::move(clock)),
      m_next(m_clock() + kFirst) {}

Progress::~Progress() { clear(); }

void Progress::update(std::uint64_t bytes) {
  if (!m_shown) {
    return;
  }
  const auto now = m_clock();
  if (m_rateShown) {
    m_rate.add(now, bytes);
  }
  if (now >= m_next) {
    m_next = now + kEach;
    draw(bytes);
  }
}

void Progress::draw(std::uint64_t bytes) {
  m_terminal << "\r\033[K";
  if (m_total && *m_total > 0) {
    m_terminal << bar(bytes, *m_total) << megabytes(bytes) << " of " << megabytes(*m_total);
  } else {
    m_terminal << megabytes(bytes);
  }
  if (m_rateShown) {
    m_terminal << "  " << m_rate.text(m_total);
  }
  m_terminal << std::flush;
  m_drawn = true;
}

void Progress::clear() {
  if (m_drawn) {
    m_terminal << "\r\033[K" << std::flush;
    m_drawn = false;
  }
}

}  // namespace trelvo::tool
