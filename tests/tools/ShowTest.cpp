#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "tests/tools/ToolFixture.h"
#include "tools/trelvo/ShowValue.h"
#include "tools/trelvo/WireParser.h"

namespace trelvo::tool {
namespace {

using nlohmann::ordered_json;

Outcome show(const Bytes& bytes, const std::string& mode = "") {
  return mode.empty() ? runTool({"show", "-"}, bytes) : runTool({"show", mode, "-"}, bytes);
}

ordered_json showJson(const Bytes& bytes) {
  const Outcome outcome = show(bytes, "--json");
  EXPECT_EQ(outcome.status, kExitGood) << outcome.err;
  return ordered_json::parse(outcome.out);
}

Bytes small() { return golden("pub_container_small"); }
Bytes sevenKinds() { return golden("pub_container_seven_kinds_forward"); }
Bytes eightKinds() { return golden("pub_injection_eight_kinds_forward"); }

TEST(Show, TreeOfASmallContainer) {
  const Outcome outcome = show(small());
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "MeasurementContainer\n"
            "  offset: 0\n"
            "  geranMeasurementCollection: 1 element\n"
            "    [0] GeranCellMeasurement\n"
            "      timeStamp: 1234567890 s (2009-02-13T23:31:30Z)\n"
            "      dn: GeranCellDn\n"
            "        mcc: 244\n"
            "        mnc: 5\n"
            "        lac: 1000\n"
            "        cid: 2000\n");
}

TEST(Show, JsonOfASmallContainer) {
  const Outcome outcome = show(small(), "--json");
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out,
            "[\n"
            "{\"class\":\"MeasurementContainer\",\"offset\":0,\"geranMeasurementCollection\":["
            "{\"class\":\"GeranCellMeasurement\",\"timeStamp\":{\"value\":1234567890,"
            "\"unit\":\"s\",\"utc\":\"2009-02-13T23:31:30Z\"},\"dn\":{\"class\":\"GeranCellDn\","
            "\"mcc\":244,\"mnc\":5,\"lac\":1000,\"cid\":2000}}]}\n"
            "]\n");
}

TEST(Show, RawFormOfASmallContainer) {
  const Outcome outcome = show(small(), "--raw");
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(outcome.out,
            "00000000  01 00 01 00 00 00                    object 1, 1 property\n"
            "00000006  0f 00 2c 01 01 00 00 00                "
            "key 300, tag 15 collection: 1 element\n"
            "0000000e  0d 00 00 00 02 00 02 00 00 00            "
            "key 0, tag 13 object: object 2, 2 properties\n"
            "00000018  06 00 cd 00 d2 02 96 49                    "
            "key 205, tag 6 uint32: 1234567890\n"
            "00000020  0e 00 c8 00 64 00                          "
            "key 200, tag 14 record: class 100 GeranCellDn, 10 bytes\n"
            "00000026  01 0f f4 00 05 00 e8 03 d0 07\n");
}

TEST(Show, SevenKindsAreDecoded) {
  const ordered_json container = showJson(sevenKinds())[0];
  EXPECT_EQ(container["class"], "MeasurementContainer");
  EXPECT_EQ(container["measurementId"], 4711);

  const ordered_json& geran = container["geranMeasurementCollection"][0];
  EXPECT_EQ(geran["class"], "GeranCellMeasurement");
  EXPECT_EQ(geran["timeStamp"]["utc"], "2023-11-14T22:15:00Z");
  EXPECT_EQ(geran["servingCellMeasurement"]["timingAdvance"], 63);
  EXPECT_EQ(geran["servingCellMeasurement"]["nwMeasurement"]["frequencyInfo"]["arfcn"], 1023);
  EXPECT_EQ(geran["nwMeasurementCollection"].size(), 2u);
  EXPECT_EQ(geran["nwMeasurementCollection"][0]["rxLevel"],
            ordered_json::parse(R"({"value":47,"from":-64,"below":-63,"levelUnit":"dBm",
                                    "scale":"RXLEV"})"));

  const ordered_json& fdd = container["utraFddMeasurementCollection"][0];
  EXPECT_EQ(fdd["unreliableStateTimeStamp"]["value"], 1700000105);
  EXPECT_EQ(fdd["dn"]["ucid"],
            ordered_json::parse(R"({"value":19088743,"rncId":291,"cid":17767})"));
  const ordered_json& heard = fdd["nwMeasurementCollection"][0];
  EXPECT_EQ(heard["uarfcnUl"], 9612);
  EXPECT_EQ(heard["ecNo"]["from"], 0);
  EXPECT_EQ(heard["ecNo"].count("below"), 0u);
  EXPECT_EQ(heard["utraCarrierRssi"]["from"], -25);
  EXPECT_EQ(heard["rscp"]["value"], -100);
  EXPECT_EQ(heard["rscp"].count("from"), 0u);
  EXPECT_EQ(heard["pathloss"], ordered_json::parse(R"({"value":158,"unit":"dB"})"));

  const ordered_json& tdd = container["utraTddMeasurementCollection"][0];
  EXPECT_EQ(tdd["servingCellMeasurement"]["lac"], 4660);
  EXPECT_EQ(tdd["nwMeasurementCollection"][1]["frequencyInfo"]["cellParam"], 127);
  EXPECT_EQ(tdd["nwMeasurementCollection"][0]["rscp"]["scale"], "P-CCPCH RSCP");

  const ordered_json& eutra = container["eutraMeasurementCollection"][0];
  EXPECT_EQ(eutra["dn"]["ucid"],
            ordered_json::parse(R"({"value":19088743,"eNodeBId":74565,"lcid":103})"));
  EXPECT_EQ(eutra["nwMeasurementCollection"][0]["rsrp"]["from"], -44);
  EXPECT_EQ(eutra["nwMeasurementCollection"][0]["rsrq"]["from"], -3);
  EXPECT_EQ(eutra["nwMeasurementCollection"][0]["tac"], 39612);

  const ordered_json& cdma = container["cdmaMeasurementCollection"][0];
  EXPECT_EQ(cdma["dn"],
            ordered_json::parse(R"({"class":"CdmaCellDn","sid":15365,"nid":258,"bsid":65025})"));
  EXPECT_EQ(cdma["nwMeasurementCollection"][0]["frequencyInfo"],
            ordered_json::parse(R"({"class":"CdmaFrequencyInfo"})"));

  const ordered_json& wlan = container["wlanMeasurementCollection"][0];
  EXPECT_EQ(wlan["dn"]["bssid"], "02:03:04:05:06:00");
  EXPECT_EQ(wlan["elapsedRealtimeTimeStamp"], 123456789012345);
  EXPECT_EQ(wlan["wlanApMeasurement"]["rxLevel"],
            ordered_json::parse(R"({"value":-40,"unit":"dBm"})"));
}

TEST(Show, AFixIsDecoded) {
  const ordered_json data =
      showJson(sevenKinds())[0]["gnssMeasurementCollection"][0]["measurementData"];
  EXPECT_EQ(data, ordered_json::parse(R"({
      "class": "GnssMeasurementData",
      "coverage": {
        "class": "Coverage",
        "latitude": {"value": 52.518897057, "unit": "degrees", "code": 1253149696},
        "longitude": {"value": -13.403234482, "unit": "degrees", "code": -159906816},
        "majorAxis": {"value": 1500, "unit": "m"},
        "minorAxis": {"value": 700, "unit": "m"},
        "angle": {"value": 0.7853982, "unit": "rad", "degrees": 45.000001252},
        "altitude": {"value": 120.5, "unit": "m"},
        "altitudeUncertainty": {"value": 7.25, "unit": "m"},
        "horizontalCepUncertainty": {"value": 950, "unit": "m"}
      },
      "speed": {"value": 27.75, "unit": "m/s"},
      "speedUncertainty": {"value": 0.125, "unit": "m/s"},
      "course": {"value": 123.456, "unit": "degrees"},
      "courseUncertainty": {"value": 2.5, "unit": "degrees"}
  })"));
}

TEST(Show, EightKindsOfInjectionAreDecoded) {
  const ordered_json injection = showJson(eightKinds())[0];
  EXPECT_EQ(injection["class"], "Injection");
  EXPECT_EQ(injection["measurementId"], 4712);
  const ordered_json& geran = injection["geranInjectionCollection"][0];
  EXPECT_EQ(geran["class"], "GeranServingCellInjection");
  EXPECT_EQ(geran["source"], 2);
  EXPECT_EQ(geran["coverage"]["class"], "Area");
  EXPECT_EQ(geran["coverage"]["majorAxis"]["value"], 1500);
  EXPECT_EQ(geran["neighborCellInjectionCollection"][1]["neighborCellMeasurement"]["cid"], 41394);
  EXPECT_EQ(injection["utraFddInjectionCollection"][0]["unreliableStateTimeStamp"]["value"],
            1700000205);
  EXPECT_EQ(injection["utraTddInjectionCollection"][0]["class"], "UtraTddServingCellInjection");
  EXPECT_EQ(injection["eutraInjectionCollection"][0]["neighborCellInjectionCollection"][0]["class"],
            "EUtraNeighborCellInjection");
  EXPECT_EQ(injection["cdmaInjectionCollection"][0]["dn"]["sid"], 15365);
  EXPECT_EQ(injection["cellularObjectInjectionCollection"][0]["timeStamp"]["value"], 1700000700);
  EXPECT_EQ(injection["gnssInjectionCollection"][0]["gnssMeasurementData"]["speed"]["value"],
            27.75);
  const ordered_json& wlan = injection["wlanInjectionCollection"][0];
  EXPECT_EQ(wlan["dn"]["bssid"], "01:02:03:04:05:06:07:00");
  EXPECT_EQ(wlan["wlanApMeasurement"]["ssid"], 5);
  EXPECT_EQ(wlan["wlanApMeasurement"]["apLatitude"]["code"], -7);
  EXPECT_EQ(wlan["wlanApMeasurement"]["apLongitude"]["code"], 8);
}

TEST(Show, APositionEstimateIsDecoded) {
  const Bytes bytes = Wire()
                          .object(99, 1)
                          .value(TagRecord, 1)
                          .u16(113)
                          .u8(1)
                          .u32(0x1E001)
                          .u32(951782400)  // time stamp
                          .u32(3)          // floor
                          .u32(0x0811)     // technology
                          .u32(7);         // source
  const ordered_json object = showJson(bytes)[0];
  EXPECT_EQ(object["property 1"], ordered_json::parse(R"({
      "class": "PositionEstimate",
      "timeStamp": {"value": 951782400, "unit": "s", "utc": "2000-02-29T00:00:00Z"},
      "floorId": 3,
      "buildingId": "",
      "technology": {"value": 2065, "names": "Gnss+CellLac+CellRnc"},
      "source": 7
  })"));
}

// One spelling for numbers: 0.000041951 as 4.1951e-05.
std::string respelled(const std::string& text) {
  return ordered_json::accept(text) ? ordered_json::parse(text).dump() : text;
}

// The lines of the tree without list counts and class names, as "name: value".
std::vector<std::string> treeValues(const std::string& tree) {
  std::vector<std::string> values;
  std::istringstream lines(tree);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t colon = line.find(": ");
    const std::string rest = colon == std::string::npos ? "" : line.substr(colon + 2);
    const bool heading = rest.empty() || std::isupper(static_cast<unsigned char>(rest[0])) != 0 ||
                         rest.find(" element") != std::string::npos;
    if (!heading) {
      values.push_back(
          line.substr(line.find_first_not_of(' '), colon + 2 - line.find_first_not_of(' ')) +
          respelled(rest.substr(0, rest.find(' '))));
    }
  }
  return values;
}

std::string leafText(const ordered_json& leaf) {
  return leaf.is_string() ? leaf.get<std::string>() : leaf.dump();
}

void collectJsonValues(const ordered_json& json, std::vector<std::string>& values) {
  for (const auto& [name, member] : json.items()) {
    if (member.is_object() && member.contains("value")) {
      values.push_back(name + ": " + leafText(member["value"]));
    } else if (member.is_structured()) {
      collectJsonValues(member, values);
    } else if (name != "class") {
      values.push_back(name + ": " + leafText(member));
    }
  }
}

TEST(Show, TheTreeAndTheJsonHoldTheSame) {
  for (const Bytes& bytes : {small(), sevenKinds(), eightKinds()}) {
    std::vector<std::string> values;
    collectJsonValues(showJson(bytes)[0], values);
    EXPECT_GT(values.size(), 5u);
    EXPECT_EQ(treeValues(show(bytes).out), values);
  }
}

TEST(Show, OneFileHoldsManyObjects) {
  const Bytes bytes = joined({small(), eightKinds(), small()});
  const ordered_json array = showJson(bytes);
  ASSERT_EQ(array.size(), 3u);
  EXPECT_EQ(array[0]["offset"], 0);
  EXPECT_EQ(array[1]["offset"], small().size());
  EXPECT_EQ(array[2]["offset"], small().size() + eightKinds().size());

  const Outcome lines = show(bytes, "--ndjson");
  std::istringstream text(lines.out);
  std::size_t count = 0;
  for (std::string line; std::getline(text, line); ++count) {
    EXPECT_EQ(ordered_json::parse(line), array[count]);
  }
  EXPECT_EQ(count, 3u);
}

TEST(Show, AnEmptyFileHoldsNothing) {
  EXPECT_EQ(show({}).out, "");
  EXPECT_EQ(show({}, "--json").out, "[]\n");
  EXPECT_EQ(show({}, "--ndjson").out, "");
  EXPECT_EQ(show({}, "--raw").out, "");
  EXPECT_EQ(show({}).status, kExitGood);
}

TEST(Show, UnknownObjectsAreShownWithTheirTypes) {
  const Bytes bytes = Wire()
                          .object(77, 6)
                          .value(TagInt8, 1)
                          .u8(0xFE)
                          .value(TagBoolean, 2)
                          .u8(1)
                          .value(TagFloat, 3)
                          .u32(0x7FC00000)
                          .value(TagNone, 4)
                          .value(1000, 5)
                          .value(TagObject, 6)
                          .object(1, 1)
                          .value(TagUint32, 317)
                          .u32(9);
  const ordered_json object = showJson(bytes)[0];
  EXPECT_EQ(object, ordered_json::parse(R"({
      "class": "GenericObject", "offset": 0, "key": 77,
      "property 1": {"value": -2, "type": "int8"},
      "property 2": {"value": true, "type": "boolean"},
      "property 3": {"value": "nan", "type": "float"},
      "property 4": {"value": null, "type": "none"},
      "property 5": {"value": null, "type": "tag 1000"},
      "property 6": {"class": "MeasurementContainer", "measurementId": 9}
  })"));
  EXPECT_EQ(show(bytes).out,
            "GenericObject\n"
            "  offset: 0\n"
            "  key: 77\n"
            "  property 1: -2 (int8)\n"
            "  property 2: true (boolean)\n"
            "  property 3: nan (float)\n"
            "  property 4: null (none)\n"
            "  property 5: null (tag 1000)\n"
            "  property 6: MeasurementContainer\n"
            "    measurementId: 9\n");
}

TEST(Show, AKnownPropertyOfAnotherTypeKeepsItsName) {
  const Bytes bytes = Wire().object(2, 2).value(TagInt64, 205).u64(5).value(TagUint8, 999).u8(6);
  EXPECT_EQ(showJson(bytes)[0], ordered_json::parse(R"({
      "class": "GeranCellMeasurement", "offset": 0,
      "timeStamp": {"value": 5, "type": "int64"},
      "property 999": {"value": 6, "type": "uint8"}
  })"));
}

TEST(Show, ARepeatedPropertyIsNumbered) {
  Wire wire;
  wire.object(1, 4);
  for (unsigned int i = 1; i <= 3; ++i) {
    wire.value(TagUint32, 317).u32(i);
  }
  wire.value(TagUint32, 1).u32(4);
  EXPECT_EQ(showJson(wire)[0], ordered_json::parse(R"({
      "class": "MeasurementContainer", "offset": 0,
      "measurementId": 1, "measurementId#2": 2, "measurementId#3": 3,
      "property 1": {"value": 4, "type": "uint32"}
  })"));
}

TEST(Show, AnElementWithAKeyShowsIt) {
  const Bytes bytes = Wire()
                          .object(1, 1)
                          .value(TagCollection, 300)
                          .u32(3)
                          .value(TagUint8, 0)
                          .u8(1)
                          .value(TagUint8, 5)
                          .u8(2)
                          .value(TagObject, 6)
                          .object(22, 0);
  EXPECT_EQ(showJson(bytes)[0]["geranMeasurementCollection"], ordered_json::parse(R"([
      {"value": 1, "type": "uint8"},
      {"class": "Element", "key": 5, "value": {"value": 2, "type": "uint8"}},
      {"class": "Element", "key": 6, "value": {"class": "WlanInjection"}}
  ])"));
  EXPECT_EQ(show(bytes).out,
            "MeasurementContainer\n"
            "  offset: 0\n"
            "  geranMeasurementCollection: 3 elements\n"
            "    [0] 1 (uint8)\n"
            "    [1] Element\n"
            "      key: 5\n"
            "      value: 2 (uint8)\n"
            "    [2] Element\n"
            "      key: 6\n"
            "      value: WlanInjection\n");
}

TEST(Show, TextIsQuotedAndCannotReachTheTerminal) {
  const std::string text = "a\"b\n\x1b[31m\xc2\x9b\x7f\xc3\xa9";
  const Bytes bytes = Wire()
                          .object(1, 1)
                          .value(TagString, 5)
                          .u32(static_cast<unsigned int>(text.size()))
                          .text(text);
  EXPECT_EQ(show(bytes).out,
            "MeasurementContainer\n"
            "  offset: 0\n"
            "  property 5: \"a\\\"b\\n\\u001b[31m\\u009b\\u007f\\u00e9\"\n");
  EXPECT_EQ(showJson(bytes)[0]["property 5"], text);
  EXPECT_EQ(show(bytes, "--raw").out.find('\x1b'), std::string::npos);
}

TEST(Show, BytesThatAreNoTextAreShownInHexadecimal) {
  const Bytes bytes = Wire().object(1, 1).value(TagString, 5).u32(3).u8(0xFF).u8(0).u8(0x80);
  EXPECT_EQ(showJson(bytes)[0]["property 5"],
            ordered_json::parse(R"({"value": "ff0080", "encoding": "hex"})"));
}

TEST(Show, RawFormNeedsNoKnownKeys) {
  const Bytes bytes = Wire()
                          .object(40000, 4)
                          .value(TagString, 1)
                          .u32(14)
                          .text("fourteen bytes")
                          .value(TagDouble, 2)
                          .u64(0x4005BF0A8B145769)
                          .value(16, 3)
                          .value(TagNone, 4);
  EXPECT_EQ(show(bytes, "--raw").out,
            "00000000  40 9c 04 00 00 00                    object 40000, 4 properties\n"
            "00000006  0c 00 01 00 0e 00 00 00                "
            "key 1, tag 12 string: 14 bytes \"fourteen bytes\"\n"
            "0000000e  66 6f 75 72 74 65 65 6e 20 62 79 74\n"
            "0000001a  65 73\n"
            "0000001c  0a 00 02 00 69 57 14 8b 0a bf 05 40    "
            "key 2, tag 10 double: 2.718281828459045\n"
            "00000028  10 00 03 00                            key 3, tag 16 unknown\n"
            "0000002c  00 00 04 00                            key 4, tag 0 none\n");
}

TEST(Show, ADamagedFileShowsAllThatIsGood) {
  Bytes bytes = joined({small(), small()});
  bytes[small().size() + 0x26] = 2;  // the version of the second cell name
  const Outcome outcome = show(bytes);
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_EQ(outcome.out, show(small()).out +
                             "MeasurementContainer\n"
                             "  offset: 48\n"
                             "  geranMeasurementCollection: 1 element\n"
                             "    [0] GeranCellMeasurement\n"
                             "      timeStamp: 1234567890 s (2009-02-13T23:31:30Z)\n");
  EXPECT_EQ(outcome.err,
            "trelvo: standard input: stops at byte 86: GeranCellDn (class 100) has version 2, only "
            "1 is known\n");
}

TEST(Show, JsonStaysWholeWhereverTheInputEnds) {
  const Bytes whole = joined({small(), sevenKinds()});
  for (std::size_t size = 1; size < whole.size(); ++size) {
    const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const Outcome outcome = show(bytes, "--json");
    const bool atBorder = size == small().size();
    EXPECT_EQ(outcome.status, atBorder ? kExitGood : kExitFailed) << size;
    EXPECT_TRUE(ordered_json::accept(outcome.out)) << size << ": " << outcome.out;
    const std::string expected = "trelvo: standard input: stops at byte " + std::to_string(size) +
                                 ": the input ends inside ";
    EXPECT_EQ(outcome.err.rfind(atBorder ? "" : expected, 0), 0u) << outcome.err;
  }
}

TEST(Show, ModesAgreeWhereverTheInputEnds) {
  const Bytes whole = eightKinds();
  for (std::size_t size = 0; size < whole.size(); size += 11) {
    const Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const Outcome tree = show(bytes);
    for (const char* mode : {"--json", "--ndjson", "--raw"}) {
      const Outcome other = show(bytes, mode);
      EXPECT_EQ(other.status, tree.status) << mode << " " << size;
      EXPECT_EQ(other.err, tree.err) << mode << " " << size;
    }
  }
}

TEST(Show, JsonStaysWholeWhateverByteIsDamaged) {
  std::mt19937 random(1);
  const Bytes whole = sevenKinds();
  for (std::size_t i = 0; i < whole.size(); ++i) {
    Bytes bytes = whole;
    bytes[i] = static_cast<unsigned char>(bytes[i] ^ (1 + random() % 255));
    const Outcome outcome = show(bytes, "--json");
    EXPECT_TRUE(ordered_json::accept(outcome.out)) << i;
    EXPECT_EQ(outcome.status == kExitGood, outcome.err.empty()) << i;
    EXPECT_EQ(show(bytes, i % 2 == 0 ? "--raw" : "").status, outcome.status) << i;
  }
}

TEST(Show, DeepNestingIsShownAndTooDeepNestingStops) {
  Wire wire;
  wire.object(1, 1);
  for (int level = 2; level <= 513; ++level) {
    wire.value(TagObject, 9).object(1, 1);
  }
  const Outcome outcome = show(wire, "--json");
  EXPECT_EQ(outcome.status, kExitFailed);
  EXPECT_NE(outcome.err.find("more than 512 nested levels"), std::string::npos);
  EXPECT_TRUE(ordered_json::accept(outcome.out));
}

TEST(Show, AnOutputThatFailsEndsTheCommandWithoutAMessage) {
  const UniqueFd file = fileOf(joined({small(), small()}));
  std::ostringstream out;
  out.setstate(std::ios::badbit);
  std::ostringstream err;
  CommandContext context{out, err};
  context.inputDescriptor = file.get();
  const char* argv[] = {"trelvo", "show", "-"};
  EXPECT_EQ(runTrelvo(3, argv, context), kExitGood);
  EXPECT_EQ(err.str(), "");
}

TEST(ShowValue, TimeStampsBecomeDates) {
  EXPECT_EQ(timeValue(0).note, "1970-01-01T00:00:00Z");
  EXPECT_EQ(timeValue(951782399).note, "2000-02-28T23:59:59Z");
  EXPECT_EQ(timeValue(951782400).note, "2000-02-29T00:00:00Z");
  EXPECT_EQ(timeValue(1709164800).note, "2024-02-29T00:00:00Z");
  EXPECT_EQ(timeValue(1709251200).note, "2024-03-01T00:00:00Z");
  EXPECT_EQ(timeValue(4107542400).note, "2100-03-01T00:00:00Z");
  EXPECT_EQ(timeValue(0xFFFFFFFF).note, "2106-02-07T06:28:15Z");
}

TEST(ShowValue, NumbersReadBackAsTheSame) {
  EXPECT_EQ(numberToken(0.1f).text, "0.1");
  EXPECT_EQ(numberToken(0.1).text, "0.1");
  EXPECT_EQ(numberToken(1.0 / 3).text, "0.3333333333333333");
  EXPECT_EQ(numberToken(-0.0).text, "-0");
  EXPECT_EQ(numberToken(1e300).text, "1e+300");
  EXPECT_EQ(numberToken(static_cast<unsigned char>(200)).text, "200");
  EXPECT_EQ(numberToken(static_cast<signed char>(-100)).text, "-100");
}

TEST(ShowValue, WhatIsNoNumberBecomesAWord) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(numberToken(infinity).text, "inf");
  EXPECT_EQ(numberToken(-infinity).text, "-inf");
  EXPECT_EQ(numberToken(std::numeric_limits<float>::quiet_NaN()).text, "nan");
  EXPECT_EQ(numberToken(infinity).kind, Token::Word);
}

TEST(ShowValue, ScalarsAreReadByTheirTags) {
  constexpr std::uint64_t kBits = 0xFFFFFFFFFFFFFFFF;
  EXPECT_EQ(scalarToken(TagInt8, 0xFF).text, "-1");
  EXPECT_EQ(scalarToken(TagUint8, 0xFF).text, "255");
  EXPECT_EQ(scalarToken(TagInt16, 0x8000).text, "-32768");
  EXPECT_EQ(scalarToken(TagUint16, 0x8000).text, "32768");
  EXPECT_EQ(scalarToken(TagInt32, 0x80000000).text, "-2147483648");
  EXPECT_EQ(scalarToken(TagUint32, 0x80000000).text, "2147483648");
  EXPECT_EQ(scalarToken(TagInt64, kBits).text, "-1");
  EXPECT_EQ(scalarToken(TagUint64, kBits).text, "18446744073709551615");
  EXPECT_EQ(scalarToken(TagFloat, 0x3F800000).text, "1");
  EXPECT_EQ(scalarToken(TagDouble, 0x3FF8000000000000).text, "1.5");
  EXPECT_EQ(scalarToken(TagBoolean, 0).text, "false");
  EXPECT_EQ(scalarToken(TagBoolean, 2).text, "true");
}

}  // namespace
}  // namespace trelvo::tool
