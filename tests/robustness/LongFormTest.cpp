// Forms above two KiB, which a BufferStream's writer does not gather: it asks once for the size of
// the whole and makes exactly that room.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/PositionEstimate.h>

#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo::test {
namespace {

using gom::CharacterData;
using gom::GenericObject;
using gom::SharedPointer;
using gom::ValueCollection;
using gom::Variant;
using List = SharedPointer<ValueCollection>;
using Object = SharedPointer<GenericObject>;

constexpr std::size_t kLong = 2049;

Bytes number(std::size_t value) {
  return {static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8U),
          static_cast<unsigned char>(value >> 16U), static_cast<unsigned char>(value >> 24U)};
}

void add(const List& list, const Object& object) {
  Variant* const item = Variant::create();
  ASSERT_EQ(item->setGenericObjectValue(object), StatusOk);
  ASSERT_EQ(list->add(item), StatusOk);
}

/// What `count` elements of these bytes are as a list of objects.
Bytes listForm(std::size_t count, const Bytes& element) {
  Bytes form = number(count);
  for (; count > 0; --count) {
    form = joined({form, bytes("0d 00 00 00"), element});
  }
  return form;
}

/// The golden vectors that are one generic object each.
std::vector<Bytes> composites() {
  std::vector<Bytes> found;
  const std::string folder = std::string(TRELVO_TEST_DATA) + "/golden/vectors";
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() != ".hex") {
      continue;
    }
    std::ifstream file(entry.path());
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const Bytes content = bytes(text);
    BufferStream stream;
    fill(stream, content);
    if (content.size() > 2 && content[1] == 0 && content[0] < 30 && GenericObject::create(stream) &&
        stream.offset() == content.size()) {
      found.push_back(content);
    }
  }
  return found;
}

Object objectOf(const Bytes& content) {
  BufferStream stream;
  fill(stream, content);
  return GenericObject::create(stream);
}

/// `object` writes `expected`, with one allocation where the stream is memory.
template <class T>
void expectOneAllocation(const T& object, const Bytes& expected) {
  BufferStream stream;
  const Allocations allocations = allocationsOf([&] { EXPECT_TRUE(object.write(stream)); });
  EXPECT_EQ(contentOf(stream), expected);
  EXPECT_EQ(allocations.calls, 1U);
  EXPECT_LE(allocations.bytes, expected.size() + 512);
  EXPECT_EQ(writtenToForeign(object), expected);
}

TEST(LongForm, OfEveryCompositeTakesOneAllocation) {
  const std::vector<Bytes> all = composites();
  EXPECT_GT(all.size(), 60U);
  for (const Bytes& content : all) {
    const List list = ValueCollection::create();
    const std::size_t count = kLong / (content.size() + 4) + 1;
    for (std::size_t i = 0; i < count; ++i) {
      add(list, objectOf(content));
    }
    expectOneAllocation(*list, listForm(count, content));
  }
}

TEST(LongForm, OfTextsAndNumbersTakesOneAllocation) {
  const Object object = GenericObject::create(7);
  Bytes form = joined({bytes("07 00"), number(600)});
  for (unsigned short key = 1; key <= 300; ++key) {
    ASSERT_EQ(object->setStringProperty(key, CharacterData::create("text", 4)), StatusOk);
    const auto low = static_cast<unsigned char>(key & 0xFFU);
    const auto high = static_cast<unsigned char>(key >> 8U);
    form = joined({form, bytes("0c 00"), {low, high}, bytes("04 00 00 00 74 65 78 74")});
  }
  for (unsigned short key = 301; key <= 600; ++key) {
    ASSERT_EQ(object->setUint8Property(key, 9), StatusOk);
    const auto low = static_cast<unsigned char>(key & 0xFFU);
    const auto high = static_cast<unsigned char>(key >> 8U);
    form = joined({form, bytes("02 00"), {low, high}, bytes("09")});
  }
  expectOneAllocation(*object, form);
  Variant variant;
  ASSERT_EQ(variant.setGenericObjectValue(object), StatusOk);
  expectOneAllocation(variant, joined({bytes("0d 00 00 00"), form}));
}

/// A list of `count` variants that hold `record`.
List listOf(const SharedPointer<gom::ObjectBase>& record, int count) {
  List list = ValueCollection::create();
  for (; count > 0; --count) {
    Variant* const item = Variant::create();
    EXPECT_EQ(item->setObjectValue(record), StatusOk);
    EXPECT_EQ(list->add(item), StatusOk);
  }
  return list;
}

TEST(LongForm, OfPositionsLeavesOutWhatHasNoPlaceOnTheWire) {
  const auto estimate = schema::PositionEstimate::create(1.5, -2.5, 10.0, 1700000000);
  ASSERT_EQ(estimate->setBuildingId("a house with a long name"), StatusOk);
  Variant one;
  ASSERT_EQ(one.setObjectValue(estimate), StatusOk);
  const Bytes element = writtenToForeign(one);
  Bytes form = number(100);
  for (int i = 0; i < 100; ++i) {
    form = joined({form, element});
  }
  expectOneAllocation(*listOf(estimate, 100), form);
}

/// A record that an application derived, and that refuses to be written.
class Mute : public schema::GeranNwMeasurement {
 public:
  [[nodiscard]] bool write(IStream& /*stream*/) const override { return false; }
};

TEST(LongForm, OfARecordWhosePartRefusesIsRefused) {
  const auto serving = schema::GeranServingCellMeasurement::create();
  ASSERT_EQ(serving->setNwMeasurement(new Mute), StatusOk);
  LimitedStream foreign;
  EXPECT_FALSE(serving->write(foreign));
  for (const int count : {1, 1000}) {
    const List list = listOf(serving, count);
    BufferStream stream;
    EXPECT_FALSE(list->write(stream));
    EXPECT_FALSE(list->write(foreign));
  }
}

// Where no room is to be had for what was gathered either, that one failure is told.
TEST(LongForm, ThrowsBadAllocWhenMemoryRunsOut) {
  const Bytes content = bytes("01 00 00 00 00 00");
  const List list = ValueCollection::create();
  for (int i = 0; i < 1000; ++i) {
    add(list, objectOf(content));
  }
  const Bytes form = listForm(1000, content);
  everyAllocationFails([&] {
    try {
      BufferStream stream;
      const bool done = list->write(stream);
      const AllocationsSucceed checking;
      EXPECT_TRUE(done);
      EXPECT_EQ(contentOf(stream), form);
    } catch (const std::bad_alloc&) {
      return;
    }
  });
}

/// A variant that writes itself in its own way, so that nobody knows how long it is.
class LoudVariant : public Variant {
 public:
  [[nodiscard]] bool write(IStream& stream) const override { return stream.writeUint8('!'); }
};

TEST(LongForm, ThatHoldsTheUnknownGrowsAsItGoes) {
  const Bytes content = bytes("01 00 00 00 00 00");
  const List list = ValueCollection::create();
  for (int i = 0; i < 1000; ++i) {
    add(list, objectOf(content));
  }
  ASSERT_EQ(list->add(new LoudVariant), StatusOk);
  const Object object = GenericObject::create(5);
  ASSERT_EQ(object->setCollectionProperty(1, list), StatusOk);
  Bytes form = joined({bytes("05 00 01 00 00 00 0f 00 01 00"), listForm(1000, content), {'!'}});
  form[10] = 0xE9;  // 1001 elements
  EXPECT_EQ(written(*object), form);
  EXPECT_EQ(writtenToForeign(*object), form);
}

TEST(LongForm, WithAnEmptyElementIsRefusedBehindWhatPrecedesIt) {
  const List list = ValueCollection::create();
  for (int i = 0; i < 400; ++i) {
    add(list, GenericObject::create(1));
  }
  list->items.push_back(nullptr);
  BufferStream stream;
  EXPECT_FALSE(list->write(stream));
  EXPECT_EQ(stream.buffer().size(), 4U + 400 * 10);
  list->items.pop_back();
}

}  // namespace
}  // namespace trelvo::test
