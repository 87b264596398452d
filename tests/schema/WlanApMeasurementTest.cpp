#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include <trelvo/gom/GenericObject.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

#include "tests/support/Bytes.h"
#include "tests/support/LimitedStream.h"

namespace trelvo::schema {
namespace {

using gom::SharedPointer;
using test::bytes;
using test::readFrom;
using test::written;

using Ap = WlanApMeasurement;

/// One row of the table of fields: how it is set, and the record in which only it is set.
struct Row {
  const char* name;
  unsigned int bit;
  Status (*set)(Ap&);
  bool (*holds)(const Ap&);
  const char* wire;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }
std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

const Row kRows[] = {
    {"Ssid", 0x001, [](Ap& m) { return m.setSsid(0xA1B2); },
     [](const Ap& m) { return m.ssid() == 0xA1B2; }, "01 01000000 B2A1"},
    {"RxLevel", 0x002, [](Ap& m) { return m.setRxLevel(-128); },
     [](const Ap& m) { return m.rxLevel() == -128; }, "01 02000000 80"},
    {"TxLevel", 0x004, [](Ap& m) { return m.setTxLevel(-1); },
     [](const Ap& m) { return m.txLevel() == -1; }, "01 04000000 FF"},
    {"Rssi", 0x100, [](Ap& m) { return m.setRssi(99); }, [](const Ap& m) { return m.rssi() == 99; },
     "01 00010000 63"},
    {"Distance", 0x008, [](Ap& m) { return m.setDistance(255); },
     [](const Ap& m) { return m.distance() == 255; }, "01 08000000 FF"},
    {"DistanceUncertainty", 0x010, [](Ap& m) { return m.setDistanceUncertainty(17); },
     [](const Ap& m) { return m.distanceUncertainty() == 17; }, "01 10000000 11"},
    {"Band", 0x020, [](Ap& m) { return m.setBand(2); }, [](const Ap& m) { return m.band() == 2; },
     "01 20000000 02"},
    {"ApLatitude", 0x040, [](Ap& m) { return m.setApLatitude(-2147483647 - 1); },
     [](const Ap& m) { return m.apLatitude() == -2147483647 - 1; }, "01 40000000 00000080"},
    {"ApLongitude", 0x080, [](Ap& m) { return m.setApLongitude(0x01020304); },
     [](const Ap& m) { return m.apLongitude() == 0x01020304; }, "01 80000000 04030201"},
};

Ap withEverything() {
  Ap measurement;
  for (const Row& row : kRows) {
    row.set(measurement);
  }
  return measurement;
}

class WlanApMeasurementField : public testing::TestWithParam<Row> {};
INSTANTIATE_TEST_SUITE_P(Rows, WlanApMeasurementField, testing::ValuesIn(kRows), nameOf);

TEST_P(WlanApMeasurementField, SettingStoresAndSetsItsBitAlone) {
  Ap measurement;
  EXPECT_EQ(GetParam().set(measurement), StatusOk);
  EXPECT_TRUE(GetParam().holds(measurement));
  EXPECT_EQ(measurement.values(), GetParam().bit);
}

TEST_P(WlanApMeasurementField, UnsettingKeepsTheField) {
  Ap measurement;
  GetParam().set(measurement);
  measurement.unset(GetParam().bit);
  EXPECT_TRUE(measurement.isEmpty());
  EXPECT_TRUE(GetParam().holds(measurement));
  EXPECT_EQ(measurement, Ap());
}

TEST_P(WlanApMeasurementField, AloneWritesTheseBytesAndReadsBack) {
  Ap measurement;
  GetParam().set(measurement);
  EXPECT_EQ(written(measurement), bytes(GetParam().wire));
  Ap back;
  ASSERT_TRUE(readFrom(back, bytes(GetParam().wire)));
  EXPECT_TRUE(GetParam().holds(back));
  EXPECT_EQ(back, measurement);
}

TEST_P(WlanApMeasurementField, DecidesEqualityWhileSet) {
  // All the rows' values differ from 0, which is what stands here under the same bit.
  Ap zero;
  const test::Bytes head = test::head(bytes(GetParam().wire), 5);
  ASSERT_TRUE(readFrom(zero, test::joined({head, bytes("00 00 00 00")})));
  Ap measurement;
  GetParam().set(measurement);
  EXPECT_EQ(zero.values(), measurement.values());
  EXPECT_NE(zero, measurement);
}

TEST(WlanApMeasurement, IsOfClass129AndStartsEmpty) {
  const Ap measurement;
  EXPECT_EQ(measurement.key(), 129);
  EXPECT_TRUE(measurement.isEmpty());
  EXPECT_EQ(measurement.ssid(), 0);
  EXPECT_EQ(measurement.rxLevel(), 0);
  EXPECT_EQ(measurement.txLevel(), 0);
  EXPECT_EQ(measurement.rssi(), 0);
  EXPECT_EQ(measurement.distance(), 0);
  EXPECT_EQ(measurement.distanceUncertainty(), 0);
  EXPECT_EQ(measurement.band(), 0);
  EXPECT_EQ(measurement.apLatitude(), 0);
  EXPECT_EQ(measurement.apLongitude(), 0);
  EXPECT_EQ(written(measurement), bytes("01 00000000"));
}

TEST(WlanApMeasurement, RssiStandsFourthOnTheWire) {
  const test::Bytes wire = bytes("01 FF010000 B2A1 80 FF 63 FF 11 02 00000080 04030201");
  EXPECT_EQ(written(withEverything()), wire);
  Ap back;
  ASSERT_TRUE(readFrom(back, wire));
  EXPECT_EQ(back, withEverything());
}

TEST(WlanApMeasurement, RefusesVersion2AndClearsItsPresenceBits) {
  Ap measurement = withEverything();
  EXPECT_FALSE(readFrom(measurement, bytes("02 00000000")));
  EXPECT_TRUE(measurement.isEmpty());
  EXPECT_EQ(measurement.rssi(), 99);
}

TEST(WlanApMeasurement, BitsWithoutAFieldStayInTheMask) {
  Ap measurement;
  ASSERT_TRUE(readFrom(measurement, bytes("01 200000F0 07")));
  EXPECT_EQ(measurement.values(), 0xF0000020U);
  EXPECT_EQ(measurement.band(), 7);
}

TEST(WlanApMeasurement, CopiesAndClonesAreEqualAndIndependent) {
  SharedPointer<Ap> source(new Ap(withEverything()));
  source->extension()->setUint32Property(1, 2);
  const SharedPointer<Ap> copy = Ap::create(source);
  const SharedPointer<Ap> clone = source->clone();
  ASSERT_TRUE(copy);
  ASSERT_TRUE(clone);
  EXPECT_EQ(*copy, *source);
  EXPECT_EQ(*clone, *source);
  EXPECT_EQ(copy->extensionReference(), source->extensionReference());
  EXPECT_NE(clone->extensionReference(), source->extensionReference());
  copy->setBand(9);
  clone->setBand(9);
  EXPECT_EQ(source->band(), 2);

  Ap assigned;
  assigned = *source;
  EXPECT_EQ(assigned, *source);
  EXPECT_FALSE(Ap::create(SharedPointer<Ap>()));
  EXPECT_TRUE(Ap::create()->isEmpty());
}

}  // namespace
}  // namespace trelvo::schema
