#include "fuzz/WireOutline.h"

#include <trelvo/BufferStream.h>
#include <trelvo/Status.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/ObjectBaseFactory.h>

#include <algorithm>
#include <iterator>

namespace trelvo::fuzz {

namespace {

using gom::Variant;

constexpr unsigned int kMostLevels = 600;
constexpr std::size_t kLongestRecord = 512;
constexpr unsigned int kWidths[] = {0, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 1};

}  // namespace

WireOutline::WireOutline(const Bytes& bytes) : m_bytes(bytes) { object(); }

bool WireOutline::number(unsigned int width, unsigned int& value) {
  if (!has(width)) {
    return false;
  }
  value = 0;
  for (unsigned int i = 0; i < width; ++i) {
    value |= static_cast<unsigned int>(m_bytes[m_place++]) << (8 * i);
  }
  return true;
}

bool WireOutline::skip(std::size_t size) {
  const bool there = has(size);
  m_place += there ? size : 0;
  return there;
}

bool WireOutline::object() {
  unsigned int key = 0;
  return number(2, key) && (key == 0 || list());
}

bool WireOutline::list() {
  const std::size_t count = m_place;
  unsigned int left = 0;
  if (!number(4, left)) {
    return false;
  }
  m_counts.push_back(count);
  bool complete = ++m_level <= kMostLevels;
  for (; complete && left > 0; --left) {
    complete = value(count);
  }
  --m_level;
  return complete;
}

bool WireOutline::text() {
  const std::size_t count = m_place;
  unsigned int length = 0;
  if (!number(4, length)) {
    return false;
  }
  m_counts.push_back(count);
  return skip(length);
}

// The library knows how long its records are.
bool WireOutline::record() try {
  unsigned int classId = 0;
  if (!number(2, classId)) {
    return false;
  }
  const auto record = schema::ObjectBaseFactory::createObject(static_cast<unsigned short>(classId));
  BufferStream stream;
  stream.write(m_bytes.data() + m_place,
               static_cast<unsigned int>(std::min(m_bytes.size() - m_place, kLongestRecord)));
  return record->read(stream) && skip(stream.offset());
} catch (const Status) {
  return false;
}

bool WireOutline::value(std::size_t count) {
  const std::size_t begin = m_place;
  unsigned int tag = 0;
  unsigned int key = 0;
  const bool complete = number(2, tag) && number(2, key) && payload(tag);
  if (complete) {
    m_values.push_back({begin, m_place, count, tag});
  }
  return complete;
}

bool WireOutline::payload(unsigned int tag) {
  switch (tag) {
    case Variant::TypeString:
      return text();
    case Variant::TypeGenericObject:
      return object();
    case Variant::TypeObject:
      return record();
    case Variant::TypeCollection:
      return list();
    default:
      return tag >= std::size(kWidths) || skip(kWidths[tag]);
  }
}

}  // namespace trelvo::fuzz
