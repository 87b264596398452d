#include <gtest/gtest.h>
#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/GeranCellDn.h>

#include <functional>
#include <limits>
#include <memory>
#include <tuple>
#include <type_traits>
#include <vector>

#include "Records.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo::gom {
namespace {

using test::AllocationsSucceed;
using test::Bytes;
using test::bytes;
using test::everyAllocationFails;
using test::PairRecord;
using test::readFrom;
using test::SilentRecord;
using test::written;
using Object = SharedPointer<GenericObject>;

static_assert(std::is_base_of_v<ReferenceCountable, GenericObject>);
static_assert(std::is_base_of_v<ISerializable, GenericObject>);

Object create(unsigned short key) { return GenericObject::create(key); }

Object fromWire(const Bytes& content) {
  BufferStream stream;
  test::fill(stream, content);
  return GenericObject::create(stream);
}

/// Properties of the given keys, in that order, each with its key's low byte as value.
Object withKeys(std::initializer_list<unsigned short> keys) {
  Object object = create(7);
  for (const unsigned short key : keys) {
    EXPECT_EQ(object->setUint8Property(key, static_cast<unsigned char>(key)), StatusOk);
  }
  return object;
}

std::vector<unsigned short> keysOf(GenericObject& object) {
  std::vector<unsigned short> keys;
  unsigned short key = 0;
  for (bool more = object.getFirstKey(key); more; more = object.getNextKey(key)) {
    keys.push_back(key);
  }
  return keys;
}

using Keys = std::vector<unsigned short>;

/// One property of each type but none.
Object withEverything() {
  Object object = create(7);
  EXPECT_EQ(object->setInt8Property(1, -1), StatusOk);
  EXPECT_EQ(object->setUint8Property(2, 2), StatusOk);
  EXPECT_EQ(object->setInt16Property(3, -3), StatusOk);
  EXPECT_EQ(object->setUint16Property(4, 4), StatusOk);
  EXPECT_EQ(object->setInt32Property(5, -5), StatusOk);
  EXPECT_EQ(object->setUint32Property(6, 6), StatusOk);
  EXPECT_EQ(object->setInt64Property(7, -7), StatusOk);
  EXPECT_EQ(object->setUint64Property(8, 8), StatusOk);
  EXPECT_EQ(object->setFloatProperty(9, 1.5F), StatusOk);
  EXPECT_EQ(object->setDoubleProperty(10, -2.5), StatusOk);
  EXPECT_EQ(object->setBooleanProperty(11, true), StatusOk);
  EXPECT_EQ(object->setStringProperty(12, CharacterData::create("hi", 2)), StatusOk);
  EXPECT_EQ(object->setGenericObjectProperty(13, withKeys({0x99})), StatusOk);
  EXPECT_EQ(object->setObjectProperty(14, schema::GeranCellDn::create(1, 2, 3, 4)), StatusOk);
  const SharedPointer<ValueCollection> list = ValueCollection::create();
  EXPECT_EQ(list->add(Variant::create()), StatusOk);
  EXPECT_EQ(object->setCollectionProperty(15, list), StatusOk);
  return object;
}

const Bytes& everythingOnTheWire() {
  static const Bytes kBytes = bytes(
      "07 00 0F 00 00 00"
      "01 00 01 00 FF"
      "02 00 02 00 02"
      "03 00 03 00 FD FF"
      "04 00 04 00 04 00"
      "05 00 05 00 FB FF FF FF"
      "06 00 06 00 06 00 00 00"
      "07 00 07 00 F9 FF FF FF FF FF FF FF"
      "08 00 08 00 08 00 00 00 00 00 00 00"
      "09 00 09 00 00 00 C0 3F"
      "0A 00 0A 00 00 00 00 00 00 00 04 C0"
      "0B 00 0B 00 01"
      "0C 00 0C 00 02 00 00 00 68 69"
      "0D 00 0D 00 07 00 01 00 00 00 02 00 99 00 99"
      "0E 00 0E 00 64 00 01 0F 01 00 02 00 03 00 04 00"
      "0F 00 0F 00 01 00 00 00 00 00 00 00");
  return kBytes;
}

// --- making ---

TEST(GenericObject, IsMadeWithItsKeyAndNoProperties) {
  const Object object = create(7);
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->key(), 7U);
  EXPECT_EQ(object->propertyCount(), 0U);
  EXPECT_EQ(object->referenceCount(), 1);
}

TEST(GenericObject, ConstructedByHandItCountsAsEmptyUntilASetterMakesAList) {
  const Object object(new GenericObject(7));
  const GenericObject blank;
  EXPECT_EQ(blank.key(), 0U);
  EXPECT_EQ(object->key(), 7U);
  EXPECT_EQ(object->propertyCount(), 0U);
  EXPECT_FALSE(object->propertyExists(1));
  EXPECT_EQ(object->findProperty(1), nullptr);
  EXPECT_FALSE(object->removeProperty(1));
  unsigned short key = 99;
  EXPECT_FALSE(object->getFirstKey(key));
  EXPECT_FALSE(object->getNextKey(key));
  EXPECT_EQ(key, 99U);
  unsigned char value = 99;
  EXPECT_EQ(object->getUint8Property(1, value), StatusNotFound);
  object->dump();
  EXPECT_TRUE(*object == *create(7));
  EXPECT_TRUE(*create(7) == *object);
  EXPECT_TRUE(*object->clone() == *object);
  EXPECT_TRUE(*GenericObject::create(*object) == *object);
  test::expectWrites(*object, bytes("07 00 00 00 00 00"));
  EXPECT_EQ(object->setUint8Property(1, 2), StatusOk);
  EXPECT_EQ(object->propertyCount(), 1U);
}

TEST(GenericObject, CreateFromAnotherSharesItsValues) {
  const Object source = withEverything();
  const Object copy = GenericObject::create(*source);
  const Object ofHandle = GenericObject::create(source);
  for (const Object& each : {copy, ofHandle}) {
    ASSERT_NE(each, nullptr);
    EXPECT_TRUE(*each == *source);
    Object nested;
    Object sourceNested;
    EXPECT_EQ(each->getGenericObjectProperty(13, nested), StatusOk);
    EXPECT_EQ(source->getGenericObjectProperty(13, sourceNested), StatusOk);
    EXPECT_EQ(nested, sourceNested);
  }
  EXPECT_EQ(copy->setUint8Property(2, 99), StatusOk);
  unsigned char value = 0;
  EXPECT_EQ(source->getUint8Property(2, value), StatusOk);
  EXPECT_EQ(value, 2U) << "the lists are two";
  EXPECT_EQ(GenericObject::create(Object()), nullptr);
}

TEST(GenericObject, CloneCopiesDeeply) {
  const Object source = withEverything();
  const Object clone = source->clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_TRUE(*clone == *source);
  Object nested;
  Object sourceNested;
  EXPECT_EQ(clone->getGenericObjectProperty(13, nested), StatusOk);
  EXPECT_EQ(source->getGenericObjectProperty(13, sourceNested), StatusOk);
  EXPECT_NE(nested, sourceNested);
  EXPECT_EQ(sourceNested->setUint8Property(0x99, 1), StatusOk);
  EXPECT_FALSE(*clone == *source);
}

TEST(GenericObject, CloneOfWhatCannotBeClonedIsEmpty) {
  const Object object = create(7);
  EXPECT_EQ(object->setObjectProperty(1, SharedPointer<SilentRecord>(new SilentRecord)), StatusOk);
  EXPECT_EQ(object->clone(), nullptr);
  EXPECT_NE(GenericObject::create(*object), nullptr);
}

// --- typed properties ---

template <class T>
struct Row {
  const char* name;
  Status (GenericObject::*set)(unsigned short, T);
  Status (GenericObject::*get)(unsigned short, T&) const;
  T value;
  T other;
};

const auto kScalars = std::make_tuple(
    Row<signed char>{"int8", &GenericObject::setInt8Property, &GenericObject::getInt8Property, -128,
                     5},
    Row<unsigned char>{"uint8", &GenericObject::setUint8Property, &GenericObject::getUint8Property,
                       255, 5},
    Row<short>{"int16", &GenericObject::setInt16Property, &GenericObject::getInt16Property, -32768,
               5},
    Row<unsigned short>{"uint16", &GenericObject::setUint16Property,
                        &GenericObject::getUint16Property, 65535, 5},
    Row<int>{"int32", &GenericObject::setInt32Property, &GenericObject::getInt32Property,
             std::numeric_limits<int>::min(), 5},
    Row<unsigned int>{"uint32", &GenericObject::setUint32Property,
                      &GenericObject::getUint32Property, ~0U, 5},
    Row<long long>{"int64", &GenericObject::setInt64Property, &GenericObject::getInt64Property,
                   std::numeric_limits<long long>::min(), 5},
    Row<unsigned long long>{"uint64", &GenericObject::setUint64Property,
                            &GenericObject::getUint64Property, ~0ULL, 5},
    Row<float>{"float", &GenericObject::setFloatProperty, &GenericObject::getFloatProperty, -0.5F,
               5},
    Row<double>{"double", &GenericObject::setDoubleProperty, &GenericObject::getDoubleProperty,
                -0.5, 5},
    Row<bool>{"boolean", &GenericObject::setBooleanProperty, &GenericObject::getBooleanProperty,
              true, false});

template <class Check>
void forEachScalar(Check check) {
  std::apply(
      [&check](const auto&... rows) {
        (
            [&](const auto& row) {
              SCOPED_TRACE(row.name);
              check(row);
            }(rows),
            ...);
      },
      kScalars);
}

TEST(GenericObject, ScalarPropertiesAreSetReplacedAndGot) {
  forEachScalar([](const auto& row) {
    const Object object = create(7);
    auto value = row.other;
    EXPECT_EQ(((*object).*row.get)(5, value), StatusNotFound);
    EXPECT_EQ(value, row.other) << "the argument stays";
    EXPECT_EQ(((*object).*row.set)(5, row.other), StatusOk);
    EXPECT_EQ(((*object).*row.set)(5, row.value), StatusOk);
    EXPECT_EQ(object->propertyCount(), 1U) << "a key occurs once";
    EXPECT_EQ(((*object).*row.get)(5, value), StatusOk);
    EXPECT_EQ(value, row.value);
  });
}

TEST(GenericObject, ScalarPropertiesKeepTheirType) {
  forEachScalar([](const auto& row) {
    const Object everything = withEverything();
    unsigned int refused = 0;
    for (unsigned short key = 1; key <= 15; ++key) {
      auto value = row.other;
      const Status status = ((*everything).*row.get)(key, value);
      if (status == StatusOk) {
        continue;
      }
      ++refused;
      EXPECT_EQ(status, StatusWrongState);
      EXPECT_EQ(value, row.other);
      EXPECT_EQ(((*everything).*row.set)(key, row.value), StatusWrongState);
    }
    EXPECT_EQ(refused, 14U);
    EXPECT_EQ(written(*everything), everythingOnTheWire());
  });
}

template <class T, class Set, class Get>
void expectHandleProperty(Set set, Get get, const SharedPointer<T>& first,
                          const SharedPointer<T>& second) {
  const Object object = create(7);
  SharedPointer<T> value = first;
  EXPECT_EQ(((*object).*get)(5, value), StatusNotFound);
  EXPECT_EQ(value, first);
  EXPECT_EQ(((*object).*set)(5, SharedPointer<T>()), StatusWrongState);
  EXPECT_FALSE(object->propertyExists(5)) << "nothing is added";
  EXPECT_EQ(((*object).*set)(5, first), StatusOk);
  EXPECT_EQ(((*object).*set)(5, SharedPointer<T>()), StatusWrongState);
  EXPECT_EQ(((*object).*get)(5, value), StatusOk);
  EXPECT_EQ(value, first) << "shared both ways";
  EXPECT_EQ(((*object).*set)(5, second), StatusOk);
  EXPECT_EQ(((*object).*get)(5, value), StatusOk);
  EXPECT_EQ(value, second);
  EXPECT_EQ(object->setUint8Property(6, 1), StatusOk);
  EXPECT_EQ(((*object).*set)(6, first), StatusWrongState);
  EXPECT_EQ(((*object).*get)(6, value), StatusWrongState);
  EXPECT_EQ(value, second);
}

TEST(GenericObject, HandlePropertiesAreSharedReplacedAndGot) {
  expectHandleProperty(&GenericObject::setStringProperty, &GenericObject::getStringProperty,
                       CharacterData::create("a", 1), CharacterData::create("b", 1));
  expectHandleProperty(&GenericObject::setGenericObjectProperty,
                       &GenericObject::getGenericObjectProperty, create(1), create(2));
  expectHandleProperty<ObjectBase>(&GenericObject::setObjectProperty,
                                   &GenericObject::getObjectProperty, PairRecord::create(1, 2),
                                   PairRecord::create(3, 4));
  expectHandleProperty(&GenericObject::setCollectionProperty, &GenericObject::getCollectionProperty,
                       ValueCollection::create(), ValueCollection::create());
}

TEST(GenericObject, AnUnsignedPropertyRefusesASignedValue) {
  const Object object = create(7);
  EXPECT_EQ(object->setUint32Property(5, 1), StatusOk);
  EXPECT_EQ(object->setInt32Property(5, 1), StatusWrongState);
  EXPECT_EQ(object->findProperty(5)->dataType(), Variant::TypeUint32);
}

TEST(GenericObject, GetPropertyAssignsTheElementKeyIncluded) {
  const Object object = withKeys({5});
  Variant value(1);
  EXPECT_EQ(value.setStringValue(CharacterData::create("old", 3)), StatusOk);
  EXPECT_EQ(object->getProperty(6, value), StatusNotFound);
  EXPECT_EQ(value.dataType(), Variant::TypeString);
  EXPECT_EQ(object->getProperty(5, value), StatusOk) << "whatever type the argument had";
  EXPECT_EQ(value.key(), 5U);
  EXPECT_EQ(value.dataType(), Variant::TypeUint8);
}

TEST(GenericObject, SetPropertyAddsACopyUnderTheGivenKey) {
  const Object object = create(7);
  Variant value(1);
  EXPECT_EQ(value.setUint8Value(9), StatusOk);
  EXPECT_EQ(object->setProperty(5, value), StatusOk);
  EXPECT_EQ(object->setProperty(6, Variant(3)), StatusOk) << "a blank one too";
  EXPECT_EQ(written(*object), bytes("07 00 02 00 00 00 02 00 05 00 09 00 00 06 00"));
}

TEST(GenericObject, SetPropertyReplacesOneOfTheSameType) {
  const Object object = withKeys({4, 5, 6});
  Variant value(1);
  EXPECT_EQ(value.setUint8Value(9), StatusOk);
  EXPECT_EQ(object->setProperty(5, value), StatusOk);
  EXPECT_EQ(keysOf(*object), (Keys{4, 5, 6}));
  unsigned char now = 0;
  EXPECT_EQ(object->getUint8Property(5, now), StatusOk);
  EXPECT_EQ(now, 9U);
}

TEST(GenericObject, SetPropertyRefusesAnotherType) {
  const Object object = withKeys({5});
  Variant value(1);
  EXPECT_EQ(object->setProperty(5, value), StatusWrongState) << "blank is another type";
  EXPECT_EQ(value.setInt8Value(9), StatusOk);
  EXPECT_EQ(object->setProperty(5, value), StatusWrongState);
  EXPECT_EQ(written(*object), written(*withKeys({5})));
}

TEST(GenericObject, SetPropertyTakesAnElementOfItsOwn) {
  const Object object = withKeys({1, 2, 3, 4});
  EXPECT_EQ(object->setProperty(5, *object->findProperty(2)), StatusOk);
  EXPECT_EQ(object->setProperty(3, *object->findProperty(2)), StatusOk);
  EXPECT_EQ(object->setProperty(2, *object->findProperty(2)), StatusOk);
  unsigned char value = 0;
  EXPECT_EQ(object->getUint8Property(5, value), StatusOk);
  EXPECT_EQ(value, 2U);
  EXPECT_EQ(keysOf(*object), (Keys{1, 2, 3, 4, 5}));
}

// --- order, lookup, walking ---

TEST(GenericObject, KeepsTheOrderOfInsertion) {
  const Object object = withKeys({9, 3, 200, 1});
  EXPECT_EQ(object->setUint8Property(3, 77), StatusOk) << "replacing does not move";
  EXPECT_EQ(keysOf(*object), (Keys{9, 3, 200, 1}));
}

TEST(GenericObject, FindsTheFirstPropertyOfAKey) {
  const Object object = fromWire(bytes("07 00 02 00 00 00 02 00 05 00 01 02 00 05 00 02"));
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->propertyCount(), 2U);
  unsigned char value = 0;
  EXPECT_EQ(object->getUint8Property(5, value), StatusOk);
  EXPECT_EQ(value, 1U);
  const GenericObject& constant = *object;
  EXPECT_EQ(constant.findProperty(5), object->findProperty(5));
  EXPECT_EQ(object->findProperty(6), nullptr);
  EXPECT_TRUE(object->propertyExists(5));
  EXPECT_FALSE(object->propertyExists(6));
}

TEST(GenericObject, AKeyThatIsThereTwiceSurvivesReadingAndWriting) {
  const Bytes wire = bytes("07 00 02 00 00 00 02 00 05 00 01 02 00 05 00 02");
  EXPECT_EQ(written(*fromWire(wire)), wire);
  const Object object = fromWire(wire);
  EXPECT_TRUE(object->removeProperty(5));
  EXPECT_EQ(written(*object), bytes("07 00 01 00 00 00 02 00 05 00 02"));
}

TEST(GenericObject, FindPropertyGivesThePropertyItself) {
  const Object object = withKeys({5});
  EXPECT_EQ(object->findProperty(5)->setUint8Value(99), StatusOk);
  unsigned char value = 0;
  EXPECT_EQ(object->getUint8Property(5, value), StatusOk);
  EXPECT_EQ(value, 99U);
}

TEST(GenericObject, GetNextKeyBeforeGetFirstKeyIsFalse) {
  const Object object = withKeys({5, 6});
  unsigned short key = 99;
  EXPECT_FALSE(object->getNextKey(key));
  EXPECT_EQ(key, 99U);
}

TEST(GenericObject, AWalkEndsWithFalseAndStaysThere) {
  const Object object = withKeys({5, 6});
  unsigned short key = 0;
  EXPECT_TRUE(object->getFirstKey(key));
  EXPECT_EQ(key, 5U);
  EXPECT_TRUE(object->getNextKey(key));
  EXPECT_EQ(key, 6U);
  EXPECT_FALSE(object->getNextKey(key));
  EXPECT_EQ(key, 6U);
  EXPECT_FALSE(object->getNextKey(key));
  EXPECT_TRUE(object->getFirstKey(key)) << "and can start again";
  EXPECT_EQ(key, 5U);
}

TEST(GenericObject, GetFirstKeyOfNoPropertiesIsFalse) {
  const Object object = create(7);
  unsigned short key = 99;
  EXPECT_FALSE(object->getFirstKey(key));
  EXPECT_EQ(key, 99U);
}

TEST(GenericObject, RemovePropertyKeepsTheOrderOfTheOthers) {
  const Object object = withKeys({5, 6, 7, 8});
  EXPECT_TRUE(object->removeProperty(6));
  EXPECT_EQ(keysOf(*object), (Keys{5, 7, 8}));
  EXPECT_FALSE(object->removeProperty(6));
  EXPECT_TRUE(object->removeProperty(5));
  EXPECT_TRUE(object->removeProperty(8));
  EXPECT_EQ(keysOf(*object), (Keys{7}));
}

TEST(GenericObject, RemovePropertyReleasesItsTarget) {
  const Object nested = create(9);
  const Object object = withKeys({5});
  EXPECT_EQ(object->setGenericObjectProperty(6, nested), StatusOk);
  EXPECT_EQ(object->setUint8Property(7, 7), StatusOk);
  EXPECT_EQ(nested->referenceCount(), 2);
  EXPECT_TRUE(object->removeProperty(6));
  EXPECT_EQ(nested->referenceCount(), 1);
}

TEST(GenericObject, RemovingTheOnlyPropertyLeavesNone) {
  const Object object = withKeys({5});
  EXPECT_TRUE(object->removeProperty(5));
  EXPECT_EQ(object->propertyCount(), 0U);
  unsigned short key = 0;
  EXPECT_FALSE(object->getFirstKey(key));
}

TEST(GenericObject, AWalkGoesOnFromAPropertyThatTookTheRemovedOnesPlace) {
  const Object object = withKeys({5, 6, 7, 8});
  unsigned short key = 0;
  EXPECT_TRUE(object->getFirstKey(key));
  EXPECT_TRUE(object->getNextKey(key));
  EXPECT_TRUE(object->removeProperty(6));  // 7 stands where the walk stands now
  EXPECT_TRUE(object->getNextKey(key));
  EXPECT_EQ(key, 8U);
}

TEST(GenericObject, DumpHasNoEffect) {
  const Object object = withEverything();
  object->dump();
  EXPECT_EQ(written(*object), everythingOnTheWire());
}

// --- equality ---

TEST(GenericObject, EqualityGoesByKeyAndPropertiesInOrder) {
  EXPECT_TRUE(*withKeys({1, 2}) == *withKeys({1, 2}));
  EXPECT_FALSE(*withKeys({1, 2}) == *withKeys({2, 1})) << "another order is another object";
  EXPECT_FALSE(*withKeys({1, 2}) == *withKeys({1}));
  EXPECT_FALSE(*withKeys({1}) == *withKeys({1, 2}));
  EXPECT_TRUE(*withKeys({1}) != *withKeys({2}));
  EXPECT_FALSE(*create(1) == *create(2));
  EXPECT_TRUE(*create(1) == *create(1));
}

// --- the wire ---

TEST(GenericObject, WithoutPropertiesIsKeyAndCount) {
  test::expectWrites(*create(7), bytes("07 00 00 00 00 00"));
}

TEST(GenericObject, OfEveryTypeTravels) {
  const Object object = withEverything();
  test::expectWrites(*object, everythingOnTheWire());
  test::expectReads([] { return create(1); }, everythingOnTheWire(),
                    [&](const GenericObject& read) { EXPECT_TRUE(read == *object); });
}

TEST(GenericObject, CutOffAnywhereItKeepsWhatItHad) {
  const Bytes before = written(*withKeys({5}));
  test::expectCutOffFails([] { return withKeys({5}); }, everythingOnTheWire(),
                          [&](const GenericObject& object) { EXPECT_EQ(written(object), before); });
  for (unsigned int length = 0; length < everythingOnTheWire().size(); ++length) {
    EXPECT_EQ(fromWire(test::head(everythingOnTheWire(), length)), nullptr);
  }
}

TEST(GenericObject, ReadReplacesAndNeverAdds) {
  const Object object = withKeys({5, 6});
  EXPECT_TRUE(readFrom(*object, bytes("09 00 01 00 00 00 02 00 08 00 01")));
  EXPECT_EQ(object->key(), 9U);
  EXPECT_EQ(keysOf(*object), (Keys{8}));
  EXPECT_TRUE(readFrom(*object, bytes("0A 00 00 00 00 00")));
  EXPECT_EQ(object->key(), 10U);
  EXPECT_EQ(object->propertyCount(), 0U);
}

TEST(GenericObject, ReadDoesNotResetTheWalk) {
  const Object object = withKeys({5, 6});
  unsigned short key = 0;
  EXPECT_TRUE(object->getFirstKey(key));
  EXPECT_TRUE(readFrom(*object, bytes("09 00 00 00 00 00")));
  EXPECT_FALSE(object->getNextKey(key)) << "what it stood on is gone";
}

TEST(GenericObject, Key0EndsTheReadBehindTheKey) {
  for (const bool inMemory : {true, false}) {
    BufferStream memory;
    test::fill(memory, bytes("00 00 01 00 00 00 02 00"));
    test::LimitedStream foreign(bytes("00 00 01 00 00 00 02 00"));
    IStream& stream = inMemory ? static_cast<IStream&>(memory) : foreign;
    const Object object = withKeys({5});
    EXPECT_TRUE(object->read(stream));
    EXPECT_EQ(stream.offset(), 2U) << "what follows is unread";
    EXPECT_EQ(written(*object), written(*withKeys({5}))) << "the object is as it was";
  }
}

TEST(GenericObject, OfKey0WritesMoreThanIsReadBack) {
  const Object object = create(0);
  EXPECT_EQ(object->setUint8Property(1, 2), StatusOk);
  EXPECT_EQ(written(*object), bytes("00 00 01 00 00 00 02 00 01 00 02"));
}

TEST(GenericObject, CreatedFromKey0IsAnObjectWithoutProperties) {
  const Object object = fromWire(bytes("00 00"));
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->key(), 0U);
  EXPECT_EQ(object->propertyCount(), 0U);
  EXPECT_EQ(written(*object), bytes("00 00 00 00 00 00"));
  EXPECT_NE(object->clone(), nullptr);
  EXPECT_EQ(object->setUint8Property(1, 1), StatusOk);
}

TEST(GenericObject, OfKey0InsideAnotherLeavesItsCountForTheNextProperty) {
  // The nested object ends behind its key; its count is taken for the header of a blank property.
  const Object object = fromWire(bytes("07 00 02 00 00 00 0D 00 05 00 00 00 00 00 00 00"));
  ASSERT_NE(object, nullptr);
  EXPECT_EQ(object->propertyCount(), 2U);
  EXPECT_TRUE(*object->findProperty(0) == Variant(0));
}

TEST(GenericObject, APropertyThatThrowsLeavesTheObjectAndTheCursorBehindTheClassId) {
  const Bytes wire = bytes("09 00 02 00 00 00 02 00 01 00 01 0E 00 02 00 63 00 FF FF");
  for (const bool inMemory : {true, false}) {
    BufferStream memory;
    test::fill(memory, wire);
    test::LimitedStream foreign(wire);
    IStream& stream = inMemory ? static_cast<IStream&>(memory) : foreign;
    const Object object = withKeys({5});
    try {
      static_cast<void>(object->read(stream));
      ADD_FAILURE() << "no exception";
    } catch (Status status) {
      EXPECT_EQ(status, StatusInternal);
    }
    EXPECT_EQ(stream.offset(), 17U);
    EXPECT_EQ(written(*object), written(*withKeys({5})));
    EXPECT_TRUE(stream.seekFromStart(0));
    EXPECT_THROW(static_cast<void>(GenericObject::create(stream)), Status);
  }
}

TEST(GenericObject, WhatThrowsWhileItIsReadLeavesNoMemoryBehind) {
  for (const char* const wire :
       {"09 00 02 00 00 00 02 00 01 00 01 0E 00 02 00 63 00",
        "09 00 01 00 00 00 0F 00 01 00 01 00 00 00 0D 00 00 00 05 00 01 00 00 00 0E 00 00 00 88 00",
        "09 00 02 00 00 00 0C 00 01 00 02 00 00 00 68 69 0E 00 02 00 69 00 01 00"}) {
    EXPECT_EQ(test::allocationsOf([wire] {
                EXPECT_THROW(static_cast<void>(fromWire(bytes(wire))), Status);
              }).leaked,
              0);
  }
}

TEST(GenericObject, WritingARecordWithoutAWireFormThrowsBehindItsClassId) {
  const Object object = withKeys({5});
  EXPECT_EQ(object->setObjectProperty(6, SharedPointer<SilentRecord>(new SilentRecord)), StatusOk);
  EXPECT_EQ(object->setUint8Property(7, 7), StatusOk);
  const Bytes expected = bytes("07 00 03 00 00 00 02 00 05 00 05 0E 00 06 00 4D 00");
  BufferStream memory;
  test::fill(memory, bytes("AA BB"));
  EXPECT_TRUE(memory.seekFromStart(1));
  EXPECT_THROW(static_cast<void>(object->write(memory)), Status);
  EXPECT_EQ(test::contentOf(memory), test::joined({bytes("AA BB"), expected}));
  EXPECT_EQ(memory.buffer().writePosition(), 2 + expected.size());
  EXPECT_EQ(memory.offset(), 0U);
  test::LimitedStream foreign;
  EXPECT_THROW(static_cast<void>(object->write(foreign)), Status);
  EXPECT_EQ(foreign.taken(), expected);
}

TEST(GenericObject, WritesBehindWhatIsThereAndOverIt) {
  const Object object = withEverything();
  BufferStream behind;
  test::fill(behind, bytes("AA BB CC"));
  EXPECT_TRUE(behind.seekFromStart(2));
  EXPECT_TRUE(object->write(behind));
  EXPECT_EQ(behind.offset(), 0U);
  EXPECT_EQ(test::contentOf(behind), test::joined({bytes("AA BB CC"), everythingOnTheWire()}));

  BufferStream over;
  test::fill(over, Bytes(1000, 0xEE));
  ASSERT_EQ(over.buffer().setWritePosition(400), StatusOk);
  EXPECT_TRUE(object->write(over));
  EXPECT_EQ(test::contentOf(over), test::joined({Bytes(400, 0xEE), everythingOnTheWire(),
                                                 Bytes(600 - everythingOnTheWire().size(), 0xEE)}));
  EXPECT_EQ(over.buffer().writePosition(), 400 + everythingOnTheWire().size());
}

TEST(GenericObject, CrossesEveryBoundaryOfTheGrowingBuffer) {
  for (unsigned int before = 0; before < 520; before += 3) {
    BufferStream stream;
    if (before != 0) {
      test::fill(stream, Bytes(before, 0xAA));
    }
    EXPECT_TRUE(withEverything()->write(stream));
    EXPECT_EQ(test::contentOf(stream), test::joined({Bytes(before, 0xAA), everythingOnTheWire()}));
  }
}

TEST(GenericObject, ManyPropertiesTravel) {
  const Object object = create(7);
  BufferStream expected;
  EXPECT_TRUE(expected.writeUint16(7));
  EXPECT_TRUE(expected.writeUint32(3000));
  for (unsigned short key = 1; key <= 3000; ++key) {
    Variant value;
    EXPECT_EQ(value.setUint16Value(key), StatusOk);
    EXPECT_EQ(object->setProperty(key, value), StatusOk);
    EXPECT_TRUE(expected.writeUint16(4));
    EXPECT_TRUE(expected.writeUint16(key));
    EXPECT_TRUE(expected.writeUint16(key));
  }
  EXPECT_EQ(written(*object), test::contentOf(expected));
  EXPECT_EQ(test::writtenToForeign(*object), test::contentOf(expected));
  EXPECT_TRUE(*fromWire(test::contentOf(expected)) == *object);
}

/// What reading `content` takes in memory, from either kind of stream.
void expectBoundedMemory(const Bytes& content, bool result) {
  for (const bool inMemory : {true, false}) {
    BufferStream memory;
    test::fill(memory, content);
    test::LimitedStream foreign(content);
    IStream& stream = inMemory ? static_cast<IStream&>(memory) : foreign;
    const test::Allocations allocations = test::allocationsOf(
        [&] { EXPECT_EQ(static_cast<bool>(GenericObject::create(stream)), result); });
    EXPECT_LE(allocations.bytes, 64 * content.size() + 4096);
    EXPECT_EQ(allocations.leaked, 0);
  }
}

TEST(GenericObject, HostileCountsFailInBoundedMemory) {
  expectBoundedMemory(bytes("07 00 FF FF FF FF"), false);
  expectBoundedMemory(bytes("07 00 FF FF FF FF 02 00 01 00 01"), false);
  expectBoundedMemory(bytes("07 00 01 00 00 00 0F 00 01 00 FF FF FF FF"), false);
  expectBoundedMemory(bytes("07 00 01 00 00 00 0C 00 01 00 FF FF FF FF 61"), false);
  expectBoundedMemory(bytes("07 00 01 00 00 00 0D 00 01 00 07 00 FF FF FF FF"), false);
  expectBoundedMemory(test::joined({bytes("07 00 FF FF FF FF"), Bytes(40000, 0x00)}), false);
}

TEST(GenericObject, WhatTakesFewBytesTakesBoundedMemory) {
  const auto listOf = [](const char* element, unsigned int count) {
    BufferStream header;
    EXPECT_TRUE(header.writeUint16(7));
    EXPECT_TRUE(header.writeUint32(1));
    EXPECT_TRUE(header.writeUint32(0x0001000F));
    EXPECT_TRUE(header.writeUint32(count));
    Bytes content = test::contentOf(header);
    for (unsigned int i = 0; i < count; ++i) {
      content = test::joined({content, bytes(element)});
    }
    return content;
  };
  expectBoundedMemory(listOf("00 00 00 00", 500), true);
  expectBoundedMemory(listOf("0C 00 00 00 00 00 00 00", 500), true);
  expectBoundedMemory(listOf("0D 00 00 00 07 00 00 00 00 00", 500), true);
  expectBoundedMemory(listOf("0D 00 00 00 00 00", 500), true);
  expectBoundedMemory(listOf("0F 00 00 00 00 00 00 00", 500), true);
  expectBoundedMemory(listOf("0E 00 00 00 64 00 01 00", 500), true);
  expectBoundedMemory(listOf("0D 00 00 00 07 00 01 00 00 00 00 00 00 00", 500), true);
}

TEST(GenericObject, FailsCleanlyWhenMemoryRunsOut) {
  everyAllocationFails([] {
    const Object object = create(7);
    EXPECT_TRUE(!object || object->propertyCount() == 0);
  });

  bool failed = false;
  everyAllocationFails([&failed] {
    Object source;
    {
      const AllocationsSucceed succeed;
      source = withEverything();
    }
    const Object copy = GenericObject::create(*source);
    EXPECT_TRUE(!copy || *copy == *source);
    failed = failed || !copy;
  });
  EXPECT_TRUE(failed);
}

TEST(GenericObject, CloneGivesAnEmptyHandleOrThrowsWhenMemoryRunsOut) {
  bool failed = false;
  everyAllocationFails([&failed] {
    Object source;
    {
      const AllocationsSucceed succeed;
      source = withEverything();
    }
    try {
      const Object clone = source->clone();
      EXPECT_TRUE(!clone || *clone == *source);
      failed = failed || !clone;
    } catch (const std::bad_alloc&) {
      failed = true;  // out of the flat record's clone()
    }
  });
  EXPECT_TRUE(failed);
}

TEST(GenericObject, SettersThatRunOutOfMemoryChangeNothing) {
  unsigned int failures = 0;
  everyAllocationFails([&failures] {
    Object object;
    {
      const AllocationsSucceed succeed;
      object = create(7);
    }
    for (unsigned short key = 1; key <= 9; ++key) {
      const unsigned int before = object->propertyCount();
      const Status status = object->setUint8Property(key, 1);
      EXPECT_TRUE(status == StatusOk || status == StatusOutOfMemory);
      EXPECT_EQ(object->propertyCount(), before + (status == StatusOk ? 1 : 0));
      EXPECT_EQ(object->propertyExists(key), status == StatusOk);
      failures += status != StatusOk ? 1 : 0;
    }
  });
  EXPECT_GT(failures, 0U);
  bool failed = false;
  everyAllocationFails([&failed] {
    GenericObject object(7);
    const Status status = object.setProperty(1, Variant());
    EXPECT_EQ(object.propertyExists(1), status == StatusOk);
    EXPECT_TRUE(status == StatusOk || status == StatusOutOfMemory);
    failed = failed || status != StatusOk;
  });
  EXPECT_TRUE(failed);
}

TEST(GenericObject, AReadThatRunsOutOfMemoryLeavesTheObject) {
  everythingOnTheWire();  // made once, and kept
  for (const bool inMemory : {true, false}) {
    bool failed = false;
    everyAllocationFails([&] {
      BufferStream memory;
      std::unique_ptr<test::LimitedStream> foreign;
      Object object;
      {
        const AllocationsSucceed succeed;
        test::fill(memory, everythingOnTheWire());
        foreign = std::make_unique<test::LimitedStream>(everythingOnTheWire());
        object = withKeys({5});
      }
      const bool complete = object->read(inMemory ? static_cast<IStream&>(memory) : *foreign);
      const AllocationsSucceed succeed;
      EXPECT_EQ(written(*object), complete ? everythingOnTheWire() : written(*withKeys({5})));
      failed = failed || !complete;
    });
    EXPECT_TRUE(failed);
  }
}

TEST(GenericObject, WritingOutOfMemoryThrowsBadAlloc) {
  bool failed = false;
  everyAllocationFails([&failed] {
    Object object;
    BufferStream stream;
    {
      const AllocationsSucceed succeed;
      object = withEverything();
    }
    try {
      EXPECT_TRUE(object->write(stream));
    } catch (const std::bad_alloc&) {
      failed = true;
    }
  });
  EXPECT_TRUE(failed);
}

/// A memory stream of an application, which sees every byte that comes and goes.
class Watched : public BufferStream {
 public:
  unsigned int read(unsigned char* target, unsigned int count) override {
    const unsigned int given = BufferStream::read(target, count);
    bytesRead += given;
    return given;
  }
  unsigned int write(const unsigned char* source, unsigned int count) override {
    bytesWritten += count;
    return BufferStream::write(source, count);
  }
  std::size_t bytesRead = 0;
  std::size_t bytesWritten = 0;
};

TEST(GenericObject, TravelsThroughTheFunctionsOfADerivedMemoryStream) {
  Watched stream;
  EXPECT_TRUE(withEverything()->write(stream));
  EXPECT_EQ(stream.bytesWritten, everythingOnTheWire().size());
  EXPECT_EQ(test::contentOf(stream), everythingOnTheWire());
  const Object read = GenericObject::create(stream);
  ASSERT_NE(read, nullptr);
  EXPECT_TRUE(*read == *withEverything());
  EXPECT_EQ(stream.bytesRead, everythingOnTheWire().size());
}

/// A generic object that writes itself in its own way.
class LoudObject : public GenericObject {
 public:
  LoudObject() : GenericObject(7) {}
  [[nodiscard]] bool write(IStream& stream) const override { return stream.writeUint8('!'); }
};

TEST(GenericObject, OfAnApplicationIsWrittenByItsVirtualFunction) {
  const Object loud(new LoudObject);
  const Object object = withKeys({5});
  EXPECT_EQ(object->setGenericObjectProperty(6, loud), StatusOk);
  EXPECT_EQ(object->setUint8Property(7, 7), StatusOk);
  test::expectWrites(*object,
                     bytes("07 00 03 00 00 00 02 00 05 00 05 0D 00 06 00 21 02 00 07 00 07"));
}

/// One that fails to write itself.
class FailingObject : public GenericObject {
 public:
  FailingObject() : GenericObject(7) {}
  [[nodiscard]] bool write(IStream& stream) const override {
    static_cast<void>(stream.writeUint8('!'));
    return false;
  }
};

TEST(GenericObject, AFailureInTheMiddleStopsTheWriteThere) {
  const Object object = withKeys({5});
  EXPECT_EQ(object->setGenericObjectProperty(6, Object(new FailingObject)), StatusOk);
  EXPECT_EQ(object->setUint8Property(7, 7), StatusOk);
  const Bytes expected = bytes("07 00 03 00 00 00 02 00 05 00 05 0D 00 06 00 21");
  BufferStream memory;
  EXPECT_FALSE(object->write(memory));
  EXPECT_EQ(test::contentOf(memory), expected);
  test::LimitedStream foreign;
  EXPECT_FALSE(object->write(foreign));
  EXPECT_EQ(foreign.taken(), expected);
}

}  // namespace
}  // namespace trelvo::gom
