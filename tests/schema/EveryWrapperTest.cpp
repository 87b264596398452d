// The promises that all wrappers of one generic object share, held against each of them.

#include <gtest/gtest.h>
#include <trelvo/schema/CdmaCellMeasurement.h>
#include <trelvo/schema/CellularObjectInjection.h>
#include <trelvo/schema/EUtraCellMeasurement.h>
#include <trelvo/schema/GeranCellMeasurement.h>
#include <trelvo/schema/GnssInjection.h>
#include <trelvo/schema/GnssMeasurement.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/MeasurementContainer.h>
#include <trelvo/schema/UtraFddCellMeasurement.h>
#include <trelvo/schema/UtraTddCellMeasurement.h>
#include <trelvo/schema/WlanInjection.h>
#include <trelvo/schema/WlanMeasurement.h>

#include <string>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::GenericObject;
using gom::SharedPointer;
using test::written;

/// A class and the key of the objects that it goes over.
template <class T, unsigned short key>
struct Row {
  using Wrapper = T;
  static constexpr unsigned short kKey = key;
};

/// Names the cases of a suite.
struct ByKey {
  template <class R>
  static std::string GetName(int /*index*/) {  // NOLINT(readability-identifier-naming)
    return std::to_string(R::kKey);
  }
};

using Rows =
    ::testing::Types<Row<MeasurementContainer, 1>, Row<GeranCellMeasurement, 2>,
                     Row<UtraFddCellMeasurement, 3>, Row<UtraTddCellMeasurement, 4>,
                     Row<Injection, 5>, Row<CellularObjectInjection, 12>, Row<GnssInjection, 13>,
                     Row<EUtraCellMeasurement, 14>, Row<CdmaCellMeasurement, 17>,
                     Row<WlanMeasurement, 20>, Row<GnssMeasurement, 21>, Row<WlanInjection, 22>>;

template <class R>
class EveryWrapper : public ::testing::Test {
 protected:
  SharedPointer<typename R::Wrapper> wrapper = R::Wrapper::create();
};
TYPED_TEST_SUITE(EveryWrapper, Rows, ByKey);

TYPED_TEST(EveryWrapper, IsMadeOverAnEmptyObjectOfItsKey) {
  ASSERT_TRUE(this->wrapper);
  EXPECT_EQ(this->wrapper->key(), TypeParam::kKey);
  EXPECT_TRUE(this->wrapper->isEmpty());
  EXPECT_EQ(this->wrapper->object().propertyCount(), 0U);
  EXPECT_EQ(this->wrapper->referenceCount(), 1);
}

TYPED_TEST(EveryWrapper, GoesOverAnObjectOfItsKeyAndOverNoOther) {
  using Wrapper = typename TypeParam::Wrapper;
  for (unsigned short key = 0; key <= 23; ++key) {
    const SharedPointer<GenericObject> object = GenericObject::create(key);
    const SharedPointer<Wrapper> over = Wrapper::create(object);
    ASSERT_EQ(static_cast<bool>(over), key == TypeParam::kKey) << key;
    EXPECT_TRUE(!over || over->wrappedObject() == object);
  }
  EXPECT_FALSE(Wrapper::create(SharedPointer<GenericObject>()));
}

TYPED_TEST(EveryWrapper, AssignmentAndCopyShareTheObject) {
  using Wrapper = typename TypeParam::Wrapper;
  Wrapper assigned;
  assigned = *this->wrapper;
  EXPECT_EQ(assigned.wrappedObject(), this->wrapper->wrappedObject());
  const Wrapper& self = assigned;
  assigned = self;
  EXPECT_EQ(assigned.wrappedObject(), this->wrapper->wrappedObject());
  const Wrapper copy(*this->wrapper);
  EXPECT_EQ(assigned.object().setUint32Property(500, 7), StatusOk);
  unsigned int seen = 0;
  EXPECT_EQ(copy.object().getUint32Property(500, seen), StatusOk);
  EXPECT_EQ(seen, 7U);
}

TYPED_TEST(EveryWrapper, DumpHasNoEffect) {
  ASSERT_EQ(this->wrapper->object().setUint32Property(205, 7), StatusOk);
  const test::Bytes before = written(*this->wrapper);
  this->wrapper->dump();
  EXPECT_EQ(written(*this->wrapper), before);
}

TYPED_TEST(EveryWrapper, WithoutAnObjectIsEmptyAndHarmless) {
  typename TypeParam::Wrapper none;
  EXPECT_FALSE(none.wrappedObject());
  EXPECT_TRUE(none.isEmpty());
  EXPECT_FALSE(none.valueExists(1));
  none.unset(0xFFFFFFFF);
  none.dump();
  EXPECT_FALSE(none.wrappedObject());
}

}  // namespace
}  // namespace trelvo::schema
