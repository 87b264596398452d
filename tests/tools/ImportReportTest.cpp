#include "tools/trelvo/ImportReport.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tools/trelvo/ImportText.h"

namespace trelvo::tool {
namespace {

std::string printed(const ImportReport& report) {
  std::ostringstream text;
  report.print(text);
  return text.str();
}

TEST(ImportReport, NamesTheFirstThreePlacesOfAKind) {
  ImportReport report;
  for (unsigned long long line : {7u, 8u, 9u, 10u}) {
    report.count("bad line", {"a.log", line});
  }
  report.count("odd line", {"b.log", 1});
  EXPECT_EQ(report.countOf("bad line"), 4u);
  EXPECT_EQ(report.countOf("no such"), 0u);
  EXPECT_EQ(printed(report),
            "trelvo: 4 x bad line: a.log:7, a.log:8, a.log:9, ...\n"
            "trelvo: 1 x odd line: b.log:1\n");
}

TEST(ImportReport, NamesEachFieldNotStoredOnce) {
  ImportReport report;
  report.notStored("position.pressure");
  report.notStored("bluetoothBeacons");
  report.notStored("position.pressure");
  EXPECT_TRUE(report.isNotStored("position.pressure"));
  EXPECT_EQ(printed(report),
            "trelvo: not stored, no place in the schema: bluetoothBeacons, position.pressure\n");
}

TEST(ImportReport, PrintsNothingWhenNothingWasMet) {
  ImportReport report;
  EXPECT_TRUE(report.isEmpty());
  EXPECT_EQ(printed(report), "");
}

TEST(ImportReport, KindsThatTheInputMakesUpShareOneEntryInTheEnd) {
  ImportReport report;
  for (int i = 0; i < 100000; ++i) {
    report.count("unknown type " + std::to_string(i), {"a", 1});
    report.notStored("field " + std::to_string(i));
  }
  EXPECT_EQ(report.countOf("(further ones)"), 100000u - 200u);
  EXPECT_TRUE(report.isNotStored("(further ones)"));
  EXPECT_LT(printed(report).size(), 20000u);
}

TEST(ImportText, MakesTextFitForATerminal) {
  EXPECT_EQ(printable("a\x1b[31mb\n\xc3\xa9~"), "a?[31mb???~");
  EXPECT_EQ(printable("abcdef", 3), "abc");
  EXPECT_EQ(printable(""), "");
}

TEST(ImportText, ReadsHexadecimalDigits) {
  EXPECT_EQ(hexDigit('0'), 0);
  EXPECT_EQ(hexDigit('a'), 10);
  EXPECT_EQ(hexDigit('F'), 15);
  EXPECT_EQ(hexDigit('g'), -1);
  EXPECT_EQ(hexDigit(-1), -1);
}

}  // namespace
}  // namespace trelvo::tool
