// Calls of libcurl that fail, one after the other: what a healthy system never shows.

#include <curl/curl.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdarg>
#include <functional>
#include <memory>

#include "tests/network/HTTPSupport.h"

namespace trelvo::test {
namespace {

/// Which call is to fail, counted from 0; -1 for none. Calls come from the test's own thread.
int gFailing = -1;
int gCalls = 0;

bool failsNow() { return gCalls++ == gFailing; }

template <class Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void* firstArgument(va_list arguments) { return va_arg(arguments, void*); }

}  // namespace
}  // namespace trelvo::test

#ifdef __clang__  // an enumeration of libcurl's is what its functions take last
#pragma clang diagnostic ignored "-Wvarargs"
#endif

#define TRELVO_IN_PLACE extern "C" __attribute__((visibility("default")))

// These take the place of libcurl's for the whole process. Options of this library are pointers,
// and numbers of their width.
TRELVO_IN_PLACE CURLcode curl_easy_setopt(CURL* handle, CURLoption option, ...) {
  va_list arguments;
  va_start(arguments, option);
  void* const value = trelvo::test::firstArgument(arguments);
  va_end(arguments);
  using Function = CURLcode (*)(CURL*, CURLoption, ...);
  static const auto kNext = trelvo::test::next<Function>("curl_easy_setopt");
  return trelvo::test::failsNow() ? CURLE_OUT_OF_MEMORY : kNext(handle, option, value);
}

TRELVO_IN_PLACE CURLcode curl_easy_getinfo(CURL* handle, CURLINFO info, ...) {
  va_list arguments;
  va_start(arguments, info);
  void* const value = trelvo::test::firstArgument(arguments);
  va_end(arguments);
  using Function = CURLcode (*)(CURL*, CURLINFO, ...);
  static const auto kNext = trelvo::test::next<Function>("curl_easy_getinfo");
  return trelvo::test::failsNow() ? CURLE_OUT_OF_MEMORY : kNext(handle, info, value);
}

TRELVO_IN_PLACE CURLSHcode curl_share_setopt(CURLSH* share, CURLSHoption option, ...) {
  va_list arguments;
  va_start(arguments, option);
  const int value = va_arg(arguments, int);
  va_end(arguments);
  using Function = CURLSHcode (*)(CURLSH*, CURLSHoption, ...);
  static const auto kNext = trelvo::test::next<Function>("curl_share_setopt");
  return trelvo::test::failsNow() ? CURLSHE_NOMEM : kNext(share, option, value);
}

TRELVO_IN_PLACE CURL* curl_easy_init() {
  static const auto kNext = trelvo::test::next<CURL* (*)()>("curl_easy_init");
  return trelvo::test::failsNow() ? nullptr : kNext();
}

TRELVO_IN_PLACE CURLSH* curl_share_init() {
  static const auto kNext = trelvo::test::next<CURLSH* (*)()>("curl_share_init");
  return trelvo::test::failsNow() ? nullptr : kNext();
}

TRELVO_IN_PLACE CURL* curl_easy_duphandle(CURL* handle) {
  static const auto kNext = trelvo::test::next<CURL* (*)(CURL*)>("curl_easy_duphandle");
  return trelvo::test::failsNow() ? nullptr : kNext(handle);
}

TRELVO_IN_PLACE CURLcode curl_global_init(long flags) {
  static const auto kNext = trelvo::test::next<CURLcode (*)(long)>("curl_global_init");
  return trelvo::test::failsNow() ? CURLE_FAILED_INIT : kNext(flags);
}

namespace trelvo::test {
namespace {

using network::IHTTPRequest;

class HTTPTransportFailure : public HTTPTest {
 protected:
  /// Runs `ask` with its first call of libcurl failing, then with its second, and so on until none
  /// does. @return how many calls there were to fail.
  int withEachCallFailing(const std::function<void(bool failing)>& ask) {
    for (int failing = 0;; ++failing) {
      SCOPED_TRACE(failing);
      gCalls = 0;
      gFailing = failing;
      ask(true);
      gFailing = -1;
      if (gCalls <= failing) {
        return failing;
      }
      ask(false);
    }
  }

  void serveAlways() {
    serve([](const Peer& peer) {
      const std::string asked = peer.request();
      const std::string all =
          answer("200 OK", "Last-Modified: Tue, 14 Nov 2023 22:13:20 GMT\r\nContent-Length: 4\r\n",
                 "body");
      peer.send(asked.rfind("HEAD ", 0) == 0 ? all.substr(0, all.size() - 4) : all);
    });
  }
};

TEST_F(HTTPTransportFailure, LeavesNoRequestBehind) {
  const int calls = withEachCallFailing([this](bool failing) {
    const std::unique_ptr<IHTTPRequest> made(IHTTPRequest::create("127.0.0.1", &manager));
    EXPECT_EQ(made == nullptr, failing && gCalls > gFailing);
  });
  EXPECT_GT(calls, 10);
}

TEST_F(HTTPTransportFailure, OfAQuestionForAFileIsFailedAndTheNextOneIsAnswered) {
  serveAlways();
  const int calls = withEachCallFailing([this](bool failing) {
    const Status status = request->isAvailable("/file");
    EXPECT_TRUE(status == StatusOk || (failing && status == StatusFailed)) << status;
  });
  EXPECT_GT(calls, 4);
}

TEST_F(HTTPTransportFailure, OfAQuestionForTheTimeIsFailedAndTheNextOneIsAnswered) {
  serveAlways();
  const int calls = withEachCallFailing([this](bool failing) {
    unsigned int time = 0;
    const Status status = request->getRemoteFileModificationTime("/file", time);
    EXPECT_TRUE((status == StatusOk && time == 1700000000U) || (failing && status == StatusFailed))
        << status;
  });
  EXPECT_GT(calls, 6);
}

TEST_F(HTTPTransportFailure, OfADownloadIsFailedAndTheNextOneSucceeds) {
  serveAlways();
  const int calls = withEachCallFailing([this](bool failing) {
    const Status status = download();
    EXPECT_TRUE(status == StatusOk || (failing && status == StatusFailed)) << status;
    EXPECT_TRUE(status != StatusOk || contentOfFile(local) == "body");
  });
  EXPECT_GT(calls, 3);
}

}  // namespace
}  // namespace trelvo::test
