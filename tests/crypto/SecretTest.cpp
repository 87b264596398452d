#include <trelvo/Secret.h>

#include <gtest/gtest.h>

using trelvo::Secret;

TEST(Secret, KeepsACopyOfItsText) {
  char text[] = "open sesame";
  const auto secret = Secret::create(text);
  text[0] = 'X';
  ASSERT_TRUE(secret);
  EXPECT_EQ(secret->referenceCount(), 1);
  EXPECT_STREQ(secret->text(), "open sesame");
}

TEST(Secret, MayBeEmpty) {
  const auto secret = Secret::create("");
  ASSERT_TRUE(secret);
  EXPECT_STREQ(secret->text(), "");
}

TEST(Secret, NullMakesTheEmptyHandleOfNoPassPhrase) { EXPECT_FALSE(Secret::create(nullptr)); }
