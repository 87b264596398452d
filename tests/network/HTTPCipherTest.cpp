// Downloads that are deciphered on their way in, and enciphered on their way to the disk.

#include <gtest/gtest.h>
#include <openssl/evp.h>

#include <memory>
#include <string>
#include <vector>

#include <trelvo/ICryptoFile.h>
#include <trelvo/ICryptographyUtility.h>
#include <trelvo/core/Directory.h>
#include <trelvo/core/IFile.h>

#include "tests/network/HTTPSupport.h"
#include "tests/support/Bytes.h"

namespace trelvo::test {
namespace {

using network::IHTTPRequest;

// Key, vector and plain text of NIST SP 800-38A, F.2.1, with the padding behind.

const Bytes kKey = test::bytes("2b7e151628aed2a6abf7158809cf4f3c");
const Bytes kIv = test::bytes("000102030405060708090a0b0c0d0e0f");
const Bytes kPlain = test::bytes(
    "6bc1bee22e409f96e93d7e117393172a ae2d8a571e03ac9c9eb76fac45af8e51"
    "30c81c46a35ce411e5fbc1191a0a52ef f69f2445df4f9b17ad2b417be66c3710");
const Bytes kCipher = test::bytes(
    "7649abac8119b246cee98e9b12e9197d 5086cb9b507219ee95db113a917678b2"
    "73bed6b8e3c1743b7116e69e22229516 3ff1caa1681fac09120eca307586e1a7"
    "8cb82807230e1321d3fae00d18cc2012");

std::string text(const Bytes& content) { return {content.begin(), content.end()}; }

/// The CRC-32, bit by bit.
unsigned int crcOf(const std::string& content) {
  unsigned int crc = 0xFFFFFFFF;
  for (const char c : content) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) {
      crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB88320 : 0);
    }
  }
  return ~crc;
}

/// `plain` under kKey and kIv, by OpenSSL itself.
std::string enciphered(const std::string& plain) {
  const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
      EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
  std::string cipher(plain.size() + 16, '\0');
  auto* const out = reinterpret_cast<unsigned char*>(cipher.data());
  const auto* const in = reinterpret_cast<const unsigned char*>(plain.data());
  int used = 0;
  int last = 0;
  EXPECT_EQ(EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, kKey.data(), kIv.data()),
            1);
  EXPECT_EQ(EVP_EncryptUpdate(context.get(), out, &used, in, static_cast<int>(plain.size())), 1);
  EXPECT_EQ(EVP_EncryptFinal_ex(context.get(), out + used, &last), 1);
  cipher.resize(static_cast<std::size_t>(used) + static_cast<std::size_t>(last));
  return cipher;
}

class HTTPDecryption : public DownloadTest {
 protected:
  Status decrypt(const Bytes& key = kKey, const Bytes& iv = kIv,
                 IHTTPRequest::CipherType type = IHTTPRequest::CipherAes) {
    return request->setDataDecryption(type, key.data(), static_cast<unsigned int>(key.size()),
                                      iv.data(), static_cast<unsigned int>(iv.size()));
  }
};

TEST_F(HTTPDecryption, DeciphersWhileDownloading) {
  serveInTurn({found(text(kCipher)), found(text(kCipher))});
  ASSERT_EQ(decrypt(), StatusOk);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(download(), StatusOk);
    EXPECT_EQ(bytes, 80U) << "as it came over the network";
    EXPECT_EQ(content(), text(kPlain));
  }
}

TEST_F(HTTPDecryption, CutsBetweenBlocksDoNotMatter) {
  const std::string cipher = text(kCipher);
  for (std::size_t size = 1; size <= cipher.size(); ++size) {
    serveInTurn({unmeasured("")});
    ASSERT_EQ(decrypt(), StatusOk);
    request->setDataChecksum(crcOf(text(kPlain)), 0, 1000);
    std::vector<std::string> blocks;
    for (std::size_t at = 0; at < cipher.size(); at += size) {
      blocks.push_back(cipher.substr(at, size));
    }
    feed(blocks);
    EXPECT_EQ(download(), StatusOk) << size;
    EXPECT_EQ(content(), text(kPlain)) << size;
  }
}

TEST_F(HTTPDecryption, LargeBodiesComeOutWhole) {
  const std::string plain = pattern(1000001);
  serveInTurn({found(enciphered(plain))});
  ASSERT_EQ(decrypt(), StatusOk);
  request->setDataChecksum(crcOf(plain), 0, 1000001);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_TRUE(content() == plain);
}

TEST_F(HTTPDecryption, TheChecksumIsThatOfThePlainText) {
  serveInTurn({found(text(kCipher)), found(text(kCipher))});
  ASSERT_EQ(decrypt(), StatusOk);
  request->setDataChecksum(crcOf(text(kPlain)), 0, 64);
  EXPECT_EQ(download(), StatusOk);
  request->setDataChecksum(crcOf(text(kCipher)), 0, 80);
  EXPECT_EQ(download(), StatusChecksumMismatch);
}

TEST_F(HTTPDecryption, DamagedBodiesFail) {
  const std::string cipher = text(kCipher);
  serveInTurn({found(cipher.substr(0, 79)), found(""), found(cipher.substr(0, 64))});
  ASSERT_EQ(decrypt(), StatusOk);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(content(), text(kPlain)) << "as far as it came";
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(download(), StatusFailed) << "the last plain block is no padding";
  EXPECT_EQ(bytes, kUntouched);
}

TEST_F(HTTPDecryption, TheLastBlockOutweighsTheTransfer) {
  serveInTurn({answer("404 Not Found", "", ""), answer("404 Not Found", "", text(kCipher)),
               answer("200 OK", "Content-Length: 100\r\n", text(kCipher))});
  ASSERT_EQ(decrypt(), StatusOk);
  EXPECT_EQ(download(), StatusFailed);
  EXPECT_EQ(download(), StatusOk) << "what deciphers is taken";
  EXPECT_EQ(download(), StatusChecksumMismatch);
  EXPECT_EQ(bytes, 80U);
  manager.present.clear();
  request->setAllowedConnectionType(1);
  EXPECT_EQ(download(), StatusFailed) << "not StatusNoConnection";
}

TEST_F(HTTPDecryption, ACancelOutweighsTheLastBlock) {
  serveInTurn({});
  ASSERT_EQ(decrypt(), StatusOk);
  request->cancel();
  EXPECT_EQ(download(), StatusCancelled);
}

TEST_F(HTTPDecryption, KeysOfAWrongSizeAreRefusedWithoutTraffic) {
  serveInTurn({});
  const Bytes shortKey(15);
  ASSERT_EQ(decrypt(shortKey, shortKey), StatusOk);
  EXPECT_EQ(download(), StatusInvalidParameter);
  ASSERT_EQ(decrypt(kKey, shortKey), StatusOk) << "the kind is set already";
  EXPECT_EQ(download(), StatusInvalidParameter);
  EXPECT_EQ(server->connections(), 0U);
}

TEST_F(HTTPDecryption, KeyAndVectorOfDifferentLengthLeaveItUnusable) {
  serveInTurn({found(text(kCipher))});
  EXPECT_EQ(decrypt(kKey, Bytes(15)), StatusWrongState);
  EXPECT_EQ(download(), StatusWrongState);
  EXPECT_EQ(decrypt(), StatusOk) << "the kind counts as set";
  EXPECT_EQ(download(), StatusWrongState);
  EXPECT_EQ(server->connections(), 0U);
  EXPECT_EQ(decrypt(kKey, kIv, IHTTPRequest::CipherNone), StatusOk);
  EXPECT_EQ(decrypt(), StatusOk);
  EXPECT_EQ(download(), StatusOk);
}

TEST_F(HTTPDecryption, ANewKeyTakesThePlaceOfTheOldOne) {
  serveInTurn({found(text(kCipher)), found(text(kCipher))});
  ASSERT_EQ(decrypt(Bytes(16), Bytes(16)), StatusOk);
  EXPECT_EQ(download(), StatusFailed) << "noise has no padding";
  ASSERT_EQ(decrypt(), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(content(), text(kPlain));
}

TEST_F(HTTPDecryption, OtherKindsMeanPlainBodies) {
  serveInTurn({found("plain"), found("plain")});
  ASSERT_EQ(decrypt(), StatusOk);
  ASSERT_EQ(decrypt(kKey, kIv, IHTTPRequest::CipherNone), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(decrypt(kKey, Bytes(3), static_cast<IHTTPRequest::CipherType>(2)), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(content(), "plain");
}

// Encryption

class HTTPEncryption : public HTTPDecryption {
 protected:
  Status encrypt(const char* name, IHTTPRequest::CipherType type = IHTTPRequest::CipherAes) {
    return request->setDataEncryption(type, reinterpret_cast<const unsigned char*>(name),
                                      name == nullptr ? 0 : 1000, nullptr, 0);
  }

  /// What the local file holds under the key named "sltdb".
  std::string deciphered() const {
    Status status = StatusFailed;
    bool generated = false;
    const gom::SharedPointer<ICryptographyUtility> utility =
        ICryptographyUtility::open("sltdb", status, generated);
    const gom::SharedPointer<ICryptoFile> file =
        ICryptoFile::open(core::Directory::openFile(local, 0, true), *utility);
    std::string result(10000000, '\0');
    result.resize(file->read(reinterpret_cast<unsigned char*>(result.data()),
                             static_cast<unsigned int>(result.size())));
    return result;
  }
};

TEST_F(HTTPEncryption, TheLocalFileIsABlockFileUnderTheNamedKey) {
  const std::string body = pattern(100001);
  serveInTurn({found(body)});
  ASSERT_EQ(encrypt("sltdb"), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(bytes, body.size());
  EXPECT_EQ(content().size(), body.size());
  EXPECT_FALSE(content() == body);
  EXPECT_TRUE(deciphered() == body);
}

TEST_F(HTTPEncryption, DeciphersChecksAndEnciphersAtOnce) {
  serveInTurn({found(text(kCipher))});
  ASSERT_EQ(encrypt("sltdb"), StatusOk);
  ASSERT_EQ(decrypt(), StatusOk);
  request->setDataChecksum(crcOf(text(kPlain)), 0, 64);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(content().size(), 64U);
  EXPECT_EQ(deciphered(), text(kPlain));
}

TEST_F(HTTPEncryption, AVectorIsNotSupported) {
  serveInTurn({});
  const auto* const name = reinterpret_cast<const unsigned char*>("sltdb");
  EXPECT_EQ(request->setDataEncryption(IHTTPRequest::CipherAes, name, 5, kIv.data(), 16),
            StatusNotSupported);
  EXPECT_EQ(download(), StatusWrongState);
  EXPECT_EQ(encrypt("sltdb"), StatusOk) << "the kind counts as set";
  EXPECT_EQ(download(), StatusWrongState);
  EXPECT_EQ(server->connections(), 0U);
  EXPECT_EQ(content(), "");
}

TEST_F(HTTPEncryption, ANameIsNeeded) {
  serveInTurn({});
  EXPECT_EQ(encrypt(nullptr), StatusInvalidParameter);
  EXPECT_EQ(encrypt(nullptr, IHTTPRequest::CipherNone), StatusOk);
  EXPECT_EQ(encrypt(""), StatusInvalidParameter);
  EXPECT_EQ(download(), StatusWrongState);
}

TEST_F(HTTPEncryption, OtherKindsHaveNoOutput) {
  serveInTurn({found("plain")});
  writeFile(local, "old");
  ASSERT_EQ(request->setDataEncryption(static_cast<IHTTPRequest::CipherType>(2), kKey.data(), 16,
                                       kIv.data(), 16),
            StatusOk);
  EXPECT_EQ(download(), StatusInternal);
  EXPECT_EQ(content(), "");
  EXPECT_EQ(server->connections(), 0U);
  ASSERT_EQ(encrypt(nullptr, IHTTPRequest::CipherNone), StatusOk);
  EXPECT_EQ(download(), StatusOk);
  EXPECT_EQ(content(), "plain");
}

}  // namespace
}  // namespace trelvo::test
