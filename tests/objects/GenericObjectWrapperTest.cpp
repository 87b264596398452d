#include <gtest/gtest.h>
#include <trelvo/GenericObjectWrapper.h>
#include <trelvo/gom/CharacterData.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/schema/GeranCellDn.h>

#include <functional>
#include <limits>
#include <new>
#include <type_traits>

#include "Records.h"
#include "tests/support/AllocationFailure.h"
#include "tests/support/WireChecks.h"

namespace trelvo {
namespace {

using gom::GenericObject;
using gom::ObjectBase;
using gom::SharedPointer;
using gom::ValueCollection;
using schema::GeranCellDn;
using test::bytes;
using test::everyAllocationFails;
using test::PairRecord;
using Object = SharedPointer<GenericObject>;
using Wrapper = SharedPointer<GenericObjectWrapper>;

static_assert(std::is_base_of_v<gom::ReferenceCountable, GenericObjectWrapper>);
static_assert(std::is_base_of_v<gom::IValuable, GenericObjectWrapper>);
static_assert(std::is_base_of_v<ISerializable, GenericObjectWrapper>);

/// A composite class of an application.
class Composite : public GenericObjectWrapper {
 public:
  using GenericObjectWrapper::construct;
};

Status statusOf(const std::function<void()>& call) {
  try {
    call();
    return StatusOk;
  } catch (Status status) {
    return status;
  }
}

TEST(GenericObjectWrapper, IsMadeOverANewObject) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  ASSERT_NE(wrapper, nullptr);
  EXPECT_EQ(wrapper->key(), 7U);
  EXPECT_EQ(wrapper->object().key(), 7U);
  EXPECT_TRUE(wrapper->isEmpty());
  EXPECT_EQ(wrapper->referenceCount(), 1);
}

TEST(GenericObjectWrapper, SharesAGivenObject) {
  const Object object = GenericObject::create(7);
  const Wrapper first = GenericObjectWrapper::create(object);
  const Wrapper second = GenericObjectWrapper::create(object);
  EXPECT_EQ(first->wrappedObject(), object);
  EXPECT_EQ(&first->object(), object.get());
  EXPECT_EQ(object->referenceCount(), 3);
  EXPECT_EQ(first->setProperty(5, 42, "number"), StatusOk);
  int value = 0;
  EXPECT_EQ(second->getProperty(5, value, "number"), StatusOk);
  EXPECT_EQ(value, 42) << "both show one state";
}

TEST(GenericObjectWrapper, RefusesAnEmptyHandleByThrowing) {
  EXPECT_EQ(statusOf([] { static_cast<void>(GenericObjectWrapper::create(Object())); }),
            StatusInternal);
}

TEST(GenericObjectWrapper, WithoutAnObjectAnswersWhatItCan) {
  GenericObjectWrapper wrapper;
  EXPECT_EQ(wrapper.key(), 0U);
  EXPECT_EQ(wrapper.wrappedObject(), nullptr);
  EXPECT_TRUE(wrapper.isEmpty());
  EXPECT_FALSE(wrapper.valueExists(1));
  EXPECT_EQ(wrapper.clone(), nullptr);
  EXPECT_EQ(wrapper.getObjectProperty<GeranCellDn>(5), nullptr);
  wrapper.dump();
  wrapper.unset(~0U);
  BufferStream stream;
  EXPECT_FALSE(wrapper.write(stream));
  EXPECT_FALSE(stream.good());
  test::fill(stream, bytes("07 00 00 00 00 00"));
  EXPECT_FALSE(wrapper.read(stream));
  EXPECT_EQ(stream.offset(), 0U);
}

TEST(GenericObjectWrapper, WithoutAnObjectThrowsWhereOneIsNeeded) {
  GenericObjectWrapper wrapper;
  const GenericObjectWrapper& constant = wrapper;
  int number = 5;
  Object object;
  EXPECT_EQ(statusOf([&] { static_cast<void>(wrapper.object()); }), StatusFailed);
  EXPECT_EQ(statusOf([&] { static_cast<void>(constant.object()); }), StatusFailed);
  EXPECT_EQ(statusOf([&] { wrapper.setProperty(1, number, "x"); }), StatusFailed);
  EXPECT_EQ(statusOf([&] { constant.getProperty(1, number, "x"); }), StatusFailed);
  EXPECT_EQ(statusOf([&] { constant.getProperty(1, object, "x"); }), StatusFailed);
  EXPECT_EQ(number, 5);
}

TEST(GenericObjectWrapper, AssignmentSharesTheOthersObject) {
  const Wrapper source = GenericObjectWrapper::create(7);
  GenericObjectWrapper target;
  target = *source;
  const GenericObjectWrapper copy(*source);
  EXPECT_EQ(target.wrappedObject(), source->wrappedObject());
  EXPECT_EQ(copy.wrappedObject(), source->wrappedObject());
  EXPECT_EQ(copy.referenceCount(), 0);
}

TEST(GenericObjectWrapper, ConstructMakesOrSharesAnObject) {
  Composite composite;
  EXPECT_TRUE(composite.construct(9));
  EXPECT_EQ(composite.key(), 9U);
  const Object object = GenericObject::create(7);
  composite.construct(object);
  EXPECT_EQ(composite.wrappedObject(), object);
  composite.construct(Object());
  EXPECT_EQ(composite.wrappedObject(), nullptr);
}

TEST(GenericObjectWrapper, ValueExistsIsFalseForEveryMask) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(wrapper->valueExists(0));
    for (unsigned int bit = 0; bit < 32; ++bit) {
      EXPECT_FALSE(wrapper->valueExists(1U << bit));
    }
    EXPECT_FALSE(wrapper->valueExists(~0U));
    EXPECT_EQ(wrapper->setProperty(1, 1, "also after properties were set"), StatusOk);
  }
}

TEST(GenericObjectWrapper, UnsetDoesNothing) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  EXPECT_EQ(wrapper->setProperty(1, 1, "x"), StatusOk);
  wrapper->unset(~0U);
  EXPECT_EQ(wrapper->object().propertyCount(), 1U);
  EXPECT_FALSE(wrapper->isEmpty());
}

TEST(GenericObjectWrapper, CloneIsADeepCopyOfTheObject) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  EXPECT_EQ(wrapper->setProperty(1, GenericObject::create(8), "x"), StatusOk);
  const Object clone = wrapper->clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_TRUE(*clone == wrapper->object());
  EXPECT_EQ(clone->referenceCount(), 1);
  Object nested;
  EXPECT_EQ(clone->getGenericObjectProperty(1, nested), StatusOk);
  EXPECT_EQ(nested->setUint8Property(1, 1), StatusOk);
  EXPECT_FALSE(*clone == wrapper->object());
}

TEST(GenericObjectWrapper, TravelsAsItsObject) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  EXPECT_EQ(wrapper->setProperty(5, -2, "x"), StatusOk);
  test::expectWrites(*wrapper, bytes("07 00 01 00 00 00 05 00 05 00 FE FF FF FF"));
  test::expectReads([] { return GenericObjectWrapper::create(9); },
                    bytes("07 00 01 00 00 00 05 00 05 00 FE FF FF FF"),
                    [&](const GenericObjectWrapper& read) {
                      EXPECT_EQ(read.key(), 7U) << "whatever key it had";
                      EXPECT_TRUE(read.object() == wrapper->object());
                    });
}

TEST(GenericObjectWrapper, AFailedReadLeavesTheObject) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  EXPECT_EQ(wrapper->setProperty(5, 1, "x"), StatusOk);
  EXPECT_FALSE(test::readFrom(*wrapper, bytes("08 00 01 00 00 00")));
  EXPECT_EQ(wrapper->key(), 7U);
  EXPECT_EQ(wrapper->object().propertyCount(), 1U);
}

TEST(GenericObjectWrapper, CheckErrorGivesTheStatusBack) {
  const GenericObjectWrapper wrapper;
  for (unsigned int number = 0; number < 20; ++number) {
    const auto status = static_cast<Status>(number);
    EXPECT_EQ(wrapper.checkError(status, "set", "x"), status);
    EXPECT_EQ(wrapper.checkError(status, nullptr, nullptr), status);
  }
}

template <class T>
void expectProperty(const T& value, const T& other, unsigned short tag) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  T got = other;
  EXPECT_EQ(wrapper->getProperty(5, got, "x"), StatusNotFound);
  EXPECT_EQ(got, other);
  EXPECT_EQ(wrapper->setProperty(5, other, "x"), StatusOk);
  EXPECT_EQ(wrapper->setProperty(5, value, "x"), StatusOk);
  EXPECT_EQ(wrapper->object().findProperty(5)->dataType(), tag);
  EXPECT_EQ(wrapper->getProperty(5, got, "x"), StatusOk);
  EXPECT_EQ(got, value);
  EXPECT_EQ(wrapper->object().setBooleanProperty(6, true), StatusOk);
  EXPECT_EQ(wrapper->setProperty(6, value, "x"), StatusWrongState);
  EXPECT_EQ(wrapper->getProperty(6, got, "x"), StatusWrongState);
}

TEST(GenericObjectWrapper, ServesTheTypesOfTheSchema) {
  expectProperty<int>(std::numeric_limits<int>::min(), 1, gom::Variant::TypeInt32);
  expectProperty<unsigned int>(~0U, 1, gom::Variant::TypeUint32);
  expectProperty<long long>(std::numeric_limits<long long>::min(), 1, gom::Variant::TypeInt64);
  expectProperty<SharedPointer<ObjectBase>>(PairRecord::create(1, 2), PairRecord::create(3, 4),
                                            gom::Variant::TypeObject);
  expectProperty<Object>(GenericObject::create(1), GenericObject::create(2),
                         gom::Variant::TypeGenericObject);
  expectProperty<SharedPointer<ValueCollection>>(
      ValueCollection::create(), ValueCollection::create(), gom::Variant::TypeCollection);
}

TEST(GenericObjectWrapper, RefusesEmptyHandles) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  EXPECT_EQ(wrapper->setProperty(5, SharedPointer<ObjectBase>(), "x"), StatusWrongState);
  EXPECT_EQ(wrapper->setProperty(5, Object(), "x"), StatusWrongState);
  EXPECT_TRUE(wrapper->isEmpty());
}

TEST(GenericObjectWrapper, GivesRecordsAsTheirClass) {
  const Wrapper wrapper = GenericObjectWrapper::create(7);
  const SharedPointer<GeranCellDn> dn = GeranCellDn::create(1, 2, 3, 4);
  const SharedPointer<test::TaggedCellDn> tagged(new test::TaggedCellDn);
  EXPECT_EQ(wrapper->setProperty<SharedPointer<ObjectBase>>(5, dn, "x"), StatusOk);
  EXPECT_EQ(wrapper->setProperty<SharedPointer<ObjectBase>>(6, tagged, "x"), StatusOk);
  EXPECT_EQ(wrapper->setProperty(7, 1, "x"), StatusOk);
  EXPECT_EQ(wrapper->getObjectProperty<GeranCellDn>(5), dn);
  EXPECT_EQ(wrapper->getObjectProperty<ObjectBase>(5), dn);
  EXPECT_EQ(wrapper->getObjectProperty<GeranCellDn>(6), tagged) << "a derived class too";
  EXPECT_EQ(wrapper->getObjectProperty<test::TaggedCellDn>(5), nullptr);
  EXPECT_EQ(wrapper->getObjectProperty<PairRecord>(5), nullptr) << "another class";
  EXPECT_EQ(wrapper->getObjectProperty<GeranCellDn>(7), nullptr) << "another type";
  EXPECT_EQ(wrapper->getObjectProperty<GeranCellDn>(8), nullptr) << "absent";
  EXPECT_EQ(dn->referenceCount(), 2);
}

TEST(GenericObjectWrapper, FailsCleanlyWhenMemoryRunsOut) {
  unsigned int thrown = 0;
  unsigned int empty = 0;
  everyAllocationFails([&] {
    try {
      const Wrapper wrapper = GenericObjectWrapper::create(7);
      empty += wrapper ? 0 : 1;
    } catch (const std::bad_alloc&) {
      ++thrown;  // for the wrapper itself
    }
  });
  EXPECT_EQ(thrown, 2U);
  EXPECT_GE(empty, 2U);

  Object object = GenericObject::create(7);
  EXPECT_EQ(everyAllocationFails([&object] {
              try {
                EXPECT_NE(GenericObjectWrapper::create(object), nullptr);
              } catch (const std::bad_alloc&) {
                EXPECT_EQ(object->referenceCount(), 1);
              }
            }),
            1U);
  everyAllocationFails([] {
    Composite composite;
    const bool made = composite.construct(9);
    EXPECT_EQ(made, composite.wrappedObject() != nullptr);
  });
}

}  // namespace
}  // namespace trelvo
