#include "tools/trelvo/WireParser.h"

#include <gtest/gtest.h>
#include <trelvo/BufferStream.h>
#include <trelvo/Status.h>
#include <trelvo/gom/GenericObject.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "tests/tools/ToolFixture.h"

namespace trelvo::tool {
namespace {

/// Notes what it is told, a word for each event.
class Listener : public WireHandler {
 public:
  void beginObject(const WireItem& item, unsigned short key, unsigned int count) override {
    note(item, "object " + std::to_string(key) + " " + std::to_string(count));
  }
  void endObject() override { notes.emplace_back("end"); }
  void beginCollection(const WireItem& item, unsigned int count) override {
    note(item, "collection " + std::to_string(count));
  }
  void endCollection() override { notes.emplace_back("end"); }
  void scalar(const WireItem& item, std::uint64_t bits) override {
    note(item, std::string(wireTagName(item.tag)) + " " + std::to_string(bits));
  }
  void string(const WireItem& item, const std::string& bytes) override {
    note(item, "string " + bytes);
  }
  void record(const WireItem& item, const gom::ObjectBase& record) override {
    note(item, "record " + std::to_string(record.key()));
  }
  void brokenOff() override { notes.emplace_back("broken"); }
  bool stopped() const override { return notes.size() >= stopAfter; }

  std::vector<std::string> notes;
  std::size_t stopAfter = static_cast<std::size_t>(-1);

 private:
  void note(const WireItem& item, const std::string& text) {
    notes.push_back(std::to_string(item.offset) + "+" + std::to_string(item.size) + " key " +
                    std::to_string(item.key) + " " + text);
  }
};

void fill(BufferStream& stream, const Bytes& bytes) {
  ASSERT_EQ(stream.write(bytes.data(), static_cast<unsigned int>(bytes.size())), bytes.size());
}

struct Parsed {
  bool whole = true;
  WireFault fault;
  unsigned int objects = 0;
};

Parsed parseAll(const Bytes& bytes, WireHandler& handler) {
  BufferStream stream;
  fill(stream, bytes);
  WireParser parser(stream, 0, handler);
  Parsed parsed;
  while (parsed.whole && !stream.eof()) {
    parsed.whole = parser.parseObject();
    parsed.objects += parsed.whole ? 1 : 0;
  }
  parsed.fault = parser.fault();
  return parsed;
}

Parsed parseAll(const Bytes& bytes) {
  Listener listener;
  return parseAll(bytes, listener);
}

/// Reads the same bytes by the library.
Parsed readAll(const Bytes& bytes) {
  BufferStream stream;
  fill(stream, bytes);
  Parsed parsed;
  try {
    while (parsed.whole && !stream.eof()) {
      const auto object = gom::GenericObject::create(stream);
      parsed.whole = object && object->key() != 0;
      parsed.objects += parsed.whole ? 1 : 0;
    }
  } catch (Status) {
    parsed.whole = false;
  }
  return parsed;
}

void expectFault(const Bytes& bytes, std::uint64_t offset, const std::string& reason) {
  const Parsed parsed = parseAll(bytes);
  EXPECT_FALSE(parsed.whole);
  EXPECT_EQ(parsed.fault.offset, offset);
  EXPECT_EQ(parsed.fault.reason, reason);
}

const char* const kWholeVectors[] = {
    "pub_container_seven_kinds_forward",
    "pub_injection_eight_kinds_forward",
    "pub_container_small",
};

TEST(WireParser, DeliversItemsInOrderWithTheirOffsetsAndSizes) {
  const Bytes bytes = Wire()
                          .object(7, 5)
                          .value(TagUint32, 10)
                          .u32(0x01020304)
                          .value(TagString, 11)
                          .u32(3)
                          .text("abc")
                          .value(TagObject, 12)
                          .object(8, 0)
                          .value(TagRecord, 13)
                          .u16(100)
                          .u8(1)
                          .u8(4)
                          .u16(5)
                          .value(TagCollection, 14)
                          .u32(1)
                          .value(TagNone, 0);
  Listener listener;
  const Parsed parsed = parseAll(bytes, listener);
  EXPECT_TRUE(parsed.whole) << parsed.fault.reason;
  EXPECT_EQ(listener.notes, (std::vector<std::string>{
                                "0+6 key 0 object 7 5",
                                "6+8 key 10 uint32 16909060",
                                "14+11 key 11 string abc",
                                "25+10 key 12 object 8 0",
                                "end",
                                "35+10 key 13 record 100",
                                "45+8 key 14 collection 1",
                                "53+4 key 0 none 0",
                                "end",
                                "end",
                            }));
}

TEST(WireParser, ScalarsHaveTheWidthsOfTheirTags) {
  const unsigned int widths[] = {0, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 1};
  for (unsigned int tag = 0; tag <= TagBoolean; ++tag) {
    Wire wire;
    wire.object(1, 1).value(tag, 2);
    for (unsigned int i = 0; i < widths[tag]; ++i) {
      wire.u8(i + 1);
    }
    EXPECT_TRUE(parseAll(wire).whole) << tag;
    EXPECT_EQ(parseAll(wire).objects, 1u) << tag;
  }
}

TEST(WireParser, AnUnknownTagHasNoPayload) {
  Listener listener;
  EXPECT_TRUE(parseAll(Wire().object(1, 2).value(16, 3).value(0xFFFF, 4), listener).whole);
  EXPECT_EQ(listener.notes[1], "6+4 key 3 unknown 0");
  EXPECT_EQ(listener.notes[2], "10+4 key 4 unknown 0");
}

TEST(WireParser, AnInnerObjectOfKey0IsTwoBytes) {
  Listener listener;
  EXPECT_TRUE(
      parseAll(Wire().object(1, 2).value(TagObject, 3).u16(0).value(TagNone, 4), listener).whole);
  EXPECT_EQ(listener.notes[1], "6+6 key 3 object 0 0");
  EXPECT_EQ(listener.notes[3], "12+4 key 4 none 0");
}

TEST(WireParser, AnOutermostObjectOfKey0IsRefused) {
  expectFault(Wire().object(0, 0), 0, "no object begins here (object key 0)");
  expectFault(Wire().object(1, 0).object(0, 0), 6, "no object begins here (object key 0)");
}

TEST(WireParser, TellsWhereTheInputEnds) {
  expectFault(Wire().u8(1), 1, "the input ends inside an object key");
  expectFault(Wire().u16(9).u8(1), 3, "the input ends inside the property count of object 9");
  expectFault(Wire().object(1, 3), 6, "the input ends inside property 1 of 3");
  expectFault(Wire().object(1, 3).value(TagNone, 1).u16(2), 12,
              "the input ends inside property 2 of 3");
  expectFault(Wire().object(1, 1).value(TagDouble, 1).u32(0), 14,
              "the input ends inside a value of type double");
  expectFault(Wire().object(1, 1).value(TagCollection, 1).u8(0), 11,
              "the input ends inside an element count");
  expectFault(Wire().object(1, 1).value(TagCollection, 1).u32(0xFFFFFFFF), 14,
              "the input ends inside element 1 of 4294967295");
  expectFault(Wire().object(1, 1).value(TagString, 1).u16(0), 12,
              "the input ends inside the length of a string");
  expectFault(Wire().object(1, 1).value(TagString, 1).u32(0xFFFFFFFF).text("ab"), 16,
              "the input ends inside a string of 4294967295 bytes");
  expectFault(Wire().object(1, 1).value(TagRecord, 1).u8(100), 11,
              "the input ends inside a class id");
  expectFault(Wire().object(1, 1).value(TagRecord, 1).u16(100).u8(1).u8(0xF).u16(1), 16,
              "the input ends inside GeranCellDn (class 100)");
}

TEST(WireParser, NamesTheRecordThatMakesNoSense) {
  const Bytes header = Wire().object(1, 1).value(TagRecord, 1);
  expectFault(joined({header, Wire().u16(0)}), 10,
              "unknown class id 0: records have 100 to 135, and their length is not told");
  expectFault(joined({header, Wire().u16(99)}), 10,
              "unknown class id 99: records have 100 to 135, and their length is not told");
  expectFault(joined({header, Wire().u16(136)}), 10,
              "unknown class id 136: records have 100 to 135, and their length is not told");
  expectFault(joined({header, Wire().u16(105)}), 12, "GeranCell (class 105) has no wire form");
  expectFault(joined({header, Wire().u16(121).u8(2).u8(0)}), 12,
              "EUtraCellDn (class 121) has version 2, only 1 is known");
  expectFault(joined({header, Wire().u16(100).u8(1).u8(0x10)}), 12,
              "GeranCellDn (class 100) has a presence mask, length or inner version that its class "
              "does not allow");
}

Bytes nested(unsigned int levels, unsigned int tag) {
  Wire wire;
  wire.object(1, levels > 1 ? 1 : 0);
  for (unsigned int level = 2; level <= levels; ++level) {
    wire.value(tag, 5);
    const unsigned int inner = level < levels ? 1 : 0;
    tag == TagObject ? wire.object(1, inner) : wire.u32(inner);
  }
  return wire;
}

TEST(WireParser, Reads512LevelsAndRefuses513) {
  for (const unsigned int tag : {TagObject, TagCollection}) {
    EXPECT_TRUE(parseAll(nested(512, tag)).whole) << tag;
    const Parsed parsed = parseAll(nested(513, tag));
    EXPECT_FALSE(parsed.whole) << tag;
    EXPECT_EQ(parsed.fault.reason, "more than 512 nested levels");
    EXPECT_EQ(parsed.fault.offset, nested(512, tag).size()) << tag;
  }
}

TEST(WireParser, TheNextObjectBeginsAtLevel1Again) {
  EXPECT_EQ(parseAll(joined({nested(512, TagObject), nested(512, TagObject)})).objects, 2u);
}

TEST(WireParser, StopsWhenTheHandlerDoes) {
  Listener listener;
  listener.stopAfter = 2;
  const Parsed parsed = parseAll(Wire().object(1, 9).value(0, 1).value(0, 2).value(0, 3), listener);
  EXPECT_FALSE(parsed.whole);
  EXPECT_EQ(parsed.fault.reason, "");
  EXPECT_EQ(listener.notes.size(), 3u);
  EXPECT_EQ(listener.notes.back(), "broken");
}

TEST(WireParser, CountsFromThePositionGiven) {
  BufferStream stream;
  fill(stream, Wire().object(1, 1).value(TagNone, 4));
  Listener listener;
  WireParser parser(stream, 5000000000, listener);
  EXPECT_TRUE(parser.parseObject());
  EXPECT_EQ(listener.notes[1], "5000000006+4 key 4 none 0");
}

TEST(WireParser, ReadsEveryTruncationAsTheLibraryDoes) {
  for (const char* name : kWholeVectors) {
    const Bytes whole = golden(name);
    EXPECT_TRUE(parseAll(whole).whole) << name;
    for (std::size_t size = 1; size < whole.size(); ++size) {
      const Parsed parsed =
          parseAll(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
      EXPECT_FALSE(parsed.whole) << name << " " << size;
      EXPECT_EQ(parsed.fault.offset, size) << name;
    }
  }
}

TEST(WireParser, ReadsEveryChangedByteAsTheLibraryDoes) {
  std::mt19937 random(20231114);
  for (const char* name : kWholeVectors) {
    const Bytes whole = golden(name);
    for (std::size_t i = 0; i < whole.size(); ++i) {
      for (const unsigned int value : {15u, static_cast<unsigned int>(random() % 256)}) {
        Bytes changed = whole;
        changed[i] = static_cast<unsigned char>(value);
        const Parsed parsed = parseAll(changed);
        const Parsed read = readAll(changed);
        ASSERT_EQ(parsed.whole, read.whole) << name << " byte " << i << " = " << value;
        ASSERT_EQ(parsed.objects, read.objects) << name << " byte " << i << " = " << value;
      }
    }
  }
}

TEST(WireParser, ReadsNoiseAsTheLibraryDoes) {
  std::mt19937 random(4711);
  for (int round = 0; round < 3000; ++round) {
    // Small numbers make tags, keys and counts that lead somewhere.
    Bytes noise(random() % 200 + 1);
    for (unsigned char& byte : noise) {
      byte = static_cast<unsigned char>(random() % 3 == 0 ? random() % 16 : 0);
    }
    noise[0] = 1;
    const Parsed parsed = parseAll(noise);
    const Parsed read = readAll(noise);
    ASSERT_EQ(parsed.whole, read.whole) << round;
    ASSERT_EQ(parsed.objects, read.objects) << round;
  }
}

}  // namespace
}  // namespace trelvo::tool
