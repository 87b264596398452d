#include "tools/trelvo/SealedStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include "tools/trelvo/DescriptorFile.h"
#include "tools/trelvo/Failure.h"

namespace trelvo::tool {

namespace {

constexpr unsigned int kBlockSize = 65536;

}  // namespace

SealedStream::SealedStream(DescriptorStream& file, const std::string& name,
                           ICryptographyUtility& store)
    : m_file(file) {
  if (!file.canSeek()) {
    throw Failure(name + ": cannot be sought, as a sealed file has to be; give a regular file");
  }
  m_crypto = ICryptoFile::open(gom::SharedPointer<core::IFile>(new DescriptorFile(file)), store);
  if (!m_crypto) {
    throw std::bad_alloc();
  }
  if (file.size().value_or(0) > kLargestSealed) {
    m_error = EFBIG;
  }
}

bool SealedStream::seekFromStart(unsigned int position) {
  m_ahead.clear();
  m_taken = 0;
  m_position = position;
  return m_crypto->seekFromStart(position);
}

bool SealedStream::fill() const {
  m_ahead.resize(kBlockSize);
  m_taken = 0;
  m_ahead.resize(m_error == 0 ? m_crypto->read(m_ahead.data(), kBlockSize) : 0);
  return !m_ahead.empty();
}

unsigned int SealedStream::read(unsigned char* target, unsigned int count) {
  unsigned int got = 0;
  while (got < count && !eof()) {
    const std::size_t part = std::min<std::size_t>(count - got, m_ahead.size() - m_taken);
    std::memcpy(target + got, m_ahead.data() + m_taken, part);
    m_taken += part;
    got += static_cast<unsigned int>(part);
  }
  m_position += got;
  return got;
}

unsigned int SealedStream::write(const unsigned char* source, unsigned int count) {
  if (m_error == 0 && count > kLargestSealed - m_position) {
    m_error = EFBIG;
  }
  const unsigned int taken = m_error == 0 ? m_crypto->write(source, count) : 0;
  m_position += taken;
  return taken;
}

}  // namespace trelvo::tool
