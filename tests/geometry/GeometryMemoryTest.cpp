// Geometry works in place: it asks for no memory, and what its headers call noexcept is.

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include <trelvo/Midpoint.h>
#include <trelvo/ShapeMatrix.h>
#include <trelvo/StateEstimate.h>
#include <trelvo/StateEstimateCovariance.h>
#include <trelvo/Symmetric2by2Matrix.h>
#include <trelvo/Symmetric4by4Matrix.h>
#include <trelvo/gom/GenericObject.h>
#include <trelvo/gom/ValueCollection.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/Injection.h>
#include <trelvo/schema/Utility.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>
#include <trelvo/schema/WlanInjection.h>
#include <trelvo/schema/WlanMeasurement.h>

#include "tests/support/AllocationFailure.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using gom::ValueCollection;
using gom::Variant;
using test::allocationsOf;

TEST(GeometryMemory, TheCounterSeesAnAllocation) {
  EXPECT_EQ(allocationsOf([] { delete Variant::create(); }).calls, 1U);
}

TEST(GeometryMemory, MatricesOfTwoAllocateNothing) {
  const auto used = allocationsOf([] {
    const Symmetric2by2Matrix a(4.0, 1.0, 3.0);
    const Symmetric2by2Matrix b(2.0, 0.5, 5.0);
    Symmetric2by2Matrix result;
    EXPECT_TRUE(result.invmat(a));
    result.prodmat(a, b);
    result = (a + b - b) * b * 2.0 / 4.0;
    result += a;
    result -= b;
    result *= 3.0;
    result /= 2.0;
    EXPECT_NE(result.det() + result.trace() + result[2], 0.0);
    result.clear();
    EXPECT_EQ(result.det(), 0.0);
    EXPECT_FALSE(result.invmat(result));
  });
  EXPECT_EQ(used.calls, 0U);
}

TEST(GeometryMemory, MatricesOfFourAllocateNothing) {
  const auto used = allocationsOf([] {
    const Symmetric4by4Matrix a(4.0, 0.1, 0.2, 0.3, 5.0, 0.4, 0.5, 6.0, 0.6, 7.0);
    Symmetric4by4Matrix result(a);
    EXPECT_TRUE(result.invmat(a));
    result += a;
    EXPECT_TRUE(result.diagonalNonZero());
    result.clear();
    EXPECT_FALSE(result.diagonalNonZero());
    EXPECT_FALSE(result.invmat(result));
  });
  EXPECT_EQ(used.calls, 0U);
}

TEST(GeometryMemory, ShapesAndStatesAllocateNothing) {
  const auto used = allocationsOf([] {
    ShapeMatrix shape;
    double accumulated = 0.0;
    EXPECT_TRUE(shape.ellConvert(48.0, 120.0, 80.0, 30.0));
    EXPECT_TRUE(shape.increaseUncertainty(48.0, 10.0, 1.0, 1.0, 1.0, accumulated));
    EXPECT_TRUE(shape.increaseUncertaintyAtConstRate(48.0, 10.0, 1.0));
    StateEstimate state(48.0, 11.0, 0.0, 0.0);
    state += StateEstimate(0.001, 0.001, 0.0, 0.0);
    static_cast<void>(shape.reweightMeasurement({48.0, 11.0}, state, 1.0, 0.5, 2.0));
    StateEstimateCovariance covariance(1.0, 0.0, 1.0);
    covariance = shape;
    EXPECT_EQ(covariance[0], shape[0]);
    state.clear();
    EXPECT_EQ(state[0], 0.0);
  });
  EXPECT_EQ(used.calls, 0U);
}

TEST(GeometryMemory, EllipseComparisonAllocatesNothing) {
  const auto used = allocationsOf([] {
    const Midpoint here(48.0, 11.0);
    const Midpoint there(48.0005, 11.0005);
    ShapeMatrix wide;
    ShapeMatrix narrow;
    EXPECT_TRUE(wide.ellConvert(48.0, 200.0, 150.0, 30.0));
    EXPECT_TRUE(narrow.ellConvert(48.0, 100.0, 50.0, 60.0));
    EXPECT_GT(Utility::squaredDistance(48.0, 11.0, 48.0005, 11.0005, wide), 0.0);
    EXPECT_GT(Utility::mDistance(here, wide, there, narrow), 0.0);
    EXPECT_GT(Utility::bDistance(here, wide, there, narrow), 0.0);
    EXPECT_TRUE(Utility::intersect(here, wide, there, narrow));
    EXPECT_GT(here.distance(there), 0.0);
  });
  EXPECT_EQ(used.calls, 0U);
}

TEST(GeometryMemory, GeodesyAllocatesNothing) {
  const auto used = allocationsOf([] {
    double first = 0.0;
    double second = 0.0;
    EXPECT_EQ(Utility::wgs84Latitude(Utility::latitude(45.0)), 45.0);
    EXPECT_EQ(Utility::wgs84Longitude(Utility::longitude(90.0)), 90.0);
    EXPECT_GT(Utility::toDegrees(1.0F) * Utility::toRadians(1.0), 0.0);
    EXPECT_TRUE(Utility::meterInDegrees(48.0, first, second));
    EXPECT_TRUE(Utility::degreeInMeters(48.0, first, second));
    EXPECT_EQ(Utility::deCompLonRollOver(Utility::compLonRollOver(-179.0, 179.0)), -179.0);
    EXPECT_EQ(Utility::normalizedSinOrCosValue(2.0), 1.0);
    EXPECT_GT(Utility::cosAlpha(48.0, 11.0, 49.0, 12.0), 0.0);
    EXPECT_TRUE(Utility::distance(48.0, 11.0, 49.0, 12.0, first));
    EXPECT_TRUE(Utility::bearing(48.0, 11.0, 49.0, 12.0, first));
  });
  EXPECT_EQ(used.calls, 0U);
}

TEST(GeometryMemory, TilesAllocateNothing) {
  const auto used = allocationsOf([] {
    const unsigned long long id = Utility::wlanRmTileId(48.0, 11.0, 16);
    double latitude = 0.0;
    double longitude = 0.0;
    double height = 0.0;
    double width = 0.0;
    unsigned int level = 0;
    EXPECT_EQ(Utility::wlanRmTileLevel(id), 16U);
    EXPECT_TRUE(Utility::parseWlanRmTileId(id, latitude, longitude, level));
    EXPECT_TRUE(Utility::wlanRmTileSizeInDegrees(id, height, width));
    EXPECT_NE(Utility::wlanRmTileParentId(id, 10), 0U);
    // NOLINTNEXTLINE(readability-suspicious-call-argument): the tile lies around the position
    EXPECT_TRUE(Utility::isPositionInsideArea(latitude, longitude, height, width, 48.0, 11.0));
  });
  EXPECT_EQ(used.calls, 0U);
}

SharedPointer<gom::GenericObject> wlanOfLevel(signed char level) {
  const auto heard = WlanApMeasurement::create();
  heard->setRxLevel(level);
  const auto wlan = WlanMeasurement::create(WlanDn::create(1), 100);
  EXPECT_EQ(wlan->setWlanApMeasurement(heard), StatusOk);
  return wlan->wrappedObject();
}

// The measurements live on: a library that pools its blocks may want memory to keep what is freed.
TEST(GeometryMemory, WalksOverMeasurementsAllocateNothing) {
  std::vector<SharedPointer<gom::GenericObject>> measurements;
  const SharedPointer<ValueCollection> list = ValueCollection::create();
  for (int i = 0; i < 60; ++i) {
    measurements.push_back(wlanOfLevel(static_cast<signed char>(-40 - i * 7 % 50)));
    Variant* const element = Variant::create();
    EXPECT_EQ(element->setGenericObjectValue(measurements.back()), StatusOk);
    EXPECT_EQ(list->add(element), StatusOk);
  }
  const auto used = allocationsOf([&list] {
    EXPECT_TRUE(Utility::sortWlans(list->items[1], list->items[0]));
    EXPECT_TRUE(Utility::trimWlanCollection(20, list));
    EXPECT_EQ(list->count(), 20U);
  });
  EXPECT_EQ(used.calls, 0U);
}

TEST(GeometryMemory, WalksOverInjectionsAllocateNothing) {
  const auto injection = Injection::create();
  for (const unsigned int timeStamp : {20U, 50U, 30U}) {
    const auto wlan = WlanInjection::create();
    EXPECT_EQ(wlan->setTimeStamp(timeStamp), StatusOk);
    EXPECT_EQ(injection->addWlanInjection(wlan->wrappedObject()), StatusOk);
  }
  const SharedPointer<gom::GenericObject> object = injection->wrappedObject();
  const CellularObjectDn country(CellularObjectDn::NwGeran, 262);
  const auto used = allocationsOf([&object, &country] {
    EXPECT_EQ(Utility::injectionTimeStamp(object), 50U);
    EXPECT_NE(Utility::cellularObjectTechonology(country), 0);
  });
  EXPECT_EQ(used.calls, 0U);
}

// -- what the headers promise ---------------------------------------------------------------------

template <class Class>
constexpr bool kNeverThrows =
    std::is_nothrow_default_constructible_v<Class>&& std::is_nothrow_copy_constructible_v<Class>&&
        std::is_nothrow_copy_assignable_v<Class>&& std::is_nothrow_destructible_v<Class>;
static_assert(kNeverThrows<Symmetric2by2Matrix>);
static_assert(kNeverThrows<Symmetric4by4Matrix>);
static_assert(kNeverThrows<ShapeMatrix>);
static_assert(kNeverThrows<StateEstimate>);
static_assert(kNeverThrows<StateEstimateCovariance>);
static_assert(kNeverThrows<Midpoint>);

template <class Function>
struct IsNoexcept : std::false_type {};
template <class Result, class... Arguments>
struct IsNoexcept<Result (*)(Arguments...) noexcept> : std::true_type {};
template <class Class, class Result, class... Arguments>
struct IsNoexcept<Result (Class::*)(Arguments...) noexcept> : std::true_type {};
template <class Class, class Result, class... Arguments>
struct IsNoexcept<Result (Class::*)(Arguments...) const noexcept> : std::true_type {};
template <auto... functions>
constexpr bool kNoexcept = (IsNoexcept<decltype(functions)>::value && ...);

static_assert(kNoexcept < &Symmetric2by2Matrix::clear, &Symmetric2by2Matrix::det,
              &Symmetric2by2Matrix::trace, &Symmetric2by2Matrix::invmat,
              &Symmetric2by2Matrix::prodmat, &Symmetric2by2Matrix::operator+,
              &Symmetric2by2Matrix::operator-, &Symmetric2by2Matrix::operator+=,
              &Symmetric2by2Matrix::operator-=, &Symmetric2by2Matrix::operator*=,
              &Symmetric2by2Matrix::operator/, &Symmetric2by2Matrix::operator/=>);
static_assert(kNoexcept<&Symmetric4by4Matrix::clear, &Symmetric4by4Matrix::diagonalNonZero,
                        &Symmetric4by4Matrix::operator+=, &Symmetric4by4Matrix::invmat>);
static_assert(
    kNoexcept<&ShapeMatrix::ellConvert, &ShapeMatrix::increaseUncertainty,
              &ShapeMatrix::increaseUncertaintyAtConstRate, &ShapeMatrix::reweightMeasurement>);
static_assert(kNoexcept<&StateEstimate::clear, &StateEstimate::operator+=, &Midpoint::distance,
                        &Midpoint::setLatitude, &Midpoint::setLongitude>);
static_assert(
    kNoexcept<&Utility::latitude, &Utility::longitude, &Utility::wgs84Latitude,
              &Utility::wgs84Longitude, &Utility::toDegrees, &Utility::toRadians,
              &Utility::meterInDegrees, &Utility::degreeInMeters, &Utility::compLonRollOver,
              &Utility::deCompLonRollOver, &Utility::normalizedSinOrCosValue, &Utility::cosAlpha,
              &Utility::distance, &Utility::bearing>);
static_assert(kNoexcept<&Utility::wlanRmTileId, &Utility::wlanRmTileLevel,
                        &Utility::parseWlanRmTileId, &Utility::wlanRmTileSizeInDegrees,
                        &Utility::wlanRmTileParentId, &Utility::isPositionInsideArea>);
static_assert(kNoexcept<&Utility::squaredDistance, &Utility::mDistance, &Utility::bDistance,
                        &Utility::intersect, &Utility::cellularObjectTechonology,
                        &Utility::getRecentTimeStamp, &Utility::injectionTimeStamp,
                        &Utility::sortWlans, &Utility::trimWlanCollection>);

}  // namespace
}  // namespace trelvo::schema
