// libcurl with its own blocks of 16 KiB, and with the library's of 100 KiB, each flushed into the
// file: the least that downloading leaves to do.

#include <curl/curl.h>

#include <cstdio>
#include <memory>

#include "bench/http/DownloadBench.h"
#include "bench/http/Stages.h"

namespace bench {

namespace {

struct CleanUp {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  void operator()(FILE* stream) const { std::fclose(stream); }
};

/// How libcurl cuts the body: as it does by itself, or in blocks that are each flushed.
struct OwnBlocks {
  static constexpr long kSize = 0;
};
struct FlushedBlocks {
  static constexpr long kSize = 102400;
};

template <class Blocks, class Cipher, class Sum>
class LibcurlDownload {
 public:
  static constexpr Served kServed = Cipher::kServed;

  void download(const Source& source, const std::string& path) {
    m_file.reset(std::fopen(path.c_str(), "wb"));
    must(m_file != nullptr, "fopen");
    transfer(source.url());
    store(m_cipher.finish());
    must(m_sum.matches(), "the checksum");
    must(std::fclose(m_file.release()) == 0, "fclose");
  }

 private:
  void transfer(const std::string& url) {
    const std::unique_ptr<CURL, CleanUp> handle(curl_easy_init());
    CURL* const curl = handle.get();
    must(curl != nullptr && curl_easy_setopt(curl, CURLOPT_URL, url.c_str()) == CURLE_OK &&
             curl_easy_setopt(curl, CURLOPT_NOPROXY, "*") == CURLE_OK &&
             curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, receive) == CURLE_OK &&
             curl_easy_setopt(curl, CURLOPT_WRITEDATA, this) == CURLE_OK &&
             (Blocks::kSize == 0 ||
              curl_easy_setopt(curl, CURLOPT_BUFFERSIZE, Blocks::kSize) == CURLE_OK) &&
             curl_easy_perform(curl) == CURLE_OK,
         "libcurl");
  }

  static std::size_t receive(char* bytes, std::size_t, std::size_t size, void* self) {
    auto& download = *static_cast<LibcurlDownload*>(self);
    download.store(download.m_cipher.pass({reinterpret_cast<unsigned char*>(bytes), size}));
    return size;
  }

  void store(Piece piece) {
    if (piece.size == 0) {
      return;
    }
    m_sum.add(piece);
    must(std::fwrite(piece.bytes, 1, piece.size, m_file.get()) == piece.size, "fwrite");
    if (Blocks::kSize != 0) {
      must(std::fflush(m_file.get()) == 0, "fflush");
    }
  }

  std::unique_ptr<FILE, CleanUp> m_file;
  Cipher m_cipher;
  Sum m_sum;
};

template <class Cipher, class Sum>
using Plainly = LibcurlDownload<OwnBlocks, Cipher, Sum>;
template <class Cipher, class Sum>
using Flushed = LibcurlDownload<FlushedBlocks, Cipher, Sum>;

const bool kRegistered =
    registerDownload<Flushed<NoCipher, NoSum>>("plain", "floor:blocks_100k") &&
    registerDownload<Plainly<NoCipher, NoSum>>("plain", "libcurl") &&
    registerDownload<Flushed<NoCipher, ZlibSum>>("crc", "blocks_100k+zlib") &&
    registerDownload<Plainly<NoCipher, ZlibSum>>("crc", "libcurl+zlib") &&
    registerDownload<Plainly<NoCipher, BoostSum>>("crc", "libcurl+boost") &&
    registerDownload<Flushed<OpenSslCbc, NoSum>>("cbc", "floor:blocks_100k+EVP") &&
    registerDownload<Plainly<OpenSslCbc, NoSum>>("cbc", "libcurl+EVP") &&
    registerDownload<Flushed<OpenSslCbc, ZlibSum>>("both", "blocks_100k+EVP+zlib") &&
    registerDownload<Plainly<OpenSslCbc, ZlibSum>>("both", "libcurl+EVP+zlib") &&
    registerDownload<Flushed<NoCipher, LibdeflateSum>>("crc", "floor:blocks_100k+libdeflate") &&
    registerDownload<Flushed<OpenSslCbc, LibdeflateSum>>("both",
                                                         "floor:blocks_100k+EVP+libdeflate");

}  // namespace

}  // namespace bench
