#include "tools/trelvo/CaptureStream.h"

namespace trelvo::tool {

unsigned int CaptureStream::read(unsigned char* target, unsigned int count) {
  const unsigned int got = m_source.read(target, count);
  m_bytes.insert(m_bytes.end(), target, target + got);
  m_position += got;
  m_ranShort = m_ranShort || got < count;
  return got;
}

}  // namespace trelvo::tool
