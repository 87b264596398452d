#include <trelvo/ReadOnlyBuffer.h>

#include <algorithm>
#include <cstring>

#include <trelvo/Buffer.h>

namespace trelvo {

unsigned int ReadOnlyBuffer::read(unsigned char* target, unsigned int count, bool fromStart) {
  if (fromStart) {
    m_readPosition = 0;
  }
  const unsigned int taken = std::min(count, leftForReading());
  if (taken != 0) {
    std::memcpy(target, m_data + m_readPosition, taken);
    m_readPosition += taken;
  }
  return taken;
}

Status ReadOnlyBuffer::setReadPosition(unsigned int position) noexcept {
  if (position >= m_size) {
    return StatusInvalidParameter;
  }
  m_readPosition = position;
  return StatusOk;
}

Buffer ReadOnlyBuffer::clone() const { return extract(0, m_size); }

Buffer ReadOnlyBuffer::extract(unsigned int first, unsigned int last) const {
  const unsigned int end = std::min(last, m_size);
  Buffer bytes;
  if (first < end) {
    bytes.append(m_data + first, end - first);
  }
  return bytes;
}

}  // namespace trelvo
