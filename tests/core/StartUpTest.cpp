#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>
#include <string>
#include <vector>

#include <trelvo/CryptoLinuxStatic.h>
#include <trelvo/core/ITime.h>
#include <trelvo/network/ConnectionManagerGeneric.h>

// The order in which the library's static objects come up. The functions below stand in the place
// of the C library's: each static object with a destructor registers it by __cxa_atexit(), the
// dispatchers' slots make a key each, and the logging mutex is the one that lies in the library's
// own data.

namespace {

struct Event {
  enum Kind { Destructor, Key, Mutex } kind;
  const void* object;
};

// Zero before any initialiser runs.
constexpr std::size_t kMostEvents = 64;
Event gEvents[kMostEvents];
std::size_t gEventCount;

bool isLibrary(const void* address) {
  Dl_info info = {};
  return dladdr(address, &info) != 0 && std::strstr(info.dli_fname, "libtrelvocore") != nullptr;
}

void note(Event::Kind kind, const void* object, const void* origin) {
  if (gEventCount < kMostEvents && isLibrary(origin)) {
    gEvents[gEventCount++] = {kind, object};
  }
}

template <class Function>
Function* nextOf(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) int __cxa_atexit(void (*function)(void*), void* object,
                                                        void* library) {
  note(Event::Destructor, object, library);
  return nextOf<int(void (*)(void*), void*, void*)>("__cxa_atexit")(function, object, library);
}

__attribute__((visibility("default"))) int pthread_key_create(pthread_key_t* key,
                                                              void (*destructor)(void*)) noexcept {
  note(Event::Key, key, __builtin_return_address(0));
  return nextOf<int(pthread_key_t*, void (*)(void*))>("pthread_key_create")(key, destructor);
}

__attribute__((visibility("default"))) int pthread_mutex_init(
    pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) noexcept {
  note(Event::Mutex, mutex, mutex);
  return nextOf<int(pthread_mutex_t*, const pthread_mutexattr_t*)>("pthread_mutex_init")(
      mutex, attributes);
}

}  // extern "C"

namespace trelvo {
namespace {

// What a static object is called, for those that the library exports.
std::string nameOf(const void* object) {
  if (object == &network::gConnectionManagerGenericStatic) {
    return "connection manager";
  }
  if (object == &gCryptoStatic) {
    return "cryptography";
  }
  if (object == &core::gTimeProvider) {
    return "time provider";
  }
  Dl_info info = {};
  const bool exact = dladdr(object, &info) != 0 && info.dli_saddr == object;
  const std::string symbol = exact && info.dli_sname != nullptr ? info.dli_sname : "";
  for (const char* const path : {"m_preinstalledFilesPath", "m_defaultStoragePath"}) {
    if (symbol.find(path) != std::string::npos) {
      return path;
    }
  }
  return "";
}

std::vector<std::string> startUp() {
  std::vector<std::string> order;
  for (std::size_t i = 0; i < gEventCount; ++i) {
    const Event& event = gEvents[i];
    const std::string name = event.kind == Event::Key     ? "dispatcher slot"
                             : event.kind == Event::Mutex ? "logging mutex"
                                                          : nameOf(event.object);
    if (!name.empty()) {
      order.push_back(name);
    }
  }
  return order;
}

// Taken before main(): what tests do later does not belong to it.
const std::vector<std::string> kStartUp = startUp();

TEST(StartUp, GoesFromTheConnectionManagerToTheLoggingMutex) {
  EXPECT_EQ(kStartUp, (std::vector<std::string>{"connection manager", "cryptography",
                                                "time provider", "dispatcher slot",
                                                "dispatcher slot", "m_preinstalledFilesPath",
                                                "m_defaultStoragePath", "logging mutex"}));
}

}  // namespace
}  // namespace trelvo
