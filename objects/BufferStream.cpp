#include <trelvo/BufferStream.h>

namespace trelvo {

BufferStream::BufferStream() = default;
BufferStream::~BufferStream() = default;

bool BufferStream::good() const { return m_buffer.data() != nullptr; }

bool BufferStream::seekFromStart(unsigned int position) {
  return m_buffer.setReadPosition(position) == StatusOk;
}

bool BufferStream::seekFromEnd(unsigned int distance) {
  return m_buffer.setReadPosition(m_buffer.size() - distance) == StatusOk;
}

unsigned int BufferStream::offset() const { return m_buffer.readPosition(); }

bool BufferStream::eof() const { return m_buffer.leftForReading() == 0; }

bool BufferStream::getSize(unsigned int& size) {
  size = m_buffer.size();
  return true;
}

bool BufferStream::canRead() const { return true; }
bool BufferStream::canSeek() const { return true; }
bool BufferStream::canWrite() const { return true; }

unsigned int BufferStream::read(unsigned char* target, unsigned int count) {
  return m_buffer.read(target, count, false);
}

unsigned int BufferStream::write(const unsigned char* source, unsigned int count) {
  m_buffer.append(source, count);
  return count;
}

bool BufferStream::flush() { return true; }

}  // namespace trelvo
