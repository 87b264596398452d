#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <type_traits>

#include <trelvo/schema/Coverage.h>

#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::schema {
namespace {

using test::bytes;
using test::readFrom;
using test::written;

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// One row of the table of fields: how it is set, and the record in which only it is set.
struct Row {
  const char* name;
  unsigned int bit;
  Status (*set)(Coverage&);
  bool (*holds)(const Coverage&);
  const char* wire;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }
std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

class CoverageField : public testing::TestWithParam<Row> {
 public:
  Coverage coverage;
};

INSTANTIATE_TEST_SUITE_P(
    Rows, CoverageField,
    testing::Values(
        Row{"Latitude", 0x01, [](Coverage& c) { return c.setLatitude(0x12345678); },
            [](const Coverage& c) { return c.latitude() == 0x12345678; }, "01 0100 78563412"},
        Row{"Longitude", 0x02, [](Coverage& c) { return c.setLongitude(-2); },
            [](const Coverage& c) { return c.longitude() == -2; }, "01 0200 FEFFFFFF"},
        Row{"Altitude", 0x04, [](Coverage& c) { return c.setAltitude(-1.5F); },
            [](const Coverage& c) { return c.altitude() == -1.5F; }, "01 0400 0000C0BF"},
        Row{"MajorAxis", 0x08, [](Coverage& c) { return c.setMajorAxis(0xFFFFFFFF); },
            [](const Coverage& c) { return c.majorAxis() == 0xFFFFFFFF; }, "01 0800 FFFFFFFF"},
        Row{"MinorAxis", 0x10, [](Coverage& c) { return c.setMinorAxis(700); },
            [](const Coverage& c) { return c.minorAxis() == 700; }, "01 1000 BC020000"},
        Row{"Angle", 0x20, [](Coverage& c) { return c.setAngle(-0.5F); },
            [](const Coverage& c) { return c.angle() == -0.5F; }, "01 2000 000000BF"},
        Row{"AltitudeUncertainty", 0x40,
            [](Coverage& c) { return c.setAltitudeUncertainty(-2.0F); },
            [](const Coverage& c) { return c.altitudeUncertainty() == -2.0F; }, "01 4000 000000C0"},
        Row{"HorizontalCepUncertainty", 0x80,
            [](Coverage& c) { return c.setHorizontalCepUncertainty(1.0F); },
            [](const Coverage& c) { return c.horizontalCepUncertainty() == 1.0F; },
            "01 8000 0000803F"}),
    nameOf);

TEST_P(CoverageField, SettingStoresAndSetsItsBitAlone) {
  EXPECT_EQ(GetParam().set(coverage), StatusOk);
  EXPECT_TRUE(GetParam().holds(coverage));
  EXPECT_TRUE(coverage.valueExists(GetParam().bit));
  coverage.unset(GetParam().bit);
  EXPECT_TRUE(coverage.isEmpty());
}

TEST_P(CoverageField, UnsettingKeepsTheField) {
  GetParam().set(coverage);
  coverage.unset(GetParam().bit);
  EXPECT_FALSE(coverage.valueExists(GetParam().bit));
  EXPECT_TRUE(GetParam().holds(coverage));
}

TEST_P(CoverageField, AloneWritesTheseBytes) {
  GetParam().set(coverage);
  EXPECT_EQ(written(coverage), bytes(GetParam().wire));
}

TEST_P(CoverageField, AloneReadsBack) {
  ASSERT_TRUE(readFrom(coverage, bytes(GetParam().wire)));
  EXPECT_TRUE(GetParam().holds(coverage));
  EXPECT_TRUE(coverage.valueExists(GetParam().bit));
  Coverage same;
  GetParam().set(same);
  EXPECT_EQ(coverage, same);
}

TEST(Coverage, StartsEmptyWithAllFieldsZero) {
  const Coverage coverage;
  EXPECT_TRUE(coverage.isEmpty());
  EXPECT_EQ(coverage.latitude(), 0);
  EXPECT_EQ(coverage.longitude(), 0);
  EXPECT_EQ(coverage.majorAxis(), 0U);
  EXPECT_EQ(coverage.minorAxis(), 0U);
  EXPECT_EQ(coverage.angle(), 0.0F);
  EXPECT_EQ(coverage.altitude(), 0.0F);
  EXPECT_EQ(coverage.altitudeUncertainty(), 0.0F);
  EXPECT_EQ(coverage.horizontalCepUncertainty(), 0.0F);
}

TEST(Coverage, ConstructorWithAltitudeSetsAllButTheCircle) {
  const Coverage coverage(1, 2, 3, 4, 5.0F, 6.0F, 7.0F);
  EXPECT_TRUE(coverage.valueExists(0x7F));
  EXPECT_FALSE(coverage.valueExists(0x80));
  EXPECT_EQ(coverage.latitude(), 1);
  EXPECT_EQ(coverage.longitude(), 2);
  EXPECT_EQ(coverage.majorAxis(), 3U);
  EXPECT_EQ(coverage.minorAxis(), 4U);
  EXPECT_EQ(coverage.angle(), 5.0F);
  EXPECT_EQ(coverage.altitude(), 6.0F);
  EXPECT_EQ(coverage.altitudeUncertainty(), 7.0F);
  EXPECT_EQ(coverage.horizontalCepUncertainty(), 0.0F);
}

TEST(Coverage, ConstructorWithEllipseLeavesAltitudeAndCircleUnset) {
  const Coverage coverage(1, 2, 3, 4, 5.0F);
  EXPECT_TRUE(coverage.valueExists(0x3B));
  EXPECT_FALSE(coverage.valueExists(0x04));
  EXPECT_FALSE(coverage.valueExists(0x40));
  EXPECT_FALSE(coverage.valueExists(0x80));
  EXPECT_EQ(coverage.angle(), 5.0F);
  EXPECT_EQ(coverage.altitude(), 0.0F);
  EXPECT_EQ(coverage.altitudeUncertainty(), 0.0F);
}

TEST(Coverage, ConstructorWithCircleLeavesTheRestUnset) {
  const Coverage coverage(1, 2, 3.0F);
  EXPECT_TRUE(coverage.valueExists(0x83));
  EXPECT_FALSE(coverage.valueExists(0x04));
  EXPECT_FALSE(coverage.isEmpty());
  EXPECT_FALSE(coverage.valueExists(0));
  EXPECT_EQ(coverage.horizontalCepUncertainty(), 3.0F);
  EXPECT_EQ(coverage.majorAxis(), 0U);
}

TEST(Coverage, ValueExistsAsksForAllBits) {
  const Coverage coverage(1, 2, 3.0F);
  EXPECT_TRUE(coverage.valueExists(0x81));
  EXPECT_FALSE(coverage.valueExists(0x85));
}

TEST(Coverage, ValueSetSetsBitsWithoutTouchingFields) {
  Coverage coverage;
  coverage.valueSet(0x03);
  EXPECT_TRUE(coverage.valueExists(0x03));
  EXPECT_EQ(written(coverage), bytes("01 0300 00000000 00000000"));
}

TEST(Coverage, CircleAcceptsZeroAndInfinityAndRefusesNegativesAndNan) {
  Coverage coverage;
  EXPECT_EQ(coverage.setHorizontalCepUncertainty(-1.0F), StatusInvalidParameter);
  EXPECT_EQ(coverage.setHorizontalCepUncertainty(-std::numeric_limits<float>::denorm_min()),
            StatusInvalidParameter);
  EXPECT_EQ(coverage.setHorizontalCepUncertainty(kNan), StatusInvalidParameter);
  EXPECT_TRUE(coverage.isEmpty());
  EXPECT_EQ(coverage.setHorizontalCepUncertainty(kInfinity), StatusOk);
  EXPECT_EQ(coverage.setHorizontalCepUncertainty(-1.0F), StatusInvalidParameter);
  EXPECT_EQ(coverage.horizontalCepUncertainty(), kInfinity);
  EXPECT_EQ(coverage.setHorizontalCepUncertainty(0.0F), StatusOk);
  EXPECT_EQ(coverage.horizontalCepUncertainty(), 0.0F);
  EXPECT_TRUE(coverage.valueExists(0x80));
}

TEST(Coverage, ConstructorTakesTheCircleUnchecked) {
  EXPECT_EQ(Coverage(0, 0, -3.0F).horizontalCepUncertainty(), -3.0F);
}

TEST(Coverage, EmptyWritesVersionAndMaskAlone) {
  const Coverage coverage;
  EXPECT_EQ(written(coverage), bytes("01 0000"));
  Coverage back(1, 2, 3.0F);
  back.setLatitude(0);
  back.setLongitude(0);
  back.setHorizontalCepUncertainty(0.0F);
  ASSERT_TRUE(readFrom(back, bytes("01 0000")));
  EXPECT_EQ(back, coverage);
}

TEST(Coverage, AltitudeFollowsTheEllipseOnTheWire) {
  Coverage coverage(0x11121314, -1, 0x21222324, 0x31323334, 1.0F, 2.0F, 4.0F);
  coverage.setHorizontalCepUncertainty(8.0F);
  const test::Bytes wire =
      bytes("01 FF00 14131211 FFFFFFFF 24232221 34333231 0000803F 00000040 00008040 00000041");
  EXPECT_EQ(written(coverage), wire);
  Coverage back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_EQ(back, coverage);
  EXPECT_EQ(written(back), wire);
}

TEST(Coverage, ReadsTheSameFromAForeignStream) {
  test::LimitedStream stream(bytes("01 0C00 05000000 0000803F 77"));
  Coverage coverage;
  ASSERT_TRUE(coverage.read(stream));
  EXPECT_EQ(coverage.majorAxis(), 5U);
  EXPECT_EQ(coverage.altitude(), 1.0F);
  EXPECT_EQ(stream.offset(), 11U);
}

TEST(Coverage, RefusesVersion2AndClearsItsBits) {
  Coverage coverage(1, 2, 3.0F);
  EXPECT_FALSE(readFrom(coverage, bytes("02 0000")));
  EXPECT_TRUE(coverage.isEmpty());
  EXPECT_EQ(coverage.latitude(), 1);
}

TEST(Coverage, RefusesAMaskOf256) {
  Coverage coverage(1, 2, 3.0F);
  EXPECT_FALSE(readFrom(coverage, bytes("01 0001")));
  EXPECT_TRUE(coverage.isEmpty());
}

TEST(Coverage, FailsWhereverTheStreamEnds) {
  const test::Bytes whole = written(Coverage(1, 2, 3, 4, 5.0F, 6.0F, 7.0F));
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Coverage coverage;
    EXPECT_FALSE(readFrom(coverage, test::head(whole, length))) << length;
  }
}

TEST(Coverage, FailsWhereverTheStreamIsFull) {
  const Coverage coverage(1, 2, 3, 4, 5.0F, 6.0F, 7.0F);
  for (unsigned int room = 0; room < 31; ++room) {
    test::LimitedStream stream(room);
    EXPECT_FALSE(coverage.write(stream)) << room;
  }
  test::LimitedStream enough(31);
  EXPECT_TRUE(coverage.write(enough));
}

TEST(Coverage, ReadTakesWhatTheSetterRefuses) {
  Coverage coverage;
  ASSERT_TRUE(readFrom(coverage, bytes("01 8000 000080BF")));
  EXPECT_EQ(coverage.horizontalCepUncertainty(), -1.0F);
}

TEST(Coverage, FloatsThatDifferByLessThanOneAreEqual) {
  EXPECT_EQ(Coverage(0, 0, 1, 1, 0.5F), Coverage(0, 0, 1, 1, 0.9F));
  EXPECT_EQ(Coverage(0, 0, 1.0F), Coverage(0, 0, 1.9F));
  EXPECT_EQ(Coverage(0, 0, 1.9F), Coverage(0, 0, 1.0F));
  EXPECT_NE(Coverage(0, 0, 1.0F), Coverage(0, 0, 2.0F));
  EXPECT_NE(Coverage(0, 0, 2.0F), Coverage(0, 0, 1.0F));
  EXPECT_EQ(Coverage(0, 0, 1, 1, 0.0F, 1.5F, 2.5F), Coverage(0, 0, 1, 1, 0.0F, 0.75F, 1.75F));
  EXPECT_NE(Coverage(0, 0, 1, 1, 0.0F, 1.5F, 2.5F), Coverage(0, 0, 1, 1, 0.0F, 0.5F, 2.5F));
  EXPECT_NE(Coverage(0, 0, 1, 1, 0.0F, 1.5F, 2.5F), Coverage(0, 0, 1, 1, 0.0F, 1.5F, 1.5F));
}

TEST(Coverage, ANanEqualsEverything) {
  EXPECT_EQ(Coverage(0, 0, kNan), Coverage(0, 0, 1.0e30F));
  EXPECT_EQ(Coverage(0, 0, kNan), Coverage(0, 0, kNan));
  EXPECT_EQ(Coverage(0, 0, kInfinity), Coverage(0, 0, kInfinity));
}

TEST(Coverage, DifferencesBeyondWholeNumbersAreUnequal) {
  EXPECT_NE(Coverage(0, 0, 3.0e38F), Coverage(0, 0, -3.0e38F));
  EXPECT_NE(Coverage(0, 0, kInfinity), Coverage(0, 0, 1.0F));
  EXPECT_NE(Coverage(0, 0, -kInfinity), Coverage(0, 0, 1.0F));
  EXPECT_NE(Coverage(0, 0, 0.0F), Coverage(0, 0, 2147483648.0F));
  EXPECT_NE(Coverage(0, 0, -2147483648.0F), Coverage(0, 0, 0.0F));
}

TEST(Coverage, CoordinatesAndAxesCompareExactly) {
  const Coverage coverage(10, 20, 30, 40, 0.0F);
  EXPECT_NE(coverage, Coverage(11, 20, 30, 40, 0.0F));
  EXPECT_NE(coverage, Coverage(10, 21, 30, 40, 0.0F));
  EXPECT_NE(coverage, Coverage(10, 20, 31, 40, 0.0F));
  EXPECT_NE(coverage, Coverage(10, 20, 30, 41, 0.0F));
}

TEST(Coverage, UnsetFieldsAreComparedToo) {
  Coverage one(1, 2, 3.0F);
  Coverage other(9, 2, 3.0F);
  one.unset(1);
  other.unset(1);
  EXPECT_NE(one, other);
  Coverage high;
  high.setAltitude(5.0F);
  high.unset(0x04);
  EXPECT_NE(high, Coverage());
}

TEST(Coverage, MasksAreCompared) {
  Coverage coverage;
  coverage.setLatitude(0);
  EXPECT_NE(coverage, Coverage());
}

TEST(Coverage, CopiesAreEqualAndIndependent) {
  const Coverage source(1, 2, 3, 4, 5.0F, 6.0F, 7.0F);
  Coverage copy(source);
  EXPECT_EQ(copy, source);
  copy.setLatitude(100);
  EXPECT_EQ(source.latitude(), 1);
  copy = source;
  EXPECT_EQ(copy, source);
  const Coverage& self = copy;
  copy = self;
  EXPECT_EQ(copy, source);
}

TEST(Coverage, DumpHasNoEffect) {
  const Coverage coverage(1, 2, 3.0F);
  coverage.dump();
  EXPECT_EQ(coverage, Coverage(1, 2, 3.0F));
}

static_assert(std::is_base_of_v<ISerializable, Coverage>);
static_assert(std::is_base_of_v<gom::IValuable, Coverage>);

}  // namespace
}  // namespace trelvo::schema
