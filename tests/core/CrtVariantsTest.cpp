#include <trelvo/core/CrtVariants.h>

#include <gtest/gtest.h>

#include <string>

namespace trelvo::core {
namespace {

TEST(CrtVariants, SprintfFormatsAndTerminates) {
  char buffer[64] = {};
  EXPECT_EQ(CrtVariants::sprintf(buffer, sizeof buffer, "%s %d %-12s %s ", "12:00", 7, "net", "W"),
            23);
  EXPECT_STREQ(buffer, "12:00 7 net          W ");
}

TEST(CrtVariants, SprintfCutsAtTheSizeAndTellsTheWholeLength) {
  char buffer[8] = "#######";
  EXPECT_EQ(CrtVariants::sprintf(buffer, 4, "%s", "abcdef"), 6);
  EXPECT_EQ(std::string(buffer, 8), std::string("abc\0###\0", 8));
  EXPECT_EQ(CrtVariants::sprintf(buffer, 7, "%s", "abcdef"), 6);
  EXPECT_STREQ(buffer, "abcdef");
  EXPECT_EQ(CrtVariants::sprintf(buffer, 1, "%d", 42), 2);
  EXPECT_STREQ(buffer, "");
}

TEST(CrtVariants, SprintfWithoutRoomWritesNothing) {
  char buffer[2] = "#";
  EXPECT_EQ(CrtVariants::sprintf(buffer, 0, "%d", 12345), 5);
  EXPECT_STREQ(buffer, "#");
  EXPECT_EQ(CrtVariants::sprintf(nullptr, 0, "%d", 12345), 5);
}

}  // namespace
}  // namespace trelvo::core
