#pragma once

#include <memory>
#include <utility>

#include "tests/soak/Soak.h"

namespace soak {

/// A crew of one worker.
template <class OneWorker>
class OneWorkerCrew : public Crew {
 public:
  template <class... Arguments>
  explicit OneWorkerCrew(Arguments&&... arguments)
      : m_worker(std::forward<Arguments>(arguments)...) {}

  void start() override { m_worker.start(); }
  void stop() override { m_worker.stop(); }
  void join() override { m_worker.join(); }

 private:
  OneWorker m_worker;
};

template <class OneWorker, class... Arguments>
std::unique_ptr<Crew> crewOf(Arguments&&... arguments) {
  return std::make_unique<OneWorkerCrew<OneWorker>>(std::forward<Arguments>(arguments)...);
}

}  // namespace soak
