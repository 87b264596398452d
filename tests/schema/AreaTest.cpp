#include <gtest/gtest.h>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/WlanDn.h>

#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::bytes;
using test::readFrom;
using test::written;

Coverage withCircle() { return {1, 2, 3.0F}; }

TEST(Area, IsOfClass104AndStartsEmpty) {
  const Area area;
  EXPECT_EQ(area.key(), 104);
  EXPECT_TRUE(area.isEmpty());
  EXPECT_EQ(area.values(), 0U);
  EXPECT_EQ(area.coverage(), Coverage());
}

TEST(Area, ConstructorsCarryTheEllipse) {
  const Area area(1, 2, 3, 4, 5.0F);
  EXPECT_EQ(area.coverage(), Coverage(1, 2, 3, 4, 5.0F));
  EXPECT_TRUE(area.valueExists(0x3B));
  EXPECT_EQ(*Area::create(1, 2, 3, 4, 5.0F), area);
  EXPECT_EQ(*Area::create(Coverage(1, 2, 3, 4, 5.0F)), area);
  EXPECT_TRUE(Area::create()->isEmpty());
}

TEST(Area, SettersAndGettersGoToTheCoverage) {
  Area area;
  EXPECT_EQ(area.setLatitude(-1), StatusOk);
  EXPECT_EQ(area.setLongitude(-2), StatusOk);
  EXPECT_EQ(area.setAltitude(3.5F), StatusOk);
  EXPECT_EQ(area.setMajorAxis(4), StatusOk);
  EXPECT_EQ(area.setMinorAxis(5), StatusOk);
  EXPECT_EQ(area.setAngle(6.5F), StatusOk);
  EXPECT_EQ(area.setAltitudeUncertainty(7.5F), StatusOk);
  EXPECT_EQ(area.coverage(), Coverage(-1, -2, 4, 5, 6.5F, 3.5F, 7.5F));
  EXPECT_EQ(area.latitude(), -1);
  EXPECT_EQ(area.longitude(), -2);
  EXPECT_EQ(area.altitude(), 3.5F);
  EXPECT_EQ(area.majorAxis(), 4U);
  EXPECT_EQ(area.minorAxis(), 5U);
  EXPECT_EQ(area.angle(), 6.5F);
  EXPECT_EQ(area.altitudeUncertainty(), 7.5F);
}

TEST(Area, EachSetterSetsTheBitOfItsField) {
  struct {
    unsigned int bit;
    Status (*set)(Area&);
  } const setters[] = {
      {Area::HasLatitude, [](Area& a) { return a.setLatitude(1); }},
      {Area::HasLongitude, [](Area& a) { return a.setLongitude(1); }},
      {Area::HasAltitude, [](Area& a) { return a.setAltitude(1); }},
      {Area::HasMajorAxis, [](Area& a) { return a.setMajorAxis(1); }},
      {Area::HasMinorAxis, [](Area& a) { return a.setMinorAxis(1); }},
      {Area::HasAngle, [](Area& a) { return a.setAngle(1); }},
      {Area::HasAltitudeUncertainty, [](Area& a) { return a.setAltitudeUncertainty(1); }},
  };
  for (const auto& setter : setters) {
    Area area;
    EXPECT_EQ(setter.set(area), StatusOk);
    EXPECT_TRUE(area.valueExists(setter.bit));
    area.unset(setter.bit);
    EXPECT_TRUE(area.isEmpty());
  }
}

TEST(Area, PresenceLiesInTheCoverageAlone) {
  const Area area(1, 2, 3, 4, 5.0F);
  EXPECT_EQ(area.values(), 0U);
  EXPECT_FALSE(area.isEmpty());
}

TEST(Area, HidesTheCircle) {
  Area area(withCircle());
  EXPECT_FALSE(area.valueExists(0x80));
  EXPECT_TRUE(area.valueExists(0x81));
  EXPECT_FALSE(area.valueExists(0x84));
  EXPECT_FALSE(area.valueExists(0));
  EXPECT_FALSE(area.isEmpty());
}

TEST(Area, TheCircleCannotBeCleared) {
  Area area(withCircle());
  area.unset(0xFF);
  EXPECT_FALSE(area.valueExists(0x01));
  EXPECT_FALSE(area.isEmpty());
  EXPECT_TRUE(area.coverage().valueExists(0x80));
  EXPECT_EQ(written(area), bytes("01 01 8000 00004040"));
}

TEST(Area, HiddenBitMakesAnAreaWithNothingElseNonEmpty) {
  Coverage coverage;
  coverage.setHorizontalCepUncertainty(1.0F);
  EXPECT_FALSE(Area(coverage).isEmpty());
}

TEST(Area, TwoVersionBytesStandAhead) {
  EXPECT_EQ(written(Area()), bytes("01 01 0000"));
  EXPECT_EQ(written(Area(1, 2, 3, 4, 1.0F)),
            bytes("01 01 3B00 01000000 02000000 03000000 04000000 0000803F"));
  EXPECT_EQ(written(Area(withCircle())), bytes("01 01 8300 01000000 02000000 00004040"));
}

TEST(Area, ReadsBack) {
  Area area;
  ASSERT_TRUE(readFrom(area, bytes("01 01 8300 01000000 02000000 00004040")));
  EXPECT_EQ(area, Area(withCircle()));
  EXPECT_TRUE(area.coverage().valueExists(0x80));
}

TEST(Area, ReadClearsTheCoverageFirst) {
  Area area(withCircle());
  ASSERT_TRUE(readFrom(area, bytes("01 01 0400 0000803F")));
  EXPECT_TRUE(area.valueExists(0x04));
  EXPECT_FALSE(area.valueExists(0x01));
  EXPECT_FALSE(area.coverage().valueExists(0x80));
}

TEST(Area, RefusesVersion2InEitherPlaceAndEndsEmpty) {
  for (const char* const wire : {"02 01 0000", "01 02 0000"}) {
    Area area(withCircle());
    EXPECT_FALSE(readFrom(area, bytes(wire)));
    EXPECT_TRUE(area.isEmpty());
  }
}

TEST(Area, RefusesAMaskOf256) {
  Area area;
  EXPECT_FALSE(readFrom(area, bytes("01 01 0001")));
}

TEST(Area, EqualityIsTheCoveragesAndTheExtensions) {
  EXPECT_EQ(Area(1, 2, 3, 4, 0.5F), Area(1, 2, 3, 4, 0.9F));
  EXPECT_NE(Area(1, 2, 3, 4, 0.5F), Area(1, 2, 3, 4, 1.5F));
  EXPECT_NE(Area(1, 2, 3, 4, 0.5F), Area(0, 2, 3, 4, 0.5F));
  Area extended(1, 2, 3, 4, 0.5F);
  ASSERT_NE(extended.extension(), nullptr);
  EXPECT_NE(extended, Area(1, 2, 3, 4, 0.5F));
}

TEST(Area, CopiesCarryTheCoverageAndAreIndependent) {
  const SharedPointer<Area> source = Area::create(withCircle());
  const SharedPointer<Area> copy = Area::create(source);
  EXPECT_EQ(*copy, *source);
  EXPECT_TRUE(copy->coverage().valueExists(0x80));
  copy->setLatitude(77);
  EXPECT_EQ(source->latitude(), 1);

  Area assigned;
  assigned = *source;
  EXPECT_EQ(assigned, *source);
  EXPECT_FALSE(Area::create(SharedPointer<Area>()));
}

TEST(Area, CloneCopiesCoverageAndExtension) {
  Area area(withCircle());
  area.extension()->setUint32Property(5, 6);
  const SharedPointer<Area> clone = area.clone();
  ASSERT_TRUE(clone);
  EXPECT_EQ(clone->referenceCount(), 1);
  EXPECT_EQ(*clone, area);
  EXPECT_NE(clone->extensionReference(), area.extensionReference());
}

}  // namespace
}  // namespace trelvo::schema
