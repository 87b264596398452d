#pragma once

#include <atomic>
#include <random>
#include <string>

#include <trelvo/core/IThread.h>
#include <trelvo/core/IThreadObserver.h>
#include <trelvo/gom/SharedPointer.h>

namespace soak {

/// Ends the program with status 1, telling `what`, when that does not hold. What was written stays
/// in the directory that the program named at its start.
void check(bool holds, const char* what);

using Count = std::atomic<unsigned long long>;

/// What was done so far, by all workers.
struct Figures {
  Count callsPosted = 0;
  Count callsRun = 0;
  Count callsRemoved = 0;  ///< Before they ran.
  Count timersFired = 0;
  Count loopsStarted = 0;
  Count sealedFiles = 0;
  Count sealedBytes = 0;  ///< Written and read.
  Count encryptedLogs = 0;
  Count encryptedLines = 0;
  Count engineLines = 0;
  Count logBytes = 0;
  Count downloads = 0;
  Count downloadsCancelled = 0;
  Count downloadBytes = 0;
};
extern Figures gFigures;

/// A thread of the library's own kind that repeats its round until it is told to stop.
class Worker : public trelvo::core::IThreadObserver {
 public:
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  void start();
  /// Has the present round be the last one.
  void stop() { m_goingOn = false; }
  /// Waits until the last round is over.
  void join();

 protected:
  Worker() = default;
  ~Worker() override = default;

  /// On the thread, ahead of the first round and behind the last one.
  virtual void begin() {}
  virtual void round() = 0;
  virtual void end() {}

  bool goingOn() const { return m_goingOn; }

 private:
  int threadMain() override;

  std::atomic<bool> m_goingOn{true};
  trelvo::gom::SharedPointer<trelvo::core::IThread> m_thread;
};

/// What one core has to do: workers that start, stop and join together.
class Crew {
 public:
  virtual ~Crew() = default;
  Crew(const Crew&) = delete;
  Crew& operator=(const Crew&) = delete;

  virtual void start() = 0;
  virtual void stop() = 0;
  virtual void join() = 0;

 protected:
  Crew() = default;
};

/// Numbers and bytes that look random and are the same in every run.
class Random {
 public:
  explicit Random(unsigned int seed) : m_engine(seed) {}

  /// From 0 to `limit` - 1.
  unsigned int below(unsigned int limit) { return static_cast<unsigned int>(m_engine() % limit); }
  std::string bytes(std::size_t count);

 private:
  std::mt19937 m_engine;
};

/// The whole content of a file.
std::string contentOf(const std::string& path);

}  // namespace soak
