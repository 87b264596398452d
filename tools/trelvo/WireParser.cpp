#include "tools/trelvo/WireParser.h"

#include <trelvo/Status.h>
#include <trelvo/schema/ObjectBaseFactory.h>

#include <algorithm>
#include <utility>

#include "tools/trelvo/ShowRecords.h"

namespace trelvo::tool {
namespace {

constexpr unsigned int kDeepest = 512;
constexpr std::size_t kRecordHeader = 6;

struct TagInfo {
  const char* name;
  unsigned int width;  // of a scalar's payload
};

constexpr TagInfo kTags[] = {
    {"none", 0},   {"int8", 1},   {"uint8", 1},  {"int16", 2},      {"uint16", 2}, {"int32", 4},
    {"uint32", 4}, {"int64", 8},  {"uint64", 8}, {"float", 4},      {"double", 8}, {"boolean", 1},
    {"string", 0}, {"object", 0}, {"record", 0}, {"collection", 0},
};
constexpr TagInfo kUnknownTag = {"unknown", 0};

const TagInfo& tagInfo(unsigned short tag) {
  return tag <= TagCollection ? kTags[tag] : kUnknownTag;
}

std::string classText(unsigned short classId) {
  return recordClassName(classId) + std::string(" (class ") + std::to_string(classId) + ")";
}

}  // namespace

const char* wireTagName(unsigned short tag) { return tagInfo(tag).name; }

std::string faultText(const WireFault& fault) {
  return fault.reason.empty()
             ? ""
             : "stops at byte " + std::to_string(fault.offset) + ": " + fault.reason;
}

bool WireParser::parseObject() {
  m_level = 0;
  m_input.restart();
  WireItem root;
  root.offset = m_input.position();
  const bool whole = object(root);
  if (!whole) {
    m_handler.brokenOff();
  }
  return whole;
}

bool WireParser::object(const WireItem& item) {
  unsigned short key = 0;
  unsigned int count = 0;
  if (!deeper(item)) {
    return false;
  }
  if (!m_input.readUint16(key)) {
    return cutOff("an object key");
  }
  if (key == 0 && m_level == 1) {
    return fail(item.offset, "no object begins here (object key 0)");
  }
  // Readers stop at key 0: it has no count.
  if (key != 0 && !m_input.readUint32(count)) {
    return cutOff("the property count of object " + std::to_string(key));
  }
  m_handler.beginObject(complete(item), key, count);
  if (!items("property", count)) {
    return false;
  }
  m_handler.endObject();
  --m_level;
  return true;
}

bool WireParser::collection(const WireItem& item) {
  unsigned int count = 0;
  if (!deeper(item)) {
    return false;
  }
  if (!m_input.readUint32(count)) {
    return cutOff("an element count");
  }
  m_handler.beginCollection(complete(item), count);
  if (!items("element", count)) {
    return false;
  }
  m_handler.endCollection();
  --m_level;
  return true;
}

bool WireParser::items(const char* kind, unsigned int count) {
  for (unsigned int i = 0; i < count; ++i) {
    if (m_handler.stopped() || !item(kind, i, count)) {
      return false;
    }
  }
  return true;
}

bool WireParser::item(const char* kind, unsigned int index, unsigned int count) {
  m_input.restart();
  WireItem item;
  item.offset = m_input.position();
  if (!m_input.readUint16(item.tag) || !m_input.readUint16(item.key)) {
    return cutOff(std::string(kind) + " " + std::to_string(index + std::uint64_t{1}) + " of " +
                  std::to_string(count));
  }
  return value(item);
}

bool WireParser::value(const WireItem& item) {
  switch (item.tag) {
    case TagString:
      return string(item);
    case TagObject:
      return object(item);
    case TagRecord:
      return record(item);
    case TagCollection:
      return collection(item);
    default:
      return scalar(item);
  }
}

bool WireParser::scalar(const WireItem& item) {
  const TagInfo& info = tagInfo(item.tag);
  unsigned char payload[8] = {};
  if (m_input.read(payload, info.width) != info.width) {
    return cutOff(std::string("a value of type ") + info.name);
  }
  std::uint64_t bits = 0;
  for (unsigned int i = 0; i < info.width; ++i) {
    bits |= static_cast<std::uint64_t>(payload[i]) << (8 * i);
  }
  m_handler.scalar(complete(item), bits);
  return true;
}

bool WireParser::string(const WireItem& item) {
  unsigned int length = 0;
  if (!m_input.readUint32(length)) {
    return cutOff("the length of a string");
  }
  std::string bytes;
  if (!stringBytes(length, bytes)) {
    return cutOff("a string of " + std::to_string(length) + " bytes");
  }
  m_handler.string(complete(item), bytes);
  return true;
}

// In pieces: the announced length may be anything, the input may hold little.
bool WireParser::stringBytes(unsigned int length, std::string& bytes) {
  unsigned char chunk[4096];
  while (bytes.size() < length) {
    const auto want =
        static_cast<unsigned int>(std::min<std::size_t>(sizeof chunk, length - bytes.size()));
    const unsigned int got = m_input.read(chunk, want);
    bytes.append(chunk, chunk + got);
    if (got != want) {
      return false;
    }
  }
  return true;
}

bool WireParser::record(const WireItem& item) {
  unsigned short classId = 0;
  if (!m_input.readUint16(classId)) {
    return cutOff("a class id");
  }
  gom::SharedPointer<gom::ObjectBase> record;
  try {
    record = schema::ObjectBaseFactory::createObject(classId);
  } catch (Status) {
    return fail(item.offset + 4, "unknown class id " + std::to_string(classId) +
                                     ": records have 100 to 135, and their length is not told");
  }
  if (!record) {
    return fail(item.offset, "out of memory");
  }
  if (!readRecord(classId, *record)) {
    return false;
  }
  m_handler.record(complete(item), *record);
  return true;
}

bool WireParser::readRecord(unsigned short classId, gom::ObjectBase& record) {
  const std::uint64_t offset = m_input.position();
  try {
    return record.read(m_input) || refuseRecord(classId, offset);
  } catch (Status) {
    return fail(offset, classText(classId) + " has no wire form");
  }
}

bool WireParser::refuseRecord(unsigned short classId, std::uint64_t offset) {
  if (m_input.ranShort()) {
    return cutOff(classText(classId));
  }
  const std::vector<unsigned char>& bytes = m_input.bytes();
  if (bytes.size() > kRecordHeader && bytes[kRecordHeader] != 1) {
    return fail(offset, classText(classId) + " has version " +
                            std::to_string(bytes[kRecordHeader]) + ", only 1 is known");
  }
  return fail(offset, classText(classId) +
                          " has a presence mask, length or inner version that "
                          "its class does not allow");
}

bool WireParser::deeper(const WireItem& item) {
  return ++m_level <= kDeepest ||
         fail(item.offset, "more than " + std::to_string(kDeepest) + " nested levels");
}

WireItem WireParser::complete(WireItem item) const {
  item.bytes = m_input.bytes().data();
  item.size = m_input.bytes().size();
  return item;
}

bool WireParser::cutOff(const std::string& what) {
  return fail(m_input.position(), "the input ends inside " + what);
}

bool WireParser::fail(std::uint64_t offset, std::string reason) {
  m_fault = {offset, std::move(reason)};
  return false;
}

}  // namespace trelvo::tool
