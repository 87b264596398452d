#include <gtest/gtest.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/InternalVariant.h>

#include <type_traits>

#include "tests/support/WireChecks.h"

namespace trelvo::gom {
namespace {

using test::bytes;

static_assert(std::is_base_of_v<Variant, InternalVariant>);
static_assert(sizeof(InternalVariant) == sizeof(Variant), "no field of its own");
static_assert(!std::is_default_constructible_v<InternalVariant>, "a property has a key");

InternalVariant holding(unsigned short key, const SharedPointer<GenericObject>& object) {
  InternalVariant variant(key);
  EXPECT_EQ(variant.setGenericObjectValue(object), StatusOk);
  return variant;
}

TEST(InternalVariant, IsBlankUnderItsKey) {
  const InternalVariant variant(7);
  EXPECT_EQ(variant.key(), 7U);
  EXPECT_EQ(variant.dataType(), Variant::TypeNone);
  test::expectWrites(variant, bytes("00 00 07 00"));
}

TEST(InternalVariant, TakesAVariantUnderAnotherKey) {
  const SharedPointer<GenericObject> object = GenericObject::create(3);
  Variant source(1);
  EXPECT_EQ(source.setGenericObjectValue(object), StatusOk);
  const InternalVariant variant(8, source);
  EXPECT_EQ(variant.key(), 8U);
  EXPECT_EQ(variant.dataType(), Variant::TypeGenericObject);
  EXPECT_EQ(object->referenceCount(), 3) << "the target is shared";
}

TEST(InternalVariant, CopiesAndAssignmentsShare) {
  const SharedPointer<GenericObject> object = GenericObject::create(3);
  const InternalVariant source = holding(5, object);
  const InternalVariant copy(source);
  InternalVariant assigned(9);
  assigned = source;
  EXPECT_EQ(object->referenceCount(), 4);
  EXPECT_TRUE(copy == source);
  EXPECT_TRUE(assigned == source);
  EXPECT_EQ(assigned.key(), 5U);
  EXPECT_FALSE(copy == InternalVariant(5));
}

TEST(InternalVariant, CloneFromCopiesDeeply) {
  const SharedPointer<GenericObject> object = GenericObject::create(3);
  const InternalVariant source = holding(5, object);
  InternalVariant clone(9);
  EXPECT_EQ(clone.cloneFrom(source), StatusOk);
  EXPECT_TRUE(clone == source);
  EXPECT_EQ(object->referenceCount(), 2);
}

TEST(InternalVariant, IsWrittenInAListLikeAnyVariant) {
  auto* const item = new InternalVariant(5);
  EXPECT_EQ(item->setUint8Value(1), StatusOk);
  test::expectWrites(*item, bytes("02 00 05 00 01"));
  delete item;
}

}  // namespace
}  // namespace trelvo::gom
