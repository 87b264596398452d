// Two threads, each with a main loop of its own, that post work to each other.
//
//   Scanner     its thread runs a poll loop: a timer takes measurements, three make a batch, which
//               is handed to the reporter
//   Reporter    runs in GLib's default main context on the main thread, as a graphical program
//               does: it prints a batch and asks the scanner for the next one, or stops both loops
//
// A batch is handed over, not shared: the scanner does not touch it until the reporter has
// answered. So one posted call at a time is on its way in each direction, far below what a
// dispatcher holds. Reference counts are plain: each thread makes its own handles and lends the
// other one plain references; what a thread leaves behind goes after its end was waited for.

#include <algorithm>
#include <cstdio>
#include <vector>

#include <trelvo/trelvo.h>

using trelvo::core::AsyncCallDispatcher;
using trelvo::core::IAsyncCallDispatcher;
using trelvo::core::IAsyncCallReceiver;
using trelvo::core::ISemaphore;
using trelvo::core::IThread;
using trelvo::core::IThreadObserver;
using trelvo::core::ITimer;
using trelvo::core::ITimerObserver;
using trelvo::core::MainLoop;
using trelvo::gom::SharedPointer;

namespace {

constexpr int kBatches = 3;
constexpr std::size_t kPerBatch = 3;
constexpr int kIntervalMs = 5;

struct Batch {
  int number = 1;
  std::vector<int> levels;  // received signal levels in dBm
};

class Scanner : public IThreadObserver, public ITimerObserver, public IAsyncCallReceiver {
 public:
  /// `reporter` gets the batches, by its loop's dispatcher. Both must outlive the scanner.
  Scanner(IAsyncCallDispatcher& dispatcher, IAsyncCallReceiver& reporter)
      : m_reporters(dispatcher), m_reporter(reporter) {}

  /// The thread's body. What belongs to a thread is made on it.
  int threadMain() override {
    m_ready = prepare();
    if (!m_ready) {
      if (m_up) m_up->signal(1, nullptr);  // whoever waits is not to wait for ever
      return 1;
    }
    const trelvo::Status status = m_loop->start(m_up);
    m_timer.clear();
    return static_cast<int>(status);
  }

  /// The timer fired: take a measurement.
  void handleTimerEvent(ITimer* timer) override {
    if (m_batch.levels.size() == kPerBatch) return;  // full, and this is an expiration caught up
    m_batch.levels.push_back(-95 + 7 * ++m_taken % 40);
    if (m_batch.levels.size() < kPerBatch) return;
    timer->stop();
    std::printf("scanner: batch %d is full\n", m_batch.number);
    m_reporters.queueAsyncCall(&m_reporter, &m_batch);
  }

  /// The reporter has answered: go on with the next batch.
  void handleAsyncCall(void* /*data*/) override {
    m_batch = {m_batch.number + 1, {}};
    m_timer->start(kIntervalMs, 0);
  }

  /// Waits until the loop is up, for the thread that made the scanner. False when it will not be.
  bool waitUntilUp() { return m_up && m_up->wait() && m_ready; }
  MainLoop& loop() { return *m_loop; }
  IAsyncCallDispatcher& dispatcher() { return *m_dispatcher; }

 private:
  // Factories give an empty handle when memory or descriptors run out.
  bool prepare() {
    m_loop = MainLoop::create(AsyncCallDispatcher::MainLoopTypeLinPoll);
    if (!m_up || !m_loop) return false;
    m_dispatcher = m_loop->dispatcher();
    m_timer = ITimer::create(this);
    return m_dispatcher && m_timer && m_timer->start(kIntervalMs, 0) == trelvo::StatusOk;
  }

  IAsyncCallDispatcher& m_reporters;
  IAsyncCallReceiver& m_reporter;
  SharedPointer<ISemaphore> m_up = ISemaphore::create(0, 1);
  SharedPointer<MainLoop> m_loop;
  SharedPointer<IAsyncCallDispatcher> m_dispatcher;
  SharedPointer<ITimer> m_timer;
  bool m_ready = false;  // written before m_up is signalled, read after
  Batch m_batch;
  int m_taken = 0;
};

class Reporter : public IAsyncCallReceiver {
 public:
  explicit Reporter(MainLoop& loop) : m_loop(loop) {}

  void setScanner(Scanner& scanner) { m_scanner = &scanner; }

  /// A batch has come.
  void handleAsyncCall(void* data) override {
    const auto& batch = *static_cast<const Batch*>(data);
    std::printf("reporter: strongest of batch %d is %d dBm\n", batch.number,
                *std::max_element(batch.levels.begin(), batch.levels.end()));
    if (batch.number < kBatches) {
      m_scanner->dispatcher().queueAsyncCall(m_scanner, nullptr);
    } else {
      m_scanner->loop().stop();
      m_loop.stop();
    }
  }

 private:
  MainLoop& m_loop;
  Scanner* m_scanner = nullptr;
};

}  // namespace

int main() {
  const auto loop = MainLoop::create(AsyncCallDispatcher::MainLoopTypeLinGlib);
  if (!loop) return 1;
  Reporter reporter(*loop);
  const auto dispatcher = loop->dispatcher();
  if (!dispatcher) return 1;
  Scanner scanner(*dispatcher, reporter);
  const auto thread = IThread::create(&scanner, false);
  if (!thread) return 1;
  if (!scanner.waitUntilUp()) {
    thread->wait();
    return 1;
  }
  reporter.setScanner(scanner);  // batches wait in this thread's dispatcher until the loop runs

  const trelvo::Status status = loop->start(nullptr);
  const bool ended = thread->wait();
  std::puts("both loops have ended");
  return status == trelvo::StatusOk && ended ? 0 : 1;
}
