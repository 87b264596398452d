#pragma once

#include <string>

#include <trelvo/Export.h>
#include <trelvo/Status.h>

namespace trelvo::network {

class IConnectionManager;

/// Requests to one HTTP server: does a file exist, when was it changed, download it.
///
/// Every request runs on the caller's thread and returns when it is over. An object serves any
/// number of requests, one after the other, and keeps its settings from one to the next. Nothing is
/// retried, redirects are not followed, and there is no time limit: what ends a transfer early is
/// cancel().
///
/// Paths begin with "/" and are put behind "http://" and the server as they are, so what needs
/// escaping comes escaped.
///
/// | Status                   | Meaning here                                                      |
/// |--------------------------|-------------------------------------------------------------------|
/// | `StatusOk`               | done                                                              |
/// | `StatusFailed`           | the local file, the transfer or the cipher failed; in a download  |
/// |                          | also every answer other than 200 and 404                          |
/// | `StatusInternal`         | no output for the kind of encryption in use                       |
/// | `StatusOutOfMemory`      | no memory for a buffer or a text                                  |
/// | `StatusNotFound`         | the server has no such file                                       |
/// | `StatusWrongState`       | encryption or decryption is set but not usable                    |
/// | `StatusNotSupported`     | an initialisation vector was given for encryption                 |
/// | `StatusNoConnection`     | no allowed connection, or the transfer used another one as well   |
/// | `StatusChecksumMismatch` | the body has another checksum or length than expected             |
/// | `StatusCancelled`        | cancelled                                                         |
///
/// Threads: one at a time, but for cancel(), which any thread may call at any time.
class TRELVO_EXPORT IHTTPRequest {
 public:
  /// How the bytes of a body are enciphered. Other values are taken as well; each setter says what
  /// they do.
  enum CipherType : int {
    CipherNone = 0,  ///< Plain.
    CipherAes = 1,   ///< AES with 128 bits: CBC on the way in, a block file on the way out.
  };

  /// A request object for `server`: a host name or address, with ":port" where it is not 80. Asks
  /// `manager` for a proxy, once, and uses it. Where it names none, libcurl's own rule holds: the
  /// one in the environment variable http_proxy, if that is set.
  ///
  /// The caller deletes the result, and keeps `manager` alive until then.
  /// @return null when `manager` is null, memory runs out or libcurl cannot start.
  [[nodiscard]] static IHTTPRequest* create(const std::string& server, IConnectionManager* manager);

  IHTTPRequest(const IHTTPRequest&) = delete;
  IHTTPRequest& operator=(const IHTTPRequest&) = delete;
  virtual ~IHTTPRequest();

  /// Asks with HEAD whether the server has `path`. A server that answers neither 200 nor 404 may
  /// not know HEAD and is asked again with GET, whose body is thrown away.
  /// @return StatusOk for 200, else StatusNotFound; see the table for what else may happen.
  virtual Status isAvailable(const std::string& path) = 0;

  /// Downloads `path` into `localFile`, which is created, or emptied if it exists, before anything
  /// else is tried. Every block that arrives is written and flushed at once. A download that fails
  /// leaves the file as far as it came, maybe empty.
  ///
  /// A body is complete when it has the length of the "Content-Length:" header, in this spelling;
  /// a server that spells it otherwise has its word taken by libcurl alone, which also sees a body
  /// that is too short, but cannot tell it from a lost connection: StatusFailed.
  ///
  /// Failures to write to `localFile`, a full disk say, are not seen. Set a checksum and read the
  /// file back where that matters.
  ///
  /// With decryption, the outcome of the last cipher block takes the place of whatever happened
  /// before it, but for a cancel and for used connections that were not allowed. So an answer 404,
  /// or a request that no connection allows, comes out as StatusFailed, for want of a last block.
  ///
  /// @param bytes the length of the body as it came over the network, modulo 2^32. Only set when
  ///        the transfer came to its end: with StatusOk and StatusChecksumMismatch, and where used
  ///        connections turn out afterwards as not allowed.
  virtual Status download(const std::string& path, const std::string& localFile,
                          unsigned long long& bytes) = 0;

  /// Ends the running request, if there is one, and all later ones: the object stays cancelled and
  /// its requests give StatusCancelled. A transfer stops at the next block or header, and one in
  /// which nothing moves, within two seconds.
  virtual void cancel() = 0;

  /// Whether cancel() was called.
  virtual bool isCancelled() = 0;

  /// Restricts the connections that requests may use: a sum of ConnectionInfo::type bits, 1 WLAN, 2
  /// cellular. A cellular connection that is roaming is never allowed. 0, as at the start, allows
  /// everything and leaves the connection manager unasked.
  virtual void setAllowedConnectionType(int mask) = 0;

  /// Says how bodies are enciphered on the server. For CipherAes, AES-128 in CBC mode with PKCS #7
  /// padding; key and initialisation vector are copied, and must have 16 bytes each once a download
  /// begins, or it gives StatusInvalidParameter. CipherNone, or any other value, means plain
  /// bodies.
  ///
  /// A change of `type` takes effect even where it fails; the next call with the same `type` then
  /// gives StatusOk without a cipher, and downloads give StatusWrongState. Go through CipherNone
  /// to start afresh. With the `type` that is already set, only key and vector are replaced.
  ///
  /// @return StatusOk; StatusWrongState when `keyLength` and `ivLength` differ (only seen on a
  ///         change of `type`); StatusFailed without a cipher; StatusOutOfMemory.
  virtual Status setDataDecryption(CipherType type, const unsigned char* key,
                                   unsigned int keyLength, const unsigned char* iv,
                                   unsigned int ivLength) = 0;

  /// Says how local files are enciphered. For CipherAes, downloads go into an encrypted block file
  /// (ICryptoFile): `key` is then the NUL-terminated name of the key that ICryptographyUtility
  /// keeps, and `iv` must be null. CipherNone means plain files; with any other value downloads
  /// give StatusInternal.
  ///
  /// A change of `type` takes effect even where it fails, as with setDataDecryption().
  ///
  /// @return StatusOk; StatusNotSupported for an `iv`; StatusInvalidParameter for a null or empty
  ///         name; StatusKeyFailure and others from ICryptographyUtility::open();
  ///         StatusOutOfMemory.
  virtual Status setDataEncryption(CipherType type, const unsigned char* key,
                                   unsigned int keyLength, const unsigned char* iv,
                                   unsigned int ivLength) = 0;

  /// Asks when the server's file `path` was last changed, as isAvailable() does, in seconds since
  /// the Unix epoch. A server that names no time, or that had to be asked with GET, leaves
  /// 0xFFFFFFFF.
  /// @param time 0 with StatusNotFound; else only set by an answer 200.
  virtual Status getRemoteFileModificationTime(const std::string& path, unsigned int& time) = 0;

  /// Has downloads compare the CRC-32 (that of zlib, PNG and Ethernet) of the body, deciphered,
  /// with `crc`. 0 means no check.
  ///
  /// With `start` 0 the first `end` bytes count. Another `start` is taken off the first block that
  /// reaches it, and off the following ones until that many bytes were counted; blocks before it
  /// are skipped whole. As nobody controls how the network cuts a body into blocks, 0 is the
  /// `start` of choice; HTTPRequest::addBufferToCrc32CheckSum() tells the rule.
  /// @return StatusOk.
  virtual Status setDataChecksum(unsigned int crc, unsigned int start, unsigned int end) = 0;

 protected:
  IHTTPRequest() = default;
};

}  // namespace trelvo::network
