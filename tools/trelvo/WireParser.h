#pragma once

#include <trelvo/gom/ObjectBase.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "tools/trelvo/CaptureStream.h"

namespace trelvo::tool {

/// The types of a value on the wire.
enum WireTag : unsigned short {
  TagNone = 0,
  TagInt8 = 1,
  TagUint8 = 2,
  TagInt16 = 3,
  TagUint16 = 4,
  TagInt32 = 5,
  TagUint32 = 6,
  TagInt64 = 7,
  TagUint64 = 8,
  TagFloat = 9,
  TagDouble = 10,
  TagBoolean = 11,
  TagString = 12,
  TagObject = 13,
  TagRecord = 14,
  TagCollection = 15,
};

/// The name of a type, "uint32"; "unknown" for a number that names none.
const char* wireTagName(unsigned short tag);

/// One value of an object or a collection, as its header announces it.
///
/// `bytes` holds the header and, for all but objects and collections, what follows it. It is valid
/// during the call that delivers the item.
struct WireItem {
  std::uint64_t offset = 0;
  unsigned short tag = TagObject;
  unsigned short key = 0;
  const unsigned char* bytes = nullptr;
  std::size_t size = 0;
};

/// Takes what a WireParser finds, in stream order.
class WireHandler {
 public:
  virtual ~WireHandler() = default;

  /// An object begins; the outermost one has no header of its own, only key and count.
  virtual void beginObject(const WireItem& item, unsigned short objectKey, unsigned int count) = 0;
  virtual void endObject() = 0;
  virtual void beginCollection(const WireItem& item, unsigned int count) = 0;
  virtual void endCollection() = 0;

  /// A value of a tag up to 11, or of an unknown tag: `bits` are its payload's, zero-extended.
  virtual void scalar(const WireItem& item, std::uint64_t bits) = 0;
  virtual void string(const WireItem& item, const std::string& bytes) = 0;
  virtual void record(const WireItem& item, const gom::ObjectBase& record) = 0;

  /// Comes when the parsing ends inside an object: nothing that is open will be ended any more.
  virtual void brokenOff() {}

  /// Asked between items: true ends the parsing without a fault.
  virtual bool stopped() const { return false; }
};

/// Why parsing ended, and at which byte: where the offending item begins, or where the input ends.
struct WireFault {
  std::uint64_t offset = 0;
  std::string reason;
};

/// The fault as messages tell it, "stops at byte 42: ..."; empty when there is no reason.
std::string faultText(const WireFault& fault);

/// Walks generic objects in their wire form, one item in memory at a time.
///
/// Reads the same streams as gom::GenericObject::create(): what that refuses, this refuses with a
/// reason; but what stands ahead of the damage has been delivered by then. The only further refusal
/// is an outermost object of key 0, behind which nothing could be told apart. Nesting is limited to
/// 512 levels, and memory to a small multiple of the bytes really there.
/// Threads: one at a time.
class WireParser {
 public:
  /// Reads `source`, whose next byte counts as byte `position`. Both must outlive the parser.
  WireParser(IStream& source, std::uint64_t position, WireHandler& handler)
      : m_input(source, position), m_handler(handler) {}

  /// Reads one object. @return false when the handler stopped or the bytes make no sense.
  bool parseObject();

  /// After a failure: why. The reason is empty when the handler stopped.
  const WireFault& fault() const { return m_fault; }

 private:
  bool object(const WireItem& item);
  bool collection(const WireItem& item);
  bool items(const char* kind, unsigned int count);
  bool item(const char* kind, unsigned int index, unsigned int count);
  bool value(const WireItem& item);
  bool scalar(const WireItem& item);
  bool string(const WireItem& item);
  bool stringBytes(unsigned int length, std::string& bytes);
  bool record(const WireItem& item);
  bool readRecord(unsigned short classId, gom::ObjectBase& record);
  bool refuseRecord(unsigned short classId, std::uint64_t offset);
  bool deeper(const WireItem& item);
  WireItem complete(WireItem item) const;
  bool cutOff(const std::string& what);
  bool fail(std::uint64_t offset, std::string reason);

  CaptureStream m_input;
  WireHandler& m_handler;
  WireFault m_fault;
  unsigned int m_level = 0;
};

}  // namespace trelvo::tool
