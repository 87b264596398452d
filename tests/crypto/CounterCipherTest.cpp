#include "crypto/CounterCipher.h"

#include <gtest/gtest.h>

#include <array>

#include "tests/support/Bytes.h"

namespace trelvo::crypto {
namespace {

using test::bytes;
using test::Bytes;

// NIST SP 800-38A, F.5.1: CTR-AES128.
const Bytes kKey = bytes("2b7e151628aed2a6abf7158809cf4f3c");
const Bytes kCounter = bytes("f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff");
const Bytes kPlain = bytes(
    "6bc1bee22e409f96e93d7e117393172a ae2d8a571e03ac9c9eb76fac45af8e51"
    "30c81c46a35ce411e5fbc1191a0a52ef f69f2445df4f9b17ad2b417be66c3710");
const Bytes kStored = bytes(
    "874d6191b620e3261bef6864990db6ce 9806f66b7970fdff8617187bb9fffdff"
    "5ae4df3edbd5d35e5b4f09020db03eab 1e031dda2fbe03d1792170a0f3009cee");

Bytes counterPlus(unsigned int steps) {
  Bytes counter = kCounter;
  for (unsigned int i = 0; i < steps; ++i) {
    for (std::size_t place = 16; place-- > 0 && ++counter[place] == 0;) {
    }
  }
  return counter;
}

Bytes apply(CounterCipher& cipher, const Bytes& counter, const Bytes& input) {
  Bytes output(input.size());
  EXPECT_EQ(cipher.apply(kKey.data(), counter.data(), input.data(), output.data(),
                         static_cast<unsigned int>(input.size())),
            StatusOk);
  return output;
}

Bytes part(const Bytes& all, std::size_t first, std::size_t last) {
  return {all.begin() + static_cast<std::ptrdiff_t>(first),
          all.begin() + static_cast<std::ptrdiff_t>(last)};
}

TEST(CounterCipher, GivesTheBytesOfTheStandard) {
  CounterCipher cipher;
  EXPECT_EQ(apply(cipher, kCounter, kPlain), kStored);
  EXPECT_EQ(apply(cipher, kCounter, kStored), kPlain);
}

TEST(CounterCipher, GoesOnWhereItStoppedAcrossTheWrapOfTheLast32Bits) {
  CounterCipher cipher;
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(
        apply(cipher, counterPlus(static_cast<unsigned int>(i)), part(kPlain, 16 * i, 16 * i + 16)),
        part(kStored, 16 * i, 16 * i + 16));
  }
}

TEST(CounterCipher, GoesAnywhereAtAnyTime) {
  CounterCipher cipher;
  for (const unsigned int i : {2U, 0U, 1U, 3U, 3U, 0U}) {
    const std::size_t at = 16 * std::size_t{i};
    EXPECT_EQ(apply(cipher, counterPlus(i), part(kPlain, at, at + 16)), part(kStored, at, at + 16));
  }
}

TEST(CounterCipher, APartOfACipherBlockDoesNotDisturbWhatFollows) {
  CounterCipher cipher;
  EXPECT_EQ(apply(cipher, kCounter, part(kPlain, 0, 5)), part(kStored, 0, 5));
  EXPECT_EQ(apply(cipher, counterPlus(0), part(kPlain, 0, 16)), part(kStored, 0, 16));
  EXPECT_EQ(apply(cipher, counterPlus(1), part(kPlain, 16, 40)), part(kStored, 16, 40));
  EXPECT_EQ(apply(cipher, counterPlus(2), part(kPlain, 32, 64)), part(kStored, 32, 64));
}

TEST(CounterCipher, WorksInPlace) {
  CounterCipher cipher;
  Bytes text = kPlain;
  EXPECT_EQ(cipher.apply(kKey.data(), kCounter.data(), text.data(), text.data(), 64), StatusOk);
  EXPECT_EQ(text, kStored);
}

TEST(CounterCipher, AnotherKeyTakesEffectAtOnce) {
  CounterCipher cipher;
  CounterCipher fresh;
  Bytes other = kKey;
  other[0] ^= 1;
  apply(cipher, kCounter, part(kPlain, 0, 16));
  std::array<unsigned char, 16> after = {};
  std::array<unsigned char, 16> expected = {};
  const Bytes counter = counterPlus(1);
  EXPECT_EQ(cipher.apply(other.data(), counter.data(), kPlain.data(), after.data(), 16), StatusOk);
  EXPECT_EQ(fresh.apply(other.data(), counter.data(), kPlain.data(), expected.data(), 16),
            StatusOk);
  EXPECT_EQ(after, expected);
}

}  // namespace
}  // namespace trelvo::crypto
