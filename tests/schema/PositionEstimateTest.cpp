#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/WlanDn.h>

#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::bytes;
using test::readFrom;
using test::written;

using Estimate = PositionEstimate;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();

double below(double value) { return std::nextafter(value, -kInfinity); }
double above(double value) { return std::nextafter(value, kInfinity); }

/// One row of the table of fields: how it is set, and the record in which only it is set.
struct Row {
  const char* name;
  unsigned int bit;
  Status (*set)(Estimate&);
  bool (*holds)(const Estimate&);
  const char* wire;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }

/// A field with a range: what is still accepted and what is not.
struct Range {
  const char* name;
  unsigned int bit;
  Status (Estimate::*set)(double);
  double (Estimate::*get)() const;
  std::vector<double> accepted;
  std::vector<double> refused;
};

std::ostream& operator<<(std::ostream& out, const Range& range) { return out << range.name; }

template <class T>
std::string nameOf(const testing::TestParamInfo<T>& row) {
  return row.param.name;
}

const Row kRows[] = {
    {"TimeStamp", 0x00001, [](Estimate& e) { return e.setTimeStamp(0x01020304); },
     [](const Estimate& e) { return e.timeStamp() == 0x01020304; }, "01 01000000 04030201"},
    {"Latitude", 0x00002, [](Estimate& e) { return e.setLatitude(52.5); },
     [](const Estimate& e) { return e.latitude() == 52.5; }, "01 02000000 0000000000404A40"},
    {"Longitude", 0x00004, [](Estimate& e) { return e.setLongitude(-13.25); },
     [](const Estimate& e) { return e.longitude() == -13.25; }, "01 04000000 0000000000802AC0"},
    {"HorizontalCepUncertainty", 0x00008,
     [](Estimate& e) { return e.setHorizontalCepUncertainty(12.5); },
     [](const Estimate& e) { return e.horizontalCepUncertainty() == 12.5; },
     "01 08000000 0000000000002940"},
    {"MajorAxis", 0x00010, [](Estimate& e) { return e.setMajorAxis(40.25); },
     [](const Estimate& e) { return e.majorAxis() == 40.25; }, "01 10000000 0000000000204440"},
    {"MinorAxis", 0x00020, [](Estimate& e) { return e.setMinorAxis(20.125); },
     [](const Estimate& e) { return e.minorAxis() == 20.125; }, "01 20000000 0000000000203440"},
    {"Angle", 0x00040, [](Estimate& e) { return e.setAngle(33.75); },
     [](const Estimate& e) { return e.angle() == 33.75; }, "01 40000000 0000000000E04040"},
    {"Altitude", 0x00080, [](Estimate& e) { return e.setAltitude(-34.5); },
     [](const Estimate& e) { return e.altitude() == -34.5; }, "01 80000000 00000000004041C0"},
    {"AltitudeUncertainty", 0x00100, [](Estimate& e) { return e.setAltitudeUncertainty(3.5); },
     [](const Estimate& e) { return e.altitudeUncertainty() == 3.5; },
     "01 00010000 0000000000000C40"},
    {"Speed", 0x00200, [](Estimate& e) { return e.setSpeed(13.875); },
     [](const Estimate& e) { return e.speed() == 13.875; }, "01 00020000 0000000000C02B40"},
    {"SpeedUncertainty", 0x00400, [](Estimate& e) { return e.setSpeedUncertainty(0.25); },
     [](const Estimate& e) { return e.speedUncertainty() == 0.25; },
     "01 00040000 000000000000D03F"},
    {"Course", 0x00800, [](Estimate& e) { return e.setCourse(-90.5); },
     [](const Estimate& e) { return e.course() == -90.5; }, "01 00080000 0000000000A056C0"},
    {"CourseUncertainty", 0x01000, [](Estimate& e) { return e.setCourseUncertainty(4.75); },
     [](const Estimate& e) { return e.courseUncertainty() == 4.75; },
     "01 00100000 0000000000001340"},
    {"FloorId", 0x08000, [](Estimate& e) { return e.setFloorId(1024); },
     [](const Estimate& e) { return e.floorId() == 1024; }, "01 00800000 00040000"},
    {"Technology", 0x02000, [](Estimate& e) { return e.setTechnology(-2); },
     [](const Estimate& e) { return e.technology() == -2; }, "01 00200000 FEFFFFFF"},
    {"Source", 0x04000,
     [](Estimate& e) { return e.setSource(static_cast<Estimate::Source>(0x80000001)); },
     [](const Estimate& e) { return e.source() == 0x80000001; }, "01 00400000 01000080"},
    {"MeasurementId", 0x20000, [](Estimate& e) { return e.setMeasurementId(0xFFFFFFFF); },
     [](const Estimate& e) { return e.measurementId() == 0xFFFFFFFF; }, "01 00000200 FFFFFFFF"},
};

const Range kRanges[] = {
    {"Latitude",
     0x00002,
     &Estimate::setLatitude,
     &Estimate::latitude,
     {-90.0, 0.0, 90.0},
     {below(-90.0), above(90.0), kInfinity, -kInfinity, kNan}},
    {"Longitude",
     0x00004,
     &Estimate::setLongitude,
     &Estimate::longitude,
     {-180.0, 0.0, below(180.0)},
     {below(-180.0), 180.0, kInfinity, -kInfinity, kNan}},
    {"HorizontalCepUncertainty",
     0x00008,
     &Estimate::setHorizontalCepUncertainty,
     &Estimate::horizontalCepUncertainty,
     {kTiny, 4294967295.0},
     {0.0, -1.0, above(4294967295.0), kInfinity, kNan}},
    {"MajorAxis",
     0x00010,
     &Estimate::setMajorAxis,
     &Estimate::majorAxis,
     {kTiny, 4294967295.0},
     {0.0, -1.0, above(4294967295.0), kInfinity, kNan}},
    {"MinorAxis",
     0x00020,
     &Estimate::setMinorAxis,
     &Estimate::minorAxis,
     {kTiny, 4294967295.0},
     {0.0, -1.0, above(4294967295.0), kInfinity, kNan}},
    {"Angle",
     0x00040,
     &Estimate::setAngle,
     &Estimate::angle,
     {0.0, below(180.0)},
     {-kTiny, 180.0, kInfinity, kNan}},
    {"Altitude",
     0x00080,
     &Estimate::setAltitude,
     &Estimate::altitude,
     {-16383.5, 0.0, 16383.5},
     {below(-16383.5), above(16383.5), 16383.6, kInfinity, kNan}},
    {"AltitudeUncertainty",
     0x00100,
     &Estimate::setAltitudeUncertainty,
     &Estimate::altitudeUncertainty,
     {kTiny, 65535.0},
     {0.0, -1.0, above(65535.0), kInfinity, kNan}},
    {"Speed",
     0x00200,
     &Estimate::setSpeed,
     &Estimate::speed,
     {0.0, 1.0e300, kInfinity},
     {-kTiny, -kInfinity, kNan}},
    {"SpeedUncertainty",
     0x00400,
     &Estimate::setSpeedUncertainty,
     &Estimate::speedUncertainty,
     {kTiny, 1.0e300, kInfinity},
     {0.0, -kTiny, -kInfinity, kNan}},
    {"Course",
     0x00800,
     &Estimate::setCourse,
     &Estimate::course,
     {-180.0, 0.0, below(180.0)},
     {below(-180.0), 180.0, kInfinity, -kInfinity, kNan}},
    {"CourseUncertainty",
     0x01000,
     &Estimate::setCourseUncertainty,
     &Estimate::courseUncertainty,
     {kTiny, below(180.0)},
     {0.0, -1.0, 180.0, kInfinity, kNan}},
};

Estimate withEverything() {
  Estimate estimate;
  for (const Row& row : kRows) {
    row.set(estimate);
  }
  estimate.setBuildingId("Tower 7, a name that is too long to stand in the record itself");
  return estimate;
}

class PositionEstimateField : public testing::TestWithParam<Row> {};
class PositionEstimateRange : public testing::TestWithParam<Range> {};

INSTANTIATE_TEST_SUITE_P(Rows, PositionEstimateField, testing::ValuesIn(kRows), nameOf<Row>);
INSTANTIATE_TEST_SUITE_P(Rows, PositionEstimateRange, testing::ValuesIn(kRanges), nameOf<Range>);

TEST_P(PositionEstimateField, SettingStoresAndSetsItsBitAlone) {
  Estimate estimate;
  EXPECT_EQ(GetParam().set(estimate), StatusOk);
  EXPECT_TRUE(GetParam().holds(estimate));
  EXPECT_EQ(estimate.values(), GetParam().bit);
}

TEST_P(PositionEstimateField, AloneWritesTheseBytes) {
  Estimate estimate;
  GetParam().set(estimate);
  EXPECT_EQ(written(estimate), bytes(GetParam().wire));
}

TEST_P(PositionEstimateField, AloneReadsBackEqual) {
  Estimate estimate;
  ASSERT_TRUE(readFrom(estimate, bytes(GetParam().wire)));
  EXPECT_TRUE(GetParam().holds(estimate));
  Estimate same;
  GetParam().set(same);
  EXPECT_EQ(estimate, same);
}

TEST_P(PositionEstimateField, DecidesEqualityOnlyWhileSet) {
  const Estimate whole = withEverything();
  Estimate blank;
  EXPECT_NE(blank, whole);
  Estimate without = whole;
  without.unset(GetParam().bit);
  EXPECT_NE(without, whole);

  // The stored fields of the two differ, under a bit that is clear in both.
  Estimate one;
  GetParam().set(one);
  one.unset(GetParam().bit);
  EXPECT_EQ(one, blank);
}

TEST_P(PositionEstimateRange, AcceptsBothEnds) {
  for (const double value : GetParam().accepted) {
    Estimate estimate;
    EXPECT_EQ((estimate.*GetParam().set)(value), StatusOk) << value;
    EXPECT_EQ((estimate.*GetParam().get)(), value);
    EXPECT_EQ(estimate.values(), GetParam().bit);
  }
}

TEST_P(PositionEstimateRange, RefusesWhatLiesOutsideAndKeepsFieldAndBit) {
  for (const double value : GetParam().refused) {
    Estimate blank;
    EXPECT_EQ((blank.*GetParam().set)(value), StatusInvalidParameter) << value;
    EXPECT_EQ(blank.values(), 0U);
    EXPECT_EQ((blank.*GetParam().get)(), 0.0);

    Estimate used;
    (used.*GetParam().set)(GetParam().accepted.back());
    EXPECT_EQ((used.*GetParam().set)(value), StatusInvalidParameter) << value;
    EXPECT_EQ((used.*GetParam().get)(), GetParam().accepted.back());
    EXPECT_EQ(used.values(), GetParam().bit);
  }
}

TEST_P(PositionEstimateRange, ComparesWithoutTolerance) {
  Estimate one;
  Estimate other;
  (one.*GetParam().set)(GetParam().accepted.front());
  (other.*GetParam().set)(GetParam().accepted.back());
  EXPECT_NE(one, other);
}

TEST(PositionEstimate, IsOfClass113AndStartsEmpty) {
  const Estimate estimate;
  EXPECT_EQ(estimate.key(), 113);
  EXPECT_TRUE(estimate.isEmpty());
  EXPECT_EQ(estimate.timeStamp(), 0U);
  EXPECT_EQ(estimate.floorId(), 0);
  EXPECT_EQ(estimate.buildingId(), "");
  EXPECT_EQ(estimate.technology(), 0);
  EXPECT_EQ(estimate.source(), Estimate::SourceUnset);
  EXPECT_EQ(estimate.measurementId(), 0U);
  for (const Range& range : kRanges) {
    EXPECT_EQ((estimate.*range.get)(), 0.0) << range.name;
  }
}

TEST(PositionEstimate, TimeStampOfZeroIsRefused) {
  Estimate estimate;
  EXPECT_EQ(estimate.setTimeStamp(0), StatusInvalidParameter);
  EXPECT_TRUE(estimate.isEmpty());
  EXPECT_EQ(estimate.setTimeStamp(1), StatusOk);
  EXPECT_EQ(estimate.setTimeStamp(0xFFFFFFFF), StatusOk);
  EXPECT_EQ(estimate.setTimeStamp(0), StatusInvalidParameter);
  EXPECT_EQ(estimate.timeStamp(), 0xFFFFFFFF);
}

TEST(PositionEstimate, FloorsGoFrom1To1024) {
  Estimate estimate;
  EXPECT_EQ(estimate.setFloorId(0), StatusInvalidParameter);
  EXPECT_EQ(estimate.setFloorId(1025), StatusInvalidParameter);
  EXPECT_EQ(estimate.setFloorId(-1), StatusInvalidParameter);
  EXPECT_EQ(estimate.setFloorId(std::numeric_limits<int>::min()), StatusInvalidParameter);
  EXPECT_TRUE(estimate.isEmpty());
  EXPECT_EQ(estimate.setFloorId(1), StatusOk);
  EXPECT_EQ(estimate.setFloorId(1024), StatusOk);
  EXPECT_EQ(estimate.floorId(), 1024);
}

TEST(PositionEstimate, HorizontalAccuracyIsAViewOfTheCircle) {
  Estimate estimate;
  EXPECT_EQ(estimate.horizontalAccuracy(), 0U);
  EXPECT_EQ(estimate.setHorizontalAccuracy(0), StatusInvalidParameter);
  EXPECT_TRUE(estimate.isEmpty());
  EXPECT_EQ(estimate.setHorizontalAccuracy(0xFFFFFFFF), StatusOk);
  EXPECT_EQ(estimate.horizontalCepUncertainty(), 4294967295.0);
  EXPECT_EQ(estimate.horizontalAccuracy(), 0xFFFFFFFF);
  EXPECT_EQ(estimate.values(), Estimate::HasHorizontalCepUncertainty);
  estimate.setHorizontalCepUncertainty(1.5);
  EXPECT_EQ(estimate.horizontalAccuracy(), 1U);
  estimate.setHorizontalCepUncertainty(12.9);
  EXPECT_EQ(estimate.horizontalAccuracy(), 12U);
}

TEST(PositionEstimate, AltitudeAccuracyIsAViewOfTheUncertainty) {
  Estimate estimate;
  EXPECT_EQ(estimate.setAltitudeAccuracy(0), StatusInvalidParameter);
  EXPECT_TRUE(estimate.isEmpty());
  EXPECT_EQ(estimate.setAltitudeAccuracy(65535), StatusOk);
  EXPECT_EQ(estimate.altitudeUncertainty(), 65535.0);
  EXPECT_EQ(estimate.altitudeAccuracy(), 65535);
  EXPECT_EQ(estimate.values(), Estimate::HasAltitudeUncertainty);
  estimate.setAltitudeUncertainty(7.99);
  EXPECT_EQ(estimate.altitudeAccuracy(), 7);
}

TEST(PositionEstimate, AccuraciesOfStrangeStoredValuesAreDefined) {
  // 4294967296.0, 65541.0, -1.0 and a NaN reach the fields through a stream only.
  Estimate estimate;
  ASSERT_TRUE(readFrom(estimate, bytes("01 08010000 000000000000F041 000000005000F040")));
  EXPECT_EQ(estimate.horizontalAccuracy(), 0xFFFFFFFF);
  EXPECT_EQ(estimate.altitudeAccuracy(), 5);
  ASSERT_TRUE(readFrom(estimate, bytes("01 08010000 000000000000F0BF 000000000000F87F")));
  EXPECT_EQ(estimate.horizontalAccuracy(), 0U);
  EXPECT_EQ(estimate.altitudeAccuracy(), 0);
}

TEST(PositionEstimate, MinorAxisMayExceedTheMajorOne) {
  Estimate estimate;
  EXPECT_EQ(estimate.setMajorAxis(1.0), StatusOk);
  EXPECT_EQ(estimate.setMinorAxis(2.0), StatusOk);
}

TEST(PositionEstimate, TechnologyAndSourceHideWhileUnset) {
  Estimate estimate;
  estimate.setTechnology(5);
  estimate.setSource(static_cast<Estimate::Source>(6));
  estimate.setLatitude(50.0);
  estimate.unset(0x2000 | 0x4000 | 0x2);
  EXPECT_EQ(estimate.technology(), 0);
  EXPECT_EQ(estimate.source(), Estimate::SourceUnset);
  EXPECT_EQ(estimate.latitude(), 50.0);
  EXPECT_TRUE(estimate.isEmpty());
}

TEST(PositionEstimate, HasNoPositionWithoutBothCoordinates) {
  Estimate estimate;
  EXPECT_TRUE(estimate.isNoPos());
  estimate.setLatitude(0.0);
  EXPECT_TRUE(estimate.isNoPos());
  estimate.setLongitude(0.0);
  EXPECT_FALSE(estimate.isNoPos());
  estimate.unset(Estimate::HasLatitude);
  EXPECT_TRUE(estimate.isNoPos());
}

TEST(PositionEstimate, CreateWithPositionAndTime) {
  const SharedPointer<Estimate> estimate = Estimate::create(52.5, 13.25, 17U);
  ASSERT_TRUE(estimate);
  EXPECT_EQ(estimate->referenceCount(), 1);
  EXPECT_EQ(estimate->values(), 0x00007U);
  EXPECT_EQ(estimate->latitude(), 52.5);
  EXPECT_EQ(estimate->longitude(), 13.25);
  EXPECT_EQ(estimate->timeStamp(), 17U);
}

TEST(PositionEstimate, CreateWithCircle) {
  const SharedPointer<Estimate> estimate = Estimate::create(52.5, 13.25, 30.5, 17U);
  ASSERT_TRUE(estimate);
  EXPECT_EQ(estimate->values(), 0x0000FU);
  EXPECT_EQ(estimate->horizontalCepUncertainty(), 30.5);
}

TEST(PositionEstimate, CreateWithEllipse) {
  const SharedPointer<Estimate> estimate = Estimate::create(52.5, 13.25, 40.0, 20.0, 45.0, 17U);
  ASSERT_TRUE(estimate);
  EXPECT_EQ(estimate->values(), 0x00077U);
  EXPECT_EQ(estimate->majorAxis(), 40.0);
  EXPECT_EQ(estimate->minorAxis(), 20.0);
  EXPECT_EQ(estimate->angle(), 45.0);
}

TEST(PositionEstimate, CreateFailsForAnyValueOutOfRange) {
  EXPECT_FALSE(Estimate::create(90.5, 13.25, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 180.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 13.25, 0U));
  EXPECT_FALSE(Estimate::create(kNan, 13.25, 17U));
  EXPECT_FALSE(Estimate::create(90.5, 13.25, 1.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 180.0, 1.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 13.25, 0.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 13.25, 1.0, 0U));
  EXPECT_FALSE(Estimate::create(90.5, 13.25, 40.0, 20.0, 45.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 180.0, 40.0, 20.0, 45.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 13.25, 0.0, 20.0, 45.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 13.25, 40.0, 0.0, 45.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 13.25, 40.0, 20.0, 180.0, 17U));
  EXPECT_FALSE(Estimate::create(52.5, 13.25, 40.0, 20.0, 45.0, 0U));
}

TEST(PositionEstimate, CreateCopiesEverything) {
  const SharedPointer<Estimate> source(new Estimate(withEverything()));
  const SharedPointer<Estimate> copy = Estimate::create(source);
  ASSERT_TRUE(copy);
  EXPECT_EQ(*copy, *source);
  EXPECT_EQ(copy->buildingId(), source->buildingId());
  copy->setLatitude(1.0);
  EXPECT_EQ(source->latitude(), 52.5);
  EXPECT_FALSE(Estimate::create(SharedPointer<Estimate>()));
}

TEST(PositionEstimate, AssignmentCopiesEverythingAndItselfToo) {
  const Estimate source = withEverything();
  Estimate target;
  target = source;
  EXPECT_EQ(target, source);
  const Estimate& self = target;
  target = self;
  EXPECT_EQ(target, source);
}

TEST(PositionEstimate, CloneCopiesEverythingWithCountZero) {
  Estimate source = withEverything();
  source.extension()->setUint32Property(1, 2);
  Estimate* const clone = source.clone();
  ASSERT_NE(clone, nullptr);
  EXPECT_EQ(clone->referenceCount(), 0);
  const SharedPointer<Estimate> holder(clone);
  EXPECT_EQ(*clone, source);
  EXPECT_NE(clone->extensionReference(), source.extensionReference());
}

TEST(PositionEstimate, CloneKeepsFieldsBehindClearBits) {
  Estimate source;
  source.setLatitude(12.0);
  source.setBuildingId("B");
  source.unset(0x3FFFF);
  const SharedPointer<Estimate> clone(source.clone());
  EXPECT_TRUE(clone->isEmpty());
  EXPECT_EQ(clone->latitude(), 12.0);
  EXPECT_EQ(clone->buildingId(), "B");
}

TEST(PositionEstimate, BuildingsCompareByTheirWholeText) {
  Estimate one;
  Estimate other;
  one.setBuildingId("Tower 7");
  other.setBuildingId("Tower 8");
  EXPECT_EQ(one.values(), 0x10000U);
  EXPECT_NE(one, other);
  other.setBuildingId("Tower 7");
  EXPECT_EQ(one, other);
}

TEST(PositionEstimate, ExtensionsAreCompared) {
  Estimate extended;
  ASSERT_NE(extended.extension(), nullptr);
  EXPECT_NE(extended, Estimate());
}

TEST(PositionEstimate, AnEmptyRecordIsFiveBytes) {
  EXPECT_EQ(written(Estimate()), bytes("01 00000000"));
}

TEST(PositionEstimate, FloorStandsBeforeTechnologyAndSourceOnTheWire) {
  const test::Bytes wire = bytes(
      "01 FFFF0300 04030201 0000000000404A40 0000000000802AC0 0000000000002940 0000000000204440"
      "0000000000203440 0000000000E04040 00000000004041C0 0000000000000C40 0000000000C02B40"
      "000000000000D03F 0000000000A056C0 0000000000001340 00040000 FEFFFFFF 01000080 FFFFFFFF");
  EXPECT_EQ(written(withEverything()), wire);
  Estimate back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_EQ(back.values(), 0x3FFFFU);
  for (const Row& row : kRows) {
    EXPECT_TRUE(row.holds(back)) << row.name;
  }
}

TEST(PositionEstimate, BuildingIdBitSurvivesTheStreamButItsTextDoesNot) {
  Estimate source;
  source.setBuildingId("Tower 7");
  EXPECT_EQ(written(source), bytes("01 00000100"));
  Estimate back;
  ASSERT_TRUE(readFrom(back, written(source)));
  EXPECT_TRUE(back.valueExists(0x10000));
  EXPECT_EQ(back.buildingId(), "");
  EXPECT_NE(back, source);
}

TEST(PositionEstimate, ReadKeepsAnEarlierBuildingText) {
  Estimate estimate;
  estimate.setBuildingId("Tower 7");
  ASSERT_TRUE(readFrom(estimate, bytes("01 00000000")));
  EXPECT_TRUE(estimate.isEmpty());
  EXPECT_EQ(estimate.buildingId(), "Tower 7");
}

TEST(PositionEstimate, RefusesVersion2AndClearsItsPresenceBits) {
  Estimate estimate = withEverything();
  EXPECT_FALSE(readFrom(estimate, bytes("02 00000000")));
  EXPECT_EQ(estimate.values(), 0U);
  EXPECT_EQ(estimate.latitude(), 52.5);
}

TEST(PositionEstimate, BitsWithoutAFieldStayInTheMask) {
  Estimate estimate;
  ASSERT_TRUE(readFrom(estimate, bytes("01 010000C0 07000000")));
  EXPECT_EQ(estimate.values(), 0xC0000001U);
  EXPECT_EQ(estimate.timeStamp(), 7U);
  EXPECT_EQ(written(estimate), bytes("01 010000C0 07000000"));
  EXPECT_FALSE(readFrom(estimate, bytes("02")));
  EXPECT_EQ(estimate.values(), 0xC0000000U);
}

TEST(PositionEstimate, ReadTakesWhatTheSettersRefuse) {
  Estimate estimate;
  // Time stamp 0, latitude 1000.0.
  ASSERT_TRUE(readFrom(estimate, bytes("01 03000000 00000000 0000000000408F40")));
  EXPECT_EQ(estimate.latitude(), 1000.0);
  EXPECT_TRUE(estimate.valueExists(0x3));
}

TEST(PositionEstimate, ANanReadFromAStreamEqualsNothing) {
  Estimate estimate;
  ASSERT_TRUE(readFrom(estimate, bytes("01 02000000 000000000000F87F")));
  const Estimate& self = estimate;
  EXPECT_FALSE(estimate == self);
}

TEST(PositionEstimate, AFailedReadLeavesTheMaskAndTheFieldsReadSoFar) {
  Estimate estimate;
  EXPECT_FALSE(readFrom(estimate, bytes("01 03000000 07000000 00000000")));
  EXPECT_EQ(estimate.values(), 0x3U);
  EXPECT_EQ(estimate.timeStamp(), 7U);
}

TEST(PositionEstimate, DumpsHaveNoEffect) {
  const Estimate estimate = withEverything();
  estimate.dump();
  estimate.dumpShort("a", "b", true);
  estimate.dumpShort(nullptr, nullptr, false);
  EXPECT_EQ(estimate, withEverything());
}

}  // namespace
}  // namespace trelvo::schema
