#include <gtest/gtest.h>
#include <trelvo/Status.h>

#include <type_traits>

namespace trelvo {
namespace {

TEST(Status, IsAPlainEnumerationOf32Bits) {
  static_assert(std::is_enum_v<Status>);
  static_assert(std::is_convertible_v<Status, unsigned int>, "unscoped");
  static_assert(std::is_same_v<std::underlying_type_t<Status>, unsigned int>);
  EXPECT_EQ(sizeof(Status), 4U);
}

TEST(Status, NumbersAreFixed) {
  EXPECT_EQ(StatusOk, 0U);
  EXPECT_EQ(StatusFailed, 1U);
  EXPECT_EQ(StatusInternal, 2U);
  EXPECT_EQ(StatusOutOfMemory, 3U);
  EXPECT_EQ(StatusNotFound, 4U);
  EXPECT_EQ(StatusWrongState, 6U);
  EXPECT_EQ(StatusNotSupported, 7U);
  EXPECT_EQ(StatusInvalidParameter, 11U);
  EXPECT_EQ(StatusFileError, 12U);
  EXPECT_EQ(StatusNoConnection, 13U);
  EXPECT_EQ(StatusChecksumMismatch, 14U);
  EXPECT_EQ(StatusCancelled, 15U);
  EXPECT_EQ(StatusKeyFailure, 17U);
}

TEST(Status, IsThrownAndCaughtByValue) {
  try {
    throw StatusCancelled;
  } catch (Status status) {
    EXPECT_EQ(status, StatusCancelled);
  }
}

}  // namespace
}  // namespace trelvo
