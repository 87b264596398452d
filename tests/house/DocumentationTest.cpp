// Holds what the documents say about the wire format against the library.

#include <cxxabi.h>
#include <gtest/gtest.h>
#include <trelvo/trelvo.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <regex>
#include <typeinfo>

#include "tests/house/WireFormatPage.h"

namespace {

using namespace trelvo;
using Bytes = WireFormatPage::Bytes;

const WireFormatPage& page() {
  static const WireFormatPage parsed = WireFormatPage::parse(sourceFile("docs/wire-format.md"));
  return parsed;
}

Bytes contentOf(BufferStream& stream) {
  const unsigned char* const data = stream.buffer().data();
  return Bytes(data, data + stream.buffer().size());
}

/// The number in "record 102".
unsigned short classIdOf(const std::string& type) {
  return static_cast<unsigned short>(std::stoul(type.substr(type.find(' '))));
}

void fill(BufferStream& stream, const Bytes& bytes) {
  stream.write(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

/// Whether the class reads exactly these bytes and writes them again.
void expectRoundTrip(unsigned short classId, const Bytes& bytes) {
  const auto record = schema::ObjectBaseFactory::createObject(classId);
  BufferStream in;
  fill(in, bytes);
  ASSERT_TRUE(record->read(in));
  EXPECT_TRUE(in.eof());
  BufferStream out;
  ASSERT_TRUE(record->write(out));
  EXPECT_EQ(contentOf(out), bytes);
}

/// Whether a generic object takes exactly these bytes and writes them again.
void expectObjectRoundTrip(const Bytes& bytes) {
  BufferStream in;
  fill(in, bytes);
  const auto object = gom::GenericObject::create(in);
  ASSERT_TRUE(object);
  EXPECT_TRUE(in.eof());
  BufferStream out;
  ASSERT_TRUE(object->write(out));
  EXPECT_EQ(contentOf(out), bytes);
}

bool reads(unsigned short classId, const Bytes& bytes) {
  BufferStream in;
  fill(in, bytes);
  return schema::ObjectBaseFactory::createObject(classId)->read(in);
}

std::string className(const gom::ObjectBase& object) {
  const std::unique_ptr<char, decltype(&std::free)> name(
      abi::__cxa_demangle(typeid(object).name(), nullptr, nullptr, nullptr), &std::free);
  return name.get();
}

/// Calls `check(classId, record)` for each record of the page that has a class id.
template <class Check>
void forEachRecord(Check check) {
  for (const auto& [type, record] : page().records) {
    if (type != "Coverage") {
      SCOPED_TRACE(type + " " + record.name);
      check(classIdOf(type), record, type);
    }
  }
}

TEST(WireFormatPage, NamesEveryClassTheFactoryServes) {
  ASSERT_EQ(page().classIds.size(), 36U);
  unsigned short expected = 100;
  for (const auto& row : page().classIds) {
    EXPECT_EQ(row.id, expected++);
    const auto object = schema::ObjectBaseFactory::createObject(row.id);
    EXPECT_EQ(className(*object), "trelvo::schema::" + row.name);
  }
}

TEST(WireFormatPage, HasATableForEachClassWithAWireFormAndForNoOther) {
  std::size_t tables = 1;  // Coverage
  for (const auto& row : page().classIds) {
    const auto found = page().records.find("record " + std::to_string(row.id));
    ASSERT_EQ(found != page().records.end(), row.hasWireForm) << row.name;
    if (row.hasWireForm) {
      EXPECT_EQ(found->second.name, row.name);
      ++tables;
    }
  }
  EXPECT_EQ(page().records.size(), tables);
}

TEST(WireFormatPage, ClassesWithoutAWireFormThrow) {
  for (const auto& row : page().classIds) {
    if (!row.hasWireForm) {
      BufferStream stream;
      const auto object = schema::ObjectBaseFactory::createObject(row.id);
      EXPECT_THROW(static_cast<void>(object->write(stream)), Status) << row.name;
    }
  }
}

TEST(WireFormatPage, EachRecordReadsAndWritesAllFieldsAsTabled) {
  forEachRecord([](unsigned short id, const auto& record, const std::string& type) {
    expectRoundTrip(id, page().recordBytes(type, record.allBits()));
  });
}

TEST(WireFormatPage, EachFieldAloneIsAsTabled) {
  forEachRecord([](unsigned short id, const auto& record, const std::string& type) {
    expectRoundTrip(id, page().recordBytes(type, 0));
    for (const auto& field : record.fields) {
      SCOPED_TRACE(field.mask);
      expectRoundTrip(id, page().recordBytes(type, field.mask));
    }
  });
}

TEST(WireFormatPage, EachRecordIsCutOffOneByteBeforeItsTabledEnd) {
  forEachRecord([](unsigned short id, const auto& record, const std::string& type) {
    Bytes bytes = page().recordBytes(type, record.allBits());
    bytes.pop_back();
    EXPECT_FALSE(reads(id, bytes));
  });
}

TEST(WireFormatPage, MasksPassUpToTheirLimitAndNotAbove) {
  forEachRecord([](unsigned short id, const auto& record, const std::string& type) {
    if (record.maskBytes == 1) {
      const auto limit = static_cast<unsigned int>(record.maskLimit);
      EXPECT_TRUE(reads(id, page().recordBytes(type, limit)));
      EXPECT_FALSE(reads(id, page().recordBytes(type, limit + 1)));
    }
  });
}

TEST(WireFormatPage, CoverageFieldsAreAsTabled) {
  const auto& record = page().records.at("Coverage");
  ASSERT_EQ(record.fields.size(), 8U);
  for (const auto& field : record.fields) {
    SCOPED_TRACE(field.mask);
    Bytes bytes = page().recordBytes("Coverage", field.mask);
    bytes.insert(bytes.begin(), 1);  // the version of the Area around it
    expectRoundTrip(104, bytes);
  }
  EXPECT_FALSE(reads(104, {1, 1, 0x00, 0x01}));
}

/// The class of the object that a golden vector holds: what "write v1" names and "new v1" makes.
std::string classOfGolden(const std::string& recipe) {
  std::smatch match;
  if (!std::regex_search(recipe, match, std::regex("(?:^|\\n)write (\\w+)"))) {
    return "";
  }
  const std::regex made("(?:^|\\n)new " + match[1].str() + " (\\w+)");
  return std::regex_search(recipe, match, made) ? match[1].str() : "";
}

bool isGenericObject(const std::string& name) {
  return std::any_of(page().objectKeys.begin(), page().objectKeys.end(),
                     [&name](const auto& row) { return row.name == name; });
}

/// The properties of an object and of all below it: tag by object key and property key.
using Properties = decltype(WireFormatPage::properties);

void collect(gom::GenericObject& object, Properties& seen);

void collect(const gom::Variant& value, Properties& seen) {
  gom::SharedPointer<gom::GenericObject> object;
  gom::SharedPointer<gom::ValueCollection> collection;
  if (value.getGenericObjectValue(object) == StatusOk) {
    collect(*object, seen);
  } else if (value.getCollectionValue(collection) == StatusOk) {
    for (const gom::Variant* element : collection->items) {
      collect(*element, seen);
    }
  }
}

void collect(gom::GenericObject& object, Properties& seen) {
  unsigned short key = 0;
  for (bool more = object.getFirstKey(key); more; more = object.getNextKey(key)) {
    const gom::Variant& property = *object.findProperty(key);
    seen[{object.key(), key}] = property.dataType();
    collect(property, seen);
  }
}

void collectGolden(const std::string& name, Properties& seen) {
  if (isGenericObject(classOfGolden(sourceFile(name + ".txt")))) {
    BufferStream stream;
    fill(stream, bytesOfHex(sourceFile(name + ".hex")));
    const auto object = gom::GenericObject::create(stream);
    ASSERT_TRUE(object) << name;
    collect(*object, seen);
  }
}

/// The page's properties without those that its remarks rule out of every stream.
Properties tabledProperties() {
  Properties tabled = page().properties;
  tabled.erase({12, 200});
  for (const unsigned int objectKey : {2U, 14U, 17U, 6U, 15U, 18U}) {
    tabled.erase({objectKey, 207});
  }
  return tabled;
}

TEST(WireFormatPage, TablesThePropertiesOfTheGoldenVectorsAndNoOthers) {
  Properties seen;
  for (const auto& file : std::filesystem::directory_iterator(TRELVO_TEST_DATA "/golden/vectors")) {
    if (file.path().extension() == ".hex") {
      collectGolden("tests/golden/vectors/" + file.path().stem().string(), seen);
    }
  }
  EXPECT_EQ(seen, tabledProperties());
}

void expectDumpOfTheGeranContainer(const std::string& path) {
  const auto dumps = hexDumps(sourceFile(path));
  ASSERT_EQ(dumps.size(), 1U);
  ASSERT_EQ(dumps[0].size(), 48U);

  BufferStream in;
  fill(in, dumps[0]);
  const auto container = schema::MeasurementContainer::create(gom::GenericObject::create(in));
  ASSERT_TRUE(container);
  EXPECT_TRUE(in.eof());
  const auto measurement = container->geranMeasurement(0);
  ASSERT_TRUE(measurement && measurement->dn());
  EXPECT_EQ(measurement->timeStamp(), 1700000000U);
  EXPECT_TRUE(*measurement->dn() == *schema::GeranCellDn::create(262, 7, 4660, 41394));

  BufferStream out;
  ASSERT_TRUE(container->write(out));
  EXPECT_EQ(contentOf(out), dumps[0]);
}

TEST(WireFormatPage, ItsDumpReadsAsItsRemarksSay) {
  expectDumpOfTheGeranContainer("docs/wire-format.md");
}

TEST(Readme, ItsDumpReadsAsItsRemarksSay) { expectDumpOfTheGeranContainer("README.md"); }

TEST(WireDumpsPage, EveryDumpReadsWholeAndIsWrittenAgain) {
  const std::string text = sourceFile("docs/wire-dumps.md");
  const std::size_t objects = hexDumps(text.substr(0, text.find("## Generic objects"))).size();
  const std::vector<Bytes> dumps = hexDumps(text);
  ASSERT_EQ(dumps.size() - objects, page().objectKeys.size());
  for (std::size_t i = 0; i < dumps.size(); ++i) {
    if (i < objects) {
      const auto classId = static_cast<unsigned short>(dumps[i].at(0) | dumps[i].at(1) << 8);
      expectRoundTrip(classId, Bytes(dumps[i].begin() + 2, dumps[i].end()));
    } else {
      expectObjectRoundTrip(dumps[i]);
    }
  }
}

TEST(WireDumpsPage, HasEachClassWithAWireFormAndEachObjectKey) {
  const std::string text = sourceFile("docs/wire-dumps.md");
  for (const WireFormatPage::ClassId& each : page().classIds) {
    const std::string heading = "### Bytes of " + std::to_string(each.id) + " `" + each.name + "`";
    EXPECT_EQ(text.find(heading) != std::string::npos, each.hasWireForm) << heading;
  }
  for (const WireFormatPage::ObjectKey& each : page().objectKeys) {
    const std::string heading =
        "### Bytes of object key " + std::to_string(each.key) + ", `" + each.name + "`";
    EXPECT_NE(text.find(heading), std::string::npos) << heading;
  }
}

TEST(HexDumps, ALineWithAWrongOffsetSpoilsTheDump) {
  EXPECT_EQ(hexDumps("```hexdump\n0000  01 00  a\n0002  FF\n```\n").at(0), (Bytes{1, 0, 0xFF}));
  EXPECT_TRUE(hexDumps("```hexdump\n0000  01 00  a\n0003  FF\n```\n").at(0).empty());
}

}  // namespace
