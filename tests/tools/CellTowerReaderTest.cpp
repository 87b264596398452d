#include "tools/trelvo/CellTowerReader.h"

#include <string>
#include <vector>

#include "tests/tools/ImportSupport.h"

namespace trelvo::tool {
namespace {

constexpr const char* kHeader =
    "radio,mcc,net,area,cell,unit,lon,lat,range,samples,changeable,created,updated,averageSignal";
constexpr const char* kRow = "LTE,311,480,9728,9903886,0,-122.3,37.7,1000,21,1,145,149,0";

/// Reads `text` to the end and keeps the cell and line of each row.
struct Reading {
  explicit Reading(const std::string& text) {
    ProducedStream stream(text);
    ImportSource source(stream, "list");
    CellTowerReader reader(source, report);
    CellTowerRow row;
    while (reader.next(row)) {
      cells.emplace_back(row.text(CellTowerColumn::Cell));
      lines.push_back(row.line());
    }
    hasHeader = reader.hasHeader();
  }

  ImportReport report;
  std::vector<std::string> cells;
  std::vector<unsigned long long> lines;
  bool hasHeader = false;
};

std::string row(int cell) {
  return "LTE,311,480,9728," + std::to_string(cell) + ",0,-122.3,37.7,1000,21,1,145,149,0\n";
}

TEST(CellTowerReader, GivesEachColumnItsText) {
  ProducedStream stream(std::string("a,b,c,d,e,f,g,h,i,j,k,l,m,n"));
  ImportReport report;
  ImportSource source(stream, "list");
  CellTowerReader reader(source, report);
  CellTowerRow found;
  ASSERT_TRUE(reader.next(found));
  for (size_t i = 0; i < CellTowerRow::kColumns; ++i) {
    EXPECT_EQ(found.text(static_cast<CellTowerColumn>(i)),
              std::string(1, static_cast<char>('a' + i)));
  }
  EXPECT_FALSE(reader.next(found));
}

TEST(CellTowerReader, EmptyColumnsAreEmptyTexts) {
  const Reading reading(",,,,,,,,,,,,,\n");
  EXPECT_EQ(reading.cells, (std::vector<std::string>{""}));
}

TEST(CellTowerReader, AHeaderMayLead) {
  const Reading with(std::string(kHeader) + "\n" + row(1));
  EXPECT_TRUE(with.hasHeader);
  EXPECT_EQ(with.cells, (std::vector<std::string>{"1"}));
  const Reading without(row(1));
  EXPECT_FALSE(without.hasHeader);
  EXPECT_EQ(without.cells, (std::vector<std::string>{"1"}));
}

TEST(CellTowerReader, TakesAByteOrderMarkReturnsAndEmptyLines) {
  const Reading reading("\xEF\xBB\xBF" + std::string(kHeader) + "\r\n\r\n\n" + kRow + "\r\n" +
                        kRow);
  EXPECT_TRUE(reading.hasHeader);
  EXPECT_EQ(reading.cells.size(), 2u);
  EXPECT_EQ(reading.lines, (std::vector<unsigned long long>{4, 5}));
  EXPECT_TRUE(reading.report.isEmpty());
}

TEST(CellTowerReader, CountsALineOfAnotherNumberOfColumns) {
  const Reading reading(row(1) + "LTE,1\n" + std::string(kRow) + ",\n" + row(2));
  EXPECT_EQ(reading.cells, (std::vector<std::string>{"1", "2"}));
  EXPECT_EQ(reading.report.countOf(CellTowerReader::kWrongColumns), 2u);
}

TEST(CellTowerReader, ALineUpToTheLimitIsReadAndALongerOneIsSkipped) {
  std::string longest = kRow;
  longest.insert(0, ImportLines::kMaxLength - longest.size(), 'X');
  const Reading fits(longest + "\n" + row(2));
  EXPECT_EQ(fits.cells, (std::vector<std::string>{"9903886", "2"}));
  const Reading reading("X" + longest + "\n" + row(2));
  EXPECT_EQ(reading.cells, (std::vector<std::string>{"2"}));
  EXPECT_EQ(reading.report.countOf(ImportLines::kTooLong), 1u);
}

TEST(CellTowerReader, AForeignHeaderEndsTheReading) {
  const Reading reading("radio,mnc,mcc\n" + row(1));
  EXPECT_TRUE(reading.cells.empty());
  EXPECT_FALSE(reading.hasHeader);
  EXPECT_EQ(reading.report.countOf(CellTowerReader::kForeignHeader), 1u);
}

TEST(CellTowerReader, KnowsAListByItsFirstLine) {
  for (const std::string& text :
       {std::string(kHeader), std::string(kHeader) + "\r\nrest", std::string(kRow) + "\nrest",
        "\xEF\xBB\xBF" + std::string(kRow), "\n" + std::string(kRow),
        std::string("NR,262,2,1,1,,1.0,2.0,,,,,,")}) {
    EXPECT_TRUE(CellTowerReader::looksLikeCellTowers(text)) << text;
  }
  for (const std::string& text :
       {std::string(), std::string("\n\n"), std::string(",,,,,,,,,,,,,"), std::string("a,b\n"),
        std::string("{\"a\": 1,2,3,4,5,6,7,8,9,10,11,12,13,14}"), "hello\n" + std::string(kRow),
        std::string("$GPRMC,132820,A,41,N,093,W,3.2,92.3,180320,11.5,E,D,1*1A")}) {
    EXPECT_FALSE(CellTowerReader::looksLikeCellTowers(text)) << text;
  }
}

}  // namespace
}  // namespace trelvo::tool
