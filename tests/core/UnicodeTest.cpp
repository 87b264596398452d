#include <trelvo/core/Unicode.h>

#include <gtest/gtest.h>

#include <clocale>
#include <memory>
#include <string>

namespace trelvo::core {
namespace {

// "a", "ä", "€", and a character beyond the first plane: 1, 2, 3 and 4 bytes.
const std::string kBytes = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80";
const std::wstring kWide = L"a\u00E4\u20AC\U0001F600";

class UnicodeTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr); }
  void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

TEST_F(UnicodeTest, ConvertsBytesInAllThreeForms) {
  std::wstring out = L"old";
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode(kBytes, out));
  EXPECT_EQ(out, kWide);
  out = L"old";
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode(kBytes.c_str(), out));
  EXPECT_EQ(out, kWide);
  out = L"old";
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode(kBytes.c_str(), 10, out));
  EXPECT_EQ(out, kWide);
}

TEST_F(UnicodeTest, ConvertsWideCharactersInAllThreeForms) {
  std::string out = "old";
  EXPECT_TRUE(Unicode::convertFromUnicodeToUtf8(kWide, out));
  EXPECT_EQ(out, kBytes);
  out = "old";
  EXPECT_TRUE(Unicode::convertFromUnicodeToUtf8(kWide.c_str(), out));
  EXPECT_EQ(out, kBytes);
  out = "old";
  EXPECT_TRUE(Unicode::convertFromUnicodeToUtf8(kWide.c_str(), 4, out));
  EXPECT_EQ(out, kBytes);
}

TEST_F(UnicodeTest, ConvertsEachCharacterThere) {
  for (wchar_t character = 1; character < 0x11000; ++character) {
    if (character == 0xD800) {
      character = 0xE000;  // surrogates stand for no character
    }
    const std::wstring wide(3, character);
    std::string bytes;
    std::wstring back;
    ASSERT_TRUE(Unicode::convertFromUnicodeToUtf8(wide, bytes)) << character;
    ASSERT_TRUE(Unicode::convertFromUtf8ToUnicode(bytes, back)) << character;
    ASSERT_EQ(back, wide) << character;
  }
}

TEST_F(UnicodeTest, NothingEmptiesTheResultAndIsTrue) {
  const char* const noBytes = nullptr;
  std::wstring wide;
  const auto emptied = [&](bool result) {
    const bool was = result && wide.empty();
    wide = L"old";
    return was;
  };
  EXPECT_TRUE(emptied(Unicode::convertFromUtf8ToUnicode(std::string(), wide)));
  EXPECT_TRUE(emptied(Unicode::convertFromUtf8ToUnicode("", wide)));
  EXPECT_TRUE(emptied(Unicode::convertFromUtf8ToUnicode("abc", 0, wide)));
  EXPECT_TRUE(emptied(Unicode::convertFromUtf8ToUnicode(noBytes, wide)));
  EXPECT_TRUE(emptied(Unicode::convertFromUtf8ToUnicode(noBytes, 5, wide)));
}

TEST_F(UnicodeTest, NothingWideEmptiesTheResultAndIsTrue) {
  const wchar_t* const nothing = nullptr;
  std::string bytes;
  const auto emptied = [&](bool result) {
    const bool was = result && bytes.empty();
    bytes = "old";
    return was;
  };
  EXPECT_TRUE(emptied(Unicode::convertFromUnicodeToUtf8(std::wstring(), bytes)));
  EXPECT_TRUE(emptied(Unicode::convertFromUnicodeToUtf8(L"", bytes)));
  EXPECT_TRUE(emptied(Unicode::convertFromUnicodeToUtf8(L"abc", 0, bytes)));
  EXPECT_TRUE(emptied(Unicode::convertFromUnicodeToUtf8(nothing, bytes)));
  EXPECT_TRUE(emptied(Unicode::convertFromUnicodeToUtf8(nothing, 5, bytes)));
}

TEST_F(UnicodeTest, WhatCannotBeExpressedLeavesTheResult) {
  std::wstring wide = L"old";
  for (const char* const damaged :
       {"\x80", "\xFF", "a\xC3", "\xC3(", "\xE2\x82", "\xC0\xAF", "\xED\xA0\x80", "ok\xF8"}) {
    EXPECT_FALSE(Unicode::convertFromUtf8ToUnicode(damaged, wide)) << damaged;
    EXPECT_EQ(wide, L"old");
  }
  std::string bytes = "old";
  const wchar_t surrogate[] = {L'a', 0xD800, 0};
  EXPECT_FALSE(Unicode::convertFromUnicodeToUtf8(surrogate, bytes));
  EXPECT_EQ(bytes, "old");
}

TEST_F(UnicodeTest, ALeadingNulIsFalse) {
  std::wstring wide = L"old";
  EXPECT_FALSE(Unicode::convertFromUtf8ToUnicode(std::string("\0abc", 4), wide));
  EXPECT_FALSE(Unicode::convertFromUtf8ToUnicode("", 3, wide));
  EXPECT_EQ(wide, L"old");
  std::string bytes = "old";
  EXPECT_FALSE(Unicode::convertFromUnicodeToUtf8(std::wstring(L"\0abc", 4), bytes));
  EXPECT_FALSE(Unicode::convertFromUnicodeToUtf8(L"", 3, bytes));
  EXPECT_EQ(bytes, "old");
}

TEST_F(UnicodeTest, TextEndsAtItsFirstNul) {
  std::wstring wide;
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode(std::string("ab\0cd", 5), wide));
  EXPECT_EQ(wide, L"ab");
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode("ab", 0xFFFFFFFF, wide));
  EXPECT_EQ(wide, L"ab");
  std::string bytes;
  EXPECT_TRUE(Unicode::convertFromUnicodeToUtf8(std::wstring(L"ab\0cd", 5), bytes));
  EXPECT_EQ(bytes, "ab");
}

TEST_F(UnicodeTest, NothingBehindTheLengthIsRead) {
  const std::unique_ptr<char[]> bytes(new char[3]{'a', '\xC3', '\xA4'});
  std::wstring wide;
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode(bytes.get(), 3, wide));
  EXPECT_EQ(wide, L"a\u00E4");
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode(bytes.get(), 1, wide));
  EXPECT_EQ(wide, L"a");
  EXPECT_FALSE(Unicode::convertFromUtf8ToUnicode(bytes.get(), 2, wide));
  EXPECT_EQ(wide, L"a");

  const std::unique_ptr<wchar_t[]> characters(new wchar_t[2]{L'\u20AC', L'b'});
  std::string back;
  EXPECT_TRUE(Unicode::convertFromUnicodeToUtf8(characters.get(), 2, back));
  EXPECT_EQ(back,
            "\xE2\x82\xAC"
            "b");
  EXPECT_TRUE(Unicode::convertFromUnicodeToUtf8(characters.get(), 1, back));
  EXPECT_EQ(back, "\xE2\x82\xAC");
}

TEST_F(UnicodeTest, LongTextsAreConvertedWhole) {
  const std::wstring wide(100000, L'\u20AC');
  std::string bytes;
  EXPECT_TRUE(Unicode::convertFromUnicodeToUtf8(wide, bytes));
  EXPECT_EQ(bytes.size(), 300000U);
  std::wstring back;
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode(bytes, back));
  EXPECT_EQ(back, wide);
}

TEST_F(UnicodeTest, TheLocaleDecides) {
  ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
  std::string bytes = "old";
  EXPECT_FALSE(Unicode::convertFromUnicodeToUtf8(kWide, bytes));
  EXPECT_EQ(bytes, "old");
  std::wstring wide;
  EXPECT_TRUE(Unicode::convertFromUtf8ToUnicode("plain", wide));
  EXPECT_EQ(wide, L"plain");
}

}  // namespace
}  // namespace trelvo::core
