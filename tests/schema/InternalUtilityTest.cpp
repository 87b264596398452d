#include <gtest/gtest.h>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/InternalUtility.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::ObjectBase;
using gom::SharedPointer;
using gom::ValueCollection;
using test::bytes;
using test::written;

class InternalUtilityTest : public testing::Test {
 public:
  SharedPointer<GenericObject> object = GenericObject::create(7);
  SharedPointer<ValueCollection> collection;
  bool created = true;
};

TEST_F(InternalUtilityTest, GetCollectionMakesAnAbsentListAndSaysSo) {
  created = false;
  EXPECT_EQ(InternalUtility::getCollection(object, 5, collection, created), StatusOk);
  EXPECT_TRUE(created);
  ASSERT_TRUE(collection);
  EXPECT_EQ(collection->count(), 0U);
  SharedPointer<ValueCollection> stored;
  EXPECT_EQ(object->getCollectionProperty(5, stored), StatusOk);
  EXPECT_EQ(stored, collection);
}

TEST_F(InternalUtilityTest, GetCollectionGivesTheOneThatIsThere) {
  const SharedPointer<ValueCollection> stored = ValueCollection::create();
  object->setCollectionProperty(5, stored);
  EXPECT_EQ(InternalUtility::getCollection(object, 5, collection, created), StatusOk);
  EXPECT_FALSE(created);
  EXPECT_EQ(collection, stored);
}

TEST_F(InternalUtilityTest, GetCollectionRefusesAPropertyOfAnotherType) {
  object->setUint32Property(5, 1);
  EXPECT_EQ(InternalUtility::getCollection(object, 5, collection, created), StatusWrongState);
  EXPECT_FALSE(created);
  EXPECT_FALSE(collection);
}

TEST_F(InternalUtilityTest, GetCollectionRefusesAListThatFailedToRead) {
  gom::Variant broken;
  ASSERT_FALSE(test::readFrom(broken, bytes("0F00 0500 01000000")));
  ASSERT_EQ(object->setProperty(5, broken), StatusOk);
  EXPECT_EQ(InternalUtility::getCollection(object, 5, collection, created), StatusWrongState);
  EXPECT_FALSE(created);
  EXPECT_EQ(InternalUtility::addObjectBaseToCollection(object, 5, GeranCellDn::create()),
            StatusWrongState);
}

TEST_F(InternalUtilityTest, NothingCanBeAddedToAnEmptyHandle) {
  object.clear();
  EXPECT_EQ(InternalUtility::getCollection(object, 5, collection, created), StatusWrongState);
  EXPECT_FALSE(created);
  EXPECT_EQ(InternalUtility::addGenericObjectToCollection(object, 5, GenericObject::create(2)),
            StatusWrongState);
  EXPECT_EQ(InternalUtility::addObjectBaseToCollection(object, 5, GeranCellDn::create()),
            StatusWrongState);
}

TEST_F(InternalUtilityTest, AddsGenericObjectsInOrderUnderTheKey0) {
  EXPECT_EQ(InternalUtility::addGenericObjectToCollection(object, 5, GenericObject::create(2)),
            StatusOk);
  EXPECT_EQ(InternalUtility::addGenericObjectToCollection(object, 5, GenericObject::create(3)),
            StatusOk);
  EXPECT_EQ(written(*object), bytes("0700 01000000"
                                    "0F00 0500 02000000"
                                    "0D00 0000 0200 00000000"
                                    "0D00 0000 0300 00000000"));
}

TEST_F(InternalUtilityTest, AddsFlatRecordsUnderTheKey0) {
  EXPECT_EQ(InternalUtility::addObjectBaseToCollection(object, 5, GeranCellDn::create()), StatusOk);
  EXPECT_EQ(written(*object), bytes("0700 01000000"
                                    "0F00 0500 01000000"
                                    "0E00 0000 6400 01 00"));
}

TEST_F(InternalUtilityTest, AddedObjectsAreShared) {
  const SharedPointer<GenericObject> member = GenericObject::create(2);
  EXPECT_EQ(InternalUtility::addGenericObjectToCollection(object, 5, member), StatusOk);
  EXPECT_EQ(member->referenceCount(), 2);
  object.clear();
  EXPECT_EQ(member->referenceCount(), 1);
}

TEST_F(InternalUtilityTest, AFailedFirstAddLeavesNoListBehind) {
  EXPECT_EQ(InternalUtility::addObjectBaseToCollection(object, 5, SharedPointer<ObjectBase>()),
            StatusWrongState);
  EXPECT_FALSE(object->propertyExists(5));
  EXPECT_EQ(
      InternalUtility::addGenericObjectToCollection(object, 5, SharedPointer<GenericObject>()),
      StatusWrongState);
  EXPECT_FALSE(object->propertyExists(5));
}

TEST_F(InternalUtilityTest, AFailedLaterAddKeepsTheListAsItWas) {
  InternalUtility::addObjectBaseToCollection(object, 5, GeranCellDn::create());
  const test::Bytes before = written(*object);
  EXPECT_EQ(InternalUtility::addObjectBaseToCollection(object, 5, SharedPointer<ObjectBase>()),
            StatusWrongState);
  EXPECT_EQ(written(*object), before);
}

TEST_F(InternalUtilityTest, AFailedAddKeepsAnEmptyListThatWasThere) {
  object->setCollectionProperty(5, ValueCollection::create());
  EXPECT_EQ(InternalUtility::addObjectBaseToCollection(object, 5, SharedPointer<ObjectBase>()),
            StatusWrongState);
  EXPECT_TRUE(object->propertyExists(5));
}

TEST_F(InternalUtilityTest, APropertyOfAnotherTypeIsLeftAlone) {
  object->setUint32Property(5, 1);
  EXPECT_EQ(InternalUtility::addObjectBaseToCollection(object, 5, GeranCellDn::create()),
            StatusWrongState);
  unsigned int value = 0;
  EXPECT_EQ(object->getUint32Property(5, value), StatusOk);
  EXPECT_EQ(value, 1U);
}

}  // namespace
}  // namespace trelvo::schema
