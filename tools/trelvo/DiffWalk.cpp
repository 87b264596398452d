#include "tools/trelvo/DiffWalk.h"

#include <utility>

namespace trelvo::tool {

void DiffWalk::Side::fill(std::size_t count) {
  while (!m_isEnded && m_ahead.size() < count) {
    Entry entry;
    m_isEnded = !m_input.next(entry.raw);
    if (!m_isEnded) {
      m_ahead.push_back(std::move(entry));
    }
  }
}

DiffCounts DiffWalk::run() {
  m_left.fill(1);
  m_right.fill(1);
  while (!m_left.isEmpty() || !m_right.isEmpty()) {
    step();
    m_left.fill(1);
    m_right.fill(1);
  }
  return m_counts;
}

void DiffWalk::step() {
  if (m_right.isEmpty()) {
    takeLeft();
  } else if (m_left.isEmpty()) {
    takeRight();
  } else if (isSame(m_left[0], m_right[0])) {
    takePair();
  } else {
    closeGap(nextGap());
  }
}

const ContainerFields& DiffWalk::fields(Entry& entry) {
  if (!entry.fields) {
    entry.fields = fieldsOf(entry.raw);
  }
  return *entry.fields;
}

bool DiffWalk::isSame(Entry& left, Entry& right) {
  return left.raw.bytes == right.raw.bytes || (left.raw.timeStamp == right.raw.timeStamp &&
                                               m_comparison.isSame(fields(left), fields(right)));
}

// The smallest gap; one container of each when nothing within the window is the same.
DiffWalk::Gap DiffWalk::nextGap() {
  m_left.fill(kWindow);
  m_right.fill(kWindow);
  for (std::size_t sum = 1; sum < m_left.size() + m_right.size(); ++sum) {
    for (std::size_t left = 0; left <= sum && left < m_left.size(); ++left) {
      const std::size_t right = sum - left;
      if (right < m_right.size() && isSame(m_left[left], m_right[right])) {
        return {left, right};
      }
    }
  }
  return {};
}

// Containers of the same time are the same ones, changed. What one file has more is only there.
void DiffWalk::closeGap(Gap gap) {
  while (gap.left > 0 || gap.right > 0) {
    const bool isPaired =
        gap.left > 0 && gap.right > 0 &&
        (gap.left == gap.right || m_left[0].raw.timeStamp == m_right[0].raw.timeStamp);
    if (isPaired) {
      takePair();
      --gap.left;
      --gap.right;
    } else if (gap.left > gap.right) {
      takeLeft();
      --gap.left;
    } else {
      takeRight();
      --gap.right;
    }
  }
}

void DiffWalk::takePair() {
  const bool sameBytes = m_left[0].raw.bytes == m_right[0].raw.bytes;
  const auto found = sameBytes ? std::vector<FieldDifference>()
                               : m_comparison.differences(fields(m_left[0]), fields(m_right[0]));
  if (found.empty()) {
    ++m_counts.equal;
  } else {
    ++m_counts.different;
    m_listener.different(m_left[0].raw, m_right[0].raw, found);
  }
  m_left.pop();
  m_right.pop();
}

void DiffWalk::takeLeft() {
  ++m_counts.onlyLeft;
  m_listener.onlyLeft(m_left[0].raw);
  m_left.pop();
}

void DiffWalk::takeRight() {
  ++m_counts.onlyRight;
  m_listener.onlyRight(m_right[0].raw);
  m_right.pop();
}

}  // namespace trelvo::tool
