#include <trelvo/EvpCryptorLin.h>

#include <gtest/gtest.h>

#include <trelvo/CryptoLinux.h>
#include <trelvo/DecryptorLin.h>
#include <trelvo/EncryptorLin.h>

#include "tests/crypto/CryptoSupport.h"
#include "tests/support/Bytes.h"

namespace {

using namespace trelvo;
using trelvo::test::aesKey;
using trelvo::test::Bytes;
using trelvo::test::bytes;
using trelvo::test::cbcIv;
using trelvo::test::contentOf;
using trelvo::test::head;
using trelvo::test::joined;
using trelvo::test::nistPlain;
using trelvo::test::opened;
using trelvo::test::view;

using Cryptor = gom::SharedPointer<crypto::ICryptor>;

constexpr crypto::Cryptor kCbc = {1, 128, 1, 0, 1};
constexpr crypto::Cryptor kCtr = {1, 128, 2, 0, 1};

Bytes counter() { return bytes("f0f1f2f3f4f5f6f7f8f9fafbfcfdfeff"); }

/// NIST SP 800-38A, F.5.1
Bytes nistCtr() {
  return bytes(
      "874d6191b620e3261bef6864990db6ce 9806f66b7970fdff8617187bb9fffdff"
      "5ae4df3edbd5d35e5b4f09020db03eab 1e031dda2fbe03d1792170a0f3009cee");
}

/// F.2.1 and the block of padding behind it
Bytes nistCbc() {
  return bytes(
      "7649abac8119b246cee98e9b12e9197d 5086cb9b507219ee95db113a917678b2"
      "73bed6b8e3c1743b7116e69e22229516 3ff1caa1681fac09120eca307586e1a7"
      "8cb82807230e1321d3fae00d18cc2012");
}

Cryptor encryptor(const crypto::Cryptor& what) { return {opened()->create_encryptor(what)}; }
Cryptor decryptor(const crypto::Cryptor& what) { return {opened()->create_decryptor(what)}; }

Status start(const Cryptor& cryptor, const Bytes& key, const Bytes& iv) {
  return cryptor->start({view(key), view(iv)});
}

/// What comes out of `cryptor` for `input` in pieces of `piece` bytes.
Bytes passed(const Cryptor& cryptor, const Bytes& iv, const Bytes& input, std::size_t piece) {
  EXPECT_EQ(start(cryptor, aesKey(), iv), StatusOk);
  Buffer output;
  for (std::size_t at = 0; at < input.size(); at += piece) {
    const auto size = static_cast<unsigned int>(std::min(piece, input.size() - at));
    EXPECT_EQ(cryptor->add_chunk({input.data() + at, size}, output), StatusOk);
  }
  EXPECT_EQ(cryptor->finish(output), StatusOk);
  return contentOf(output);
}

/// The shared class by itself.
class BareCryptor : public EvpCryptorLin {
 public:
  Status add_chunk(const ReadOnlyBuffer& /*input*/, Buffer& /*output*/) override {
    return StatusNotSupported;
  }
  Status finish(Buffer& /*output*/) override { return StatusNotSupported; }
};

}  // namespace

TEST(EvpCryptorLin, IsMadeAsAPlainPointerThatNobodyHolds) {
  crypto::ICryptor* const plain = opened()->create_encryptor(kCbc);
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(plain->referenceCount(), 0);
  EXPECT_NE(dynamic_cast<EncryptorLin*>(plain), nullptr);
  const Cryptor adopted(plain);
  EXPECT_NE(dynamic_cast<DecryptorLin*>(decryptor(kCtr).get()), nullptr);
}

TEST(EvpCryptorLin, OutlivesTheCryptographyThatMadeIt) {
  const Cryptor cryptor = encryptor(kCtr);
  EXPECT_EQ(gCryptoStatic.m_value, nullptr);
  EXPECT_EQ(passed(cryptor, counter(), nistPlain(), 64), nistCtr());
}

TEST(EvpCryptorLin, OnlyAes128InCbcAndCtrModeExists) {
  const crypto::Cryptor unknown[] = {{1, 128, 3, 0, 1}, {1, 128, 0, 0, 1}, {1, 256, 1, 0, 1},
                                     {1, 192, 2, 0, 1}, {1, 0, 1, 0, 1},   {2, 128, 1, 0, 1},
                                     {0, 128, 1, 0, 1}, {0, 0, 0, 0, 0}};
  for (const crypto::Cryptor& what : unknown) {
    EXPECT_EQ(opened()->create_encryptor(what), nullptr);
    EXPECT_EQ(opened()->create_decryptor(what), nullptr);
    EXPECT_EQ(BareCryptor().initialize(what), StatusNotSupported);
  }
  EXPECT_EQ(BareCryptor().initialize(kCbc), StatusOk);
  EXPECT_EQ(BareCryptor().initialize(kCtr), StatusOk);
}

TEST(EvpCryptorLin, TheReservedFieldsAreNotRead) {
  EXPECT_TRUE(encryptor({1, 128, 1, 99, 99}));
  const crypto::Cryptor standard;
  EXPECT_EQ(standard.algorithm, 1U);
  EXPECT_EQ(standard.keyBits, 128U);
  EXPECT_EQ(standard.mode, 1U);
  EXPECT_EQ(standard.reserved0, 0U);
  EXPECT_EQ(standard.reserved1, 1U);
}

TEST(EvpCryptorLin, WithoutACipherNothingRuns) {
  EncryptorLin cryptor;
  Buffer output;
  const Bytes some = aesKey();
  EXPECT_EQ(cryptor.start({view(some), view(some)}), StatusWrongState);
  EXPECT_EQ(cryptor.add_chunk(view(some), output), StatusWrongState);
  EXPECT_EQ(cryptor.finish(output), StatusWrongState);
  EXPECT_EQ(BareCryptor().start({view(some), view(some)}), StatusWrongState);
  EXPECT_EQ(output.size(), 0U);
}

TEST(EvpCryptorLin, AFailedChoiceKeepsTheCipher) {
  EncryptorLin cryptor;
  const Bytes some = aesKey();
  EXPECT_EQ(cryptor.initialize(kCbc), StatusOk);
  EXPECT_EQ(cryptor.initialize({1, 256, 1, 0, 1}), StatusNotSupported);
  EXPECT_EQ(cryptor.start({view(some), view(some)}), StatusOk);
}

TEST(EvpCryptorLin, ByItselfOnlyTestsWhetherItCouldStart) {
  BareCryptor cryptor;
  ASSERT_EQ(cryptor.initialize(kCbc), StatusOk);
  const Bytes some = aesKey();
  EXPECT_EQ(cryptor.start({view(some), view(some)}), StatusOk);
  EXPECT_EQ(cryptor.start({view(some), view(head(some, 15))}), StatusInvalidParameter);
}

TEST(EvpCryptorLin, KeyAndIvMustHaveTheCiphersSize) {
  for (const Cryptor& cryptor : {encryptor(kCbc), decryptor(kCbc), encryptor(kCtr)}) {
    for (const std::size_t size : {0U, 1U, 15U, 17U, 32U}) {
      EXPECT_EQ(start(cryptor, Bytes(size, 1), cbcIv()), StatusInvalidParameter);
      EXPECT_EQ(start(cryptor, aesKey(), Bytes(size, 1)), StatusInvalidParameter);
    }
    EXPECT_EQ(cryptor->start({{nullptr, 16}, view(cbcIv())}), StatusInvalidParameter);
    EXPECT_EQ(cryptor->start({view(aesKey()), {nullptr, 16}}), StatusInvalidParameter);
    EXPECT_EQ(start(cryptor, aesKey(), cbcIv()), StatusOk);
  }
}

TEST(EvpCryptorLin, BeforeStartOpenSslRefuses) {
  const Cryptor cryptor = encryptor(kCtr);
  Buffer output;
  EXPECT_EQ(cryptor->add_chunk(view(nistPlain()), output), StatusFailed);
  EXPECT_EQ(cryptor->finish(output), StatusFailed);
  EXPECT_EQ(output.size(), 0U);
}

TEST(EvpCryptorLin, PassesTheVectorsOfNistInPiecesOfAnySize) {
  for (std::size_t piece = 1; piece <= 80; ++piece) {
    EXPECT_EQ(passed(encryptor(kCbc), cbcIv(), nistPlain(), piece), nistCbc());
    EXPECT_EQ(passed(decryptor(kCbc), cbcIv(), nistCbc(), piece), nistPlain());
    EXPECT_EQ(passed(encryptor(kCtr), counter(), nistPlain(), piece), nistCtr());
    EXPECT_EQ(passed(decryptor(kCtr), counter(), nistCtr(), piece), nistPlain());
  }
}

TEST(EvpCryptorLin, CtrModeKeepsAnyLength) {
  for (std::size_t length = 1; length <= 64; ++length) {
    EXPECT_EQ(passed(encryptor(kCtr), counter(), head(nistPlain(), length), 64),
              head(nistCtr(), length));
  }
}

TEST(EvpCryptorLin, StartBeginsAnew) {
  const Cryptor cryptor = encryptor(kCbc);
  EXPECT_EQ(passed(cryptor, cbcIv(), nistPlain(), 64), nistCbc());
  EXPECT_EQ(passed(cryptor, cbcIv(), nistPlain(), 7), nistCbc());
  ASSERT_EQ(start(cryptor, aesKey(), cbcIv()), StatusOk);
  Buffer dropped;
  ASSERT_EQ(cryptor->add_chunk(view(bytes("010203")), dropped), StatusOk);
  EXPECT_EQ(passed(cryptor, cbcIv(), nistPlain(), 64), nistCbc());
}

TEST(EvpCryptorLin, AddChunkHonoursTheReadPositionAndLeavesIt) {
  const Cryptor cryptor = encryptor(kCtr);
  ASSERT_EQ(start(cryptor, aesKey(), counter()), StatusOk);
  const Bytes content = joined({bytes("0102030405"), head(nistPlain(), 32)});
  ReadOnlyBuffer input = view(content);
  ASSERT_EQ(input.setReadPosition(5), StatusOk);
  Buffer output;
  EXPECT_EQ(cryptor->add_chunk(input, output), StatusOk);
  EXPECT_EQ(input.readPosition(), 5U);
  EXPECT_EQ(contentOf(output), head(nistCtr(), 32));
}

TEST(EvpCryptorLin, TheSameInputTwiceIsPassedOnTwice) {
  const Cryptor cryptor = encryptor(kCbc);
  const Bytes once = nistPlain();
  EXPECT_EQ(start(cryptor, aesKey(), cbcIv()), StatusOk);
  Buffer output;
  EXPECT_EQ(cryptor->add_chunk(view(once), output), StatusOk);
  EXPECT_EQ(cryptor->add_chunk(view(once), output), StatusOk);
  EXPECT_EQ(cryptor->finish(output), StatusOk);
  EXPECT_EQ(contentOf(output),
            passed(encryptor(kCbc), cbcIv(), joined({once, once}), once.size() * 2));
}

TEST(EvpCryptorLin, AddChunkAppendsWhereTheBufferStands) {
  const Cryptor cryptor = encryptor(kCtr);
  ASSERT_EQ(start(cryptor, aesKey(), counter()), StatusOk);
  Buffer output;
  const unsigned char before[] = {1, 2, 3};
  output.append(before, 3);
  EXPECT_EQ(cryptor->add_chunk(view(nistPlain()), output), StatusOk);
  EXPECT_EQ(cryptor->finish(output), StatusOk);
  EXPECT_EQ(contentOf(output), joined({bytes("010203"), nistCtr()}));
}

TEST(EvpCryptorLin, AddChunkOverwritesWhereTheWritePositionWasMovedBack) {
  const Cryptor cryptor = encryptor(kCtr);
  ASSERT_EQ(start(cryptor, aesKey(), counter()), StatusOk);
  Buffer output;
  output.fill(7, 80);
  ASSERT_EQ(output.setWritePosition(2), StatusOk);
  EXPECT_EQ(cryptor->add_chunk(view(nistPlain()), output), StatusOk);
  EXPECT_EQ(contentOf(output), joined({Bytes(2, 7), nistCtr(), Bytes(14, 7)}));
  EXPECT_EQ(output.writePosition(), 66U);
}

TEST(EvpCryptorLin, AddChunkTakesItsInputFromTheOutputToo) {
  for (const unsigned int room : {64U, 4096U}) {
    const Cryptor cryptor = encryptor(kCtr);
    ASSERT_EQ(start(cryptor, aesKey(), counter()), StatusOk);
    Buffer output(room);
    output.append(nistPlain().data(), 64);
    EXPECT_EQ(cryptor->add_chunk(output, output), StatusOk);
    EXPECT_EQ(contentOf(output), joined({nistPlain(), nistCtr()}));
  }
}

TEST(EvpCryptorLin, AddChunkGrowsAFullBuffer) {
  const Cryptor cryptor = encryptor(kCtr);
  ASSERT_EQ(start(cryptor, aesKey(), counter()), StatusOk);
  Buffer output;
  output.fill(7, 500);
  EXPECT_EQ(cryptor->add_chunk(view(nistPlain()), output), StatusOk);
  EXPECT_EQ(contentOf(output), joined({Bytes(500, 7), nistCtr()}));
}

TEST(EvpCryptorLin, WhatCannotStandInOneBufferIsRefusedUnread) {
  const Cryptor cryptor = encryptor(kCbc);
  ASSERT_EQ(start(cryptor, aesKey(), cbcIv()), StatusOk);
  const unsigned char one = 1;
  Buffer output;
  EXPECT_EQ(cryptor->add_chunk(ReadOnlyBuffer(&one, 0xFFFFFFF0U), output), StatusOutOfMemory);
  EXPECT_EQ(cryptor->add_chunk(ReadOnlyBuffer(&one, 0xFFFFFFFFU), output), StatusOutOfMemory);
  EXPECT_EQ(output.size(), 0U);
}

TEST(EvpCryptorLin, NothingToReadIsAnInvalidParameter) {
  const Cryptor cryptor = encryptor(kCbc);
  ASSERT_EQ(start(cryptor, aesKey(), cbcIv()), StatusOk);
  Buffer output;
  const Bytes some = aesKey();
  EXPECT_EQ(cryptor->add_chunk({}, output), StatusInvalidParameter);
  EXPECT_EQ(cryptor->add_chunk({nullptr, 16}, output), StatusInvalidParameter);
  EXPECT_EQ(cryptor->add_chunk({some.data(), 0}, output), StatusInvalidParameter);
  ReadOnlyBuffer read = view(some);
  Bytes target(16);
  ASSERT_EQ(read.read(target.data(), 16, true), 16U);
  EXPECT_EQ(cryptor->add_chunk(read, output), StatusInvalidParameter);
  EXPECT_EQ(output.size(), 0U);
}

TEST(EvpCryptorLin, FinishTellsAWrongPadding) {
  const Cryptor cryptor = decryptor(kCbc);
  ASSERT_EQ(start(cryptor, aesKey(), cbcIv()), StatusOk);
  Buffer output;
  ASSERT_EQ(cryptor->add_chunk(view(head(nistCbc(), 79)), output), StatusOk);
  EXPECT_EQ(cryptor->finish(output), StatusFailed);
}
