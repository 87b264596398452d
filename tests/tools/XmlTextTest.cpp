#include "tools/trelvo/XmlText.h"

#include <gtest/gtest.h>

#include <string>

namespace trelvo::tool {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";

std::string replaced(int count) {
  std::string text;
  for (; count > 0; --count) text += kReplacement;
  return text;
}

TEST(XmlText, EscapesWhatHasAMeaning) {
  EXPECT_EQ(xmlText("a<b>&\"c\"'"), "a&lt;b&gt;&amp;&quot;c&quot;'");
}

TEST(XmlText, KeepsUtf8OfEachLength) {
  for (const char* text :
       {"", "~", "\xC2\xA0", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
        "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"}) {
    EXPECT_EQ(xmlText(text), text);
  }
}

TEST(XmlText, KeepsBlanksThatAReaderKeeps) { EXPECT_EQ(xmlText("\t\n\r "), "\t\n&#13; "); }

TEST(XmlText, ReplacesEachCharacterThatXmlDoesNotHave) {
  EXPECT_EQ(xmlText(std::string("\0\x01\x0B\x1F\x7F", 5)), replaced(5));
  EXPECT_EQ(xmlText("\xC2\x80\xC2\x9F"), replaced(2));          // U+0080, U+009F
  EXPECT_EQ(xmlText("\xEF\xBF\xBE\xEF\xBF\xBF"), replaced(2));  // U+FFFE, U+FFFF
}

TEST(XmlText, ReplacesEachByteThatIsNotUtf8) {
  EXPECT_EQ(xmlText("\x80\xBF\xC0\xFE\xFF"), replaced(5));
  EXPECT_EQ(xmlText("\xC0\xAF"), replaced(2));          // '/' written too long
  EXPECT_EQ(xmlText("\xED\xA0\x80"), replaced(3));      // half of a pair
  EXPECT_EQ(xmlText("\xF4\x90\x80\x80"), replaced(4));  // beyond U+10FFFF
  EXPECT_EQ(xmlText("\xE2\x82<"), replaced(2) + "&lt;");
  EXPECT_EQ(xmlText("\xE2\x82"), replaced(2));
}

}  // namespace
}  // namespace trelvo::tool
