#include "tests/crypto/BlockFile.h"

#include <openssl/evp.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <numeric>

namespace trelvo::test {

namespace {

Bytes counterMode(const std::array<unsigned char, 16>& counter, const Bytes& input) {
  const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(
      EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
  Bytes output(input.size());
  int produced = 0;
  EXPECT_EQ(EVP_EncryptInit_ex(context.get(), EVP_aes_128_ctr(), nullptr, testKey().data(),
                               counter.data()),
            1);
  EXPECT_EQ(EVP_EncryptUpdate(context.get(), output.data(), &produced, input.data(),
                              static_cast<int>(input.size())),
            1);
  return output;
}

/// Names the protected fields, which gives pointers to members of the base.
struct Fields : CryptoFileCommon {
  static BlockState of(const CryptoFileCommon& file) {
    const auto& buffer = file.*&Fields::m_buffer;
    const auto& key = file.*&Fields::m_key;
    const auto& iv = file.*&Fields::m_iv;
    return {file.*&Fields::m_baseOffset,
            file.*&Fields::m_mode,
            file.*&Fields::m_pendingOffset,
            Bytes(std::begin(buffer), std::end(buffer)),
            file.*&Fields::m_validBytes,
            file.*&Fields::m_position,
            file.*&Fields::m_dirty,
            Bytes(std::begin(key), std::end(key)),
            Bytes(std::begin(iv), std::end(iv))};
  }
};

}  // namespace

std::array<unsigned char, 16> testKey() {
  std::array<unsigned char, 16> key = {};
  std::iota(key.begin(), key.end(), static_cast<unsigned char>(0));
  return key;
}

std::array<unsigned char, 16> testIv() {
  std::array<unsigned char, 16> iv = {};
  std::iota(iv.begin(), iv.end(), static_cast<unsigned char>(0xF0));
  return iv;
}

Bytes plainBytes(unsigned int size) {
  Bytes result(size);
  for (unsigned int i = 0; i < size; ++i) {
    result[i] = static_cast<unsigned char>(i * 7 + i / 256 + 3);
  }
  return result;
}

Bytes enciphered(const Bytes& bytes) {
  std::array<unsigned char, 16> counter = testIv();
  std::fill_n(counter.begin() + 12, 4, static_cast<unsigned char>(0));
  return counterMode(counter, bytes);
}

const Bytes& keyStream(unsigned int blockIndex) {
  static std::map<unsigned int, Bytes> known;
  Bytes& stream = known[blockIndex];
  if (stream.empty()) {
    const unsigned int value = blockIndex * 32 % 0x10000000U;
    std::array<unsigned char, 16> counter = testIv();
    for (unsigned int i = 0; i < 4; ++i) {
      counter[12 + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
    }
    stream = counterMode(counter, Bytes(512));
  }
  return stream;
}

bool BlockState::operator==(const BlockState& other) const {
  return baseOffset == other.baseOffset && mode == other.mode &&
         pendingOffset == other.pendingOffset && buffer == other.buffer &&
         validBytes == other.validBytes && position == other.position && dirty == other.dirty &&
         key == other.key && iv == other.iv;
}

std::ostream& operator<<(std::ostream& out, const BlockState& state) {
  out << "base " << state.baseOffset << " mode " << state.mode << " pending " << state.pendingOffset
      << " valid " << state.validBytes << " position " << state.position << " dirty " << state.dirty
      << " iv " << ::testing::PrintToString(slice(state.iv, 12, 16)) << " buffer "
      << std::accumulate(state.buffer.begin(), state.buffer.end(), 0U,
                         [](unsigned int sum, unsigned char byte) { return sum * 31 + byte; });
  return out;
}

BlockState stateOf(const CryptoFileCommon& file) { return Fields::of(file); }

Status DerivedFile::encryptBlock(unsigned int blockIndex, unsigned char* output,
                                 unsigned int& outputSize) {
  ++encrypted;
  return answer == StatusOk ? CryptoFileLin::encryptBlock(blockIndex, output, outputSize) : answer;
}

Status DerivedFile::decryptBlock(unsigned int blockIndex, const unsigned char* input,
                                 unsigned int inputSize) {
  ++decrypted;
  return answer == StatusOk ? CryptoFileLin::decryptBlock(blockIndex, input, inputSize) : answer;
}

gom::SharedPointer<CryptoFileLin> openPlain(const gom::SharedPointer<core::IFile>& file) {
  return new CryptoFileLin(file, testKey().data(), testIv().data());
}

gom::SharedPointer<DerivedFile> openDerived(const gom::SharedPointer<core::IFile>& file) {
  return new DerivedFile(file, testKey().data(), testIv().data());
}

Bytes bytesOfFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  EXPECT_TRUE(in) << path;
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void putFile(const std::string& path, const Bytes& content) {
  std::ofstream out(path, std::ios::binary);
  out.write(reinterpret_cast<const char*>(content.data()),
            static_cast<std::streamsize>(content.size()));
  EXPECT_TRUE(out.flush()) << path;
}

Bytes readBytes(IStream& stream, unsigned int count) {
  Bytes result(count);
  result.resize(stream.read(result.data(), count));
  return result;
}

bool writeBytes(IStream& stream, const Bytes& content) {
  return stream.write(content.data(), static_cast<unsigned int>(content.size())) == content.size();
}

Bytes slice(const Bytes& content, std::size_t first, std::size_t last) {
  return {content.begin() + static_cast<std::ptrdiff_t>(first),
          content.begin() + static_cast<std::ptrdiff_t>(last)};
}

}  // namespace trelvo::test
