#include "tools/trelvo/ImportTime.h"

#include <gtest/gtest.h>

#include <ctime>

namespace trelvo::tool {
namespace {

TEST(ImportTime, ReadsAMomentInTwoForms) {
  EXPECT_EQ(momentOf("2025-09-04T04:34:00Z"), 1756960440u);
  EXPECT_EQ(momentOf("1756960440"), 1756960440u);
  EXPECT_EQ(momentOf("1970-01-01T00:00:01Z"), 1u);
  EXPECT_EQ(momentOf("2106-02-07T06:28:15Z"), 4294967295u);
  EXPECT_EQ(momentOf("4294967295"), 4294967295u);
}

TEST(ImportTime, NowIsTheClockOfTheMachine) {
  const auto before = std::time(nullptr);
  const auto now = momentOf("now");
  const auto after = std::time(nullptr);
  ASSERT_TRUE(now);
  EXPECT_GE(*now, before);
  EXPECT_LE(*now, after);
}

TEST(ImportTime, RefusesWhatIsNoMoment) {
  for (const char* text :
       {"", "0", "-1", "+5", "5 ", "4294967296", "99999999999999999999", "Now", "2025-09-04",
        "2025-09-04T", "2025-09-04T04:34:00", "2025-09-04 04:34:00Z", "2025-09-04T04:34Z",
        "2025-09-04T24:00:00Z", "2025-09-04T04-34-00Z", "2025-02-29T00:00:00Z",
        "1970-01-01T00:00:00Z", "2106-02-07T06:28:16Z", "1969-12-31T23:59:59Z"}) {
    EXPECT_FALSE(momentOf(text)) << text;
  }
}

TEST(ImportTime, ReadsADay) {
  const auto day = dayOf("2024-02-29");
  ASSERT_TRUE(day);
  EXPECT_EQ(day->year, 2024);
  EXPECT_EQ(day->month, 2);
  EXPECT_EQ(day->day, 29);
  for (const char* text : {"", "2024-02-30", "2024-2-29", "24-02-29", "2024/02/29"}) {
    EXPECT_FALSE(dayOf(text)) << text;
  }
}

}  // namespace
}  // namespace trelvo::tool
