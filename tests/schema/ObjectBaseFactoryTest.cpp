#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <typeinfo>

#include <trelvo/BufferStream.h>
#include <trelvo/gom/Variant.h>
#include <trelvo/schema/Area.h>
#include <trelvo/schema/CdmaCell.h>
#include <trelvo/schema/CdmaCellDn.h>
#include <trelvo/schema/CdmaFrequencyInfo.h>
#include <trelvo/schema/CdmaNeighborCell.h>
#include <trelvo/schema/CdmaNwMeasurement.h>
#include <trelvo/schema/CdmaServingCellMeasurement.h>
#include <trelvo/schema/CellularObject.h>
#include <trelvo/schema/CellularObjectDn.h>
#include <trelvo/schema/EUtraCell.h>
#include <trelvo/schema/EUtraCellDn.h>
#include <trelvo/schema/EUtraFrequencyInfo.h>
#include <trelvo/schema/EUtraNeighborCell.h>
#include <trelvo/schema/EUtraNwMeasurement.h>
#include <trelvo/schema/EUtraServingCellMeasurement.h>
#include <trelvo/schema/GeranCell.h>
#include <trelvo/schema/GeranCellDn.h>
#include <trelvo/schema/GeranFrequencyInfo.h>
#include <trelvo/schema/GeranNeighborCell.h>
#include <trelvo/schema/GeranNwMeasurement.h>
#include <trelvo/schema/GeranServingCellMeasurement.h>
#include <trelvo/schema/GnssMeasurementData.h>
#include <trelvo/schema/ObjectBaseFactory.h>
#include <trelvo/schema/PositionEstimate.h>
#include <trelvo/schema/UtraCellDn.h>
#include <trelvo/schema/UtraFddCell.h>
#include <trelvo/schema/UtraFddFrequencyInfo.h>
#include <trelvo/schema/UtraFddNeighborCell.h>
#include <trelvo/schema/UtraFddNwMeasurement.h>
#include <trelvo/schema/UtraFddServingCellMeasurement.h>
#include <trelvo/schema/UtraTddCell.h>
#include <trelvo/schema/UtraTddFrequencyInfo.h>
#include <trelvo/schema/UtraTddNeighborCell.h>
#include <trelvo/schema/UtraTddNwMeasurement.h>
#include <trelvo/schema/UtraTddServingCellMeasurement.h>
#include <trelvo/schema/WlanApMeasurement.h>
#include <trelvo/schema/WlanDn.h>

#include "tests/support/Bytes.h"

namespace trelvo::schema {
namespace {

using gom::ObjectBase;
using gom::SharedPointer;
using gom::Variant;
using test::bytes;

unsigned char lowByte(unsigned short classId) { return static_cast<unsigned char>(classId); }

/// One row of the table of class ids.
struct Row {
  const char* name;
  const std::type_info* type;
  unsigned short classId;
  bool hasWireForm;
};

std::ostream& operator<<(std::ostream& out, const Row& row) { return out << row.name; }
std::string nameOf(const testing::TestParamInfo<Row>& row) { return row.param.name; }

const Row kRows[] = {
    {"GeranCellDn", &typeid(GeranCellDn), 100, true},
    {"UtraCellDn", &typeid(UtraCellDn), 101, true},
    {"GeranFrequencyInfo", &typeid(GeranFrequencyInfo), 102, true},
    {"UtraFddFrequencyInfo", &typeid(UtraFddFrequencyInfo), 103, true},
    {"Area", &typeid(Area), 104, true},
    {"GeranCell", &typeid(GeranCell), 105, false},
    {"GeranNeighborCell", &typeid(GeranNeighborCell), 106, false},
    {"UtraFddCell", &typeid(UtraFddCell), 107, false},
    {"UtraFddNeighborCell", &typeid(UtraFddNeighborCell), 108, false},
    {"GeranServingCellMeasurement", &typeid(GeranServingCellMeasurement), 109, true},
    {"GeranNwMeasurement", &typeid(GeranNwMeasurement), 110, true},
    {"UtraFddServingCellMeasurement", &typeid(UtraFddServingCellMeasurement), 111, true},
    {"UtraFddNwMeasurement", &typeid(UtraFddNwMeasurement), 112, true},
    {"PositionEstimate", &typeid(PositionEstimate), 113, true},
    {"CellularObjectDn", &typeid(CellularObjectDn), 114, false},
    {"CellularObject", &typeid(CellularObject), 115, false},
    {"EUtraCell", &typeid(EUtraCell), 116, false},
    {"EUtraNeighborCell", &typeid(EUtraNeighborCell), 117, false},
    {"EUtraServingCellMeasurement", &typeid(EUtraServingCellMeasurement), 118, true},
    {"EUtraNwMeasurement", &typeid(EUtraNwMeasurement), 119, true},
    {"EUtraFrequencyInfo", &typeid(EUtraFrequencyInfo), 120, true},
    {"EUtraCellDn", &typeid(EUtraCellDn), 121, true},
    {"CdmaCellDn", &typeid(CdmaCellDn), 122, true},
    {"CdmaFrequencyInfo", &typeid(CdmaFrequencyInfo), 123, true},
    {"CdmaCell", &typeid(CdmaCell), 124, false},
    {"CdmaNeighborCell", &typeid(CdmaNeighborCell), 125, false},
    {"CdmaServingCellMeasurement", &typeid(CdmaServingCellMeasurement), 126, true},
    {"CdmaNwMeasurement", &typeid(CdmaNwMeasurement), 127, true},
    {"WlanDn", &typeid(WlanDn), 128, true},
    {"WlanApMeasurement", &typeid(WlanApMeasurement), 129, true},
    {"GnssMeasurementData", &typeid(GnssMeasurementData), 130, true},
    {"UtraTddFrequencyInfo", &typeid(UtraTddFrequencyInfo), 131, true},
    {"UtraTddCell", &typeid(UtraTddCell), 132, false},
    {"UtraTddNeighborCell", &typeid(UtraTddNeighborCell), 133, false},
    {"UtraTddServingCellMeasurement", &typeid(UtraTddServingCellMeasurement), 134, true},
    {"UtraTddNwMeasurement", &typeid(UtraTddNwMeasurement), 135, true},
};

class ObjectBaseFactoryRow : public testing::TestWithParam<Row> {
 public:
  SharedPointer<ObjectBase> record = ObjectBaseFactory::createObject(GetParam().classId);
};
INSTANTIATE_TEST_SUITE_P(Classes, ObjectBaseFactoryRow, testing::ValuesIn(kRows), nameOf);

TEST_P(ObjectBaseFactoryRow, MakesANewEmptyRecordOfTheClass) {
  ASSERT_TRUE(record);
  const ObjectBase& made = *record;
  EXPECT_EQ(typeid(made), *GetParam().type);
  EXPECT_EQ(made.key(), GetParam().classId);
  EXPECT_TRUE(made.isEmpty());
  EXPECT_EQ(made.referenceCount(), 1);
}

TEST_P(ObjectBaseFactoryRow, OnlyAClassWithAWireFormWritesInAVariant) {
  Variant variant;
  ASSERT_EQ(variant.setObjectValue(record), StatusOk);
  BufferStream stream;
  if (GetParam().hasWireForm) {
    EXPECT_TRUE(variant.write(stream));
  } else {
    EXPECT_THROW(static_cast<void>(variant.write(stream)), Status);
  }
}

TEST_P(ObjectBaseFactoryRow, OnlyAClassWithAWireFormReadsInAVariant) {
  Variant variant;
  BufferStream stream;
  test::fill(stream, test::joined({bytes("0E00 0000"), {lowByte(GetParam().classId), 0x00}}));
  if (!GetParam().hasWireForm) {
    EXPECT_THROW(static_cast<void>(variant.read(stream)), Status);
    return;
  }
  test::fill(stream, test::written(*record));
  ASSERT_TRUE(variant.read(stream));
  SharedPointer<ObjectBase> back;
  ASSERT_EQ(variant.getObjectValue(back), StatusOk);
  const ObjectBase& made = *back;
  EXPECT_EQ(typeid(made), *GetParam().type);
  EXPECT_TRUE(made.compare(record.get()));
  EXPECT_TRUE(stream.eof());
}

TEST(ObjectBaseFactory, ThrowsForEveryOtherId) {
  for (const unsigned int id : {0U, 1U, 99U, 136U, 137U, 255U, 0x164U, 0xFFFFU}) {
    try {
      static_cast<void>(ObjectBaseFactory::createObject(static_cast<unsigned short>(id)));
      FAIL() << id;
    } catch (const Status status) {
      EXPECT_EQ(status, StatusInternal) << id;
    }
  }
}

TEST(ObjectBaseFactory, AVariantOfAnUnknownClassThrows) {
  Variant variant;
  for (const char* const wire : {"0E00 0000 6300 01 00", "0E00 0000 8800 01 00"}) {
    EXPECT_THROW(static_cast<void>(test::readFrom(variant, bytes(wire))), Status) << wire;
  }
  EXPECT_FALSE(test::readFrom(variant, bytes("0E00 0000 0000 01 00")));  // 0 stands for no class
}

}  // namespace
}  // namespace trelvo::schema
