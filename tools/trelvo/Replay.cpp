#include "tools/trelvo/Replay.h"

#include <algorithm>

namespace trelvo::tool {
namespace {

void write(const RawContainer& container, FileStream& output, const std::string& name) {
  const auto size = static_cast<unsigned int>(container.bytes.size());
  if (output.write(container.bytes.data(), size) != size || !output.flush()) {
    throwWriteFailure(output, name);
  }
}

}  // namespace

ReplayPace::Time ReplayPace::due(const std::optional<unsigned int>& timeStamp) {
  if (!timeStamp) {
    return m_due;
  }
  if (m_speed > 0.0 && m_last && *timeStamp > *m_last) {
    const double gap = *timeStamp - *m_last;
    m_due += Time(std::min(gap, m_longestGap.value_or(gap)) / m_speed);
  }
  m_last = timeStamp;
  return m_due;
}

void replay(RawContainers& input, ReplayPace pace, ReplayClock& clock, FileStream& output,
            const std::string& name) {
  for (RawContainer container; input.next(container);) {
    if (!clock.waitUntil(pace.due(container.timeStamp))) {
      return;
    }
    write(container, output, name);
    if (clock.isEnded()) {
      return;
    }
  }
}

}  // namespace trelvo::tool
