// Requests with each of libcurl's own allocations failing.

#include <curl/curl.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>

#include "tests/network/HTTPSupport.h"

namespace trelvo::test {
namespace {

using network::IHTTPRequest;

/// Which allocation of this thread fails; none at 0.
thread_local unsigned long gFailAt = 0;
thread_local unsigned long gCalls = 0;
thread_local bool gEverAfter = false;

bool mayAllocate() noexcept {
  ++gCalls;
  return gFailAt == 0 || (gEverAfter ? gCalls < gFailAt : gCalls != gFailAt);
}

void* allocate(std::size_t size) { return mayAllocate() ? std::malloc(size) : nullptr; }
void* allocateZeroed(std::size_t count, std::size_t size) {
  return mayAllocate() ? std::calloc(count, size) : nullptr;
}
void* reallocate(void* block, std::size_t size) {
  return mayAllocate() ? std::realloc(block, size) : nullptr;
}
char* duplicate(const char* text) { return mayAllocate() ? ::strdup(text) : nullptr; }

/// Before the library starts libcurl, which then keeps what it has.
const bool kInstalled = curl_global_init_mem(CURL_GLOBAL_DEFAULT, allocate, std::free, reallocate,
                                             duplicate, allocateZeroed) == CURLE_OK;

/// Calls `run` with each allocation failing in turn, until one gets through; then with each and all
/// behind it.
void everyAllocationOfCurlFails(const std::function<void()>& run) {
  ASSERT_TRUE(kInstalled);
  for (const bool everAfter : {false, true}) {
    for (unsigned long failAt = 1;; ++failAt) {
      SCOPED_TRACE(::testing::Message() << "allocation " << failAt);
      gCalls = 0;
      gFailAt = failAt;
      gEverAfter = everAfter;
      run();
      gFailAt = 0;
      if (gCalls < failAt || ::testing::Test::HasFailure()) {
        EXPECT_GT(gCalls, 20U) << "libcurl asks for memory here";
        break;
      }
    }
  }
}

TEST(CurlMemory, ADownloadIsWholeOrFails) {
  forgetProxies();
  const std::string body = pattern(3000);
  const TemporaryDirectory directory;
  const std::string local = directory.path("local");
  const ScriptedServer server([&body](const Peer& peer) {
    if (!peer.request().empty()) {
      peer.send(found(body));
    }
  });
  ScriptedManager manager;
  Status status = StatusFailed;
  everyAllocationOfCurlFails([&] {
    writeFile(local, "");
    const std::unique_ptr<IHTTPRequest> request(IHTTPRequest::create(server.address(), &manager));
    if (request == nullptr) {
      return;
    }
    unsigned long long bytes = 0;
    status = request->download("/file", local, bytes);
    EXPECT_TRUE(status == StatusOk || status == StatusFailed) << status;
    const std::string content = contentOfFile(local);
    EXPECT_TRUE(status != StatusOk || content == body);
    EXPECT_EQ(body.compare(0, content.size(), content), 0);
  });
  EXPECT_EQ(status, StatusOk);
}

TEST(CurlMemory, AQuestionIsAnsweredRightOrFails) {
  forgetProxies();
  const ScriptedServer server([](const Peer& peer) {
    if (!peer.request().empty()) {
      peer.send(answer("200 OK", "Last-Modified: Thu, 01 Jan 1970 00:00:09 GMT\r\n", ""));
    }
  });
  ScriptedManager manager;
  Status status = StatusFailed;
  everyAllocationOfCurlFails([&] {
    const std::unique_ptr<IHTTPRequest> request(IHTTPRequest::create(server.address(), &manager));
    if (request == nullptr) {
      return;
    }
    status = request->isAvailable("/file");
    EXPECT_TRUE(status == StatusOk || status == StatusFailed) << status;
    unsigned int time = 7;
    status = request->getRemoteFileModificationTime("/file", time);
    EXPECT_TRUE(status == StatusOk || status == StatusFailed) << status;
    EXPECT_EQ(time, status == StatusOk ? 9U : 7U);
  });
  EXPECT_EQ(status, StatusOk);
}

}  // namespace
}  // namespace trelvo::test
