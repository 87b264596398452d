#include "tools/trelvo/ImportSource.h"

#include <utility>

namespace trelvo::tool {

namespace {

constexpr unsigned int kBlockSize = 65536;

}  // namespace

ImportSource::ImportSource(IStream& stream, std::string name)
    : m_stream(stream), m_name(std::move(name)), m_block(kBlockSize) {}

bool ImportSource::fill() {
  m_position = 0;
  m_filled = m_stream.read(m_block.data(), kBlockSize);
  return m_filled > 0;
}

int ImportSource::next() {
  const int byte = peek();
  if (byte == kEnd) {
    return kEnd;
  }
  ++m_position;
  ++m_offset;
  if (byte == '\n') {
    ++m_line;
  }
  return byte;
}

std::string_view ImportSource::start() {
  peek();
  return {reinterpret_cast<const char*>(m_block.data()) + m_position, m_filled - m_position};
}

}  // namespace trelvo::tool
