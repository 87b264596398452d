#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <string>

#include <boost/crc.hpp>

#include <trelvo/Buffer.h>
#include <trelvo/Export.h>
#include <trelvo/Status.h>
#include <trelvo/gom/SharedPointer.h>
#include <trelvo/network/IHTTPRequest.h>

namespace trelvo {

class ICryptographyUtility;
class IStream;

namespace crypto {
class ICryptor;
}  // namespace crypto

namespace network {

/// IHTTPRequest on libcurl's easy interface. Applications go through IHTTPRequest::create().
///
/// Connections to the server are kept open from one request to the next.
///
/// Threads: as IHTTPRequest.
class TRELVO_EXPORT HTTPRequest : public IHTTPRequest {
 public:
  /// For `server`, without a transport: call initialize() before anything else. `manager` is not
  /// owned and must outlive the object.
  HTTPRequest(const std::string& server, IConnectionManager* manager);
  ~HTTPRequest() override;

  /// Starts libcurl, makes the transport and asks the connection manager for a proxy; that there is
  /// none is no error. To be called once.
  /// @return false when libcurl cannot start or there is no connection manager.
  [[nodiscard]] bool initialize();

  Status isAvailable(const std::string& path) override;
  Status download(const std::string& path, const std::string& localFile,
                  unsigned long long& bytes) override;
  void cancel() override;
  bool isCancelled() override;
  void setAllowedConnectionType(int mask) override;
  Status setDataDecryption(CipherType type, const unsigned char* key, unsigned int keyLength,
                           const unsigned char* iv, unsigned int ivLength) override;
  Status setDataEncryption(CipherType type, const unsigned char* key, unsigned int keyLength,
                           const unsigned char* iv, unsigned int ivLength) override;
  Status getRemoteFileModificationTime(const std::string& path, unsigned int& time) override;
  Status setDataChecksum(unsigned int crc, unsigned int start, unsigned int end) override;

  /// Changes nothing. @return StatusCancelled when cancelled, else StatusOk.
  Status disableKeepAlive();

  /// The code of the last answer, 0 before the first.
  /// @return StatusOk; StatusCancelled or StatusFailed with `code` untouched.
  Status getStatusCode(int& code) const;

  /// What a failed transfer means: StatusCancelled when cancelled, else StatusFailed.
  Status lastErrorToStatus() const;

  /// "http://", the server and `path`, with nothing in between.
  std::string createHttpUri(const std::string& path) const;

  /// Points the transport at `path`. @return true when that failed.
  bool commonContextSetup(const std::string& path);

  /// Whether a request may start: some connection must be allowed, and the manager begins to note
  /// which ones are used. Without a mask nobody is asked.
  /// @return StatusOk; StatusCancelled; StatusNoConnection; what the manager says.
  Status startMonitorUsedConnection();

  /// Whether all connections used since startMonitorUsedConnection() were allowed. When cancelled,
  /// the manager is not told.
  /// @return StatusOk; StatusCancelled; StatusNoConnection.
  Status stopMonitorUsedConnection();

  /// libcurl's header callback: one header line, `size` times `count` bytes, not NUL-terminated.
  /// Learns the body's length from the first "Content-Length:" that is spelled so.
  /// @return the bytes given, or 0, which ends the transfer, when cancelled.
  static std::size_t receiveHeader(void* data, std::size_t size, std::size_t count, void* self);

  /// libcurl's write callback: one block of the body, `size` times `count` bytes. Deciphers it,
  /// adds it to the checksum, writes and flushes it. Outside of a download the block is counted and
  /// thrown away.
  /// @return the bytes given, or 0, which ends the transfer, when cancelled or when deciphering
  ///         fails.
  static std::size_t receiveBody(char* data, std::size_t size, std::size_t count, void* self);

  /// Adds to `crc` those bytes of a block that lie in the range from `start` to `end`, and their
  /// number to `*position`, which is 0 for the first block.
  ///
  /// `*position` counts the bytes added so far, not those passed over. A block is left out when
  /// `*position` plus its length is below `start`, or when bytes were added already and `*position`
  /// has reached `end`. Of another block the first `start` bytes are passed over while `*position`
  /// is below `start`, and at the back as many as `*position` plus its length exceeds `end`; where
  /// the two meet or cross, nothing is added.
  ///
  /// With `start` 0 this is the plain range of the first `end` bytes. A null `crc` does nothing.
  static void addBufferToCrc32CheckSum(const unsigned char* data, unsigned int length,
                                       boost::crc_32_type* crc, unsigned int start,
                                       unsigned int end, unsigned int* position);

 private:
  class Output;
  struct ShareCleanup {
    void operator()(void* share) const noexcept;
  };

  bool makeTransport();
  void useProxy();
  bool renewTransport();
  int perform();
  bool cancelled() const noexcept { return m_cancelled.load(std::memory_order_relaxed); }

  template <class OnAnswer>
  Status performMonitored(OnAnswer onAnswer);
  Status doIsAvailable(int& code);
  Status doGetRemoteFileModificationTime(int& code, unsigned int& time);

  Status startDecryption();
  Status finishDecryption();
  void startChecksum();
  Status transfer(unsigned long long& bytes);
  Status doDownload();
  bool lengthDiffers() const;
  Status checkBody(unsigned long long& bytes) const;
  bool takeBlock(const unsigned char* data, unsigned int length);
  void store(const unsigned char* data, unsigned int length);

  IConnectionManager* m_connectionManager;
  [[maybe_unused]] bool m_ownsConnectionManager = false;  // kept for the object's layout
  int m_allowedConnectionTypes = 0;
  std::atomic<bool> m_cancelled = false;
  void* m_curl = nullptr;  // CURL*
  bool m_curlGlobalInit = false;
  std::string m_server;
  IStream* m_outStream = nullptr;  // during a download only
  CipherType m_decryptionCipher = CipherNone;
  Buffer m_decryptionKey;
  Buffer m_decryptionIv;
  CipherType m_encryptionCipher = CipherNone;
  Buffer m_encryptionKey;
  Buffer m_encryptionIv;
  gom::SharedPointer<crypto::ICryptor> m_decryptor;
  gom::SharedPointer<ICryptographyUtility> m_cryptographyUtility;
  unsigned int m_expectedCrc = 0;  // 0: no check
  boost::crc_32_type* m_crc = nullptr;
  unsigned int m_crcStart = 0;
  unsigned int m_crcEnd = 0;
  unsigned int m_crcPosition = 0;
  unsigned int m_bytesReceived = 0;  // before deciphering
  bool m_contentLengthKnown = false;
  long long m_contentLength = 0;
  std::unique_ptr<void, ShareCleanup> m_share;  // CURLSH: the open connections
};

}  // namespace network
}  // namespace trelvo
