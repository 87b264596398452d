#include <trelvo/core/SystemInfo.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>

namespace trelvo::core {
namespace {

constexpr const char* kModel = "ORVE_DEVICE_TERMINAL_MODEL";
constexpr const char* kManufacturer = "ORVE_DEVICE_MANUFACTURER";
constexpr const char* kFirmware = "ORVE_DEVICE_FIRMWARE_VERSION";
constexpr const char* kImei = "ORVE_IMEI_FRAGMENT";
constexpr const char* kMcc = "ORVE_SIM_MCC";
constexpr const char* kMnc = "ORVE_SIM_MNC";

void set(const char* variable, const char* value) { ASSERT_EQ(::setenv(variable, value, 1), 0); }

// An environment with none of the variables.
class SystemInfoTest : public ::testing::Test {
 protected:
  void SetUp() override { clear(); }
  void TearDown() override { clear(); }

  static void clear() {
    for (const char* const variable : {kModel, kManufacturer, kFirmware, kImei, kMcc, kMnc}) {
      ASSERT_EQ(::unsetenv(variable), 0);
    }
  }

  static std::string imeiOf(const char* value) {
    set(kImei, value);
    std::string imei = "old";
    EXPECT_TRUE(SystemInfo::getImei(imei));
    return imei;
  }

  static std::string mmf() {
    std::string result = "old";
    EXPECT_TRUE(SystemInfo::getMMF(result));
    return result;
  }
};

TEST_F(SystemInfoTest, ThePlatformIsUbuntu) {
  std::string id = "old";
  EXPECT_TRUE(SystemInfo::getPlatformId(id));
  EXPECT_EQ(id, "ubuntu");
}

struct PlainVariable {
  const char* variable;
  bool (*get)(std::string&);
};

void PrintTo(const PlainVariable& variable, std::ostream* out) { *out << variable.variable; }

class PlainVariableTest : public SystemInfoTest,
                          public ::testing::WithParamInterface<PlainVariable> {};

TEST_P(PlainVariableTest, GivesItsValueUnchanged) {
  for (const char* const value : {"x", "310", " two words; and more ", "\xC3\xA4"}) {
    set(GetParam().variable, value);
    std::string result = "old";
    EXPECT_TRUE(GetParam().get(result));
    EXPECT_EQ(result, value);
  }
}

TEST_P(PlainVariableTest, EmptyIsFalseAndEmptiesTheString) {
  set(GetParam().variable, "");
  std::string result = "old";
  EXPECT_FALSE(GetParam().get(result));
  EXPECT_EQ(result, "");
}

TEST_P(PlainVariableTest, UnsetIsFalseAndLeavesTheString) {
  std::string result = "old";
  EXPECT_FALSE(GetParam().get(result));
  EXPECT_EQ(result, "old");
}

INSTANTIATE_TEST_SUITE_P(All, PlainVariableTest,
                         ::testing::Values(PlainVariable{kModel, &SystemInfo::getModelId},
                                           PlainVariable{kManufacturer,
                                                         &SystemInfo::getManufacturer},
                                           PlainVariable{kFirmware, &SystemInfo::getFirmware},
                                           PlainVariable{kMcc, &SystemInfo::getHomeMcc},
                                           PlainVariable{kMnc, &SystemInfo::getHomeMnc}),
                         [](const auto& test) { return std::string(test.param.variable); });

TEST_F(SystemInfoTest, ImeiKeepsEightCharactersAndPadsTo15) {
  EXPECT_EQ(imeiOf("1"), "100000000000000");
  EXPECT_EQ(imeiOf("1234"), "123400000000000");
  EXPECT_EQ(imeiOf("12345678"), "123456780000000");
  EXPECT_EQ(imeiOf("123456789"), "123456780000000");
  EXPECT_EQ(imeiOf("123456789012"), "123456780000000");
  EXPECT_EQ(imeiOf("123456789012345"), "123456780000000");
}

TEST_F(SystemInfoTest, ALongerImeiKeepsItsLength) {
  EXPECT_EQ(imeiOf("1234567890123456"), "1234567800000000");
  EXPECT_EQ(imeiOf("12345678901234567"), "12345678000000000");
}

TEST_F(SystemInfoTest, ImeiTakesAnyCharacters) {
  EXPECT_EQ(imeiOf("ab"), "ab0000000000000");
  EXPECT_EQ(imeiOf("abcdefghijk"), "abcdefgh0000000");
}

TEST_F(SystemInfoTest, NoImeiIsFalse) {
  std::string imei = "old";
  EXPECT_FALSE(SystemInfo::getImei(imei));
  EXPECT_EQ(imei, "old");
  set(kImei, "");
  EXPECT_FALSE(SystemInfo::getImei(imei));
}

TEST_F(SystemInfoTest, ImsiIsTheHomeNetworkAndZeros) {
  set(kMcc, "244");
  set(kMnc, "91");
  std::string imsi = "old";
  EXPECT_TRUE(SystemInfo::getImsi(imsi));
  EXPECT_EQ(imsi, "244910000000000");
  set(kMnc, "910");
  EXPECT_TRUE(SystemInfo::getImsi(imsi));
  EXPECT_EQ(imsi, "244910000000000");
  set(kMnc, "0123456789ABCDEF");
  EXPECT_TRUE(SystemInfo::getImsi(imsi));
  EXPECT_EQ(imsi, "2440123456789ABCDEF");
}

TEST_F(SystemInfoTest, ImsiNeedsBothCodes) {
  std::string imsi = "old";
  EXPECT_FALSE(SystemInfo::getImsi(imsi));
  set(kMcc, "244");
  EXPECT_FALSE(SystemInfo::getImsi(imsi));
  set(kMnc, "");
  EXPECT_FALSE(SystemInfo::getImsi(imsi));
  set(kMcc, "");
  set(kMnc, "91");
  EXPECT_FALSE(SystemInfo::getImsi(imsi));
  ASSERT_EQ(::unsetenv(kMcc), 0);
  EXPECT_FALSE(SystemInfo::getImsi(imsi));
  EXPECT_EQ(imsi, "old");
}

TEST_F(SystemInfoTest, MmfIsManufacturerModelFirmware) {
  set(kManufacturer, "maker");
  set(kModel, "phone");
  set(kFirmware, "1.2");
  EXPECT_EQ(mmf(), "maker;phone;1.2");
}

TEST_F(SystemInfoTest, MmfLeavesOutWhatIsNotKnown) {
  EXPECT_EQ(mmf(), ";;");
  set(kModel, "phone");
  EXPECT_EQ(mmf(), ";phone;");
  set(kFirmware, "1.2");
  set(kManufacturer, "");
  EXPECT_EQ(mmf(), ";phone;1.2");
}

TEST_F(SystemInfoTest, MmfReplacesSemicolons) {
  set(kManufacturer, ";m;");
  set(kModel, "a;b;;c");
  set(kFirmware, ";");
  EXPECT_EQ(mmf(), "_m_;a_b__c;_");
  std::string model;
  EXPECT_TRUE(SystemInfo::getModelId(model));
  EXPECT_EQ(model, "a;b;;c");
}

TEST_F(SystemInfoTest, ThereIsNoBatteryLevel) {
  unsigned char level = 42;
  EXPECT_FALSE(SystemInfo::getBatteryLevel(level));
  EXPECT_EQ(level, 42);
}

TEST_F(SystemInfoTest, SettersHaveNoEffect) {
  SystemInfo::setBatteryLevel(50);
  SystemInfo::setModelId("phone");
  SystemInfo::setFirmware("1.2");
  SystemInfo::setImei("1234");
  SystemInfo::setHomeMccMnc(244, 91);
  unsigned char level = 0;
  std::string result = "old";
  EXPECT_FALSE(SystemInfo::getBatteryLevel(level));
  EXPECT_FALSE(SystemInfo::getModelId(result));
  EXPECT_FALSE(SystemInfo::getFirmware(result));
  EXPECT_FALSE(SystemInfo::getImei(result));
  EXPECT_FALSE(SystemInfo::getImsi(result));
  EXPECT_EQ(result, "old");
}

TEST_F(SystemInfoTest, ObjectsHaveNoContent) {
  static_cast<void>(SystemInfo());
  static_assert(std::is_empty_v<SystemInfo>);
}

}  // namespace
}  // namespace trelvo::core
