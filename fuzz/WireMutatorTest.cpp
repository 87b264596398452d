#include "fuzz/WireMutator.h"

#include <gtest/gtest.h>
#include <trelvo/gom/GenericObject.h>

namespace trelvo::fuzz {
namespace {

using test::bytes;

// Key 5, two properties: a list of one number, and a string.
const Bytes kObject = bytes(
    "05 00 02 00 00 00"
    "0f 00 c8 00 01 00 00 00 02 00 00 00 2a"
    "0c 00 c9 00 02 00 00 00 61 62");

bool isReadable(const Bytes& content) {
  auto object = gom::GenericObject::create(static_cast<unsigned short>(1));
  try {
    return test::readFrom(*object, content);
  } catch (const Status) {
    return false;
  }
}

TEST(WireOutline, FindsEveryValueAndEveryCount) {
  const WireOutline outline(kObject);
  ASSERT_EQ(outline.values().size(), 3U);
  EXPECT_EQ(outline.values()[0].begin, 14U);
  EXPECT_EQ(outline.values()[0].end, 19U);
  EXPECT_EQ(outline.values()[0].count, 10U);
  EXPECT_EQ(outline.values()[1].begin, 6U);
  EXPECT_EQ(outline.values()[1].end, 19U);
  EXPECT_EQ(outline.values()[1].count, 2U);
  EXPECT_EQ(outline.values()[2].end, kObject.size());
  EXPECT_EQ(outline.counts(), (std::vector<std::size_t>{2, 10, 23}));
}

TEST(WireOutline, EndsWhereTheBytesMakeNoSenseAnyMore) {
  for (std::size_t length = 0; length < kObject.size(); ++length) {
    const Bytes cut = test::head(kObject, length);
    const WireOutline outline(cut);
    EXPECT_EQ(outline.values().size(), length < 19 ? 0U : 2U) << length;
    for (const std::size_t count : outline.counts()) {
      EXPECT_LE(count + 4, length);
    }
  }
}

TEST(WireMutator, ChangesWhatItIsGiven) {
  for (unsigned int seed = 0; seed < 200; ++seed) {
    Bytes mutant = kObject;
    EXPECT_TRUE(WireMutator(mutant, seed).mutate());
  }
  Bytes nothing = test::head(kObject, 5);
  EXPECT_FALSE(WireMutator(nothing, 0).mutate());
}

TEST(WireMutator, LeavesMostObjectsReadable) {
  unsigned int readable = 0;
  unsigned int changed = 0;
  for (unsigned int seed = 0; seed < 1000; ++seed) {
    Bytes mutant = kObject;
    WireMutator(mutant, seed).mutate();
    readable += isReadable(mutant) ? 1 : 0;
    changed += mutant != kObject ? 1 : 0;
  }
  EXPECT_GT(readable, 500U);
  EXPECT_LT(readable, 1000U);
  EXPECT_GT(changed, 900U);
}

}  // namespace
}  // namespace trelvo::fuzz
