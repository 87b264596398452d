// Everything at once for as long as it is told to: posted calls, timers and loops, sealed files,
// logs, and downloads from servers of its own, on all cores, with every result checked.
//
//   trelvo_soak [SECONDS]      default: TRELVO_SOAK_SECONDS, else 5
//
// After a run to warm up it measures memory, runs, and measures again, both times with nothing
// going on. Status 0: all checks held and memory stayed flat.

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/soak/Calls.h"
#include "tests/soak/Downloads.h"
#include "tests/soak/Files.h"
#include "tests/soak/Logs.h"
#include "tests/soak/Memory.h"
#include "tests/soak/Soak.h"

namespace soak {

namespace {

using trelvo::core::AsyncCallDispatcher;
using Crews = std::vector<std::unique_ptr<Crew>>;
using std::chrono::seconds;

// More than this between two quiet moments is growth.
constexpr long kHeapMarginKiB = 64;
constexpr long kResidentMarginKiB = 16384;

/// A directory for what is written, which goes with the program when all went well.
class Place {
 public:
  Place() : m_path((std::filesystem::temp_directory_path() / "trelvo-soak-XXXXXX").string()) {
    check(mkdtemp(m_path.data()) != nullptr, "a temporary directory is made");
  }
  ~Place() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  const std::string& path() const { return m_path; }

 private:
  std::string m_path;
};

unsigned int cores() { return std::max(1U, std::thread::hardware_concurrency()); }

/// Both kinds of loops, whatever the number of cores, and one crew of each other sort a core.
Crews makeCrews(const std::string& directory) {
  Crews crews;
  for (unsigned int i = 0; i < std::max(2U, cores()); ++i) {
    crews.push_back(makeCallsCrew(i % 2 == 0 ? AsyncCallDispatcher::MainLoopTypeLinPoll
                                             : AsyncCallDispatcher::MainLoopTypeLinGlib));
  }
  for (unsigned int i = 0; i < cores(); ++i) {
    crews.push_back(makeFilesCrew(directory, i));
    crews.push_back(makeLogsCrew(directory, i));
    crews.push_back(makeDownloadsCrew(directory, i));
  }
  return crews;
}

void runFor(std::chrono::milliseconds time, const std::string& directory) {
  const Crews crews = makeCrews(directory);
  for (const auto& crew : crews) {
    crew->start();
  }
  std::this_thread::sleep_for(time);
  for (const auto& crew : crews) {
    crew->stop();
  }
  for (const auto& crew : crews) {
    crew->join();
  }
}

void print(const char* what, const Count& count) {
  std::printf("  %-30s %14llu\n", what, count.load());
}

void printFigures() {
  print("calls posted", gFigures.callsPosted);
  print("calls run", gFigures.callsRun);
  print("calls removed before", gFigures.callsRemoved);
  print("timers fired", gFigures.timersFired);
  print("loops started and stopped", gFigures.loopsStarted);
  print("sealed files", gFigures.sealedFiles);
  print("sealed bytes through", gFigures.sealedBytes);
  print("encrypted logs", gFigures.encryptedLogs);
  print("lines in them", gFigures.encryptedLines);
  print("lines by the logging engine", gFigures.engineLines);
  print("bytes of logs", gFigures.logBytes);
  print("downloads", gFigures.downloads);
  print("downloads cancelled", gFigures.downloadsCancelled);
  print("bytes downloaded", gFigures.downloadBytes);
}

/// Tells memory before and after. @return whether it stayed flat.
bool reportMemory(const Memory& before, const Memory& after) {
  std::printf("  %-30s %10ld KiB at start %10ld at end\n", "heap in use", before.inUse,
              after.inUse);
  std::printf("  %-30s %10ld KiB at start %10ld at end\n", "memory resident", before.resident,
              after.resident);
  if (!memoryIsJudged()) {
    std::printf("  memory is not judged under a sanitizer\n");
    return true;
  }
  return after.inUse - before.inUse <= kHeapMarginKiB &&
         after.resident - before.resident <= kResidentMarginKiB;
}

/// Whether everything was done at all.
void expectFigures() {
  for (const Count* const count :
       {&gFigures.callsRun, &gFigures.callsRemoved, &gFigures.timersFired, &gFigures.loopsStarted,
        &gFigures.sealedFiles, &gFigures.encryptedLogs, &gFigures.engineLines, &gFigures.downloads,
        &gFigures.downloadsCancelled}) {
    check(*count != 0, "everything is done at least once");
  }
  check(gFigures.callsPosted == gFigures.callsRun + gFigures.callsRemoved,
        "every call either ran or was removed");
}

int soak(seconds time) {
  const Place place;
  std::printf("soak: %lld s on %u cores, in %s\n", static_cast<long long>(time.count()), cores(),
              place.path().c_str());
  std::fflush(stdout);
  runFor(std::chrono::milliseconds(time) / 4 + seconds(1), place.path());
  const Memory before = memoryNow();
  runFor(time, place.path());
  const Memory after = memoryNow();
  expectFigures();
  printFigures();
  const bool flat = reportMemory(before, after);
  if (!flat) {
    std::printf("soak: FAILED: memory grew\n");
    return EXIT_FAILURE;
  }
  std::printf("soak: all checks held%s\n", memoryIsJudged() ? ", memory stayed flat" : "");
  return EXIT_SUCCESS;
}

seconds wanted(int argc, char** argv) {
  const char* const given = argc > 1 ? argv[1] : std::getenv("TRELVO_SOAK_SECONDS");
  const long number = given != nullptr ? std::strtol(given, nullptr, 10) : 5;
  return seconds(std::max(1L, number));
}

}  // namespace

}  // namespace soak

int main(int argc, char** argv) {
  // The proxies of the machine are for other servers.
  for (const char* const name : {"http_proxy", "all_proxy", "ALL_PROXY"}) {
    unsetenv(name);
  }
  return soak::soak(soak::wanted(argc, argv));
}
