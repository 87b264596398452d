#include "fuzz/FakeCurl.h"

#include <curl/curl.h>

#include <cstdarg>
#include <memory>

namespace trelvo::fuzz {

namespace {

using HeaderCallback = std::size_t (*)(void*, std::size_t, std::size_t, void*);

/// What stands behind a handle.
struct Handle {
  HeaderCallback header = nullptr;
  void* headerData = nullptr;
  curl_write_callback body = nullptr;
  void* bodyData = nullptr;
  curl_xferinfo_callback progress = nullptr;
  void* progressData = nullptr;
  bool withoutBody = false;
  long code = 0;
};

Handle& handleOf(CURL* curl) { return *static_cast<Handle*>(curl); }

template <class Callback>
bool deliver(Callback callback, void* data, Bytes bytes) {
  const std::size_t size = bytes.size();
  return callback(reinterpret_cast<char*>(bytes.data()), 1, size, data) == size;
}

CURLcode hand(const Handle& handle, const Transfer::Piece& piece) {
  switch (piece.kind) {
    case Transfer::Piece::Header:
      return deliver(handle.header, handle.headerData, piece.bytes) ? CURLE_OK : CURLE_WRITE_ERROR;
    case Transfer::Piece::Body:
      return handle.withoutBody || deliver(handle.body, handle.bodyData, piece.bytes)
                 ? CURLE_OK
                 : CURLE_WRITE_ERROR;
    default:
      return handle.progress(handle.progressData, 0, 0, 0, 0) == 0 ? CURLE_OK
                                                                   : CURLE_ABORTED_BY_CALLBACK;
  }
}

void set(Handle& handle, CURLoption option, std::va_list& argument) {
  switch (option) {
    case CURLOPT_HEADERFUNCTION:
      handle.header = va_arg(argument, HeaderCallback);
      break;
    case CURLOPT_HEADERDATA:
      handle.headerData = va_arg(argument, void*);
      break;
    case CURLOPT_WRITEFUNCTION:
      handle.body = va_arg(argument, curl_write_callback);
      break;
    case CURLOPT_WRITEDATA:
      handle.bodyData = va_arg(argument, void*);
      break;
    case CURLOPT_XFERINFOFUNCTION:
      handle.progress = va_arg(argument, curl_xferinfo_callback);
      break;
    case CURLOPT_XFERINFODATA:
      handle.progressData = va_arg(argument, void*);
      break;
    case CURLOPT_NOBODY:
      handle.withoutBody = va_arg(argument, long) != 0;
      break;
    default:
      break;
  }
}

}  // namespace

Transfer& nextTransfer() {
  static Transfer transfer;
  return transfer;
}

}  // namespace trelvo::fuzz

using trelvo::fuzz::Handle;
using trelvo::fuzz::handleOf;
using trelvo::fuzz::nextTransfer;

// The library finds these by their dynamic symbols.
#pragma GCC visibility push(default)
extern "C" {

CURLcode curl_global_init(long /*flags*/) { return CURLE_OK; }
void curl_global_cleanup() {}

CURL* curl_easy_init() { return std::make_unique<Handle>().release(); }
CURL* curl_easy_duphandle(CURL* curl) { return std::make_unique<Handle>(handleOf(curl)).release(); }
void curl_easy_cleanup(CURL* curl) {
  const std::unique_ptr<Handle> owned(static_cast<Handle*>(curl));
}

// The types of these two are libcurl's: enumerations, which a compiler may pass in a narrower form.
#pragma GCC diagnostic push
#ifdef __clang__
#pragma GCC diagnostic ignored "-Wvarargs"
#endif

CURLcode curl_easy_setopt(CURL* curl, CURLoption option, ...) {
  std::va_list argument;
  va_start(argument, option);
  trelvo::fuzz::set(handleOf(curl), option, argument);
  va_end(argument);
  return CURLE_OK;
}

CURLcode curl_easy_getinfo(CURL* curl, CURLINFO info, ...) {
  std::va_list argument;
  va_start(argument, info);
  *va_arg(argument, long*) = info == CURLINFO_FILETIME ? nextTransfer().time : handleOf(curl).code;
  va_end(argument);
  return CURLE_OK;
}

#pragma GCC diagnostic pop

CURLcode curl_easy_perform(CURL* curl) {
  handleOf(curl).code = nextTransfer().code;
  for (const auto& piece : nextTransfer().pieces) {
    const CURLcode result = trelvo::fuzz::hand(handleOf(curl), piece);
    if (result != CURLE_OK) {
      return result;
    }
  }
  return nextTransfer().ends ? CURLE_OK : CURLE_PARTIAL_FILE;
}

CURLSH* curl_share_init() { return std::make_unique<int>().release(); }
CURLSHcode curl_share_setopt(CURLSH* /*share*/, CURLSHoption /*option*/, ...) { return CURLSHE_OK; }
CURLSHcode curl_share_cleanup(CURLSH* share) {
  const std::unique_ptr<int> owned(static_cast<int*>(share));
  return CURLSHE_OK;
}

}  // extern "C"
#pragma GCC visibility pop
